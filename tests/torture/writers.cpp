#include "torture/writers.h"

#include <chrono>
#include <set>

#include "contract/points.h"
#include "contract/purchase_request.h"
#include "packet/clock.h"

namespace orvane::torture {
namespace {

constexpr std::chrono::milliseconds kBreath{50};
constexpr std::chrono::seconds kPatience{60};

RemoteOptions Options(const std::string& address) {
  RemoteOptions options;
  options.address = address;
  options.connectMs = 2'000;
  options.fetchMs = 45'000;
  options.applyMs = 45'000;
  return options;
}

ApplyRequest RowOf(std::int64_t id, const std::string& clientKey) {
  return {std::string(purchase_request::kServerClass),
          "dspPurchaseOrderDet",
          0,
          {},
          {{ChangeKind::Insert,
            clientKey,
            {},
            {{"PurchaseOrderId", id},
             {"PurchaseOrderVer", 1},
             {"RowNumber", 1},
             {"SerialNumber", 1},
             {"Measure", 100},
             {"Quantity", 2.0},
             {"Numerator", 1},
             {"RowNumerator", 1},
             {"CurrSumWithoutVAT", Decimal(0, 4)}}}}};
}

bool MayBeSentAgain(FailureKind kind) {
  return kind == FailureKind::LinkDown || kind == FailureKind::OutcomeUnknown ||
         kind == FailureKind::Conflict || kind == FailureKind::Internal;
}

}  // namespace

std::unique_ptr<Visitor> LetIn(const std::string& address, std::chrono::seconds within,
                               const std::string& name) {
  const auto end = std::chrono::steady_clock::now() + within;
  auto server = RemoteServer::Open(Options(address));
  if (!server) return nullptr;
  LoginRequest login;
  login.login = name;
  login.password = kPassword;
  login.machineName = "TORTURE";
  login.programVersion = "0.1.0";
  do {
    const auto session = (*server)->LogIn(login);
    if (session) {
      return std::make_unique<Visitor>(Visitor{
          *std::move(server),
          {session->ticket, kOrvaneModuleNo, static_cast<std::int32_t>(Point::PurchaseRequests)}});
    }
    std::this_thread::sleep_for(kBreath);
  } while (std::chrono::steady_clock::now() < end);
  return nullptr;
}

ApplyRequest NewRequest(const std::string& description, const std::string& clientKey) {
  return {std::string(purchase_request::kServerClass),
          "dspPurchaseOrder",
          0,
          {},
          {{ChangeKind::Insert,
            clientKey,
            {},
            {{"POIdNumber", -1},
             {"POVersion", 0},
             {"DocumentDate", TimeZone{}.DayOf(SystemClock().Now())},
             {"Description", description},
             {"CostCenter", 200},
             {"Notifier", 101},
             {"Supplier", 1001},
             {"KindSupply", 3},
             {"IncTranspInPrice", 1},
             {"KindCurrency", 1},
             {"RateOfExchange", Decimal(10'000'000, 7)},
             {"CurrSumPurchaseOrder", Decimal(0, 4)},
             {"SumPurchaseOrder", Decimal(0, 4)},
             {"Status", 2},
             {"OldVersion", false}}}}};
}

void Book::Acknowledge(const std::string& description, std::int64_t id) {
  const std::lock_guard lock(mutex_);
  acknowledged_[description] = id;
}

void Book::Note(const std::string& sentence) {
  const std::lock_guard lock(mutex_);
  ++heard_[sentence];
}

std::size_t Book::Acknowledged() const {
  const std::lock_guard lock(mutex_);
  return acknowledged_.size();
}

int Book::Heard(const std::string& words) const {
  const std::lock_guard lock(mutex_);
  int times = 0;
  for (const auto& [sentence, count] : heard_) {
    if (sentence.find(words) != std::string::npos) times += count;
  }
  return times;
}

std::vector<std::string> Book::Differences(Database& database) const {
  const std::lock_guard lock(mutex_);
  const Statement select{
      "select p.Description, p.POIdNumber, (select count(*) from PurchaseOrderDet d where"
      " d.PurchaseOrderId = p.POIdNumber) as Parts from PurchaseOrder p",
      {},
      {{"Description", ValueKind::Memo, 0},
       {"Id", ValueKind::Int32, 0},
       {"Parts", ValueKind::Code, 0}}};
  const auto packets = database.ReadSnapshot({&select, 1});
  if (!packets) return {packets.GetFailure().text};
  std::set<std::string> seen;
  int doubled = 0;
  int torn = 0;
  for (std::size_t row = 0; row < packets->front().rowCount; ++row) {
    const std::string description = packets->front().At(row, "Description").ToText();
    if (!seen.insert(description).second) ++doubled;
    const auto own = acknowledged_.find(description);
    if (own == acknowledged_.end()) continue;
    if (packets->front().At(row, "Id") != Variant(own->second)) ++doubled;
    if (packets->front().At(row, "Parts") != Variant(1)) ++torn;
  }
  int lost = 0;
  for (const auto& [description, id] : acknowledged_)
    lost += seen.count(description) == 0 ? 1 : 0;
  std::vector<std::string> differences;
  if (lost > 0) differences.push_back(std::to_string(lost) + " lost");
  if (doubled > 0) differences.push_back(std::to_string(doubled) + " doubled");
  if (torn > 0) differences.push_back(std::to_string(torn) + " torn");
  for (const auto& [sentence, count] : heard_) {
    if (sentence.starts_with("refused: ")) {
      differences.push_back(std::to_string(count) + " × " + sentence);
    }
  }
  return differences;
}

Writers::Writers(Book& book, const std::string& address, const std::string& series, int count)
    : book_(book), atWork_(count) {
  for (int i = 0; i < count; ++i) {
    threads_.emplace_back([this, address, own = series + "-" + std::to_string(i)] {
      Write(address, own);
      --atWork_;
    });
  }
}

Writers::~Writers() {
  Finish();
}

void Writers::Finish() {
  finish_ = true;
  const auto end = std::chrono::steady_clock::now() + kPatience;
  while (atWork_ > 0 && std::chrono::steady_clock::now() < end)
    std::this_thread::sleep_for(kBreath);
  giveUp_ = true;
  for (std::thread& thread : threads_)
    thread.join();
  threads_.clear();
}

void Writers::Write(const std::string& address, const std::string& series) {
  std::unique_ptr<Visitor> visitor;
  for (int i = 0; !finish_; ++i) {
    const std::string description = series + "-" + std::to_string(i);
    const auto head = Send(address, visitor, NewRequest(description, description + "-h"));
    if (!head) continue;
    const std::int64_t id = head->ownerData.AsInt().value_or(0);
    if (!Send(address, visitor, RowOf(id, description + "-r"))) continue;
    book_.Acknowledge(description, id);
  }
}

std::unique_ptr<ApplyAnswer> Writers::Send(const std::string& address,
                                           std::unique_ptr<Visitor>& visitor,
                                           const ApplyRequest& request) {
  while (!giveUp_) {
    if (!visitor) visitor = LetIn(address, std::chrono::seconds(1));
    if (!visitor) continue;
    auto answer = visitor->server->Apply(visitor->caller, request);
    const std::optional<Failure> failure =
        !answer ? std::optional(answer.GetFailure()) : answer->outcomes.front().failure;
    if (answer && answer->outcomes.front().applied)
      return std::make_unique<ApplyAnswer>(*std::move(answer));
    if (failure && failure->kind == FailureKind::SessionEnded) {
      visitor.reset();
    } else if (failure && MayBeSentAgain(failure->kind)) {
      book_.Note(failure->message);
      std::this_thread::sleep_for(kBreath);
    } else {
      book_.Note("refused: " + (failure ? failure->message : "nothing"));
      return nullptr;
    }
  }
  return nullptr;
}

}  // namespace orvane::torture
