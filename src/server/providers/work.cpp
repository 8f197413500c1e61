#include "server/providers/work.h"

#include <spdlog/spdlog.h>

#include "server/sessions/engine_failures.h"

namespace orvane::server {
namespace {

constexpr int kWriteAttempts = 4;

std::vector<Statement> BehindGuard(const Statement& guard, std::span<const Statement> statements) {
  std::vector<Statement> all;
  all.reserve(statements.size() + 1);
  all.push_back(guard);
  all.insert(all.end(), statements.begin(), statements.end());
  return all;
}

}  // namespace

Setback ToSetback(const EngineError& error, std::string_view doing) {
  if (error.kind == EngineErrorKind::Retry) {
    spdlog::info("{}: {}, may be tried again", doing, error.text);
    return {{FailureKind::Conflict,
             "Други потребители променят същите данни в момента. Опитайте отново."},
            true};
  }
  return {ToFailure(error, doing), false};
}

Work::Work(Database& database, Sessions& sessions, std::shared_ptr<const Session> session,
           const Company& company, const Caller& caller, Stamp now, DocumentOptions options)
    : database_(database),
      sessions_(sessions),
      session_(std::move(session)),
      company_(company),
      caller_(caller),
      now_(now),
      options_(options) {}

Answer<Packets> Work::Read(std::span<const Statement> statements) {
  auto packets = database_.ReadSnapshot(BehindGuard(sessions_.Guard(*session_), statements));
  if (!packets) return ToFailure(packets.GetFailure(), "reading");
  if (const auto taken = TakeGuard(*packets); !taken) return taken.GetFailure();
  return std::move(*packets);
}

Answer<Packets> Work::Search(std::span<const Statement> statements, SearchLimits limits) {
  auto packets = database_.Search(sessions_.Guard(*session_), statements, limits);
  if (!packets) return ToFailure(packets.GetFailure(), "searching");
  if (const auto taken = TakeGuard(*packets); !taken) return taken.GetFailure();
  return std::move(*packets);
}

Answer<Done> Work::Write(std::span<const Statement> first, const WriteBody& body) {
  const std::vector<Statement> guarded = BehindGuard(sessions_.Guard(*session_), first);
  for (int attempt = 1;; ++attempt) {
    const auto written = TryWrite(guarded, body);
    if (written) return Done{};
    const Setback& setback = written.GetFailure();
    if (!setback.retry || attempt == kWriteAttempts) return setback.failure;
  }
}

Answer<Done, Setback> Work::TryWrite(std::span<const Statement> guarded, const WriteBody& body) {
  auto transaction = database_.Begin();
  if (!transaction) return ToSetback(transaction.GetFailure(), "beginning a transaction");
  auto packets = (*transaction)->QueryAll(guarded);
  if (!packets) return ToSetback(packets.GetFailure(), "reading before a write");
  if (const auto taken = TakeGuard(*packets); !taken) return Setback{taken.GetFailure(), false};
  auto done = body(**transaction, *packets);
  if (!done) return done.GetFailure();
  const auto committed = (*transaction)->Commit();
  if (committed) return Done{};
  const EngineError& error = committed.GetFailure();
  Setback setback = ToSetback(error, "committing");
  if (error.kind == EngineErrorKind::LinkDown || error.kind == EngineErrorKind::Late) {
    setback.failure = {FailureKind::OutcomeUnknown,
                       "Връзката с базата от данни прекъсна по време на записа. Не е известно дали "
                       "промените са записани."};
  }
  return setback;
}

Answer<Done> Work::TakeGuard(Packets& packets) {
  guarded_ = true;
  const GuardVerdict verdict = sessions_.Judge(*session_, packets.front());
  packets.erase(packets.begin());
  if (verdict == GuardVerdict::Current) return Done{};
  if (verdict == GuardVerdict::OtherSchema) return OtherSchemaFailure();
  sessions_.Forget(session_->ticketHash);
  stale_ = verdict == GuardVerdict::Changed;
  return SessionEndedFailure();
}

}  // namespace orvane::server
