#include "host/calculator.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <vector>

#include "data/text_format.h"
#include "host/controls/small_controls.h"
#include "host/dialogs.h"
#include "host/form.h"
#include "packet/typed_number.h"

namespace orvane::host {
namespace {

constexpr int kDecimals = 6;
constexpr int kSumChars = 50;
constexpr std::size_t kShownLines = 8;
constexpr int kDeepest = 50;  // parentheses within parentheses

/// Signs that are not ASCII, and what they mean.
struct SignRow {
  std::string_view written;
  std::string_view meant;
};
constexpr std::array<SignRow, 6> kSigns = {{
    {"×", "*"},
    {"x", "*"},
    {"х", "*"},  // the Cyrillic letter
    {"÷", "/"},
    {":", "/"},
    {"−", "-"},
}};

std::string Plain(std::string_view text) {
  std::string plain(text);
  for (const SignRow& sign : kSigns) {
    for (std::size_t at = plain.find(sign.written); at != std::string::npos;
         at = plain.find(sign.written, at)) {
      plain.replace(at, sign.written.size(), sign.meant);
    }
  }
  return plain;
}

Failure Told(std::string sentence) {
  return {FailureKind::Refused, std::move(sentence)};
}

/// Sum of products of factors, read from left to right.
class Reader {
 public:
  explicit Reader(std::string_view text) : written_(text), plain_(Plain(text)), rest_(plain_) {}

  Answer<Decimal> Whole() {
    Answer<Decimal> value = Sum();
    SkipBlanks();
    if (value && !rest_.empty()) return Unread();
    return value;
  }

 private:
  using Kept = std::optional<Decimal>;

  Failure Unread() const {
    return Told("„" + written_ +
                "“ не може да се пресметне. Въведете числа и знаците + - * / ( ).");
  }
  static Answer<Decimal> Fitting(const Kept& value) {
    if (value) return *value;
    return Told("Резултатът е извън обхвата на калкулатора.");
  }
  void SkipBlanks() {
    while (const std::size_t blank = BlankLength(rest_))
      rest_.remove_prefix(blank);
  }
  bool Take(char sign) {
    SkipBlanks();
    if (rest_.empty() || rest_.front() != sign) return false;
    rest_.remove_prefix(1);
    return true;
  }

  Answer<Decimal> Sum() {
    Answer<Decimal> value = Product();
    while (value) {
      const bool plus = Take('+');
      if (!plus && !Take('-')) break;
      const Answer<Decimal> other = Product();
      if (!other) return other;
      value = Fitting(plus ? value->Plus(*other) : value->Minus(*other));
    }
    return value;
  }

  Answer<Decimal> Product() {
    Answer<Decimal> value = Factor();
    while (value) {
      const bool times = Take('*');
      if (!times && !Take('/')) break;
      const Answer<Decimal> other = Factor();
      if (!other) return other;
      if (!times && other->IsZero()) return Told("Не може да се дели на нула.");
      const WideDecimal wide = times ? value->Times(*other) : value->DividedBy(*other);
      value = Fitting(wide.RoundedHalfUp(kDecimals));
    }
    return value;
  }

  Answer<Decimal> Factor() {
    if (++depth_ > kDeepest) return Unread();
    Answer<Decimal> value = Take('(') ? Parenthesis() : Take('-') ? Negative() : Number();
    --depth_;
    return value;
  }
  Answer<Decimal> Parenthesis() {
    Answer<Decimal> value = Sum();
    if (value && !Take(')')) return Unread();
    return value;
  }
  Answer<Decimal> Negative() {
    const Answer<Decimal> value = Factor();
    if (!value) return value;
    return Fitting(Decimal().Minus(*value));
  }
  /// The digits from here on, with the marks and blanks that part them.
  Answer<Decimal> Number() {
    SkipBlanks();
    std::size_t length = 0;
    for (std::size_t at = 0; at < rest_.size();) {
      const std::size_t blank = BlankLength(rest_.substr(at));
      const bool part = std::string_view("0123456789.,").find(rest_[at]) != std::string_view::npos;
      if (blank == 0 && !part) break;
      at += blank == 0 ? 1 : blank;
      if (blank == 0) length = at;
    }
    if (length == 0) return Unread();
    const Answer<Decimal> value =
        ReadNumber(rest_.substr(0, length), {.decimals = Decimal::kMaxScale});
    if (value) rest_.remove_prefix(length);
    return value;
  }

  std::string written_;
  std::string plain_;
  std::string_view rest_;
  int depth_ = 0;
};

constexpr LiveRow kLive[] = {
    {"acExit", kAnywhere},
};

class TfVosCalculator : public TVosBaseForm {
 public:
  explicit TfVosCalculator(TVosBaseForm& owner)
      : TVosBaseForm(DialogIdentity(owner), "TfVosCalculator", "Калкулатор"),
        eSum_(*this, "eSum", "Сметка"),
        lDone_(*this, "lDone") {
    eSum_.width = kSumChars;
    eSum_.OnEditClosed = [this](const std::string& text) { WorkOut(text); };
    lDone_.text = "Въведете сметка, например (12,50 + 3) * 4, и натиснете Enter.";
    AddDialogExit(*this);
    ribbon = {{"Калкулатор", {{"Изход", {"acExit"}}}}};
    layout = ColumnOf({Of(eSum_), Of(lDone_, 1)});
  }

  std::string StatusText() const override { return {}; }
  TVosClientDataSet* MainDataSet() const override { return nullptr; }

 protected:
  std::span<const LiveRow> LiveRows() const override { return kLive; }
  void OnShow() override { FocusControl(&eSum_); }

 private:
  /// The result stays in the edit, so that one can go on with it.
  void WorkOut(const std::string& text) {
    if (text.empty()) return;
    const Answer<Decimal> value = Calculate(text);
    RefuseIf(!value, value ? std::string() : value.GetFailure().message);
    TextFormat shown;
    shown.kind = ValueKind::Amount;
    shown.grouped = true;
    const std::string result = FormatValue(Variant(*value), shown);
    done_.push_back(text + " = " + result);
    if (done_.size() > kShownLines) done_.erase(done_.begin());
    lDone_.text.clear();
    for (const std::string& line : done_)
      lDone_.text += (lDone_.text.empty() ? "" : "\n") + line;
    eSum_.SetText(result);
  }

  TKeyEdit eSum_;
  TLabel lDone_;
  std::vector<std::string> done_;
};

}  // namespace

Answer<Decimal> Calculate(std::string_view text) {
  return Reader(text).Whole();
}

void RunCalculator(TVosBaseForm& owner) {
  TfVosCalculator calculator(owner);
  calculator.ShowModal();
}

}  // namespace orvane::host
