#include "apps/orvane_server/settings.h"

#include <toml++/toml.h>
#include <algorithm>
#include <charconv>
#include <sstream>

#include "wire/loopback.h"

namespace orvane::apps {
namespace {

constexpr SettingRow kSettings[] = {
    {"database", "База от данни: файл на SQLite или връзка към PostgreSQL", "ФАЙЛ|ВРЪЗКА"},
    {"listen", "Адрес и порт, на които се слуша", "АДРЕС:ПОРТ"},
    {"tls-cert", "Сертификат на сървъра (PEM)", "ФАЙЛ"},
    {"tls-key", "Ключ на сертификата (PEM)", "ФАЙЛ"},
    {"reflection", "Описание на услугата за програмисти, достъпно за всеки", "on|off"},
    {"log-level", "Подробност на дневника: trace, debug, info, warn, error", "НИВО"},
    {"pool-size", "Връзки към PostgreSQL", "БРОЙ"},
    {"idle-minutes", "След колко минути бездействие приключва сесия", "МИНУТИ"},
    {"may-approve-own", "Одобряват ли създателят и заявителят собствения си документ",
     "true|false"},
};
constexpr std::string_view kLogLevels[] = {"trace", "debug", "info", "warn", "error"};

Failure Bad(std::string sentence) {
  return {FailureKind::BadRequest, std::move(sentence)};
}

std::optional<std::int32_t> WholeBetween(std::string_view text, std::int32_t low,
                                         std::int32_t high) {
  std::int32_t number = 0;
  const auto read = std::from_chars(text.data(), text.data() + text.size(), number);
  if (read.ec != std::errc() || read.ptr != text.data() + text.size()) return std::nullopt;
  if (number < low || number > high) return std::nullopt;
  return number;
}

/// Puts one setting; false when the text is no value of it.
bool Put(Settings& settings, std::string_view name, const std::string& text) {
  if (name == "database") settings.database = text;
  if (name == "tls-cert") settings.tlsCert = text;
  if (name == "tls-key") settings.tlsKey = text;
  if (name == "listen") {
    settings.listen = text;
    return ParseListen(text).has_value();
  }
  if (name == "log-level") {
    settings.logLevel = text;
    return std::find(std::begin(kLogLevels), std::end(kLogLevels), text) != std::end(kLogLevels);
  }
  if (name == "reflection") {
    settings.reflection = text == "on";
    return text == "on" || text == "off";
  }
  if (name == "pool-size" || name == "idle-minutes") {
    const bool pool = name == "pool-size";
    const auto number = WholeBetween(text, 1, pool ? 100 : 7 * 24 * 60);
    if (number) (pool ? settings.poolSize : settings.idleMinutes) = *number;
    return number.has_value();
  }
  if (name == "may-approve-own") {
    settings.mayApproveOwn = text == "true";
    return text == "true" || text == "false";
  }
  return !text.empty();
}

bool IsSetting(std::string_view name) {
  return std::any_of(std::begin(kSettings), std::end(kSettings),
                     [&](const SettingRow& row) { return row.name == name; });
}

std::string Place(const std::string& path, const toml::source_region& source) {
  return path + ":" + std::to_string(source.begin.line) + ": ";
}

}  // namespace

std::span<const SettingRow> SettingRows() {
  return kSettings;
}

std::string EnvironmentName(std::string_view setting) {
  std::string name = "ORVANE_";
  for (const char c : setting) {
    name += c == '-' ? '_' : static_cast<char>(c >= 'a' && c <= 'z' ? c - 'a' + 'A' : c);
  }
  return name;
}

Answer<Done> CheckEnvironmentNames(std::span<const std::string> names) {
  for (const std::string& name : names) {
    if (!name.starts_with("ORVANE_") || name == "ORVANE_CONFIG") continue;
    if (name.starts_with("ORVANE_TEST_") || name.starts_with("ORVANE_BENCH_")) continue;
    const bool known =
        std::any_of(std::begin(kSettings), std::end(kSettings),
                    [&](const SettingRow& row) { return EnvironmentName(row.name) == name; });
    if (known) continue;
    std::string sentence =
        "Непозната променлива „" + name + "“ в средата. Познати са ORVANE_CONFIG";
    for (const SettingRow& row : kSettings)
      sentence += ", " + EnvironmentName(row.name);
    return Bad(sentence + ".");
  }
  return Done{};
}

Answer<SettingTexts> ReadSettingsFile(const std::string& path) {
  SettingTexts texts;
  try {
    const toml::table table = toml::parse_file(path);
    for (const auto& [key, node] : table) {
      const std::string name(key.str());
      if (!IsSetting(name)) {
        return Bad(Place(path, key.source()) + "непозната настройка „" + name + "“.");
      }
      if (const auto text = node.value_exact<std::string>()) {
        texts[name] = *text;
      } else if (const auto number = node.value_exact<std::int64_t>()) {
        texts[name] = std::to_string(*number);
      } else if (const auto flag = node.value_exact<bool>()) {
        texts[name] = *flag ? "true" : "false";
      } else {
        return Bad(Place(path, node.source()) + "настройка „" + name +
                   "“ трябва да е текст, цяло число, true или false.");
      }
    }
  } catch (const toml::parse_error& error) {
    if (error.source().begin.line == 0) {
      return Bad("Файлът с настройки „" + path + "“ не може да се прочете.");
    }
    return Bad(Place(path, error.source()) + "грешен запис в TOML (" +
               std::string(error.description()) + ").");
  }
  return texts;
}

Answer<Settings> SettleSettings(const SettingTexts& file, const Environment& environment,
                                const SettingTexts& flags) {
  Settings settings;
  for (const SettingRow& row : kSettings) {
    const std::string name(row.name);
    std::optional<std::string> text;
    std::string from;
    if (const auto found = file.find(name); found != file.end()) {
      text = found->second;
      from = "файла с настройки";
    }
    if (const auto found = environment(EnvironmentName(name))) {
      text = *found;
      from = "променливата " + EnvironmentName(name);
    }
    if (const auto found = flags.find(name); found != flags.end()) {
      text = found->second;
      from = "флага --" + name;
    }
    if (text && !Put(settings, name, *text)) {
      return Bad("Грешна стойност „" + *text + "“ на настройка „" + name + "“ от " + from + ".");
    }
  }
  if (settings.tlsCert.empty() != settings.tlsKey.empty()) {
    return Bad("Настройките „tls-cert“ и „tls-key“ се дават заедно.");
  }
  return settings;
}

std::optional<ListenAddress> ParseListen(std::string_view text) {
  const std::size_t colon = text.rfind(':');
  if (colon == std::string_view::npos || colon == 0) return std::nullopt;
  const auto port = WholeBetween(text.substr(colon + 1), 0, 65535);
  if (!port) return std::nullopt;
  return ListenAddress{std::string(HostOf(text.substr(0, colon))), *port};
}

bool IsPostgres(std::string_view database) {
  return database.starts_with("postgres://") || database.starts_with("postgresql://") ||
         database.find('=') != std::string_view::npos;
}

}  // namespace orvane::apps
