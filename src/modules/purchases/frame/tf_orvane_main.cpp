#include "modules/purchases/frame/tf_orvane_main.h"

#include "contract/points.h"
#include "contract/system.h"
#include "host/dialogs.h"
#include "kit/documents/waiting.h"
#include "kit/message_text.h"
#include "modules/purchases/frame/screens.h"
#include "modules/purchases/registers/levels_approval/tf_levels_approval.h"

namespace orvane::modules {
namespace {

constexpr std::string_view kGeneratorModule = "MiVosGenerator";
constexpr std::string_view kTwoEmployees =
    "За потребител '%s' съществуват повече от един запис в таблица 'Служители'";

/// Gives a point paOpen while it lives and puts the remembered rights back, whatever happens.
class OpenForNow {
 public:
  explicit OpenForNow(ModulePoint& point) : point_(point), remembered_(point.access) {
    point_.access = point_.access.With(paOpen);
  }
  ~OpenForNow() { point_.access = remembered_; }
  OpenForNow(const OpenForNow&) = delete;
  OpenForNow& operator=(const OpenForNow&) = delete;

 private:
  ModulePoint& point_;
  TPointAccess remembered_;
};

}  // namespace

TfOrvaneMain::TfOrvaneMain(const FormIdentity& identity)
    : TVosModuleForm(identity, "TfOrvaneMain", "Управление на покупките") {
  PrepareGenerator();
  LoadSiblings();
  FindCurrentEmployee();
  ReadParameters();
  RefreshWaiting(App());
  App().OnScreenClosed = [&app = App()] { RefreshWaiting(app); };
}

TfOrvaneMain::~TfOrvaneMain() {
  App().OnScreenClosed = nullptr;
}

void TfOrvaneMain::PrepareGenerator() {
  App().dataSnap = App().CheckDataSnapModule(kGeneratorModule);
  dmMiVosGenerator_ = std::make_unique<TdmMiVosGenerator>();
  dmMiVosGenerator_->name += std::string(Point() == nullptr ? "" : Point()->name) +
                             std::to_string(ModuleNo()) + std::to_string(PointNo());
  App().dataSnap = App().CheckDataSnapModule(kOrvaneModule);
}

void TfOrvaneMain::LoadSiblings() {
  for (std::string_view key : {kSuppliesModule, kInvoicesModule}) {
    ModuleEntry* sibling = App().FindModule(key);
    if (sibling == nullptr || sibling->libraryHandle != 0) continue;
    sibling->libraryHandle = App().LoadPackage(*sibling);
  }
}

/// Documents read parameters when they open: they come once, with the module.
void TfOrvaneMain::ReadParameters() {
  for (const int group : {system::kHostGroup, system::kModuleGroup})
    App().RefreshParams(ModuleNo(), PointNo(), group);
}

void TfOrvaneMain::FindCurrentEmployee() {
  ModulePoint* point = App().FindPoint("LevelsApproval");
  if (point == nullptr) return;
  const OpenForNow open(*point);
  const auto levels = std::make_unique<TfLevelsApproval>(
      FormIdentity{&App(), this, ModuleNo(), point->number, point, point->access});
  App().vCurrentEmployee = levels->GetCurremtEmployee();
  if (App().vCurrentEmployee == Variant(-1)) Refuse(Filled(kTwoEmployees, {App().UserName()}));
}

}  // namespace orvane::modules
