#pragma once

// A walk is a text that a user of the program could have written: one step a line, a verb and its
// words. Words with blanks stand in double quotes (\" is a quote inside); # begins a comment; $name
// is what was remembered.
//
//   company lev                          (first of all; without it the demonstration company)
//   user ivanova
//   open TfDepartment
//   type Name "Механичен цех"
//   expect Name "Механичен цех"

#include <string>
#include <string_view>
#include <vector>

#include "packet/failure.h"

namespace orvane::host {

struct WalkStep {
  int line = 0;
  std::vector<std::string> words;  ///< never empty; the verb comes first
  std::string text;                ///< the line as written, for messages
};

/// Cuts a walk into steps. Refused, with the line, when a quote is not closed.
Answer<std::vector<WalkStep>> ParseWalk(std::string_view text);

/// Name of the company that a walk asks for at its head ("one language"); empty when it names none.
std::string CompanyOfWalk(const std::vector<WalkStep>& steps);

}  // namespace orvane::host
