#include "server/documents/document.h"

#include "server/statements/named_statement.h"

namespace orvane::server {

namespace {

/// The text with every "{p.Name}" replaced.
template <class Written>
std::string WithNames(std::string_view text, const Written& written) {
  std::string whole;
  for (;;) {
    const std::size_t open = text.find('{');
    whole += text.substr(0, open);
    if (open == std::string_view::npos) return whole;
    const std::size_t close = text.find('}', open);
    whole += written(std::string(text.substr(open + 1, close - open - 1)));
    text.remove_prefix(close + 1);
  }
}

std::string SecondName(const std::string& column) {
  return "coalesce(" + column + "2, " + column + ")";
}

}  // namespace

std::string InLanguage(std::string_view text, Language language) {
  return WithNames(text, [&](const std::string& column) {
    return language == Language::First ? column : SecondName(column);
  });
}

std::string InAskedLanguage(std::string_view text) {
  return WithNames(text, [](const std::string& column) {
    return "case when :FirstLanguage = 1 then " + column + " else " + SecondName(column) + " end";
  });
}

Statement PartStatement(const DocumentPart& part, Language language, Date today) {
  const std::string keyed =
      Replaced(Replaced(part.select, "{id}", kKeptId), "{version}", kKeptVersion);
  return Named(InLanguage(keyed, language), {{"Today", today}}, ColumnsOf(part.def));
}

Answer<LoadedDocument> LoadDocument(Work& work, const Document& document, const Destination& place,
                                    Language language, std::span<const Statement> further) {
  std::vector<Statement> statements;
  statements.push_back(FindDocument(document.seen, AskerVisibility(document.seen, SightOf(work)),
                                    place, work.EngineKind()));
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

}  // namespace orvane::server
