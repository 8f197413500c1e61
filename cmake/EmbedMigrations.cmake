# cmake -DLIST=migrations.cmake -DOUT=embedded_migrations.cpp -P EmbedMigrations.cmake
# Writes one table per engine, in order of number. A file not named 0001_words.sql or a number used twice is an error of
# the build; numbers may leave gaps, so that subjects grow side by side.
cmake_minimum_required(VERSION 3.25)
include("${LIST}")

function(migration_rows engine files)
  set(rows "")
  set(count 0)
  set(last 0)
  list(SORT files)
  foreach(file IN LISTS files)
    cmake_path(GET file STEM stem)
    if(NOT stem MATCHES "^([0-9][0-9][0-9][0-9])_([a-z0-9_]+)$")
      message(FATAL_ERROR "${file}: a migration is named 0001_what_it_does.sql")
    endif()
    set(name "${CMAKE_MATCH_2}")
    string(REGEX REPLACE "^0+" "" number "${CMAKE_MATCH_1}")
    if(NOT number GREATER last)
      message(FATAL_ERROR "${file}: the number ${number} is used twice")
    endif()
    set(last ${number})
    math(EXPR count "${count} + 1")
    file(READ "${file}" text)
    string(APPEND rows "    {${number}, \"${name}\", R\"orvane_sql(${text})orvane_sql\"},\n")
  endforeach()
  set(${engine}_table "constexpr std::array<EmbeddedMigration, ${count}> k${engine} = {{\n${rows}}};\n" PARENT_SCOPE)
endfunction()

migration_rows(Sqlite "${sqlite}")
migration_rows(Postgres "${postgres}")

file(WRITE "${OUT}" "// Generated from src/server/schema/*/*.sql; edit those.
#include \"server/schema/embedded_migrations.h\"

#include <array>

namespace orvane::server {
namespace {

${Sqlite_table}
${Postgres_table}
}  // namespace

std::span<const EmbeddedMigration> SqliteMigrations() { return kSqlite; }
std::span<const EmbeddedMigration> PostgresMigrations() { return kPostgres; }

}  // namespace orvane::server
")
