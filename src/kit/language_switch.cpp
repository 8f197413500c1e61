#include "kit/language_switch.h"

#include <cstdint>
#include <string>
#include <utility>

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

/// A dataset that was not fetched stays as it is, with the row that has just been begun in it.
void LanguageSwitch::Settle() {
  const bool current = shownFirst_ == form_.FirstLanguage();
  if (current || form_.HoldsTyping() || form_.IsTypingInEditor()) return;
  shownFirst_ = form_.FirstLanguage();
  struct Place {
    std::uint64_t generation;
    NamedValues key;
  };
  std::vector<Place> places;
  for (TVosClientDataSet* dataSet : dataSets_)
    places.push_back({dataSet->Generation(), KeyOfCurrentRow(*dataSet)});
  fetch_();
  for (std::size_t i = 0; i < places.size(); ++i) {
    const bool fetched = dataSets_[i]->Generation() != places[i].generation;
    if (fetched && !places[i].key.empty()) dataSets_[i]->Locate(places[i].key);
  }
  form_.RefreshActions();
}

}  // namespace orvane::kit
