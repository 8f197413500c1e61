#pragma once

// What every register screen does alike: a ribbon, an editable grid on the register's dataset, and
// the actions delete, print, cancel and the three searches of the focused lookup combo.
//
//   register_.AddTo();                               // actions, ribbon, layout
//   std::span<const LiveRow> LiveRows() const override { return kRegisterLive; }
//   void OnChangeAccess() override { register_.ChangeAccess(); }

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "host/action.h"
#include "host/grid.h"
#include "host/report.h"

namespace orvane {

class TVosBaseForm;
class TVosMTCombo;

/// When the actions of a register are live. In insert the state rule wins: delete and print wait
/// until the row is posted or cancelled.
inline constexpr LiveRow kRegisterLive[] = {
    // action               focus      state              needs
    {"acDelete", kAnywhere, InState::NotInsert, paDelete},
    {"acPrint", kAnywhere, InState::NotInsert, {}},
    {"acCancel", kAnywhere, InState::Insert, {}},
    {"acCancel", kAnywhere, InState::NotInsert, paEdit},
    {"acSearchByCode", kAtCombo, InState::Any, {}},
    {"acSearchByName", kAtCombo, InState::Any, {}},
    {"acSearchByPartName", kAtCombo, InState::Any, {}},
    {"acExit", kAnywhere, InState::Any, {}},
};

/// A register's report in the generator: number and the variants for one and for two languages.
struct RegisterReport {
  int number = 0;
  int variantOneLanguage = 0;
  int variantTwoLanguages = 0;
};

/// Group of the purchases module's registers in the report generator.
inline constexpr int kRegisterReportGroup = 11;

/// The common part of one register screen; lives in the form beside its grid.
class RegisterScreen {
 public:
  RegisterScreen(TVosBaseForm& form, TVosDBGrid& grid, RegisterReport report)
      : form_(form), grid_(grid), report_(report) {}

  /// Adds the actions, the ribbon with its three groups, and the layout (ribbon over grid).
  void AddTo();

  /// Run on every change of the main dataset's state: form status and what the grid allows.
  void StateChange();
  /// Run when the host sets the screen's rights.
  void ChangeAccess();

 private:
  void Delete();
  void Print();
  /// The combo that has the focus; Abort when none has.
  TVosMTCombo& FocusedCombo() const;

  TVosBaseForm& form_;
  TVosDBGrid& grid_;
  RegisterReport report_;
};

/// Titles of a name column in two languages: "Име (Български)", "Име (English)".
std::string LanguageTitle(const TVosBaseForm& form, std::string_view label, int language);

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

}  // namespace orvane
