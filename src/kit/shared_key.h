#pragma once

// One key, several actions, one owner at a time. The old owner lets go before the new one takes the
// key, or neither would answer to it.

#include <initializer_list>
#include <string_view>

#include "host/keys.h"

namespace orvane {

class TVosBaseForm;

/// Gives the key to `owner` (its hint becomes its caption) and takes it from the others, which are
/// disabled, have no key, and hint at it: "Запис (F9)".
void HandOverKey(TVosBaseForm& form, KeyStroke key, std::string_view owner,
                 std::initializer_list<std::string_view> others);

}  // namespace orvane
