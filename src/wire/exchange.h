#pragma once

// One call after the other as the transport brings them: who asks is looked at before what is
// asked. See serving.h for what becomes of strangers.

#include <grpcpp/generic/async_generic_service.h>

#include <atomic>
#include <functional>
#include <mutex>
#include <set>
#include <string>

#include "orvane.grpc.pb.h"
#include "packet/application_server.h"
#include "wire/serving.h"
#include "wire/turns.h"

namespace orvane::wire {

class Exchange;

/// The verbs' names for reflection; their calls all go to ExchangeService.
using DescribedService = v1::ApplicationServer::WithGenericMethod_Greet<
    v1::ApplicationServer::WithGenericMethod_LogIn<v1::ApplicationServer::WithGenericMethod_LogOut<
        v1::ApplicationServer::WithGenericMethod_Fetch<
            v1::ApplicationServer::WithGenericMethod_Apply<
                v1::ApplicationServer::WithGenericMethod_Call<v1::ApplicationServer::Service>>>>>>;

class ExchangeService final : public grpc::CallbackGenericService {
 public:
  /// Notes that a call came from a peer, with a living session or not; answers its address.
  using Hear = std::function<std::string(const std::string& peer, bool proven)>;

  ExchangeService(IApplicationServer& server, const ServingOptions& options, Hear hear);

  grpc::ServerGenericBidiReactor* CreateReactor(
      grpc::GenericCallbackServerContext* context) override;
  /// Turns away who waited too long and ends calls whose message or reader does not come.
  void Tick();

 private:
  friend class Exchange;

  /// Before an answer is sent: ends older ones where its session's, or all, are too many.
  void MakeRoomFor(const Exchange& own);
  /// Whether the session has yet to read more than it may leave unread.
  bool LeavesUnread(const std::string& ticket);

  IApplicationServer& server_;
  const ServingOptions options_;
  const Hear hear_;
  std::mutex mutex_;
  std::set<Exchange*> open_;
  std::atomic<std::size_t> unread_{0};  ///< bytes of answers that are on their way
  Turns work_;
  Turns strangers_;  ///< last, so that what runs there finds the rest
};

}  // namespace orvane::wire
