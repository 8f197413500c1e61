// orvane: the desktop. It talks to a server, or carries one inside itself for one user or a trial.

#include <unistd.h>

#include <CLI/CLI.hpp>
#include <QtCore/QLibraryInfo>
#include <QtCore/QLocale>
#include <QtCore/QSysInfo>
#include <QtCore/QTranslator>
#include <QtWidgets/QApplication>
#include <iostream>

#include "apps/orvane/backend.h"
#include "apps/orvane/walk_run.h"
#include "desktop/form_memory.h"
#include "desktop/qt_text.h"
#include "desktop/qt_toolkit.h"
#include "desktop/theme.h"
#include "desktop/wait_pump.h"
#include "host/login_form.h"
#include "host/shell_form.h"
#include "modules/purchases/frame/screens.h"
#include "modules/purchases/frame/tf_orvane_main.h"

namespace orvane::apps {
namespace {

constexpr int kFailed = 1;

struct CommandLine {
  BackendOptions backend;
  WalkOptions walk;
  bool dark = false;
  bool light = false;
};

void AddOptions(CLI::App& app, CommandLine& line) {
  CLI::Option* server =
      app.add_option("--server", line.backend.server, "Сървър")->type_name("АДРЕС:ПОРТ");
  app.add_option("--certificate", line.backend.rootCertificate,
                 "Сертификат, с който е подписан този на сървъра (PEM)")
      ->type_name("ФАЙЛ");
  CLI::Option* database =
      app.add_option("--database", line.backend.database, "База SQLite за работа без сървър")
          ->type_name("ФАЙЛ");
  CLI::Option* demo = app.add_flag("--demo", line.backend.demo,
                                   "Демонстрационно дружество; изчезва със затварянето");
  server->excludes(database)->excludes(demo);
  database->excludes(demo);
  CLI::Option* walk = app.add_option("--walk", line.walk.file, "Изпълнява разходка през екраните")
                          ->type_name("ФАЙЛ");
  walk->excludes(server)->excludes(database);
  app.add_option("--pictures", line.walk.pictures, "Папка за снимките от разходката")
      ->type_name("ПАПКА")
      ->needs(walk);
  app.add_flag("--over-wire", line.backend.overWire,
               "Разходката стига до сървъра през мрежова връзка")
      ->needs(walk);
  CLI::Option* dark = app.add_flag("--dark", line.dark, "Тъмни цветове");
  app.add_flag("--light", line.light, "Светли цветове")->excludes(dark);
}

void SpeakBulgarian(QTranslator& translator) {
  QLocale::setDefault(QLocale(QLocale::Bulgarian, QLocale::Bulgaria));
  if (translator.load("qtbase_bg", QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
    QApplication::installTranslator(&translator);
  QApplication::setApplicationName("Orvane");
}

Theme ThemeOf(const CommandLine& line, const QApplication& application) {
  if (line.dark) return Theme::Dark;
  // Pictures of walks are light wherever they are taken.
  return line.light || !line.walk.file.empty() ? Theme::Light : ThemeOfDesktop(application);
}

int Tell(QtToolkit& toolkit, const std::string& text) {
  toolkit.ShowMessage(nullptr, {.kind = 0, .caption = "Orvane", .text = text, .yesNo = false});
  return kFailed;
}

/// Login, menu, work, until the menu is closed. Whoever cannot work with the module may log in as
/// somebody else.
int Work(QtToolkit& toolkit, Backend& backend) {
  const SystemClock clock;
  VosApplication app(backend.Server(), toolkit, clock);
  app.program.machineName = Utf8(QSysInfo::machineHostName());
  app.program.processNumber = static_cast<std::int32_t>(getpid());
  app.program.serverName = backend.ServerName();
  RegisterOrvaneModule(app);
  while (RunLogin(app)) {
    const std::unique_ptr<TfOrvaneMain> module = StartOrvaneModule(app);
    if (module != nullptr) {
      TfVosShell shell(app);
      toolkit.RunUntilClosed(shell);
    }
    app.LogOut();
    if (module != nullptr) return 0;
  }
  return 0;
}

QtMessageHandler theQtHandler = nullptr;

/// Where there is no screen Qt says of every window what cannot be done with it: nobody's news.
void TellWhatMatters(QtMsgType type, const QMessageLogContext& context, const QString& message) {
  if (message.startsWith(QLatin1String("This plugin does not support"))) return;
  theQtHandler(type, context, message);
}

int Run(CommandLine& line, QApplication& application) {
  QTranslator translator;
  SpeakBulgarian(translator);
  ApplyTheme(application, ThemeOf(line, application));
  QApplication::setQuitOnLastWindowClosed(false);
  if (!line.walk.file.empty()) {
    QtToolkit toolkit(std::make_unique<FormMemory>());
    const std::string problem = RunWalkFile(toolkit, line.walk, line.backend);
    if (!problem.empty()) std::cerr << problem << '\n';
    return problem.empty() ? 0 : kFailed;
  }
  QtToolkit toolkit(FormMemory::OfUser());
  WaitPump pump;
  line.backend.pump = [&pump] { return pump.Pump(); };
  const SystemClock clock;
  const auto backend = OpenBackend(line.backend, clock);
  if (!backend) return Tell(toolkit, backend.GetFailure().message);
  return Work(toolkit, **backend);
}

}  // namespace
}  // namespace orvane::apps

int main(int argc, char** argv) {
  orvane::apps::theQtHandler = qInstallMessageHandler(&orvane::apps::TellWhatMatters);
  QApplication application(argc, argv);
  CLI::App options("Orvane – управление на покупките");
  orvane::apps::CommandLine line;
  orvane::apps::AddOptions(options, line);
  CLI11_PARSE(options, argc, argv);
  const bool placed = !line.backend.server.empty() || !line.backend.database.empty() ||
                      line.backend.demo || !line.walk.file.empty();
  if (!placed) {
    std::cerr << "Посочете --server, --database или --demo; --help показва всичко.\n";
    return 2;
  }
  return orvane::apps::Run(line, application);
}
