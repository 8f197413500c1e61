#pragma once

// A document is one value: its head, its parts, how its key orders it, who sees it and how it
// moves. Loads, conflict rows, history and checks read it.

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "contract/field.h"
#include "contract/workflow.h"
#include "server/documents/navigation.h"
#include "server/documents/visibility.h"
#include "server/providers/work.h"

namespace orvane::server {

/// Rows that travel with a load. The select answers the provider's fields in their order for the
/// key that was found ({id}, {version}); {Name}, {UserName} and the like in braces become the
/// column of the asked language. :Today is the company's day.
struct DocumentPart {
  ProviderDef def;
  std::string_view select;
};

struct Document {
  DocumentPart head;
  std::span<const DocumentPart> parts;
  SeenTable seen;
  std::span<const Move> moves;
};

enum class Language : std::uint8_t { First = 1, Second = 2 };

/// "{p.Name}" becomes "p.Name", or in the second language "coalesce(p.Name2, p.Name)".
std::string InLanguage(std::string_view text, Language language);
/// The same by the parameter :FirstLanguage, for providers that are read by themselves.
std::string InAskedLanguage(std::string_view text);

/// One part's statement behind FindDocument.
Statement PartStatement(const DocumentPart& part, Language language, Date today);

struct LoadedDocument {
  LoadCode code = LoadCode::None;
  std::vector<DataPacket> packets;  ///< the head and the parts in their order; empty when not found
  std::vector<DataPacket> further;  ///< of the further statements
};

/// Finds and reads a document in one snapshot and one round trip. `further` run behind the parts
/// and may name the kept key.
Answer<LoadedDocument> LoadDocument(Work& work, const Document& document, const Destination& place,
                                    Language language, std::span<const Statement> further);

}  // namespace orvane::server
