#include "kit/documents/waiting.h"

#include <algorithm>
#include <utility>

#include "contract/system.h"
#include "data/abort.h"
#include "data/connection.h"
#include "host/application.h"

namespace orvane::kit {

namespace {

std::string BriefText(std::int64_t documents) {
  if (documents <= 0) return {};
  return std::to_string(documents) + (documents == 1 ? " чака Вас" : " чакат Вас");
}

void Show(VosApplication& app, std::int64_t documents) {
  app.waiting.documents = documents;
  app.waiting.text = WaitingText(documents);
  app.waiting.brief = BriefText(documents);
}

std::vector<FirstWaiting> ReadFirst(const VariantArray* kinds) {
  std::vector<FirstWaiting> first;
  for (const Variant& kind : kinds == nullptr ? VariantArray() : *kinds) {
    const VariantArray* pair = kind.AsArray();
    if (pair == nullptr || pair->size() != 2) continue;
    first.push_back({static_cast<DocumentKind>((*pair)[0].AsInt().value_or(0)),
                     (*pair)[1].AsInt().value_or(0)});
  }
  return first;
}

}  // namespace

std::string WaitingText(std::int64_t documents) {
  if (documents <= 0) return {};
  return std::to_string(documents) +
         (documents == 1 ? " документ чака Вас" : " документа чакат Вас");
}

std::vector<FirstWaiting> RefreshWaiting(VosApplication& app) {
  TVosSQLConnection connection(app.Session(), {}, system::kLevelsApprovalClass);
  try {
    const VariantArray answer = connection.Ask(system::kCountWaiting, {});
    Show(app, answer.empty() ? 0 : answer.front().AsInt().value_or(0));
    return ReadFirst(answer.size() < 2 ? nullptr : answer[1].AsArray());
  } catch (const ServerError&) {
    return {};
  }
}

TurnCounted::TurnCounted(VosApplication& app, std::function<bool()> hasTurn)
    : app_(app), hasTurn_(std::move(hasTurn)), hadTurn_(hasTurn_()) {}

TurnCounted::~TurnCounted() {
  const int gained = static_cast<int>(hasTurn_()) - static_cast<int>(hadTurn_);
  if (gained != 0) Show(app_, std::max<std::int64_t>(0, app_.waiting.documents + gained));
}

}  // namespace orvane::kit
