#include "host/application.h"

#include <algorithm>

#include "contract/system.h"
#include "data/abort.h"
#include "host/dialogs.h"
#include "host/form.h"
#include "packet/fold.h"

namespace orvane::host {
namespace {

constexpr std::int64_t kParamsKeptMicros = 60'000'000;
constexpr std::string_view kOpenCaption = "Отваряне на екран";

void TellOf(VosApplication& app, TVosBaseForm* owner, const std::string& text) {
  const std::string caption = owner != nullptr ? owner->caption : std::string(kOpenCaption);
  app.Toolkit().ShowMessage(owner, {.kind = 0, .caption = caption, .text = text, .yesNo = false});
}

/// The screen as the user knows it from the menu; one that has no place there has no name for him.
std::string ScreenTitle(const VosApplication& app, std::string_view className) {
  const auto point = std::ranges::find(app.points, className, &ModulePoint::screenClass);
  return point == app.points.end() ? "този екран" : "„" + point->caption + "“";
}

std::string NotAvailable(const VosApplication& app, std::string_view className) {
  const auto point = std::ranges::find(app.points, className, &ModulePoint::screenClass);
  return point == app.points.end() ? "Този екран още не е наличен."
                                   : "Екранът „" + point->caption + "“ още не е наличен.";
}

/// Number and text of each parameter that has a value.
std::map<int, std::string> ReadPairs(const VariantArray& answer) {
  const VariantArray* pairs = answer.size() == 1 ? answer[0].AsArray() : nullptr;
  if (pairs == nullptr)
    throw ServerError{{FailureKind::Internal, "Сървърът върна параметри в непознат вид."}};
  std::map<int, std::string> values;
  for (const Variant& row : *pairs) {
    const VariantArray* pair = row.AsArray();
    if (pair == nullptr || pair->size() != 2) continue;
    const std::optional<std::int64_t> number = (*pair)[0].AsInt();
    if (number) values[static_cast<int>(*number)] = (*pair)[1].ToText();
  }
  return values;
}

}  // namespace

// --- classes ---------------------------------------------------------------------------

void ClassRegistry::Register(std::string_view className, FormFactory factory) {
  const auto found = std::ranges::find(names_, className);
  if (found != names_.end()) {
    factories_[static_cast<std::size_t>(found - names_.begin())] = factory;
    return;
  }
  names_.emplace_back(className);
  factories_.push_back(factory);
}

FormFactory ClassRegistry::Find(std::string_view className) const {
  const auto found = std::ranges::find(names_, className);
  return found == names_.end() ? nullptr
                               : factories_[static_cast<std::size_t>(found - names_.begin())];
}

// --- session ---------------------------------------------------------------------------

VosApplication::VosApplication(IApplicationServer& server, IToolkit& toolkit, const Clock& clock)
    : toolkit_(toolkit), clock_(clock) {
  session_.server = &server;
}

VosApplication::~VosApplication() = default;

Answer<Greeting> VosApplication::Greet() {
  ++session_.calls;
  return session_.server->Greet();
}

LoginRequest VosApplication::MakeLoginRequest(std::string_view login,
                                              std::string_view password) const {
  return {.protocolVersion = kProtocolVersion,
          .login = std::string(login),
          .password = std::string(password),
          .machineName = program.machineName,
          .programVersion = program.version};
}

void VosApplication::TakeSession(SessionInfo info) {
  session_.info = std::move(info);
  params_.clear();
  TakeRights();
}

Answer<Done> VosApplication::LogIn(std::string_view login, std::string_view password) {
  ++session_.calls;
  Answer<SessionInfo> answer = session_.server->LogIn(MakeLoginRequest(login, password));
  if (!answer) return answer.GetFailure();
  TakeSession(*std::move(answer));
  language_ = !AppNotMultiLang() && session_.info.userLanguage == 2 ? 2 : 1;
  vCurrentEmployee = Variant();
  return Done();
}

Answer<Done> VosApplication::LogInAgain(std::string_view password) {
  ++session_.calls;
  Answer<SessionInfo> answer = session_.server->LogIn(MakeLoginRequest(UserName(), password));
  if (!answer) return answer.GetFailure();
  TakeSession(*std::move(answer));
  return Done();
}

void VosApplication::LogOut() {
  if (!IsLoggedIn()) return;
  ++session_.calls;
  // A session that cannot be ended now ends by itself on the server.
  (void)session_.server->LogOut({session_.info.ticket, 0, 0});
  TakeSession({});
  vCurrentEmployee = Variant();
}

Date VosApplication::Today() const {
  return session_.info.zone.DayOf(clock_.Now());
}

// --- languages -------------------------------------------------------------------------

std::string VosApplication::LanguageName(int number) const {
  const auto& names = session_.info.languageNames;
  const bool known = number >= 1 && static_cast<std::size_t>(number) <= names.size();
  return known ? names[static_cast<std::size_t>(number) - 1] : std::string();
}

// --- parameters ------------------------------------------------------------------------

VosApplication::ParamGroup VosApplication::FetchParams(ScreenPoint point, int group) {
  TVosSQLConnection connection(session_, point, system::kParametersClass);
  const VariantArray answer = connection.Ask(system::kGetParams, {Variant(group)});
  connection.Close();
  return {ReadPairs(answer), Now()};
}

const std::map<int, std::string>& VosApplication::ParamsOf(ScreenPoint point, int group) {
  const auto known = params_.find(group);
  if (known == params_.end()) return (params_[group] = FetchParams(point, group)).values;
  ParamGroup& kept = known->second;
  if (Now().micros - kept.readOn.micros < kParamsKeptMicros) return kept.values;
  kept.readOn = Now();
  try {
    kept = FetchParams(point, group);
  } catch (const ServerError&) {
    // Old values are better than none: the screen's own calls tell what is wrong with the server.
  }
  return kept.values;
}

Variant VosApplication::GetParam(std::int32_t moduleNo, std::int32_t pointNo, int group,
                                 int number) {
  const std::map<int, std::string>& values = ParamsOf({moduleNo, pointNo}, group);
  const auto found = values.find(number);
  if (found == values.end() || IsBlank(found->second)) return {};
  return found->second;
}

void VosApplication::SetParam(std::int32_t moduleNo, std::int32_t pointNo, int group, int number,
                              const Variant& value, const std::optional<Variant>& seen) {
  const Variant stored = value.IsNull() ? Variant() : Variant(value.ToText());
  const Variant before = seen ? *seen : GetParam(moduleNo, pointNo, group, number);
  TVosSQLConnection connection(session_, {moduleNo, pointNo}, system::kParametersClass);
  connection.Call(system::kSetParam, {Variant(group), Variant(number), stored, before});
  const auto known = params_.find(group);
  if (known != params_.end()) known->second.values[number] = stored.ToText();
}

void VosApplication::RefreshParams(std::int32_t moduleNo, std::int32_t pointNo, int group) {
  params_.erase(group);
  ParamsOf({moduleNo, pointNo}, group);
}

// --- module and points -----------------------------------------------------------------

ModuleEntry* VosApplication::FindModule(std::string_view key) {
  const auto found = std::ranges::find(modules, key, &ModuleEntry::key);
  return found == modules.end() ? nullptr : &*found;
}

ModulePoint* VosApplication::FindPoint(std::string_view name) {
  const auto found = std::ranges::find(points, name, &ModulePoint::name);
  return found == points.end() ? nullptr : &*found;
}

ModulePoint* VosApplication::FindPoint(std::int32_t number) {
  const auto found = std::ranges::find(points, number, &ModulePoint::number);
  return found == points.end() ? nullptr : &*found;
}

void VosApplication::TakeRights() {
  for (ModulePoint& point : points) {
    const auto& given = session_.info.points;
    const auto found = std::ranges::find(given, point.number, &PointRights::point);
    point.access = TPointAccess::FromBits(found == given.end() ? 0 : found->rights);
  }
}

void VosApplication::AddPoints(std::int32_t moduleNo, std::span<const PointRow> rows) {
  for (const PointRow& row : rows) {
    points.push_back({.number = static_cast<std::int32_t>(row.point),
                      .name = std::string(row.name),
                      .screenClass = std::string(row.screenClass),
                      .caption = std::string(row.caption),
                      .access = {},
                      .moduleNo = moduleNo});
  }
  TakeRights();
}

// --- screens ---------------------------------------------------------------------------

std::unique_ptr<TVosBaseForm> VosApplication::CreateVosForm(TVosBaseForm* opener,
                                                            std::string_view className,
                                                            std::int32_t moduleNo,
                                                            std::int32_t pointNo,
                                                            ModulePoint* point, int language) {
  if (point != nullptr && !point->access.Has(paOpen)) {
    TellOf(*this, opener, "Нямате право да отворите " + ScreenTitle(*this, className) + ".");
    return nullptr;
  }
  const FormFactory factory = classes.Find(className);
  if (factory == nullptr) {
    TellOf(*this, opener, NotAvailable(*this, className));
    return nullptr;
  }
  const TPointAccess access = point == nullptr ? TPointAccess() : point->access;
  std::unique_ptr<TVosBaseForm> form = factory({.app = this,
                                                .opener = opener,
                                                .moduleNo = moduleNo,
                                                .pointNo = pointNo,
                                                .point = point,
                                                .access = access,
                                                .language = language});
  if (form != nullptr) form->SetAccess(access);
  return form;
}

/// A screen that reads while it is created may find the link broken: the user decides how often it
/// is tried. Null when it cannot be opened; he was told why.
std::unique_ptr<TVosBaseForm> VosApplication::CreateFromMenu(ModulePoint& point, int language) {
  for (;;) {
    try {
      return CreateVosForm(nullptr, point.screenClass, point.moduleNo, point.number, &point,
                           language);
    } catch (const Abort&) {
      return nullptr;
    } catch (const ServerError& error) {
      const auto shown = std::ranges::find_if(livingForms_, &TVosBaseForm::IsShown);
      const bool ended = error.failure.kind == FailureKind::SessionEnded;
      const bool again = ended && shown != livingForms_.end()
                             ? (*shown)->MayReadAgain(error.failure)
                             : OfferAgain(*this, nullptr, point.caption, error.failure);
      if (!again) return nullptr;
    }
  }
}

TVosBaseForm* VosApplication::Open(ModulePoint& point, int language) {
  for (const std::unique_ptr<TVosBaseForm>& form : openForms_) {
    if (form->IsClosed() || form->Point() != &point) continue;
    toolkit_.Show(*form);
    return form.get();
  }
  std::unique_ptr<TVosBaseForm> form = CreateFromMenu(point, language);
  if (form == nullptr) return nullptr;
  openForms_.push_back(std::move(form));
  TVosBaseForm& opened = *openForms_.back();
  toolkit_.Show(opened);
  return opened.IsClosed() ? nullptr : &opened;
}

TVosBaseForm* VosApplication::OpenPoint(std::string_view pointName, int language) {
  ModulePoint* point = FindPoint(pointName);
  if (point != nullptr) return Open(*point, language);
  TellOf(*this, nullptr, "Няма точка „" + std::string(pointName) + "“.");
  return nullptr;
}

TVosBaseForm* VosApplication::OpenScreen(std::string_view className) {
  const auto found = std::ranges::find(points, className, &ModulePoint::screenClass);
  if (found != points.end()) return Open(*found, 0);
  TellOf(*this, nullptr, NotAvailable(*this, className));
  return nullptr;
}

void VosApplication::FreeClosedForms() {
  const auto freed = std::erase_if(openForms_, [](const std::unique_ptr<TVosBaseForm>& form) {
    return form->IsClosed() && !form->IsBusy();
  });
  if (freed > 0 && OnScreenClosed && IsLoggedIn()) OnScreenClosed();
}

bool VosApplication::CloseAll(const std::vector<TVosBaseForm*>& forms) {
  for (std::size_t i = forms.size(); i-- > 0;) {
    // Closing one may free others: a question on the way lets the toolkit work.
    const bool lives = std::ranges::find(livingForms_, forms[i]) != livingForms_.end();
    if (!lives || forms[i]->IsClosed()) continue;
    forms[i]->Dispatch(CloseWanted());
    if (!forms[i]->IsClosed()) return false;
  }
  return true;
}

bool VosApplication::CloseForms() {
  std::vector<TVosBaseForm*> forms;
  for (const std::unique_ptr<TVosBaseForm>& form : openForms_)
    forms.push_back(form.get());
  return CloseAll(forms);
}

bool VosApplication::CloseProgram() {
  std::vector<TVosBaseForm*> forms;
  for (TVosBaseForm* form : livingForms_) {
    if (form->IsShown()) forms.push_back(form);
  }
  return CloseAll(forms);
}

VariantArray VosApplication::ConnectionInfo() const {
  // The process number travels as a 16-bit integer.
  constexpr std::int32_t kBelow16Bits = 0x7FFF;
  return {session_.info.sessionName, program.processNumber & kBelow16Bits, UserName(),
          program.machineName, program.version};
}

}  // namespace orvane::host
