#include "desktop/message_view.h"

#include <QtGui/QClipboard>
#include <QtGui/QCloseEvent>
#include <QtGui/QKeyEvent>
#include <QtGui/QMouseEvent>
#include <QtGui/QPainter>
#include <QtWidgets/QApplication>
#include <QtWidgets/QLineEdit>
#include <algorithm>

#include "desktop/qt_keys.h"
#include "desktop/qt_text.h"
#include "desktop/theme.h"

namespace orvane::desktop {
namespace {

constexpr int kTitle = 30;
constexpr int kSign = 34;
constexpr int kSpace = 18;
constexpr int kWidestText = 460;
constexpr int kLeastWidth = 320;
constexpr int kButtonHeight = 28;
constexpr int kButtonWidth = 104;
constexpr int kButtonGap = 10;
constexpr int kLineLabel = 22;
constexpr int kLineHeight = 28;

/// What a kind of message looks like: a shape and a character, beside the colour.
struct KindRow {
  int kind;
  Role ground;
  const char* sign;
};
constexpr KindRow kKinds[] = {
    {0, Role::IconRed, "×"},
    {1, Role::IconBlue, "i"},
    {2, Role::IconAmber, "!"},
    {3, Role::IconAmber, "?"},
};

/// Letters of the answers, as typed in either layout.
struct LetterRow {
  QChar letter;
  int answer;
};
constexpr LetterRow kLetters[] = {
    {u'д', kAnswerYes}, {u'y', kAnswerYes}, {u'd', kAnswerYes},
    {u'н', kAnswerNo},  {u'n', kAnswerNo},
};

}  // namespace

MessageView::MessageView(const MessageDialog& dialog, const QuestionLine* line)
    : QWidget(nullptr, Qt::Dialog | Qt::FramelessWindowHint), dialog_(dialog) {
  setWindowTitle(Qs(dialog.caption));
  setWindowModality(Qt::ApplicationModal);
  setFocusPolicy(Qt::StrongFocus);
  setAttribute(Qt::WA_InputMethodEnabled);
  setAccessibleName(Qs(dialog.caption));
  setAccessibleDescription(Qs(dialog.text));
  if (dialog.yesNo) {
    buttons_ = {{kAnswerYes, "Да", "Д"}, {kAnswerNo, "Не", dialog.mayGoBack ? "Н" : "Н, Esc"}};
    if (dialog.mayGoBack) buttons_.push_back({kAnswerBack, "Назад", "Esc"});
    focused_ = HarmlessButton();
  } else {
    buttons_ = {{kAnswerOk, "Добре", "Enter"}};
  }
  if (line != nullptr) AddLine(*line);
  resize(sizeHint());
}

void MessageView::AddLine(const QuestionLine& line) {
  lineLabel_ = Qs(line.label);
  line_ = new QLineEdit(Qs(line.text), this);
  line_->setFont(ScreenFont());
  line_->setAccessibleName(lineLabel_);
  line_->setPlaceholderText(Qs(line.hint));
  line_->setStyleSheet(QString("QLineEdit { border: 1px solid %1; padding: 0 5px; }"
                               "QLineEdit:focus { border: 2px solid %2; padding: 0 4px; }")
                           .arg(ColorOf(Role::Line).name(), ColorOf(Role::Accent).name()));
  line_->setContextMenuPolicy(Qt::NoContextMenu);
  line_->selectAll();
  line_->installEventFilter(this);
  if (line.first) focused_ = static_cast<int>(buttons_.size());
}

QString MessageView::LineText() const {
  return line_ == nullptr ? QString() : line_->text();
}

void MessageView::TakeFocus() {
  KeyTarget().setFocus();
}

QWidget& MessageView::KeyTarget() {
  return IsInLine() ? static_cast<QWidget&>(*line_) : *this;
}

void MessageView::Finish(int answer) {
  if (answer_ != 0) return;
  answer_ = answer;
  hide();
}

// --- places
// ---------------------------------------------------------------------------------------

QSize MessageView::TextSize() const {
  return ScreenMetrics()
      .boundingRect(QRect(0, 0, kWidestText, QWIDGETSIZE_MAX), Qt::TextWordWrap, Qs(dialog_.text))
      .size();
}

int MessageView::BodyHeight() const {
  return std::max(TextSize().height() + 2, kSign);
}

QSize MessageView::sizeHint() const {
  const QSize text = HasLine() ? QSize(kWidestText, TextSize().height()) : TextSize();
  const int caption = ScreenMetrics(true).horizontalAdvance(Qs(dialog_.caption)) + 2 * kSpace;
  const int buttons = static_cast<int>(buttons_.size()) * (kButtonWidth + kButtonGap) + 2 * kSpace;
  const int width =
      std::max({text.width() + kSign + 3 * kSpace + 2, caption, buttons, kLeastWidth});
  const int line = HasLine() ? kLineLabel + kLineHeight : 0;
  return {width, kTitle + kSpace + BodyHeight() + line + kSpace + kButtonHeight + kSpace};
}

void MessageView::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  if (!HasLine()) return;
  const int left = kSpace * 2 + kSign;
  line_->setGeometry(left, kTitle + kSpace + BodyHeight() + kLineLabel, width() - left - kSpace,
                     kLineHeight);
}

QRect MessageView::ButtonRect(int index) const {
  const int fromRight = static_cast<int>(buttons_.size()) - index;
  const int left = width() - kSpace + kButtonGap - fromRight * (kButtonWidth + kButtonGap);
  return {left, height() - kSpace - kButtonHeight, kButtonWidth, kButtonHeight};
}

// --- painting
// -------------------------------------------------------------------------------------

void MessageView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), ColorOf(Role::Panel));
  const QRect title(0, 0, width(), kTitle);
  painter.fillRect(title, ColorOf(Role::Strip));
  painter.setFont(ScreenFont(true));
  painter.setPen(ColorOf(Role::StripText));
  painter.drawText(title.adjusted(kSpace, 0, -kSpace, 0), Qt::AlignVCenter, Qs(dialog_.caption));
  PaintSign(painter, QRect(kSpace, kTitle + kSpace, kSign, kSign));
  painter.setFont(ScreenFont());
  painter.setPen(ColorOf(Role::Text));
  const QSize text = TextSize();
  const int top = kTitle + kSpace + std::max(0, (kSign - text.height()) / 2);
  painter.drawText(QRect(kSpace * 2 + kSign, top, text.width() + 2, text.height() + 2),
                   Qt::TextWordWrap, Qs(dialog_.text));
  if (HasLine()) {
    const QRect line = line_->geometry();
    painter.setPen(ColorOf(Role::TextDim));
    painter.drawText(line.adjusted(0, -kLineLabel, 0, -kLineHeight), Qt::AlignVCenter, lineLabel_);
  }
  for (int i = 0; i < static_cast<int>(buttons_.size()); ++i)
    PaintButton(painter, i);
  painter.setRenderHint(QPainter::Antialiasing, false);
  painter.setBrush(Qt::NoBrush);
  painter.setPen(ColorOf(Role::AccentLine));
  painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

void MessageView::PaintSign(QPainter& painter, const QRect& place) const {
  const auto row = std::ranges::find(kKinds, dialog_.kind, &KindRow::kind);
  const KindRow& kind = row == std::end(kKinds) ? kKinds[1] : *row;
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(ColorOf(kind.ground));
  if (kind.ground == Role::IconAmber) {
    const QPointF corners[] = {QPointF(place.center().x() + 0.5, place.top()),
                               QPointF(place.right() + 1, place.bottom()),
                               QPointF(place.left(), place.bottom())};
    painter.drawPolygon(corners, 3);
  } else {
    painter.drawEllipse(place);
  }
  QFont font = ScreenFont(true);
  font.setPixelSize(19);
  painter.setFont(font);
  painter.setPen(ColorOf(Role::IconSign));
  const bool question = dialog_.yesNo && dialog_.kind == 1;
  const int down = kind.ground == Role::IconAmber ? 5 : 0;
  painter.drawText(place.adjusted(0, down, 0, down), Qt::AlignCenter,
                   question ? QString("?") : QString::fromUtf8(kind.sign));
}

void MessageView::PaintButton(QPainter& painter, int index) const {
  const QRect place = ButtonRect(index);
  const Button& button = buttons_[static_cast<std::size_t>(index)];
  const bool focused = index == focused_;
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(ColorOf(focused ? Role::Accent : Role::Line), focused ? 2 : 1));
  painter.setBrush(ColorOf(focused ? Role::AccentSoft : Role::Field));
  painter.drawRoundedRect(QRectF(place).adjusted(1, 1, -1, -1), 3, 3);
  const int captionWidth = ScreenMetrics(true).horizontalAdvance(button.caption);
  const int keyWidth = ScreenMetrics().horizontalAdvance(button.key);
  constexpr int kGap = 8;
  const int left = place.left() + (place.width() - captionWidth - kGap - keyWidth) / 2;
  painter.setFont(ScreenFont(true));
  painter.setPen(ColorOf(Role::Text));
  painter.drawText(QRect(left, place.top(), captionWidth + 2, place.height()), Qt::AlignVCenter,
                   button.caption);
  painter.setFont(ScreenFont());
  painter.setPen(ColorOf(Role::TextDim));
  painter.drawText(QRect(left + captionWidth + kGap, place.top(), keyWidth + 2, place.height()),
                   Qt::AlignVCenter, button.key);
}

// --- keys and mouse
// -------------------------------------------------------------------------------

int MessageView::AnswerOf(const QKeyEvent& event) const {
  if (!dialog_.yesNo || (event.modifiers() & (Qt::ControlModifier | Qt::AltModifier))) return 0;
  const QString text = event.text().toLower();
  for (const LetterRow& row : kLetters) {
    if (text == row.letter) return row.answer;
  }
  // The places of Y and N answer in every layout.
  const KeyCode place = StrokeOf(event).code;
  if (place == KeyCode::Y) return kAnswerYes;
  return place == KeyCode::N ? kAnswerNo : 0;
}

void MessageView::MoveFocus(int by) {
  const int count = static_cast<int>(buttons_.size()) + (HasLine() ? 1 : 0);
  FocusOn((focused_ + by + count) % count);
}

void MessageView::FocusOn(int place) {
  focused_ = place;
  KeyTarget().setFocus();
  update();
}

bool MessageView::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut) {
    const bool in = event->type() == QEvent::FocusIn;
    if (in || IsInLine()) focused_ = HarmlessButton() + (in ? 1 : 0);
    update();
  }
  if (event->type() != QEvent::KeyPress) return QWidget::eventFilter(watched, event);
  const KeyStroke key = StrokeOf(static_cast<QKeyEvent&>(*event));
  switch (key.code) {
    case KeyCode::Escape:
      Finish(HarmlessAnswer());
      return true;
    case KeyCode::Enter:
    case KeyCode::Up:
      MoveFocus(-1);  // the harmless answer
      return true;
    case KeyCode::Down:
      MoveFocus(1);
      return true;
    case KeyCode::Tab:
      MoveFocus((key.modifiers & ShiftKey) != 0 ? -1 : 1);
      return true;
    default:
      return QWidget::eventFilter(watched, event);
  }
}

void MessageView::keyPressEvent(QKeyEvent* event) {
  if (const int answer = AnswerOf(*event)) return Finish(answer);
  const KeyStroke key = StrokeOf(*event);
  if (key == Ctrl(KeyCode::C)) return QApplication::clipboard()->setText(Qs(dialog_.text));
  switch (key.code) {
    case KeyCode::Enter:
    case KeyCode::Space:
      return Finish(buttons_[static_cast<std::size_t>(focused_)].answer);
    case KeyCode::Escape:
      return Finish(HarmlessAnswer());
    case KeyCode::Up:
      if (HasLine()) return FocusOn(static_cast<int>(buttons_.size()));
      return MoveFocus(-1);
    case KeyCode::Left:
      return MoveFocus(-1);
    case KeyCode::Right:
    case KeyCode::Down:
      return MoveFocus(1);
    case KeyCode::Tab:
      return MoveFocus((key.modifiers & ShiftKey) != 0 ? -1 : 1);
    default:
      return;
  }
}

/// Tab belongs to the buttons.
bool MessageView::focusNextPrevChild(bool) {
  return false;
}

void MessageView::mousePressEvent(QMouseEvent* event) {
  for (int i = 0; i < static_cast<int>(buttons_.size()); ++i) {
    if (ButtonRect(i).contains(event->pos()))
      return Finish(buttons_[static_cast<std::size_t>(i)].answer);
  }
}

void MessageView::closeEvent(QCloseEvent* event) {
  Finish(HarmlessAnswer());
  event->accept();
}

}  // namespace orvane::desktop
