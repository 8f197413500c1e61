#include "host/cell_editor.h"

#include <algorithm>

#include "host/combo.h"
#include "packet/fold.h"

namespace orvane {
namespace {

/// Names typed into a lookup are not bound by the size of the code.
constexpr std::size_t kLongestName = 100;

bool IsDigits(std::string_view text) {
  return std::ranges::all_of(text, [](char c) { return c >= '0' && c <= '9'; });
}

bool HasControlCharacter(std::string_view text) {
  return std::ranges::any_of(text, [](char c) { return static_cast<unsigned char>(c) < ' '; });
}

/// The text that is edited: as shown, but without parting the thousands.
std::string EditedText(const TField& field) {
  if (field.OnGetText || !field.Format.grouped) return field.Text();
  TextFormat format = field.Format;
  format.grouped = false;
  return FormatValue(field.Value(), format);
}

}  // namespace

void CellEditor::Open(TField& field, const PictureMask& mask, TVosMTCombo* combo) {
  OpenText(EditedText(field), mask);
  field_ = &field;
  combo_ = combo;
  label = field.DisplayLabel;
}

void CellEditor::OpenText(std::string_view text, const PictureMask& mask) {
  Close();
  open_ = true;
  fresh_ = true;
  text_ = text;
  mask_ = mask;
}

void CellEditor::Close() {
  if (combo_ != nullptr) combo_->CloseList();
  open_ = false;
  fresh_ = false;
  changed_ = false;
  multiLine = false;
  text_.clear();
  label.clear();
  mask_ = PictureMask();
  field_ = nullptr;
  combo_ = nullptr;
}

bool CellEditor::SetText(std::string_view text) {
  if (!open_ || !Fits(text)) return false;
  if (text != text_) Accept(std::string(text));
  return true;
}

bool CellEditor::Type(std::string_view text) {
  if (!open_) return false;
  std::string typed = fresh_ ? std::string() : text_;
  typed += text;
  if (!Fits(typed)) return false;
  Accept(std::move(typed));
  return true;
}

bool CellEditor::Backspace() {
  if (!open_ || text_.empty()) return false;
  const std::size_t length = Utf8Length(text_);
  Accept(std::string(Utf8Cut(text_, length - 1)));
  return true;
}

Answer<Done> CellEditor::CheckComplete() const {
  if (text_.empty() || combo_ != nullptr || mask_.Match(text_) == MaskMatch::Complete)
    return Done{};
  return Failure{FailureKind::Refused,
                 "Стойността „" + text_ + "“ в поле „" + label + "“ не е въведена докрай."};
}

bool CellEditor::Fits(std::string_view text) const {
  if (text.empty()) return true;
  if (!multiLine && HasControlCharacter(text)) return false;
  if (combo_ != nullptr && combo_->TakesNames() && !IsDigits(text))
    return Utf8Length(text) <= kLongestName;
  const std::size_t size = field_ == nullptr ? 0 : field_->Def().size;
  if (size != 0 && Utf8Length(text) > size) return false;
  return mask_.Match(text) != MaskMatch::Impossible;
}

void CellEditor::Accept(std::string text) {
  text_ = std::move(text);
  fresh_ = false;
  changed_ = true;
  if (combo_ != nullptr) combo_->TextChanged(text_);
}

}  // namespace orvane
