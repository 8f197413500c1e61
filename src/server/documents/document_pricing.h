#pragma once

// Rows of documents as plain values, and what they and their document amount to.

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "packet/delta.h"
#include "server/documents/document_head.h"
#include "server/documents/entries.h"

namespace orvane::server {

struct DocumentRow {
  int number = 0;
  std::int64_t serial = 0;
  std::int64_t measure = 0;
  std::optional<std::int64_t> order;  ///< the supplier order that it is raised against
  double quantity = 0;
  std::int64_t numerator = 1;
  Decimal amount;
  NamedValues values;  ///< every stored column
};

DocumentRow DocumentRowOf(NamedValues values);
std::vector<DocumentRow> ReadDocumentRows(const DataPacket& packet);
/// The rows as a change leaves them.
void ApplyChange(std::vector<DocumentRow>& rows, const Change& change);

/// The entries of the document with the key (:Id, :Version) among `params`, by what its head says.
EntriesAsked EntriesOf(const StoredDocument& document, const std::string& wanted,
                       const NamedValues& params);
/// Condition on {serial}: the entries of the rows of the document :Id, :Version.
std::string EntriesNamed(const StoredDocument& document);

/// What a row amounts to in the document's currency: by price for the kinds that have one (0 while
/// the entry has no price), otherwise the typed amount, rounded. Empty when it does not fit.
std::optional<Decimal> RowAmount(std::int64_t kindSupply, Decimal rate, const DocumentRow& row,
                                 const EntryFacts& entry, const DocumentSettings& settings);

struct DocumentSums {
  Decimal currency;
  Decimal national;
};
/// The sum of the rows, and that sum in national currency. Empty when it does not fit.
std::optional<DocumentSums> SumsOf(std::span<const DocumentRow> rows, Decimal rate,
                                   const DocumentSettings& settings);

/// "„20 Ламарина“", the bare number for an entry that is not known.
std::string EntryName(std::int64_t serial, const std::map<std::int64_t, EntryFacts>& entries);

}  // namespace orvane::server
