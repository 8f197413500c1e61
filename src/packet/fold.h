#pragma once

// The one fold of texts for searching, ordering and uniqueness, on every engine and in the client's
// datasets alike: letters of the Latin, Greek and Cyrillic scripts in either case become one, and
// trailing blanks do not count. Also the few UTF-8 helpers everybody needs.

#include <cstddef>
#include <string>
#include <string_view>

namespace orvane {

/// Lower-case form of `text` without trailing blanks. Bytes that are not UTF-8 are kept as they
/// are. The result never has more code points than the text; Fold(Fold(x)) == Fold(x), and the fold
/// of a beginning of a text (one not ending in blanks) is a beginning of the text's fold.
std::string Fold(std::string_view text);

/// The smallest text that is greater, byte for byte, than every text beginning with `prefix`; empty
/// when there is none. With it a search by beginning is a range over a plain index. The bound of
/// UTF-8 is UTF-8.
std::string PrefixUpperBound(std::string_view prefix);

/// Number of code points.
std::size_t Utf8Length(std::string_view text);
/// The first `count` code points.
std::string_view Utf8Cut(std::string_view text, std::size_t count);
bool IsUtf8(std::string_view text);
/// True for an empty text and for one of blanks, tabs, line ends and no-break blanks only.
bool IsBlank(std::string_view text);
/// Without blanks at either end.
std::string_view Trim(std::string_view text);

}  // namespace orvane
