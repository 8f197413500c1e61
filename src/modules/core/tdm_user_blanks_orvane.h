#pragma once

// Print forms of documents. A form is made from what the server holds, not from what a screen
// shows, so that whatever screen asks for it prints the same.

#include <cstdint>

#include "packet/variant.h"

namespace orvane::host {
class TVosBaseForm;
}  // namespace orvane::host

namespace orvane::modules {

/// Document codes of the print forms.
inline constexpr int kPurchaseOrderBlank = 25;
inline constexpr int kManifactureOrderBlank = 26;

class TdmUserBlanksOrvane {
 public:
  /// Asks the server from the point of `owner`, over which the preview opens.
  explicit TdmUserBlanksOrvane(TVosBaseForm& owner) : owner_(owner) {}

  /// Prints one version of a purchase request: its head in words, rows with sums, delivery
  /// schedule, payment plan, and approvals with names and times. Two calls. `kindSupply` chooses
  /// the variant of the form. Nothing is printed (and the user is told) when there is no such
  /// request for him.
  void PrintPurchaseOrder(int documentCode, const Variant& kindSupply, std::int64_t id,
                          int version);
  /// Prints a supplier order: its head in words, rows, approvals with names and times, and the
  /// purchase requests that it covers. Two calls; otherwise as the request.
  void PrintManifactureOrder(int documentCode, const Variant& kindSupply, std::int64_t id);

 private:
  TVosBaseForm& owner_;
};

}  // namespace orvane::modules
