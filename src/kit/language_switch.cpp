#include "kit/language_switch.h"

#include <algorithm>
#include <string>
#include <utility>

#include "host/controls/cell_editor.h"
#include "host/form.h"

namespace orvane::kit {
namespace {

NamedValues KeyOfCurrentRow(TVosClientDataSet& dataSet) {
  NamedValues key;
  if (dataSet.IsEmpty()) return key;
  for (const TField* field : dataSet.Fields()) {
    if (!field->IsLookup() && field->Def().Is(Key))
      key.push_back({std::string(field->Name()), field->Value()});
  }
  return key;
}

}  // namespace

LanguageSwitch::LanguageSwitch(TVosBaseForm& form, std::vector<TVosClientDataSet*> dataSets,
                               std::function<void()> fetch)
    : form_(form),
      dataSets_(std::move(dataSets)),
      fetch_(std::move(fetch)),
      shownFirst_(form.FirstLanguage()) {}

bool LanguageSwitch::HoldsTyping() const {
  Control* active = form_.ActiveControl();
  const CellEditor* editor = active == nullptr ? nullptr : active->Editor();
  if (editor != nullptr && editor->IsChanged()) return true;
  return std::ranges::any_of(dataSets_, [](const TVosClientDataSet* dataSet) {
    return dataSet->Editing() || dataSet->ChangeCount() > 0;
  });
}

void LanguageSwitch::Settle() {
  if (shownFirst_ == form_.FirstLanguage() || HoldsTyping()) return;
  shownFirst_ = form_.FirstLanguage();
  std::vector<NamedValues> keys;
  for (TVosClientDataSet* dataSet : dataSets_)
    keys.push_back(KeyOfCurrentRow(*dataSet));
  fetch_();
  for (std::size_t i = 0; i < keys.size(); ++i) {
    if (!keys[i].empty()) dataSets_[i]->Locate(keys[i]);
  }
  form_.RefreshActions();
}

}  // namespace orvane::kit
