#include "server/demo/demo_request.h"

#include <algorithm>

#include "server/demo/demo_levels.h"

namespace orvane::server {
namespace {

constexpr std::int64_t kMinute = 60'000'000;
constexpr std::int64_t kDay = 24 * 60 * kMinute;
constexpr int kFirmDays = 30;  // the firm's own term of payment

Stamp Later(Stamp moment, int minutes) {
  return {moment.micros + minutes * kMinute};
}

std::vector<DemoLevel> LevelsOf(const DemoRequest& request) {
  std::vector<DemoLevel> levels;
  for (const DemoLevel& level : DemoLevels(DocumentKind::PurchaseRequest, request.kind)) {
    if (level.fromSum * 100 <= request.cents) levels.push_back(level);
  }
  return levels;
}

/// What can be reached with so many levels.
int Reachable(int status, std::size_t levels) {
  const bool undecided = status == Rejected || status == ForApproval || status == PartlyApproved;
  if (levels == 0 && undecided) return Approved;
  if (levels == 1 && status == PartlyApproved) return ForApproval;
  return status;
}

/// How many of the lowest levels approved.
int Given(int status, int levels, DemoRandom& random) {
  if (status >= Approved) return levels;
  if (status == PartlyApproved) return random.Between(1, levels - 1);
  return status == Rejected ? random.Below(levels) : 0;
}

/// The turn of a level comes to its head and to whoever stands in for him that day.
void TakeTurn(DemoRequest& request, const DemoLevel& level, Stamp moment) {
  const int kind = static_cast<int>(level.approver);
  const Date day = TimeZone{}.DayOf(moment);
  for (const std::int64_t employee :
       {DemoHead(*request.center, kind), DemoDeputy(*request.center, kind, day)}) {
    const auto& turns = request.turns;
    const bool known = std::find(turns.begin(), turns.end(), employee) != turns.end();
    if (employee != 0 && !known) request.turns.push_back(employee);
  }
}

void Decide(DemoRequest& request, const std::vector<DemoLevel>& levels, DemoRandom& random) {
  const int given = Given(request.status, static_cast<int>(levels.size()), random);
  Stamp when = request.sent;
  int number = 0;
  for (const DemoLevel& level : levels) {
    DemoDecision decision;
    decision.level = level.level;
    decision.approver = level.approver;
    decision.head = DemoHead(*request.center, static_cast<int>(level.approver));
    if (number <= given) TakeTurn(request, level, when);
    if (number < given) decision.status = ApprovalGiven;
    if (number == given && request.status == Rejected) decision.status = ApprovalRejected;
    // Nobody decides after the demonstration's last day.
    const bool haste = request.day.PlusDays(6) > kDemoLastDay;
    when = Later(when, random.Between(10, haste ? 60 : 150));
    if (!haste) when.micros += random.Below(3) * kDay;
    decision.when = when;
    request.decisions.push_back(decision);
    ++number;
  }
}

Date Earlier(Date left, Date right) {
  return std::min(left, right);
}

/// Sums with VAT, each row rounded.
std::int64_t WithVat(const DemoRequest& request) {
  std::int64_t cents = 0;
  for (const DemoRequestRow& row : request.rows)
    cents += (row.currCents * (100 + DemoVatPercent(*row.entry)) + 50) / 100;
  return cents;
}

int TermOf(const DemoRequest& request) {
  if (request.contract && request.contract->paymentDays != 0) return request.contract->paymentDays;
  if (request.supplier && request.supplier->paymentDays != 0) return request.supplier->paymentDays;
  return kFirmDays;
}

void Pay(DemoRequest& request, Date invoice, std::int64_t cents, bool advance) {
  request.payments.push_back({invoice, cents, advance, invoice.PlusDays(TermOf(request))});
}

}  // namespace

void FollowWorkflow(DemoRequest& request, DemoRandom& random) {
  request.created =
      TimeZone{}.At(request.day, random.Between(8, 13), random.Below(60), random.Below(60));
  const auto levels = LevelsOf(request);
  request.status = Reachable(request.status, levels.size());
  const bool everSent = request.status != Entered || random.Percent(15);
  request.sendings = everSent ? (random.Percent(8) ? 2 : 1) : 0;
  // What nobody has to approve is approved at once and cannot be taken back.
  const int most = levels.empty() ? (request.status == Entered ? 0 : 1) : 2;
  request.sendings = std::min(request.sendings, most);
  request.sent = Later(request.created, random.Between(15, 90));
  if (request.status == Entered && request.sendings > 0)
    TakeTurn(request, levels.front(), request.sent);
  if (request.status != Entered) Decide(request, levels, random);
  request.annulledOn = request.decisions.empty() ? Later(request.sent, 30)
                                                 : Later(request.decisions.back().when, 45);
}

void PlanRequest(DemoRequest& request, DemoRandom& random) {
  request.delivered =
      request.supplier && !request.oldVersion &&
      (request.status == Fulfilling || (request.status == Completed && random.Percent(50)));
  Date planned = request.day.PlusDays(random.Between(7, 45));
  if (request.delivered) planned = Earlier(planned, kDemoLastDay);
  request.deliveries.push_back(planned);
  if (random.Percent(20)) request.deliveries.push_back(planned.PlusDays(random.Between(10, 30)));
  if (!request.supplier || !random.Percent(70)) return;
  const std::int64_t cents = WithVat(request);
  const std::int64_t advance = random.Percent(15) ? cents * 3 / 10 : 0;
  if (advance > 0) Pay(request, request.day.PlusDays(2), advance, true);
  if (cents > advance) Pay(request, planned.PlusDays(1), cents - advance, false);
}

}  // namespace orvane::server
