#pragma once

// What the parameter store says about documents. Texts are read with comma or point; an empty or
// unreadable one has no value.

#include <cstdint>
#include <optional>

#include "packet/decimal.h"
#include "server/engine/database.h"

namespace orvane::server {

struct DocumentSettings {
  int amountDecimals = 2;  ///< also while the parameter is empty
  std::optional<std::int64_t> centralBank;
  std::optional<std::int64_t> nationalCurrency;
  std::optional<std::int64_t> carKind;    ///< production
  std::optional<std::int64_t> bulkKind;   ///< ОСМ
  std::optional<std::int64_t> waresKind;  ///< goods
  std::optional<std::int64_t> pricedServiceKind;
  std::optional<std::int64_t> serviceEmployee;
  Decimal tolerance;          ///< 0 while the parameter is empty
  bool ownUnitsOnly = false;  ///< a row of a material uses only the units that it names
  int priceAlgorithm = 1;     ///< also while the parameter is empty

  /// ОСМ, goods and priced services take their amounts from prices.
  bool IsPriced(std::int64_t kindSupply) const {
    return kindSupply == bulkKind || kindSupply == waresKind || kindSupply == pricedServiceKind;
  }
  /// Kinds that are bought under a contract, and whose rows may name a supplier order.
  bool IsContracted(std::int64_t kindSupply) const {
    return kindSupply == carKind || kindSupply == bulkKind || kindSupply == waresKind;
  }
  /// ОСМ and goods show no amounts on their rows.
  bool HasAmountColumn(std::int64_t kindSupply) const {
    return kindSupply != bulkKind && kindSupply != waresKind;
  }
};

Statement SelectSettings();
DocumentSettings ReadSettings(const DataPacket& rows);

}  // namespace orvane::server
