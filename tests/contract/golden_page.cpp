#include "contract/golden_page.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <sstream>

namespace orvane {

void ExpectPage(const std::string& name, const std::string& printed) {
  std::string path = ORVANE_SOURCE_DIR;
  path.append("/docs/").append(name);
  if (std::getenv("ORVANE_REWRITE") != nullptr) std::ofstream(path) << printed;
  std::ifstream file(path, std::ios::binary);
  std::ostringstream text;
  text << file.rdbuf();
  EXPECT_EQ(text.str(), printed);
}

}  // namespace orvane
