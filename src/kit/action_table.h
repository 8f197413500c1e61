#pragma once

// The actions of a screen as one table: name, caption, key, and the method that runs.
//
//   constexpr ActionRow<TfDepartment> kActions[] = {
//       {"acDelete", "Изтриване", KeyCode::F5, &TfDepartment::acDeleteExecute, "delete"},
//   };
//   AddActions(*this, kActions);

#include <cstddef>
#include <string>
#include <string_view>

#include "host/form.h"

namespace orvane::kit {

template <class FormClass>
struct ActionRow {
  std::string_view action;
  std::string_view caption;
  KeyStroke key;
  void (FormClass::*execute)();
  std::string_view icon = {};
};

/// Adds every row of the table to the form, in order.
template <class FormClass, std::size_t N>
void AddActions(FormClass& form, const ActionRow<FormClass> (&rows)[N]) {
  for (const ActionRow<FormClass>& row : rows) {
    TAction action;
    action.name = row.action;
    action.caption = row.caption;
    action.shortcut = row.key;
    action.icon = row.icon;
    action.OnExecute = [&form, execute = row.execute] { (form.*execute)(); };
    form.AddAction(std::move(action));
  }
}

/// A rule of the screen as the condition of a row of its live table: When<&TfDepartment::HasRows>.
template <auto Rule>
bool When(const TVosBaseForm& form);

namespace action_table_detail {
template <class FormClass>
const FormClass& FormOf(const TVosBaseForm& form, bool (FormClass::*)() const) {
  return static_cast<const FormClass&>(form);
}
}  // namespace action_table_detail

template <auto Rule>
bool When(const TVosBaseForm& form) {
  return (action_table_detail::FormOf(form, Rule).*Rule)();
}

}  // namespace orvane::kit
