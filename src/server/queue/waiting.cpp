#include "server/queue/waiting.h"

#include "server/approval/headed.h"
#include "server/orders/order_head.h"
#include "server/requests/request_head.h"
#include "server/statements/named_statement.h"

namespace orvane::server {
namespace {

/// Few documents are on their way at a time, however many there are: they are found by status. The
/// sum keeps planners from walking all that a cost centre ever had instead.
constexpr std::string_view kWaiting =
    "{heads} p join {rows} a on {ofHead a}{join}"
    " where {current} and p.AnnulOn is null and p.Status in (3, 4) and a.Status = 2"
    " and not exists (select 1 from {rows} l where {ofHead l}"
    " and l.ConfirmationLevel < a.ConfirmationLevel and l.Status in (1, 2))";

constexpr std::string_view kHeadedByAsker =
    " join headed h on h.Kind = a.Approval and h.CostCenter = p.CostCenter + 0";

std::string WaitingOf(const StoredDocument& document) {
  return "select " + std::to_string(static_cast<int>(document.kind)) + ", count(*), min(p." +
         std::string(document.seen.id) + ") from " + WaitingRows(document, kHeadedByAsker);
}

}  // namespace

std::string WaitingRows(const StoredDocument& document, std::string_view join) {
  std::string text = Replaced(kWaiting, "{heads}", document.head.table);
  text = Replaced(text, "{join}", join);
  text = Replaced(text, "{rows}", document.approvals.table);
  text = Replaced(text, "{ofHead a}", OfHead(document, "a"));
  text = Replaced(text, "{ofHead l}", OfHead(document, "l"));
  return Replaced(text, "{current}", Replaced(document.seen.current, "{t}", "p"));
}

Answer<VariantArray> CountWaiting(Work& work, const VariantArray&) {
  const auto employee = work.Who().Employee();
  const Statement count = Named(
      "with headed (Kind, CostCenter) as (" + HeadedByKind() + ") " + WaitingOf(StoredRequest()) +
          " union all " + WaitingOf(StoredOrder()),
      {{"Employee", employee.value_or(0)}, {"Login", work.Who().login}, {"Today", work.Today()}},
      {{"Kind", ValueKind::Code, 0},
       {"Waiting", ValueKind::Code, 0},
       {"First", ValueKind::Code, 0}});
  const auto packets = work.Read({&count, 1});
  if (!packets) return packets.GetFailure();
  const DataPacket& kinds = packets->front();
  VariantArray waiting;
  std::int64_t all = 0;
  for (std::size_t row = 0; employee && row < kinds.rowCount; ++row) {
    const std::int64_t some = kinds.At(row, "Waiting").AsInt().value_or(0);
    if (some == 0) continue;
    all += some;
    waiting.emplace_back(VariantArray{kinds.At(row, "Kind"), kinds.At(row, "First")});
  }
  return VariantArray{Variant(all), Variant(std::move(waiting))};
}

}  // namespace orvane::server
