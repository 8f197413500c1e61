// Calls over loopback through the door, against the generated client on the same server.

#include <cstdlib>
#include <memory>
#include <string>

#include "empty_call.h"
#include "pairs.h"
#include "quick_server.h"
#include "wire/remote_server.h"
#include "wire/serving.h"

namespace {

void Must(bool holds) {
  if (!holds) std::abort();
}

}  // namespace

int main(int argc, char** argv) {
  using namespace orvane;
  using namespace orvane::bench;
  QuickServer server;
  const auto running = StartServing(server, {.port = 0});
  Must(running.Ok());
  RemoteOptions options;
  options.address = "127.0.0.1:" + std::to_string((*running)->Port());
  const auto remote = RemoteServer::Open(options);
  Must(remote.Ok());
  const EmptyCall empty;

  const auto bareEmpty = [&] { return Seconds([&] { empty(); }); };
  const auto ourEmpty = [&] { return Seconds([&] { Must((*remote)->LogOut({}).Ok()); }); };
  const auto ourPage = [&] { return Seconds([&] { Must((*remote)->Fetch({}, {{}}).Ok()); }); };
  AddPair("Wire/EmptyCall", 1.5, 2001, {ourEmpty, bareEmpty});
  AddPair("Wire/PageOf80AgainstEmptyCall", 2.0, 2001, {ourPage, bareEmpty});
  return RunPairs(argc, argv);
}
