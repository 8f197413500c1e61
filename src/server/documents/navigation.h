#pragma once

// Finding the document that a load asks for: by key, at an end, or so many steps from where the
// asker stands. One statement finds it, keeps its key for the statements behind it in the same
// round trip (orvane_keep), and tells whether anything lies before and behind.

#include <cstddef>
#include <optional>

#include "contract/workflow.h"
#include "server/documents/visibility.h"
#include "server/engine/database.h"

namespace orvane::server {

/// Where a load goes. Steps count for Nav::Step only.
struct Destination {
  Nav nav = Nav::ByKey;
  int step = 0;
  std::int64_t id = 0;
  /// Asks for a version of `id`; without it, moves go between documents (their current versions).
  std::optional<std::int64_t> version;
};

/// Empty when the number is none of the moves.
std::optional<Nav> NavOf(const Variant& number);

/// Where the question of a load holds its place.
struct PlaceAt {
  std::size_t nav = 0;
  std::size_t step = 0;
  std::size_t id = 0;
  std::optional<std::size_t> version = {};  ///< of documents with versions; 0 asks for none
};

/// The place a load asks for. BadRequest when the move is none, or a number is no number; Null is
/// 0.
Answer<Destination> ReadPlace(const VariantArray& ask, const PlaceAt& at);

/// Keeps "DocumentId" and "DocumentVersion" (both null when nothing may be seen) and answers them
/// with IsFirst and IsLast. A step beyond an end finds the end.
Statement FindDocument(const SeenTable& table, const AskerVisibility& visibility,
                       const Destination& place, Engine engine);

/// What the statement's row says: a sole document is the last one.
LoadCode LoadCodeOf(const DataPacket& found);

/// For the statements behind: the key that was kept.
inline constexpr std::string_view kKeptId = "orvane_kept('DocumentId')";
inline constexpr std::string_view kKeptVersion = "orvane_kept('DocumentVersion')";

}  // namespace orvane::server
