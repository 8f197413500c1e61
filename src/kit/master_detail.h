#pragma once

// Rows that belong to the current row of another dataset: fetched anew whenever that one moves.
//
//   MasterDetail periods(form, cdsStructureDeputies, cdsStructDepDates,
//                        {.masterKey = "IdNumber", .param = "IdNumber", .detailKey =
//                        "StructDepId"});

#include <functional>
#include <string_view>

#include "data/client_dataset.h"

namespace orvane::host {
class TVosBaseForm;
}  // namespace orvane::host

namespace orvane::kit {

struct MasterDetailFields {
  std::string_view masterKey;  ///< of the master's row
  std::string_view param;      ///< of the details' provider
  std::string_view detailKey;  ///< field of a detail that names its master
  std::string_view noMaster;   ///< refusal of a detail while there is no saved row to belong to
};

class MasterDetail {
 public:
  /// Binds the master's BeforeScroll (details that wait for the server go first) and AfterScroll,
  /// and the detail's BeforeInsert. Both datasets outlive it.
  MasterDetail(TVosBaseForm& form, TVosClientDataSet& master, TVosClientDataSet& detail,
               const MasterDetailFields& fields);
  MasterDetail(const MasterDetail&) = delete;
  MasterDetail& operator=(const MasterDetail&) = delete;

  /// The details that are shown are out of date: the master's next move fetches them anew, also
  /// when it comes to the same row. For masters that are about to be fetched themselves.
  void MakeStale() { shown_ = Variant(); }
  /// For BeforePost of a detail: a new one belongs to the master's current row.
  void Adopt();

  /// The master's cursor has moved, before the details follow.
  std::function<void()> OnMasterMoved;

 private:
  void Scrolled();
  /// Fetches the details of the master's current row (one call); without a row, or for one that is
  /// being entered, there are none and nothing is asked.
  void Refetch();
  void Read();
  bool HasMaster() const;

  TVosBaseForm& form_;
  TVosClientDataSet& master_;
  TVosClientDataSet& detail_;
  MasterDetailFields fields_;
  Variant shown_;  ///< key of the master whose details are shown; Null: none
};

}  // namespace orvane::kit
