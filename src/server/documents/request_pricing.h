#pragma once

// What the rows of a request and the request itself amount to.

#include <optional>
#include <span>

#include "server/documents/entries.h"
#include "server/documents/request_rows.h"

namespace orvane {

/// The entries of the request with the key (:Id, :Version) among `params`, by what its head says.
EntriesAsked EntriesOfRequest(const std::string& wanted, const NamedValues& params);

/// What a row amounts to in the request's currency: by price for the kinds that have one (0 while
/// the entry has no price), otherwise the typed amount, rounded. Empty when it does not fit.
std::optional<Decimal> RowAmount(std::int64_t kindSupply, Decimal rate, const RequestRow& row,
                                 const EntryFacts& entry, const DocumentSettings& settings);

struct RequestSums {
  Decimal currency;
  Decimal national;
};
/// The sum of the rows, and that sum in national currency. Empty when it does not fit.
std::optional<RequestSums> SumsOf(std::span<const RequestRow> rows, Decimal rate,
                                  const DocumentSettings& settings);

}  // namespace orvane
