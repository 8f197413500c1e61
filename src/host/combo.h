#pragma once

// Lookup combos: edit one field of a grid column or inspector item by the rows of a lookup table,
// by code or by name, narrowing while typing.

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "data/lookup_table.h"

namespace orvane {

class Control;
class TVosBaseForm;

enum class LookupMode : unsigned char { lmDefault, lmCode, lmNomenclature };

/// The list under an open combo: the rows that fit what was typed.
struct ComboList {
  bool open = false;
  std::vector<std::size_t> rows;  ///< positions in the lookup's dataset
  int current = -1;               ///< highlighted entry, -1 none
  bool more = false;              ///< the server has more that fit
};

class TVosMTCombo {
 public:
  TVosMTCombo(TVosBaseForm& form, std::string_view name, TLookupTable& table);

  const std::string& Name() const { return name_; }
  TLookupTable& Table() const { return table_; }

  LookupMode mode = LookupMode::lmCode;
  std::string lookupNameField;    ///< name column, first language
  std::string lookupTrNameField;  ///< name column, second language
  std::string dlgCaption;         ///< title of the search dialog
  std::string mask;
  /// Class name of the register behind the list; empty when there is none to go to.
  std::string nomenclatureClass;
  bool readOnly = false;
  std::function<void()> OnEnter;
  std::function<void()> OnExit;

  /// Name of the lookup's key field.
  const std::string& GetLookupField() const;
  /// Search dialog on the given field; a chosen row's code goes into the edited field.
  void DoSearch(std::string_view field, bool partial);
  void SearchByName();
  void SearchByPartName();
  /// Opens the register behind the list and takes the code chosen there.
  void OpenNomenclature();

  // --- while the editor of the field is open ----------------------------------------------------
  /// The text in the editor changed: narrows the list.
  void TextChanged(std::string_view text);
  void MoveInList(int by);
  void CloseList();
  const ComboList& List() const { return list_; }
  /// "1001  Механичен цех" of a list entry, in the form's language.
  std::string ListText(std::size_t index) const;
  /// The code meant by what was typed: the highlighted entry, else the exact code, else the only
  /// name that fits. Failure: a Bulgarian sentence when nothing or too much fits.
  Answer<Variant> Resolve(std::string_view text);

 private:
  TVosBaseForm& form_;
  std::string name_;
  TLookupTable& table_;
  ComboList list_;
};

}  // namespace orvane
