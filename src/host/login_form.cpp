#include "host/login_form.h"

#include "host/controls/grid.h"
#include "host/controls/inspector.h"
#include "host/controls/small_controls.h"
#include "host/dialogs.h"
#include "host/form.h"

namespace orvane::host {
namespace {

constexpr auto Login = String("Login", 10, Plain, "Потребител");
constexpr auto Password = String("Password", 128, Plain, "Парола");
constexpr auto Description = String("Description", 200, Plain, "Описание");

constexpr std::string_view kTitle = "Вход";
constexpr std::string_view kAgainTitle = "Вход отново";

constexpr LiveRow kLive[] = {{"acLogIn", kAnywhere}};

class TfVosLogin : public TVosBaseForm {
 public:
  /// `sameUser` keeps the login of the ended session.
  TfVosLogin(const FormIdentity& identity, const Greeting& greeting, bool sameUser)
      : TVosBaseForm(identity, "TfVosLogin", sameUser ? kAgainTitle : kTitle),
        sameUser_(sameUser),
        cdsLogin_("cdsLogin", {Login, Password}),
        dsLogin_(cdsLogin_),
        cdsUsers_("cdsUsers", {Login, Password, Description}),
        dsUsers_(cdsUsers_),
        lCompany_(*this, "lCompany"),
        diLogin_(*this, "diLogin", dsLogin_),
        lUsers_(*this, "lUsers"),
        gUsers_(*this, "gUsers", dsUsers_) {
    cdsLogin_.Append();
    if (sameUser) cdsLogin_[Login].Set(App().UserName());
    lCompany_.text = greeting.companyName;
    diLogin_.items = {
        {.field = "Login", .label = "Потребител", .readOnly = sameUser, .required = true},
        {.field = "Password", .label = "Парола", .kind = ItemKind::Password, .required = true},
    };
    ListUsers(greeting.demonstrationUsers);
    TAction logIn;
    logIn.name = "acLogIn";
    logIn.caption = "Вход";
    logIn.shortcut = KeyCode::F9;
    logIn.secondShortcut = KeyCode::Enter;
    logIn.icon = "confirm";
    logIn.OnExecute = [this] { acLogInExecute(); };
    AddAction(std::move(logIn));
    AddDialogExit(*this);
    ribbon = {{"Вход", {{"Вход", {"acLogIn", "acExit"}}}}};
    layout = ColumnOf({Of(lCompany_), Of(diLogin_), Of(lUsers_), Of(gUsers_, 1)});
  }

  bool LoggedIn() const { return loggedIn_; }

  /// Until somebody is logged in there are no rows to count.
  std::string StatusText() const override { return {}; }

 protected:
  std::span<const LiveRow> LiveRows() const override { return kLive; }
  void OnShow() override { diLogin_.FocusField(sameUser_ ? "Password" : "Login"); }

 private:
  void ListUsers(const std::vector<DemonstrationUser>& users) {
    for (const DemonstrationUser& user : users) {
      cdsUsers_.Append();
      cdsUsers_[Login].Set(user.login);
      cdsUsers_[Password].Set(user.password);
      cdsUsers_[Description].Set(user.description);
      cdsUsers_.Post();
    }
    cdsUsers_.First();
    gUsers_.columns = {
        {.field = "Login", .width = 12, .title = "Потребител"},
        {.field = "Password", .width = 16, .title = "Парола"},
        {.field = "Description", .width = 60, .title = "Описание"},
    };
    gUsers_.readOnly = true;
    gUsers_.visible = !users.empty() && !sameUser_;
    lUsers_.visible = gUsers_.visible;
    lUsers_.text = "Демонстрационно дружество: изберете потребител и натиснете Enter.";
  }

  void TakeListedUser() {
    if (!cdsLogin_.Editing()) cdsLogin_.Edit();
    cdsLogin_[Login].Set(cdsUsers_[Login].Value());
    cdsLogin_[Password].Set(cdsUsers_[Password].Value());
  }

  /// Focuses what still has to be typed; false when nothing has.
  bool SomethingIsMissing() {
    for (const FieldDef& field : {Login, Password}) {
      if (!cdsLogin_[field].IsBlank()) continue;
      FocusControl(&diLogin_);
      diLogin_.FocusField(field.name);
      return true;
    }
    return false;
  }

  void acLogInExecute() {
    if (ActiveControl() == &gUsers_ && !cdsUsers_.IsEmpty()) TakeListedUser();
    diLogin_.FlushChanges();
    if (SomethingIsMissing()) return;
    const std::string password = cdsLogin_[Password].AsString();
    const Answer<Done> answer =
        sameUser_ ? App().LogInAgain(password) : App().LogIn(cdsLogin_[Login].AsString(), password);
    if (!answer) {
      VosMessageDlg(*this, 0, caption, FailureText(answer.GetFailure(), Typing::None));
      diLogin_.FocusField(Password.name);
      return;
    }
    loggedIn_ = true;
    Close();
  }

  bool sameUser_;
  bool loggedIn_ = false;
  TVosClientDataSet cdsLogin_;
  TDataSource dsLogin_;
  TVosClientDataSet cdsUsers_;
  TDataSource dsUsers_;
  TLabel lCompany_;
  TVosDataInspector diLogin_;
  TLabel lUsers_;
  TVosDBGrid gUsers_;
};

}  // namespace

bool RunLogin(VosApplication& app) {
  Answer<Greeting> greeting = app.Greet();
  while (!greeting) {
    if (!OfferAgain(app, nullptr, kTitle, greeting.GetFailure())) return false;
    greeting = app.Greet();
  }
  TfVosLogin dialog({.app = &app}, *greeting, false);
  dialog.ShowModal();
  return dialog.LoggedIn();
}

bool RunLoginAgain(TVosBaseForm& owner) {
  Greeting greeting;
  greeting.companyName = owner.App().Info().companyName;
  TfVosLogin dialog(DialogIdentity(owner), greeting, true);
  dialog.ShowModal();
  return dialog.LoggedIn();
}

}  // namespace orvane::host
