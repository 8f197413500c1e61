#include "server/demo/demo_contracts.h"

#include <string>
#include <string_view>

#include "server/demo/demo_random.h"
#include "server/demo/demo_tables.h"

namespace orvane::server {
namespace {

struct Subject {
  DemoKind kind;
  std::string_view name;
  std::string_view name2;
};
constexpr Subject kSubjects[] = {
    {kCapital, "Доставка на машини и оборудване", "Supply of machinery and equipment"},
    {kRawMaterials, "Рамков договор за доставка на материали", "Frame contract for materials"},
    {kWares, "Рамков договор за доставка на стоки", "Frame contract for goods"},
    {kPricedServices, "Договор за услуги по ценоразпис", "Services at listed prices"},
    {kOtherMaterials, "Доставка на консумативи", "Supply of consumables"},
    {kServices, "Договор за консултантски услуги", "Consulting services"},
    {kRepairs, "Поддръжка и ремонт", "Maintenance and repairs"},
    {kSubscriptions, "Абонаментно обслужване", "Subscription service"},
};

const Subject& SubjectOf(DemoKind kind) {
  const Subject* found = kSubjects;
  while (found->kind != kind)
    ++found;
  return *found;
}

bool NeedsContract(DemoKind kind) {
  return kind == kCapital || kind == kRawMaterials || kind == kWares;
}

DemoContract InForce(const DemoPartner& supplier, DemoRandom& random) {
  DemoContract contract;
  contract.supplier = &supplier;
  contract.signedOn = Date::FromYmd(2024, 11, 4)->PlusDays(random.Below(55));
  contract.renewed = random.Percent(60);
  if (!contract.renewed && random.Percent(50)) contract.finish = Date::FromYmd(2027, 12, 31);
  contract.transport = random.Percent(40);
  contract.throughOrders =
      (supplier.trade == kRawMaterials || supplier.trade == kWares) && random.Percent(50);
  if (supplier.choice != 0) contract.choice = supplier.choice;
  if (supplier.list != 0) contract.list = supplier.list;
  constexpr std::int16_t kDays[] = {0, 15, 30, 45, 60};
  contract.paymentDays = random.Of(kDays);
  return contract;
}

/// The one before, which a newer one replaced.
DemoContract Ended(const DemoContract& inForce, DemoRandom& random) {
  DemoContract contract = inForce;
  contract.signedOn = contract.signedOn.PlusDays(-365 - random.Below(300));
  contract.finish = inForce.signedOn;
  contract.renewed = false;
  return contract;
}

/// The plan's line that capital contracts refer to.
constexpr std::int32_t kPlanLine = 2501;
constexpr std::int64_t kBankTransfer = 1;
constexpr std::string_view kClerk = "todorova";

}  // namespace

std::vector<DemoContract> DemoContracts(const std::vector<DemoPartner>& partners,
                                        std::uint32_t seed) {
  std::vector<DemoContract> contracts;
  const auto add = [&](DemoContract contract) {
    contract.id = static_cast<std::int32_t>(contracts.size()) + 1;
    contracts.push_back(contract);
  };
  for (const DemoPartner& partner : partners) {
    DemoRandom random(seed, "contract", static_cast<std::uint64_t>(partner.code));
    if (!partner.supplier || partner.trade == kEntertainment) continue;
    if (!NeedsContract(partner.trade) && !random.Percent(35)) continue;
    const DemoContract contract = InForce(partner, random);
    if (random.Percent(25)) add(Ended(contract, random));
    add(contract);
  }
  return contracts;
}

void AddContracts(DemoWriter& writer, const std::vector<DemoContract>& contracts) {
  const TimeZone zone;
  for (const DemoContract& row : contracts) {
    const Subject& subject = SubjectOf(row.Kind());
    const std::string number =
        "Д-" + std::to_string(row.signedOn.Year()) + "-" + std::to_string(1000 + row.id).substr(1);
    writer.Add(demo::kContracts, {row.id,
                                  row.supplier->code,
                                  number,
                                  subject.name,
                                  subject.name2,
                                  row.signedOn,
                                  row.finish ? Variant(*row.finish) : Variant(),
                                  row.renewed,
                                  row.renewed ? Variant(30) : Variant(),
                                  static_cast<int>(row.Kind()),
                                  row.Kind() == kCapital ? Variant(kPlanLine) : Variant(),
                                  row.throughOrders,
                                  DemoInvoiceDescr(row.Kind()),
                                  static_cast<int>(row.list),
                                  static_cast<int>(row.choice),
                                  row.transport,
                                  kBankTransfer,
                                  OrNull(row.paymentDays),
                                  kClerk,
                                  zone.At(row.signedOn, 10, 15)});
  }
}

}  // namespace orvane::server
