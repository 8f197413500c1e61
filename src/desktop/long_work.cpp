#include "desktop/long_work.h"

#include "data/text_format.h"
#include "desktop/qt_text.h"

namespace orvane::desktop {
namespace {

constexpr int kQuietMs = 100;
constexpr int kBetweenMs = 50;

QString DoneText(std::int64_t done, std::int64_t total) {
  if (total > 0) return QString("%1 %").arg(done * 100 / total);
  TextFormat grouped;
  grouped.grouped = true;
  return Qs(FormatValue(Variant(done), grouped)) + " реда";
}

}  // namespace

ReportProgress LongWork::Progress() {
  return [this](std::int64_t done, std::int64_t total) { return Step(done, total); };
}

bool LongWork::Step(std::int64_t done, std::int64_t total) {
  if (stopped_) return false;
  if (begun_.elapsed() < kQuietMs) return true;
  if (pumped_.isValid() && pumped_.elapsed() < kBetweenMs) return true;
  stopped_ = !pump_.Pump(what_ + ": " + DoneText(done, total) + ". Escape спира.");
  pumped_.start();
  return !stopped_;
}

}  // namespace orvane::desktop
