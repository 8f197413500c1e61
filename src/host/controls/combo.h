#pragma once

// Lookup combos: edit one field of a grid column or inspector item by the rows of a lookup table,
// by code or by name, narrowing while typing.

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "data/lookup_table.h"

namespace orvane::host {

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
  std::string mask;               ///< of the code, where the column or item has none
  /// Class name of the register behind the list; empty when there is none to go to.
  std::string nomenclatureClass;
  /// In place of the register: shows what the current code stands for.
  std::function<void()> OnOpenNomenclature;
  bool readOnly = false;
  /// The cell or item of this combo became the current one of the focused control, and stopped
  /// being it: that is what having the focus means for a combo.
  std::function<void()> OnEnter;
  std::function<void()> OnExit;

  /// Name of the lookup's key field.
  const std::string& GetLookupField() const;
  /// Name column in the form's language; empty when the lookup has none.
  const std::string& NameField() const;
  /// A name may be typed in place of the code.
  bool TakesNames() const { return !NameField().empty(); }
  /// Name of a code among the rows offered or shown that have arrived; empty when it is not there.
  std::string NameOf(const Variant& key) const;

  /// Search dialog on the given field; a chosen row's code goes into the edited field. Nothing
  /// happens when the combo is not in use.
  void DoSearch(std::string_view field, bool partial);
  void SearchByName();
  void SearchByPartName();
  /// Whether there is something behind the list to go to: a register whose screen exists and that
  /// the user may open, or what the current code stands for.
  bool HasNomenclature() const;
  /// Opens the register behind the list. What is changed there is fetched again, and the code
  /// chosen there (TVosBaseForm::chosenCode) goes into the edited field.
  void OpenNomenclature();

  // --- while the editor of the field is open ----------------------------------------------------
  /// The text in the editor changed: narrows the list; an empty text closes it.
  void TextChanged(std::string_view text);
  /// Opens the list of all entries with `current` highlighted.
  void OpenWholeList(const Variant& current);
  /// Moves the highlight; at the end of what was listed more is fetched.
  void MoveInList(int by);
  void CloseList();
  const ComboList& List() const { return list_; }
  /// Grows with every change of the list.
  std::uint64_t ListVersion() const { return listVersion_; }
  /// "1001  Механичен цех" of a list entry, in the form's language.
  std::string ListText(std::size_t index) const;
  /// The code meant by what was typed: the highlighted entry, else the exact code, else the only
  /// name that fits. Failure: a Bulgarian sentence when nothing or too much fits.
  Answer<Variant> Resolve(std::string_view text);

 private:
  /// How the list was made, to make a longer one.
  struct ListSource {
    bool whole = false;
    std::string text;
  };

  void BuildList(const ListSource& source, std::size_t limit);
  void AddToList(std::string_view field, SearchMatch match, std::string_view text,
                 std::size_t limit);
  void SettleRows();
  Control* Host() const;
  std::optional<Variant> FindCode(std::string_view text);
  Answer<Variant> FindByName(std::string_view text);
  std::optional<Variant> KeyAt(std::size_t position) const;
  Failure NotListed(std::string_view text) const;
  std::string ListTitle() const;

  TVosBaseForm& form_;
  std::string name_;
  TLookupTable& table_;
  ComboList list_;
  ListSource source_;
  std::vector<Variant> keys_;  ///< of the list's rows: positions move when more rows arrive
  std::uint64_t listVersion_ = 1;
};

}  // namespace orvane::host
