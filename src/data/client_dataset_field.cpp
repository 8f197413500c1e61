// A field as a view onto the current row.

#include <cassert>

#include "data/client_dataset.h"
#include "data/client_dataset_impl.h"

namespace orvane::data {
namespace {

constexpr int kAmountDecimals = 2;
constexpr int kRateDecimals = 7;

Failure Unreadable(const TField& field, const std::string& sentence) {
  const std::string label =
      field.DisplayLabel.empty() ? std::string(field.Name()) : field.DisplayLabel;
  return {FailureKind::Refused, "Поле „" + label + "“: " + sentence};
}

}  // namespace

TField::TField(TVosClientDataSet& dataSet, const FieldDef& def)
    : DisplayLabel(def.label), dataSet_(&dataSet), def_(def) {
  Format.kind = def.kind;
  Format.size = def.size;
  if (def.kind == ValueKind::Amount) {
    Format.decimals = kAmountDecimals;
    Format.grouped = true;
  }
  if (def.kind == ValueKind::Rate) Format.decimals = kRateDecimals;
}

bool TField::IsLookup() const {
  return lookup_.has_value();
}

TField& TField::Written() {
  return lookup_ ? dataSet_->FieldByName(lookup_->keyField) : *this;
}

Variant TField::Value() const {
  const auto row = dataSet_->impl_->CurrentRow();
  return row ? dataSet_->impl_->ValueOf(*row, *this) : Variant();
}

bool TField::IsEmpty() const {
  const Variant value = Value();
  return value.IsNull() || (value.AsString() != nullptr && value.AsString()->empty());
}

std::string TField::AsString() const {
  const Variant value = Value();
  return value.AsString() != nullptr ? *value.AsString() : value.ToText();
}

Variant TField::OldValue() const {
  const TVosClientDataSet::Impl& impl = *dataSet_->impl_;
  const auto row = impl.CurrentRow();
  if (!row || lookup_) return Value();
  if (impl.Editing() && *row == impl.editRow) return impl.store.Value(*row, column_);
  const LogEntry* change = impl.FirstChangeOf(*row);
  if (change == nullptr) return impl.store.Value(*row, column_);
  return change->kind == ChangeKind::Insert ? Variant() : change->original[column_];
}

void TField::Set(const Variant& value) {
  TVosClientDataSet::Impl& impl = *dataSet_->impl_;
  assert(impl.Editing() && !lookup_);
  // Names that are shown and never sent may be longer than the column they were made for.
  const Answer<Variant> fitting = value.As(def_.kind, def_.Is(Joined) ? 0 : def_.size);
  assert(fitting.Ok() && "the field cannot hold this value");
  Variant& held = impl.buffer[column_];
  if (held == *fitting) return;
  held = *fitting;
  impl.modified = true;
  impl.Touch();
  TVosClientDataSet::Impl::Fire(OnChange);
}

std::string TField::Text() const {
  if (OnGetRowText && !dataSet_->IsEmpty()) return dataSet_->TextAt(dataSet_->RecNo(), *this);
  return TextOf(Value());
}

std::string TField::TextOf(const Variant& value) const {
  if (!OnGetText) return FormatValue(value, Format);
  const auto kept = OnGetText;
  return kept(value);
}

std::string TField::TextIn(const RowReader& row) const {
  if (lookup_) return TextOf(dataSet_->impl_->LookUp(*this, row(lookup_->keyField)));
  const auto kept = OnGetRowText;
  return kept ? kept(row) : TextOf(row(Name()));
}

Answer<Done> TField::SetText(std::string_view text) {
  if (lookup_ || ReadOnly) return Unreadable(*this, "стойността не се въвежда.");
  if (text == Text()) return Done{};  // shown with fewer decimals than it has, it keeps them
  const auto kept = OnSetText;
  Answer<Variant> read = kept ? kept(text) : ParseValue(text, Format);
  if (!read) return Unreadable(*this, read.GetFailure().message);
  const Answer<Variant> fitting = read->As(def_.kind, def_.size);
  if (!fitting) return Unreadable(*this, fitting.GetFailure().message);
  if (dataSet_->Editing() && Value() == *fitting) return Done{};
  if (!dataSet_->Editing()) {
    if (!dataSet_->IsEmpty() && Value() == *fitting) return Done{};
    dataSet_->Edit();
  }
  if (dataSet_->Editing()) Set(*fitting);
  return Done{};
}

}  // namespace orvane::data
