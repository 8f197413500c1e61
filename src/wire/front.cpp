#include "wire/front.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <iterator>

namespace orvane::wire {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr int kBacklog = 256;
constexpr int kTickMs = 200;
/// Files of the process that are no connections: the database's, the log's, the libraries'.
constexpr rlim_t kOtherFiles = 256;
constexpr rlim_t kWishedFiles = 8'192;
/// Every connection has a second descriptor here.
constexpr rlim_t kFilesOfOne = 2;

/// How many connections the process may have, after asking for as many files as wished.
int AffordableConnections() {
  rlimit files{};
  if (getrlimit(RLIMIT_NOFILE, &files) != 0) return 1;
  const rlim_t wished = std::min(files.rlim_max, kWishedFiles);
  if (files.rlim_cur < wished) {
    files.rlim_cur = wished;
    setrlimit(RLIMIT_NOFILE, &files);
    getrlimit(RLIMIT_NOFILE, &files);
  }
  const rlim_t left = files.rlim_cur > kOtherFiles ? files.rlim_cur - kOtherFiles : 2;
  return static_cast<int>(std::min<rlim_t>(left, 1'000'000) / kFilesOfOne);
}

Peer PeerOf(const sockaddr_storage& from) {
  char text[INET6_ADDRSTRLEN] = "";
  if (from.ss_family == AF_INET) {
    sockaddr_in four{};
    std::memcpy(&four, &from, sizeof four);
    inet_ntop(AF_INET, &four.sin_addr, text, sizeof text);
    return {text, std::to_string(ntohs(four.sin_port))};
  }
  sockaddr_in6 six{};
  std::memcpy(&six, &from, sizeof six);
  const void* shown = &six.sin6_addr;
  const bool mapped = IN6_IS_ADDR_V4MAPPED(&six.sin6_addr);
  if (mapped) shown = &six.sin6_addr.s6_addr[12];
  inet_ntop(mapped ? AF_INET : AF_INET6, shown, text, sizeof text);
  return {text, std::to_string(ntohs(six.sin6_port))};
}

int PortOf(int listener) {
  sockaddr_storage own{};
  socklen_t length = sizeof own;
  if (getsockname(listener, reinterpret_cast<sockaddr*>(&own), &length) != 0) return 0;
  if (own.ss_family == AF_INET) return ntohs(reinterpret_cast<sockaddr_in*>(&own)->sin_port);
  return ntohs(reinterpret_cast<sockaddr_in6*>(&own)->sin6_port);
}

/// -1 when the address cannot be had.
int ListenAt(const addrinfo& at) {
  const int listener = socket(at.ai_family, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
  if (listener < 0) return -1;
  const int on = 1;
  const int off = 0;
  // Not SO_REUSEPORT: two servers never share a port.
  setsockopt(listener, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
  setsockopt(listener, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);  // inherited
  if (at.ai_family == AF_INET6) {
    setsockopt(listener, IPPROTO_IPV6, IPV6_V6ONLY, &off, sizeof off);
  }
  if (bind(listener, at.ai_addr, at.ai_addrlen) == 0 && listen(listener, kBacklog) == 0) {
    return listener;
  }
  close(listener);
  return -1;
}

ino_t InodeOf(int file) {
  struct stat state {};
  return fstat(file, &state) == 0 ? state.st_ino : 0;
}

bool HungUp(int file) {
  pollfd asked{file, 0, 0};
  return poll(&asked, 1, 0) > 0 && (asked.revents & (POLLHUP | POLLERR | POLLNVAL)) != 0;
}

}  // namespace

Peer ParsePeer(std::string_view peer) {
  peer.remove_prefix(std::min(peer.size(), peer.find(':') + 1));
  const std::size_t colon = peer.rfind(':');
  if (colon == std::string_view::npos) return {std::string(peer), ""};
  std::string address(peer.substr(0, colon));
  for (const std::string_view bracket : {"%5B", "%5D", "[", "]"}) {
    const std::size_t at = address.find(bracket);
    if (at != std::string::npos) address.erase(at, bracket.size());
  }
  if (const std::size_t zone = address.find('%'); zone != std::string::npos) address.erase(zone);
  return {std::move(address), std::string(peer.substr(colon + 1))};
}

Front::Front(FrontLimits limits) : limits_(limits) {
  limits_.connections = std::min(limits_.connections, AffordableConnections());
}

Front::~Front() {
  StopListening();
  Halt();
  const std::lock_guard lock(mutex_);
  while (!connections_.empty())
    End(connections_.begin());
  for (const int file : listeners_)
    close(file);
  for (const int file : wake_) {
    if (file >= 0) close(file);
  }
}

bool Front::Listen(const std::string& address, int port) {
  addrinfo hints{};
  hints.ai_family = AF_UNSPEC;
  hints.ai_socktype = SOCK_STREAM;
  hints.ai_flags = AI_PASSIVE | AI_NUMERICSERV;
  port_ = port;
  addrinfo* found = nullptr;
  if (getaddrinfo(address.c_str(), std::to_string(port).c_str(), &hints, &found) != 0) return false;
  for (const addrinfo* at = found; at; at = at->ai_next) {
    if (at->ai_family == AF_INET && port_ != 0) {
      reinterpret_cast<sockaddr_in*>(at->ai_addr)->sin_port = htons(static_cast<in_port_t>(port_));
    } else if (at->ai_family == AF_INET6 && port_ != 0) {
      reinterpret_cast<sockaddr_in6*>(at->ai_addr)->sin6_port =
          htons(static_cast<in_port_t>(port_));
    }
    const int listener = ListenAt(*at);
    if (listener < 0) continue;
    listeners_.push_back(listener);
    if (port_ == 0) port_ = PortOf(listener);
  }
  freeaddrinfo(found);
  return !listeners_.empty() && pipe2(wake_, O_CLOEXEC | O_NONBLOCK) == 0;
}

void Front::Start(std::function<void(int, int)> take, std::function<void()> tick) {
  take_ = std::move(take);
  tick_ = std::move(tick);
  thread_ = std::thread([this] { Run(); });
}

void Front::StopListening() {
  listening_ = false;
  for (const int listener : listeners_)
    shutdown(listener, SHUT_RDWR);  // newcomers are refused from now on
}

void Front::Halt() {
  stopped_ = true;
  if (!thread_.joinable()) return;
  // Failing only means that the thread looks up at its next tick.
  [[maybe_unused]] const ssize_t woken = write(wake_[1], "x", 1);
  thread_.join();
}

void Front::Run() {
  Time ticked = steady_clock::now();
  while (!stopped_) {
    std::vector<pollfd> asked{{wake_[0], POLLIN, 0}};
    if (listening_) {
      for (const int listener : listeners_)
        asked.push_back({listener, POLLIN, 0});
    }
    poll(asked.data(), asked.size(), kTickMs);
    for (std::size_t i = 1; i < asked.size(); ++i) {
      if (listening_ && (asked[i].revents & POLLIN) != 0) Accept(asked[i].fd);
    }
    if (steady_clock::now() - ticked < milliseconds(kTickMs)) continue;
    ticked = steady_clock::now();
    Sweep();
    tick_();
  }
}

void Front::Accept(int listener) {
  sockaddr_storage from{};
  socklen_t length = sizeof from;
  const int connection =
      accept4(listener, reinterpret_cast<sockaddr*>(&from), &length, SOCK_NONBLOCK | SOCK_CLOEXEC);
  if (connection < 0) {
    // Without files to be had the newcomer waits until a guest has gone.
    if (errno != EMFILE && errno != ENFILE && errno != ENOBUFS && errno != ENOMEM) return;
    {
      const std::lock_guard lock(mutex_);
      const auto guest = LongestSilentGuest(nullptr);
      if (guest != connections_.end()) End(guest);
    }
    std::this_thread::sleep_for(milliseconds(kTickMs / 10));
    return;
  }
  const Peer peer = PeerOf(from);
  {
    const std::lock_guard lock(mutex_);
    const int held = MakeRoom(peer.address) ? fcntl(connection, F_DUPFD_CLOEXEC, 0) : -1;
    if (held < 0) {
      close(connection);
      return;
    }
    const auto former = connections_.find(peer.Key());
    if (former != connections_.end()) End(former);
    connections_[peer.Key()] = {held,         connection,          InodeOf(held),
                                peer.address, steady_clock::now(), false};
  }
  take_(listener, connection);
}

/// False when all who could make room are proven.
bool Front::MakeRoom(const std::string& address) {
  const auto ofAddress = std::count_if(connections_.begin(), connections_.end(),
                                       [&](auto& row) { return row.second.address == address; });
  if (ofAddress >= limits_.ofOneAddress) {
    const auto guest = LongestSilentGuest(&address);
    if (guest == connections_.end()) return false;
    End(guest);
  }
  if (static_cast<int>(connections_.size()) >= limits_.connections) {
    const auto guest = LongestSilentGuest(nullptr);
    if (guest == connections_.end()) return false;
    End(guest);
  }
  return true;
}

/// Of one address, or of all.
Front::ByPeer::iterator Front::LongestSilentGuest(const std::string* address) {
  auto longest = connections_.end();
  for (auto at = connections_.begin(); at != connections_.end(); ++at) {
    if (at->second.proven || (address && at->second.address != *address)) continue;
    if (longest == connections_.end() || at->second.heard < longest->second.heard) longest = at;
  }
  return longest;
}

void Front::End(ByPeer::iterator connection) {
  shutdown(connection->second.held, SHUT_RDWR);
  close(connection->second.held);
  connections_.erase(connection);
}

void Front::Sweep() {
  const std::lock_guard lock(mutex_);
  const Time oldest = steady_clock::now() - milliseconds(limits_.silentGuestMs);
  for (auto at = connections_.begin(); at != connections_.end();) {
    const auto next = std::next(at);
    const Connection& one = at->second;
    const bool gone = HungUp(one.held) || InodeOf(one.given) != one.inode;
    if (gone || (!one.proven && one.heard < oldest)) End(at);
    at = next;
  }
}

void Front::Heard(const Peer& peer, bool proven) {
  const std::lock_guard lock(mutex_);
  const auto found = connections_.find(peer.Key());
  if (found == connections_.end()) return;
  found->second.heard = steady_clock::now();
  found->second.proven = found->second.proven || proven;
}

int Front::Connections() {
  const std::lock_guard lock(mutex_);
  return static_cast<int>(connections_.size());
}

}  // namespace orvane::wire
