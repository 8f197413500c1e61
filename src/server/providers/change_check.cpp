#include "server/providers/change_check.h"

#include <algorithm>
#include <cmath>

#include "packet/fold.h"

namespace orvane::server {
namespace {

Failure Malformed(std::string sentence) {
  return {FailureKind::BadRequest, std::move(sentence)};
}

/// Line ends and tabs are allowed where the field is a memo.
bool HasControlCharacters(std::string_view text, ValueKind kind) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    if (kind == ValueKind::Memo && (byte == '\n' || byte == '\t')) continue;
    if (byte < 32 || byte == 127) return true;
    // U+0080 to U+009F.
    if (byte == 0xC2 && i + 1 < text.size() && static_cast<unsigned char>(text[i + 1]) < 0xA0) {
      return true;
    }
  }
  return false;
}

Answer<Variant> KeptValue(const FieldDef& field, const Variant& value) {
  auto kept = value.As(field.kind, field.size);
  if (kept) return kept;
  return Failure{kept.GetFailure().kind, AboutField(field, kept.GetFailure().message)};
}

/// Nobody has more of anything in smallest units, and from here on doubles lose the decimals at
/// which quantities are compared.
constexpr double kLargestQuantity = 1e12;
/// Quantities are compared at six decimals: what is nearer to nothing is nothing.
constexpr double kSmallestQuantity = 1e-6;

/// What stays within its bounds can be loaded again, with its document, in one message.
Answer<Done> CheckBounds(const FieldDef& field, const Variant& value) {
  if (const auto real = value.AsDouble(); real && field.kind == ValueKind::Double) {
    const double size = std::abs(*real);
    if (size > kLargestQuantity || (size != 0 && size < kSmallestQuantity)) {
      return Refused(
          AboutField(field,
                     "Количеството е извън допустимите граници (от 0,000001 до 1 000 000 000 000 в "
                     "най-малката мярка). Въведете друго."));
    }
  }
  const std::string* text = value.AsString();
  if (text && field.kind == ValueKind::Memo && Utf8Length(*text) > kLongestMemo) {
    return Refused(AboutField(
        field, "Текстът е по-дълъг от " + std::to_string(kLongestMemo) + " знака. Съкратете го."));
  }
  return Done{};
}

Answer<Done> CheckNewValue(const FieldDef& field, const Variant& value) {
  const std::string* text = value.AsString();
  if (text && HasControlCharacters(*text, field.kind)) {
    return Refused(AboutField(field, "Текстът съдържа недопустими знаци."));
  }
  if (field.Is(Required) && value.IsEmpty()) {
    return Refused("Попълнете стойност в поле „" + std::string(field.label) + "“.");
  }
  return CheckBounds(field, value);
}

/// The values under the contract's names; `changed` are new values, which are checked further.
Answer<NamedValues> KeptValues(const ProviderDef& provider, const NamedValues& values,
                               bool changed) {
  NamedValues kept;
  for (const NamedValue& value : values) {
    const FieldDef* field = FindField(provider, value.name);
    if (!field) return Malformed("Непознато поле „" + value.name + "“.");
    if (field->Is(Joined)) return Malformed("Поле „" + value.name + "“ не се записва.");
    if (FindValue(kept, field->name)) return Malformed("Поле „" + value.name + "“ се повтаря.");
    if (changed && field->Is(Stamped)) continue;
    auto own = KeptValue(*field, value.value);
    if (!own) return own.GetFailure();
    if (changed) {
      if (const auto checked = CheckNewValue(*field, *own); !checked) return checked.GetFailure();
    }
    kept.push_back({std::string(field->name), *std::move(own)});
  }
  return kept;
}

Answer<Done> CheckInsert(const ProviderDef& provider, const Change& change) {
  if (!change.before.empty()) return Malformed("Нов ред не може да има стари стойности.");
  for (const FieldDef& field : provider.fields) {
    if (!field.Is(Required) || field.Is(Joined) || field.Is(Stamped)) continue;
    if (!FindValue(change.after, field.name)) return CheckNewValue(field, Variant());
  }
  return Done{};
}

Answer<Done> CheckOldValues(const ProviderDef& provider, const Change& change) {
  for (const FieldDef& field : provider.fields) {
    const Variant* old = FindValue(change.before, field.name);
    if (field.Is(Key) && (!old || old->IsNull())) {
      return Malformed("Липсва ключът „" + std::string(field.name) + "“ на реда.");
    }
    if (!old && FindValue(change.after, field.name)) {
      return Malformed("Липсва старата стойност на поле „" + std::string(field.name) + "“.");
    }
  }
  return Done{};
}

}  // namespace

const FieldDef* FindField(const ProviderDef& provider, std::string_view name) {
  const auto found =
      std::find_if(provider.fields.begin(), provider.fields.end(),
                   [&](const FieldDef& field) { return SameName(field.name, name); });
  return found == provider.fields.end() ? nullptr : &*found;
}

std::string AboutField(const FieldDef& field, std::string_view sentence) {
  return "Поле „" + std::string(field.label.empty() ? field.name : field.label) +
         "“: " + std::string(sentence);
}

Answer<Change> CheckChange(const ProviderDef& provider, const Change& change) {
  Change kept;
  kept.kind = change.kind;
  kept.clientKey = change.clientKey;
  auto before = KeptValues(provider, change.before, false);
  if (!before) return before.GetFailure();
  kept.before = *std::move(before);
  auto after = KeptValues(provider, change.after, true);
  if (!after) return after.GetFailure();
  kept.after = *std::move(after);
  if (kept.kind == ChangeKind::Delete && !kept.after.empty()) {
    return Malformed("Изтрит ред не може да има нови стойности.");
  }
  const auto checked = kept.kind == ChangeKind::Insert ? CheckInsert(provider, kept)
                                                       : CheckOldValues(provider, kept);
  if (!checked) return checked.GetFailure();
  return kept;
}

}  // namespace orvane::server
