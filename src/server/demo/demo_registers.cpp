#include "server/demo/demo_world.h"

#include <cstdint>
#include <string>
#include <string_view>

#include "packet/date.h"
#include "server/demo/demo_tables.h"

namespace orvane::server {
namespace {

struct CodeNames {
  std::int32_t code;
  std::string_view name;
  std::string_view name2;
};

struct InvoiceDescr {
  std::int32_t code;
  std::string_view name;
  std::string_view name2;
  /// 1 invoice, 2 invoice of an import; their debit notes are 3 and 4, credit notes 5 and 6; 7 is
  /// none of these.
  std::int32_t kind;
  bool advance;
};
constexpr std::int32_t kImportInvoice = 9;
constexpr InvoiceDescr kInvoices[] = {
    {1, "Фактура за материали", "Invoice for Materials", 1, false},
    {2, "Фактура за стоки", "Invoice for Goods", 1, false},
    {3, "Фактура за услуги", "Invoice for Services", 1, false},
    {4, "Фактура за дълготрайни активи", "Invoice for Fixed Assets", 1, false},
    {5, "Фактура за авансово плащане", "Invoice for Advance Payment", 1, true},
    {6, "Дебитно известие", "Debit Note", 3, false},
    {7, "Кредитно известие", "Credit Note", 5, false},
    {8, "Проформа фактура", "Pro-forma Invoice", 7, false},
    {kImportInvoice, "Фактура от внос", "Import Invoice", 2, false},
    {10, "Дебитно известие от внос", "Import Debit Note", 4, false},
    {11, "Кредитно известие от внос", "Import Credit Note", 6, false},
};
constexpr CodeNames kRequests[] = {
    {1, "Поръчка за материали", "Order for Materials"},
    {2, "Поръчка за стоки", "Order for Goods"},
    {3, "Поръчка за услуги", "Order for Services"},
    {4, "Рамкова поръчка", "Frame Order"},
};
constexpr CodeNames kReceipts[] = {
    {1, "Стокова разписка - материали", "Goods Receipt - Materials"},
    {2, "Стокова разписка - стоки", "Goods Receipt - Goods"},
    {3, "Разлики по стокова разписка", "Differences of a Goods Receipt"},
    {4, "Приемо-предавателен протокол", "Acceptance Record"},
};
constexpr std::int32_t kWaysOfPayment = 15;  // free nomenclature
constexpr CodeNames kPayments[] = {
    {1, "Банков превод", "Bank Transfer"}, {2, "В брой", "Cash"},
    {3, "Акредитив", "Letter of Credit"},  {4, "Фирмена карта", "Company Card"},
    {5, "Прихващане", "Offsetting"},
};
constexpr CodeNames kStores[] = {
    {1, "Склад „Метали“", "Metals Store"},
    {2, "Склад „Материали“", "Materials Store"},
    {3, "Склад „Стоки“", "Goods Store"},
    {4, "Склад „Инструменти“", "Tools Store"},
};
struct UserStore {
  std::string_view login;
  std::int32_t store;
};
constexpr UserStore kUserStores[] = {{"angelov", 1},  {"angelov", 2},  {"angelov", 3},
                                     {"angelov", 4},  {"todorova", 1}, {"todorova", 2},
                                     {"todorova", 3}, {"dimitrov", 3}, {"admin", 1},
                                     {"admin", 2},    {"admin", 3},    {"admin", 4}};
struct StockDocument {
  std::int32_t code;
  std::string_view name;
  std::string_view name2;
  std::int32_t operation;  ///< 1 receipt, 2 issue
};
constexpr StockDocument kStockDocuments[] = {
    {1, "Приход на ОСМ", "Receipt of Raw Materials", 1},
    {2, "Приход на стоки", "Receipt of Goods", 1},
    {3, "Приход на други материали", "Receipt of Other Materials", 1},
    {4, "Приход от производство", "Receipt from Production", 1},
    {11, "Разход за производство", "Issue to Production", 2},
    {12, "Разход за продажба", "Issue for Sale", 2},
};
constexpr std::int16_t kGeneralList = 1;
constexpr std::int16_t kProductionList = 2;
constexpr CodeNames kLists[] = {{kGeneralList, "Общ списък", "General List"},
                                {kProductionList, "Производствен списък", "Production List"}};

Variant InvoiceDescrOf(const DemoPartner& row) {
  if (!row.supplier) return {};
  return row.eik.empty() ? kImportInvoice : DemoInvoiceDescr(row.trade);
}

void AddPartner(DemoWriter& writer, const DemoPartner& row) {
  writer.Add(demo::kPartners, {row.code, row.name, row.name2, OrNull(row.eik), row.supplier,
                               row.supplier ? Variant(static_cast<int>(row.currency)) : Variant(),
                               OrNull(row.choice), OrNull(row.list), OrNull(row.paymentDays),
                               InvoiceDescrOf(row), OrNull(row.town), OrNull(row.address),
                               OrNull(row.address2), OrNull(row.telephone), OrNull(row.email)});
}

void AddItems(DemoWriter& writer) {
  for (const DemoMeasure& row : DemoMeasures()) {
    writer.Add(demo::kMeasures, {static_cast<int>(row.code), row.name, row.name2, row.numerator,
                                 row.ordinaryFraction});
  }
  const Variant always = *Date::FromYmd(2020, 1, 1);
  for (const DemoEntry& row : DemoEntries()) {
    if (row.material != 0) {
      // Of each family's ninth size nothing may be bought any more from July 2026 on.
      const bool ends = row.serialNumber % 40 == 9;
      writer.Add(
          demo::kMaterials,
          {row.material, row.name, row.name2, static_cast<int>(row.measure),
           OrNull(row.incomeMeasure), OrNull(row.barCodeMeasure), static_cast<int>(row.decimals),
           ends ? Variant(*Date::FromYmd(2026, 7, 1)) : Variant(), always, Variant()});
    } else {
      const std::int64_t vat = DemoVatPercent(row);
      writer.Add(demo::kServices,
                 {row.service, row.name, row.name2, static_cast<int>(row.measure),
                  static_cast<int>(row.decimals), vat == kUsualVat ? Variant() : Variant(vat)});
    }
  }
}

void AddList(DemoWriter& writer, const DemoWorld& world, std::int16_t list,
             const DemoEntry& entry) {
  const int kind = list;
  writer.Add(demo::kSupplyLists, {kind, entry.serialNumber, static_cast<int>(entry.measure),
                                  Cents(PriceIn(world, entry, DemoPriceDays().back()))});
  for (const Date day : DemoPriceDays()) {
    writer.Add(demo::kSupplyListsDates,
               {kind, entry.serialNumber, day, Cents(PriceIn(world, entry, day))});
  }
}

void AddSupplyLists(DemoWriter& writer, const DemoWorld& world) {
  writer.Add(demo::kSupplyNaming, {1, true});
  for (const DemoEntry& row : DemoEntries()) {
    writer.Add(demo::kBaseSupplyList,
               {row.serialNumber, row.name, row.name2, row.material != 0 ? 1 : 2,
                OrNull(row.material), OrNull(row.service), static_cast<int>(row.measure),
                Cents(PriceIn(world, row, DemoPriceDays().back())), row.name, row.name2});
    for (const Date day : DemoPriceDays()) {
      writer.Add(demo::kBaseSupplyListDates,
                 {row.serialNumber, day, Cents(PriceIn(world, row, day))});
    }
    AddList(writer, world, kGeneralList, row);
    if (row.kind == kRawMaterials || row.kind == kWares)
      AddList(writer, world, kProductionList, row);
  }
}

/// Every supplier has some thirty entries of his trade.
void AddOffers(DemoWriter& writer, const DemoWorld& world) {
  for (const DemoPartner& partner : world.partners) {
    if (!partner.supplier) continue;
    for (const DemoEntry* entry : DemoOffer(partner)) {
      writer.Add(demo::kPartnerSupplyEntries,
                 {partner.code, entry->serialNumber, DemoPriceDays().front(), Variant()});
    }
  }
}

}  // namespace

void AddPartners(DemoWriter& writer, const DemoWorld& world) {
  for (const DemoCurrency& row : DemoCurrencies())
    writer.Add(demo::kCurrencies, {static_cast<int>(row.code), row.name, row.name2, row.letters});
  for (const DemoTown& row : DemoTowns())
    writer.Add(demo::kTowns, {row.code, row.name, row.name2});
  for (const CodeNames& row : kLists)
    writer.Add(demo::kKindSupplyLists, {row.code, row.name, row.name2});
  for (const InvoiceDescr& row : kInvoices)
    writer.Add(demo::kInvoiceDescr, {row.code, row.name, row.name2, row.kind, row.advance, true});
  for (const CodeNames& row : kRequests)
    writer.Add(demo::kRequestDescr, {row.code, row.name, row.name2});
  for (const CodeNames& row : kReceipts)
    writer.Add(demo::kReceiptDescr, {row.code, row.name, row.name2});
  for (const CodeNames& row : kPayments)
    writer.Add(demo::kFreeNomElements, {kWaysOfPayment, row.code, row.name, row.name2});
  for (const DemoPartner& row : world.partners)
    AddPartner(writer, row);
  for (const DemoRate& row : world.rates)
    writer.Add(demo::kRates, {kCentralBank, static_cast<int>(row.currency), row.day, row.rate});
}

void AddGoods(DemoWriter& writer, const DemoWorld& world) {
  AddItems(writer);
  for (const CodeNames& row : kStores)
    writer.Add(demo::kStores, {row.code, row.name, row.name2});
  for (const UserStore& row : kUserStores)
    writer.Add(demo::kUserStores, {row.login, row.store});
  for (const StockDocument& row : kStockDocuments)
    writer.Add(demo::kKindDocInventory, {row.code, row.name, row.name2, row.operation});
  AddSupplyLists(writer, world);
  AddOffers(writer, world);
}

}  // namespace orvane::server
