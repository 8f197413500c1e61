#pragma once

// In which units a supply-list entry may be counted on a document's row, and whether its material
// is bought on the document's day.

#include <map>
#include <set>
#include <string>

#include "server/documents/document_pricing.h"

namespace orvane::server {

struct EntryTerms {
  std::int64_t own = 0;          ///< unit of the list
  std::set<std::int64_t> named;  ///< units that its material names, with its own
  bool isMaterial = false;
  std::int64_t service = 0;
  bool bought = true;  ///< its material, on the day asked

  bool MayBeCountedIn(std::int64_t unit, bool ownOnly) const;
};

/// `wanted` is a condition on b.SerialNumber and `day` an expression; both name `params`.
Statement SelectEntryTerms(const std::string& wanted, const std::string& day,
                           const NamedValues& params);
/// By serial number.
std::map<std::int64_t, EntryTerms> ReadEntryTerms(const DataPacket& packet);

}  // namespace orvane::server
