// A working day in thirty seconds: 32 clients who load and move, open lists, look up names, post
// rows and decide, over loopback, against 32 who do the same with statements written by hand and
// the empty calls that carry them. Both take turns of ten seconds on one company; a row of the
// table is the seconds per step of each side, so the budget says how much of the bare throughput
// there is at least.

#include <spdlog/spdlog.h>

#include <algorithm>
#include <atomic>
#include <mutex>
#include <thread>

#include "bare/statements.h"
#include "contract/purchase_request.h"
#include "contract/system.h"
#include "report_pages.h"
#include "request_calls.h"
#include "server/demo/demo_users.h"
#include "stage.h"

namespace orvane::bench {
namespace {

constexpr int kClients = 32;
constexpr auto kTurn = std::chrono::seconds(10);
constexpr int kTurns = 3;
/// At least so much of the bare throughput.
constexpr double kLeast = 0.6;

/// Steps that a client goes round by: twenty are a working day's mixture. About half of the clients
/// have a request of their own to change, or one to decide on; the others load instead.
enum class Step { Load, Move, List, Lookup, Post, Decide };
constexpr Step kDay[] = {
    Step::Load,   Step::Move, Step::Lookup, Step::Move,   Step::Post, Step::List,   Step::Load,
    Step::Lookup, Step::Move, Step::Decide, Step::Load,   Step::Post, Step::Move,   Step::Load,
    Step::Lookup, Step::List, Step::Move,   Step::Lookup, Step::Load, Step::Decide,
};

FetchRequest SearchOf(std::string_view serverClass, std::string_view provider, std::string sql) {
  FetchRequest fetch;
  fetch.serverClass = serverClass;
  fetch.provider = provider;
  fetch.rowLimit = 80;
  fetch.sql = std::move(sql);
  return fetch;
}

std::string BeginOf(int number) {
  return "проба 0" + std::to_string(100 + number % 900).substr(1);
}

/// A page of the report, and one of names that begin so.
FetchRequest Requests() {
  return SearchOf(purchase_request::kReportClass, purchase_request::report::dspResult.name,
                  std::string(kReportSearch) + "AND po.Status = 2\nORDER BY po.POIdNumber");
}
FetchRequest Names(int number) {
  return SearchOf(system::kSearchClass, system::kSearchProvider,
                  std::string(kSupplyListSearch) + " AND cbName LIKE '" + BeginOf(number) +
                      "%' ORDER BY cbName");
}

/// What one client does, either way.
class Client {
 public:
  Client(Stage& stage, int number, const std::string& searcher, std::mutex& writers)
      : stage_(stage),
        number_(number),
        writers_(writers),
        remote_(Must(RemoteServer::Open({.address = stage.Address()}))),
        bare_(OpenBare(stage.Company().engine, stage.Company().location)),
        mine_{*remote_, stage.LogIn("admin"), "admin"},
        entered_(EnteredRequest(stage.Company(), number)),
        searcher_(stage.LogIn(searcher)) {}

  /// Decides on a request that waits for somebody.
  void Become(const std::string& login, const Turn& turn) {
    approver_ = {stage_.LogIn(login), login};
    turn_ = turn;
  }

  /// Does the next steps until `over`; their number.
  std::int64_t Work(bool byHand, const std::atomic<bool>& over) {
    std::int64_t steps = 0;
    for (; !over; ++steps) {
      Step step = kDay[static_cast<std::size_t>(number_ * 7 + round_) % std::size(kDay)];
      const bool nothing =
          (step == Step::Decide && turn_.request == 0) || (step == Step::Post && entered_ == 0);
      if (nothing) step = Step::Load;
      ++round_;
      byHand ? DoByHand(step) : Do(step);
    }
    return steps;
  }

 private:
  /// Some request or other, different from round to round.
  std::int64_t Some() const {
    return 1 + (std::int64_t{round_} * 7919 + number_ * 31) % stage_.Company().documents;
  }
  std::string Key() const {
    static const std::string series = std::to_string(SystemClock().Now().micros);
    return series + "-mixed-" + std::to_string(number_) + "-" + std::to_string(round_);
  }

  void Do(Step step) {
    switch (step) {
      case Step::Load:
        LoadRequest(mine_, Nav::ByKey, Some());
        return;
      case Step::Move:
        LoadRequest(mine_, round_ % 2 == 0 ? Nav::Next : Nav::Previous, Some());
        return;
      case Step::List:
        Must(mine_.door.Fetch(At(searcher_, Point::PurchaseRequestReport), {Requests()}));
        return;
      case Step::Lookup:
        Must(mine_.door.Fetch(searcher_, {Names(round_)}));
        return;
      case Step::Post:
        PostRow(mine_, entered_, Key());
        return;
      case Step::Decide: {
        const bool gives = !given_;
        const Visitor approver{*remote_, approver_.caller, approver_.login};
        const bool taken = Decide(approver, turn_, gives ? ApprovalWaiting : ApprovalGiven,
                                  gives ? ApprovalGiven : ApprovalWaiting, Key());
        if (!taken) std::abort();
        given_ = gives;
        return;
      }
    }
  }

  void Read(const std::vector<BareStatement>& statements) {
    bare_->Read(statements);
    stage_.Empty()();
  }
  void Write(const std::vector<BareStatement>& statements) {
    {
      // Writers by hand stand in a queue as well: SQLite's own waiting is far slower.
      std::unique_lock lock(writers_, std::defer_lock);
      if (stage_.Company().engine == Engine::Sqlite) lock.lock();
      bare_->Write(statements);
    }
    stage_.Empty()();
  }

  void DoByHand(Step step) {
    switch (step) {
      case Step::Load:
      case Step::Move:
        return Read(RowsOfRequest(Some(), 1));
      case Step::List:
        return Read({PageOfRequests("po.Status = 2")});
      case Step::Lookup:
        return Read({EntriesThatBegin(BeginOf(round_))});
      case Step::Post: {
        Read(RowsOfRequest(entered_, 1));
        RowPost post;
        post.id = entered_;
        post.quantity = 1 + round_ % 2;
        post.key = Key();
        return Write(WritesOf(post));
      }
      case Step::Decide:
        return Write(DecisionOf({turn_.request, turn_.version, turn_.level, Key()}));
    }
  }

  static Caller At(Caller caller, Point point) {
    caller.pointNo = static_cast<std::int32_t>(point);
    return caller;
  }

  struct Approver {
    Caller caller;
    std::string login;
  };

  Stage& stage_;
  const int number_;
  std::mutex& writers_;
  std::unique_ptr<RemoteServer> remote_;
  std::unique_ptr<Bare> bare_;
  Visitor mine_;
  const std::int64_t entered_;
  const Caller searcher_;  ///< a user has one running search, so that clients are many users
  Approver approver_;
  Turn turn_;
  bool given_ = false;
  int round_ = 0;
};

/// Requests whose first level waits, each with somebody who says to have the turn.
struct Waiting {
  Turn turn;
  std::string login;
  bool given = false;  ///< as a run that was broken off leaves it
};
std::vector<Waiting> WaitingRequests(const BenchCompany& company) {
  const Statement select{
      "select o.POIdNumber, a.SendingNumber, a.Status, e.Login from PurchaseOrder o join "
      "PurchaseOrderAdm a"
      " on a.PurchaseOrderId = o.POIdNumber and a.PurchaseOrderVer = o.POVersion and"
      " a.ConfirmationLevel = 1 and a.Status in (2, 3) join ApprovalTurn t on t.DocumentId = "
      "o.POIdNumber"
      " and t.DocumentVersion = o.POVersion join Employees e on e.Employee = t.Employee"
      " where o.Status in (3, 4, 5) and o.OldVersion = 0 and o.POVersion = 1 and o.AnnulOn is null"
      " and e.Login is not null order by o.POIdNumber desc limit 400",
      {},
      {{"Id", ValueKind::Int32, 0},
       {"Sending", ValueKind::Int32, 0},
       {"Status", ValueKind::Byte, 0},
       {"Login", ValueKind::String, 10}}};
  const auto packets = company.database->ReadSnapshot({&select, 1});
  if (!packets) std::abort();
  const DataPacket& rows = packets->front();
  std::vector<Waiting> waiting;
  for (std::size_t row = 0; row < rows.rowCount; ++row) {
    const auto sending = static_cast<int>(rows.At(row, "Sending").AsInt().value_or(0));
    waiting.push_back({{rows.At(row, "Id").AsInt().value_or(0), 1, 1, sending},
                       rows.At(row, "Login").ToText(),
                       rows.At(row, "Status") == Variant(int{ApprovalGiven})});
  }
  return waiting;
}

class WorkingDay {
 public:
  explicit WorkingDay(BenchCompany company) : stage_(std::move(company)) {
    const std::vector<std::string> searchers = Searchers();
    for (int number = 0; number < kClients; ++number) {
      const std::string& searcher = searchers[static_cast<std::size_t>(number) % searchers.size()];
      clients_.push_back(std::make_unique<Client>(stage_, number, searcher, writers_));
    }
    std::size_t placed = 0;
    std::int64_t last = 0;
    for (const Waiting& one : WaitingRequests(stage_.Company())) {
      if (placed == clients_.size()) break;
      if (one.turn.request == last || !HasTurn(one)) continue;
      last = one.turn.request;
      clients_[placed++]->Become(one.login, one.turn);
    }
    if (placed > 0) return;
    std::fprintf(stderr, "bench: no request waits for a decision\n");
    std::exit(1);
  }

  Timed Working(bool byHand) {
    return [this, byHand] {
      std::atomic<bool> over{false};
      std::atomic<std::int64_t> steps{0};
      std::vector<std::thread> threads;
      const double seconds = Seconds([&] {
        for (const auto& client : clients_)
          threads.emplace_back([&, who = client.get()] { steps += who->Work(byHand, over); });
        std::this_thread::sleep_for(kTurn);
        over = true;
        for (std::thread& thread : threads)
          thread.join();
      });
      return seconds / static_cast<double>(steps);
    };
  }

  std::string Name() const { return stage_.Company().Name(); }

 private:
  /// Users who may ask for what the clients search.
  std::vector<std::string> Searchers() {
    std::vector<std::string> logins;
    for (const DemonstrationUser& user : DemonstrationUsers()) {
      const auto may = [&](Point point, const FetchRequest& search) {
        return stage_.InProcess().Fetch(stage_.As(user.login, point), {search}).Ok();
      };
      if (may(Point::PurchaseRequests, Names(0)) && may(Point::PurchaseRequestReport, Requests()))
        logins.push_back(user.login);
    }
    return logins;
  }

  /// Decides and takes it back.
  bool HasTurn(const Waiting& one) {
    const Visitor visitor{stage_.InProcess(), stage_.As(one.login), one.login};
    const std::string key =
        std::to_string(SystemClock().Now().micros) + "-turn-" + std::to_string(one.turn.request);
    if (one.given && !Decide(visitor, one.turn, ApprovalGiven, ApprovalWaiting, key + "-again"))
      return false;
    return Decide(visitor, one.turn, ApprovalWaiting, ApprovalGiven, key) &&
           Decide(visitor, one.turn, ApprovalGiven, ApprovalWaiting, key + "-back");
  }

  Stage stage_;
  std::mutex writers_;
  std::vector<std::unique_ptr<Client>> clients_;
};

}  // namespace
}  // namespace orvane::bench

int main(int argc, char** argv) {
  using namespace orvane;
  using namespace orvane::bench;
  spdlog::set_level(spdlog::level::warn);
  std::vector<std::unique_ptr<WorkingDay>> days;
  for (const Engine engine : EnginesAtHand()) {
    days.push_back(std::make_unique<WorkingDay>(OpenCompany(engine, SizesAsked().front())));
    AddPair("Mixed/32Clients/" + days.back()->Name(), 1 / kLeast, kTurns,
            {days.back()->Working(false), days.back()->Working(true)});
  }
  return RunPairs(argc, argv);
}
