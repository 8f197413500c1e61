#pragma once

// Two small screens of kit pieces, over a server of two tables behind a door that breaks: Folder, a
// register of papers and their lines, and Document, one paper as a head with its lines.

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "data/fake_server.h"
#include "host/controls/grid.h"
#include "host/controls/inspector.h"
#include "host/controls/small_controls.h"
#include "host/form_fakes.h"
#include "kit/documents/document_load.h"
#include "kit/documents/shown_document.h"
#include "kit/immediate_apply.h"
#include "kit/master_detail.h"
#include "packet/faulty_door.h"

namespace orvane::kit::papers {

inline constexpr auto Id = Int32("Id", Key | Required, "Номер");
inline constexpr auto Name = String("Name", 20, Plain, "Описание");
inline constexpr auto PaperId = Int32("PaperId", Plain, "Документ");
inline constexpr auto dspLine = Writes("dspLine", "Line", Id, Name, PaperId);
inline constexpr auto dspPaper =
    Writes("dspPaper", "Paper", Id, Name, String("CreatedFrom", 20), Moment("CreatedOn"),
           String("AmendFrom", 20), Moment("AmendOn"));

/// Papers 1 and 2 with lines 11 and 12, 21.
class TwoTables final : public IApplicationServer {
 public:
  test::FakeServer papers{dspPaper}, lines{dspLine};
  std::string log;  ///< what reached the server, in order: "dspPaper get 1"

  TwoTables() {
    for (const int id : {1, 2})
      papers.rows[id] = {id, "Акт " + std::to_string(id), {}, {}, {}, {}};
    for (const int id : {11, 12, 21})
      lines.rows[id] = {id, "ред " + std::to_string(id), id / 10};
  }
  Answer<Greeting> Greet() override { return Greeting{}; }
  Answer<Done> LogOut(const Caller&) override { return Done{}; }
  Answer<SessionInfo> LogIn(const LoginRequest& request) override {
    SessionInfo info;
    info.login = request.login;
    info.languageNames = {"Български"};
    return info;
  }
  Answer<std::vector<DataPacket>> Fetch(const Caller&,
                                        const std::vector<FetchRequest>& asked) override {
    std::vector<DataPacket> packets;
    for (const FetchRequest& one : asked)
      packets.push_back(one.params.empty() ? papers.Rows()
                                           : lines.Rows("PaperId", one.params[0].value));
    return packets;
  }
  Answer<ApplyAnswer> Apply(const Caller& caller, const ApplyRequest& request) override {
    log += request.provider + " ";
    return (request.provider == dspPaper.name ? papers : lines).Apply(caller, request);
  }
  /// The paper of that number with its lines.
  Answer<VariantArray> Call(const Caller&, const MethodCall& call) override {
    const Variant& id = call.arguments[0];
    log += "get " + id.ToText() + " ";
    const DataPacket found = papers.Rows("Id", id);
    return VariantArray{static_cast<int>(LoadCode::Between), found.rowCount == 1, found,
                        lines.Rows("PaperId", id)};
  }
};

struct Desk {
  TwoTables server;
  FaultyDoor door{server};
  fakes::FakeToolkit toolkit;
  SetClock clock{Stamp{1'772'694'000'000'000}};
  VosApplication app{door, toolkit, clock};

  Desk() { EXPECT_TRUE(app.LogIn("ivanova", "").Ok()); }
  std::string Log() { return std::exchange(server.log, {}); }
  /// Texts of the messages since the last question, each with a bar behind it.
  std::string Messages() {
    std::string texts;
    for (const MessageDialog& message : std::exchange(toolkit.messages, {}))
      texts += message.text + "|";
    return texts;
  }
};

class Screen : public TVosBaseForm {
 public:
  explicit Screen(Desk& desk)
      : TVosBaseForm({.app = &desk.app, .moduleNo = 11, .pointNo = 1}, "TfPapers", "Документи"),
        connection(desk.app.Session(), {11, 1}, "TsmPapers"),
        cdsPapers("cdsPapers", connection, dspPaper),
        cdsLines("cdsLines", connection, dspLine),
        dsPapers(cdsPapers),
        dsLines(cdsLines),
        gLines(*this, "gLines", dsLines) {
    gLines.columns = {{.field = "Name", .title = "Име"}};
  }
  /// Types a name into the current row, or into a new one, and leaves it in edit.
  void Type(TVosClientDataSet& rows, std::string_view name, bool isNew = false) {
    RunInGate([&] {
      isNew ? rows.Append() : rows.Edit();
      rows[Name].Set(name);
    });
  }
  void Post(TVosClientDataSet& rows, std::string_view name, bool isNew = false) {
    Type(rows, name, isNew);
    if (rows.Editing()) RunInGate([&] { rows.Post(); });
  }
  void GoTo(Control& control) { Dispatch(Pointed{&control}); }

  TVosSQLConnection connection;
  TVosClientDataSet cdsPapers, cdsLines;
  TDataSource dsPapers, dsLines;
  TVosDBGrid gLines;
};

class Folder : public Screen {
 public:
  explicit Folder(Desk& desk, ImmediateApply how = {})
      : Screen(desk),
        gPapers(*this, "gPapers", dsPapers),
        linesOfPaper(
            *this, cdsPapers, cdsLines,
            {.masterKey = "Id", .param = "PaperId", .detailKey = "PaperId", .noMaster = {}}) {
    gPapers.columns = gLines.columns;
    ApplyAtOnce(*this, cdsPapers, how);
    ApplyAtOnce(*this, cdsLines, how);
    RunInGate([this] { cdsPapers.Open(); });
    FocusControl(&gPapers);
  }

  TVosDBGrid gPapers;
  MasterDetail linesOfPaper;
};

class Document : public Screen {
 public:
  /// Shows the paper of that number; 0: none yet.
  explicit Document(Desk& desk, std::int64_t first = 1)
      : Screen(desk),
        eId(*this, "eId", "Номер"),
        di(*this, "di", dsPapers),
        head(*this, cdsPapers, MakeHeadRules()),
        shown(*this, eId, cdsPapers, MakeShownRules()) {
    di.items = {{.field = "Name", .label = "Описание"}};
    ApplyRowsAtOnce(*this, cdsLines, cdsPapers);
    cdsPapers.BeforePost = [this] { head.Stamp(Id); };
    cdsLines.OnNewRecord = [this] { cdsLines[PaperId].Set(cdsPapers[Id].Value()); };
    eId.OnEnter = [this] { shown.KeyEditEnter(); };
    if (first != 0) RunInGate([&] { Load(first); });
    FocusControl(&di);
    desk.Log();
  }

  std::int64_t id = 0;  ///< shown; 0: none
  int dropped = 0;      ///< how often what was typed was given up
  bool existed = true;  ///< what the server was last told of the head
  TKeyEdit eId;
  TVosDataInspector di;
  DocumentHead head;
  ShownDocument shown;

 protected:
  void AfterRefreshActions() override { shown.EventEnds(); }

 private:
  LoadCode Load(std::int64_t asked) {
    VariantArray data{asked};
    CallOperations(connection, "Get", data);
    LoadPackets(data, 2, {&cdsPapers, &cdsLines});
    id = cdsPapers[Id].AsInt().value_or(0);
    shown.WasLoaded();
    return ReadLoadTold(data).code;
  }
  HeadApplyRules MakeHeadRules() {
    return {.afterRefusal = AfterRefusal::Correct,
            .savedIdentifier = "Id",
            .ownerData = [this](bool posts) { return Variant(existed = posts); },
            .reloadSaved =
                [this](const Variant& saved, bool) {
                  SendWaiting();
                  Load(saved.AsInt().value_or(0));
                },
            .reloadDropped = [this] { shown.Reload(); }};
  }
  /// What waits is sent by the kit before it reloads.
  ShownDocumentRules MakeShownRules() {
    return {.notFound = {},
            .id = [this] { return id; },
            .save =
                [this] {
                  RefuseIf(cdsPapers[Name].IsBlank(), "Попълнете описанието.");
                  if (!head.Post()) throw Abort{};
                },
            .reload = [this] { Load(id); },
            .load = [this](std::int64_t asked) { return Load(asked); },
            .typingDropped = [this] { ++dropped; }};
  }
};

}  // namespace orvane::kit::papers
