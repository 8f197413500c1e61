#include "server/server_case.h"

namespace orvane::server {
namespace {

class Requests : public ServerCase {
 protected:
  Requests() : server(GetParam()) {
    server.AddUser("ivanova");
    ivanova = server.LogIn("ivanova");
  }
  Answer<VariantArray> Params(const std::string& method, VariantArray arguments,
                              Point point = Point::Parameters) {
    return server->Call(ivanova.At(point),
                        {"TsmParameters", method, std::move(arguments), NewClientKey()});
  }
  /// "1=5 9=0,5".
  std::string Group(int group) {
    const auto answer = Params("GetParams", {group}, Point::Deliveries);
    if (!answer) return Outcome(answer);
    std::string text;
    for (const Variant& pair : *(*answer)[0].AsArray()) {
      text += (text.empty() ? "" : " ") + (*pair.AsArray())[0].ToText() + "=" +
              (*pair.AsArray())[1].ToText();
    }
    return text;
  }

  TestServer server;
  TestSession ivanova;
};
INSTANTIATE_TEST_SUITE_P(Engines, Requests, testing::ValuesIn(TestEngines()), TestEngineName);

TEST_P(Requests, ParametersAreKeptOncePerCompany) {
  server.SetParam(1, 80, "2");
  EXPECT_EQ(Group(1), "80=2");
  EXPECT_EQ(Group(11), "");
  EXPECT_EQ(Outcome(Params("SetParam", {11, 9, "0,5", Variant()})), "ok");
  EXPECT_EQ(Outcome(Params("SetParam", {11, 16, "5", ""})), "ok");
  EXPECT_EQ(Group(11), "9=0,5 16=5");
  EXPECT_EQ(Outcome(Params("SetParam", {11, 9, Variant(), "0,5"})), "ok");
  EXPECT_EQ(Group(11), "16=5");
  EXPECT_EQ(Outcome(Params("SetParam", {11, 16, "6", "5"}, Point::Departments)), "NoRight");
  EXPECT_EQ(Outcome(Params("SetParam", {1, 80, "3", Variant()})), "Refused");
  EXPECT_EQ(Outcome(Params("SetParam", {11, 20, "3", Variant()})), "Refused");
  EXPECT_EQ(Outcome(Params("SetParam", {11, 16, "6"})), "BadRequest");
  EXPECT_EQ(Outcome(Params("SetParam", {11, 16, 6, "5"})), "BadRequest");
  EXPECT_EQ(Outcome(Params("GetParams", {})), "BadRequest");
  const auto point = static_cast<std::int32_t>(Point::Parameters);
  ASSERT_TRUE(server.Admin().Grant("ivanova", point, 1));
  EXPECT_EQ(Outcome(Params("SetParam", {11, 16, "7", "5"})), "NoRight");
  EXPECT_EQ(Group(11), "16=5") << "reading needs no right";
  EXPECT_EQ(server
                .Value("select count(*) from History where TableName = 'Params' and RowKey = "
                       "'11/9'",
                       ValueKind::Code)
                .AsInt(),
            2);
}

TEST_P(Requests, WhatTheServerDoesNotKnowIsABadRequest) {
  const Caller caller = ivanova.At(Point::Departments);
  FetchRequest fetch = DepartmentFetch();
  fetch.params = {{"FirstLanguage", true}};
  EXPECT_EQ(Outcome(server->Fetch(caller, {fetch})), "BadRequest");
  fetch = DepartmentFetch();
  fetch.provider = "dspNone";
  EXPECT_EQ(Outcome(server->Fetch(caller, {fetch})), "BadRequest");
  fetch = DepartmentFetch();
  fetch.serverClass = "TsmNone";
  EXPECT_EQ(Outcome(server->Fetch(caller, {fetch})), "BadRequest");
  fetch = DepartmentFetch();
  fetch.rowLimit = -1;
  EXPECT_EQ(Outcome(server->Fetch(caller, {fetch})), "BadRequest");
  EXPECT_EQ(Outcome(server->Fetch(caller, std::vector<FetchRequest>(65, DepartmentFetch()))),
            "BadRequest");
  EXPECT_EQ(Outcome(server->Call(caller, {"TsmDepartment", "None", {}})), "BadRequest");
  EXPECT_EQ(Outcome(server->Apply(caller, {"TsmSQL", "dspSQL", 0, {}, {}})), "BadRequest");
}

TEST_P(Requests, SearchStatementsReadWhatTheSessionMay) {
  ASSERT_TRUE(server->Apply(ivanova.At(Point::Departments),
                            DepartmentApply({InsertOf(Department(1, "Една", "ivanova"))})));
  const auto search = [&](const std::string& sql, NamedValues params = {},
                          std::int32_t rowLimit = 0) -> std::string {
    FetchRequest request;
    request.serverClass = "TsmSQL";
    request.provider = "dspSQL";
    request.sql = sql;
    request.params = std::move(params);
    request.rowLimit = rowLimit;
    const auto packets = server->Fetch(ivanova.At(Point::Departments), {request});
    if (!packets) return Outcome(packets);
    std::string text;
    for (std::size_t row = 0; row < packets->front().rowCount; ++row) {
      if (row > 0) text += ' ';
      text += packets->front().At(row, std::size_t{0}).ToText();
    }
    return text;
  };
  EXPECT_EQ(search("select ShortName,UserName,UserName2 \nfrom WSysUsers WITH(NOLOCK)\n\n"),
            "ivanova");
  EXPECT_EQ(search("SELECT Element, Name, Name2 \nFROM NomIn WITH (NOLOCK)\nWHERE Nomenclature = "
                   ":Nom\nORDER BY Element",
                   {{"Nom", 90}}),
            "1 2 3");
  EXPECT_EQ(search("SELECT Element FROM NomIn WHERE Nomenclature = :Nom ORDER BY Element",
                   {{"Nom", 249}}, 3),
            "0 1 2");
  EXPECT_EQ(search("select PasswordHash from WSysUsers"), "BadRequest");
  EXPECT_EQ(search("select TicketHash from Session"), "BadRequest");
  EXPECT_EQ(search("delete from Department"), "BadRequest");
}

TEST_P(Requests, SearchAndProviderMayTravelTogether) {
  FetchRequest search;
  search.serverClass = "TsmSQL";
  search.provider = "dspSQL";
  search.sql = "select ShortName from WSysUsers";
  const auto packets =
      server->Fetch(ivanova.At(Point::Departments), {search, DepartmentFetch(), search});
  ASSERT_TRUE(packets) << packets.GetFailure().message;
  ASSERT_EQ(packets->size(), 3u);
  EXPECT_EQ((*packets)[0].rowCount, 1u);
  EXPECT_EQ((*packets)[1].columns.size(), 4u);
  EXPECT_EQ((*packets)[2].rowCount, 1u);
}

}  // namespace
}  // namespace orvane::server
