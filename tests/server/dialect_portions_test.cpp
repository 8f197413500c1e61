// Portions: every row once, in the order asked for, whatever is equal or missing.

#include <algorithm>
#include <set>

#include "packet/fold.h"
#include "server/dialect_world.h"

namespace orvane::server {
namespace {

constexpr int kRows = 1000;

/// A thousand partners: few different names in either case, every seventh without a second name,
/// and a currency that is missing as often.
void FillPartners(DialectWorld& world) {
  std::vector<VariantArray> rows;
  for (int i = 1; i <= kRows; ++i) {
    const std::string name = (i % 2 == 0 ? "фирма " : "ФИРМА ") + std::to_string(i % 10);
    rows.push_back({i, name, i % 7 == 0 ? Variant() : Variant("Firm " + std::to_string(i % 3)),
                    i % 5 == 0 ? Variant() : Variant(i % 4), i % 3 == 0 ? 0 : 1});
  }
  world.FillRows("Partners",
                 {"Partner", "Name", "Name2", "SuppKindCurrency", "PartnerTypeSupplier"}, rows);
  for (VariantArray& row : rows)
    row = {row[0], *row[0].AsInt() % 2};
  rows.resize(50);
  world.FillRows("AdmissibleNotifiers", {"CostCenter", "Notifier"}, rows);
}

/// All rows, portion by portion.
std::vector<VariantArray> ReadAll(DialectWorld& world, const std::string& sql, int limit) {
  std::vector<VariantArray> rows;
  Asking asking;
  asking.rowLimit = limit;
  do {
    const DataPacket portion = world.Portion(sql, asking);
    EXPECT_LE(portion.rowCount, static_cast<std::size_t>(limit));
    EXPECT_TRUE(portion.rowCount > 0 || rows.empty()) << "an empty portion was promised";
    for (std::size_t row = 0; row < portion.rowCount; ++row) {
      VariantArray values;
      for (std::size_t i = 0; i < portion.columns.size(); ++i)
        values.push_back(portion.At(row, i));
      rows.push_back(std::move(values));
    }
    asking.continuation = portion.continuation;
  } while (!asking.continuation.empty() && rows.size() <= 2 * kRows);
  return rows;
}

Variant Folded(const Variant& value) {
  return value.AsString() == nullptr ? value : Variant(Fold(*value.AsString()));
}

TEST_P(DialectOnEngine, PortionsGiveEachRowOnceInTheOrderAskedFor) {
  DialectWorld world(GetParam());
  FillPartners(world);
  struct Row {
    const char* order;
    std::vector<std::pair<std::size_t, bool>> by;  ///< columns, descending
  };
  const Row kOrders[] = {
      {"", {{0, false}}},
      {"ORDER BY Partner DESC", {{0, true}}},
      {"ORDER BY Name", {{1, false}, {0, false}}},
      {"ORDER BY Name DESC", {{1, true}, {0, true}}},
      {"ORDER BY Name2", {{2, false}, {0, false}}},
      {"ORDER BY Name2 DESC", {{2, true}, {0, true}}},
      {"ORDER BY SuppKindCurrency, Name2 DESC", {{3, false}, {2, true}, {0, true}}},
      {"ORDER BY Name2 DESC, SuppKindCurrency", {{2, true}, {3, false}, {0, false}}},
      {"ORDER BY PartnerTypeSupplier, Name", {{4, false}, {1, false}, {0, false}}},
  };
  for (const Row& order : kOrders) {
    for (const int limit : {1000, 999, 80, 7}) {
      SCOPED_TRACE(std::string(order.order) + " by " + std::to_string(limit));
      const auto rows = ReadAll(world,
                                std::string("SELECT Partner, Name, Name2, SuppKindCurrency, "
                                            "PartnerTypeSupplier FROM Partners ") +
                                    order.order,
                                limit);
      ASSERT_EQ(rows.size(), std::size_t{kRows});
      const auto before = [&](const VariantArray& a, const VariantArray& b) {
        for (const auto& [column, descending] : order.by) {
          const int compared = Variant::Compare(Folded(a[column]), Folded(b[column]));
          if (compared != 0) return descending ? compared > 0 : compared < 0;
        }
        return false;
      };
      const auto wrong = std::adjacent_find(
          rows.begin(), rows.end(),
          [&](const VariantArray& a, const VariantArray& b) { return !before(a, b); });
      EXPECT_EQ(wrong, rows.end()) << "not strictly ascending";
    }
  }
}

TEST_P(DialectOnEngine, JoinedRowsAndDistinctOnesAreToldApart) {
  DialectWorld world(GetParam());
  FillPartners(world);
  world.Fill("CostCenters", "CostCenter | Name\n 1 | Цех\n 2 | Цех\n 77 | Цех");
  struct Row {
    const char* name;
    const char* sql;
    std::size_t rows;
  };
  const Row kSearches[] = {
      {"an outer join that multiplies",
       "SELECT c.CostCenter, n.CostCenter x, n.Notifier FROM CostCenters c "
       "LEFT JOIN AdmissibleNotifiers n ON n.CostCenter > 40 AND n.Notifier = 1 AND c.CostCenter = "
       "1 "
       "ORDER BY c.Name",
       7},
      {"an inner join without a key",
       "SELECT a.CostCenter FROM CostCenters a INNER JOIN AdmissibleNotifiers b ON b.Notifier = 0 "
       "ORDER BY a.Name DESC",
       75},
      {"distinct rows without a key", "SELECT DISTINCT Name, SuppKindCurrency FROM Partners", 18},
      {"distinct rows by a nullable column",
       "SELECT DISTINCT Name2, SuppKindCurrency, PartnerTypeSupplier FROM Partners "
       "ORDER BY SuppKindCurrency DESC, Name2",
       25},
      {"distinct rows with a key",
       "SELECT DISTINCT p.Partner FROM AdmissibleNotifiers n INNER JOIN Partners p ON "
       "p.PartnerTypeSupplier = n.Notifier AND n.CostCenter >= p.Partner ORDER BY p.Partner",
       49},
  };
  for (const Row& search : kSearches) {
    SCOPED_TRACE(search.name);
    const auto whole = ReadAll(world, search.sql, 1000);
    EXPECT_EQ(whole.size(), search.rows);
    for (const int limit : {1, 6}) {
      const auto rows = ReadAll(world, search.sql, limit);
      ASSERT_EQ(rows.size(), whole.size());
      EXPECT_TRUE(std::equal(rows.begin(), rows.end(), whole.begin()));
    }
  }
}

TEST_P(DialectOnEngine, RowsAddedAndRemovedBetweenPortionsShiftNothing) {
  DialectWorld world(GetParam());
  FillPartners(world);
  const std::string sql = "SELECT Partner FROM Partners WHERE Partner >= 100 ORDER BY Partner";
  Asking asking;
  asking.rowLimit = 3;
  const DataPacket first = world.Portion(sql, asking);
  EXPECT_EQ(RowsOf(first), "100; 101; 102");
  auto transaction = world.Data().Begin();
  ASSERT_TRUE(transaction);
  ASSERT_TRUE(
      (*transaction)->Execute({"delete from Partners where Partner in (101, 102)", {}, {}}));
  ASSERT_TRUE((*transaction)->Commit());
  asking.continuation = first.continuation;
  EXPECT_EQ(world.Rows(sql, asking), "103; 104; 105");
}

TEST_P(DialectOnEngine, AContinuationBelongsToItsSearch) {
  DialectWorld world(GetParam());
  FillPartners(world);
  const std::string sql = "SELECT Partner FROM Partners WHERE Partner > :From ORDER BY Name2";
  Asking asking;
  asking.params = {{"From", 5}};
  asking.rowLimit = 10;
  const std::string good = world.Portion(sql, asking).continuation;
  ASSERT_FALSE(good.empty());
  const auto isTaken = [&](const std::string& text, const std::string& continuation, int from) {
    Asking other = asking;
    other.params = {{"From", from}};
    other.continuation = continuation;
    const auto search = world.Render(text, other);
    EXPECT_TRUE(search || search.GetFailure().kind == FailureKind::BadRequest);
    return search.Ok();
  };
  EXPECT_TRUE(isTaken(sql, good, 5));
  EXPECT_FALSE(isTaken(sql, good, 6));
  EXPECT_FALSE(isTaken(sql + " ", good, 5));
  const std::string mark = good.substr(0, good.find('.') + 1);
  EXPECT_TRUE(isTaken(sql, mark + "nv5;", 5));
  EXPECT_TRUE(isTaken(sql, mark + "t4:фиv5;", 5));
  for (const char* values : {"", "n", "nv5;n", "nt1:1", "v5;v5;", "t9999:x", "t2:\xFF\xFEv5;",
                             "nv99999999999999999999;", "nv5", "nx5;", "t-1:v5;"}) {
    EXPECT_FALSE(isTaken(sql, mark + values, 5)) << values;
  }
}

TEST_P(DialectOnEngine, APortionThatEndsWithTheLastRowPromisesNothing) {
  DialectWorld world(GetParam());
  world.Fill("Currencies", "Code | Name\n 1 | лев\n 2 | евро\n 3 | долар");
  Asking asking;
  asking.rowLimit = 3;
  EXPECT_EQ(world.Portion("SELECT Code FROM Currencies", asking).continuation, "");
  asking.rowLimit = 2;
  const DataPacket portion = world.Portion("SELECT Code FROM Currencies ORDER BY Name", asking);
  EXPECT_EQ(RowsOf(portion), "3; 2");
  EXPECT_EQ(portion.columns.size(), 1u) << "what served the order is not shown";
  asking.continuation = portion.continuation;
  EXPECT_EQ(world.Rows("SELECT Code FROM Currencies ORDER BY Name", asking), "1");
}

}  // namespace
}  // namespace orvane::server
