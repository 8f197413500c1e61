#include "host/controls/cell_editor.h"

#include <algorithm>

#include "data/text_format.h"
#include "host/controls/combo.h"
#include "packet/fold.h"

namespace orvane::host {
namespace {

/// Names typed into a lookup are not bound by the size of the code.
constexpr std::size_t kLongestName = 100;

bool IsDigits(std::string_view text) {
  return std::ranges::all_of(text, [](char c) { return c >= '0' && c <= '9'; });
}

bool HasControlCharacter(std::string_view text) {
  return std::ranges::any_of(text, [](char c) { return static_cast<unsigned char>(c) < ' '; });
}

/// Why a number, written plainly, is not one of the mask's; nothing when it is.
std::string_view WhyUnmasked(const PictureMask& mask, const std::string& number) {
  if (mask.Match(number) == MaskMatch::Complete) return {};
  const std::string whole = number.substr(0, number.find(','));
  if (whole.starts_with('-') && mask.Match("-") == MaskMatch::Impossible)
    return "е отрицателно число, а се въвежда положително.";
  if (whole != number && mask.Match(whole) == MaskMatch::Complete)
    return "има твърде много знаци след запетаята.";
  if (whole == "0") return "не се въвежда тук. Въведете число от 1 нагоре.";
  return "е твърде голямо число.";
}

/// The text that is edited: as shown, but without parting the thousands.
std::string EditedText(const TField& field) {
  if (field.OnGetText || !field.Format.grouped) return field.Text();
  TextFormat format = field.Format;
  format.grouped = false;
  return FormatValue(field.Value(), format);
}

}  // namespace

std::string OneLine(std::string_view text) {
  std::string line(text);
  while (!line.empty() && static_cast<unsigned char>(line.back()) < ' ')
    line.pop_back();
  std::ranges::replace_if(
      line, [](char c) { return static_cast<unsigned char>(c) < ' '; }, ' ');
  return line;
}

std::string TooLong(std::string_view label, std::size_t size) {
  return "Текстът в поле „" + std::string(label) + "“ е по-дълъг от " + std::to_string(size) +
         " знака. Съкратете го.";
}

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
  if (!open_) return false;
  std::string typed = multiLine ? std::string(text) : OneLine(text);
  const std::size_t before = Utf8Length(text_);
  const std::size_t now = Utf8Length(typed);
  const bool oneMore = now == before + 1 || now == before;
  if (oneMore && !Fits(typed)) return false;
  if (typed != text_) Accept(std::move(typed));
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

bool CellEditor::IsOfNumber() const {
  return field_ != nullptr && IsNumber(field_->Def().kind);
}

Answer<Done> CellEditor::CheckComplete() const {
  if (text_.empty() || combo_ != nullptr) return Done{};
  if (IsOfNumber()) return CheckNumber();
  const std::size_t size = field_ == nullptr ? 0 : field_->Def().size;
  if (size != 0 && Utf8Length(text_) > size) {
    return Failure{FailureKind::Refused, TooLong(label, size)};
  }
  const MaskMatch match = mask_.Match(text_);
  if (match == MaskMatch::Complete) return Done{};
  return Failure{
      FailureKind::Refused,
      "Стойността „" + text_ + "“ в поле „" + label +
          (match == MaskMatch::Beginning ? "“ не е въведена докрай." : "“ не е допустима.")};
}

/// The mask judges the number that is meant, not how it was written. What cannot be read at all the
/// field tells itself.
Answer<Done> CellEditor::CheckNumber() const {
  if (mask_.IsEmpty() || field_->OnSetText) return Done{};
  const Answer<Decimal> number = ReadNumber(text_, WantedBy(field_->Format));
  if (!number) return Done{};
  const std::string_view why = WhyUnmasked(mask_, number->ToText(','));
  if (why.empty()) return Done{};
  return Failure{FailureKind::Refused, "Поле „" + label + "“: „" + text_ + "“ " + std::string(why)};
}

/// Numbers are read when the place is left: until then whatever was typed or pasted stays.
bool CellEditor::Fits(std::string_view text) const {
  if (text.empty()) return true;
  if (!multiLine && HasControlCharacter(text)) return false;
  if (combo_ != nullptr && combo_->TakesNames() && !IsDigits(text))
    return Utf8Length(text) <= kLongestName;
  if (IsOfNumber()) return mask_.IsEmpty() || !IsBlank(text);
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

}  // namespace orvane::host
