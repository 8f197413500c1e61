#include "server/demo/demo_request.h"

#include <algorithm>
#include <cassert>

namespace orvane::server {
namespace {

constexpr Date kFirstDay{20094};            // Monday, 6 January 2025
constexpr std::int64_t kWorkingDays = 303;  // to the last day

/// Of every thousand requests one is made by somebody who sees no others.
constexpr std::int64_t kRareEvery = 1000;
constexpr std::int64_t kRareNumber = 500;
constexpr std::int64_t kRareNotifier = 1012;
constexpr std::int64_t kRareCenter = 12001;
constexpr std::int64_t kBuyer = 1007;
constexpr std::string_view kBuyersLogin = "todorova";
constexpr std::string_view kClerkOfProduction = "ivanova";

struct Weighed {
  int what;
  int weight;  ///< of a hundred
};
constexpr Weighed kShopKinds[] = {{kRawMaterials, 38},  {kOtherMaterials, 22}, {kWares, 11},
                                  {kPricedServices, 9}, {kRepairs, 7},         {kServices, 5},
                                  {kMixed, 3},          {kSubscriptions, 2},   {kCapital, 2},
                                  {kEntertainment, 1}};
constexpr Weighed kOfficeKinds[] = {{kOtherMaterials, 46}, {kServices, 19},
                                    {kSubscriptions, 14},  {kEntertainment, 9},
                                    {kPricedServices, 6},  {kRepairs, 6}};

/// Statuses by age; below zero: annulled in that status.
constexpr Weighed kOldStatuses[] = {{Completed, 79}, {Fulfilling, 6}, {Approved, 4}, {Rejected, 5},
                                    {Entered, 1},    {-Entered, 4},   {-Rejected, 1}};
constexpr Weighed kLateStatuses[] = {{Completed, 44},     {Fulfilling, 18}, {Approved, 20},
                                     {PartlyApproved, 5}, {ForApproval, 4}, {Rejected, 4},
                                     {Entered, 3},        {-Entered, 2}};
constexpr Weighed kNewStatuses[] = {{Completed, 3},       {Fulfilling, 8},   {Approved, 24},
                                    {PartlyApproved, 15}, {ForApproval, 22}, {Rejected, 3},
                                    {Entered, 24},        {-Entered, 1}};
constexpr Weighed kOrderedStatuses[] = {{Completed, 55}, {Fulfilling, 25}, {Approved, 20}};
constexpr Weighed kReplacedStatuses[] = {{Entered, 40}, {Rejected, 35}, {Approved, 25}};

int Draw(std::span<const Weighed> choices, DemoRandom& random) {
  int at = random.Below(100);
  for (const Weighed& choice : choices) {
    if (at < choice.weight) return choice.what;
    at -= choice.weight;
  }
  return choices.front().what;
}

bool IsPriced(DemoKind kind) {
  return kind == kRawMaterials || kind == kWares || kind == kPricedServices;
}

bool IsShop(const DemoCostCenter& center) {
  const std::int64_t department = center.section / 10;
  constexpr std::int64_t kShops[] = {1, 3, 4, 9, 10, 11};
  return std::find(std::begin(kShops), std::end(kShops), department) != std::end(kShops);
}

const DemoCostCenter& CenterWithCode(std::int64_t code) {
  return *std::find_if(DemoCostCenters().begin(), DemoCostCenters().end(),
                       [&](const DemoCostCenter& row) { return row.code == code; });
}

const DemoCostCenter& DrawCenter(DemoRandom& random) {
  int at = random.Below(1000);
  const DemoCostCenter* center = DemoCostCenters().data();
  while (at >= center->share)
    at -= center++->share;
  return *center;
}

std::span<const Weighed> StatusesAt(Date day) {
  const int age = kDemoLastDay.days - day.days;
  if (age > 60) return kOldStatuses;
  return age > 14 ? std::span<const Weighed>(kLateStatuses) : kNewStatuses;
}

/// A whole number of units with, now and then, a part of one.
std::int64_t DrawQuantity(const DemoEntry& entry, DemoRandom& random) {
  const DemoMeasure& measure = DemoMeasureOf(entry.measure);
  const std::int64_t units = static_cast<std::int64_t>(entry.usual) * random.Between(1, 12);
  std::int64_t quantity = (units + 1) / 2 * measure.numerator;
  if (!random.Percent(30)) return quantity;
  if (measure.ordinaryFraction) quantity += random.Below(measure.numerator);
  if (entry.decimals >= 2) quantity += measure.numerator / 4 * random.Between(1, 3);
  return quantity;
}

/// Mostly the entry's own unit; another one when the quantity can be written in it.
std::int16_t DrawMeasure(const DemoEntry& entry, std::int64_t quantity, DemoRandom& random) {
  const std::int16_t others[] = {entry.incomeMeasure, entry.barCodeMeasure};
  const std::int16_t other = random.Of(others);
  if (other == 0 || !random.Percent(25)) return entry.measure;
  const DemoMeasure& measure = DemoMeasureOf(other);
  std::int64_t written = quantity;
  for (int i = 0; i < entry.decimals; ++i)
    written *= 10;
  return measure.ordinaryFraction || written % measure.numerator == 0 ? other : entry.measure;
}

void Sum(DemoRequest& request) {
  request.currCents = 0;
  for (const DemoRequestRow& row : request.rows)
    request.currCents += row.currCents;
  request.cents = DemoInNational(request.currCents, request.rate);
}

}  // namespace

DemoRequests::DemoRequests(const DemoWorld& world, const std::vector<DemoContract>& contracts,
                           const std::vector<DemoOrder>& orders, std::int64_t documents)
    : world_(world), orders_(orders), documents_(documents) {
  for (const DemoNotifier& row : world.notifiers) {
    if (row.employee != kBuyer) notifiers_[row.costCenter].push_back(row.employee);
  }
  for (const DemoEmployee& row : world.employees)
    logins_[row.code] = row.login;
  for (const DemoPartner& row : world.partners) {
    if (!row.supplier) continue;
    suppliers_[row.trade].push_back(&row);
    offers_[row.code] = DemoOffer(row);
  }
  for (const DemoEntry& row : DemoEntries()) {
    entries_[row.kind].push_back(&row);
  }
  for (const DemoKind kind : {kRawMaterials, kWares, kOtherMaterials}) {
    suppliers_[kMixed].insert(suppliers_[kMixed].end(), suppliers_[kind].begin(),
                              suppliers_[kind].end());
    entries_[kMixed].insert(entries_[kMixed].end(), entries_[kind].begin(), entries_[kind].end());
  }
  for (const DemoContract& row : contracts)
    contracts_[row.supplier->code].push_back(&row);
}

const DemoContract* DemoRequests::ContractOn(const DemoPartner& supplier, Date day) const {
  const auto found = contracts_.find(supplier.code);
  if (found == contracts_.end()) return nullptr;
  for (const DemoContract* contract : found->second) {
    if (contract->signedOn <= day && (!contract->finish || *contract->finish > day))
      return contract;
  }
  return nullptr;
}

const DemoOrder* DemoRequests::OrderOf(std::int64_t number) const {
  const std::int64_t used = DemoOrdersUsed(documents_);
  const std::int64_t use = number / kRequestsPerOrderUse - 1;
  if (number % kRequestsPerOrderUse != 0 || use >= used * kUsesOfOrder) return nullptr;
  return &orders_[static_cast<std::size_t>(use % used)];
}

std::string_view DemoRequests::CreatorFor(const DemoRequest& request, DemoRandom& random) const {
  const std::string_view own = logins_.at(request.notifier);
  if (!own.empty()) return own;
  if (request.center->section < 20 && random.Percent(60)) return kClerkOfProduction;
  return random.Percent(50) ? logins_.at(request.center->chief) : kBuyersLogin;
}

void DemoRequests::ChooseUnit(DemoRequest& request, DemoRandom& random) const {
  if (request.id % kRareEvery == kRareNumber) {
    request.center = &CenterWithCode(kRareCenter);
    request.notifier = kRareNotifier;
  } else {
    request.center = &DrawCenter(random);
    do {
      request.notifier = random.Of(std::span(notifiers_.at(request.center->code)));
    } while (request.notifier == kRareNotifier);
  }
  request.creator = CreatorFor(request, random);
  request.kind = static_cast<DemoKind>(
      Draw(IsShop(*request.center) ? std::span<const Weighed>(kShopKinds) : kOfficeKinds, random));
}

void DemoRequests::ChooseSupplier(DemoRequest& request, DemoRandom& random) const {
  const bool needed = request.kind == kCapital || request.kind == kRawMaterials ||
                      request.kind == kWares || request.status == Fulfilling;
  if (!needed && !random.Percent(65)) return;
  request.supplier = random.Of(std::span<const DemoPartner* const>(suppliers_.at(request.kind)));
  if (request.supplier->trade == request.kind) {
    request.contract = ContractOn(*request.supplier, request.day);
  }
  request.currency = request.supplier->currency;
}

void DemoRequests::SetPrice(DemoRequest& request, DemoRequestRow& row, DemoRandom& random) const {
  std::int16_t choice = 3;
  if (request.supplier && request.supplier->choice != 0) choice = request.supplier->choice;
  if (request.contract) choice = request.contract->choice;
  const int percent = IsPriced(request.kind) ? 100 : random.Between(90, 112);
  row.currCents =
      DemoCost(world_, {row.entry, choice, request.day, row.quantity, request.rate, percent});
}

void DemoRequests::ChooseRows(DemoRequest& request, DemoRandom& random) const {
  const auto& entries =
      request.supplier ? offers_.at(request.supplier->code) : entries_.at(request.kind);
  const bool few = request.kind == kCapital || request.kind == kEntertainment ||
                   request.kind == kSubscriptions || request.kind == kServices;
  const int most = std::min(few ? 2 : 6, static_cast<int>(entries.size()));
  const int count = random.Between(1, most);
  auto at = static_cast<std::size_t>(random.Below(static_cast<int>(entries.size())));
  for (int i = 0; i < count; ++i) {
    DemoRequestRow row;
    row.entry = entries[at++ % entries.size()];
    row.quantity = DrawQuantity(*row.entry, random);
    row.measure = DrawMeasure(*row.entry, row.quantity, random);
    row.remarked = random.Percent(6);
    SetPrice(request, row, random);
    request.rows.push_back(row);
  }
}

void DemoRequests::TakeOrder(DemoRequest& request) const {
  const DemoOrder* order = OrderOf(request.id);
  if (!order) return;
  request.contract = order->contract;
  request.supplier = order->contract->supplier;
  request.kind = request.supplier->trade;
  request.currency = request.supplier->currency;
  for (const DemoOrderRow& own : order->rows) {
    DemoRequestRow row;
    row.entry = own.entry;
    row.measure = own.entry->measure;
    row.quantity = own.quantity / kPartOfOrder;
    row.order = order->id;
    request.rows.push_back(row);
  }
}

void DemoRequests::ChooseStatus(DemoRequest& request, DemoRandom& random) const {
  const int drawn = Draw(
      OrderOf(request.id) ? std::span<const Weighed>(kOrderedStatuses) : StatusesAt(request.day),
      random);
  request.annulled = drawn < 0;
  request.status = request.annulled ? -drawn : drawn;
}

void DemoRequests::Amend(DemoRequest& request) const {
  if (request.sendings == 0) return;
  request.amender = request.creator;
  request.amended = request.sent;
}

std::vector<DemoRequest> DemoRequests::Make(std::int64_t number) const {
  assert(number >= 1 && number <= documents_);
  DemoRandom random(world_.seed, "request", static_cast<std::uint64_t>(number));
  DemoRequest request;
  request.id = static_cast<std::int32_t>(number);
  const auto at = static_cast<int>((number - 1) * kWorkingDays / documents_);
  request.day = kFirstDay.PlusDays(at / 5 * 7 + at % 5);
  ChooseUnit(request, random);
  ChooseStatus(request, random);
  request.currency = world_.national;
  TakeOrder(request);
  const bool ordered = !request.rows.empty();
  if (!ordered) ChooseSupplier(request, random);
  request.rate = DemoRateOn(world_.rates, request.currency, request.day);
  if (!ordered) ChooseRows(request, random);
  for (DemoRequestRow& row : request.rows) {
    if (ordered) SetPrice(request, row, random);
  }
  Sum(request);
  DescribeRequest(request, random);

  std::vector<DemoRequest> versions;
  if (!ordered && request.day < kDemoLastDay && random.Percent(4)) {
    DemoRequest replaced = request;
    replaced.oldVersion = true;
    replaced.annulled = false;
    replaced.status = Draw(kReplacedStatuses, random);
    FollowWorkflow(replaced, random);
    PlanRequest(replaced, random);
    Amend(replaced);
    versions.push_back(std::move(replaced));
    request.version = 2;
  }
  FollowWorkflow(request, random);
  PlanRequest(request, random);
  Amend(request);
  versions.push_back(std::move(request));
  return versions;
}

}  // namespace orvane::server
