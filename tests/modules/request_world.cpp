#include "modules/request_world.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "contract/parameters.h"
#include "contract/system.h"

namespace orvane::modules::requests {

using namespace purchase_request;

namespace {

const Variant* Value(const NamedValues& row, std::string_view name) {
  return FindValue(row, name);
}

/// A packet of the fields, each row's missing values Null.
DataPacket PacketOf(std::span<const FieldDef> fields, const Rows& rows) {
  DataPacket packet;
  for (const FieldDef& field : fields)
    packet.AddColumn(field.name, field.kind, field.size);
  for (const NamedValues& row : rows) {
    std::vector<Variant> values;
    for (const FieldDef& field : fields) {
      const Variant* value = Value(row, field.name);
      values.push_back(value == nullptr ? Variant() : *value->As(field.kind));
    }
    packet.AppendRow(values);
  }
  return packet;
}

DataPacket PacketOf(const ProviderDef& provider, const Rows& rows) {
  return PacketOf(provider.fields, rows);
}

/// The word behind FROM.
std::string TableOf(std::string_view sql) {
  std::size_t at = sql.find("FROM ");
  if (at == std::string_view::npos) return {};
  at += 5;
  return std::string(sql.substr(at, sql.find_first_of(" \n", at) - at));
}

/// Whether a unit lies in the block of hundreds that the statement asks for, if it does.
bool InBlock(const NamedValues& row, const std::string& sql) {
  constexpr std::string_view kFrom = "WHERE Code >= ";
  const std::size_t at = sql.find(kFrom);
  if (at == std::string::npos) return true;
  const std::int64_t first = std::stoll(sql.substr(at + kFrom.size()));
  const std::int64_t code = Value(row, "Code")->AsInt().value_or(0);
  return code >= first && code < first + 100;
}

constexpr FieldDef kColumns[] = {
    Code19("CostCenter"),
    Code19("Partner"),
    Int32("IdNumber"),
    Int16("Code"),
    Code19("Element"),
    Code19("SerialNumber"),
    String("Name", 50),
    String("Name2", 50),
    String("ShortDescription", 50),
    String("ShortDescription2", 50),
    Day("ContractDate"),
    Int16("SuppKindCurrency"),
    Byte("KindSupplyChoice"),
    Int16("KindSupplyList"),
    Int16("SuppMaxTermOfPayment"),
    Byte("MaxTermOfPayment"),
    Bit("InclTransportInPrice"),
    String("cbName", 40),
    String("cbName2", 40),
    Int32("InventoryCode"),
    Int32("ServiceCode"),
    Int16("bslMeasure"),
    Int16("msMeasure"),
    Int16("IncomeMeasure"),
    Int16("BarCodeMeasure"),
    Int16("servMeasure"),
    Byte("roundQNT"),
    Int32("Numerator"),
    Bit("OrdinaryFraction"),
    String("Description", 50),
    String("Description2", 50),
    Day("DocumentDate"),
    Real("CalcQuantity"),
    Real("RestOrdQNT"),
    Int32("POIdNumber"),
    Int32("POVersion"),
    Byte("Status"),
    String("CCName", 30),
    String("CCName2", 30),
    Code19("Supplier"),
    String("SuppName", 50),
    String("SuppName2", 50),
};

Rows Statuses(std::initializer_list<const char*> names) {
  Rows rows;
  int element = 0;
  for (const char* name : names) {
    rows.push_back({{"Element", element++}, {"Name", name}, {"Name2", std::string("en ") + name}});
  }
  return rows;
}

NamedValues Entry(std::int64_t serial, const char* name, int inventory, int service, int measure,
                  int decimals) {
  NamedValues row{{"SerialNumber", serial},
                  {"cbName", name},
                  {"cbName2", std::string("en ") + name},
                  {"bslMeasure", measure},
                  {"roundQNT", decimals}};
  if (inventory != 0) {
    row.push_back({"InventoryCode", inventory});
    row.push_back({"msMeasure", measure});
    row.push_back({"IncomeMeasure", measure + 1});
  } else {
    row.push_back({"ServiceCode", service});
    row.push_back({"servMeasure", 301});
  }
  return row;
}

NamedValues Unit(int code, const char* name, int numerator, bool fraction) {
  return {{"Code", code},
          {"Name", name},
          {"Name2", std::string("en ") + name},
          {"Numerator", numerator},
          {"OrdinaryFraction", fraction}};
}

NamedValues Named(std::string_view key, std::int64_t code, const char* name) {
  return {{std::string(key), code}, {"Name", name}, {"Name2", std::string("en ") + name}};
}

NamedValues Contract(int id, std::int64_t supplier, int kind, const char* name) {
  return {{"IdNumber", id},
          {"Supplier", supplier},
          {"KindSupp", kind},
          {"ShortDescription", name},
          {"ShortDescription2", std::string("en ") + name}};
}

void FillTables(std::map<std::string, Rows>& tables) {
  tables["CostCenters"] = {Named("CostCenter", 1001, "Механичен цех"),
                           Named("CostCenter", 1002, "Леярна")};
  tables["KindSupplies"] = {Named("Code", kCapital, "Капиталов разход"),
                            Named("Code", kBrm, "ОСМ"),
                            Named("Code", kServices, "Услуги"),
                            Named("Code", kOther, "Други"),
                            Named("Code", kWares, "Стоки"),
                            Named("Code", kPriced, "Услуги с цени")};
  NamedValues steel = Named("Partner", kSteel, "Стил Трейд ООД");
  Set(steel, "SuppMaxTermOfPayment", 45);
  Set(steel, "KindSupplyChoice", 1);
  NamedValues foreign = Named("Partner", kForeign, "Forge Inc.");
  Set(foreign, "SuppKindCurrency", kDollar);
  tables["Partners"] = {steel, foreign};
  NamedValues frame = Contract(38, kSteel, kWares, "Рамков договор метали");
  Set(frame, "InclTransportInPrice", true);
  Set(frame, "MaxTermOfPayment", 60);
  Set(frame, "KindSupplyChoice", 2);
  Set(frame, "KindSupplyList", 7);
  NamedValues plain = Contract(39, kSteel, kWares, "Договор без срок");
  Set(plain, "InclTransportInPrice", false);
  tables["SuppliesContracts"] = {frame, plain, Contract(40, kForeign, kWares, "Внос")};
  tables["Currencies"] = {Named("Code", kLev, "Български лев"),
                          Named("Code", kDollar, "Щатски долар")};
  tables["NomIn"] = {Named("Element", 1, "Не"), Named("Element", 2, "Да")};
  tables["Measures"] = {Unit(101, "кг", 1, false), Unit(102, "т", 1000, false),
                        Unit(201, "бр.", 1, true), Unit(212, "дузина", 12, true),
                        Unit(301, "час", 1, false)};
  tables["BaseSupplyList"] = {Entry(20045, "Ламарина 2 мм", 900, 0, 101, 2),
                              Entry(30140, "Шайба М12", 901, 0, 212, 0),
                              Entry(40001, "Монтаж", 0, 77, 301, 1)};
  tables["SuppManifacOrder"] = {{{"IdNumber", 112},
                                 {"Supplier", kSteel},
                                 {"SerialNumber", 20045},
                                 {"Description", "Поръчка метали"},
                                 {"Description2", "Metals order"},
                                 {"CalcQuantity", 150.0},
                                 {"RestOrdQNT", 100.0}}};
}

}  // namespace

void Set(NamedValues& row, std::string_view name, Variant value) {
  for (NamedValue& field : row) {
    if (!SameName(field.name, name)) continue;
    field.value = std::move(value);
    return;
  }
  row.push_back({std::string(name), std::move(value)});
}

Document MakeDocument(int id, int version) {
  Document document;
  document.head = {{"POIdNumber", id},
                   {"POVersion", version},
                   {"DocumentDate", *Date::FromYmd(2026, 3, 5)},
                   {"CostCenter", 1001},
                   {"Notifier", kIvanova},
                   {"KindSupply", kOther},
                   {"IncTranspInPrice", 1},
                   {"KindCurrency", kLev},
                   {"RateOfExchange", Decimal(10'000'000, 7)},
                   {"CurrSumPurchaseOrder", Decimal(0, 4)},
                   {"SumPurchaseOrder", Decimal(0, 4)},
                   {"CreatedFrom", "ivanova"},
                   {"CreatedOn", Stamp{}},
                   {"Status", 2},
                   {"OldVersion", false}};
  return document;
}

NamedValues MakeRow(int id, int number) {
  return {{"PurchaseOrderId", id},     {"PurchaseOrderVer", 1},
          {"RowNumber", number},       {"SerialNumber", 20045},
          {"InventoryId", 900},        {"Measure", 101},
          {"msMeasure", 101},          {"IncomeMeasure", 102},
          {"Quantity", 12.5},          {"Numerator", 1},
          {"RowNumerator", 1},         {"roundQNT", 2},
          {"OrdinaryFraction", false}, {"bslName", "Ламарина 2 мм"},
          {"MsrName", "кг"},           {"CurrSumWithoutVAT", Decimal(0, 4)}};
}

// --- the server ---------------------------------------------------------------------------------

TableServer::TableServer() {
  params[system::kHostGroup] = {{parameters::kAmountDecimals, "2"},
                                {parameters::kCentralBank, "1"},
                                {parameters::kNationalCurrency, "1"},
                                {parameters::kOwnUnitsOnly, "0"}};
  params[system::kModuleGroup] = {{parameters::cpCar, "1"},
                                  {parameters::cpBRM, "2"},
                                  {parameters::cpWares, "5"},
                                  {parameters::cpSuppServ, "6"},
                                  {parameters::cpKindSupplyChoice, "1"},
                                  {parameters::cpMaxTermOfPayment, "30"}};
  FillTables(tables);
}

Answer<SessionInfo> TableServer::LogIn(const LoginRequest& request) {
  SessionInfo info = session;
  info.login = request.login;
  info.ticket = "билет";
  info.sessionName = "s1";
  info.userName = "Мария Иванова";
  info.companyName = "Проба ООД";
  return info;
}

std::string TableServer::SqlOf(std::string_view table) const {
  for (auto fetch = fetches.rbegin(); fetch != fetches.rend(); ++fetch) {
    if (TableOf(fetch->sql) == table) return fetch->sql;
  }
  return {};
}

DataPacket TableServer::Search(const FetchRequest& request) {
  const Rows& all = tables[TableOf(request.sql)];
  Rows found;
  for (const NamedValues& row : all) {
    const bool fits = std::ranges::all_of(request.params, [&](const NamedValue& param) {
      const Variant* value = Value(row, param.name);
      return value == nullptr || *value == param.value;
    });
    if (fits && InBlock(row, request.sql)) found.push_back(row);
  }
  return PacketOf(kColumns, found);
}

Answer<std::vector<DataPacket>> TableServer::Fetch(const Caller&,
                                                   const std::vector<FetchRequest>& requests) {
  std::vector<DataPacket> answer;
  for (const FetchRequest& request : requests) {
    fetches.push_back(request);
    if (!request.sql.empty()) {
      answer.push_back(Search(request));
    } else if (request.provider == dspCheckAdmNotifiers.name) {
      answer.push_back(
          PacketOf(dspCheckAdmNotifiers, admissible ? Rows{{{"Notifier", employee}}} : Rows{}));
    } else if (request.provider == dspRatesOfExchange.name) {
      answer.push_back(
          PacketOf(dspRatesOfExchange, rate.IsNull() ? Rows{} : Rows{{{"CurrencyRate1", rate}}}));
    } else if (request.provider == dspNomIn249.name) {
      answer.push_back(PacketOf(
          dspNomIn249, Statuses({"Анулиран", "Отхвърлено", "Въведено", "За одобрение",
                                 "Частично одобрено", "Одобрено", "Изпълнява се", "Приключено"})));
    } else {
      answer.push_back(PacketOf(dspNomIn251, Statuses({"", "Отхвърлен", "Чака", "Одобрен"})));
    }
  }
  return answer;
}

Document& TableServer::Find(std::int64_t id) {
  const auto found = std::ranges::find_if(documents, [&](const Document& document) {
    return *Value(document.head, "POIdNumber") == Variant(id);
  });
  return *found;
}

Document* TableServer::Target(const VariantArray& ask) {
  if (documents.empty()) return nullptr;
  const auto nav = static_cast<Nav>(ask[get_rec::kNav].AsInt().value_or(0));
  if (nav == Nav::First) return &documents.front();
  if (nav == Nav::Last) return &documents.back();
  std::int64_t found = -1;  // the last version, or the one that is asked for
  for (std::size_t i = 0; i < documents.size(); ++i) {
    const NamedValues& head = documents[i].head;
    const Variant& version = ask[get_rec::kVersion];
    const bool wanted = version.IsNull() || *Value(head, "POVersion") == version;
    if (wanted && *Value(head, "POIdNumber") == ask[get_rec::kId])
      found = static_cast<std::int64_t>(i);
  }
  if (found < 0) return nullptr;
  if (nav == Nav::Next) ++found;
  if (nav == Nav::Previous) --found;
  if (nav == Nav::Step) found += ask[get_rec::kStep].AsInt().value_or(0);
  const auto last = static_cast<std::int64_t>(documents.size()) - 1;
  return &documents[static_cast<std::size_t>(std::clamp<std::int64_t>(found, 0, last))];
}

VariantArray TableServer::GetRec(const VariantArray& ask) {
  VariantArray tell(get_rec::kTellSize);
  Document* document = Target(ask);
  tell[get_rec::kFound] = document != nullptr;
  const bool last = document != nullptr && document == &documents.back();
  const bool first = document != nullptr && document == &documents.front();
  tell[get_rec::kCode] = static_cast<int>(document == nullptr ? LoadCode::None
                                          : last              ? LoadCode::Last
                                          : first             ? LoadCode::First
                                                              : LoadCode::Between);
  if (document == nullptr) return tell;
  std::size_t at = get_rec::kFirstPacket;
  tell[at++] = PacketOf(head::dspPurchaseOrder, {document->head});
  tell[at++] = PacketOf(det::dspPurchaseOrderDet, document->det);
  tell[at++] = PacketOf(del::dspPurchaseOrderDel, document->del);
  tell[at++] = PacketOf(pay::dspPurchaseOrderPayPl, document->pay);
  tell[at++] = PacketOf(adm::dspPurchaseOrderAdm, document->adm);
  tell[at++] = PacketOf(deliveries::dspDeliveries, document->deliveries);
  tell[at++] = PacketOf(roles::dspGetSuppDocConfirm, document->roles);
  const auto own = [&](const char* code, const char* table, const char* key) {
    Rows found;
    const Variant* value = Value(document->head, code);
    for (const NamedValues& row : tables[table]) {
      if (value != nullptr && *Value(row, key) == *value) found.push_back(row);
    }
    return found;
  };
  tell[at++] = PacketOf(own_rows::kCostCenter, own("CostCenter", "CostCenters", "CostCenter"));
  tell[at++] = PacketOf(own_rows::kPartner, own("Supplier", "Partners", "Partner"));
  tell[at++] = PacketOf(own_rows::kContract, own("ContractId", "SuppliesContracts", "IdNumber"));
  return tell;
}

Answer<VariantArray> TableServer::Call(const Caller&, const MethodCall& call) {
  methods.push_back(call);
  if (call.method == system::kGetParams) {
    VariantArray pairs;
    for (const auto& [number, text] : params[static_cast<int>(*call.arguments[0].AsInt())])
      pairs.emplace_back(VariantArray{number, text});
    return VariantArray{Variant(std::move(pairs))};
  }
  if (call.method == system::kGetCurrentEmployee) return VariantArray{employee};
  const std::string operation = call.arguments.empty() ? "" : call.arguments[0].ToText();
  if (operation == get_rec::kName) return GetRec(call.arguments);
  if (operation == new_rec::kName) return newRec;
  VariantArray answer = call.arguments;
  if (operation == sum_check::kName)
    std::copy(sumCheck.begin(), sumCheck.end(), answer.begin() + sum_check::kCompared);
  return answer;
}

Answer<ApplyAnswer> TableServer::Apply(const Caller&, const ApplyRequest& request) {
  applies.push_back(request);
  if (failNext) return *std::exchange(failNext, {});
  ApplyAnswer answer;
  for (const Change& change : request.delta) {
    ChangeOutcome& outcome = answer.outcomes.emplace_back();
    outcome.failure = std::exchange(refuseNext, {});
    outcome.applied = !outcome.failure;
    if (outcome.failure) outcome.present = std::exchange(presentNext, {});
    if (outcome.applied) Write(request.provider, change, outcome);
  }
  if (request.provider == head::dspPurchaseOrder.name)
    answer.ownerData = *Value(documents.back().head, "POIdNumber");
  return answer;
}

void TableServer::Write(const std::string& provider, const Change& change, ChangeOutcome&) {
  if (provider == head::dspPurchaseOrder.name && change.kind == ChangeKind::Insert) {
    Document document;
    document.head = change.after;
    const std::int64_t id =
        documents.empty() ? 1 : *Value(documents.back().head, "POIdNumber")->AsInt() + 1;
    Set(document.head, "POIdNumber", id);
    Set(document.head, "POVersion", 1);
    documents.push_back(document);
  } else if (provider == head::dspPurchaseOrder.name) {
    Document& document = Find(*Value(change.before, "POIdNumber")->AsInt());
    for (const NamedValue& field : change.after)
      Set(document.head, field.name, field.value);
  }
}

// --- the user -----------------------------------------------------------------------------------

World::World(int rights, int languages, int level) {
  server.session.languageNames = {"Български", "English"};
  server.session.languageNames.resize(static_cast<std::size_t>(languages));
  server.session.userLevel = level;
  for (const PointRow& row : kPoints)
    server.session.points.push_back({static_cast<std::int32_t>(row.point), rights});
}

void World::Open() {
  app = std::make_unique<VosApplication>(server, toolkit, clock);
  EXPECT_TRUE(app->LogIn("ivanova", "x"));
  RegisterOrvaneModule(*app);
  mainForm = StartOrvaneModule(*app);
  callsSeen_ = app->Session().calls;
  app->OpenPoint("PurchaseRequests");
  if (app->OpenForms().empty()) return;
  screen_ = static_cast<TfPurchaseOrder*>(app->OpenForms().back().get());
}

void World::Type(std::string_view field, std::string_view text) {
  const auto pointAt = [&](Control& control, int row, int column) {
    Screen().Dispatch(Pointed{&control, row, column});
  };
  const bool inHead = Screen().ActiveControl() == &Screen().diMainInfo;
  for (TVosDBGrid* grid :
       {&Screen().gPurchaseOrderDet, &Screen().gPurchaseOrderDel, &Screen().gPOPayPl}) {
    if (Screen().ActiveControl() != grid) continue;
    const GridColumn* column = grid->FindColumn(field);
    pointAt(*grid, -1, static_cast<int>(column - grid->columns.data()));
  }
  if (inHead) {
    const InspectorItem* item = Screen().diMainInfo.FindItem(field);
    pointAt(Screen().diMainInfo, static_cast<int>(item - Screen().diMainInfo.items.data()), -1);
  }
  if (text.empty()) {
    Press(KeyCode::Delete);
  } else {
    fakes::Type(Screen(), text);
  }
  const bool isLast = Items(Screen().diMainInfo).ends_with(field);
  Press(inHead && !isLast ? KeyStroke(KeyCode::Enter) : Shift(KeyCode::Tab));
}

std::string World::Live(std::span<const std::string_view> of) {
  std::string live;
  for (std::string_view name : of) {
    if (IsLive(name)) live += (live.empty() ? "" : " ") + std::string(name);
  }
  return live;
}

std::string World::Columns(const TVosDBGrid& grid) {
  std::string names;
  for (const GridColumn& column : grid.columns)
    names += (names.empty() ? "" : " ") + column.field;
  return names;
}

std::string World::Items(const TVosDataInspector& inspector) {
  std::string names;
  for (const InspectorItem& item : inspector.items) {
    if (item.visible) names += (names.empty() ? "" : " ") + item.field;
  }
  return names;
}

std::string World::Focus() {
  Control* control = Screen().ActiveControl();
  if (control == nullptr) return {};
  if (auto* grid = dynamic_cast<TVosDBGrid*>(control))
    return grid->Name() + "." +
           grid->columns[static_cast<std::size_t>(grid->CurrentColumn())].field;
  if (auto* inspector = dynamic_cast<TVosDataInspector*>(control))
    return inspector->Name() + "." +
           inspector->items[static_cast<std::size_t>(inspector->CurrentItem())].field;
  return control->Name();
}

std::string World::Messages() {
  std::string texts;
  for (const MessageDialog& message : toolkit.messages)
    texts += (texts.empty() ? "" : " | ") + message.text;
  toolkit.messages.clear();
  return texts;
}

std::int64_t World::Calls() {
  const std::int64_t calls = app->Session().calls;
  const std::int64_t since = calls - callsSeen_;
  callsSeen_ = calls;
  return since;
}

void World::AnswerYes(int times) {
  for (int i = 0; i < times; ++i)
    toolkit.answers.push_back(kAnswerYes);
}

void World::StartNew() {
  Press(KeyCode::F10);
  Type("DocumentDate", "05.03.2026");
  Type("CostCenter", "1001");
  Type("KindSupply", "4");
}

}  // namespace orvane::modules::requests
