#pragma once

// How the documents differ in what they share: how each is loaded, applied, numbered and decided.
// One row a document; the pieces of document screens take these as parameters, and the page of
// documents is printed from the same rows.

#include <cstdint>
#include <span>
#include <string_view>

#include "contract/field.h"

namespace orvane {

/// How the answer to a load tells the asking user's part in the approval.
enum class RolesCome : std::uint8_t { Nowhere, AsRows, AsElements };

/// Where the identifier of a new document comes from.
enum class IdentifierComes : std::uint8_t { AsOwnerData, InAppliedRow, FromScreen };

/// What a document's screen does with a head that the server refused.
enum class HeadRefusal : std::uint8_t { HostDecides, AbortsAndTells };

struct DocumentShape {
  std::string_view name;  ///< Bulgarian caption
  std::string_view serverClass;
  std::string_view loadMethod;
  std::int8_t askSize = 0;            ///< positions of the question
  std::int8_t navPosition = 0;        ///< of the move; step and key follow it
  std::int8_t languagePosition = -1;  ///< -1: the load does not ask for a language
  std::int8_t firstPacket = 0;        ///< position of the head's packet in the answer
  std::int8_t packets = 0;            ///< packets in the answer, the head's first
  RolesCome roles = RolesCome::Nowhere;
  std::int8_t headMaxErrors = 0;
  bool headRepeats = true;
  std::int8_t rowsMaxErrors = -1;
  bool rowsRepeat = true;
  std::string_view headOwnerData;  ///< in words; empty: none
  IdentifierComes identifier = IdentifierComes::AsOwnerData;
  HeadRefusal refusal = HeadRefusal::HostDecides;
  std::string_view decisionStamp;  ///< field of an approval row; empty: not approved by levels
};

/// In the order in which purchases meet them.
std::span<const DocumentShape> DocumentShapes();

/// Providers that write a document's tables, all documents, heads before their parts.
std::span<const ProviderDef> DocumentProviders();

}  // namespace orvane
