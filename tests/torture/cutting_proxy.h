#pragma once

// Stands between clients and a server on this machine and cuts what goes through it.

#include <atomic>
#include <mutex>
#include <thread>
#include <vector>

namespace orvane::torture {

class CuttingProxy {
 public:
  /// Listens on a free port of 127.0.0.1.
  explicit CuttingProxy(int serverPort);
  ~CuttingProxy();
  CuttingProxy(const CuttingProxy&) = delete;
  CuttingProxy& operator=(const CuttingProxy&) = delete;

  int Port() const { return port_; }
  /// Cuts every connection, in the middle of whatever it carries. How many there were.
  int CutAll();

 private:
  struct Pair {
    int client = -1;
    int server = -1;
  };

  void Run();
  void Accept();
  static bool Carry(int from, int to);

  const int serverPort_;
  int listener_ = -1;
  int port_ = 0;
  std::mutex mutex_;
  std::vector<Pair> pairs_;
  std::atomic<bool> over_{false};
  std::thread thread_;
};

/// A connection to 127.0.0.1; -1 when there is none.
int ConnectTo(int port);

}  // namespace orvane::torture
