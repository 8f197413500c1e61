#pragma once

#include <string>
#include <string_view>

namespace orvane::wire {

/// True when the host (a name or an address, without port) is this machine itself, which nobody can
/// listen to on the way.
bool IsLoopback(std::string_view host);

/// "[::1]:8011" and "server:8011" without the port and the brackets.
std::string_view HostOf(std::string_view address);

/// Host and port as an address; an IPv6 host gets its brackets.
std::string AddressOf(std::string_view host, int port);

}  // namespace orvane::wire
