#include "apps/orvane_server/ask_password.h"

#include <termios.h>
#include <unistd.h>

#include <iostream>

namespace orvane::apps {
namespace {

/// Keeps the terminal from showing what is typed.
class Unseen {
 public:
  Unseen() {
    tcgetattr(STDIN_FILENO, &before_);
    termios quiet = before_;
    quiet.c_lflag &= ~static_cast<tcflag_t>(ECHO);
    tcsetattr(STDIN_FILENO, TCSAFLUSH, &quiet);
  }
  ~Unseen() {
    tcsetattr(STDIN_FILENO, TCSAFLUSH, &before_);
    std::cerr << '\n';
  }
  Unseen(const Unseen&) = delete;
  Unseen& operator=(const Unseen&) = delete;

 private:
  termios before_{};
};

std::string AskUnseen(const std::string& question) {
  std::cerr << question << std::flush;
  const Unseen unseen;
  std::string line;
  std::getline(std::cin, line);
  return line;
}

}  // namespace

Answer<std::string> AskPassword(const std::string& login) {
  if (isatty(STDIN_FILENO) == 0) {
    std::string line;
    if (!std::getline(std::cin, line)) {
      return Failure{FailureKind::BadRequest, "Паролата се подава на един ред на входа."};
    }
    return line;
  }
  std::string password = AskUnseen("Парола за „" + login + "“: ");
  if (AskUnseen("Още веднъж: ") != password) {
    return Failure{FailureKind::BadRequest, "Двете пароли не са еднакви."};
  }
  return password;
}

}  // namespace orvane::apps
