#pragma once

#include "server/documents/document.h"

namespace orvane::server {

/// Supplies contracts. The parts are the rows behind its codes: supplier and plan line.
const Document& SuppliesContract();

/// "GetRec": loads a contract by identifier or by a move, with the rows behind its codes, in one
/// snapshot. Names come in both languages. Positions in contract/supplies_contract.h.
Answer<VariantArray> GetSuppliesContract(Work& work, const VariantArray& ask);

}  // namespace orvane::server
