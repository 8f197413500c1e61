// Reading C++ as text: enough of the language to see words, includes and the length of functions,
// without a compiler.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace orvane::house {

/// One file of the tree. Both texts have the line structure of the file.
struct SourceFile {
  std::string path;   // from the root of the tree: "src/packet/decimal.h"
  std::string prose;  // with comments, literals emptied
  std::string code;   // without comments, literals emptied
  std::vector<std::string>
      includes;                   // as written, with their <> or ""; index by line in includeLines
  std::vector<int> includeLines;  // 1-based
  int lines = 0;
};

/// Takes the text of a file apart.
SourceFile ReadSource(std::string path, std::string_view text);

/// Length of one function. Rows of tables inside it are not counted.
struct FunctionLength {
  int line = 0;   // where its head begins, 1-based
  int lines = 0;  // head to closing brace
};

/// The functions defined in emptied code, members inside classes too; lambdas belong to the
/// function around them.
std::vector<FunctionLength> Functions(std::string_view code);

/// 1-based lines where the word stands. A word that begins or ends with a letter does not match
/// inside a longer one.
std::vector<int> LinesWith(std::string_view text, std::string_view word);

}  // namespace orvane::house
