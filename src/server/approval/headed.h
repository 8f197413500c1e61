#pragma once

// Which cost centres somebody answers for today: as head of the cost centre, of its section or its
// department by the structure, or as deputy of one of these.

#include <string>

namespace orvane::server {

/// Subselect of the cost centres of :Employee and :Login on :Today; without an employee only those
/// of a department's head are asked for, and only :Login is named.
std::string HeadedCostCenters(bool employed);

/// The same with the kind of head (ApproverKind) before each cost centre.
std::string HeadedByKind();

}  // namespace orvane::server
