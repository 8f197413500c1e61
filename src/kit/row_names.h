#pragma once

#include <string_view>
#include <vector>

#include "data/client_dataset.h"

namespace orvane::kit {

/// A word and the field of the key whose value follows it.
struct RowWord {
  std::string_view word;
  std::string_view field;
};

/// What people call the rows of a dataset, for sentences about them: "Искане за покупка 17, версия
/// 2, ред 3". Words whose value is empty are left out.
void NameRows(TVosClientDataSet& rows, std::vector<RowWord> words);

}  // namespace orvane::kit
