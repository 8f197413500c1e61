#include "host/shell_form.h"

namespace orvane::host {
namespace {

constexpr auto Name = String("Name", 60, Key);
constexpr auto Caption = String("Caption", 100, Plain, "Екран");

constexpr LiveRow kLive[] = {{"acOpen", "gPoints"}};

}  // namespace

TfVosShell::TfVosShell(VosApplication& app)
    : TVosBaseForm({.app = &app}, "TfVosShell", "Orvane"),
      cdsPoints_("cdsPoints", {Name, Caption}),
      dsPoints_(cdsPoints_),
      gPoints_(*this, "gPoints", dsPoints_) {
  gPoints_.columns = {{.field = "Caption", .width = 60, .title = "Екран"}};
  gPoints_.fixedCols = 0;
  gPoints_.readOnly = true;
  gPoints_.emptyText =
      "Нямате право на нито един екран. Обърнете се към администратора на системата.";
  TAction open;
  open.name = "acOpen";
  open.caption = "Отваряне";
  open.shortcut = KeyCode::Enter;
  open.icon = "open";
  open.OnExecute = [this] { OpenCurrent(); };
  AddAction(std::move(open));
  AddHostActions(*this);
  ribbon = {{"Операции",
             {{"Екран", {"acOpen"}},
              {"Помощ", {"acHelp", "acLanguage", "acAbout"}},
              {"Изход", {"acExit"}}}}};
  layout = ColumnOf({Of(gPoints_, 1)});
}

void TfVosShell::FillPoints() {
  cdsPoints_.EmptyDataSet();
  for (const ModulePoint& point : App().points) {
    if (!point.access.Has(paOpen)) continue;
    cdsPoints_.Append();
    cdsPoints_[Name].Set(point.name);
    cdsPoints_[Caption].Set(point.caption);
    cdsPoints_.Post();
  }
  cdsPoints_.First();
}

std::string TfVosShell::StatusText() const {
  const SessionInfo& info = App().Info();
  const std::string& user =
      FirstLanguage() || info.userName2.empty() ? info.userName : info.userName2;
  return info.companyName + " · " + user;
}

std::span<const LiveRow> TfVosShell::LiveRows() const {
  return kLive;
}

void TfVosShell::OnClose() {
  if (!App().CloseForms()) throw Abort();
}

void TfVosShell::OpenCurrent() {
  if (!cdsPoints_.IsEmpty()) App().OpenPoint(cdsPoints_[Name].AsString(), GetLanguageNumber());
}

}  // namespace orvane::host
