// Supplier orders on a company of every size asked for, on every engine at hand, against statements
// written by hand: loads, moves and posts over loopback, with the empty calls that carry them on
// the other side; pages of the report in-process against the statement alone. Sizes: company.h.

#include "bare/order_statements.h"
#include "contract/supplier_order.h"
#include "document_pairs.h"

namespace orvane::bench {
namespace {

using namespace supplier_order;

VariantArray LoadOrder(Stage& stage, const std::string& login, Nav nav, std::int64_t id) {
  VariantArray ask(get_record::kAskSize);
  ask[get_record::kMode] = static_cast<int>(nav);
  ask[get_record::kStep] = 0;
  ask[get_record::kIdText] = std::to_string(id);
  ask[get_record::kBelowThree] = false;
  ask[get_record::kLogin] = login;
  ask[get_record::kFirstLanguage] = true;
  ask[get_record::kViewOnly] = false;
  return Must(stage.Remote().Call(
      stage.As(login, Point::SupplierOrders),
      {std::string(kServerClass), std::string(get_record::kName), std::move(ask)}));
}

/// Some order or other, different from round to round.
std::int64_t Some(const Stage& stage, int round) {
  return kManyOrdersFrom + 1 + std::int64_t{round} * 7919 % stage.Company().documents;
}

std::vector<BareStatement> RowsFound(const VariantArray& told) {
  if (!told.at(get_record::kFound).AsBool().value_or(false)) return {};
  const DataPacket& packet = *told.at(get_record::kHead).AsPacket();
  return RowsOfOrder(packet.At(0, head::IdNumber.name).AsInt().value_or(0));
}

Pair Loads(Stage& stage) {
  return LoadPair(
      stage,
      [&stage](int round) { return LoadOrder(stage, "admin", Nav::ByKey, Some(stage, round)); },
      &RowsFound);
}

/// Forth and back in turn, from somewhere in the middle.
Pair MovesOf(Stage& stage, const std::string& login) {
  stage.As(login, Point::SupplierOrders);
  return LoadPair(
      stage,
      [&stage, login](int round) {
        return LoadOrder(stage, login, round % 2 == 0 ? Nav::Next : Nav::Previous,
                         Some(stage, round));
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

/// An order that may be changed; `place` tells them apart.
std::int64_t EnteredOrder(const Stage& stage, int place) {
  return stage.Company().Number(
      "select IdNumber from SuppManifacOrder where Status = 2 and"
      " IdNumber > " +
      std::to_string(kManyOrdersFrom) + " order by IdNumber desc limit 1 offset " +
      std::to_string(place));
}

/// Posts a row's other quantity, as a screen does, and loads the order again.
void PostRow(Stage& stage, std::int64_t id, int number) {
  static const std::string series = std::to_string(SystemClock().Now().micros);
  const VariantArray told = LoadOrder(stage, "admin", Nav::ByKey, id);
  const DataPacket& rows = *told.at(get_record::kRows).AsPacket();
  const auto value = [&](const FieldDef& field) {
    return NamedValue{std::string(field.name), rows.At(0, field.name)};
  };
  const double quantity = rows.At(0, det::Quantity.name).AsDouble().value_or(1) > 1 ? 1 : 2;
  Change change;
  change.kind = ChangeKind::Update;
  change.clientKey = series + "-order-" + std::to_string(number);
  change.before = {value(det::SuppManOrderId), value(det::RowNumber), value(det::Quantity)};
  change.after = {{std::string(det::Quantity.name), quantity}};
  const ApplyRequest apply{
      std::string(kServerClass), std::string(det::dspSuppManOrderDet.name), 0, {}, {change}};
  const ApplyAnswer answer =
      Must(stage.Remote().Apply(stage.As("admin", Point::SupplierOrders), apply));
  if (answer.outcomes.front().applied) return;
  std::fprintf(stderr, "bench: %s\n", answer.outcomes.front().failure->message.c_str());
  std::exit(1);
}

/// The load that a post begins with here stands for the one that follows it on the screen.
Pair RowPosts(Stage& stage) {
  const std::int64_t ours = EnteredOrder(stage, 0);
  const auto number = std::make_shared<int>(0);
  const auto post = std::make_shared<OrderRowPost>();
  post->id = EnteredOrder(stage, 1);
  const std::string lines = "select count(*) from History";
  const std::int64_t before = stage.Company().Number(lines);
  PostRow(stage, ours, ++*number);
  post->history = stage.Company().Number(lines) - before;
  const std::string series = std::to_string(SystemClock().Now().micros) + "-bare-";
  return {[&stage, ours, number] { return Seconds([&] { PostRow(stage, ours, ++*number); }); },
          WriteByHand(stage,
                      [post, number, series] {
                        post->quantity = 1 + *number % 2;
                        post->key = series + std::to_string(*number);
                        return WritesOf(*post);
                      }),
          stage.EmptyTransaction()};
}

// --- pages of the report -------------------------------------------------------------------------

struct Filter {
  std::string name;
  NamedValues asked;
  std::string byHand;
};

/// The rarest and the commonest value of every field, and one that nothing has.
std::vector<Filter> Filters(const BenchCompany& company) {
  std::vector<Filter> filters;
  for (const FieldDef& field : {report::CostCenter, report::Supplier, report::Status}) {
    const std::string column(field.name);
    const auto most = [&](const char* order) {
      return company.Number("select " + column + " from SuppManifacOrder group by " + column +
                            " order by count(*)" + order + ", " + column + " limit 1");
    };
    constexpr std::int64_t kNowhere = 99;
    for (const auto& [which, value] : {std::pair<std::string, std::int64_t>{"rare", most("")},
                                       {"common", most(" desc")},
                                       {"none", kNowhere}}) {
      filters.push_back(
          {column + "=" + which, {{column, value}}, "o." + column + " = " + std::to_string(value)});
    }
  }
  const std::int64_t last = kManyOrdersFrom + company.documents;
  filters.push_back({"FromNumber=common", {{"FromNumber", 1}}, "o.IdNumber >= 1"});
  filters.push_back(
      {"FromNumber=rare", {{"FromNumber", last}}, "o.IdNumber >= " + std::to_string(last)});
  filters.push_back({"ToNumber=rare", {{"ToNumber", 1}}, "o.IdNumber <= 1"});
  filters.push_back({"ToNumber=none", {{"ToNumber", 0}}, "o.IdNumber <= 0"});
  return filters;
}

Pair PageOf(Stage& stage, const Filter& filter) {
  DataPacket packet;
  VariantArray values;
  for (const FieldDef& field : report::kFilter.fields) {
    packet.AddColumn(field.name, field.kind, field.size);
    const Variant* value = FindValue(filter.asked, field.name);
    values.push_back(value ? *value->As(field.kind) : Variant());
  }
  packet.AppendRow(values);
  constexpr int kPage = 80;
  const VariantArray options = {true, kPage, Variant()};
  const VariantArray context = {Variant(), "admin", Variant(options)};
  const MethodCall call{std::string(kReportClass),
                        std::string(get_report::kName),
                        {Variant(context), Variant(packet)}};
  const Caller caller = stage.As("admin", Point::SupplierOrders);
  return PagePair(
      stage, [&stage, call, caller] { Must(stage.InProcess().Call(caller, call)); },
      PageOfOrders(filter.byHand));
}

std::vector<NamedPair> Pages(Stage& stage) {
  std::vector<NamedPair> pages;
  for (const Filter& filter : Filters(stage.Company()))
    pages.push_back({"OrderPage/" + filter.name, PageOf(stage, filter)});
  return pages;
}

constexpr BenchRow kBenches[] = {
    // name                        budget rounds
    {"OrderLoad", 2.0, 601, &Loads},
    {"OrderMoveAmongAll", 2.0, 601, &MovesAmongAll},
    {"OrderMoveAmongHalf", 2.0, 601, &MovesAmongHalf},
    {"OrderMoveAmongOneInAThousand", 2.0, 601, &MovesAmongOneInAThousand},
    {"OrderRowPost", 1.5, 201, &RowPosts},
};
constexpr DocumentBench kBench{&OpenCompanyOfOrders, kBenches, &Pages};

}  // namespace
}  // namespace orvane::bench

int main(int argc, char** argv) {
  return orvane::bench::RunDocumentBench(orvane::bench::kBench, argc, argv);
}
