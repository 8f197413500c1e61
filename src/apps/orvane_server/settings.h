#pragma once

// What the server program was told, and by whom: built-in values, then the configuration file, then
// the environment (ORVANE_DATABASE …), then flags; the later word counts.

#include <functional>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "packet/failure.h"

namespace orvane::apps {

struct Settings {
  std::string database = "orvane.db";  ///< path of an SQLite file, or PostgreSQL's conninfo
  std::string listen = "127.0.0.1:8011";
  std::string tlsCert;
  std::string tlsKey;
  bool reflection = false;
  std::string logLevel = "info";
  std::int32_t poolSize = 8;
  std::int32_t idleMinutes = 12 * 60;
  bool mayApproveOwn = true;  ///< deciding on documents that one created or requested
};

/// A setting: its name in the file and as a flag ("tls-cert"; ORVANE_TLS_CERT in the environment).
struct SettingRow {
  std::string_view name;
  std::string_view description;
  std::string_view shape;  ///< what a value looks like, for the help
};
std::span<const SettingRow> SettingRows();

/// "tls-cert" → "ORVANE_TLS_CERT".
std::string EnvironmentName(std::string_view setting);

/// Refuses a variable of our own that means nothing. Names ORVANE_TEST_… and ORVANE_BENCH_… are
/// those of this tree's tests and benchmarks.
Answer<Done> CheckEnvironmentNames(std::span<const std::string> names);

using SettingTexts = std::map<std::string, std::string, std::less<>>;
using Environment = std::function<std::optional<std::string>(const std::string& name)>;

/// Texts of a configuration file (TOML, top level only). Fails naming file and line for what it
/// does not understand, unknown settings among it.
Answer<SettingTexts> ReadSettingsFile(const std::string& path);

/// `file` under `environment` under `flags`. Fails with a sentence that names the setting and where
/// the bad value came from.
Answer<Settings> SettleSettings(const SettingTexts& file, const Environment& environment,
                                const SettingTexts& flags);

/// "127.0.0.1:8011" and "[::1]:8011" → address without brackets and port; empty when it is not
/// that.
struct ListenAddress {
  std::string host;
  int port = 0;
};
std::optional<ListenAddress> ParseListen(std::string_view text);

/// Whether the database is PostgreSQL's conninfo or address rather than the path of a file.
bool IsPostgres(std::string_view database);

}  // namespace orvane::apps
