#include "torture/cutting_proxy.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>

namespace orvane::torture {
namespace {

constexpr int kLookMs = 20;

sockaddr_in LoopbackAt(int port) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  address.sin_port = htons(static_cast<std::uint16_t>(port));
  return address;
}

}  // namespace

int ConnectTo(int port) {
  const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  const sockaddr_in address = LoopbackAt(port);
  if (connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0)
    return socket;
  close(socket);
  return -1;
}

CuttingProxy::CuttingProxy(int serverPort) : serverPort_(serverPort) {
  listener_ = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address = LoopbackAt(0);
  socklen_t size = sizeof address;
  bind(listener_, reinterpret_cast<sockaddr*>(&address), size);
  listen(listener_, 128);
  getsockname(listener_, reinterpret_cast<sockaddr*>(&address), &size);
  port_ = ntohs(address.sin_port);
  thread_ = std::thread([this] { Run(); });
}

CuttingProxy::~CuttingProxy() {
  over_ = true;
  thread_.join();
  CutAll();
  close(listener_);
}

int CuttingProxy::CutAll() {
  const std::lock_guard lock(mutex_);
  constexpr linger kAtOnce{1, 0};  // a reset, not a farewell
  for (const Pair& pair : pairs_) {
    for (const int socket : {pair.client, pair.server}) {
      setsockopt(socket, SOL_SOCKET, SO_LINGER, &kAtOnce, sizeof kAtOnce);
      close(socket);
    }
  }
  const int cut = static_cast<int>(pairs_.size());
  pairs_.clear();
  return cut;
}

void CuttingProxy::Accept() {
  const int client = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
  if (client < 0) return;
  const int server = ConnectTo(serverPort_);
  if (server < 0) {
    close(client);
    return;
  }
  const std::lock_guard lock(mutex_);
  pairs_.push_back({client, server});
}

/// False when either side is gone.
bool CuttingProxy::Carry(int from, int to) {
  std::array<char, 65536> buffer;
  const ssize_t got = recv(from, buffer.data(), buffer.size(), MSG_DONTWAIT);
  if (got <= 0) return false;
  for (ssize_t sent = 0; sent < got;) {
    const ssize_t more =
        send(to, buffer.data() + sent, static_cast<std::size_t>(got - sent), MSG_NOSIGNAL);
    if (more <= 0) return false;
    sent += more;
  }
  return true;
}

void CuttingProxy::Run() {
  while (!over_) {
    std::vector<pollfd> sockets = {{listener_, POLLIN, 0}};
    {
      const std::lock_guard lock(mutex_);
      for (const Pair& pair : pairs_) {
        sockets.push_back({pair.client, POLLIN, 0});
        sockets.push_back({pair.server, POLLIN, 0});
      }
    }
    if (poll(sockets.data(), sockets.size(), kLookMs) <= 0) continue;
    if (sockets[0].revents != 0) Accept();
    const std::lock_guard lock(mutex_);
    std::erase_if(pairs_, [&](const Pair& pair) {
      const auto ready = [&](int socket) {
        return std::any_of(sockets.begin(), sockets.end(),
                           [&](const pollfd& own) { return own.fd == socket && own.revents != 0; });
      };
      const bool broken = (ready(pair.client) && !Carry(pair.client, pair.server)) ||
                          (ready(pair.server) && !Carry(pair.server, pair.client));
      if (!broken) return false;
      close(pair.client);
      close(pair.server);
      return true;
    });
  }
}

}  // namespace orvane::torture
