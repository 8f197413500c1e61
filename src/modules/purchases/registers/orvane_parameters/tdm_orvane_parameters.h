#pragma once

// Module parameters: one row in memory, read from the host's parameter store and written back
// parameter by parameter, and the lists from which most of them are chosen.

#include <memory>
#include <vector>

#include "contract/module_parameters.h"
#include "data/data_module.h"
#include "data/lookup_table.h"
#include "host/form.h"
#include "kit/lookup_setup.h"

namespace orvane::modules {

/// A list from which one parameter is chosen.
struct ParameterList {
  ParameterList(TVosSQLConnection& connection, std::string_view dataSetName,
                std::initializer_list<FieldDef> fields, std::string_view keyField)
      : dataSet(dataSetName, connection, fields), table(dataSet, keyField) {}

  TVosClientDataSet dataSet;
  TLookupTable table;
};

class TdmOrvaneParameters : public TVosDataModule {
 public:
  explicit TdmOrvaneParameters(TVosDBForm& form);

  /// Reads the store anew into the row (one call); what was typed is dropped.
  void GetParams();
  /// Fetches the lists and the names of the chosen codes.
  void FetchLists();
  /// Posts the row and stores every parameter whose value is not the stored one, each with one
  /// call. When one is not stored the row stays in edit with all that was typed, parameters that
  /// others changed meanwhile are read in, and the failure goes on to the caller.
  void Save();
  /// Back to what the store is known to hold.
  void Cancel();

  /// The list of a parameter; null when it is typed.
  ParameterList* ListOf(parameters::Module number) const;

  TVosSQLConnection sqlcSQL;
  TVosClientDataSet cdsParameters;
  TDataSource dsParameters;

 private:
  TField& FieldOf(const parameters::ModuleParameter& parameter) {
    return cdsParameters[parameter.field];
  }
  /// What the store holds of a parameter: its text, Null for an empty one.
  Variant StoredText(const parameters::ModuleParameter& parameter) const;
  /// The text as the field's value; Null also for a text that is none of the parameter's values.
  Variant ValueOf(const parameters::ModuleParameter& parameter, const Variant& text);
  void Store(const parameters::ModuleParameter& parameter);
  void ReadStore();
  void TakeInStore();

  TVosDBForm& form_;
  std::vector<std::unique_ptr<ParameterList>> lists_;
  /// A parameter as it was read or written last.
  struct Stored {
    Variant text;
    Variant value;
  };
  std::vector<Stored> stored_;  ///< by the order of the parameters
};

}  // namespace orvane::modules
