#include <libpq-fe.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <unordered_map>

#include "bare/bare.h"

namespace orvane::bench {
namespace {

class BarePostgres final : public Bare {
 public:
  explicit BarePostgres(const std::string& info) : handle_(PQconnectdb(info.c_str())) {
    Must(PQstatus(handle_) == CONNECTION_OK);
    PQclear(PQexec(handle_, "set plan_cache_mode = force_generic_plan"));
    PQclear(PQexec(handle_, "set jit = off"));
    PQenterPipelineMode(handle_);
  }
  BarePostgres(const BarePostgres&) = delete;
  BarePostgres& operator=(const BarePostgres&) = delete;
  ~BarePostgres() override { PQfinish(handle_); }

  std::int64_t Read(std::span<const BareStatement> statements) override {
    return Pipeline("begin isolation level repeatable read read only", statements).rows;
  }
  std::int64_t Write(std::span<const BareStatement> statements) override {
    return Pipeline("begin", statements).written;
  }
  std::string Value(const BareStatement& statement) override {
    const BareStatement one{"select (" + statement.text + ")::text", statement.params};
    return Pipeline("begin", {&one, 1}).first;
  }

 private:
  struct Reply {
    std::int64_t rows = 0;
    std::int64_t written = 0;
    std::string first;
  };

  void Must(bool holds) const {
    if (holds) return;
    std::fprintf(stderr, "bare: %s\n", PQerrorMessage(handle_));
    std::abort();
  }

  void Send(const BareStatement& statement) {
    std::string& name = kept_[statement.text];
    if (name.empty()) {
      name = "s" + std::to_string(kept_.size());
      std::string text = statement.text;
      for (char& c : text)
        c = c == '?' ? '$' : c;
      Must(PQsendPrepare(handle_, name.c_str(), text.c_str(), 0, nullptr) == 1);
      ++preparing_;
    }
    std::vector<const char*> values;
    for (const std::string& param : statement.params)
      values.push_back(param.c_str());
    Must(PQsendQueryPrepared(handle_, name.c_str(), static_cast<int>(values.size()), values.data(),
                             nullptr, nullptr, 1) == 1);
  }

  Reply Pipeline(const std::string& begin, std::span<const BareStatement> statements) {
    preparing_ = 0;
    Send({begin, {}});
    const bool planned = std::ranges::any_of(statements, &BareStatement::planned);
    if (planned) Send({"set local plan_cache_mode = force_custom_plan", {}});
    for (const BareStatement& statement : statements)
      Send(statement);
    Send({"commit", {}});
    Must(PQpipelineSync(handle_) == 1);
    Reply reply;
    for (std::size_t i = 0; i < statements.size() + 2 + (planned ? 1 : 0) + preparing_; ++i)
      Take(reply);
    PGresult* sync = PQgetResult(handle_);
    Must(PQresultStatus(sync) == PGRES_PIPELINE_SYNC);
    PQclear(sync);
    return reply;
  }

  void Take(Reply& reply) {
    PGresult* result = PQgetResult(handle_);
    const ExecStatusType status = PQresultStatus(result);
    Must(status == PGRES_TUPLES_OK || status == PGRES_COMMAND_OK);
    if (status == PGRES_TUPLES_OK) {
      if (PQntuples(result) > 0 && reply.rows == 0) reply.first = PQgetvalue(result, 0, 0);
      reply.rows += PQntuples(result);
      for (int row = 0; row < PQntuples(result); ++row) {
        for (int column = 0; column < PQnfields(result); ++column)
          seen_ += static_cast<std::uint64_t>(PQgetlength(result, row, column));
      }
    }
    reply.written += std::atoll(PQcmdTuples(result));
    PQclear(result);
    Must(PQgetResult(handle_) == nullptr);
  }

  PGconn* handle_;
  std::unordered_map<std::string, std::string> kept_;
  std::size_t preparing_ = 0;
  std::uint64_t seen_ = 0;  ///< of all values, so that each is read
};

}  // namespace

std::unique_ptr<Bare> OpenBarePostgres(const std::string& connectionInfo) {
  return std::make_unique<BarePostgres>(connectionInfo);
}

}  // namespace orvane::bench
