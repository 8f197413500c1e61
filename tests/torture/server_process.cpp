#include "torture/server_process.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <thread>
#include <vector>

namespace orvane::torture {
namespace {

constexpr std::chrono::milliseconds kLook{20};
constexpr int kStartLooks = 1500;
constexpr int kStopLooks = 1000;

std::string TextOf(const std::string& path) {
  std::ostringstream text;
  text << std::ifstream(path).rdbuf();
  return text.str();
}

/// This process's environment without our own variables, and the given ones.
std::vector<std::string> EnvironmentWith(const Variables& variables) {
  std::vector<std::string> all;
  for (char** variable = environ; *variable != nullptr; ++variable) {
    if (!std::string(*variable).starts_with("ORVANE_")) all.emplace_back(*variable);
  }
  for (const auto& [name, value] : variables)
    all.push_back(name + "=" + value);
  return all;
}

std::vector<char*> Pointers(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  for (std::string& text : texts)
    pointers.push_back(text.data());
  pointers.push_back(nullptr);
  return pointers;
}

}  // namespace

std::string Shell(const std::string& command) {
  FILE* pipe = popen(("( " + command + " ) 2>&1").c_str(), "r");
  if (pipe == nullptr) return "no shell";
  std::string said;
  std::array<char, 4096> buffer;
  while (const std::size_t got = fread(buffer.data(), 1, buffer.size(), pipe))
    said.append(buffer.data(), got);
  return pclose(pipe) == 0 ? "" : "failed: " + said;
}

ServerProcess::ServerProcess(std::string program, std::string database, std::string log)
    : program_(std::move(program)), database_(std::move(database)), log_(std::move(log)) {}

ServerProcess::~ServerProcess() {
  Kill();
}

bool ServerProcess::Start(const Variables& environment) {
  Kill();
  std::vector<std::string> arguments = {program_,  "serve",    "--database",
                                        database_, "--listen", Address()};
  std::vector<std::string> variables = EnvironmentWith(environment);
  const std::vector<char*> argv = Pointers(arguments);
  const std::vector<char*> envp = Pointers(variables);
  process_ = fork();
  if (process_ == 0) {
    const int log = open(log_.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    dup2(log, STDOUT_FILENO);
    dup2(log, STDERR_FILENO);
    execve(program_.c_str(), argv.data(), envp.data());
    _exit(127);
  }
  const std::string mark = "слуша на 127.0.0.1:";
  for (int look = 0; look < kStartLooks && IsAlive(); ++look) {
    const std::string said = TextOf(log_);
    const std::size_t at = said.find(mark);
    const std::size_t end = at == std::string::npos ? at : said.find(".\n", at + mark.size());
    if (end != std::string::npos) {
      port_ = std::stoi(said.substr(at + mark.size(), end - at - mark.size()));
      return true;
    }
    std::this_thread::sleep_for(kLook);
  }
  std::fprintf(stderr, "the server did not start: %s\n", TextOf(log_).c_str());
  return false;
}

void ServerProcess::Kill() {
  if (process_ <= 0) return;
  kill(process_, SIGKILL);
  Reap();
}

bool ServerProcess::Stop() {
  if (process_ <= 0) return true;
  kill(process_, SIGTERM);
  for (int look = 0; look < kStopLooks; ++look) {
    if (!IsAlive()) return true;
    std::this_thread::sleep_for(kLook);
  }
  Kill();
  return false;
}

bool ServerProcess::IsAlive() {
  if (process_ <= 0) return false;
  if (waitpid(process_, nullptr, WNOHANG) == 0) return true;
  process_ = 0;
  return false;
}

void ServerProcess::Reap() {
  waitpid(process_, nullptr, 0);
  process_ = 0;
}

int ServerProcess::OpenFiles() const {
  const std::filesystem::directory_iterator files("/proc/" + std::to_string(process_) + "/fd");
  return static_cast<int>(std::distance(begin(files), end(files)));
}

long ServerProcess::PeakMegabytes() const {
  std::ifstream status("/proc/" + std::to_string(process_) + "/status");
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with("VmHWM:")) return std::stol(line.substr(6)) / 1024;
  }
  return -1;
}

}  // namespace orvane::torture
