// Every walk of walks/ through the scripted toolkit, in-process and over the wire, on both engines.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "support/walk_stage.h"

namespace orvane {
namespace {

struct WalkCase {
  std::string file;
  TestEngine engine;
  WalkWay way;
};

void PrintTo(const WalkCase& walk, std::ostream* out) {
  *out << walk.file;
}

std::vector<WalkCase> AllWalks() {
  std::vector<std::string> files;
  const std::filesystem::path folder = std::filesystem::path(ORVANE_SOURCE_DIR) / "walks";
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    if (entry.path().extension() == ".walk") files.push_back(entry.path().string());
  }
  std::sort(files.begin(), files.end());
  std::vector<WalkCase> cases;
  for (const std::string& file : files) {
    for (const TestEngine engine : TestEngines()) {
      cases.push_back({file, engine, WalkWay::InProcess});
      cases.push_back({file, engine, WalkWay::OverWire});
    }
  }
  return cases;
}

std::string NameOf(const testing::TestParamInfo<WalkCase>& info) {
  std::string name = std::filesystem::path(info.param.file).stem().string();
  name += "On";
  name += EngineName(info.param.engine);
  name += info.param.way == WalkWay::InProcess ? "InProcess" : "OverWire";
  return name;
}

class EveryWalk : public testing::TestWithParam<WalkCase> {};

TEST_P(EveryWalk, GoesThrough) {
  const WalkCase& walk = GetParam();
  const std::string text = ReadWalkFile(walk.file);
  const auto steps = ParseWalk(text);
  ASSERT_TRUE(steps) << steps.GetFailure().message;
  WalkStage stage(walk.engine, walk.way, CompanyOfWalk(*steps));
  const std::string name = std::filesystem::path(walk.file).filename().string();
  const std::string problem = RunScriptedWalk(name, text, stage);
  EXPECT_TRUE(problem.empty()) << problem;
}

INSTANTIATE_TEST_SUITE_P(Walks, EveryWalk, testing::ValuesIn(AllWalks()), NameOf);

}  // namespace
}  // namespace orvane
