#pragma once

// What waits for the user, in the status bar of every screen, and the way to it.

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "contract/workflow.h"
#include "packet/floors.h"

namespace orvane::host {
class VosApplication;
}  // namespace orvane::host

namespace orvane::kit {

/// "1 документ чака Вас", "2 документа чакат Вас"; empty for none.
std::string WaitingText(std::int64_t documents);

/// The first document of a kind that waits.
struct FirstWaiting {
  DocumentKind kind = DocumentKind::PurchaseRequest;
  std::int64_t id = 0;
};

/// Asks the server, takes the answer to the status bar and tells the first document of each kind
/// that waits. A failure leaves the former text and tells of none: it is no part of anybody's work.
std::vector<FirstWaiting> RefreshWaiting(VosApplication& app);

/// While it lives something is done to the shown document that may give the user a turn or take it:
/// what waits for him follows from what the screen knows of the document before and after, without
/// asking the server.
class TurnCounted {
 public:
  TurnCounted(VosApplication& app, std::function<bool()> hasTurn);
  ~TurnCounted();
  TurnCounted(const TurnCounted&) = delete;
  TurnCounted& operator=(const TurnCounted&) = delete;

 private:
  VosApplication& app_;
  std::function<bool()> hasTurn_;
  bool hadTurn_;
};

}  // namespace orvane::kit
