#pragma once

// What forms remember from one day to the next: position, size and column widths.

#include <QtCore/QRect>
#include <QtCore/QSettings>
#include <QtCore/QString>
#include <memory>
#include <optional>
#include <string>

#include "packet/floors.h"

namespace orvane::desktop {

class FormMemory {
 public:
  /// The user's own settings.
  static std::unique_ptr<FormMemory> OfUser();
  /// Forgets everything when it goes: for walks and tests, whose pictures must not depend on
  /// yesterday.
  FormMemory() = default;
  /// Kept in a file.
  explicit FormMemory(const QString& file);

  /// Place and size of a form's window; empty when none was kept.
  std::optional<QRect> Place(const std::string& formClass) const;
  void KeepPlace(const std::string& formClass, const QRect& place);
  void ForgetPlace(const std::string& formClass);
  /// Width in pixels that the user gave a column; 0 when he gave none.
  int ColumnWidth(const std::string& formClass, const std::string& column) const;
  void KeepColumnWidth(const std::string& formClass, const std::string& column, int width);

 private:
  std::unique_ptr<QSettings> settings_;
};

}  // namespace orvane::desktop
