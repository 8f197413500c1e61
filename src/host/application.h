#pragma once

// The host application as a module sees it: who works, in which language, with which parameters;
// the registry of screen classes; the module's points and what the user may do at them.

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "contract/points.h"
#include "data/connection.h"
#include "host/access.h"
#include "host/toolkit.h"
#include "packet/application_server.h"
#include "packet/clock.h"

namespace orvane::host {

class TVosBaseForm;
class VosApplication;

/// A module point as the host knows it.
struct ModulePoint {
  std::int32_t number = 0;
  std::string name;
  std::string screenClass;
  std::string caption;
  TPointAccess access;
  std::int32_t moduleNo = kOrvaneModuleNo;
};

/// What the program knows of itself and of the machine; set by whoever starts it.
struct ProgramInfo {
  std::string version = "0.1.0";
  std::string machineName;
  std::int32_t processNumber = 0;
  /// Where the server is, for the status bar: "127.0.0.1:8011"; empty: inside this program.
  std::string serverName;
};

/// What waits for the user, for the status bar of every screen; set by the module that knows.
struct WaitingWork {
  std::int64_t documents = 0;
  std::string text;   ///< "2 документа чакат Вас"; empty: nothing waits
  std::string brief;  ///< the same where there is little room: "2 чакат Вас"
  /// Leads to where the user decides, from the screen he is in; empty: there is no such place.
  std::function<void(TVosBaseForm& from)> Open;
};

/// What a new screen is given by the host or by the screen that opens it.
struct FormIdentity {
  VosApplication* app = nullptr;
  TVosBaseForm* opener = nullptr;
  std::int32_t moduleNo = 0;
  std::int32_t pointNo = 0;
  ModulePoint* point = nullptr;
  TPointAccess access{};
  int language = 0;  ///< that the screen begins in; 0: its opener's, else the user's
};

using FormFactory = std::unique_ptr<TVosBaseForm> (*)(const FormIdentity& identity);

/// Screen classes by name, in the order they were registered.
class ClassRegistry {
 public:
  /// A name registered again keeps its place and takes the new factory. A null factory is a screen
  /// that is not available yet.
  void Register(std::string_view className, FormFactory factory);
  /// Null when there is none.
  FormFactory Find(std::string_view className) const;
  const std::vector<std::string>& Names() const { return names_; }

 private:
  std::vector<std::string> names_;
  std::vector<FormFactory> factories_;
};

/// A sibling module that the documents call into. A handle of 0 means not loaded.
struct ModuleEntry {
  std::string key;
  std::string packageName;
  std::int64_t libraryHandle = 0;
};

/// One logged-in user's application. Two may live side by side (two sessions in one walk).
class VosApplication {
 public:
  VosApplication(IApplicationServer& server, IToolkit& toolkit, const Clock& clock);
  ~VosApplication();
  VosApplication(const VosApplication&) = delete;
  VosApplication& operator=(const VosApplication&) = delete;

  Answer<Greeting> Greet();
  Answer<Done> LogIn(std::string_view login, std::string_view password);
  /// Logs in again as the same user after a session ended; what is open stays open.
  Answer<Done> LogInAgain(std::string_view password);
  void LogOut();
  bool IsLoggedIn() const { return !session_.info.ticket.empty(); }
  /// Whether the way to the server stands now; asks nothing over it.
  bool IsConnected() const { return session_.server->IsReachable(); }

  ProgramInfo program;
  WaitingWork waiting;

  IToolkit& Toolkit() const { return toolkit_; }
  const Clock& TheClock() const { return clock_; }
  Stamp Now() const { return clock_.Now(); }
  Date Today() const;
  ClientSession& Session() { return session_; }
  const SessionInfo& Info() const { return session_.info; }
  const std::string& UserName() const { return session_.info.login; }
  std::int32_t UserCategory() const { return session_.info.userLevel; }

  // --- languages --------------------------------------------------------------------------------
  bool AppNotMultiLang() const { return session_.info.languageNames.size() < 2; }
  /// Number of the language that screens begin in for this user, from 1. Each screen has its own
  /// from then on.
  int UserLanguage() const { return language_; }
  /// Name of a language, 1 first or 2 second; empty when there is none.
  std::string LanguageName(int number) const;

  // --- parameters -------------------------------------------------------------------------------
  /// Null when unset or blank. A group is fetched with one call and kept for a minute: what another
  /// session stores meanwhile is seen then, or after RefreshParams. While the server cannot be
  /// reached, what is kept stays in use.
  Variant GetParam(std::int32_t moduleNo, std::int32_t pointNo, int group, int number);
  /// Stores a parameter (one call); what this session reads of it is new at once. Throws
  /// ServerError: a conflict when the server's value is no longer `seen`, what the user decided by.
  /// Without `seen` that is what GetParam gave.
  void SetParam(std::int32_t moduleNo, std::int32_t pointNo, int group, int number,
                const Variant& value, const std::optional<Variant>& seen = std::nullopt);
  void RefreshParams(std::int32_t moduleNo, std::int32_t pointNo, int group);

  // --- module, points, classes ------------------------------------------------------------------
  ClassRegistry classes;
  std::vector<ModuleEntry> modules;
  std::vector<ModulePoint> points;
  ModuleEntry* FindModule(std::string_view key);
  ModulePoint* FindPoint(std::string_view name);
  ModulePoint* FindPoint(std::int32_t number);
  /// Takes the access sets of the points from the session.
  void TakeRights();
  /// Adds a module's points behind those that are there, with the rights of the session.
  void AddPoints(std::int32_t moduleNo, std::span<const PointRow> rows);
  /// Whether a module is served through the application server; every module of this host is.
  bool CheckDataSnapModule(std::string_view moduleKey) const { return !moduleKey.empty(); }
  bool dataSnap = false;
  /// Brings a sibling module in and returns its handle, never 0. Siblings are linked into the
  /// program, so that bringing one in is running its registration.
  std::function<std::int64_t(const ModuleEntry&)> LoadPackage;

  /// Code of the logged-in employee; Null when the user has no employee record.
  Variant vCurrentEmployee;

  /// Creates a screen; it has not been shown. Null (and the user was told) when the class is
  /// unknown or the point does not hold paOpen; Abort of the constructor passes through.
  std::unique_ptr<TVosBaseForm> CreateVosForm(TVosBaseForm* opener, std::string_view className,
                                              std::int32_t moduleNo, std::int32_t pointNo,
                                              ModulePoint* point, int language = 0);
  /// Opens the screen of a point from the menu and keeps it until it closes; one that is open comes
  /// to the front. Null when refused. A new screen begins in `language`, 0 being the user's.
  TVosBaseForm* OpenPoint(std::string_view pointName, int language = 0);
  /// The same by the name of the screen class.
  TVosBaseForm* OpenScreen(std::string_view className);
  const std::vector<std::unique_ptr<TVosBaseForm>>& OpenForms() const { return openForms_; }
  /// Frees forms that were closed; called by toolkits between events.
  void FreeClosedForms();
  /// Called when a screen of the menu was closed and freed; may be empty.
  std::function<void()> OnScreenClosed;
  /// Closes the opened screens, the last one first; false when one refused.
  bool CloseForms();
  /// Closes every shown form, the menu too; false when one refused.
  bool CloseProgram();
  /// Every form that lives, opened from the menu or modally.
  const std::vector<TVosBaseForm*>& LivingForms() const { return livingForms_; }

  /// Five values: session name, process number, login, machine, program version.
  VariantArray ConnectionInfo() const;

 private:
  friend class TVosBaseForm;
  void TakeSession(SessionInfo info);
  LoginRequest MakeLoginRequest(std::string_view login, std::string_view password) const;
  TVosBaseForm* Open(ModulePoint& point, int language);
  std::unique_ptr<TVosBaseForm> CreateFromMenu(ModulePoint& point, int language);
  bool CloseAll(const std::vector<TVosBaseForm*>& forms);
  /// Values of a group by number, and when they were read.
  struct ParamGroup {
    std::map<int, std::string> values;
    Stamp readOn;
  };
  ParamGroup FetchParams(ScreenPoint point, int group);
  const std::map<int, std::string>& ParamsOf(ScreenPoint point, int group);

  IToolkit& toolkit_;
  const Clock& clock_;
  ClientSession session_;
  int language_ = 1;
  std::map<int, ParamGroup> params_;
  std::vector<TVosBaseForm*> livingForms_;
  std::vector<std::unique_ptr<TVosBaseForm>> openForms_;
};

}  // namespace orvane::host
