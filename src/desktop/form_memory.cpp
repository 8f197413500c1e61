#include "desktop/form_memory.h"

#include <QtCore/QPoint>

#include "desktop/qt_text.h"

namespace orvane::desktop {
namespace {

QString KeyOf(const std::string& formClass, const QString& name) {
  return "forms/" + Qs(formClass) + "/" + name;
}

QString ColumnKey(const std::string& formClass, const std::string& column) {
  return KeyOf(formClass, "columns/" + Qs(column));
}

constexpr char kPosition[] = "*FormPosition";
constexpr char kWidth[] = "Width";
constexpr char kHeight[] = "Height";

}  // namespace

std::unique_ptr<FormMemory> FormMemory::OfUser() {
  auto memory = std::make_unique<FormMemory>();
  memory->settings_ = std::make_unique<QSettings>("Orvane", "Orvane");
  return memory;
}

FormMemory::FormMemory(const QString& file)
    : settings_(std::make_unique<QSettings>(file, QSettings::IniFormat)) {}

std::optional<QRect> FormMemory::Place(const std::string& formClass) const {
  if (settings_ == nullptr) return std::nullopt;
  const int width = settings_->value(KeyOf(formClass, kWidth)).toInt();
  const int height = settings_->value(KeyOf(formClass, kHeight)).toInt();
  const QVariant position = settings_->value(KeyOf(formClass, kPosition));
  if (width <= 0 || height <= 0 || !position.isValid()) return std::nullopt;
  return QRect(position.toPoint(), QSize(width, height));
}

void FormMemory::KeepPlace(const std::string& formClass, const QRect& place) {
  if (settings_ == nullptr) return;
  settings_->setValue(KeyOf(formClass, kPosition), place.topLeft());
  settings_->setValue(KeyOf(formClass, kWidth), place.width());
  settings_->setValue(KeyOf(formClass, kHeight), place.height());
}

void FormMemory::ForgetPlace(const std::string& formClass) {
  if (settings_ == nullptr) return;
  for (const char* name : {kPosition, kWidth, kHeight})
    settings_->remove(KeyOf(formClass, name));
}

int FormMemory::ColumnWidth(const std::string& formClass, const std::string& column) const {
  return settings_ == nullptr ? 0 : settings_->value(ColumnKey(formClass, column)).toInt();
}

void FormMemory::KeepColumnWidth(const std::string& formClass, const std::string& column,
                                 int width) {
  if (settings_ != nullptr) settings_->setValue(ColumnKey(formClass, column), width);
}

}  // namespace orvane::desktop
