#pragma once

#include "packet/failure.h"
#include "packet/variant.h"
#include "server/providers/work.h"

namespace orvane::server {

/// What a request says of its asker beside the ticket. Missing parts are Null.
struct Claims {
  Variant login;
  /// Employee code; Null and 0 claim none.
  Variant employee;
  /// True: the asker must have an employee record, his level being 3 or more.
  Variant needsEmployee;
};

/// A claim that says less than the session holds is accepted; one that says more or other is
/// refused as NoRight, which the server logs and counts.
Answer<Done> CheckClaims(const Work& work, const Claims& claims);

/// Users from this level on see only what concerns them and must have an employee record.
inline constexpr int kFirstBoundLevel = 3;

/// The one level that may complete and edit whatever order.
inline bool HasFullAccess(const Work& work) {
  return work.Who().userLevel == 0;
}

}  // namespace orvane::server
