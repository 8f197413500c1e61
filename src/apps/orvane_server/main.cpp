// orvane-server: makes, migrates, fills, serves and checks a database.

#include <spdlog/spdlog.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <cstdlib>
#include <filesystem>
#include <iostream>

#include "apps/orvane_server/commands.h"
#include "apps/orvane_server/settings.h"
#include "packet/fold.h"
#include "server/log/log_text.h"

namespace orvane::apps {
namespace {

constexpr char kDefaultFile[] = "orvane-server.toml";

std::vector<std::string> EnvironmentNames() {
  std::vector<std::string> names;
  for (char** variable = environ; *variable != nullptr; ++variable) {
    const std::string_view text(*variable);
    names.emplace_back(text.substr(0, text.find('=')));
  }
  return names;
}

std::optional<std::string> FromEnvironment(const std::string& name) {
  const char* value = std::getenv(name.c_str());
  return value ? std::optional<std::string>(value) : std::nullopt;
}

/// Everything the command line said.
struct CommandLine {
  std::string configFile;
  SettingTexts flags;
  std::string company = "Моята фирма";
  std::string folder;
  std::uint32_t seed = 1;
  std::int64_t documents = 3000;
  bool unsafeDurability = false;
  UserArguments user;
};

/// Flags that every command takes.
void AddSettings(CLI::App& app, CommandLine& line) {
  app.add_option("--config", line.configFile, "Файл с настройки (TOML)")->type_name("ФАЙЛ");
  for (const SettingRow& row : SettingRows()) {
    const std::string name(row.name);
    app.add_option_function<std::string>(
           "--" + name, [&line, name](const std::string& text) { line.flags[name] = text; },
           std::string(row.description))
        ->type_name(std::string(row.shape));
  }
}

void AddUserCommands(CLI::App& app, CommandLine& line) {
  CLI::App* user = app.add_subcommand("user", "Потребители");
  user->require_subcommand(1);
  UserArguments& own = line.user;
  CLI::App* add = user->add_subcommand("add", "Добавя потребител; паролата се чете от входа");
  add->add_option("login", own.login, "Потребителско име")->required();
  add->add_option("--name", own.name, "Име")->required();
  add->add_option("--name2", own.name2, "Име на втория език");
  add->add_option("--level", own.level, "Ниво: 0 вижда всичко, от 3 нагоре иска служител");
  add->add_option("--language", own.language, "Език: 1 първи, 2 втори")->check(CLI::Range(1, 2));
  add->add_option("--rights", own.rights, "Права навсякъде: сбор от 1, 2, 4 и 8")
      ->check(CLI::Range(0, 15));
  add->add_option("--employee", own.employee, "Код на служителя; нов запис, ако още няма такъв");
  CLI::App* passwd = user->add_subcommand("passwd", "Сменя парола; новата се чете от входа");
  passwd->add_option("login", own.login, "Потребителско име")->required();
  CLI::App* block = user->add_subcommand("block", "Блокира потребител");
  block->add_option("login", own.login, "Потребителско име")->required();
  block->add_flag("--undo", own.undo, "Отблокира");
  CLI::App* remove = user->add_subcommand("remove", "Изтрива потребител");
  remove->add_option("login", own.login, "Потребителско име")->required();
  CLI::App* rights = user->add_subcommand("rights", "Дава права в една точка");
  rights->add_option("login", own.login, "Потребителско име")->required();
  rights->add_option("point", own.point, "Име на точка, например Departments")->required();
  rights->add_option("rights", own.rights, "Сбор от 1, 2, 4 и 8; 0 отнема точката")
      ->required()
      ->check(CLI::Range(0, 15));
}

void AddCommands(CLI::App& app, CommandLine& line) {
  app.require_subcommand(1);
  app.fallthrough();
  AddSettings(app, line);
  app.add_subcommand("init", "Създава базата")
      ->add_option("--company", line.company, "Име на фирмата");
  app.add_subcommand("migrate", "Обновява базата до версията на програмата");
  CLI::App* demo = app.add_subcommand("demo", "Създава демонстрационна фирма");
  demo->add_option("--seed", line.seed, "Зърно: еднакво зърно, еднаква фирма");
  demo->add_option("--documents", line.documents, "Брой искания за покупка")
      ->check(CLI::Range(0, 10'000'000));
  app.add_subcommand("serve", "Обслужва клиентите до SIGTERM")
      ->add_flag("--unsafe-durability", line.unsafeDurability,
                 "Приема настройки на базата, при които потвърденото може да се загуби");
  app.add_subcommand("import", "Зарежда регистри от папка с файлове CSV")
      ->add_option("folder", line.folder, "Папка: по един файл на регистър")
      ->required();
  app.add_subcommand("check", "Проверява базата");
  AddUserCommands(app, line);
  for (CLI::App* command : app.get_subcommands({}))
    command->fallthrough();
}

Answer<Settings> Settle(const CommandLine& line) {
  const auto known = CheckEnvironmentNames(EnvironmentNames());
  if (!known) return known.GetFailure();
  std::string file = line.configFile;
  if (file.empty()) file = FromEnvironment("ORVANE_CONFIG").value_or("");
  if (file.empty() && std::filesystem::exists(kDefaultFile)) file = kDefaultFile;
  SettingTexts texts;
  if (!file.empty()) {
    auto read = ReadSettingsFile(file);
    if (!read) return read.GetFailure();
    texts = *std::move(read);
  }
  return SettleSettings(texts, FromEnvironment, line.flags);
}

Answer<Done> Run(const CLI::App& app, const CommandLine& line) {
  const auto settings = Settle(line);
  if (!settings) return settings.GetFailure();
  GuardLog();
  spdlog::set_level(spdlog::level::from_str(settings->logLevel));
  if (app.got_subcommand("init")) return Init(*settings, line.company);
  if (app.got_subcommand("migrate")) return MigrateDatabase(*settings);
  if (app.got_subcommand("demo")) return Demo(*settings, line.seed, line.documents);
  if (app.got_subcommand("serve")) return ServeUntilSignal(*settings, line.unsafeDurability);
  if (app.got_subcommand("import")) return Import(*settings, line.folder);
  if (app.got_subcommand("check")) return Check(*settings);
  const CLI::App* user = app.get_subcommand("user");
  if (user->got_subcommand("add")) return AddUser(*settings, line.user);
  if (user->got_subcommand("passwd")) return ChangePassword(*settings, line.user);
  if (user->got_subcommand("remove")) return RemoveUser(*settings, line.user);
  if (user->got_subcommand("rights")) return SetRights(*settings, line.user);
  return BlockUser(*settings, line.user);
}

/// What was wrong with the command line, in a sentence; the library speaks English.
std::string Sentence(const CLI::ParseError& error) {
  const std::string kind = error.get_name();
  if (kind == "ExtrasError") return "Непознат аргумент (" + std::string(error.what()) + ").";
  if (kind == "RequiredError") return "Липсва команда или задължителен аргумент.";
  return "Грешен аргумент (" + std::string(error.what()) + ").";
}

int Complain(const std::string& sentence) {
  std::cerr << "orvane-server: " << WithoutPasswords(sentence) << '\n';
  return EXIT_FAILURE;
}

}  // namespace
}  // namespace orvane::apps

int main(int argc, char** argv) {
  CLI::App app("Сървър на Orvane", "orvane-server");
  orvane::apps::CommandLine line;
  orvane::apps::AddCommands(app, line);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) return app.exit(error);  // help
    return orvane::apps::Complain(orvane::apps::Sentence(error) + " Помощ: orvane-server --help");
  }
  const auto done = orvane::apps::Run(app, line);
  if (done) return EXIT_SUCCESS;
  std::string sentence = done.GetFailure().message;
  const std::string_view mark = orvane::kRefusalMark;
  if (sentence.starts_with(mark)) sentence.erase(0, mark.size());
  return orvane::apps::Complain(sentence);
}
