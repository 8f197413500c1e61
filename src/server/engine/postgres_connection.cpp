#include "server/engine/postgres_connection.h"

#include <libpq-fe.h>
#include <poll.h>

#include <array>
#include <atomic>
#include <thread>

#include "server/engine/postgres_errors.h"

namespace orvane::server {
namespace {

/// Filters make many texts; beyond so many the kept statements are dropped and prepared anew.
constexpr std::size_t kMostKept = 512;
/// How long after a cancellation the server may still take to answer.
constexpr std::chrono::milliseconds kGrace{2000};
constexpr std::string_view kStalePlan = "0A000";

const Statement& DeallocateAll() {
  static const Statement statement{"deallocate all", {}, {}};
  return statement;
}

EngineError Wrong(std::string text) {
  return {EngineErrorKind::Other, "", std::move(text)};
}

/// Parameters as libpq takes them; the values must outlive it.
struct Arrays {
  explicit Arrays(std::span<const PostgresValue> values) {
    for (const PostgresValue& value : values) {
      types.push_back(value.type);
      pointers.push_back(value.null ? nullptr : value.bytes.data());
      lengths.push_back(static_cast<int>(value.bytes.size()));
      formats.push_back(value.binary ? 1 : 0);
    }
  }
  int Count() const { return static_cast<int>(types.size()); }

  std::vector<Oid> types;
  std::vector<const char*> pointers;
  std::vector<int> lengths;
  std::vector<int> formats;
};

/// A prepared statement takes values of its types, and nulls anywhere.
bool Fits(std::span<const PostgresType> types, std::span<const PostgresValue> values) {
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (!values[i].null && values[i].type != types[i]) return false;
  }
  return true;
}

/// Puts the result's rows behind those of the packet.
std::optional<EngineError> AppendRows(const PGresult* result, DataPacket& packet) {
  const int count = PQnfields(result);
  if (static_cast<std::size_t>(count) != packet.columns.size()) {
    return Wrong("the statement answers " + std::to_string(count) + " columns");
  }
  const int rows = PQntuples(result);
  for (int i = 0; i < count; ++i) {
    PacketColumn& column = packet.columns[static_cast<std::size_t>(i)];
    const PostgresType type = PQftype(result, i);
    for (int row = 0; row < rows; ++row) {
      if (PQgetisnull(result, row, i) != 0) {
        AppendNull(column, packet.rowCount + static_cast<std::size_t>(row));
        continue;
      }
      const auto length = static_cast<std::size_t>(PQgetlength(result, row, i));
      const std::string_view bytes(PQgetvalue(result, row, i), length);
      if (const auto error = FillFromPostgres(column, type, bytes)) return Wrong(*error);
    }
  }
  packet.rowCount += static_cast<std::size_t>(rows);
  return std::nullopt;
}

/// More than this may come of the statement at once: its rows are taken one after the other, so
/// that they can be counted before all of them are in memory.
constexpr std::int64_t kHeldWhole = std::int64_t{16} * 1024 * 1024;

bool MayBeHeldWhole(const Statement& statement) {
  if (statement.mostRows == 0) return true;
  constexpr std::int64_t kLongestText = 4;  // bytes of a character
  constexpr std::int64_t kUsualMemo = 80'000;
  std::int64_t row = 0;
  for (const ResultColumn& column : statement.columns) {
    const bool text = RowOf(column.kind).storage == Storage::Text;
    row += !text              ? std::int64_t{sizeof(std::int64_t)}
           : column.size == 0 ? kUsualMemo
                              : kLongestText * column.size;
  }
  return row * statement.mostRows <= kHeldWhole;
}

std::int64_t TouchedBy(PGresult* result) {
  std::int64_t touched = 0;
  for (const char* digit = PQcmdTuples(result); *digit != '\0'; ++digit)
    touched = touched * 10 + (*digit - '0');
  return touched;
}

}  // namespace

void ClosePostgres::operator()(pg_conn* handle) const {
  PQfinish(handle);
}

void ClearPostgres::operator()(pg_result* result) const {
  PQclear(result);
}

EngineAnswer<std::unique_ptr<PostgresConnection>> PostgresConnection::Open(
    const std::string& info, const std::string& settings) {
  // What the caller's conninfo says stands behind these and wins. Kept statements are made for
  // their indexes whatever the values, and planning some of them costs more than running them.
  constexpr std::array<const char*, 8> kNames = {
      "connect_timeout",  "application_name", "client_encoding", "keepalives_idle",
      "tcp_user_timeout", "options",          "dbname",          nullptr};
  const std::string options =
      "-c timezone=UTC -c jit=off -c lock_timeout=10s -c plan_cache_mode=force_generic_plan " +
      settings;
  const std::array<const char*, 8> values = {"5",     "orvane-server", "UTF8",       "30",
                                             "15000", options.c_str(), info.c_str(), nullptr};
  PostgresHandle handle(PQconnectdbParams(kNames.data(), values.data(), 1));
  if (PQstatus(handle.get()) != CONNECTION_OK) {
    return EngineError{EngineErrorKind::LinkDown, "", PQerrorMessage(handle.get())};
  }
  PQsetNoticeProcessor(
      handle.get(), [](void*, const char*) {}, nullptr);
  PQsetnonblocking(handle.get(), 1);  // a server that reads nothing must not hold the sender
  PQenterPipelineMode(handle.get());
  return std::unique_ptr<PostgresConnection>(new PostgresConnection(std::move(handle)));
}

EngineAnswer<std::vector<PostgresReply>> PostgresConnection::Run(
    std::span<const PostgresCommand> commands, Deadline deadline, EngineErrorKind late,
    std::int64_t bytes) {
  late_ = late;
  bytesLeft_ = bytes;
  std::vector<Sent> dropped;
  const bool idle = PQtransactionStatus(handle_.get()) == PQTRANS_IDLE;
  if (idle && (stale_ || kept_.size() > kMostKept) && !DropKept(dropped)) return Broken();
  std::vector<Sent> sent;
  std::optional<EngineError> error;
  for (const PostgresCommand& command : commands) {
    const auto answer = Send(command, sent);
    if (!answer) {
      error = answer.GetFailure();
      break;
    }
  }
  if (IsBroken() || PQpipelineSync(handle_.get()) == 0) return Broken();

  std::vector<PostgresReply> replies;
  replies.reserve(commands.size() + dropped.size());
  std::optional<EngineError> answered;
  for (const Sent& command : dropped) {
    answered = Receive(command, deadline, replies);
    const PostgresResult ended = Next(deadline);
    if (IsBroken() || PQresultStatus(ended.get()) != PGRES_PIPELINE_SYNC) return Broken();
    replies.clear();
  }
  for (const Sent& command : sent) {
    auto failed = Receive(command, deadline, replies);
    if (IsBroken()) return Broken();
    if (failed && !answered) answered = std::move(failed);
  }
  const PostgresResult sync = Next(deadline);
  if (IsBroken() || PQresultStatus(sync.get()) != PGRES_PIPELINE_SYNC) return Broken();
  if (cancelled_) left_ = true;  // a cancellation that comes late must not meet another statement
  if (answered && cancelled_ && answered->kind == EngineErrorKind::Limit) answered->kind = late_;
  if (answered) return *answered;
  if (error) return *error;
  return replies;
}

EngineAnswer<Done> PostgresConnection::RunScript(const std::string& script) {
  PQexitPipelineMode(handle_.get());
  std::optional<EngineError> error;
  for (const char* step : {"begin", script.c_str(), "commit"}) {
    const PostgresResult result(PQexec(handle_.get(), step));
    const ExecStatusType status = PQresultStatus(result.get());
    if (status == PGRES_COMMAND_OK || status == PGRES_TUPLES_OK) continue;
    error = ErrorOf(result.get());
    const PostgresResult undone(PQexec(handle_.get(), "rollback"));
    break;
  }
  if (IsBroken()) return Broken();
  stale_ = true;
  PQenterPipelineMode(handle_.get());
  if (error) return *error;
  return Done{};
}

bool PostgresConnection::RollBack() {
  if (IsBroken() || PQtransactionStatus(handle_.get()) == PQTRANS_IDLE) return false;
  const Statement rollback{"rollback", {}, {}};
  const PostgresCommand command{&rollback, true};
  if (!Run({&command, 1}, std::chrono::steady_clock::now() + kGrace)) left_ = true;
  return true;
}

bool PostgresConnection::IsBroken() const {
  return left_ || PQstatus(handle_.get()) != CONNECTION_OK;
}

/// Sends the order to forget what is prepared. It is a transaction of its own: what comes behind it
/// may begin one of another isolation, which must be the first thing in its pipeline.
bool PostgresConnection::DropKept(std::vector<Sent>& sent) {
  kept_.clear();
  stale_ = false;
  return Send({&DeallocateAll(), false}, sent) && PQpipelineSync(handle_.get()) != 0;
}

EngineAnswer<Done> PostgresConnection::Send(const PostgresCommand& command,
                                            std::vector<Sent>& sent) {
  const Statement& statement = *command.statement;
  const auto values = EncodeParams(statement.params);
  if (!values) return values.GetFailure();

  KeptText passing;
  KeptText* text = &passing;
  if (command.kept) text = &kept_[statement.text];
  if (text->numbered.text.empty()) text->numbered = WithNumberedParams(statement.text);
  if (text->numbered.highest != values->size()) {
    return Wrong("the statement takes " + std::to_string(text->numbered.highest) +
                 " parameters, not " + std::to_string(values->size()));
  }
  const Arrays arrays(*values);
  int queued = 0;
  if (command.kept) {
    const std::string* name = NameFor(*text, *values, sent);
    if (name == nullptr) return Broken();
    queued =
        PQsendQueryPrepared(handle_.get(), name->c_str(), arrays.Count(), arrays.pointers.data(),
                            arrays.lengths.data(), arrays.formats.data(), 1);
  } else {
    queued = PQsendQueryParams(handle_.get(), text->numbered.text.c_str(), arrays.Count(),
                               arrays.types.data(), arrays.pointers.data(), arrays.lengths.data(),
                               arrays.formats.data(), 1);
  }
  if (queued == 0) return Broken();
  sent.push_back({&statement, nullptr, {}});
  return Done{};
}

/// A null takes the type that an earlier use of the text had at its place, so that rows with and
/// without a value share a preparation once every place was filled.
const std::string* PostgresConnection::NameFor(KeptText& text,
                                               std::span<const PostgresValue> values,
                                               std::vector<Sent>& sent) {
  for (const Prepared& prepared : text.prepared) {
    if (Fits(prepared.types, values)) return &prepared.name;
  }
  Prepared next{"s" + std::to_string(++names_), {}};
  for (std::size_t i = 0; i < values.size(); ++i) {
    const bool known = values[i].null && !text.prepared.empty();
    next.types.push_back(known ? text.prepared.back().types[i] : values[i].type);
  }
  if (PQsendPrepare(handle_.get(), next.name.c_str(), text.numbered.text.c_str(),
                    static_cast<int>(next.types.size()), next.types.data()) == 0) {
    return nullptr;
  }
  sent.push_back({nullptr, &text, next.name});
  text.prepared.push_back(std::move(next));
  return &text.prepared.back().name;
}

std::optional<EngineError> PostgresConnection::Receive(const Sent& sent, Deadline deadline,
                                                       std::vector<PostgresReply>& replies) {
  if (sent.statement != nullptr && !MayBeHeldWhole(*sent.statement) &&
      PQsetSingleRowMode(handle_.get()) != 0) {
    replies.emplace_back();
    return ReceiveRows(*sent.statement, deadline, replies.back());
  }
  const PostgresResult result = Next(deadline);
  if (!result) return std::nullopt;  // broken, which the caller sees
  const ExecStatusType status = PQresultStatus(result.get());
  if (status == PGRES_COPY_OUT || status == PGRES_COPY_IN || status == PGRES_COPY_BOTH) {
    left_ = true;  // a pipeline knows no way out of a copy
    return std::nullopt;
  }
  while (Next(deadline)) {
  }
  if (sent.statement == nullptr) {
    if (status == PGRES_COMMAND_OK) return std::nullopt;
    std::erase_if(sent.text->prepared, [&](const Prepared& it) { return it.name == sent.name; });
    return ErrorOf(result.get());
  }
  if (status != PGRES_TUPLES_OK && status != PGRES_COMMAND_OK) return ErrorOf(result.get());
  PostgresReply reply{DataPacket(), TouchedBy(result.get())};
  if (!sent.statement->columns.empty()) {
    reply.packet = PacketFor(sent.statement->columns);
    auto error = AppendRows(result.get(), reply.packet);
    if (error) {
      error->text += " in: " + sent.statement->text;
      return error;
    }
    if (auto spent = Spend(reply.packet)) return spent;
  }
  replies.push_back(std::move(reply));
  return std::nullopt;
}

std::optional<EngineError> PostgresConnection::ReceiveRows(const Statement& statement,
                                                           Deadline deadline,
                                                           PostgresReply& reply) {
  reply.packet = PacketFor(statement.columns);
  std::optional<EngineError> error;
  while (const PostgresResult result = Next(deadline)) {
    const ExecStatusType status = PQresultStatus(result.get());
    const bool rows = status == PGRES_SINGLE_TUPLE || status == PGRES_TUPLES_OK;
    if (error) continue;  // what is still on its way
    error = rows ? AppendRows(result.get(), reply.packet) : ErrorOf(result.get());
    constexpr std::size_t kBetweenLooks = 16;
    if (error || reply.packet.rowCount % kBetweenLooks != 0) continue;
    if (reply.packet.Bytes() > bytesLeft_) error = Spend(reply.packet);
  }
  return error ? error : Spend(reply.packet);
}

std::optional<EngineError> PostgresConnection::Spend(const DataPacket& packet) {
  bytesLeft_ -= packet.Bytes();
  if (bytesLeft_ >= 0) return std::nullopt;
  if (!cancelled_) Cancel();
  cancelled_ = true;
  return EngineError{EngineErrorKind::TooLarge, "", "the answers take too much memory"};
}

PostgresResult PostgresConnection::Next(Deadline deadline) {
  if (left_) return nullptr;
  if (!WaitUntil(deadline)) {
    if (!cancelled_) Cancel();
    cancelled_ = true;
    if (!WaitUntil(deadline + kGrace)) {
      left_ = true;
      return nullptr;
    }
  }
  return PostgresResult(PQgetResult(handle_.get()));
}

/// False when the server has not answered by then.
bool PostgresConnection::WaitUntil(Deadline deadline) {
  while (PQisBusy(handle_.get()) != 0) {
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
        deadline - std::chrono::steady_clock::now());
    if (left.count() <= 0) return false;
    const bool unsent = PQflush(handle_.get()) == 1;
    pollfd socket{PQsocket(handle_.get()), static_cast<short>(unsent ? POLLIN | POLLOUT : POLLIN),
                  0};
    poll(&socket, 1, static_cast<int>(left.count()));
    if (PQconsumeInput(handle_.get()) == 0) return true;
  }
  return true;
}

/// Waits for the server's word without a limit, hence on a thread of its own; one that hangs keeps
/// a few of them at most.
void PostgresConnection::Cancel() {
  constexpr int kMostWaiting = 8;
  static std::atomic<int> waiting{0};
  PGcancel* cancel = ++waiting > kMostWaiting ? nullptr : PQgetCancel(handle_.get());
  if (cancel == nullptr) {
    --waiting;
    return;
  }
  std::thread([cancel] {
    std::array<char, 256> error{};
    PQcancel(cancel, error.data(), static_cast<int>(error.size()));
    PQfreeCancel(cancel);
    --waiting;
  }).detach();
}

EngineError PostgresConnection::ErrorOf(const pg_result* result) {
  if (PQresultStatus(result) == PGRES_PIPELINE_ABORTED) return Wrong("a former statement failed");
  EngineError error = PostgresErrorOf(result);
  if (error.text.starts_with(kStalePlan)) {
    stale_ = true;
    error.kind = EngineErrorKind::Retry;
  }
  return error;
}

EngineError PostgresConnection::Broken() {
  const EngineErrorKind kind = cancelled_ ? late_ : EngineErrorKind::LinkDown;
  left_ = true;
  return {kind, "", std::string("the connection is lost: ") + PQerrorMessage(handle_.get())};
}

}  // namespace orvane::server
