#include "server/schema/postgres_extras.h"

#include <string_view>

#include "packet/fold.h"
#include "server/catalogue/search_fence.h"

namespace orvane::server {
namespace {

std::string Utf8(unsigned point) {
  std::string text;
  if (point < 0x80) {
    text += static_cast<char>(point);
    return text;
  }
  if (point < 0x800) {
    text += static_cast<char>(0xC0u | point >> 6);
  } else {
    text += static_cast<char>(0xE0u | point >> 12);
    text += static_cast<char>(0x80u | (point >> 6 & 0x3Fu));
  }
  text += static_cast<char>(0x80u | (point & 0x3Fu));
  return text;
}

}  // namespace

std::string PostgresFoldFunction() {
  std::string capitals;
  std::string small;
  std::string blanks;
  for (unsigned point = 1; point <= 0xFFFF; ++point) {
    if (point >= 0xD800 && point < 0xE000) continue;
    const std::string letter = Utf8(point);
    const std::string folded = Fold(letter);
    if (folded.empty()) {
      blanks += letter;
    } else if (folded != letter) {
      capitals += letter;
      small += folded;
    }
  }
  return "create or replace function orvane_fold(value text) returns text language sql immutable "
         "strict parallel safe as $fold$\n  select rtrim(translate(value, '" +
         capitals + "', '" + small + "'), '" + blanks + "') collate \"C\"\n$fold$;\n";
}

namespace {

std::string NewRole() {
  const std::string role(kSearchRole);
  return "do $role$ begin\n  if not exists (select from pg_roles where rolname = '" + role +
         "') then\n    create role " + role +
         " nologin;\n  end if;\nexception when duplicate_object or unique_violation then null;\n"
         "end $role$;\n"
         "do $role$ begin\n  if not pg_has_role(current_user, '" +
         role + "', 'member') then\n    execute format('grant " + role +
         " to %I', current_user);\n  end if;\nend $role$;\n";
}

std::string Grants() {
  const std::string role(kSearchRole);
  std::string script = "grant usage on schema public to " + role +
                       ";\nrevoke all on all tables in schema public from " + role + ";\n";
  for (const auto& [table, columns] : ReadableBySearch()) {
    std::string list;
    for (const std::string& column : columns)
      list += (list.empty() ? "" : ", ") + column;
    script += "grant select (" + list + ") on " + table + " to " + role + ";\n";
  }
  return script;
}

}  // namespace

std::string PostgresSearchRole() {
  return NewRole() + Grants();
}

}  // namespace orvane::server
