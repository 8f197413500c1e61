#pragma once

// What the parts of documents share when an answer of the server is taken in.

#include <initializer_list>
#include <string_view>

#include "contract/workflow.h"
#include "data/client_dataset.h"
#include "data/lookup_table.h"
#include "packet/variant.h"

namespace orvane::kit {

/// Asks a method of a document's own class that only reads: `data` gives way to the answer. The
/// connection is open while the call runs.
void CallOperations(TVosSQLConnection& connection, std::string_view method, VariantArray& data);

/// Whether and where a load found its document.
struct LoadTold {
  LoadCode code = LoadCode::None;
  bool found = false;
};
/// The elements of the answer to a load that tell it. A code that is none of the known ones is a
/// document in between; an empty answer found nothing.
LoadTold ReadLoadTold(const VariantArray& answer, std::size_t codeAt = 0, std::size_t foundAt = 1);

/// The packet at a position of a method's answer. Throws ServerError (Internal) when the answer has
/// none there: client and server then disagree about the method.
const DataPacket& PacketAt(const VariantArray& answer, std::size_t position);

/// Loads the packets from `first` on into the datasets, in order. All are looked at before the
/// first is loaded, so that a broken answer leaves the document that is shown.
void LoadPackets(const VariantArray& answer, std::size_t first,
                 std::initializer_list<TVosClientDataSet*> dataSets);

/// Where the row behind one of the head's codes stands in the answer.
struct ShownRowAt {
  std::size_t position;
  TLookupTable& table;
};

/// Gives each lookup the row behind the document's own code, so that its name shows at once.
void TakeShownRows(const VariantArray& answer, std::initializer_list<ShownRowAt> rows);

/// A code of the head whose names the head itself brings, in <code>Name and <code>Name2; a head
/// with one name brings it in the language it was asked for.
struct ShownName {
  std::string_view code;
  TLookupTable& table;
};
/// Gives each lookup the row that the current row of the head makes of its code, so that its name
/// shows in both languages.
void TakeShownNames(TVosClientDataSet& head, std::initializer_list<ShownName> names);

}  // namespace orvane::kit
