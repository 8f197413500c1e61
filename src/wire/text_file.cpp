#include "wire/text_file.h"

#include <fstream>
#include <sstream>

namespace orvane::wire {

std::optional<std::string> ReadTextFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::ostringstream content;
  if (!file || !(content << file.rdbuf())) return std::nullopt;
  return content.str();
}

}  // namespace orvane::wire
