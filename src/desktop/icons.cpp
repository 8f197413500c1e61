#include "desktop/icons.h"

#include <QtGui/QPainter>
#include <QtGui/QPainterPath>
#include <algorithm>
#include <charconv>
#include <iterator>

#include "desktop/theme.h"

namespace orvane::desktop {
namespace {

/// Strokes on a square of 14: "M x y" starts a line, "L x y" goes on, "O x y r" is a circle.
struct IconRow {
  std::string_view name;
  Role ground;
  std::string_view strokes;
};

constexpr IconRow kIcons[] = {
    {"save", Role::IconBlue, "M 4 3 L 4 11 L 10 11 L 10 5 L 8 3 L 4 3 M 6 11 L 6 8 L 8 8 L 8 11"},
    {"cancel", Role::IconAmber, "M 4 4 L 10 10 M 10 4 L 4 10"},
    {"delete", Role::IconRed, "M 3.5 5 L 10.5 5 M 5 5 L 5.5 11 L 8.5 11 L 9 5 M 6 3 L 8 3"},
    {"print", Role::IconBlue,
     "M 5 6 L 5 3 L 9 3 L 9 6 M 3.5 6 L 10.5 6 L 10.5 9 L 3.5 9 L 3.5 6 M 5 11 L 9 11"},
    {"search", Role::IconBlue, "O 6.2 6.2 2.6 M 8.2 8.2 L 11 11"},
    {"exit", Role::IconRed, "M 8 3 L 4 3 L 4 11 L 8 11 M 6.5 7 L 11 7 M 9 5 L 11 7 L 9 9"},
    {"help", Role::IconBlue,
     "M 5 5 L 5.6 3.8 L 7 3.3 L 8.5 3.8 L 9 5 L 8.4 6.2 L 7 7 L 7 8.6 M 7 10.6 L 7 10.9"},
    {"about", Role::IconBlue, "M 7 6 L 7 11 M 7 3.4 L 7 3.7"},
    {"language", Role::IconGreen, "O 7 7 4 M 3 7 L 11 7 M 7 3 L 5.4 7 L 7 11 L 8.6 7 L 7 3"},
    {"open", Role::IconBlue, "M 3 10.5 L 3 4 L 6 4 L 7 5.5 L 11 5.5 L 11 10.5 L 3 10.5"},
    {"confirm", Role::IconGreen, "M 3.5 7.2 L 6 10 L 10.5 4"},
    {"edit", Role::IconBlue, "M 3.5 10.5 L 4.2 8 L 9 3.2 L 10.8 5 L 6 9.8 L 3.5 10.5"},
    {"new", Role::IconBlue, "M 7 3.5 L 7 10.5 M 3.5 7 L 10.5 7"},
    {"copy", Role::IconBlue, "M 5.5 5.5 L 11 5.5 L 11 11 L 5.5 11 L 5.5 5.5 M 8.5 3 L 3 3 L 3 8.5"},
    {"version", Role::IconBlue,
     "M 3 4 L 11 4 M 3 7 L 11 7 M 3 10 L 7 10 M 9 10 L 11 10 M 10 9 L 10 11"},
    {"send", Role::IconAmber, "M 3 7 L 10.5 7 M 7.5 4 L 10.5 7 L 7.5 10"},
    {"approve", Role::IconGreen, "M 3.5 7.2 L 6 10 L 10.5 4"},
    {"reject", Role::IconRed, "M 4 4 L 10 10 M 10 4 L 4 10"},
    {"withdraw", Role::IconAmber, "M 6 4 L 3.5 6.5 L 6 9 M 3.5 6.5 L 9 6.5 L 10.5 8 L 10.5 10.5"},
    {"reopen", Role::IconAmber, "M 6 4 L 3.5 6.5 L 6 9 M 3.5 6.5 L 9 6.5 L 10.5 8 L 10.5 10.5"},
    {"correct", Role::IconBlue, "M 3.5 10.5 L 4.2 8 L 9 3.2 L 10.8 5 L 6 9.8 L 3.5 10.5"},
    {"annul", Role::IconRed, "O 7 7 4 M 4.2 9.8 L 9.8 4.2"},
    {"finish", Role::IconGreen, "M 4 11 L 4 3 L 10.5 3 L 9 5.2 L 10.5 7.4 L 4 7.4"},
    {"rows", Role::IconBlue, "M 3 4 L 11 4 M 3 7 L 11 7 M 3 10 L 11 10"},
    {"register", Role::IconGreen,
     "M 3.5 3.5 L 10.5 3.5 L 10.5 10.5 L 3.5 10.5 L 3.5 3.5 M 3.5 6 L 10.5 6 M 6 6 L 6 10.5"},
    {"people", Role::IconGreen, "O 7 5 2 M 3.5 11 L 4.5 8.5 L 9.5 8.5 L 10.5 11"},
    {"report", Role::IconBlue, "M 4 10.5 L 4 7 M 7 10.5 L 7 3.5 M 10 10.5 L 10 5.5"},
    {"refresh", Role::IconGreen,
     "M 10.5 4 L 10.5 6.5 L 8 6.5 M 10.3 6 L 8.5 3.8 L 6 3.6 L 4 5 L 3.5 7.5 L 4.8 10 L 7.4 10.7 L "
     "9.6 9.6"},
    {"quantity", Role::IconBlue, "M 4 4 L 10 10 M 10 4 L 4 10 M 3 7 L 11 7"},
};

/// Reads the strokes one word at a time; the table above is all it ever reads.
class Strokes {
 public:
  explicit Strokes(std::string_view text) : text_(text) {}

  QPainterPath Path() {
    QPainterPath path;
    while (!text_.empty()) {
      const char verb = Word().front();
      const qreal x = Number();
      const qreal y = Number();
      if (verb == 'M') path.moveTo(x, y);
      if (verb == 'L') path.lineTo(x, y);
      if (verb == 'O') {
        const qreal radius = Number();
        path.addEllipse(QPointF(x, y), radius, radius);
      }
    }
    return path;
  }

 private:
  std::string_view Word() {
    const std::size_t end = std::min(text_.find(' '), text_.size());
    const std::string_view word = text_.substr(0, end);
    text_.remove_prefix(std::min(end + 1, text_.size()));
    return word;
  }
  qreal Number() {
    const std::string_view word = Word();
    qreal number = 0;
    std::from_chars(word.data(), word.data() + word.size(), number);
    return number;
  }

  std::string_view text_;
};

}  // namespace

void PaintIcon(QPainter& painter, const QPoint& topLeft, std::string_view name, bool live) {
  const auto row = std::ranges::find(kIcons, name, &IconRow::name);
  const bool known = row != std::end(kIcons);
  const Role ground = live ? (known ? row->ground : Role::IconBlue) : Role::IconGrey;
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.translate(topLeft);
  painter.setPen(Qt::NoPen);
  painter.setBrush(ColorOf(ground));
  constexpr qreal kInset = 4;
  const QRectF square(0, 0, kIconSide, kIconSide);
  painter.drawRoundedRect(known ? square : square.adjusted(kInset, kInset, -kInset, -kInset),
                          known ? 3 : 2, known ? 3 : 2);
  if (known) {
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(ColorOf(Role::IconSign), 1.3, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPath(Strokes(row->strokes).Path());
  }
  painter.restore();
}

}  // namespace orvane::desktop
