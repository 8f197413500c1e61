#pragma once

// What is wrong with the declarations of a screen, found by machine and numbered:
//
//   S001 a column or item names no field           S007 an action has no place on the screen
//   S002 a field is in no provider of the server    S008 something has no caption or label
//   S003 a list's name or search is no field of it  S009 two live actions share a key
//   S004 a list takes codes without a mask          S010 an event has no method
//   S005 a list's statement answers no such field   S011 a server class is not for this point
//   S006 a bar or ribbon names no action            S012 a text is searched without a stored fold

#include <set>
#include <string>
#include <vector>

#include "host/controls/grid.h"
#include "host/controls/inspector.h"
#include "host/form.h"
#include "host/search_dialog.h"
#include "server/providers/server_class.h"

namespace orvane::modules {

/// Columns of folds that databases of both engines have: "partners.foldname".
std::set<std::string> StoredFolds();

class ScreenFindings {
 public:
  ScreenFindings(TVosBaseForm& form, const std::vector<server::ServerClass>& classes,
                 const std::set<std::string>& folds);

  /// Searches by each field, and in its order, as the dialog does. Those of the lists are looked at
  /// with them; a screen may have further ones.
  void CheckSearch(const std::string& name, const SearchSpec& spec);

  /// "S001 TfDepartment.gDepartment: 'Chef' names no field of cdsDepartment", in the order found.
  const std::vector<std::string>& All() const { return all_; }

 private:
  void Add(std::string_view number, const std::string& where, const std::string& what);
  void CheckGrid(TVosDBGrid& grid);
  void CheckInspector(TVosDataInspector& inspector);
  void CheckField(const Control& control, TVosClientDataSet& rows, std::string_view field,
                  TVosMTCombo* combo);
  void CheckCombo(TVosMTCombo& combo);
  void CheckFold(const std::string& name, const SearchSpec& spec, const SearchField& field);
  void CheckDataSet(TVosClientDataSet& rows, const TDataSource* source);
  void CheckActions(const std::string& where, const std::vector<std::string>& actions);
  void CheckLayout(const LayoutNode& node);
  void CheckPlaces();
  /// Goes to every place of every grid, in a row that is there and in a new one.
  void CheckKeys();
  void CheckKeysAt(const std::string& place);

  TVosBaseForm& form_;
  const std::vector<server::ServerClass>& classes_;
  const std::set<std::string>& folds_;
  std::set<std::string> placed_;
  std::set<const void*> seen_;
  std::vector<std::string> all_;
};

}  // namespace orvane::modules
