#include "server/documents/document_steps.h"

#include <algorithm>

#include "server/statements/named_statement.h"

namespace orvane::server {
namespace {

std::optional<DocumentKey> KeyIn(const StoredDocument& document, const Change& change) {
  const NamedValues& values = change.kind == ChangeKind::Insert ? change.after : change.before;
  const auto number = [&](std::string_view column) {
    const Variant* value = FindValue(values, column);
    return value ? value->AsInt() : std::nullopt;
  };
  const auto id = number(document.partId);
  const auto version =
      document.partVersion.empty() ? std::optional<std::int64_t>(0) : number(document.partVersion);
  if (!id || !version) return std::nullopt;
  return DocumentKey{*id, *version};
}

}  // namespace

Answer<DocumentKey, Setback> DocumentOf(const StoredDocument& document,
                                        std::span<const PreparedChange> changes) {
  std::optional<DocumentKey> key;
  for (const PreparedChange& prepared : changes) {
    const Change& change = prepared.change;
    const auto own = KeyIn(document, change);
    const bool moved = change.kind == ChangeKind::Update &&
                       Changes(change, {document.partId, document.partVersion});
    if (!own || moved || (key && *key != *own)) {
      return BadRequest("Редовете не са на " + std::string(document.one) + ".");
    }
    key = own;
  }
  return *key;
}

Variant ValueAfter(const Change& change, const NamedValues& present, std::string_view column) {
  if (const Variant* value = FindValue(change.after, column)) return *value;
  if (const Variant* value = FindValue(present, column)) return *value;
  return {};
}

bool Changes(const Change& change, std::span<const std::string_view> columns) {
  return std::any_of(columns.begin(), columns.end(), [&](std::string_view column) {
    return FindValue(change.after, column) != nullptr;
  });
}

bool Changes(const Change& change, std::initializer_list<std::string_view> columns) {
  return Changes(change, std::span(columns.begin(), columns.size()));
}

void Drop(NamedValues& values, std::string_view column) {
  std::erase_if(values, [&](const NamedValue& value) { return SameName(value.name, column); });
}

void CompleteOldValues(Change& change, const NamedValues& present) {
  if (change.kind != ChangeKind::Update) return;
  for (const NamedValue& value : change.after) {
    if (FindValue(change.before, value.name)) continue;
    if (const Variant* old = FindValue(present, value.name)) {
      change.before.push_back({value.name, *old});
    }
  }
}

Statement NextNumber(std::string_view table) {
  return Named(
      "update DocumentCounter set LastNumber = LastNumber + 1 where TableName = :Table"
      " returning LastNumber",
      {{"Table", table}}, {{"LastNumber", ValueKind::Int32, 0}});
}

Setback Refusal(Failure failure) {
  return {std::move(failure), false};
}

Setback BadRequest(std::string sentence) {
  return {{FailureKind::BadRequest, std::move(sentence)}, false};
}

}  // namespace orvane::server
