#include "server/providers/apply.h"

#include <algorithm>
#include <set>

#include "server/providers/change_check.h"
#include "server/providers/change_writer.h"
#include "server/providers/client_keys.h"
#include "server/providers/refusals.h"
#include "server/sessions/engine_failures.h"

namespace orvane::server {
namespace {

/// Why a batch was not written.
struct BatchSetback {
  Setback setback;
  EngineErrorKind engine = EngineErrorKind::Other;
  bool byEngine = false;  ///< the engine refused; otherwise a rule did, or a row was not as before
  bool conflict = false;
};

BatchSetback ByEngine(const EngineError& error) {
  return {ToSetback(error, "writing changes"), error.kind, true, false};
}

class Applying {
 public:
  Applying(Work& work, const ServerClass& serverClass, const ProviderRow& provider,
           const ApplyRequest& request)
      : work_(work),
        serverClass_(serverClass),
        provider_(provider),
        request_(request),
        writer_{work.Who().login, work.Who().machineName, work.Now()} {}

  Answer<ApplyAnswer> Run();

 private:
  Answer<Done> CheckKeys() const;
  void Prepare();
  Answer<Done> AllInOneGo();
  Answer<Done> OneByOne();
  void StartAnswer(const Packets& first);
  Answer<Done, BatchSetback> WriteBatch(WriteContext& context, std::span<PreparedChange> batch);
  Answer<Done, BatchSetback> WriteRows(WriteContext& context, std::span<PreparedChange> batch,
                                       bool keepAnswers);
  Answer<Done, Setback> TryOne(Transaction& transaction, std::size_t position);
  void Explain(Transaction& transaction, std::size_t position, const BatchSetback& why);
  void TakeAnswer(WriteContext& context);

  Work& work_;
  const ServerClass& serverClass_;
  const ProviderRow& provider_;
  const ApplyRequest& request_;
  const Writer writer_;
  std::vector<PreparedChange> changes_;
  ApplyAnswer answer_;
  bool stopped_ = false;  ///< a failure ended an all-or-nothing apply
};

Answer<Done> Applying::CheckKeys() const {
  if (request_.maxErrors != 0 && request_.maxErrors != -1) {
    return Failure{FailureKind::BadRequest, "Грешен брой допустими грешки."};
  }
  if (request_.delta.size() > kMostChanges) {
    return Failure{FailureKind::BadRequest, "Твърде много промени наведнъж."};
  }
  std::set<std::string_view> keys;
  for (const Change& change : request_.delta) {
    const std::string& key = change.clientKey;
    if (!IsClientKey(key) || !keys.insert(key).second) {
      return Failure{FailureKind::BadRequest, "Всяка промяна трябва да има собствен ключ."};
    }
  }
  return Done{};
}

void Applying::Prepare() {
  for (const Change& change : request_.delta) {
    PreparedChange prepared;
    prepared.requestHash = RequestHash(provider_.def.name, change);
    const auto allowed = CheckChangeRight(work_, serverClass_, provider_, change);
    auto checked = CheckChange(provider_.def, change);
    if (!allowed) {
      prepared.failure = allowed.GetFailure();
    } else if (!checked) {
      prepared.failure = checked.GetFailure();
    }
    prepared.change = checked ? *std::move(checked) : change;
    if (!prepared.failure) StampChange(provider_.def, writer_, prepared);
    changes_.push_back(std::move(prepared));
  }
}

Answer<ApplyAnswer> Applying::Run() {
  if (const auto checked = CheckKeys(); !checked) return checked.GetFailure();
  if (request_.delta.empty()) return answer_;
  Prepare();
  const bool sound = std::none_of(changes_.begin(), changes_.end(),
                                  [](const PreparedChange& c) { return c.failure.has_value(); });
  if (sound) {
    const auto written = AllInOneGo();
    if (written) return std::move(answer_);
    const FailureKind kind = written.GetFailure().kind;
    if (kind == FailureKind::SessionEnded || kind == FailureKind::LinkDown ||
        kind == FailureKind::OutcomeUnknown) {
      return written.GetFailure();
    }
  }
  const auto written = OneByOne();
  if (!written && !stopped_) return written.GetFailure();
  return std::move(answer_);
}

/// Empty outcomes, and those of changes that were carried out before.
void Applying::StartAnswer(const Packets& first) {
  answer_ = {};
  stopped_ = false;
  answer_.outcomes.resize(changes_.size());
  const auto kept = KeptAnswers(first.front());
  for (std::size_t i = 0; i < changes_.size(); ++i) {
    const auto found = kept.find(changes_[i].change.clientKey);
    if (found == kept.end()) continue;
    ChangeOutcome& outcome = answer_.outcomes[i];
    if (found->second.requestHash != changes_[i].requestHash) {
      outcome.failure =
          Failure{FailureKind::BadRequest, "Ключът на промяната вече е ползван за друга промяна."};
      continue;
    }
    outcome.applied = true;
    outcome.filled = found->second.filled;
    answer_.ownerData = found->second.ownerAnswer;
    answer_.headMoved = found->second.headMoved;
  }
}

void Applying::TakeAnswer(WriteContext& context) {
  answer_.ownerData = std::move(context.ownerAnswer);
  answer_.headMoved = std::move(context.headMoved);
}

Answer<Done> Applying::AllInOneGo() {
  const Statement keys = SelectKeptAnswers(work_.Who().login, changes_);
  return work_.Write(
      {&keys, 1}, [&](Transaction& transaction, const Packets& first) -> Answer<Done, Setback> {
        StartAnswer(first);
        const bool repeated =
            std::any_of(answer_.outcomes.begin(), answer_.outcomes.end(),
                        [](const ChangeOutcome& o) { return o.applied || o.failure; });
        if (repeated) {
          const bool all = std::all_of(answer_.outcomes.begin(), answer_.outcomes.end(),
                                       [](const ChangeOutcome& o) { return o.applied; });
          if (all) return Done{};
          return Setback{{FailureKind::Conflict, {}}, false};  // the known ones are told apart
        }
        std::vector<PreparedChange> batch = changes_;
        WriteContext context{work_, transaction, request_.ownerData, {}, {}};
        const auto written = WriteBatch(context, batch);
        if (!written) return written.GetFailure().setback;
        for (std::size_t i = 0; i < batch.size(); ++i) {
          answer_.outcomes[i].applied = true;
          answer_.outcomes[i].filled = std::move(batch[i].filled);
        }
        TakeAnswer(context);
        return Done{};
      });
}

Answer<Done> Applying::OneByOne() {
  const Statement keys = SelectKeptAnswers(work_.Who().login, changes_);
  return work_.Write({&keys, 1},
                     [&](Transaction& transaction, const Packets& first) -> Answer<Done, Setback> {
                       StartAnswer(first);
                       bool wrote = false;
                       for (std::size_t i = 0; i < changes_.size(); ++i) {
                         if (answer_.outcomes[i].applied) continue;
                         const auto tried = TryOne(transaction, i);
                         if (!tried) return tried.GetFailure();
                         const bool failed = answer_.outcomes[i].failure.has_value();
                         wrote = wrote || !failed;
                         if (!failed || request_.maxErrors != 0) continue;
                         // All or nothing: what was written in this transaction is undone with it,
                         // and so is what that made of the head.
                         const Failure failure = *answer_.outcomes[i].failure;
                         ChangeOutcome stopper = std::move(answer_.outcomes[i]);
                         NamedValues head = std::move(answer_.headMoved);
                         StartAnswer(first);
                         answer_.outcomes[i] = std::move(stopper);
                         if (!wrote) answer_.headMoved = std::move(head);
                         stopped_ = true;
                         return Setback{failure, false};
                       }
                       return Done{};
                     });
}

/// Writes one change under a savepoint and fills its outcome; a setback ends the transaction.
Answer<Done, Setback> Applying::TryOne(Transaction& transaction, std::size_t position) {
  ChangeOutcome& outcome = answer_.outcomes[position];
  if (outcome.failure) return Done{};
  if (changes_[position].failure) {
    outcome.failure = changes_[position].failure;
    return Done{};
  }
  const auto saved = transaction.Savepoint();
  if (!saved) return ToSetback(saved.GetFailure(), "making a savepoint");
  std::vector<PreparedChange> batch = {changes_[position]};
  WriteContext context{work_, transaction, request_.ownerData, {}, {}};
  const auto written = WriteBatch(context, batch);
  if (written) {
    const auto released = transaction.ReleaseSavepoint();
    if (!released) return ToSetback(released.GetFailure(), "releasing a savepoint");
    outcome.applied = true;
    outcome.filled = std::move(batch.front().filled);
    TakeAnswer(context);
    return Done{};
  }
  const BatchSetback& why = written.GetFailure();
  if (why.setback.retry) return why.setback;
  const auto undone = transaction.RollbackToSavepoint();
  if (!undone) return ToSetback(undone.GetFailure(), "going back to a savepoint");
  if (why.conflict) answer_.headMoved = std::move(context.headFound);
  Explain(transaction, position, why);
  return Done{};
}

void Applying::Explain(Transaction& transaction, std::size_t position, const BatchSetback& why) {
  const Change& change = changes_[position].change;
  ChangeOutcome& outcome = answer_.outcomes[position];
  outcome.failure = why.setback.failure;
  if (why.conflict) {
    const auto present = transaction.Query(PresentRow(provider_.def, change));
    if (present && present->rowCount == 1) outcome.present = RowValues(*present, 0);
    const auto last = transaction.Query(LastChange(provider_.def, change));
    if (last && last->rowCount == 1) {
      outcome.changedBy = last->At(0, "UserName").ToText();
      outcome.changedOn = last->At(0, "ChangedOn").AsStamp().value_or(Stamp{});
    }
    outcome.failure = ExplainConflict(provider_.def, provider_.rules, change, outcome);
    return;
  }
  const bool refused =
      why.byEngine &&
      (why.engine == EngineErrorKind::Unique || why.engine == EngineErrorKind::ForeignKey ||
       why.engine == EngineErrorKind::NotNull || why.engine == EngineErrorKind::Check);
  if (!refused) return;
  outcome.failure = ExplainRefusal(transaction, provider_.def, provider_.rules, change, why.engine);
}

Answer<Done, BatchSetback> Applying::WriteBatch(WriteContext& context,
                                                std::span<PreparedChange> batch) {
  const WriteRules& rules = provider_.rules;
  if (rules.beforeWrite) {
    const auto ready = rules.beforeWrite(context, batch);
    if (!ready) return BatchSetback{ready.GetFailure(), EngineErrorKind::Other, false, false};
  }
  const auto written = WriteRows(context, batch, rules.afterWrite == nullptr);
  if (!written || !rules.afterWrite) return written;
  const auto settled = rules.afterWrite(context, batch);
  if (!settled) return BatchSetback{settled.GetFailure(), EngineErrorKind::Other, false, false};
  std::vector<Statement> keys;
  for (const PreparedChange& change : batch)
    keys.push_back(KeepAnswer(context, change));
  const auto kept = context.transaction.ExecuteAll(keys);
  if (!kept) return ByEngine(kept.GetFailure());
  return Done{};
}

Answer<Done, BatchSetback> Applying::WriteRows(WriteContext& context,
                                               std::span<PreparedChange> batch, bool keepAnswers) {
  std::vector<Statement> statements;
  std::vector<std::size_t> rows;  // positions of the statements that touch the provider's row
  for (const PreparedChange& prepared : batch) {
    rows.push_back(statements.size());
    statements.push_back(WriteStatement(provider_.def, prepared.change));
    const bool changesNothing =
        prepared.change.kind == ChangeKind::Update && prepared.change.after.empty();
    if (!changesNothing) {
      statements.push_back(HistoryStatement(provider_.def, writer_, prepared.change));
    }
    if (keepAnswers) statements.push_back(KeepAnswer(context, prepared));
  }
  const auto touched = context.transaction.ExecuteAll(statements);
  if (!touched) return ByEngine(touched.GetFailure());
  for (const std::size_t row : rows) {
    if ((*touched)[row] == 1) continue;
    return BatchSetback{{{FailureKind::Conflict, {}}, false}, EngineErrorKind::Other, false, true};
  }
  return Done{};
}

}  // namespace

Answer<ApplyAnswer> ApplyDelta(Work& work, const ServerClass& serverClass,
                               const ProviderRow& provider, const ApplyRequest& request) {
  if (!provider.def.Writable()) {
    return Failure{FailureKind::BadRequest, "Тези данни само се четат."};
  }
  if (!serverClass.UseFrom(work.PointNo())) {
    return CheckRight(work, serverClass, Use::Read, Right::Open).GetFailure();
  }
  return Applying(work, serverClass, provider, request).Run();
}

}  // namespace orvane::server
