// Lookups whose rows arrive in portions: what is asked of the server, and how often.

#include "data/lookup_table.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "data/fake_server.h"
#include "data/lookup_completion.h"
#include "data/screen_fetch.h"
#include "packet/fold.h"

namespace orvane::data::test {
namespace {

constexpr auto kPartner = Code19("Partner", Key);
constexpr auto kName = String("Name", 30);
constexpr auto kLupPartner = String("lupPartner", 30, Joined);

/// The conditions of a request: a beginning of the name, or keys, or ranges of keys behind one key.
struct Conditions {
  explicit Conditions(const FetchRequest& request)
      : hasRanges(request.sql.find(">=") != std::string::npos) {
    for (const NamedValue& param : request.params) {
      if (!param.name.starts_with("Cond")) continue;
      if (const auto key = param.value.AsInt()) keys.push_back(*key);
      if (const std::string* text = param.value.AsString()) beginning = Fold(*text);
    }
    if (beginning.ends_with('%')) beginning.pop_back();
  }

  bool Take(std::int64_t code, const std::string& name) const {
    if (keys.empty() || !hasRanges) {
      const bool byKey = keys.empty() || std::ranges::find(keys, code) != keys.end();
      return byKey && Fold(name).starts_with(beginning);
    }
    if (code == keys[0]) return true;
    for (std::size_t i = 1; i + 1 < keys.size(); i += 2) {
      if (code >= keys[i] && code <= keys[i + 1]) return true;
    }
    return false;
  }

  bool hasRanges;
  std::vector<std::int64_t> keys;
  std::string beginning;
};

/// Answers as a server of the partners 1 to `count` would.
DataPacket Partners(const FetchRequest& request, int count) {
  DataPacket packet;
  packet.AddColumn("Partner", ValueKind::Code).AddColumn("Name", ValueKind::String, 30);
  const Conditions conditions(request);
  const int from = request.continuation.empty() ? 1 : std::stoi(request.continuation);
  for (int code = from; code <= count; ++code) {
    const std::string name = "Фирма " + std::to_string(code);
    if (!conditions.Take(code, name)) continue;
    if (packet.rowCount == static_cast<std::size_t>(request.rowLimit)) {
      packet.continuation = std::to_string(code);
      break;
    }
    packet.AppendRow(std::vector<Variant>{code, name});
  }
  return packet;
}

struct PartnerDesk : Desk {
  explicit PartnerDesk(int count = 500)
      : search(session, {11, 1}, "TsmSQL"),
        partners("cdsPartners", search, {kPartner, kName}),
        table(partners, "Partner") {
    table.SetTemplate({"SELECT p.Partner, p.Name FROM Partners p {$WN}", "{$W}", "{$O}"});
    table.portion = 10;
    server.answers = [count](const FetchRequest& request) { return Partners(request, count); };
    session.calls = 0;
  }
  std::string Narrowed(std::string_view field, SearchMatch match, std::string_view text,
                       std::size_t limit) {
    bool more = false;
    std::string found;
    for (const std::size_t row : table.Narrow(field, match, text, limit, &more))
      found += partners.TextAt(row, partners.FieldByName("Partner")) + " ";
    return found + (more ? "more" : "");
  }

  TVosSQLConnection search;
  TVosClientDataSet partners;
  TLookupTable table;
};

TEST(LookupTable, OpensWithAPortionOrderedByKey) {
  PartnerDesk desk;
  desk.table.Fill();
  const FetchRequest& request = desk.server.fetches.back()[0];
  EXPECT_EQ(request.provider, "dspSQL");
  EXPECT_EQ(request.rowLimit, 10);
  EXPECT_EQ(request.sql,
            "SELECT p.Partner, p.Name FROM Partners p WITH(NOLOCK)\n\nORDER BY p.Partner");
  EXPECT_EQ(desk.partners.RecordCount(), 10u);
  EXPECT_TRUE(desk.partners.HasMore());
  EXPECT_FALSE(desk.search.Connected());
}

TEST(LookupTable, AsksForAKeyOnceAndRemembersThatThereIsNone) {
  PartnerDesk desk;
  struct Row {
    Variant key;
    bool found;
    int calls;
  };
  const Row kRows[] = {
      {450, true, 1},  // stale: portion and key in one call
      {450, true, 0},  {3, true, 0},    {451, true, 1},
      {999, false, 1}, {999, false, 0}, {Variant(), false, 0},
  };
  for (const Row& row : kRows) {
    const auto before = desk.session.calls;
    EXPECT_EQ(desk.table.LocateKey(row.key), row.found) << row.key.ToText();
    EXPECT_EQ(desk.session.calls - before, row.calls) << row.key.ToText();
    EXPECT_EQ(row.found && desk.partners[kPartner].Value() != row.key, false);
  }
  EXPECT_EQ(desk.partners.RecordCount(), 12u);
}

TEST(LookupTable, AWholeTableIsNeverAskedAgain) {
  PartnerDesk desk(7);
  desk.table.Fill();
  EXPECT_FALSE(desk.table.LocateKey(999));
  EXPECT_EQ(desk.Narrowed("Name", SearchMatch::Contains, "МА 3", 80), "3 ");
  EXPECT_EQ(desk.Narrowed("Partner", SearchMatch::Begins, "", 3), "1 2 3 more");
  EXPECT_EQ(desk.session.calls, 1);
}

TEST(LookupTable, ALaterPortionBringsNoRowTwice) {
  PartnerDesk desk;
  desk.table.LocateKey(15);
  desk.table.FetchMore();
  EXPECT_EQ(desk.partners.RecordCount(), 20u);
  EXPECT_TRUE(desk.partners.HasMore());
}

TEST(LookupTable, TypingNarrowsOnTheServerAndAddsWhatItFinds) {
  PartnerDesk desk;
  desk.table.Fill();
  EXPECT_EQ(desk.Narrowed("Name", SearchMatch::Begins, "фирма 45", 80),
            "45 450 451 452 453 454 455 456 457 458 459 ");
  EXPECT_EQ(desk.Narrowed("Name", SearchMatch::Begins, "фирма 4", 3), "4 40 41 more");
  EXPECT_EQ(desk.server.fetches.back()[0].rowLimit, 3);
  EXPECT_EQ(desk.Narrowed("Partner", SearchMatch::Begins, "45", 80),
            "45 450 451 452 453 454 455 456 457 458 459 ");
  EXPECT_EQ(desk.server.fetches.back()[0].params.size(), 35u);  // ranges of 3 to 19 digits
  const auto calls = desk.session.calls;
  EXPECT_EQ(desk.Narrowed("Partner", SearchMatch::Begins, "4x", 80), "");
  EXPECT_EQ(desk.session.calls, calls);
  EXPECT_TRUE(desk.table.LocateKey(457));
  EXPECT_EQ(desk.session.calls, calls);
}

TEST(LookupTable, AChangedParameterOrTemplateMakesItStale) {
  PartnerDesk desk;
  desk.table.SetParam("Supplier", 1);
  desk.table.Fill();
  desk.table.SetParam("supplier", 1);
  EXPECT_FALSE(desk.table.IsStale());
  desk.table.SetTemplate(desk.table.dlgSQL);
  EXPECT_FALSE(desk.table.IsStale());
  desk.table.SetParam("supplier", 2);
  EXPECT_TRUE(desk.table.IsStale());
  const auto calls = desk.session.calls;
  desk.table.FillIfStale();
  desk.table.FillIfStale();
  EXPECT_EQ(desk.session.calls - calls, 1);
  EXPECT_EQ(*FindValue(desk.server.fetches.back()[0].params, "Supplier"), Variant(2));
  desk.table.SetTemplate({"SELECT Partner, Name FROM Partners", "{$O}"});
  EXPECT_TRUE(desk.table.IsStale());
}

TEST(LookupTable, RowsShownAreKnownButNotOffered) {
  PartnerDesk desk;
  DataPacket shown;
  shown.AddColumn("Partner", ValueKind::Code).AddColumn("Name", ValueKind::String, 30);
  shown.AppendRow(std::vector<Variant>{450, "Стара фирма"});
  desk.table.TakeShown(shown);
  EXPECT_EQ(desk.table.ValueOf(450, "Name"), Variant("Стара фирма"));
  EXPECT_FALSE(desk.table.Knows(451));
  EXPECT_TRUE(desk.table.ValueOf(451, "Name").IsNull());
  EXPECT_EQ(desk.session.calls, 0);
  desk.table.Fill();
  EXPECT_EQ(desk.partners.RecordCount(), 10u);
  EXPECT_EQ(desk.table.ValueOf(450, "Name"), Variant("Стара фирма"));
  EXPECT_EQ(desk.table.ValueOf(5, "Name"), Variant("Фирма 5"));
  EXPECT_TRUE(desk.table.LocateKey(450));
  EXPECT_EQ(desk.table.ValueOf(450, "Name"), Variant("Фирма 450"));  // what is offered is newer
  desk.table.Forget();
  EXPECT_TRUE(desk.partners.IsEmpty());
  EXPECT_TRUE(desk.table.IsStale());
}

TEST(LookupTable, WithoutAStatementNothingIsOfferedOrAsked) {
  PartnerDesk desk;
  desk.table.Fill();
  desk.table.SetTemplate({});
  EXPECT_FALSE(desk.table.LocateKey(5));
  EXPECT_EQ(desk.Narrowed("Name", SearchMatch::Begins, "Фирма", 80), "");
  EXPECT_EQ(desk.session.calls, 1);
}

TEST(LookupTable, AStatementWithoutPlaceForConditionsIsReadToItsEnd) {
  PartnerDesk desk(25);
  desk.table.SetTemplate({"SELECT Partner, Name FROM Partners ORDER BY Partner"});
  EXPECT_TRUE(desk.table.LocateKey(21));
  EXPECT_FALSE(desk.table.LocateKey(26));
  EXPECT_EQ(desk.session.calls, 3);
}

TEST(LookupCompletion, FetchesWhatAllRowsMissInOneCall) {
  PartnerDesk desk;
  TVosClientDataSet orders("cdsOrders", {kPartner});
  orders.AddLookup(kLupPartner, desk.partners, "Partner", "Partner", "Name");
  FetchTogether({&desk.table}, {});
  DataPacket packet;
  packet.AddColumn("Partner", ValueKind::Code);
  for (const int code : {5, 450, 450, 451, 999})
    packet.AppendRow(std::vector<Variant>{code});
  packet.AppendRow(std::vector<Variant>{Variant()});
  orders.LoadPacket(packet);
  const TField& lookup = orders[kLupPartner];
  EXPECT_EQ(orders.TextAt(1, lookup), "");
  desk.session.calls = 0;
  CompleteLookups({{orders, "lupPartner", desk.table}});
  EXPECT_EQ(orders.TextAt(0, lookup), "Фирма 5");
  EXPECT_EQ(orders.TextAt(2, lookup), "Фирма 450");
  EXPECT_EQ(orders.TextAt(3, lookup), "Фирма 451");
  EXPECT_EQ(orders.TextAt(4, lookup), "");
  CompleteLookups({{orders, "lupPartner", desk.table}});
  EXPECT_EQ(desk.session.calls, 1);
  EXPECT_FALSE(desk.search.Connected());
}

}  // namespace
}  // namespace orvane::data::test
