#include "server/documents/visibility.h"

#include "server/approval/headed.h"
#include "server/documents/claims.h"
#include "server/statements/named_statement.h"

namespace orvane::server {
namespace {

/// Cost centres for which the asker is an admissible requester.
constexpr std::string_view kAdmissibleCenters =
    "select n.CostCenter from AdmissibleNotifiers n where n.Notifier = :Employee";

std::string ColumnOf(std::string_view alias, std::string_view column) {
  return std::string(alias) + "." + std::string(column);
}

}  // namespace

/// Up or down the identifiers.
struct AskerVisibility::Direction {
  std::string_view compare;
  std::string_view nearest;
  std::string_view order;
};

Sight SightOf(const Work& work) {
  const Session& who = work.Who();
  return {who.userLevel, who.login, who.Employee(), work.Today(), who.ReadsReceived()};
}

AskerVisibility::AskerVisibility(const SeenTable& table, const Sight& sight)
    : table_(table),
      everything_(table.everyone || sight.level < kFirstBoundLevel),
      employed_(sight.employee.has_value()),
      requests_(employed_ && !table.admissible.empty()) {
  if (everything_) {
    condition_ = "1 = 1";
    return;
  }
  params_ = {{"Login", sight.login}, {"Today", sight.today}};
  plainReasons_.emplace_back("{t}.CreatedFrom = :Login");
  if (employed_) {
    params_.push_back({"Employee", *sight.employee});
    plainReasons_.emplace_back(table.requested);
  }
  if (sight.readsReceived) {
    for (const int status : table.receivedStatuses)
      plainReasons_.push_back("{t}.Status = " + std::to_string(status));
  }
  for (const std::string& reason : plainReasons_)
    condition_ += (condition_.empty() ? "(" : " or ") + reason;
  condition_ += " or " + Replaced(table.headed, "{headed}", Headed());
  if (requests_) {
    condition_ += " or (" + Replaced(table.admissible, "{centers}", kAdmissibleCenters) + ")";
  }
  if (employed_) {
    const std::string version = table.version.empty() ? "0" : ColumnOf("{t}", table.version);
    condition_ += " or exists (select 1 from ApprovalTurn t where " + Turns() +
                  " and t.DocumentId = " + ColumnOf("{t}", table.id) +
                  " and t.DocumentVersion = " + version + ")";
  }
  condition_ += ")";
}

std::string AskerVisibility::Headed() const {
  return HeadedCostCenters(employed_);
}

/// The asker's turns (alias t) at documents of this kind.
std::string AskerVisibility::Turns() const {
  return "t.Employee = :Employee and t.KindRegister = " +
         std::to_string(static_cast<int>(table_.kind));
}

std::string AskerVisibility::On(std::string_view alias) const {
  return Replaced(condition_, "{t}", alias);
}

std::string AskerVisibility::Tables() const {
  return everything_ ? "" : "headed (CostCenter) as (" + Headed() + "), ";
}

std::string AskerVisibility::Among(std::string_view alias) const {
  return Replaced(Replaced(condition_, Headed(), "select h.CostCenter from headed h"), "{t}",
                  alias);
}

std::string AskerVisibility::Nearest(const Direction& direction, std::string_view position) const {
  const std::string id = ColumnOf("p", table_.id);
  const std::string from = " from " + std::string(table_.table) + " p where ";
  const std::string current = Replaced(table_.current, "{t}", "p");
  const std::string nearest(direction.nearest);
  const auto beyond = [&](const std::string& column) {
    // The sum is a number of no column's type, as the indexed expressions are.
    return column + " " + std::string(direction.compare) + " " + std::string(position) + " + 0";
  };
  const auto first = [&](const std::string& column) {
    return beyond(column) + " order by " + column + std::string(direction.order) + " limit 1";
  };
  if (everything_) {
    return "(select " + nearest + "(" + id + ")" + from + current + " and " + beyond(id) + ")";
  }
  const std::string ordered = Replaced(table_.order, "{t}", "p");
  // Keeps PostgreSQL from planning the aggregate a second time as a sort. A condition on Id would
  // let SQLite seek everything twice.
  const std::string plain = "filter (where 1 = 1)";
  std::string reasons;
  int number = 0;
  const auto add = [&](const std::string& select) {
    reasons += number == 0 ? "" : " union all ";
    reasons += "select Id from (" + select + ") reason" + std::to_string(++number);
  };
  for (const std::string& reason : plainReasons_) {
    add("select " + id + " as Id" + from + Replaced(reason, "{t}", "p") + " and " + current +
        " and " + first(ordered));
  }
  // One seek for each cost centre.
  const auto addCenters = [&](const std::string& ofCenter, const std::string& centers) {
    add("select " + nearest + "(Id) " + plain + " as Id from (select (select " + id + from +
        Replaced(ofCenter, "{t}", "p") + " and " + current + " and " + first(ordered) +
        ") as Id from " + centers + " h) units");
  };
  addCenters(Replaced(table_.headed, "in ({headed})", "= h.CostCenter"), "headed");
  if (requests_) {
    addCenters(Replaced(table_.admissible, "in ({centers})", "= h.CostCenter"),
               "(" + std::string(kAdmissibleCenters) + ")");
  }
  if (employed_) {
    // A scalar subselect is tried turn by turn; a join would be worked out for all of them.
    const std::string version =
        table_.version.empty() ? ""
                               : " and " + ColumnOf("p", table_.version) + " = t.DocumentVersion";
    add("select t.DocumentId as Id from ApprovalTurn t where " + Turns() +
        " and (select case when " + current + " then 1 else 0 end" + from + id + " = t.DocumentId" +
        version + ") = 1 and " + first("t.DocumentId"));
  }
  return "(select " + nearest + "(Id) " + plain + " from (" + reasons + ") reasons)";
}

std::string AskerVisibility::Next(std::string_view position) const {
  return Nearest({">", "min", ""}, position);
}

std::string AskerVisibility::Previous(std::string_view position) const {
  return Nearest({"<", "max", " desc"}, position);
}

RowPredicate AskerVisibility::AsRowPredicate() const {
  if (everything_) return {};
  Statement statement = Named(condition_, params_);
  return {std::move(statement.text), std::move(statement.params)};
}

std::string SeenBySession(const SeenTable& table, std::string_view alias) {
  Sight anybody;
  anybody.level = kFirstBoundLevel;
  anybody.employee = 0;
  std::string seen = AskerVisibility(table, anybody).On(alias);
  for (const int status : table.receivedStatuses) {
    seen += " or (:SessionReadsReceived = 1 and " + ColumnOf(alias, "Status") + " = " +
            std::to_string(status) + ")";
  }
  seen = Replaced(Replaced(seen, ":Login", ":SessionLogin"), ":Employee", ":SessionEmployee");
  return "(:SessionLevel < " + std::to_string(kFirstBoundLevel) + " or " + seen + ")";
}

RowPredicate SearchVisibility(const Work& work, std::string_view table) {
  for (const SeenTable* seen : {&kSeenRequests, &kSeenOrders, &kSeenDeliveries}) {
    if (SameName(seen->table, table)) return AskerVisibility(*seen, SightOf(work)).AsRowPredicate();
  }
  return {"1 = 0", {}};
}

}  // namespace orvane::server
