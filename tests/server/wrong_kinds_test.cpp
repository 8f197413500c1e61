// Values of wrong kinds and out of range in every argument of every method, every parameter of
// every provider and every field of what may be written: the server says what is wrong with them
// and never that it could not.

#include <limits>

#include "server/classes/server_classes.h"
#include "server/order_world.h"

namespace orvane::server {
namespace {

struct Question {
  std::string_view serverClass;
  std::string_view method;
  VariantArray whole;  ///< as a client asks
};

DataPacket Filter(const FieldDef* wrong = nullptr, ValueKind kind = ValueKind::Memo) {
  DataPacket packet;
  VariantArray values;
  for (const FieldDef& field : supplier_order::report::kFilter.fields) {
    const bool own = wrong && field.name == wrong->name;
    packet.AddColumn(field.name, own ? kind : field.kind);
    values.push_back(!own                        ? Variant()
                     : kind == ValueKind::Memo   ? Variant("x")
                     : kind == ValueKind::Double ? Variant(1e308)
                                                 : Variant(Date{0}));
  }
  packet.AppendRow(values);
  return packet;
}

std::vector<Question> Questions() {
  const Variant none;
  return {
      {"TsmParameters", "GetParams", {11}},
      {"TsmParameters", "SetParam", {11, 1, "1", none}},
      {"TsmLevelsApproval", "GetCurremtEmployee", {"author"}},
      {"TsmLevelsApproval", "CountWaiting", {}},
      {"TsmCapExPlan", "GetRecord", {0, 0, 0}},
      {"TsmSuppliesContracts", "Operations", {"GetRec", 1, 0, 30}},
      {"TsmPurchaseOrder", "Operations", {"GetRec", 1, 0, 0, 1, none, "author", none, true, false}},
      {"TsmPurchaseOrder", "Operations", {"GetSumCheck", 1, 1, none, none, none, none}},
      {"TsmPurchaseOrderReport", "Operations", {"NewRec", 3, 1, 1, "author"}},
      {"TsmSuppManifacOrder", "GetParams", {100, true}},
      {"TsmSuppManifacOrder", "GetRecord", {0, 0, "1", 100, false, "author", none, true, false}},
      {"TsmSuppManifacOrderReport", "GetParams", {Variant(VariantArray{none, 100, 1})}},
      {"TsmSuppManifacOrderReport",
       "GetReport",
       {VariantArray{none, "author", VariantArray{true, 80, none}}, Filter()}},
  };
}

const VariantArray& WrongValues() {
  static const VariantArray kValues = {
      true,
      -1,
      std::int64_t{1} << 31,
      std::numeric_limits<std::int64_t>::max(),
      std::numeric_limits<std::int64_t>::min(),
      1.5,
      11.0,
      1e308,
      Decimal(15, 1),
      Decimal(std::numeric_limits<std::int64_t>::max(), 7),
      Date{0},
      Stamp{0},
      "x",
      std::string(70'000, 'x'),
      VariantArray{},
      VariantArray{1},
      Filter(),
  };
  return kValues;
}

/// Every copy of `whole` with one value, at whatever depth, replaced by a wrong one.
std::vector<VariantArray> Spoiled(const VariantArray& whole) {
  std::vector<VariantArray> all;
  for (std::size_t i = 0; i < whole.size(); ++i) {
    VariantArray spoiled = whole;
    for (const Variant& wrong : WrongValues()) {
      spoiled[i] = wrong;
      all.push_back(spoiled);
    }
    if (!whole[i].AsArray()) continue;
    for (VariantArray& inner : Spoiled(*whole[i].AsArray())) {
      spoiled[i] = Variant(std::move(inner));
      all.push_back(spoiled);
    }
  }
  return all;
}

class WrongKinds : public OrderCase {
 protected:
  WrongKinds() {
    world.AddOrder(20, 50000);
    world.NewRequest();
  }
  Point PlaceOf(const ServerClass& own) {
    for (const PointRow& row : kPoints) {
      if (own.UseFrom(static_cast<std::int32_t>(row.point)) == Use::Whole) return row.point;
    }
    return Point::Departments;
  }
  /// Counts, and says what the server could not do.
  void Judge(const Failure* failure, const std::string& what) {
    ++tried;
    if (!failure) return;
    EXPECT_NE(failure->kind, FailureKind::Internal) << what;
    EXPECT_NE(failure->kind, FailureKind::LinkDown) << what;
    if (failure->kind != FailureKind::BadRequest) return;
    EXPECT_NE(failure->message.find("„"), std::string::npos) << what << ": " << failure->message;
  }
  template <class T>
  void Judge(const Answer<T>& answer, const std::string& what) {
    Judge(answer ? nullptr : &answer.GetFailure(), what);
  }

  int tried = 0;
};
INSTANTIATE_TEST_SUITE_P(Engines, WrongKinds, testing::ValuesIn(TestEngines()), TestEngineName);

TEST_P(WrongKinds, InArgumentsOfMethodsAreToldByTheArgument) {
  const std::vector<Question> questions = Questions();
  for (const ServerClass& own : MakeServerClasses()) {
    for (const OperationRow& method : own.Operations()) {
      int known = 0;
      for (const Question& question : questions) {
        if (question.serverClass != own.Name() || question.method != method.name) continue;
        ++known;
        const Caller caller = world.As("author").At(PlaceOf(own));
        const auto ask = [&](VariantArray arguments) {
          return world.Server()->Call(caller, {std::string(own.Name()), std::string(method.name),
                                               std::move(arguments), NewClientKey()});
        };
        const auto whole = ask(question.whole);
        EXPECT_TRUE(whole) << own.Name() << "." << method.name << ": "
                           << (whole ? "" : whole.GetFailure().message);
        for (VariantArray& spoiled : Spoiled(question.whole)) {
          const std::string what = std::string(own.Name()) + "." + std::string(method.name) + " " +
                                   Variant(spoiled).ToText();
          Judge(ask(std::move(spoiled)), what);
        }
      }
      EXPECT_GT(known, 0) << own.Name() << "." << method.name << " is not asked";
    }
  }
  for (const FieldDef& field : supplier_order::report::kFilter.fields) {
    for (const ValueKind kind : {ValueKind::Memo, ValueKind::Double, ValueKind::Date}) {
      Judge(world.Server()->Call(
                world.As("author").At(Point::SupplierOrders),
                {"TsmSuppManifacOrderReport",
                 "GetReport",
                 {VariantArray{Variant(), "author", VariantArray{true, 80, Variant()}},
                  Filter(&field, kind)}}),
            "filter " + std::string(field.name));
    }
  }
  EXPECT_GT(tried, 700);
}

TEST_P(WrongKinds, InParametersOfFetchesAndInChangesAreToldByTheirName) {
  for (const ServerClass& own : MakeServerClasses()) {
    const Caller caller = world.As("author").At(PlaceOf(own));
    for (const ProviderRow& provider : own.Providers()) {
      const std::string name(provider.def.name);
      for (const FieldDef& param : provider.params) {
        for (const Variant& wrong : WrongValues()) {
          FetchRequest fetch;
          fetch.serverClass = own.Name();
          fetch.provider = name;
          for (const FieldDef& each : provider.params)
            fetch.params.push_back({std::string(each.name), each.name == param.name ? wrong : 1});
          Judge(world.Server()->Fetch(caller, {fetch}), name + " " + std::string(param.name));
        }
      }
      if (!provider.def.Writable()) continue;
      for (const FieldDef& field : provider.def.fields) {
        for (const Variant& wrong : WrongValues()) {
          const NamedValue value{std::string(field.name), wrong};
          for (const Change& change : {InsertOf({value}), UpdateOf({value}, {value})}) {
            const auto answer = world.Server()->Apply(
                caller, {std::string(own.Name()), name, 0, Variant(), {change}});
            const bool failed = answer && answer->outcomes[0].failure;
            if (failed) Judge(&*answer->outcomes[0].failure, name + "." + value.name);
            if (!failed) Judge(answer, name + "." + value.name);
          }
        }
      }
    }
  }
  for (const Variant& wrong : WrongValues()) {
    FetchRequest search;
    search.serverClass = "TsmSQL";
    search.provider = "dspSQL";
    search.sql = "SELECT Name FROM NomIn WHERE Element = :Element";
    search.params = {{"Element", wrong}};
    Judge(world.Server()->Fetch(world.As("author").At(Point::Departments), {search}), "a search");
  }
  EXPECT_GT(tried, 3000);
}

}  // namespace
}  // namespace orvane::server
