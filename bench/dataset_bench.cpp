// A dataset of 100,000 rows against SQLite in memory: load, sort by two columns, 100,000 finds.

#include <sqlite3.h>

#include <algorithm>
#include <cstdlib>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "data/client_dataset.h"
#include "pairs.h"

namespace orvane::bench {
namespace {

constexpr int kRows = 100'000;

constexpr auto Partner = Code19("Partner", Key);
constexpr auto Name = String("Name", 50, Folded);
constexpr auto Price = Amount("Price");

void Require(bool well) {
  if (!well) std::abort();
}

/// Partners under mixed codes, some five to a name.
struct Rows {
  Rows() {
    std::mt19937_64 random(20260305);
    packet.AddColumn("Partner", ValueKind::Code);
    packet.AddColumn("Name", ValueKind::String, 50);
    packet.AddColumn("Price", ValueKind::Amount);
    for (int i = 0; i < kRows; ++i) {
      const auto code = static_cast<std::int64_t>(random() >> 12 << 17) + i;
      const std::string name = "Фирма „Метал-" + std::to_string(random() % (kRows / 5)) + "“ ООД";
      const Decimal price(static_cast<std::int64_t>(random() % 100'000'000), 4);
      packet.AppendRow(std::vector<Variant>{code, name, price});
      sought.push_back(code);
    }
    std::shuffle(sought.begin(), sought.end(), random);
  }

  DataPacket packet;
  std::vector<std::int64_t> sought;
};

double WithDataset(const Rows& rows) {
  data::TVosClientDataSet dataSet("cdsPartners", {Partner, Name, Price});
  DataPacket packet = rows.packet;  // a packet is loaded once; what came is handed over
  return Seconds([&] {
    dataSet.LoadPacket(std::move(packet));
    dataSet.SetIndexFieldNames("Name;Price");
    for (const std::int64_t code : rows.sought)
      Require(dataSet.Find("Partner", code).has_value());
  });
}

class Sqlite {
 public:
  Sqlite() {
    Require(sqlite3_open(":memory:", &db_) == SQLITE_OK);
    Run("PRAGMA journal_mode=OFF");
    Run("PRAGMA synchronous=OFF");
    Run("PRAGMA temp_store=MEMORY");
    Run("CREATE TABLE Partners (Partner INTEGER PRIMARY KEY, Name TEXT, Price INTEGER)");
  }
  ~Sqlite() {
    for (sqlite3_stmt* statement : statements_)
      sqlite3_finalize(statement);
    sqlite3_close(db_);
  }
  Sqlite(const Sqlite&) = delete;
  Sqlite& operator=(const Sqlite&) = delete;

  void Run(const char* sql) {
    Require(sqlite3_exec(db_, sql, nullptr, nullptr, nullptr) == SQLITE_OK);
  }
  sqlite3_stmt* Prepare(const char* sql) {
    sqlite3_stmt* statement = nullptr;
    Require(sqlite3_prepare_v2(db_, sql, -1, &statement, nullptr) == SQLITE_OK);
    statements_.push_back(statement);
    return statement;
  }

 private:
  sqlite3* db_ = nullptr;
  std::vector<sqlite3_stmt*> statements_;
};

/// SQLite orders byte by byte here, without the fold: less work than ours.
double WithSqlite(const Rows& rows) {
  Sqlite db;
  sqlite3_stmt* insert = db.Prepare("INSERT INTO Partners VALUES (?,?,?)");
  sqlite3_stmt* sorted = db.Prepare("SELECT Partner FROM Partners ORDER BY Name, Price");
  sqlite3_stmt* find = db.Prepare("SELECT rowid FROM Partners WHERE Partner = ?");
  const PacketColumn& names = rows.packet.columns[1];
  return Seconds([&] {
    db.Run("BEGIN");
    for (std::size_t row = 0; row < kRows; ++row) {
      const std::string_view name = names.TextAt(row);
      sqlite3_bind_int64(insert, 1, rows.packet.columns[0].integers[row]);
      sqlite3_bind_text(insert, 2, name.data(), static_cast<int>(name.size()), SQLITE_STATIC);
      sqlite3_bind_int64(insert, 3, rows.packet.columns[2].integers[row]);
      Require(sqlite3_step(insert) == SQLITE_DONE);
      sqlite3_reset(insert);
    }
    db.Run("COMMIT");
    std::vector<std::int64_t> order;
    while (sqlite3_step(sorted) == SQLITE_ROW)
      order.push_back(sqlite3_column_int64(sorted, 0));
    Require(order.size() == kRows);
    for (const std::int64_t code : rows.sought) {
      sqlite3_bind_int64(find, 1, code);
      Require(sqlite3_step(find) == SQLITE_ROW);
      sqlite3_reset(find);
    }
  });
}

}  // namespace
}  // namespace orvane::bench

int main(int argc, char** argv) {
  using namespace orvane::bench;
  const Rows rows;
  AddPair("Dataset/LoadSortFind", 1.0, 15,
          {[&] { return WithDataset(rows); }, [&] { return WithSqlite(rows); }});
  return RunPairs(argc, argv);
}
