#include "server/check/check_waiting.h"

#include <map>

#include "server/approval/approvers.h"
#include "server/orders/order_head.h"
#include "server/queue/waiting.h"
#include "server/requests/request_head.h"
#include "server/sessions/engine_failures.h"
#include "server/statements/named_statement.h"

namespace orvane::server {
namespace {

Answer<std::vector<DataPacket>> Read(Database& database, std::span<const Statement> statements) {
  auto packets = database.ReadSnapshot(statements);
  if (!packets) return ToFailure(packets.GetFailure(), "checking what waits");
  return *std::move(packets);
}

/// Documents of one cost centre, creator and requester that wait at one kind of approver.
Statement SelectTurns(const StoredDocument& document) {
  return {"select p.CostCenter, a.Approval, p.CreatedFrom, p.Notifier, min(p." +
              std::string(document.seen.id) + "), count(*) from " + WaitingRows(document) +
              " group by p.CostCenter, a.Approval, p.CreatedFrom, p.Notifier order by 5",
          {},
          {{"CostCenter", ValueKind::Code, 0},
           {"Approval", ValueKind::Byte, 0},
           {"CreatedFrom", ValueKind::String, 0},
           {"Notifier", ValueKind::Code, 0},
           {"Id", ValueKind::Int32, 0},
           {"Documents", ValueKind::Code, 0}}};
}

/// What keeps everybody from deciding; empty when somebody can.
std::string WhyNobody(const FoundApprovers& found, const DocumentOwners& owners,
                      DocumentOptions options) {
  if (found.approvers.empty()) return found.gap;
  if (options.mayApproveOwn || found.HasOther(owners)) return {};
  return "Решават само създателят и заявителят, а собствен документ не се одобрява.";
}

class WaitingCheck {
 public:
  WaitingCheck(Database& database, Date today, DocumentOptions options)
      : database_(database), today_(today), options_(options) {}

  Answer<Done> Check(const StoredDocument& document) {
    const Statement select = SelectTurns(document);
    const auto turns = Read(database_, {&select, 1});
    if (!turns) return turns.GetFailure();
    const DataPacket& rows = turns->front();
    std::map<std::string, Stuck> stuck;  // by what is to be mended
    for (std::size_t row = 0; row < rows.rowCount; ++row) {
      const auto number = [&](std::string_view column) {
        return rows.At(row, column).AsInt().value_or(0);
      };
      const auto approvers = ApproversOf(number("CostCenter"));
      if (!approvers) return approvers.GetFailure();
      const std::string why =
          WhyNobody((*approvers)->Of(static_cast<ApproverKind>(number("Approval"))),
                    {rows.At(row, "CreatedFrom").ToText(), number("Notifier")}, options_);
      if (why.empty()) continue;
      Stuck& same = stuck[why];
      if (same.documents == 0) same.first = number("Id");
      same.documents += number("Documents");
    }
    for (const auto& [why, same] : stuck)
      Tell(document, why, same);
    return Done{};
  }
  std::vector<std::string> Findings() && { return std::move(findings_); }

 private:
  struct Stuck {
    std::int64_t first = 0;
    std::int64_t documents = 0;
  };

  void Tell(const StoredDocument& document, const std::string& why, const Stuck& same) {
    std::string text = std::string(document.name) + " " + std::to_string(same.first) +
                       " чака решение, което никой не може да вземе. " + why;
    if (same.documents > 1) {
      text += " Така чакат още " + std::to_string(same.documents - 1) + ".";
    }
    findings_.push_back(std::move(text));
  }

  Answer<const ApproversOfCostCenter*> ApproversOf(std::int64_t costCenter) {
    if (const auto known = known_.find(costCenter); known != known_.end()) return &known->second;
    const auto read =
        Read(database_, SelectApprovers(":CostCenter", {{"CostCenter", costCenter}}, today_));
    if (!read) return read.GetFailure();
    return &known_.emplace(costCenter, ReadApprovers((*read)[0], (*read)[1])).first->second;
  }

  Database& database_;
  Date today_;
  DocumentOptions options_;
  std::map<std::int64_t, ApproversOfCostCenter> known_;
  std::vector<std::string> findings_;
};

}  // namespace

Answer<std::vector<std::string>> CheckWaiting(Database& database, Date today,
                                              DocumentOptions options) {
  WaitingCheck check(database, today, options);
  for (const StoredDocument* document : {&StoredRequest(), &StoredOrder()}) {
    if (const auto checked = check.Check(*document); !checked) return checked.GetFailure();
  }
  return std::move(check).Findings();
}

}  // namespace orvane::server
