#pragma once

#include <utility>
#include <vector>

#include "data/connection.h"

namespace orvane::data {

/// Closes connections on every way out of a scope: they are open only while a request runs.
class ConnectionScope {
 public:
  ConnectionScope() = default;
  explicit ConnectionScope(TVosSQLConnection* connection) { Add(connection); }
  ~ConnectionScope() {
    for (TVosSQLConnection* connection : connections_)
      connection->Close();
  }
  ConnectionScope(const ConnectionScope&) = delete;
  ConnectionScope& operator=(const ConnectionScope&) = delete;

  /// A null pointer (a dataset in memory only) is left out.
  void Add(TVosSQLConnection* connection) {
    if (connection != nullptr) connections_.push_back(connection);
  }

  /// Fetches over the connection that was added first; each request names its own server class.
  std::vector<DataPacket> Fetch(const std::vector<FetchRequest>& requests) {
    return requests.empty() ? std::vector<DataPacket>() : connections_.front()->Fetch(requests);
  }

 private:
  std::vector<TVosSQLConnection*> connections_;
};

}  // namespace orvane::data
