#include "wire/loopback.h"

#include <algorithm>

namespace orvane::wire {
namespace {

/// An IPv6 address has several colons, one with a port has brackets.
bool IsBareIpv6(std::string_view host) {
  return std::ranges::count(host, ':') > 1;
}

/// "127." and then nothing but digits and points: a name such as 127.evil.example is none.
bool IsLoopbackIpv4(std::string_view host) {
  return host.starts_with("127.") &&
         host.find_first_not_of("0123456789.") == std::string_view::npos;
}

}  // namespace

bool IsLoopback(std::string_view host) {
  return host == "localhost" || host == "::1" || IsLoopbackIpv4(host);
}

std::string_view HostOf(std::string_view address) {
  if (address.starts_with('[')) return address.substr(1, address.find(']') - 1);
  if (IsBareIpv6(address)) return address;
  return address.substr(0, address.find(':'));
}

std::string AddressOf(std::string_view host, int port) {
  const std::string bare(host);
  return (IsBareIpv6(host) ? '[' + bare + ']' : bare) + ':' + std::to_string(port);
}

}  // namespace orvane::wire
