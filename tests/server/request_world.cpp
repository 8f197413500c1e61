#include "server/request_world.h"

#include "packet/fold.h"

namespace orvane::server {
namespace {

namespace request = purchase_request;

constexpr std::string_view kPeople[] = {"author",   "kolev",  "petrova",
                                        "dimitrov", "deputy", "stranger"};

Variant Money(const char* text) {
  return *Decimal::Parse(text)->AtScale(4);
}
Variant Rate(const char* text) {
  return *Decimal::Parse(text)->AtScale(7);
}
Variant March(int day) {
  return *Date::FromYmd(2026, 3, day);
}

}  // namespace

RequestWorld::RequestWorld(Engine engine) : server_(engine) {
  for (const std::string_view login : kPeople)
    server_.AddUser(std::string(login));
  server_.AddUser("boss", kAllRights, 0);
  for (const Point point : {Point::Deliveries, Point::SupplierInvoices}) {
    for (const std::string_view login : kPeople) {
      EXPECT_TRUE(server_.Admin().Grant(std::string(login), static_cast<std::int32_t>(point), 0));
    }
  }
  const auto named = [&](const char* table, const char* key, std::int64_t code, const char* name,
                         const std::string& more = "", VariantArray values = {}) {
    std::string marks;
    for (std::size_t i = 0; i < values.size(); ++i)
      marks += ", ?" + std::to_string(i + 4);
    VariantArray params = {code, name, Fold(name)};
    params.insert(params.end(), values.begin(), values.end());
    RunSql("insert into " + std::string(table) + " (" + key + ", Name, FoldName" + more +
               ") values (?1, ?2, ?3" + marks + ")",
           params);
  };
  named("CostCenters", "CostCenter", 1001, "Цех", ", Chief", {101});
  named("CostCenters", "CostCenter", 1002, "Склад");
  named("Sections", "Section", 20, "Отдел", ", Chief", {102});
  named("Department", "Code", 3, "Дирекция", ", Chief", {"dimitrov"});
  RunSql("insert into Structure (CostCenter, Department, Section) values (1001, 3, 20)");
  RunSql(
      "insert into StructureDeputies (IdNumber, StructuralUnitType, CostCenter)"
      " values (1, 1, 1001)");
  RunSql(
      "insert into StructDepDates (StructDepId, FromDate, ToDate, Deputy)"
      " values (1, ?1, ?2, 104)",
      {March(1), March(31)});
  for (const int center : {1001, 1002})
    RunSql("insert into AdmissibleNotifiers (CostCenter, Notifier) values (?1, 100)", {center});
  const char* kinds[] = {"Капиталов разход", "ОСМ", "Стоки", "Други", "Услуги с цени"};
  for (int kind = 1; kind <= 5; ++kind)
    named("KindSupplies", "Code", kind, kinds[kind - 1]);
  named("Currencies", "Code", 1, "Лев", ", CurrencyCode", {"BGN"});
  named("Currencies", "Code", 2, "Евро", ", CurrencyCode", {"EUR"});
  named("Partners", "Partner", 1, "Централна банка");
  named("Partners", "Partner", 7, "Доставчик", ", PartnerTypeSupplier, SuppKindCurrency", {1, 1});
  named("Partners", "Partner", 8, "Друг доставчик", ", PartnerTypeSupplier", {1});
  RunSql(
      "insert into RatesOfExchange (Partner, KindCurrency, RateDate, CurrencyRate1)"
      " values (1, 2, ?1, ?2)",
      {March(2), Rate("1,95583")});
  named("Measures", "Code", 100, "Брой", ", Numerator", {1});
  named("Measures", "Code", 101, "Дузина", ", Numerator, OrdinaryFraction", {12, 1});
  named("Measures", "Code", 200, "Килограм", ", Numerator", {1000});
  named("MaterialStocks", "IdNumber", 500, "Ламарина", ", Measure, RoundQuantity, VATPercent",
        {200, 3, 20});
  named("MaterialStocks", "IdNumber", 501, "Винтове", ", Measure, VATPercent", {101, 9});
  named("Services", "Code", 900, "Транспорт", ", Measure", {100});
  const auto entry = [&](std::int64_t serial, const char* name, int kind, Variant inventory,
                         Variant service, int measure, Variant price) {
    named("BaseSupplyList", "SerialNumber", serial, name,
          ", Kind, InventoryCode, ServiceCode, Measure, Price",
          {kind, inventory, service, measure, price});
  };
  entry(20, "Ламарина 2 мм", 1, 500, {}, 200, Money("12,5"));
  entry(21, "Винтове М4", 1, 501, {}, 101, Money("1"));
  entry(22, "Транспорт", 2, {}, 900, 100, Money("200"));
  entry(23, "Без цена", 1, 500, {}, 200, {});
  const struct {
    int group;
    int number;
    const char* value;
  } parameters[] = {{1, 3, "2"},  {1, 26, "1"}, {1, 27, "1"},    {11, 1, "1"},    {11, 2, "2"},
                    {11, 5, "3"}, {11, 3, "1"}, {11, 9, "0,05"}, {11, 11, "103"}, {11, 12, "5"}};
  for (const auto& row : parameters)
    server_.SetParam(row.group, row.number, row.value);
}

const TestSession& RequestWorld::As(const std::string& login) {
  for (const auto& [name, session] : sessions_) {
    if (name == login) return session;
  }
  sessions_.reserve(32);  // references stay good
  return sessions_.emplace_back(login, server_.LogIn(login)).second;
}

void RequestWorld::RunSql(const std::string& sql, VariantArray params) {
  server_.Execute({sql, std::move(params), {}});
}

std::int64_t RequestWorld::Count(const std::string& from, VariantArray params) {
  return server_.Value("select count(*) from " + from, ValueKind::Code, std::move(params))
      .AsInt()
      .value_or(-1);
}

std::string RequestWorld::Column(const std::string& sql, ValueKind kind) {
  const Statement select{sql, {}, {{"Value", kind, 0}}};
  const auto packets = server_.Base().ReadSnapshot({&select, 1});
  if (!packets) return packets.GetFailure().text;
  std::string text;
  for (std::size_t row = 0; row < packets->front().rowCount; ++row)
    text += (row == 0 ? "" : " ") + packets->front().At(row, std::size_t{0}).ToText();
  return text;
}

void RequestWorld::AddLevel(int kindSupply, int level, int from, int to, ApproverKind approver,
                            DocumentKind document) {
  RunSql(
      "insert into LevelsApproval (KindRegister, KindSupply, Level, FromSum, ToSum, Approval)"
      " values (?1, ?2, ?3, ?4, ?5, ?6)",
      {static_cast<int>(document), kindSupply, level, Decimal(from * 10000LL, 4),
       Decimal(to * 10000LL, 4), static_cast<int>(approver)});
}

std::int64_t RequestWorld::AddOrder(std::int64_t serial, double quantity) {
  const std::int64_t id = Count("SuppManifacOrder") + 1;
  RunSql(
      "insert into SuppManifacOrder (IdNumber, DocumentDate, CostCenter, KindSupply, Supplier,"
      " KindCurrency, Notifier, CreatedFrom, CreatedOn, Status)"
      " values (?1, ?2, 1001, 3, 7, 1, 100, 'kolev', ?3, 5)",
      {id, March(1), Stamp{1}});
  RunSql(
      "insert into SuppManOrderDet (SuppManOrderId, RowNumber, SerialNumber, Measure, Quantity,"
      " RowNumerator, Numerator) values (?1, 1, ?2, 200, ?3, 1000, 1000)",
      {id, serial, quantity});
  return id;
}

ApplyAnswer RequestWorld::ApplyFully(const std::string& login, std::string_view provider,
                                     const Change& change, Point point) {
  const ApplyRequest apply{
      std::string(request::kServerClass), std::string(provider), 0, {}, {change}};
  auto answer = server_->Apply(As(login).At(point), apply);
  if (answer) return *std::move(answer);
  ApplyAnswer failed;
  failed.outcomes.push_back({false, answer.GetFailure(), {}, {}});
  return failed;
}

std::string RequestWorld::Apply(const std::string& login, std::string_view provider,
                                const Change& change, Point point) {
  const ApplyAnswer answer = ApplyFully(login, provider, change, point);
  const ChangeOutcome& outcome = answer.outcomes.front();
  return outcome.failure ? outcome.failure->message : outcome.applied ? "ok" : "-";
}

NamedValues RequestWorld::HeadValues(int kindSupply) {
  return {{"POIdNumber", -1},
          {"POVersion", 0},
          {"DocumentDate", March(5)},
          {"CostCenter", 1001},
          {"Notifier", 100},
          {"Supplier", 7},
          {"KindSupply", kindSupply},
          {"IncTranspInPrice", 1},
          {"KindCurrency", 1},
          {"RateOfExchange", Rate("1")},
          {"CurrSumPurchaseOrder", Money("0")},
          {"SumPurchaseOrder", Money("0")},
          {"Status", 2},
          {"OldVersion", false}};
}

std::int64_t RequestWorld::NewRequest(int kindSupply, NamedValues changed) {
  NamedValues values = HeadValues(kindSupply);
  for (const NamedValue& change : changed) {
    for (NamedValue& value : values) {
      if (value.name == change.name) value.value = change.value;
    }
  }
  const ApplyAnswer answer = ApplyFully("author", "dspPurchaseOrder", InsertOf(values));
  EXPECT_FALSE(answer.outcomes.front().failure) << answer.outcomes.front().failure->message;
  return answer.ownerData.AsInt().value_or(0);
}

NamedValues RequestWorld::RowValues(std::int64_t id, int number, std::int64_t serial,
                                    double quantity, const char* amount, Variant order) {
  const int measure = serial == 21 ? 101 : serial == 22 ? 100 : 200;
  const int numerator = serial == 21 ? 12 : serial == 22 ? 1 : 1000;
  return {{"PurchaseOrderId", id},     {"PurchaseOrderVer", 1},
          {"RowNumber", number},       {"SerialNumber", serial},
          {"Measure", measure},        {"SuppManifacOrderId", std::move(order)},
          {"Quantity", quantity},      {"Numerator", numerator},
          {"RowNumerator", numerator}, {"CurrSumWithoutVAT", Money(amount)}};
}

std::string RequestWorld::AddRow(std::int64_t id, int number, std::int64_t serial, double quantity,
                                 const char* amount, Variant order) {
  return Apply("author", "dspPurchaseOrderDet",
               InsertOf(RowValues(id, number, serial, quantity, amount, std::move(order))));
}

std::string RequestWorld::AddDate(std::int64_t id, int day) {
  return Apply("author", "dspPurchaseOrderDel",
               InsertOf({{"PurchaseOrderId", id},
                         {"PurchaseOrderVer", 1},
                         {"DeliveryDate", March(day)},
                         {"DateOfLoading", Variant()},
                         {"Delivered", Variant()}}));
}

std::string RequestWorld::Move(const std::string& login, std::int64_t id, int from, int to,
                               int version) {
  return Apply(login, "dspPurchaseOrder",
               UpdateOf({{"POIdNumber", id}, {"POVersion", version}, {"Status", from}},
                        {{"Status", to}, {"AmendFrom", "somebody"}}));
}

std::string RequestWorld::Annul(const std::string& login, std::int64_t id, int version) {
  return Apply(login, "dspPurchaseOrder",
               UpdateOf({{"POIdNumber", id},
                         {"POVersion", version},
                         {"AnnulOn", Variant()},
                         {"AnnulFrom", Variant()}},
                        {{"AnnulOn", Stamp{77}}, {"AnnulFrom", login}}));
}

std::int64_t RequestWorld::SentRequest(int kindSupply, const char* amount) {
  const std::int64_t id = NewRequest(kindSupply);
  EXPECT_EQ(AddRow(id, 1, 20, 8000, amount), "ok");
  EXPECT_EQ(AddDate(id), "ok");
  EXPECT_EQ(Move("author", id, Entered, ForApproval), "ok");
  return id;
}

std::string RequestWorld::Decide(const std::string& login, std::int64_t id, int level, int from,
                                 int to, int sending, Point point) {
  return Apply(login, "dspPurchaseOrderAdm",
               UpdateOf({{"PurchaseOrderId", id},
                         {"PurchaseOrderVer", 1},
                         {"ConfirmationLevel", level},
                         {"SendingNumber", sending},
                         {"Status", from}},
                        {{"Status", to}}),
               point);
}

Answer<VariantArray> RequestWorld::Call(const std::string& login, const std::string& serverClass,
                                        VariantArray arguments, Point point) {
  return server_->Call(As(login).At(point),
                       {serverClass, "Operations", std::move(arguments), NewClientKey()});
}

VariantArray RequestWorld::Load(const std::string& login, Nav nav, std::int64_t id, Variant version,
                                int step, int language) {
  auto told = Call(login, std::string(request::kServerClass),
                   {"GetRec", language, static_cast<int>(nav), step, id, std::move(version), login,
                    Variant(), true, false});
  if (told) return *std::move(told);
  ADD_FAILURE() << told.GetFailure().message;
  return {3, false};
}

std::string RequestWorld::Where(const std::string& login, Nav nav, std::int64_t id, Variant version,
                                int step) {
  const VariantArray told = Load(login, nav, id, std::move(version), step);
  std::string text = told[0].ToText();
  if (const DataPacket* head = told.size() > 2 ? told[2].AsPacket() : nullptr) {
    text += ":" + head->At(0, "POIdNumber").ToText() + "/" + head->At(0, "POVersion").ToText();
  }
  return text;
}

std::string RequestWorld::Roles(const std::string& login, std::int64_t id, Variant version) {
  const VariantArray told = Load(login, Nav::ByKey, id, std::move(version));
  const DataPacket* roles = told.size() > 8 ? told[8].AsPacket() : nullptr;
  if (!roles) return "?";
  std::string text;
  for (std::size_t row = 0; row < roles->rowCount; ++row) {
    text += (row == 0 ? "" : " ") + roles->At(row, "oKindUser").ToText() + "@" +
            roles->At(row, "oConfirmationLevel").ToText() + "=" +
            roles->At(row, "oConfirmationStats").ToText();
  }
  return text;
}

int RequestWorld::StatusOf(std::int64_t id, int version) {
  return static_cast<int>(
      server_
          .Value("select Status from PurchaseOrder where POIdNumber = ?1 and POVersion = ?2",
                 ValueKind::Byte, {id, version})
          .AsInt()
          .value_or(-1));
}

std::string RequestWorld::Rows(std::int64_t id, int version) {
  return Column(
      "select cast(ConfirmationLevel as text) || ':' || cast(Status as text) from "
      "PurchaseOrderAdm where PurchaseOrderId = " +
          std::to_string(id) + " and PurchaseOrderVer = " + std::to_string(version) +
          " order by ConfirmationLevel",
      ValueKind::String);
}

}  // namespace orvane::server
