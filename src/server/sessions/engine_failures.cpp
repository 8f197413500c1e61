#include "server/sessions/engine_failures.h"

#include <spdlog/spdlog.h>

namespace orvane::server {

Failure ToFailure(const EngineError& error, std::string_view doing) {
  const bool expected =
      error.kind == EngineErrorKind::Unique || error.kind == EngineErrorKind::ForeignKey ||
      error.kind == EngineErrorKind::Limit || error.kind == EngineErrorKind::TooLarge;
  spdlog::log(expected ? spdlog::level::info : spdlog::level::err, "{}: {} [{}]", doing, error.text,
              error.constraint);
  switch (error.kind) {
    case EngineErrorKind::LinkDown:
      return {FailureKind::LinkDown, "Сървърът няма връзка с базата от данни."};
    case EngineErrorKind::Late:
      return {FailureKind::LinkDown, "Базата от данни не отговори навреме."};
    case EngineErrorKind::Full:  // nothing of the call stands, and it may be sent again as it was
      return {FailureKind::LinkDown,
              "Дискът на базата от данни е пълен и нищо не е записано. Обадете се на "
              "администратора."};
    case EngineErrorKind::Locked:
    case EngineErrorKind::Retry:
      return {FailureKind::Conflict,
              "Други потребители променят същите данни в момента. Опитайте отново."};
    case EngineErrorKind::Limit:
      return {FailureKind::Refused,
              std::string(kRefusalMark) +
                  "Търсенето отнема твърде дълго. Уточнете условията и опитайте отново."};
    case EngineErrorKind::TooLarge:
      return Refused("Отговорът е твърде голям. Поискайте по-малко редове или колони.");
    case EngineErrorKind::Unique:
    case EngineErrorKind::ForeignKey:
    case EngineErrorKind::NotNull:
    case EngineErrorKind::Check:
      return Refused("Данните противоречат на вече записаните и не са записани.");
    case EngineErrorKind::Other:
      break;
  }
  return {FailureKind::Internal,
          "Сървърът не можа да изпълни заявката. Подробностите са в дневника му."};
}

}  // namespace orvane::server
