#pragma once

// Rows of goods and services in a document: each holds an entry of the supply list, a unit of its
// block, and a quantity counted in smallest units. What a chosen entry brings, how units narrow and
// how quantities read is the same for all documents; the names of the fields are theirs.
//
//   rows_.TakeEntry(serial, FirstLanguage());   // in OnChange of the serial number
//   rows_.TakeMeasure(FirstLanguage());         // in OnChange of the unit

#include <cstddef>
#include <string>
#include <string_view>

#include "data/client_dataset.h"
#include "data/lookup_table.h"
#include "packet/quantity.h"

namespace orvane::host {
class TVosBaseForm;
class TVosDBGrid;
}  // namespace orvane::host

namespace orvane::modules {

/// Fields of a document's rows; those without a choice here are called alike everywhere
/// (Measure, Quantity, RowNumerator, Numerator, OrdinaryFraction, InventoryId, ServiceCode).
struct SupplyRowFields {
  std::string_view name = "Name";
  std::string_view measureName = "MeasureName";
  std::string_view roundQuantity = "RoundQuantity";  ///< decimals
  // Units of the material or service behind the entry.
  std::string_view stockMeasure = "MatStockMeasure";
  std::string_view incomeMeasure = "MatStockIncomeMeasure";
  std::string_view barCodeMeasure = "MatStockBarCodeMeasure";
  std::string_view serviceMeasure = "ServiceMeasure";
  std::string_view noQuantity = {};  ///< text of a quantity that is not there
};

/// The unit in which a row counts.
QuantityUnit UnitOf(const RowReader& row, const SupplyRowFields& fields);
/// Quantities of the rows read in their units, wherever they are shown or printed. `fields` names
/// texts that outlive the rows.
void ShowQuantities(TVosClientDataSet& rows, const SupplyRowFields& fields);

/// The way of choosing from the supply list and the kind of list that a supplier or a contract
/// agreed on; each Null where it agreed on none.
struct SupplyWay {
  Variant choice;
  Variant list;
};
SupplyWay WayOf(const TLookupTable& table, const Variant& key);

class SupplyRows {
 public:
  SupplyRows(TVosClientDataSet& rows, SupplyRowFields fields, TLookupTable& kpl,
             TLookupTable& measures);

  /// An entry was chosen: its name, code, units and decimals go into the row in edit, and the
  /// quantity begins at 0. False when the list does not hold it: nothing changes then.
  bool TakeEntry(const Variant& serial, bool firstLanguage);
  /// Behind TakeEntry, when the units were narrowed to the entry's: its own unit's size.
  void TakeEntryMeasure(bool firstLanguage);
  /// A unit was chosen: its name and size go into the row in edit. Nothing changes while the unit
  /// is not known.
  void TakeMeasure(bool firstLanguage);
  /// Narrows the units to those that make sense for the current row.
  void RefreshMeasure(bool ownUnitsOnly);

  QuantityUnit UnitAt(std::size_t position) const { return UnitOf(rows_.RowAt(position), fields_); }

  /// The grid stands on the quantity of a row that counts in ordinary fractions.
  bool IsAtFraction(const TVosDBGrid& grid) const;
  /// Asks for the quantity of the current row in the units of its block; an answer goes into it.
  void AskQuantity(TVosBaseForm& form, TVosDBGrid& grid);

 private:
  Variant Current(std::string_view field) const { return rows_.FieldByName(field).Value(); }
  void Set(std::string_view field, const Variant& value) { rows_.FieldByName(field).Set(value); }
  Answer<Variant> ReadQuantity(std::string_view text) const;

  TVosClientDataSet& rows_;
  SupplyRowFields fields_;
  TLookupTable& kpl_;
  TLookupTable& measures_;
};

}  // namespace orvane::modules
