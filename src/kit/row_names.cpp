#include "kit/row_names.h"

#include <string>
#include <utility>

namespace orvane::kit {

void NameRows(TVosClientDataSet& rows, std::vector<RowWord> words) {
  rows.OnNameRow = [&rows, words = std::move(words)](const RowReader& row) {
    std::string name;
    for (const RowWord& word : words) {
      const std::string value = rows.FieldByName(word.field).TextIn(row);
      if (!value.empty()) name += (name.empty() ? "" : ", ") + std::string(word.word) + " " + value;
    }
    return name;
  };
}

}  // namespace orvane::kit
