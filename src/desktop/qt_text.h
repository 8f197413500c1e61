#pragma once

// Texts between the model (UTF-8) and Qt.

#include <QtCore/QString>
#include <string>
#include <string_view>

namespace orvane::desktop {

inline QString Qs(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}
inline std::string Utf8(const QString& text) {
  const QByteArray bytes = text.toUtf8();
  return {bytes.constData(), static_cast<std::size_t>(bytes.size())};
}

}  // namespace orvane::desktop
