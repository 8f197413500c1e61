// Several users do thousands of random things; a plain model in memory says beforehand what must
// come of each. In the end table, history and keys must agree with the model, on every engine.

#include <iostream>
#include <map>
#include <random>
#include <set>

#include "server/check/check.h"
#include "server/server_case.h"
#include "support/seed.h"

namespace orvane::server {
namespace {

constexpr int kOperations = 2000;
constexpr int kHighestCode = 40;
const std::string kLogins[] = {"ivanova", "petrov", "georgieva", "dimitrov"};

using Row = std::map<std::string, Variant>;

/// What the rules say should be there.
struct Model {
  std::map<int, Row> departments;
  std::map<std::string, int> rights;
  std::set<std::string> blocked;
  std::map<int, std::string> params;
  std::size_t applied = 0;

  bool Knows(const Variant& login) const { return rights.contains(login.ToText()); }

  /// The outcome of a change, carried out in the model when it is "ok".
  std::string Try(const std::string& user, const Change& change) {
    const int bit = change.kind == ChangeKind::Insert   ? 4
                    : change.kind == ChangeKind::Update ? 2
                                                        : 8;
    if ((rights.at(user) & bit) == 0) return "NoRight";
    for (const NamedValue& value : change.after) {
      if (value.value.IsEmpty() && value.name != "Name2") return "Refused";
    }
    if (change.kind == ChangeKind::Insert) return Insert(change);
    const auto found =
        departments.find(static_cast<int>(*FindValue(change.before, "Code")->AsInt()));
    if (found == departments.end()) return "Conflict";
    for (const NamedValue& old : change.before) {
      if (!(found->second[old.name] == old.value)) return "Conflict";
    }
    if (change.kind == ChangeKind::Delete) {
      departments.erase(found);
    } else {
      Row row = found->second;
      for (const NamedValue& value : change.after)
        row[value.name] = value.value;
      const int code = static_cast<int>(*row["Code"].AsInt());
      if (code != found->first && departments.contains(code)) return "Refused";
      if (!Knows(row["Chief"])) return "Refused";
      departments.erase(found);
      departments[code] = row;
    }
    ++applied;
    return "ok";
  }

 private:
  std::string Insert(const Change& change) {
    Row row;
    for (const NamedValue& value : change.after)
      row[value.name] = value.value;
    const int code = static_cast<int>(*row["Code"].AsInt());
    if (departments.contains(code) || !Knows(row["Chief"])) return "Refused";
    departments[code] = row;
    ++applied;
    return "ok";
  }
};

class Random : public ServerCase {
 protected:
  Random() : server(GetParam()) {
    for (const std::string& login : kLogins) {
      server.AddUser(login);
      sessions[login] = server.LogIn(login);
      model.rights[login] = kAllRights;
    }
  }

  int Below(int limit) { return std::uniform_int_distribution<int>(0, limit - 1)(engine); }
  bool Chance(int percent) { return Below(100) < percent; }
  const std::string& AnyLogin() { return kLogins[Below(static_cast<int>(std::size(kLogins)))]; }

  Variant AnyName() {
    return Chance(95) ? Variant("Име " + std::to_string(Below(1000))) : Variant(" ");
  }
  Variant AnyChief() { return Chance(95) ? Variant(AnyLogin()) : Variant("nobody"); }
  int FreeCode() {
    int code = 1 + Below(kHighestCode);
    for (int i = 0; i < kHighestCode && Chance(90) && model.departments.contains(code); ++i) {
      code = 1 + code % kHighestCode;
    }
    return code;
  }
  /// A row that is there, most of the time.
  Row AnyRow() {
    if (model.departments.empty() || Chance(5)) {
      return {{"Code", 99}, {"Name", "Х"}, {"Name2", Variant()}, {"Chief", "petrov"}};
    }
    auto row = model.departments.begin();
    std::advance(row, Below(static_cast<int>(model.departments.size())));
    return row->second;
  }

  Change AnyInsert() {
    return InsertOf({{"Code", FreeCode()},
                     {"Name", AnyName()},
                     {"Name2", Chance(50) ? Variant() : Variant("Name")},
                     {"Chief", AnyChief()}});
  }
  Change AnyUpdate() {
    Row row = AnyRow();
    Change change = UpdateOf({{"Code", row["Code"]}}, {});
    const auto put = [&](const std::string& column, const Variant& value) {
      change.before.push_back({column, Chance(97) ? row[column] : Variant("старо")});
      change.after.push_back({column, value});
    };
    put("Name", AnyName());
    if (Chance(40))
      put("Name2", Chance(50) ? Variant() : Variant("Name " + std::to_string(Below(9))));
    if (Chance(40)) put("Chief", AnyChief());
    if (Chance(5)) change.after.push_back({"Code", FreeCode()});
    return change;
  }
  Change AnyDelete() {
    Row row = AnyRow();
    Change change = DeleteOf({});
    for (const auto& [name, value] : row)
      change.before.push_back({name, value});
    return change;
  }
  Change AnyChange() {
    const int kind = Below(3);
    return kind == 0 ? AnyInsert() : kind == 1 ? AnyUpdate() : AnyDelete();
  }

  std::string Fetched(const std::string& user) {
    const auto packets = server->Fetch(sessions[user].At(Point::Departments), {DepartmentFetch()});
    if (!packets) return Outcome(packets);
    return packets->front().rowCount == model.departments.size() ? "ok" : "wrong number of rows";
  }

  std::string Applied(const std::string& user, const Delta& delta, int maxErrors) {
    const auto answer =
        server->Apply(sessions[user].At(Point::Departments), DepartmentApply(delta, maxErrors));
    if (!answer) return Outcome(answer);
    std::string text;
    for (const ChangeOutcome& outcome : answer->outcomes) {
      text += (text.empty() ? "" : " ") + Outcome(outcome);
    }
    return text;
  }

  std::string PredictedApply(const std::string& user, const Delta& delta, int maxErrors) {
    Model after = model;
    std::string text;
    bool failed = false;
    for (std::size_t i = 0; i < delta.size(); ++i) {
      const std::string outcome = after.Try(user, delta[i]);
      text += (text.empty() ? "" : " ") + outcome;
      if (outcome == "ok" || maxErrors == -1) continue;
      text.clear();
      for (std::size_t j = 0; j < delta.size(); ++j) {
        text += (j == 0 ? "" : " ") + (j == i ? outcome : std::string("-"));
      }
      failed = true;
      break;
    }
    if (!failed) model = after;
    return text;
  }

  /// One operation; expected and actual outcome.
  struct Step {
    std::string kind;
    std::string expected;
    std::string actual;
  };
  Step Write(const std::string& kind, const std::string& user, const Delta& delta, int maxErrors) {
    Step step{kind, "SessionEnded", {}};
    if (!model.blocked.contains(user)) step.expected = PredictedApply(user, delta, maxErrors);
    step.actual = Applied(user, delta, maxErrors);
    if (delta.size() == 1 && step.actual == "ok") done.push_back({user, delta.front()});
    return step;
  }
  Step Repeat() {
    if (done.empty()) return {"repeat", "ok", "ok"};
    const auto& [user, change] =
        done[static_cast<std::size_t>(Below(static_cast<int>(done.size())))];
    const std::string expected = model.blocked.contains(user) ? "SessionEnded" : "ok";
    return {"repeat", expected, Applied(user, {change}, 0)};
  }
  Step Grant() {
    const std::string user = AnyLogin();
    const int rights = Chance(75) ? kAllRights : Below(16);
    model.rights[user] = rights;
    const auto granted =
        server.Admin().Grant(user, static_cast<std::int32_t>(Point::Departments), rights);
    return {"grant", "ok", Outcome(granted)};
  }
  Step Block() {
    const bool unblock = !model.blocked.empty();
    const std::string user = unblock ? *model.blocked.begin() : AnyLogin();
    unblock ? static_cast<void>(model.blocked.erase(user))
            : static_cast<void>(model.blocked.insert(user));
    return {"block", "ok", Outcome(server.Admin().SetBlocked(user, !unblock))};
  }
  Step StoreParam(const std::string& user) {
    constexpr int kNumbers[] = {9, 16, 17, 18, 19, 20, 22};  // those that refer to no register
    const int number = kNumbers[Below(7)];
    const Variant seen = model.params.contains(number) ? Variant(model.params[number]) : Variant();
    const std::string value = Chance(90) ? std::to_string(Below(100)) : "не е число";
    std::string expected = "ok";
    if (model.blocked.contains(user)) {
      expected = "SessionEnded";
    } else if (number > 19 || value == "не е число") {
      expected = "Refused";
    } else {
      model.params[number] = value;
      ++model.applied;
    }
    return {"parameter", expected,
            Outcome(server->Call(
                sessions[user].At(Point::Parameters),
                {"TsmParameters", "SetParam", {11, number, value, seen}, NewClientKey()}))};
  }
  Step Fetch(const std::string& user) {
    const bool may = (model.rights[user] & 1) != 0;
    const std::string expected = model.blocked.contains(user) ? "SessionEnded"
                                 : may                        ? "ok"
                                                              : "NoRight";
    return {"fetch", expected, Fetched(user)};
  }
  Step Any() {
    const std::string user = AnyLogin();
    const auto several = [&] {
      Delta delta;
      for (int i = 2 + Below(3); i > 0; --i)
        delta.push_back(AnyChange());
      return delta;
    };
    switch (Below(13)) {
      case 0:
        return Fetch(user);
      case 1:
      case 2:
      case 3:
        return Write("insert", user, {AnyInsert()}, 0);
      case 4:
      case 5:
        return Write("update", user, {AnyUpdate()}, 0);
      case 6:
      case 7:
        return Write("delete", user, {AnyDelete()}, 0);
      case 8:
        return Write("all or nothing", user, several(), 0);
      case 9:
        return Write("each by itself", user, several(), -1);
      case 10:
        return Repeat();
      case 11:
        return Chance(50) ? Grant() : Block();
      default:
        return StoreParam(user);
    }
  }

  std::string ModelText() const {
    std::string text;
    for (const auto& [code, row] : model.departments) {
      text += (text.empty() ? "" : "; ") + std::to_string(code) + " " + row.at("Name").ToText() +
              " " + row.at("Chief").ToText();
    }
    return text;
  }

  TestServer server;
  Model model;
  std::map<std::string, TestSession> sessions;
  std::vector<std::pair<std::string, Change>> done;
  std::mt19937 engine;
};
INSTANTIATE_TEST_SUITE_P(Engines, Random, testing::ValuesIn(TestEngines()), TestEngineName);

TEST_P(Random, ThingsComeOutAsTheRulesSay) {
  const unsigned seed = Seed();
  engine.seed(seed);
  std::map<std::string, int> counts;
  int succeeded = 0;
  for (int i = 0; i < kOperations; ++i) {
    const Step step = Any();
    ASSERT_EQ(step.actual, step.expected) << step.kind << ", operation " << i << ", seed " << seed;
    ++counts[step.kind];
    if (step.expected.find_first_of("CNRS-B") == std::string::npos) ++succeeded;
  }
  EXPECT_EQ(Departments(server), ModelText());
  EXPECT_EQ(server.Value("select count(*) from ClientKey", ValueKind::Code).AsInt(),
            static_cast<std::int64_t>(model.applied));
  for (const auto& [number, value] : model.params) {
    EXPECT_EQ(server
                  .Value("select Value from Params where ParamGroup = 11 and Number = ?1",
                         ValueKind::String, {number})
                  .ToText(),
              value);
  }
  const auto findings = CheckDatabase(server.Base(), server.Time().Now());
  ASSERT_TRUE(findings);
  EXPECT_EQ(*findings, std::vector<std::string>{});
  std::cout << succeeded << " of " << kOperations << " succeeded";
  for (const auto& [kind, count] : counts) {
    std::cout << ", " << kind << ' ' << count;
    EXPECT_GE(count, 50) << kind;
  }
  std::cout << '\n';
  EXPECT_GE(succeeded, kOperations / 2);
}

}  // namespace
}  // namespace orvane::server
