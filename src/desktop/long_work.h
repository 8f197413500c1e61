#pragma once

#include <QtCore/QElapsedTimer>
#include <QtCore/QString>

#include "desktop/wait_pump.h"
#include "host/report.h"

namespace orvane::desktop {

/// Work of this program that may take long: after a tenth of a second the cursor is busy, after a
/// second the window says what is done and how much of it; Escape stops it.
///
///   LongWork work("Записва се файлът");
///   const auto saved = SaveXlsx(snapshot, path, work.Progress());
class LongWork {
 public:
  /// `what` is the beginning of the sentence that is shown.
  explicit LongWork(QString what) : what_(std::move(what)) { begun_.start(); }
  ~LongWork() { pump_.End(); }

  /// To be asked along the way; lives as long as the work.
  ReportProgress Progress();
  bool WasStopped() const { return stopped_; }

 private:
  bool Step(std::int64_t done, std::int64_t total);

  const QString what_;
  WaitPump pump_;
  QElapsedTimer begun_;
  QElapsedTimer pumped_;
  bool stopped_ = false;
};

}  // namespace orvane::desktop
