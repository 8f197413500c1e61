// The rules of the house, each a function over the files of the tree. A finding reads
// "src/kit/x.cpp:12: what is wrong → what to use".
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "house/source_text.h"

namespace orvane::house {

using Files = std::vector<SourceFile>;
using Findings = std::vector<std::string>;

/// Every .h and .cpp under the given folders of the root, in order of path.
Files ReadTree(const std::string& root, const std::vector<std::string>& folders);

/// Each floor includes what stands below it; the lower six the standard library besides, and
/// nothing else.
Findings CheckFloors(const Files& files);

/// A .cpp that has a header of its own includes it first; a header carries #pragma once.
Findings CheckHeaders(const Files& files);

/// Headers of src that no other file reads.
Findings CheckUnreadHeaders(const Files& files);

/// Each folder of the server includes what stands before it in the order of its folders.
Findings CheckServerFolders(const Files& files);

/// At most 40 files straight in a folder of src.
Findings CheckFolderSizes(const Files& files);

/// A type of src has one name and one definition, in whichever floor.
Findings CheckTypeNames(const Files& files);

/// Words that stand for something better.
Findings CheckWords(const Files& files);

/// Functions of at most 70 lines, files of at most 700.
Findings CheckLengths(const Files& files);

}  // namespace orvane::house
