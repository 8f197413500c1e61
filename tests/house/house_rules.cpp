#include "house/house_rules.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <span>
#include <sstream>

namespace orvane::house {
namespace {

constexpr int kFunctionLines = 70;
constexpr int kFileLines = 700;
constexpr int kFolderFiles = 40;

/// The server's folders from the ground up.
constexpr std::string_view kServerFolders[] = {
    "catalogue", "engine",    "log",      "schema",    "sessions", "statements",
    "dialect",   "providers", "approval", "documents", "orders",   "requests",
    "contracts", "queue",     "classes",  "demo",      "load",     "check",
};

struct Floor {
  std::string_view name;
  bool standardLibraryOnly;
  std::string_view below;  // besides itself
};

constexpr Floor kFloors[] = {
    {"packet", true, ""},
    {"contract", true, "packet"},
    {"data", true, "contract packet"},
    {"host", true, "data contract packet"},
    {"kit", true, "host data contract packet"},
    {"modules", true, "kit host data contract packet"},
    {"wire", false, "packet"},
    {"server", false, "contract packet"},
    {"desktop", false, "host data contract packet"},
    {"apps", false, "desktop modules kit host data server wire contract packet"},
};

constexpr std::string_view kStandardHeaders[] = {
    "algorithm",
    "any",
    "array",
    "atomic",
    "bit",
    "bitset",
    "cassert",
    "cctype",
    "cerrno",
    "cfloat",
    "charconv",
    "chrono",
    "cinttypes",
    "climits",
    "cmath",
    "compare",
    "complex",
    "concepts",
    "condition_variable",
    "csignal",
    "cstddef",
    "cstdint",
    "cstdio",
    "cstdlib",
    "cstring",
    "ctime",
    "deque",
    "exception",
    "filesystem",
    "forward_list",
    "fstream",
    "functional",
    "future",
    "initializer_list",
    "iomanip",
    "ios",
    "iosfwd",
    "iostream",
    "istream",
    "iterator",
    "limits",
    "list",
    "locale",
    "map",
    "memory",
    "memory_resource",
    "mutex",
    "new",
    "numbers",
    "numeric",
    "optional",
    "ostream",
    "queue",
    "random",
    "ranges",
    "ratio",
    "regex",
    "set",
    "shared_mutex",
    "source_location",
    "span",
    "sstream",
    "stack",
    "stdexcept",
    "stop_token",
    "streambuf",
    "string",
    "string_view",
    "system_error",
    "thread",
    "tuple",
    "type_traits",
    "typeindex",
    "typeinfo",
    "unordered_map",
    "unordered_set",
    "utility",
    "valarray",
    "variant",
    "vector",
    "version",
};

enum class Where { Code, Comments };

struct BannedWord {
  std::string_view word;
  Where where;               // Comments: in comments and code
  std::string_view floors;   // where it is banned; empty: everywhere, tests too
  std::string_view except;   // path beginnings that may
  std::string_view instead;  // why, and what to use
};

constexpr std::string_view kStandardFloors = "packet contract data host kit modules";
constexpr std::string_view kAllFloors =
    "packet contract data host kit modules wire server desktop apps";
constexpr std::string_view kBelowApps = "packet contract data host kit modules wire server desktop";

constexpr BannedWord kWords[] = {
    // word, where, floors, except, instead
    {"TODO", Where::Comments, "", "", "do it, or write an issue"},
    {"FIXME", Where::Comments, "", "", "mend it, or write an issue"},
    {"XXX", Where::Comments, "", "", "say what is meant"},
    {"using namespace std", Where::Code, "", "", "names of the library stay visible: std::"},
    {"std::endl", Where::Code, "", "", "flushes every line: '\\n'"},
    {"sprintf(", Where::Code, "", "", "overruns its buffer: std::to_chars or std::string"},
    {"strcpy(", Where::Code, "", "", "overruns its buffer: std::string"},
    {"rand(", Where::Code, "", "", "cannot be repeated: std::mt19937 with a printed seed"},
    {"srand(", Where::Code, "", "", "cannot be repeated: std::mt19937 with a printed seed"},
    {"atoi(", Where::Code, "", "", "hides errors, loses digits: std::from_chars"},
    {"atof(", Where::Code, "", "", "amounts are exact: Decimal"},
    {"std::stod(", Where::Code, kAllFloors, "", "amounts are exact: Decimal"},
    {"strtod(", Where::Code, kAllFloors, "", "amounts are exact: Decimal"},
    {"float", Where::Code, kAllFloors, "", "amounts are exact: Decimal; geometry in Qt: qreal"},
    {"setlocale(", Where::Code, kBelowApps, "", "texts must not depend on the machine's locale"},
    {"std::cout", Where::Code, kBelowApps, "", "a library does not print: return it or log it"},
    {"std::cerr", Where::Code, kBelowApps, "", "a library does not print: return it or log it"},
    {"printf(", Where::Code, kBelowApps, "", "a library does not print: return it or log it"},
    {"exit(", Where::Code, kBelowApps, "", "only a program ends itself: return a Failure"},
    {"std::thread", Where::Code, kStandardFloors, "",
     "the client has one thread: the toolkit waits"},
    {"std::jthread", Where::Code, kStandardFloors, "",
     "the client has one thread: the toolkit waits"},
    {"std::async", Where::Code, kStandardFloors, "",
     "the client has one thread: the toolkit waits"},
    {"system_clock::now", Where::Code, kBelowApps, "src/packet/clock src/wire/",
     "tests and walks set the time: Clock"},
    {"time(nullptr)", Where::Code, kBelowApps, "", "tests and walks set the time: Clock"},
    {"std::views", Where::Code, "", "", "clang-14 cannot read pipelines: a loop or an algorithm"},
    {"std::ranges::views", Where::Code, "", "",
     "clang-14 cannot read pipelines: a loop or an algorithm"},
    {"#define", Where::Code, kAllFloors, "",
     "knows no namespace and no type: constexpr or a function"},
    {"new", Where::Code, kStandardFloors, "", "owners must be seen: std::make_unique"},
    {"std::toupper", Where::Code, kStandardFloors, "src/packet/",
     "knows no Cyrillic: packet/fold.h"},
    {"std::tolower", Where::Code, kStandardFloors, "src/packet/",
     "knows no Cyrillic: packet/fold.h"},
};

bool ListHas(std::string_view list, std::string_view word) {
  return !LinesWith(list, word).empty();
}

bool BeginsWithOneOf(std::string_view path, std::string_view beginnings) {
  std::istringstream words{std::string(beginnings)};
  for (std::string word; words >> word;) {
    if (path.starts_with(word)) return true;
  }
  return false;
}

/// "src/kit/x.h" → "kit"; empty outside src and for files straight in it.
std::string_view FloorOf(std::string_view path) {
  if (!path.starts_with("src/")) return {};
  path.remove_prefix(4);
  const std::size_t slash = path.find('/');
  return slash == std::string_view::npos ? std::string_view() : path.substr(0, slash);
}

const Floor* FindFloor(std::string_view name) {
  const auto* found = std::ranges::find(kFloors, name, &Floor::name);
  return found == std::end(kFloors) ? nullptr : found;
}

std::string At(const SourceFile& file, int line, const std::string& what,
               std::string_view instead) {
  return file.path + ":" + std::to_string(line) + ": " + what + " → " + std::string(instead);
}

bool IsHeader(const SourceFile& file) {
  return file.path.ends_with(".h");
}

std::set<std::string, std::less<>> PathsOf(const Files& files) {
  std::set<std::string, std::less<>> paths;
  for (const SourceFile& file : files)
    paths.insert(file.path);
  return paths;
}

/// Why this floor may not include that; empty when it may. `included` still has its <> or "".
std::string Trespass(const Floor& floor, std::string_view included,
                     const std::set<std::string, std::less<>>& paths) {
  if (included.size() < 3) return "names nothing a reader can follow";
  const std::string_view name = included.substr(1, included.size() - 2);
  const Floor* other = FindFloor(name.substr(0, name.find('/')));
  const bool ours = other != nullptr && name.find('/') != std::string_view::npos;
  if (ours && included.front() == '<') return "our own headers stand in quotes";
  if (ours) {
    if (!paths.contains("src/" + std::string(name))) return "there is no such header";
    if (other == &floor || ListHas(floor.below, other->name)) return {};
    return "floor " + std::string(floor.name) + " may include " +
           (floor.below.empty() ? "no other floor" : std::string(floor.below));
  }
  if (floor.standardLibraryOnly) {
    const bool standard = included.front() == '<' &&
                          std::ranges::find(kStandardHeaders, name) != std::end(kStandardHeaders);
    return standard ? "" : "floor " + std::string(floor.name) + " knows the standard library only";
  }
  if (included.front() == '<' || name.ends_with(".moc") || name.ends_with(".pb.h")) return {};
  return "our own headers are written from src: \"floor/file.h\"";
}

}  // namespace

Files ReadTree(const std::string& root, const std::vector<std::string>& folders) {
  namespace fs = std::filesystem;
  Files files;
  for (const std::string& folder : folders) {
    const fs::path start = fs::path(root) / folder;
    if (!fs::exists(start)) continue;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(start)) {
      const fs::path& path = entry.path();
      if (path.extension() != ".h" && path.extension() != ".cpp") continue;
      std::ostringstream text;
      text << std::ifstream(path, std::ios::binary).rdbuf();
      files.push_back(ReadSource(fs::relative(path, root).generic_string(), text.str()));
    }
  }
  std::ranges::sort(files, {}, &SourceFile::path);
  return files;
}

Findings CheckFloors(const Files& files) {
  Findings findings;
  const auto paths = PathsOf(files);
  for (const SourceFile& file : files) {
    if (!file.path.starts_with("src/")) continue;
    const Floor* floor = FindFloor(FloorOf(file.path));
    if (floor == nullptr) {
      findings.push_back(At(file, 1, "belongs to no floor", "the folders of src are the floors"));
      continue;
    }
    for (std::size_t i = 0; i < file.includes.size(); ++i) {
      const std::string reason = Trespass(*floor, file.includes[i], paths);
      if (reason.empty()) continue;
      findings.push_back(At(file, file.includeLines[i], "#include " + file.includes[i], reason));
    }
  }
  return findings;
}

Findings CheckHeaders(const Files& files) {
  Findings findings;
  const auto paths = PathsOf(files);
  for (const SourceFile& file : files) {
    if (IsHeader(file)) {
      if (LinesWith(file.code, "#pragma once").size() != 1) {
        findings.push_back(At(file, 1, "can be read twice", "#pragma once"));
      }
      continue;
    }
    const std::string header = file.path.substr(0, file.path.size() - 4) + ".h";
    if (!paths.contains(header)) continue;
    const std::string own = "\"" + header.substr(header.find('/') + 1) + "\"";
    if (!file.includes.empty() && file.includes.front() == own) continue;
    const int line = file.includeLines.empty() ? 1 : file.includeLines.front();
    findings.push_back(At(file, line, "the first include is not its own header", own));
  }
  return findings;
}

Findings CheckUnreadHeaders(const Files& files) {
  std::set<std::string, std::less<>> read;
  for (const SourceFile& file : files) {
    const std::string own = file.path.substr(file.path.find('/') + 1);
    for (const std::string& included : file.includes) {
      const std::string name = included.substr(1, included.size() - 2);
      const std::string stem = name.substr(0, name.rfind('.'));
      if (own != stem + ".cpp") read.insert("src/" + name);
    }
  }
  Findings findings;
  for (const SourceFile& file : files) {
    if (!IsHeader(file) || !file.path.starts_with("src/") || read.contains(file.path)) continue;
    findings.push_back(At(file, 1, "no other file includes it", "use it or remove it"));
  }
  return findings;
}

namespace {

/// "src/server/orders/x.h" → 10; the end for what stands above all folders.
std::size_t ServerStorey(std::string_view path) {
  constexpr std::string_view kServer = "src/server/";
  if (!path.starts_with(kServer)) return std::size(kServerFolders);
  path.remove_prefix(kServer.size());
  const auto* found = std::ranges::find(kServerFolders, path.substr(0, path.find('/')));
  return static_cast<std::size_t>(found - std::begin(kServerFolders));
}

/// The name that a line at the margin defines a class, struct or enumeration by; empty when it
/// defines none, or one inside another ("class Sessions::State").
std::string_view TypeDefinedBy(std::string_view line) {
  for (const std::string_view word : {"class ", "struct ", "enum class "}) {
    if (!line.starts_with(word)) continue;
    const std::string_view rest = line.substr(word.size());
    const std::size_t end = rest.find_first_of(" ;<:{");
    const bool defined = rest.find('{') != std::string_view::npos && rest.substr(end, 2) != "::";
    return defined ? rest.substr(0, end) : std::string_view();
  }
  return {};
}

}  // namespace

Findings CheckServerFolders(const Files& files) {
  Findings findings;
  for (const SourceFile& file : files) {
    const std::size_t own = ServerStorey(file.path);
    for (std::size_t i = 0; i < file.includes.size(); ++i) {
      const std::string_view included = file.includes[i];
      if (!included.starts_with("\"server/") || own == std::size(kServerFolders)) continue;
      const std::size_t other = ServerStorey("src/" + std::string(included.substr(1)));
      if (other <= own) continue;
      findings.push_back(At(file, file.includeLines[i], "#include " + file.includes[i],
                            "stands above " + std::string(kServerFolders[own])));
    }
  }
  return findings;
}

Findings CheckFolderSizes(const Files& files) {
  std::map<std::string, int, std::less<>> sizes;
  for (const SourceFile& file : files)
    if (file.path.starts_with("src/")) ++sizes[file.path.substr(0, file.path.rfind('/'))];
  Findings findings;
  for (const auto& [folder, size] : sizes) {
    if (size <= kFolderFiles) continue;
    findings.push_back(folder + ": a folder of " + std::to_string(size) + " files → at most " +
                       std::to_string(kFolderFiles) + ": divide it by subject");
  }
  return findings;
}

Findings CheckTypeNames(const Files& files) {
  std::map<std::string, std::string, std::less<>> known;
  Findings findings;
  for (const SourceFile& file : files) {
    if (!file.path.starts_with("src/") || !IsHeader(file)) continue;
    std::istringstream lines{file.code};
    std::string line;
    for (int number = 1; std::getline(lines, line); ++number) {
      const std::string_view type = TypeDefinedBy(line);
      if (type.empty()) continue;
      const auto [place, isNew] = known.emplace(type, file.path);
      if (isNew) continue;
      findings.push_back(At(file, number, "a second type " + place->first,
                            "another name: the first stands in " + place->second));
    }
  }
  return findings;
}

Findings CheckWords(const Files& files) {
  Findings findings;
  for (const SourceFile& file : files) {
    for (const BannedWord& banned : kWords) {
      if (!banned.floors.empty() && !ListHas(banned.floors, FloorOf(file.path))) continue;
      if (BeginsWithOneOf(file.path, banned.except)) continue;
      const std::string& text = banned.where == Where::Code ? file.code : file.prose;
      for (const int line : LinesWith(text, banned.word)) {
        findings.push_back(At(file, line, "'" + std::string(banned.word) + "'", banned.instead));
      }
    }
  }
  return findings;
}

Findings CheckLengths(const Files& files) {
  Findings findings;
  for (const SourceFile& file : files) {
    if (file.lines > kFileLines) {
      findings.push_back(At(file, file.lines, "a file of " + std::to_string(file.lines) + " lines",
                            "at most " + std::to_string(kFileLines) + ": divide it by subject"));
    }
    for (const FunctionLength& function : Functions(file.code)) {
      if (function.lines <= kFunctionLines) continue;
      findings.push_back(At(file, function.line,
                            "a function of " + std::to_string(function.lines) + " lines",
                            "at most " + std::to_string(kFunctionLines) +
                                ": move the leaves into functions, facts into a table"));
    }
  }
  return findings;
}

}  // namespace orvane::house
