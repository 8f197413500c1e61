#pragma once

// What the parts of documents share when an answer of the server is taken in.

#include <initializer_list>

#include "data/client_dataset.h"
#include "data/lookup_table.h"
#include "packet/variant.h"

namespace orvane {

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

}  // namespace orvane
