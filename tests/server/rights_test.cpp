// Who may do what from where: every provider and method of every server class, from every point,
// against rules written by hand. A class, provider or method that is new has no rule here and
// fails.

#include <algorithm>
#include <optional>
#include <vector>

#include "server/classes/server_classes.h"
#include "server/providers/server_class.h"
#include "server/server_case.h"

namespace orvane::server {
namespace {

struct OwnPoint {
  std::string_view serverClass;
  std::vector<Point> points;
};

/// Where the rights one has are for everything.
const OwnPoint kWhole[] = {
    {"TsmDepartment", {Point::Departments}},
    {"TsmKindSupplies", {Point::KindSupplies}},
    {"TsmEmployeesFinSupp", {Point::EmployeesFinSupp}},
    {"TsmParameters", {Point::Parameters}},
    {"TsmStructure", {Point::Structure}},
    {"TsmStructureDeputies",
     {Point::StructureDeputies, Point::Structure, Point::AdmissibleNotifiers}},
    {"TsmLevelsApproval", {Point::LevelsApproval}},
    {"TsmCapExPlan", {Point::CapExPlan}},
    {"TsmAdmissibleNotifiers", {Point::AdmissibleNotifiers}},
    {"TsmSuppliesContracts", {Point::SuppliesContracts}},
    {"TsmPurchaseOrder", {Point::PurchaseRequests}},
    {"TsmPurchaseOrderReport", {Point::PurchaseRequests}},
    {"TsmSuppManifacOrder", {Point::SupplierOrders}},
    {"TsmSuppManifacOrderReport", {Point::SupplierOrders}},
};
/// Where one only looks on.
const OwnPoint kReads[] = {
    {"TsmPurchaseOrder", {Point::ApprovalQueue}},
    {"TsmPurchaseOrderReport", {Point::ApprovalQueue, Point::PurchaseRequestReport}},
    {"TsmSuppManifacOrder", {Point::ApprovalQueue, Point::PurchaseRequests}},
};
/// Where one decides, with edit.
const OwnPoint kDecides[] = {
    {"TsmPurchaseOrder", {Point::ApprovalQueue}},
    {"TsmSuppManifacOrder", {Point::ApprovalQueue}},
};
constexpr std::string_view kDecisions[] = {"dspPurchaseOrderAdm", "dspSuppManOrderAdmin"};
/// Whatever the point and the rights, for a living session.
constexpr std::string_view kAnybodys[] = {"GetParams", "GetCurremtEmployee", "CountWaiting",
                                          "dspSQL", "dspUseForDialogSearch"};
struct MethodRight {
  std::string_view serverClass;
  std::string_view method;
  Right right;
};
constexpr MethodRight kMethods[] = {
    {"TsmParameters", "SetParam", Right::Edit},
    {"TsmPurchaseOrderReport", "Operations", Right::Insert},  // new versions and copies
    {"TsmPurchaseOrder", "Operations", Right::Open},
    {"TsmSuppliesContracts", "Operations", Right::Open},
    {"TsmCapExPlan", "GetRecord", Right::Open},
    {"TsmSuppManifacOrder", "GetParams", Right::Open},
    {"TsmSuppManifacOrder", "GetRecord", Right::Open},
    {"TsmSuppManifacOrderReport", "GetParams", Right::Open},
    {"TsmSuppManifacOrderReport", "GetReport", Right::Open},
};

enum class Deed { Fetch, Insert, Update, Delete, Annul, Call };

struct Asked {
  const ServerClass& serverClass;
  std::string_view name;  ///< of the provider or method
  Deed deed;
};

bool Stands(std::span<const OwnPoint> rules, std::string_view serverClass, Point point) {
  return std::any_of(rules.begin(), rules.end(), [&](const OwnPoint& rule) {
    return rule.serverClass == serverClass &&
           std::find(rule.points.begin(), rule.points.end(), point) != rule.points.end();
  });
}

bool Among(std::span<const std::string_view> names, std::string_view name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

/// The right that is asked of the user at the point; None when it is anybody's, nothing when the
/// point is no place for it.
std::optional<Right> RightAsked(const Asked& asked, Point point) {
  const std::string_view own = asked.serverClass.Name();
  const bool whole = Stands(kWhole, own, point);
  const bool looks = whole || Stands(kReads, own, point);
  const auto at = [](bool good, Right right) { return good ? std::optional(right) : std::nullopt; };
  const auto method = std::find_if(std::begin(kMethods), std::end(kMethods), [&](const auto& row) {
    return row.serverClass == own && row.method == asked.name;
  });
  switch (asked.deed) {
    case Deed::Call:
      if (method != std::end(kMethods)) {
        return at(method->right == Right::Open ? looks : whole, method->right);
      }
      return at(Among(kAnybodys, asked.name), Right::None);
    case Deed::Fetch:
      if (Among(kAnybodys, asked.name)) return Right::None;
      return at(looks, Right::Open);
    case Deed::Insert:
      return at(whole, Right::Insert);
    case Deed::Delete:
    case Deed::Annul:
      return at(whole, Right::Delete);
    case Deed::Update:
      break;
  }
  if (!Among(kDecisions, asked.name)) return at(whole, Right::Edit);
  const bool ordersOwn = own == "TsmSuppManifacOrder" && whole;
  return at(whole || Stands(kDecides, own, point), ordersOwn ? Right::Open : Right::Edit);
}

class Rights : public testing::TestWithParam<Engine> {
 protected:
  Rights() : server(GetParam()) {
    for (int rights = 1; rights <= kAllRights; ++rights)
      server.AddUser(Login(rights), rights);
  }
  static std::string Login(int rights) { return "user" + std::to_string(rights); }
  const TestSession& With(int rights) {
    auto& session = sessions[static_cast<std::size_t>(rights)];
    if (session.info.ticket.empty()) session = server.LogIn(Login(rights));
    return session;
  }

  /// "NoRight" or whatever else came of it.
  std::string Try(const Asked& asked, Point point, int rights) {
    const Caller caller = With(rights).At(point);
    const std::string own(asked.serverClass.Name());
    const std::string name(asked.name);
    if (asked.deed == Deed::Call) return Outcome(server->Call(caller, {own, name, {}}));
    if (asked.deed == Deed::Fetch) {
      FetchRequest fetch;
      fetch.serverClass = own;
      fetch.provider = name;
      return Outcome(server->Fetch(caller, {fetch}));
    }
    const Change change = asked.deed == Deed::Insert   ? InsertOf({})
                          : asked.deed == Deed::Update ? UpdateOf({}, {})
                          : asked.deed == Deed::Delete
                              ? DeleteOf({})
                              : UpdateOf({}, {{"AnnulOn", server.Time().Now()}});
    const auto answer = server->Apply(caller, {own, name, 0, {}, {change}});
    if (!answer || !answer->outcomes[0].failure) return Outcome(answer);
    return Outcome(Answer<Done>(*answer->outcomes[0].failure));
  }

  void Check(const Asked& asked) {
    for (int number = 0; number <= static_cast<int>(std::size(kPoints)) + 1; ++number) {
      const auto point = static_cast<Point>(number);
      const std::string where =
          std::string(asked.serverClass.Name()) + "." + std::string(asked.name) + " " +
          std::to_string(static_cast<int>(asked.deed)) + " from " + std::to_string(number);
      const std::optional<Right> right = RightAsked(asked, point);
      EXPECT_EQ(Try(asked, point, kAllRights) == "NoRight", !right) << where;
      if (!right || *right == Right::None) continue;
      const int bit = static_cast<int>(*right);
      EXPECT_NE(Try(asked, point, bit), "NoRight") << where << ", with nothing but the right";
      EXPECT_EQ(Try(asked, point, kAllRights - bit), "NoRight") << where << ", without the right";
    }
  }

  TestServer server;
  TestSession sessions[kAllRights + 1];
};
INSTANTIATE_TEST_SUITE_P(Engines, Rights, testing::ValuesIn(TestEngines()), TestEngineName);

TEST_P(Rights, AreThoseOfTheTableForEveryProviderAndMethodFromEveryPoint) {
  for (const ServerClass& own : MakeServerClasses()) {
    for (const ProviderRow& provider : own.Providers()) {
      const std::string_view name = provider.def.name;
      if (provider.search || !provider.select.empty()) Check({own, name, Deed::Fetch});
      if (!provider.def.Writable()) continue;
      for (const Deed deed : {Deed::Insert, Deed::Update, Deed::Delete})
        Check({own, name, deed});
      if (name == "dspPurchaseOrder" || name == "dspSuppManifacOrder") {
        Check({own, name, Deed::Annul});
      }
    }
    for (const OperationRow& method : own.Operations())
      Check({own, method.name, Deed::Call});
  }
}

}  // namespace
}  // namespace orvane::server
