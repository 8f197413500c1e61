#pragma once

// The listening sockets of a server and the connections that came in through them. A connection is
// proven once a request with a living session came over it; the others are guests: they go when
// they were silent for a while, and when there is no room the guest who was silent longest makes
// it. So nobody keeps newcomers out by holding connections open.

#include <sys/types.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace orvane::wire {

struct FrontLimits {
  int connections = 1'000;  ///< fewer when the process may not have so many files
  int ofOneAddress = 256;
  int silentGuestMs = 60'000;
};

/// "10.0.0.5" and "51234" of gRPC's "ipv4:10.0.0.5:51234"; brackets and zones of IPv6 go.
struct Peer {
  std::string address;
  std::string port;

  std::string Key() const { return address + '|' + port; }
};
Peer ParsePeer(std::string_view peer);

class Front {
 public:
  explicit Front(FrontLimits limits);
  /// Ends all connections.
  ~Front();
  Front(const Front&) = delete;
  Front& operator=(const Front&) = delete;

  /// False when the address or the port cannot be had. Port 0 is any free one.
  bool Listen(const std::string& address, int port);
  int Port() const { return port_; }
  /// Gives every new connection to `take`, which owns it from then on; calls `tick` five times a
  /// second. Both on a thread of this object.
  void Start(std::function<void(int listener, int connection)> take, std::function<void()> tick);
  /// Takes no new connections; those that there are stay.
  void StopListening();

  /// Ends the thread; neither function is called any more.
  void Halt();

  /// A request came over the peer's connection, `proven` when it had a living session.
  void Heard(const Peer& peer, bool proven);
  int Connections();

 private:
  using Time = std::chrono::steady_clock::time_point;
  struct Connection {
    int held = -1;   ///< a descriptor of our own, so that ending it never meets another file
    int given = -1;  ///< the one that was given away, looked at and never touched
    ino_t inode = 0;
    std::string address;
    Time heard;
    bool proven = false;
  };
  using ByPeer = std::map<std::string, Connection>;

  void Run();
  void Accept(int listener);
  bool MakeRoom(const std::string& address);
  ByPeer::iterator LongestSilentGuest(const std::string* address);
  void End(ByPeer::iterator connection);
  void Sweep();

  FrontLimits limits_;
  std::vector<int> listeners_;
  int wake_[2] = {-1, -1};
  int port_ = 0;
  std::atomic<bool> listening_{true};
  std::atomic<bool> stopped_{false};
  std::function<void(int, int)> take_;
  std::function<void()> tick_;
  std::mutex mutex_;
  ByPeer connections_;
  std::thread thread_;
};

}  // namespace orvane::wire
