// What screens search for among half a million supply-list entries and 200,000 suppliers,
// in-process against statements written by hand: opening a search, the beginning of a name, a code,
// and a part of a name anywhere, in each way that the client chooses from the supply list. On the
// smallest company asked for: a search does not depend on the number of documents.

#include <spdlog/spdlog.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "contract/system.h"
#include "packet/date.h"
#include "pairs.h"
#include "stage.h"

namespace orvane::bench {
namespace {

/// A search of the screens, and the same by hand.
struct Source {
  std::string name;
  std::string sql;   ///< up to where the user's conditions come
  std::string bare;  ///< the same
  std::string nameAsked;
  std::string codeAsked;
  std::string order;    ///< by hand: fold and key
  std::string fold;     ///< by hand
  std::string code;     ///< by hand
  std::string subject;  ///< how names begin
  std::int64_t firstCode = 0;
  std::string common;  ///< a part that all names have
  Engine engine = Engine::Sqlite;
  std::string parts;    ///< SQLite's index of the names' parts
  std::string inParts;  ///< by hand: the condition of rows whose names an index finds by ?1
};

std::string SupplySql(bool distinct, const std::string& measure, const std::string& from,
                      const std::string& condition, const std::string& day) {
  return std::string(distinct ? "SELECT DISTINCT" : "SELECT") +
         "\nB.SerialNumber, B.InventoryCode, B.ServiceCode,\n"
         "CASE ISNULL(D.IdentityWithNom, 0) WHEN 1 THEN CASE B.Kind WHEN 1 THEN M.Name WHEN 2 THEN "
         "S.Name END WHEN 0 THEN B.Name END cbName,\n"
         "CASE ISNULL(D.IdentityWithNom, 0) WHEN 1 THEN CASE B.Kind WHEN 1 THEN M.Name2 WHEN 2 "
         "THEN "
         "S.Name2 END WHEN 0 THEN B.Name2 END cbName2,\n" +
         measure +
         ".Measure bslMeasure, M.Measure msMeasure, M.IncomeMeasure, M.BarCodeMeasure, "
         "S.Measure servMeasure,\n"
         "CASE B.Kind WHEN 1 THEN M.RoundQuantity ELSE S.RoundQuantity END roundQNT\n" +
         from +
         "\nLEFT OUTER JOIN MaterialStocks M WITH (NOLOCK) ON B.InventoryCode = M.IdNumber\n"
         "LEFT OUTER JOIN Services S WITH (NOLOCK) ON S.Code = B.ServiceCode\n"
         "LEFT OUTER JOIN DescrBaseSupplyList D WITH (NOLOCK) ON 1=1\n"
         "WHERE " +
         condition + (condition.empty() ? "" : " AND ") + "(M.SuppForbiddenFrom IS NULL OR" +
         " M.SuppForbiddenFrom > " + day + ") AND (M.SuppActiveFrom IS NULL OR" +
         " M.SuppActiveFrom <= " + day + ")";
}

std::string SupplyBare(const std::string& measure, const std::string& from,
                       const std::string& condition, const std::string& day) {
  return "select b.SerialNumber, b.InventoryCode, b.ServiceCode, b.EffectiveName, "
         "b.EffectiveName2, " +
         measure +
         ".Measure, m.Measure, m.IncomeMeasure, m.BarCodeMeasure, s.Measure, m.RoundQuantity,"
         " s.RoundQuantity from " +
         from +
         " left join MaterialStocks m on m.IdNumber = b.InventoryCode"
         " left join Services s on s.Code = b.ServiceCode where " +
         condition + (condition.empty() ? "" : " and ") +
         "(m.SuppForbiddenFrom is null or m.SuppForbiddenFrom > " + day +
         ") and (m.SuppActiveFrom is null or m.SuppActiveFrom <= " + day + ")";
}

std::string DayByHand(Engine engine, std::int32_t days) {
  const std::string number = std::to_string(days);
  return engine == Engine::Sqlite ? number : "(date '1970-01-01' + " + number + ")";
}

std::string Quoted(std::int32_t days) {
  return "'" + Date{days}.ToText() + "'";
}

/// The rows of a key whose names have a part: SQLite's index is asked for trigrams.
std::string InParts(Engine engine, const std::string& key, const std::string& table,
                    const std::string& fold) {
  const std::string index = table + "Parts";
  if (engine == Engine::Sqlite)
    return key + " in (select rowid from " + index + " where " + index + " match ?1)";
  return key + " = any (array(select " + key.substr(key.find('.') + 1) + " from " + table +
         " where " + fold + " like ?1))";
}

void Finish(Source& source, Engine engine, const std::string& list) {
  source.nameAsked = "cbName";
  source.codeAsked = "B.SerialNumber";
  source.order = list + ".FoldEffectiveName nulls first, " + list + ".SerialNumber";
  source.fold = list + ".FoldEffectiveName";
  source.code = list + ".SerialNumber";
  source.subject = "проба ";
  source.firstCode = 50'000'000;
  source.common = "резервна";
  source.engine = engine;
  source.parts = "BaseSupplyListParts";
  source.inParts = InParts(engine, source.code, "BaseSupplyList", "FoldEffectiveName");
}

Source BaseList(Engine engine) {
  Source source;
  source.name = "Base";
  source.sql = SupplySql(false, "B", "FROM BaseSupplyList B WITH (NOLOCK)", "", "'01.01.3000'");
  source.bare = SupplyBare("b", "BaseSupplyList b", "", DayByHand(engine, 376'200));
  Finish(source, engine, "b");
  return source;
}

Source KindOfList(Engine engine, const std::string& name, std::int64_t kind) {
  Source source;
  source.name = name;
  const std::string list = std::to_string(kind);
  source.sql = SupplySql(false, "P",
                         "FROM SupplyLists P WITH (NOLOCK)\nINNER JOIN BaseSupplyList B WITH "
                         "(NOLOCK) ON P.SerialNumber = B.SerialNumber",
                         "P.KindList = " + list, "'01.01.3000'");
  source.bare =
      SupplyBare("p", "SupplyLists p join BaseSupplyList b on b.SerialNumber = p.SerialNumber",
                 "p.KindList = " + list, DayByHand(engine, 376'200));
  Finish(source, engine, "p");
  return source;
}

Source OnDay(Engine engine, const std::string& name, std::int32_t days) {
  Source source;
  source.name = name;
  source.sql = SupplySql(true, "B",
                         "FROM BaseSupplyListDates BSD WITH (NOLOCK)\nINNER JOIN BaseSupplyList B "
                         "WITH (NOLOCK) ON BSD.SerialNumber = B.SerialNumber",
                         "AvailableFromDate = " + Quoted(days), Quoted(days));
  source.bare = SupplyBare(
      "b", "BaseSupplyListDates d join BaseSupplyList b on b.SerialNumber = d.SerialNumber",
      "d.AvailableFromDate = " + DayByHand(engine, days), DayByHand(engine, days));
  Finish(source, engine, "d");
  return source;
}

Source UpToDay(Engine engine, std::int32_t days) {
  Source source;
  source.name = "UpToDay";
  source.sql = SupplySql(true, "B",
                         "FROM BaseSupplyListDates BSD WITH (NOLOCK)\nINNER JOIN BaseSupplyList B "
                         "WITH (NOLOCK) ON BSD.SerialNumber = B.SerialNumber",
                         "AvailableFromDate <= " + Quoted(days), Quoted(days));
  source.bare = SupplyBare(
      "b", "BaseSupplyList b",
      "exists (select 1 from BaseSupplyListDates d where d.SerialNumber = b.SerialNumber and"
      " d.AvailableFromDate <= " +
          DayByHand(engine, days) + ")",
      DayByHand(engine, days));
  Finish(source, engine, "b");
  return source;
}

Source KindUpToDay(Engine engine, const std::string& name, std::int64_t kind, std::int32_t days) {
  Source source;
  source.name = name;
  const std::string list = std::to_string(kind);
  source.sql = SupplySql(
      true, "P",
      "FROM SupplyListsDates SD WITH (NOLOCK)\nINNER JOIN SupplyLists P WITH (NOLOCK) ON "
      "(P.KindList = SD.KindList) AND (SD.SerialNumber = P.SerialNumber)\n"
      "INNER JOIN BaseSupplyList B WITH (NOLOCK) ON SD.SerialNumber = B.SerialNumber",
      "SD.KindList = " + list +
          " AND SD.AvailableFromDate in ( select max(AvailableFromDate) from SupplyListsDates WHERE"
          " SupplyListsDates.AvailableFromDate <= " +
          Quoted(days) + " AND SupplyListsDates.KindList = " + list + " )",
      Quoted(days));
  source.bare = SupplyBare(
      "p",
      "SupplyListsDates d join SupplyLists p on p.KindList = d.KindList and p.SerialNumber ="
      " d.SerialNumber join BaseSupplyList b on b.SerialNumber = d.SerialNumber",
      "d.KindList = " + list + " and d.AvailableFromDate = (select max(x.AvailableFromDate) from" +
          " SupplyListsDates x where x.KindList = " + list +
          " and x.AvailableFromDate <= " + DayByHand(engine, days) + ")",
      DayByHand(engine, days));
  Finish(source, engine, "d");
  return source;
}

Source Suppliers(Engine engine) {
  return {"Suppliers",
          "SELECT Partner, Name, Name2, SuppKindCurrency, \n KindSupplyChoice, KindSupplyList,"
          " SuppMaxTermOfPayment\nFROM Partners WITH(NOLOCK)\nWHERE PartnerTypeSupplier = 1\n",
          "select p.Partner, p.Name, p.Name2, p.SuppKindCurrency, p.KindSupplyChoice,"
          " p.KindSupplyList, p.SuppMaxTermOfPayment from Partners p where"
          " p.PartnerTypeSupplier = 1",
          "Name",
          "Partner",
          "p.FoldName, p.Partner",
          "p.FoldName",
          "p.Partner",
          "снабдител ",
          70'000'000,
          "набдит",
          engine,
          "PartnersParts",
          InParts(engine, "p.Partner", "Partners", "FoldName")};
}

std::vector<Source> Sources(Engine engine) {
  return {BaseList(engine),
          KindOfList(engine, "ListOfAll", kFullList),
          KindOfList(engine, "ListOfTen", kFewList),
          OnDay(engine, "OnDayOfAll", kManyDay),
          OnDay(engine, "OnDayOfTen", kFewDay),
          UpToDay(engine, kManyDay),
          KindUpToDay(engine, "ListOfAllUpToDay", kFullList, kManyDay),
          KindUpToDay(engine, "ListOfTenUpToDay", kFewList, kManyDay),
          Suppliers(engine)};
}

/// What a user does in the search, in the round `number`.
struct Question {
  std::string_view name;
  double budget;
  int rounds;
  std::string (*asked)(const Source&, int number);
  BareStatement (*byHand)(const Source&, int number);
};

std::string Digits(int number, std::size_t count) {
  return std::to_string(1'000'000 + number % 200'000).substr(1, count);
}

std::string CodeOf(const Source& source, int number) {
  return std::to_string(source.firstCode + 50'000 * (1 + number % 4));
}

/// In the middle of a name, of which there is one among the entries.
std::string PartOf(int number) {
  return Digits(number * 7919, 6).substr(1) + " ";
}

/// "abcd" has two; characters are of two bytes or one.
std::string TrigramsOf(const std::string& part) {
  std::vector<std::string> letters;
  for (const char c : part) {
    const bool begins = (static_cast<unsigned char>(c) & 0xC0u) != 0x80u;
    if (begins) letters.emplace_back();
    letters.back() += c;
  }
  std::string asked;
  for (std::size_t i = 0; i + 3 <= letters.size(); ++i)
    asked += (i == 0 ? "\"" : " AND \"") + letters[i] + letters[i + 1] + letters[i + 2] + "\"";
  return asked;
}

BareStatement ByHand(const Source& source, const std::string& condition,
                     std::vector<std::string> params, bool planned = false) {
  return {source.bare + condition + " order by " + source.order + " limit 81", std::move(params),
          planned};
}

constexpr Question kQuestions[] = {
    {"Open", 2.0, 101, [](const Source&, int) { return std::string(); },
     [](const Source& source, int) { return ByHand(source, "", {}); }},
    {"Begins", 2.0, 101,
     [](const Source& source, int number) {
       return " AND " + source.nameAsked + " LIKE '" + source.subject + Digits(number * 1000, 3) +
              "%'";
     },
     [](const Source& source, int number) {
       const std::string begin = source.subject + Digits(number * 1000, 3);
       return ByHand(source, " and " + source.fold + " >= ?1 and " + source.fold + " < ?2",
                     {begin, begin + "\xf4\x8f\xbf\xbf"});
     }},
    {"Code", 2.0, 101,
     [](const Source& source, int number) {
       return " AND " + source.codeAsked + " = " + CodeOf(source, number);
     },
     [](const Source& source, int number) {
       return ByHand(source, " and " + source.code + " = ?1", {CodeOf(source, number)});
     }},
    {"Anywhere", 2.0, 61,
     [](const Source& source, int number) {
       return " AND " + source.nameAsked + " LIKE '%" + PartOf(number) + "%'";
     },
     [](const Source& source, int number) {
       const std::string part = "%" + PartOf(number) + "%";
       if (source.engine == Engine::Postgres) {
         return ByHand(source, " and " + source.inParts, {part}, true);
       }
       return ByHand(source, " and " + source.inParts + " and " + source.fold + " like ?2",
                     {TrigramsOf(PartOf(number)), part});
     }},
    {"AnywhereCommon", 2.0, 61,
     [](const Source& source, int) {
       return " AND " + source.nameAsked + " LIKE '%" + source.common + "%'";
     },
     [](const Source& source, int) {
       const std::string part = "%" + source.common + "%";
       if (source.engine == Engine::Postgres)
         return ByHand(source, " and " + source.fold + " like ?1", {part}, true);
       // Whether a part is rare has to be found out by hand as well.
       return ByHand(source,
                     " and " + source.fold + " like ?1 and (select count(*) from (select 1 from " +
                         source.parts + " where " + source.parts + " match ?2 limit 1001)) > 1000",
                     {part, TrigramsOf(source.common)});
     }},
};

void Add(Stage& stage, const Source& source, const Question& question) {
  FetchRequest fetch;
  fetch.serverClass = system::kSearchClass;
  fetch.provider = system::kSearchProvider;
  fetch.rowLimit = 80;
  const auto page = std::make_shared<FetchRequest>(std::move(fetch));
  const auto round = std::make_shared<int>(0);
  const auto found = std::make_shared<std::size_t>(0);
  const Caller caller = stage.As("admin");
  const auto ours = [&stage, page, round, found, source, &question, caller] {
    page->sql = source.sql + question.asked(source, ++*round) + " ORDER BY " + source.nameAsked;
    return SecondsOnceNear(
        [&] { *found = Must(stage.InProcess().Fetch(caller, {*page})).front().rowCount; });
  };
  const auto bare = [&stage, round, found, source, &question] {
    const BareStatement statement = question.byHand(source, *round);
    std::int64_t rows = 0;
    const double seconds = SecondsOnceNear([&] { rows = stage.ByHand().Read({&statement, 1}); });
    if (std::min<std::int64_t>(rows, 80) != static_cast<std::int64_t>(*found)) {
      std::fprintf(stderr, "bench: %s/%s: %zu rows, %lld by hand\n", source.name.c_str(),
                   std::string(question.name).c_str(), *found, static_cast<long long>(rows));
      std::exit(1);
    }
    return seconds;
  };
  AddPair("Search/" + source.name + "/" + std::string(question.name) + "/" +
              (stage.Company().engine == Engine::Sqlite ? "sqlite" : "postgres"),
          question.budget, question.rounds, {ours, bare, stage.EmptyTransaction()});
}

}  // namespace
}  // namespace orvane::bench

int main(int argc, char** argv) {
  using namespace orvane;
  using namespace orvane::bench;
  spdlog::set_level(spdlog::level::warn);
  std::vector<std::unique_ptr<Stage>> stages;
  for (const Engine engine : EnginesAtHand()) {
    stages.push_back(std::make_unique<Stage>(OpenCompany(engine, SizesAsked().front())));
    for (const Source& source : Sources(engine)) {
      for (const Question& question : kQuestions)
        Add(*stages.back(), source, question);
    }
  }
  return RunPairs(argc, argv);
}
