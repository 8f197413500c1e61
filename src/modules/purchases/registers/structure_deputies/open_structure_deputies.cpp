#include "modules/purchases/registers/structure_deputies/open_structure_deputies.h"

#include "host/form.h"

namespace orvane::modules {
namespace {

void OpenStructureDeputies(TVosBaseForm& opener) {
  const auto screen = opener.App().CreateVosForm(&opener, "TfStructureDeputies", opener.ModuleNo(),
                                                 opener.PointNo(), opener.Point());
  if (screen == nullptr) return;
  screen->SetAccess(opener.Access());
  screen->ShowModal();
}

}  // namespace

TAction StructureDeputiesAction(TVosBaseForm& opener) {
  TAction action;
  action.name = "acStructureDeputies";
  action.caption = "Заместници";
  action.shortcut = KeyCode::F8;
  action.icon = "people";
  action.OnExecute = [&opener] { OpenStructureDeputies(opener); };
  return action;
}

}  // namespace orvane::modules
