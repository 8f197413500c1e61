#include "server/documents/document.h"

#include "server/documents/named_statement.h"

namespace orvane {

std::string InLanguage(std::string_view text, Language language) {
  std::string written;
  for (;;) {
    const std::size_t open = text.find('{');
    written += text.substr(0, open);
    if (open == std::string_view::npos) return written;
    const std::size_t close = text.find('}', open);
    const std::string column(text.substr(open + 1, close - open - 1));
    written += language == Language::First ? column : "coalesce(" + column + "2, " + column + ")";
    text.remove_prefix(close + 1);
  }
}

Statement PartStatement(const DocumentPart& part, Language language, Date today) {
  const std::string keyed =
      Replaced(Replaced(part.select, "{id}", kKeptId), "{version}", kKeptVersion);
  return Named(InLanguage(keyed, language), {{"Today", today}}, ColumnsOf(part.def));
}

Answer<LoadedDocument> LoadDocument(Work& work, const Document& document, const Place& place,
                                    Language language, std::span<const Statement> further) {
  std::vector<Statement> statements;
  statements.push_back(
      FindDocument(document.seen, Visibility(document.seen, SightOf(work)), place));
  statements.push_back(PartStatement(document.head, language, work.Today()));
  for (const DocumentPart& part : document.parts)
    statements.push_back(PartStatement(part, language, work.Today()));
  statements.insert(statements.end(), further.begin(), further.end());
  auto read = work.Read(statements);
  if (!read) return read.GetFailure();
  Packets& packets = *read;
  LoadedDocument loaded;
  loaded.code = LoadCodeOf(packets.front());
  if (loaded.code == LoadCode::None) return loaded;
  const auto behindParts = packets.begin() + 2 + static_cast<std::ptrdiff_t>(document.parts.size());
  loaded.packets.assign(std::make_move_iterator(packets.begin() + 1),
                        std::make_move_iterator(behindParts));
  loaded.further.assign(std::make_move_iterator(behindParts),
                        std::make_move_iterator(packets.end()));
  return loaded;
}

}  // namespace orvane
