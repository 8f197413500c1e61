#pragma once

// What every register screen does alike: a ribbon, an editable grid on the register's dataset, and
// the actions delete, print, cancel and the three searches of the focused lookup combo.
//
//   register_.AddTo();                               // actions, ribbon, layout
//   std::span<const LiveRow> LiveRows() const override { return kRegisterLive; }
//   void OnChangeAccess() override { register_.ChangeAccess(); }
//
// A register of master and detail gives two grids: what the actions act on is the one in use.

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "host/action.h"
#include "host/controls/grid.h"
#include "host/report.h"

namespace orvane::host {
class TVosBaseForm;
class TVosDataInspector;
}  // namespace orvane::host

namespace orvane::kit {

/// The combo in use has a search: it offers the rows of a register, not a nomenclature's few.
bool AtSearchableCombo(const TVosBaseForm& form);
/// The combo in use has a register behind its list.
bool AtComboOfRegister(const TVosBaseForm& form);

/// When the actions of a register are live. In insert the state rule wins: delete and print wait
/// until the row is posted or cancelled.
inline constexpr LiveRow kRegisterLive[] = {
    // action               focus      state              needs
    {"acDelete", kAnywhere, InState::NotInsert, paDelete},
    {"acPrint", kAnywhere, InState::NotInsert, {}},
    {"acCancel", kAnywhere, InState::Insert, {}},
    {"acCancel", kAnywhere, InState::NotInsert, paEdit},
    {"acSearchByCode", kAtCombo, InState::Any, {}, &AtSearchableCombo},
    {"acSearchByName", kAtCombo, InState::Any, {}, &AtSearchableCombo},
    {"acSearchByPartName", kAtCombo, InState::Any, {}, &AtSearchableCombo},
    {"acNomenclature", kAtCombo, InState::Any, {}, &AtComboOfRegister},
    {"acExit", kAnywhere, InState::Any, {}},
};

/// A live table with a row of the register's own behind it.
template <std::size_t N>
constexpr std::array<LiveRow, N + 1> WithRow(const LiveRow (&rows)[N], const LiveRow& own) {
  std::array<LiveRow, N + 1> all{};
  std::copy(std::begin(rows), std::end(rows), all.begin());
  all[N] = own;
  return all;
}

/// A register's report in the generator: number and the variants for one and for two languages.
struct RegisterReport {
  int number = 0;  ///< 0: the register is not printed
  int variantOneLanguage = 0;
  int variantTwoLanguages = 0;
};

/// Group of the purchases module's registers in the report generator.
inline constexpr int kRegisterReportGroup = 11;

/// Where the actions of a register differ from the plain one's.
struct RegisterActions {
  /// Name of the search by code; empty: nothing here is looked up, there are no searches.
  std::string_view searchByCode = "acSearchByCode";
  std::string_view nomenclature = {};        ///< caption of acNomenclature; empty: it has none
  std::string_view operations = "Операции";  ///< caption of the ribbon's first group
  /// Names of the others.
  std::string_view searchByName = "acSearchByName";
  std::string_view searchByPartName = "acSearchByPartName";
  std::string_view openNomenclature = "acNomenclature";
};

/// The searches of the focused combo and, where it has a caption, the way to the register behind
/// its list. Answers the names in the order of the ribbon.
std::vector<std::string> AddLookupActions(TVosBaseForm& form, const RegisterActions& actions = {});

/// The common part of one register screen; lives in the form beside its grids.
class RegisterScreen {
 public:
  RegisterScreen(TVosBaseForm& form, TVosDBGrid& grid, RegisterReport report,
                 RegisterActions actions = {})
      : RegisterScreen(form, {&grid}, report, actions) {}
  /// Grids from the top down; the first one is the register's main grid.
  RegisterScreen(TVosBaseForm& form, std::initializer_list<TVosDBGrid*> grids,
                 RegisterReport report, RegisterActions actions = {})
      : form_(form), grids_(grids), report_(report), actions_(actions) {}

  /// Adds the actions, the ribbon with its three groups, and the layout (ribbon over grids).
  void AddTo();
  /// An action of the register's own, with its place in the ribbon's first group.
  void AddOperation(TAction action);
  /// Before the question whether to delete the row of the grid in use; may refuse.
  std::function<void()> BeforeDelete;

  /// The grid that has the focus, else the main one.
  TVosDBGrid& GridInUse() const;
  /// Run on every change of a grid's dataset's state: form status and what the grids allow.
  void StateChange();
  /// Run when the host sets the screen's rights.
  void ChangeAccess();

 private:
  void Delete();
  void Print();
  void Choose();

  TVosBaseForm& form_;
  std::vector<TVosDBGrid*> grids_;
  RegisterReport report_;
  RegisterActions actions_;
};

/// How a title names its language: "Име (Български)" or "Описание <Български>".
enum class LanguageMark : std::uint8_t { Parentheses, Angles };

/// Titles of a name column in two languages: "Име (Български)", "Име (English)".
std::string LanguageTitle(const TVosBaseForm& form, std::string_view label, int language,
                          LanguageMark mark = LanguageMark::Parentheses);

/// A name column and the language whose name its title shows.
struct LanguageColumn {
  std::string_view field;
  int language = 1;
};

/// How a grid's columns follow the installation's languages.
struct LanguageColumns {
  std::vector<std::string_view> firstOnly;   ///< dropped where there are two languages
  std::vector<std::string_view> secondOnly;  ///< dropped where there is one
  std::vector<LanguageColumn> titled;        ///< "Име (<language>)" where there are two
};

/// Drops the columns that the installation has no use for, and sets the display label and title of
/// each titled one.
void ChooseLanguageColumns(const TVosBaseForm& form, TVosDBGrid& grid,
                           const LanguageColumns& columns);

/// Items of texts that are kept in two languages, the second one in the field of the same name
/// followed by 2: captioned with the language's name, or only the first one shown where there is
/// one language.
void ChooseLanguageItems(const TVosBaseForm& form, TVosDataInspector& inspector,
                         std::initializer_list<std::string_view> fields,
                         LanguageMark mark = LanguageMark::Parentheses);
/// The same for columns of such texts.
void ChooseLanguageTexts(const TVosBaseForm& form, TVosDBGrid& grid,
                         std::initializer_list<std::string_view> fields,
                         LanguageMark mark = LanguageMark::Parentheses);

}  // namespace orvane::kit
