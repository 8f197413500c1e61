#pragma once

// What a server knows of somebody who is logged in. A session is kept in memory between requests
// and compared with the database in the round trip of every request's own work (see Sessions).

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "contract/points.h"
#include "packet/application_server.h"
#include "packet/date.h"

namespace orvane::server {

struct Session {
  std::string ticketHash;
  std::string sessionName;
  std::string machineName;
  std::string login;
  std::string userName;
  std::string userName2;
  std::int32_t userLevel = 0;
  std::int32_t userLanguage = 1;
  /// Grows whenever the user's rights or the user himself change.
  std::int64_t rightsVersion = 0;
  std::vector<PointRights> points;
  /// How many employee records name this login, and the code of the first of them.
  std::int64_t employeeCount = 0;
  std::int64_t firstEmployee = 0;

  bool May(std::int32_t point, Right right) const {
    for (const PointRights& row : points) {
      if (row.point == point) return (row.rights & static_cast<std::int32_t>(right)) != 0;
    }
    return false;
  }
  /// Holds open on deliveries or invoices, and so sees what may be received.
  bool ReadsReceived() const {
    return May(static_cast<std::int32_t>(Point::Deliveries), Right::Open) ||
           May(static_cast<std::int32_t>(Point::SupplierInvoices), Right::Open);
  }
  /// The employee, when there is exactly one.
  std::optional<std::int64_t> Employee() const {
    return employeeCount == 1 ? std::optional(firstEmployee) : std::nullopt;
  }
};

/// The installation's company.
struct Company {
  std::string name;
  TimeZone zone;
  std::vector<std::string> languageNames;
  bool demonstration = false;
};

}  // namespace orvane::server
