// Loads and moves among many requests read what they need and nothing else: no step of their plans
// walks a table that grows.

#include "server/documents/navigation.h"
#include "server/many_requests.h"
#include "server/requests/request_document.h"

namespace orvane::server {
namespace {

constexpr int kManyRequests = 20'000;

class RequestGrowth : public RequestCase {
 protected:
  std::string Plan(const Statement& statement) {
    const bool sqlite = GetParam() == Engine::Sqlite;
    Statement explain{(sqlite ? "explain query plan " : "explain ") + statement.text,
                      statement.params,
                      {{"plan", ValueKind::Memo, 0}}};
    if (sqlite) {
      explain.columns = {{"id", ValueKind::Int32, 0},
                         {"parent", ValueKind::Int32, 0},
                         {"notused", ValueKind::Int32, 0},
                         {"detail", ValueKind::Memo, 0}};
    }
    const auto packets = world.Server().Base().ReadSnapshot({&explain, 1});
    if (!packets) return packets.GetFailure().text;
    std::string plan;
    for (std::size_t row = 0; row < packets->front().rowCount; ++row)
      plan += packets->front().At(row, explain.columns.size() - 1).ToText() + "\n";
    return plan;
  }

  /// Lines of the plan that walk a growing table. SQLite names tables by the aliases that the
  /// statement gives them.
  std::string Walks(const Statement& statement, std::vector<std::string> aliases) {
    std::vector<std::string> walking;
    for (const std::string& alias : aliases)
      walking.push_back("SCAN " + alias + "\n");
    for (const char* table : {"PurchaseOrder", "ApprovalTurn", "Deliveries"})
      walking.push_back("SCAN " + std::string(table));
    for (const char* table : {"purchaseorder", "approvalturn", "deliveries"})
      walking.push_back("Seq Scan on " + std::string(table));
    std::string walks;
    std::string plan = Plan(statement);
    for (std::size_t end = plan.find('\n'); end != std::string::npos; end = plan.find('\n')) {
      const std::string line = plan.substr(0, end + 1);
      plan.erase(0, end + 1);
      for (const std::string& scan : walking) {
        if (line.find(scan) != std::string::npos) walks += line;
      }
    }
    return walks;
  }
};
INSTANTIATE_TEST_SUITE_P(Engines, RequestGrowth, testing::ValuesIn(TestEngines()), TestEngineName);

TEST_P(RequestGrowth, NoMoveAndNoPartWalksAGrowingTable) {
  FillManyRequests(world, kManyRequests);
  const Date today = *Date::FromYmd(2026, 3, 5);
  const Sight sights[] = {{0, "boss", {}, today, true},
                          {3, "author", 100, today, false},
                          {3, "kolev", 101, today, false},
                          {3, "petrova", 102, today, true},
                          {3, "stranger", 105, today, false}};
  const Destination places[] = {{Nav::ByKey, 0, 500, {}},    {Nav::First, 0, 0, {}},
                                {Nav::Previous, 0, 500, {}}, {Nav::Next, 0, 500, {}},
                                {Nav::Last, 0, 0, {}},       {Nav::Step, 10, 500, {}},
                                {Nav::ByKey, 0, 500, 1},     {Nav::Next, 0, 500, 1}};
  for (const Sight& sight : sights) {
    const AskerVisibility visibility(kSeenRequests, sight);
    for (const Destination& place : places) {
      for (const Engine form : {Engine::Sqlite, Engine::Postgres}) {
        const Statement find = FindDocument(kSeenRequests, visibility, place, form);
        EXPECT_EQ(Walks(find, {"p", "t"}), "")
            << sight.login << " nav " << static_cast<int>(place.nav);
      }
    }
  }
  const Document& document = PurchaseRequest();
  EXPECT_EQ(Walks(PartStatement(document.head, Language::First, {}), {"o"}), "");
  for (const DocumentPart& part : document.parts)
    EXPECT_EQ(Walks(PartStatement(part, Language::Second, {}), {"o", "d", "a"}), "")
        << part.def.name;
}

TEST_P(RequestGrowth, MovesAmongManyFindTheNearestSeen) {
  FillManyRequests(world, kManyRequests);
  EXPECT_EQ(world.Where("boss", Nav::Next, 500), "0:501/1");
  EXPECT_EQ(world.Where("kolev", Nav::Next, 500), "0:1000/1");
  EXPECT_EQ(world.Where("kolev", Nav::Step, 1000, {}, 10), "0:11000/1");
  EXPECT_EQ(world.Where("kolev", Nav::Next, 19999), "2:20000/1");
  world.RunSql("update StructDepDates set Deputy = 103");
  world.RunSql("delete from Structure");
  EXPECT_EQ(world.Where("petrova", Nav::Next, 500), "0:502/1") << "every second by its turns";
  EXPECT_EQ(world.Where("stranger", Nav::Last, 0), "3");
}

}  // namespace
}  // namespace orvane::server
