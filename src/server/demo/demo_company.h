#pragma once

// The demonstration company: people, rights, departments and settings to try everything on. The
// same seed makes the same company.

#include <cstdint>

#include "packet/clock.h"
#include "packet/failure.h"
#include "server/engine/database.h"
#include "server/sessions/passwords.h"

namespace orvane {

struct DemoOptions {
  std::uint32_t seed = 1;
  PasswordCost passwordCost;
};

/// Fills a migrated database that holds nothing yet; refused when it already has users.
Answer<Done> MakeDemoCompany(Database& database, const Clock& clock, const DemoOptions& options);

}  // namespace orvane
