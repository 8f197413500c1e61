#pragma once

// The demonstration company, a Bulgarian manufacturer: people, rights, registers, settings and
// documents in every status to try everything on. The same seed makes the same company.

#include <cstdint>
#include <functional>

#include "packet/clock.h"
#include "packet/failure.h"
#include "server/engine/database.h"
#include "server/sessions/passwords.h"

namespace orvane {

struct DemoOptions {
  std::uint32_t seed = 1;
  PasswordCost passwordCost;
  /// Purchase requests, from 6 January 2025 to 4 March 2026, however many there are.
  std::int64_t documents = 3000;
  /// Called after each transaction with the number of requests made so far; may be empty.
  std::function<void(std::int64_t)> progress = nullptr;
};

/// Fills a migrated database that holds nothing yet; refused when it already has users.
Answer<Done> MakeDemoCompany(Database& database, const Clock& clock, const DemoOptions& options);

}  // namespace orvane
