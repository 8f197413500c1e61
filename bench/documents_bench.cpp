// Purchase requests on a company of every size asked for, on every engine at hand, against
// statements written by hand: loads, moves and posts over loopback, with the empty calls that carry
// them on the other side; pages of lists in-process against the statement alone. Sizes and places:
// company.h.

#include "bare/statements.h"
#include "contract/purchase_request.h"
#include "contract/system.h"
#include "document_pairs.h"
#include "report_pages.h"
#include "request_calls.h"

namespace orvane::bench {
namespace {

namespace request = purchase_request;

/// Some request or other, different from round to round.
std::int64_t Some(const Stage& stage, int round) {
  return 1 + std::int64_t{round} * 7919 % stage.Company().documents;
}

std::vector<BareStatement> RowsFound(const VariantArray& told) {
  if (!told.at(request::get_rec::kFound).AsBool().value_or(false)) return {};
  const DataPacket& head = *told.at(request::get_rec::kFirstPacket).AsPacket();
  return RowsOfRequest(head.At(0, request::head::POIdNumber.name).AsInt().value_or(0),
                       head.At(0, request::head::POVersion.name).AsInt().value_or(0));
}

Pair Loads(Stage& stage) {
  return LoadPair(
      stage, [&stage](int round) { return stage.Load("admin", Nav::ByKey, Some(stage, round)); },
      &RowsFound);
}

/// Forth and back in turn, from somewhere in the middle.
Pair MovesOf(Stage& stage, const std::string& login) {
  stage.As(login);
  return LoadPair(
      stage,
      [&stage, login](int round) {
        return stage.Load(login, round % 2 == 0 ? Nav::Next : Nav::Previous, Some(stage, round));
      },
      &RowsFound);
}
Pair MovesAmongAll(Stage& stage) {
  return MovesOf(stage, "admin");
}
Pair MovesAmongHalf(Stage& stage) {
  return MovesOf(stage, "marinov");
}
Pair MovesAmongOneInAThousand(Stage& stage) {
  return MovesOf(stage, "dobreva");
}

/// The load that a post begins with here stands for the one that follows it on the screen.
Pair RowPosts(Stage& stage) {
  const std::int64_t ours = EnteredRequest(stage.Company(), 0);
  const auto number = std::make_shared<int>(0);
  const auto history = std::make_shared<RowPost>();
  history->id = EnteredRequest(stage.Company(), 1);
  const Visitor visitor{stage.Remote(), stage.As("admin"), "admin"};
  const std::string series = std::to_string(SystemClock().Now().micros);
  const auto post = [visitor, ours, number, series] {
    PostRow(visitor, ours, series + "-" + std::to_string(++*number));
  };
  const std::string lines = "select count(*) from History";
  const std::int64_t before = stage.Company().Number(lines);
  post();
  history->history = stage.Company().Number(lines) - before;
  return {[post] { return Seconds(post); },
          WriteByHand(stage,
                      [history, number, series] {
                        history->quantity = 1 + *number % 2;
                        history->key = series + "-bare-" + std::to_string(*number);
                        return WritesOf(*history);
                      }),
          stage.EmptyTransaction()};
}

/// The first page of entries whose names begin so, in the order of their names.
Pair Names(Stage& stage) {
  FetchRequest fetch;
  fetch.serverClass = system::kSearchClass;
  fetch.provider = system::kSearchProvider;
  fetch.rowLimit = 80;
  const auto page = std::make_shared<FetchRequest>(std::move(fetch));
  const auto round = std::make_shared<int>(0);
  const auto begin = [](int number) {
    const std::string digits = std::to_string(1000 + number % 500);
    return "проба 0" + digits.substr(1, 2);
  };
  return {[&stage, page, round, begin] {
            page->sql = std::string(kSupplyListSearch) + " AND cbName LIKE '" + begin(++*round) +
                        "%' ORDER BY cbName";
            const Caller caller = stage.As("admin");
            return SecondsOnceNear([&] {
              const auto rows = Must(stage.InProcess().Fetch(caller, {*page}));
              if (rows.front().rowCount != 80) std::abort();
            });
          },
          [&stage, round, begin] {
            const BareStatement statement = EntriesThatBegin(begin(*round));
            return SecondsOnceNear([&] { stage.ByHand().Read({&statement, 1}); });
          },
          stage.EmptyTransaction()};
}

/// One page of the report under a filter.
Pair PageOf(Stage& stage, const ReportPage& filter) {
  FetchRequest fetch;
  fetch.serverClass = request::kReportClass;
  fetch.provider = request::report::dspResult.name;
  fetch.rowLimit = 80;
  fetch.sql = std::string(kReportSearch) + filter.asked;
  const auto page = std::make_shared<FetchRequest>(std::move(fetch));
  const Caller caller = stage.As("admin", Point::PurchaseRequestReport);
  return PagePair(
      stage, [&stage, page, caller] { Must(stage.InProcess().Fetch(caller, {*page})); },
      PageOfRequests(filter.byHand));
}

std::vector<NamedPair> Pages(Stage& stage) {
  std::vector<NamedPair> pages;
  for (const ReportPage& filter : ReportPages(stage.Company()))
    pages.push_back({"Page/" + filter.name, PageOf(stage, filter)});
  return pages;
}

constexpr BenchRow kBenches[] = {
    // name                   budget rounds
    {"Load", 2.0, 601, &Loads},
    {"MoveAmongAll", 2.0, 601, &MovesAmongAll},
    {"MoveAmongHalf", 2.0, 601, &MovesAmongHalf},
    {"MoveAmongOneInAThousand", 2.0, 601, &MovesAmongOneInAThousand},
    {"RowPost", 1.5, 201, &RowPosts},
    {"NamesThatBegin", 2.0, 301, &Names},
};
constexpr DocumentBench kBench{&OpenCompany, kBenches, &Pages};

}  // namespace
}  // namespace orvane::bench

int main(int argc, char** argv) {
  return orvane::bench::RunDocumentBench(orvane::bench::kBench, argc, argv);
}
