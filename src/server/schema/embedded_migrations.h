// The numbered SQL files of server/schema/{sqlite,postgres}, carried inside the binary. The tables
// are written by the build; a new file in the folder is a new row.
#pragma once

#include <span>
#include <string_view>

namespace orvane::server {

/// One migration: `0007_department_chief_index.sql` has number 7, name "department_chief_index" and
/// the file's text.
struct EmbeddedMigration {
  int number;
  std::string_view name;
  std::string_view text;
};

/// Migrations of the engine in ascending order of number; empty when it has none.
std::span<const EmbeddedMigration> SqliteMigrations();
std::span<const EmbeddedMigration> PostgresMigrations();

}  // namespace orvane::server
