#pragma once

// An orvane-server of its own, as an administrator starts it: a process that is killed, stopped and
// looked at from outside. It listens on this machine only.

#include <sys/types.h>

#include <map>
#include <string>

namespace orvane::torture {

using Variables = std::map<std::string, std::string>;

/// Runs a shell command; what it said, when it failed.
std::string Shell(const std::string& command);

class ServerProcess {
 public:
  /// `database` as --database takes it; `log` is the file for what the server says.
  ServerProcess(std::string program, std::string database, std::string log);
  ~ServerProcess();
  ServerProcess(const ServerProcess&) = delete;
  ServerProcess& operator=(const ServerProcess&) = delete;

  /// False when it does not listen within half a minute. The port stays the same from start to
  /// start.
  bool Start(const Variables& environment = {});
  void Kill();
  /// False when it had to be killed.
  bool Stop();
  bool IsAlive();
  int Port() const { return port_; }
  std::string Address() const { return "127.0.0.1:" + std::to_string(port_); }
  /// Files and connections that it has open.
  int OpenFiles() const;
  /// Megabytes that it held at most since it was started.
  long PeakMegabytes() const;

 private:
  void Reap();

  const std::string program_;
  const std::string database_;
  const std::string log_;
  pid_t process_ = 0;
  int port_ = 0;
};

}  // namespace orvane::torture
