#pragma once

// Who decides at a level: the head of the document's cost centre, or of its section or department
// by the structure register, and whoever stands in for him today.

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "contract/workflow.h"
#include "packet/date.h"
#include "server/engine/database.h"

namespace orvane::server {

struct Approver {
  std::int64_t employee = 0;
  std::string name;
  bool deputy = false;
  std::string login = {};
};

/// Whose the document is: by login its creator's, by employee its requester's.
struct DocumentOwners {
  std::string createdFrom;
  std::int64_t notifier = 0;

  bool Has(const Approver& approver) const {
    return approver.employee == notifier || approver.login == createdFrom;
  }
};

/// The approvers of one kind for one cost centre, or what is missing.
struct FoundApprovers {
  std::vector<Approver> approvers;
  /// The head, also when he cannot decide himself: the record of a deputy's decision names him.
  std::optional<std::int64_t> head;
  /// Says which register misses what; empty when somebody was found.
  std::string gap;

  bool Has(std::int64_t employee) const;
  /// Somebody else than these is among them.
  bool HasOther(const DocumentOwners& owners) const;
  /// "Христо Колев, Лиляна Добрева", without those who may not decide on their own document. A name
  /// that does not fit into `most` characters is never cut: "…" stands for it and those behind it.
  std::string Names(const DocumentOwners* mayNotDecide = nullptr,
                    std::size_t most = std::string::npos) const;
};

/// Of the three kinds of approvers.
struct ApproversOfCostCenter {
  std::array<FoundApprovers, 3> kinds;

  const FoundApprovers& Of(ApproverKind kind) const {
    return kinds[static_cast<std::size_t>(kind) - 1];
  }
};

inline constexpr std::size_t kApproverStatements = 2;
/// Read the registers for a cost centre, given as an SQL expression ("?1" with its value in
/// `params`, or a subselect without parameters). `name` is what an employee (alias e) is called.
std::vector<Statement> SelectApprovers(std::string_view costCenter, const NamedValues& params,
                                       Date today, std::string_view name = "e.Name");
/// From the two answers, in their order.
ApproversOfCostCenter ReadApprovers(const DataPacket& places, const DataPacket& people);

}  // namespace orvane::server
