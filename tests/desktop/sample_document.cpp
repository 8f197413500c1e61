#include "desktop/sample_document.h"

#include "contract/field.h"
#include "host/dialogs.h"

namespace orvane::desktop::sample {
namespace {

constexpr auto DocumentDate = Day("DocumentDate", Plain, "Дата на документ");
constexpr auto Description = String("Description", 80, Plain, "Описание");
constexpr auto CostCenter = Int32("CostCenter", Required, "Център за разход");
constexpr auto WithTransport = Bit("WithTransport", Plain, "Включен транспорт");
constexpr auto RateOfExchange = Rate("RateOfExchange", Plain, "Валутен курс");
constexpr auto Rationale = Memo("Rationale", Plain, "Обосновка");
constexpr auto Total = Amount("Total", Plain, "Сума на искането");
constexpr auto Created = String("Created", 40, Plain, "Създаден");
constexpr auto OldVersion = Bit("OldVersion", Plain, "Стара версия");

constexpr auto RowNumber = Int16("RowNumber", Key, "Номер на ред");
constexpr auto SerialNumber = Code19("SerialNumber", Plain, "Пореден номер");
constexpr auto Name = String("Name", 60, Plain, "Име");
constexpr auto Order = Int32("Order", Plain, "Номер");
constexpr auto OrderName = String("OrderName", 40, Plain, "Име");
constexpr auto Measure = Int16("Measure", Plain, "Код");
constexpr auto MeasureName = String("MeasureName", 20, Plain, "Име");
constexpr auto Quantity = Amount("Quantity", Plain, "Количество");
constexpr auto Urgent = Bit("Urgent", Plain, "Спешно");
constexpr auto Remarks = Memo("Remarks", Plain, "Бележки");

constexpr auto Code = Int32("Code", Key, "Код");
constexpr auto UnitName = String("UnitName", 40, Plain, "Име");

constexpr LiveRow kLive[] = {
    {"acSave", "diMain", InState::Any, paEdit},
    {"acForConfirmation", "eIdNum", InState::NotInsert, paEdit},
    {"acAnnul", "eIdNum", InState::Any, paEdit},
    {"acUnFinish", kAnywhere, InState::Any, {}},
    {"acCancel", "diMain", InState::Any, {}},
    {"acCancel", "gRows", InState::Any, {}},
    {"acDelete", "gRows", InState::Any, {}},
    {"acNewDoc", "eIdNum", InState::Any, {}},
    {"acCopyDoc", "eIdNum", InState::Any, {}},
    {"acPrint", kAnywhere, InState::Any, {}},
    {"acRows", kAnywhere, InState::Any, {}},
    {"acSearch", kAtCombo, InState::Any, {}},
    {"acNextY", "eIdNum", InState::Any, {}},
    {"acLastY", "eIdNum", InState::Any, {}},
};

struct SampleAction {
  std::string_view name;
  std::string_view caption;
  KeyStroke key;
  std::string_view icon;
};

constexpr SampleAction kActions[] = {
    {"acSave", "Запис", KeyCode::F9, "save"},
    {"acCancel", "Отказ", Ctrl(KeyCode::Z), "cancel"},
    {"acDelete", "Изтриване", KeyCode::F5, "delete"},
    {"acNewDoc", "Нов документ", KeyCode::F10, "new"},
    {"acNewVersion", "Нова версия", Ctrl(KeyCode::F10), "version"},
    {"acCopyDoc", "Копиране", Ctrl(KeyCode::K), "copy"},
    {"acForConfirmation", "За одобрение", KeyCode::F9, "send"},
    {"acCorrect", "Корекция", Ctrl(KeyCode::F9), "edit"},
    {"acAnnul", "Анулиране", Ctrl(KeyCode::F5), "annul"},
    {"acConfirm", "Одобряване", KeyCode::F8, "approve"},
    {"acRefuse", "Отхвърляне", Alt(KeyCode::F8), "reject"},
    {"acUnconfirm", "Премахване на одобрението", Ctrl(KeyCode::F8), "withdraw"},
    {"acUnRefuse", "Премахване на отхвърлянето", Shift(KeyCode::F8), "withdraw"},
    {"acFinish", "Приключване", Ctrl(KeyCode::F), "finish"},
    {"acUnFinish", "Премахване на приключването", Ctrl(KeyCode::U), "withdraw"},
    {"acSearch", "Търсене", KeyCode::F2, "search"},
    {"acNameSearch", "Търсене по име", Shift(KeyCode::F2), "search"},
    {"acPartialSearch", "Търсене по част от име", Ctrl(KeyCode::F2), "search"},
    {"acPrint", "Печат", KeyCode::F7, "print"},
    {"acRows", "Редове", KeyCode::F6, "rows"},
    {"acFirstY", "Първи", Shift(KeyCode::F3), ""},
    {"acPriorPageY", "Назад", Ctrl(KeyCode::F3), ""},
    {"acPriorY", "Предишен", KeyCode::F3, ""},
    {"acNextY", "Следващ", KeyCode::F4, ""},
    {"acNextPageY", "Напред", Ctrl(KeyCode::F4), ""},
    {"acLastY", "Последен", Shift(KeyCode::F4), ""},
};

struct UnitRow {
  int code;
  const char* name;
};
constexpr UnitRow kUnits[] = {{101, "кг"}, {102, "г"}, {201, "бр."}, {212, "дузина"}};

DataPacket Listed(std::span<const UnitRow> rows) {
  DataPacket packet;
  packet.AddColumn("Code", ValueKind::Int32).AddColumn("UnitName", ValueKind::String, 40);
  for (const UnitRow& row : rows) {
    const Variant values[] = {row.code, row.name};
    packet.AppendRow(values);
  }
  return packet;
}

constexpr UnitRow kCenters[] = {{1001, "Механичен цех"},
                                {1002, "Леярна"},
                                {1003, "Механично сглобяване"},
                                {2001, "Администрация"}};

}  // namespace

Answer<SessionInfo> SampleServer::LogIn(const LoginRequest& request) {
  SessionInfo info;
  info.ticket = "билет";
  info.login = request.login;
  info.userName = "Мария Иванова";
  info.companyName = "Демонстрационно дружество";
  info.languageNames = {"Български", "English"};
  info.points = {{1, 15}};
  return info;
}

Answer<std::vector<DataPacket>> SampleServer::Fetch(const Caller&,
                                                    const std::vector<FetchRequest>&) {
  return Failure{FailureKind::BadRequest, "Тук няма какво да се чете."};
}

Answer<ApplyAnswer> SampleServer::Apply(const Caller&, const ApplyRequest&) {
  return Failure{FailureKind::BadRequest, "Тук не се записва."};
}

TfSample::TfSample(VosApplication& app)
    : TVosBaseForm({.app = &app, .access = {paOpen, paEdit, paInsert, paDelete}}, "TfSample",
                   "Искане за покупка"),
      cdsHead_("cdsHead", {DocumentDate, Description, CostCenter, WithTransport, RateOfExchange,
                           Rationale, Total, Created, OldVersion}),
      dsHead_(cdsHead_),
      cdsRows_("cdsRows", {RowNumber, SerialNumber, Name, Order, OrderName, Measure, MeasureName,
                           Quantity, Urgent, Remarks}),
      dsRows_(cdsRows_),
      cdsDates_("cdsDates", {RowNumber, DocumentDate, Quantity}),
      dsDates_(cdsDates_),
      connection_(app.Session(), {11, 1}, "TsmSQL"),
      cdsUnits_("cdsUnits", connection_, {Code, UnitName}),
      units_(cdsUnits_, "Code"),
      cdsCenters_("cdsCenters", connection_, {Code, UnitName}),
      centers_(cdsCenters_, "Code"),
      cbUnits(*this, "cbUnits", units_),
      cbCenters(*this, "cbCenters", centers_),
      eIdNum(*this, "eIdNum", "Идентификатор"),
      eVersion(*this, "eVersion", "Версия"),
      lStatus(*this, "lStatus"),
      diMain(*this, "diMain", dsHead_),
      diAdmin(*this, "diAdmin", dsHead_),
      gRows(*this, "gRows", dsRows_),
      gDates(*this, "gDates", dsDates_),
      pcTables(*this, "pcTables") {
  cbUnits.lookupNameField = "UnitName";
  cbCenters.lookupNameField = "UnitName";
  FillDatasets();
  PlaceControls();
  AddSampleActions();
}

TfSample::~TfSample() = default;

std::span<const LiveRow> TfSample::LiveRows() const {
  return kLive;
}

void TfSample::AddSampleActions() {
  for (const SampleAction& row : kActions) {
    TAction action;
    action.name = row.name;
    action.caption = row.caption;
    action.shortcut = row.key;
    action.icon = row.icon;
    action.OnExecute = [this, name = std::string(row.name)] {
      executed.push_back(name);
      if (name == "acRows") pcTables.ShowPage("tsRows");
      if (name == "acCancel" && ActiveControl() != nullptr) {
        ActiveControl()->CancelEditor();
        if (cdsRows_.Editing()) cdsRows_.Cancel();
      }
      if (name != "acDelete" || !Confirmed(*this, _rDeleteCaption, _rDeleteText)) return;
      if (!cdsRows_.IsEmpty()) cdsRows_.Delete();
    };
    AddAction(std::move(action));
  }
  AddHostActions(*this);
  ribbon = {
      {"Операции",
       {{"Операции", {"acSave", "acCancel", "acDelete", "acNewDoc", "acNewVersion", "acCopyDoc"}},
        {"Одобрение",
         {"acForConfirmation", "acCorrect", "acAnnul", "acConfirm", "acRefuse", "acUnconfirm",
          "acUnRefuse", "acFinish", "acUnFinish"}},
        {"Търсене", {"acSearch", "acNameSearch", "acPartialSearch"}},
        {"Справки", {"acPrint", "acRows"}},
        {"Изход", {"acExit"}}}}};
}

void TfSample::FillDatasets() {
  units_.TakeFilled(Listed(kUnits));
  centers_.TakeFilled(Listed(kCenters));
  cdsHead_.Append();
  cdsHead_[DocumentDate].Set(*Date::FromYmd(2026, 3, 5));
  cdsHead_[Description].Set("Ламарина и крепежи за преса 4, планов ремонт");
  cdsHead_[CostCenter].Set(1001);
  cdsHead_[WithTransport].Set(true);
  cdsHead_[RateOfExchange].Set(*Decimal::Parse("0,9234"));
  cdsHead_[Rationale].Set("Изчерпан запас;\nремонтът започва на 20.03.");
  cdsHead_[Total].Set(*Decimal::Parse("3878,28"));
  cdsHead_[Created].Set("ivanova · 05.03.2026 09:12");
  cdsHead_.Post();
  cdsHead_[Total].Format.grouped = true;
  cdsHead_[Total].Format.decimals = 2;
  struct Row {
    int serial;
    const char* name;
    int order;
    int measure;
    const char* quantity;
    bool urgent;
    const char* remarks;
  };
  constexpr Row rows[] = {
      {20045, "Ламарина 2 мм, 1000×2000", 112, 101, "1250,5", true, "Сертификат 3.1"},
      {20051, "Ламарина 3 мм, 1250×2000", 112, 101, "800", false, ""},
      {30112, "Болт М12×40, поцинкован", 0, 201, "2000", false, ""},
      {30140, "Шайба М12 DIN 125", 0, 212, "41", true, "Остатък в бройки"},
      {30155, "Гайка М12 DIN 934", 0, 201, "2000", false, ""},
  };
  int number = 0;
  for (const Row& row : rows) {
    cdsRows_.Append();
    cdsRows_[RowNumber].Set(++number);
    cdsRows_[SerialNumber].Set(row.serial);
    cdsRows_[Name].Set(row.name);
    if (row.order != 0) {
      cdsRows_[Order].Set(row.order);
      cdsRows_[OrderName].Set("Поръчка метали I тримесечие");
    }
    cdsRows_[Measure].Set(row.measure);
    cdsRows_[MeasureName].Set(row.measure == 101 ? "кг" : row.measure == 212 ? "дузина" : "бр.");
    cdsRows_[Quantity].Set(*Decimal::Parse(row.quantity));
    cdsRows_[Urgent].Set(row.urgent);
    cdsRows_[Remarks].Set(row.remarks);
    cdsRows_.Post();
  }
  cdsRows_[Quantity].Format.grouped = true;
  cdsRows_.First();
}

void TfSample::PlaceControls() {
  eIdNum.SetText("2417");
  eVersion.SetText("2");
  lStatus.text = "Въведено";
  lStatus.chip = true;
  diMain.items = {
      {.field = "DocumentDate", .label = "Дата на документ", .required = true},
      {.field = "Description", .label = "Описание (Български)"},
      {.field = "CostCenter", .label = "Център за разход", .combo = &cbCenters, .required = true},
      {.field = "WithTransport", .label = "Включен транспорт в цената", .kind = ItemKind::Check},
      {.field = "RateOfExchange", .label = "Валутен курс", .mask = "*4[#][,*7[#]]"},
      {.field = "Rationale", .label = "Обосновка (Български)", .kind = ItemKind::Memo},
  };
  diAdmin.items = {
      {.field = "Total", .label = "Сума на искането в евро"},
      {.field = "Created", .label = "Създаден · От"},
      {.field = "OldVersion", .label = "Стара версия", .kind = ItemKind::Check},
  };
  diAdmin.readOnly = true;
  gRows.columns = {
      {.field = "RowNumber", .width = 5, .title = "Номер~на ред", .readOnly = true},
      {.field = "SerialNumber", .width = 10, .title = "Пореден~номер", .mask = "*10[#]"},
      {.field = "Name", .width = 40, .title = "Име", .readOnly = true},
      {.field = "Order", .width = 7, .title = "Номер", .group = "Поръчка за производство"},
      {.field = "OrderName",
       .width = 26,
       .title = "Име",
       .group = "Поръчка за производство",
       .readOnly = true},
      {.field = "Measure", .width = 5, .title = "Код", .group = "Мярка", .combo = &cbUnits},
      {.field = "MeasureName", .width = 8, .title = "Име", .group = "Мярка", .readOnly = true},
      {.field = "Quantity", .width = 12, .title = "Количество"},
      {.field = "Urgent", .width = 6, .title = "Спешно", .kind = ColumnKind::Check},
      {.field = "Remarks", .width = 30, .title = "Бележки", .kind = ColumnKind::Memo},
  };
  gRows.canInsert = true;
  gDates.columns = {
      {.field = "RowNumber", .width = 5, .title = "Номер~на ред"},
      {.field = "DocumentDate", .width = 12, .title = "Дата"},
      {.field = "Quantity", .width = 12, .title = "Количество"},
  };
  gDates.canInsert = true;
  gDates.emptyText = "Няма дати на доставка. Стрелка надолу добавя първата.";
  pcTables.pages = {
      {.name = "tsRows", .caption = "Материали и услуги", .content = &gRows},
      {.name = "tsDates", .caption = "Дати на доставка", .content = &gDates},
  };
  layout = ColumnOf({
      RowOf({Of(eIdNum),
             BarOf({"acFirstY", "acPriorPageY", "acPriorY", "acNextY", "acNextPageY", "acLastY"}),
             Of(eVersion), SpaceOf(), Of(lStatus)}),
      RowOf({Of(diMain, 4), Of(diAdmin, 3)}),
      Of(pcTables, 1),
  });
}

}  // namespace orvane::desktop::sample
