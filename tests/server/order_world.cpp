#include "server/order_world.h"

#include "packet/fold.h"

namespace orvane::server {
namespace {

namespace order = supplier_order;
using order::get_record::At;

Variant March(int day) {
  return *Date::FromYmd(2026, 3, day);
}

}  // namespace

OrderWorld::OrderWorld(Engine engine) : RequestWorld(engine) {
  RunSql("insert into Partners (Partner, Name, FoldName) values (9, 'Клиент', ?1)",
         {Fold("Клиент")});
  const struct {
    int id;
    int supplier;
    bool throughOrders;
    Variant finish;
  } contracts[] = {
      {30, 7, true, {}}, {31, 7, false, {}}, {32, 7, true, March(1)}, {33, 8, true, {}}};
  for (const auto& row : contracts) {
    RunSql(
        "insert into SuppliesContracts (IdNumber, Supplier, ContractNumber, ShortDescription,"
        " FoldShortDescription, ContractDate, FinishDate, KindContract, ManifacOrder,"
        " KindSupplyChoice, CreatedFrom, CreatedOn) values (?1, ?2, ?3, 'Договор', ?4, ?5, ?6, 3,"
        " ?7, 1, 'author', ?8)",
        {row.id, row.supplier, std::to_string(row.id), Fold("Договор"), *Date::FromYmd(2025, 1, 1),
         row.finish, row.throughOrders, Stamp{1}});
  }
}

ApplyAnswer OrderWorld::ApplyToOrder(const std::string& login, std::string_view provider,
                                     const Change& change, Point point) {
  const ApplyRequest apply{
      std::string(order::kServerClass), std::string(provider), 0, {}, {change}};
  auto answer = Server()->Apply(As(login).At(point), apply);
  if (answer) return *std::move(answer);
  ApplyAnswer failed;
  failed.outcomes.push_back({false, answer.GetFailure(), {}, {}});
  return failed;
}

std::string OrderWorld::ApplyOrder(const std::string& login, std::string_view provider,
                                   const Change& change, Point point) {
  const ApplyAnswer answer = ApplyToOrder(login, provider, change, point);
  const ChangeOutcome& outcome = answer.outcomes.front();
  return outcome.failure ? outcome.failure->message : outcome.applied ? "ok" : "-";
}

NamedValues OrderWorld::OrderValues(const NamedValues& changed) {
  NamedValues values = {{"DocumentDate", March(5)},
                        {"FromDate", March(5)},
                        {"ToDate", March(31)},
                        {"CostCenter", 1001},
                        {"KindSupply", 3},
                        {"Supplier", 7},
                        {"ContractId", 30},
                        {"IncTranspInPrice", 1},
                        {"KindCurrency", 1},
                        {"RateOfExchange", Decimal(10'000'000, 7)},
                        {"SumManifacOrder", Decimal(0, 4)},
                        {"CurrSumManifacOrder", Decimal(0, 4)},
                        {"Notifier", 100},
                        {"Status", 2}};
  for (const NamedValue& change : changed) {
    for (NamedValue& value : values) {
      if (value.name == change.name) value.value = change.value;
    }
  }
  return values;
}

std::int64_t OrderWorld::NewOrder(const NamedValues& changed) {
  const ApplyAnswer answer =
      ApplyToOrder("author", "dspSuppManifacOrder", InsertOf(OrderValues(changed)));
  const ChangeOutcome& outcome = answer.outcomes.front();
  EXPECT_FALSE(outcome.failure) << outcome.failure->message;
  const Variant* id = FindValue(outcome.filled, "IdNumber");
  EXPECT_TRUE(id) << "the applied row brings the number";
  return id ? id->AsInt().value_or(0) : 0;
}

NamedValues OrderWorld::OrderRow(std::int64_t id, int number, std::int64_t serial,
                                 double quantity) {
  const int measure = serial == 21 ? 101 : serial == 22 ? 100 : 200;
  return {{"SuppManOrderId", id}, {"RowNumber", number},  {"SerialNumber", serial},
          {"Measure", measure},   {"Quantity", quantity}, {"RowNumerator", 7},
          {"Numerator", 7}};
}

std::string OrderWorld::AddOrderRow(std::int64_t id, int number, std::int64_t serial,
                                    double quantity) {
  return ApplyOrder("author", "dspSuppManOrderDet",
                    InsertOf(OrderRow(id, number, serial, quantity)));
}

std::string OrderWorld::MoveOrder(const std::string& login, std::int64_t id, int from, int to) {
  return ApplyOrder(
      login, "dspSuppManifacOrder",
      UpdateOf({{"IdNumber", id}, {"Status", from}}, {{"Status", to}, {"AmendFrom", "somebody"}}));
}

std::string OrderWorld::AnnulOrder(const std::string& login, std::int64_t id) {
  return ApplyOrder(login, "dspSuppManifacOrder",
                    UpdateOf({{"IdNumber", id}, {"AnnulOn", Variant()}, {"AnnulFrom", Variant()}},
                             {{"AnnulOn", Stamp{77}}, {"AnnulFrom", "somebody"}}));
}

std::int64_t OrderWorld::SentOrder(const NamedValues& changed) {
  const std::int64_t id = NewOrder(changed);
  EXPECT_EQ(AddOrderRow(id, 1, 20, 8000), "ok");
  EXPECT_EQ(MoveOrder("author", id, Entered, ForApproval), "ok");
  return id;
}

std::string OrderWorld::DecideOrder(const std::string& login, std::int64_t id, int level, int from,
                                    int to, int sending, Point point) {
  return ApplyOrder(login, "dspSuppManOrderAdmin",
                    UpdateOf({{"SuppManOrderId", id},
                              {"ConfirmationLevel", level},
                              {"SendingNumber", sending},
                              {"Status", from}},
                             {{"Status", to}}),
                    point);
}

VariantArray OrderWorld::LoadOrder(const std::string& login, Nav nav, std::int64_t id, int step,
                                   bool firstLanguage) {
  const bool below = login == "boss";
  auto told = Server()->Call(As(login).At(Point::SupplierOrders),
                             {std::string(order::kServerClass),
                              std::string(order::get_record::kName),
                              {static_cast<int>(nav), step, std::to_string(id), "", below, login,
                               "", firstLanguage, false}});
  if (told) return *std::move(told);
  ADD_FAILURE() << told.GetFailure().message;
  return VariantArray(At::kSize);
}

std::string OrderWorld::WhereOrder(const std::string& login, Nav nav, std::int64_t id, int step) {
  const VariantArray told = LoadOrder(login, nav, id, step);
  std::string text = told[At::kPosition].ToText();
  if (const DataPacket* head = told[At::kHead].AsPacket())
    text += ":" + head->At(0, "IdNumber").ToText();
  return text;
}

std::string OrderWorld::PartIn(const std::string& login, std::int64_t id) {
  const VariantArray told = LoadOrder(login, Nav::ByKey, id);
  const auto flag = [&](At at, const char* letter) {
    return told[at].AsBool().value_or(false) ? letter : "-";
  };
  return std::string(flag(At::kMayApprove, "A")) + flag(At::kMayWithdraw, "W") + " " +
         told[At::kPendingStatus].ToText() + told[At::kOwnStatus].ToText() + "@" +
         told[At::kOwnLevel].ToText();
}

int OrderWorld::OrderStatus(std::int64_t id) {
  return static_cast<int>(
      Server()
          .Value("select Status from SuppManifacOrder where IdNumber = ?1", ValueKind::Byte, {id})
          .AsInt()
          .value_or(-1));
}

std::string OrderWorld::OrderLevels(std::int64_t id) {
  return Column(
      "select cast(ConfirmationLevel as text) || ':' || cast(Status as text) from"
      " SuppManOrderAdmin where SuppManOrderId = " +
          std::to_string(id) + " order by ConfirmationLevel",
      ValueKind::String);
}

std::string OrderWorld::OrderSums(std::int64_t id) {
  const std::string from = " from SuppManifacOrder where IdNumber = " + std::to_string(id);
  return Column("select CurrSumManifacOrder" + from, ValueKind::Amount) + " " +
         Column("select SumManifacOrder" + from, ValueKind::Amount);
}

}  // namespace orvane::server
