#pragma once

// What happens around the writing of a document's rows of goods and services: codes behind an
// entry, sizes of units and amounts are the server's, and the head's sums follow.

#include <any>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "server/documents/document_pricing.h"
#include "server/documents/entry_terms.h"
#include "server/providers/write_rules.h"

namespace orvane::server {

/// Makes "<what> in (…)": the values of a column in the changes and in the rows they change.
class WantedValues {
 public:
  WantedValues(const StoredDocument& document, DocumentKey key,
               std::span<const PreparedChange> changes);
  std::string Of(std::string_view column, std::string_view what);
  const NamedValues& Params() const { return params_; }

 private:
  std::span<const PreparedChange> changes_;
  NamedValues params_;
  std::string ofChanged_;
};

/// Facts behind the rows of a batch, read in one trip behind the head's lock.
struct RowFacts {
  StoredHead head;
  DocumentSettings settings;
  std::vector<DocumentRow> rows;  ///< as they are
  std::map<std::int64_t, EntryFacts> entries;
  std::map<std::int64_t, EntryTerms> terms;         ///< of the entries
  std::map<std::int64_t, std::int64_t> numerators;  ///< of units, by code
  std::span<const DataPacket> more;                 ///< of RowSteps::more
};

/// How the rows of a document differ from those of another.
struct RowSteps {
  const StoredDocument& document;
  /// Further statements of the same trip; null pointer when there are none.
  std::vector<Statement> (*more)(const Work& work, DocumentKey key, WantedValues& wanted);
  /// Why the rows as the changes leave them may not stand.
  std::optional<Failure> (*refuses)(const RowFacts& facts, const std::vector<DocumentRow>& rows,
                                    std::span<const PreparedChange> changes);
};

Answer<Done, Setback> BeforeDocumentRows(const RowSteps& steps, WriteContext& context,
                                         std::span<PreparedChange> changes);
/// The sums of the head.
Answer<Done, Setback> AfterDocumentRows(const RowSteps& steps, WriteContext& context);

/// The rows that the changes insert or update, as they leave them.
std::vector<const DocumentRow*> ChangedRows(const std::vector<DocumentRow>& rows,
                                            std::span<const PreparedChange> changes);
/// "Искане за покупка 17, версия 2, ред 3: ".
std::string RowName(const StoredDocument& document, DocumentKey key, const DocumentRow& row);

}  // namespace orvane::server
