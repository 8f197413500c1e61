#pragma once

// The demonstration company, a Bulgarian manufacturer: people, rights, registers, settings and
// documents in every status to try everything on. The same seed makes the same company.

#include <cstdint>
#include <functional>

#include "packet/clock.h"
#include "packet/failure.h"
#include "server/demo/demo_partners.h"
#include "server/engine/database.h"
#include "server/sessions/passwords.h"

namespace orvane::server {

struct DemoOptions {
  std::uint32_t seed = 1;
  PasswordCost passwordCost;
  /// Purchase requests, from 6 January 2025 to 4 March 2026, however many there are. Without any
  /// there are no contracts and orders either.
  std::int64_t documents = 3000;
  /// Names in Bulgarian and English, or in Bulgarian alone.
  bool twoLanguages = true;
  /// kEuro, or kLev for a company from before the euro; prices and rates follow.
  std::int16_t nationalCurrency = kEuro;
  /// Whether the settings of the purchases module are filled in.
  bool settings = true;
  /// A user (stoyanova) has two employee records, so that the module does not know who he is.
  bool secondRecord = false;
  /// Called after each transaction with the number of requests made so far; may be empty.
  std::function<void(std::int64_t)> progress = nullptr;
};

/// Fills a migrated database that holds nothing yet; refused when it already has users.
Answer<Done> MakeDemoCompany(Database& database, const Clock& clock, const DemoOptions& options);

}  // namespace orvane::server
