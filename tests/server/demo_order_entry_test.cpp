// Orders of the demonstration that no request uses, entered anew through the providers on the days
// on which the demonstration says it happened: the server makes of them the very rows that the
// demonstration wrote.

#include <set>

#include "contract/supplier_order.h"
#include "server/demo_clerk.h"

namespace orvane::server {
namespace {

constexpr std::int64_t kRequests = 100;
const std::string kOwn = "IdNumber > 24";
const std::string kParts = "SuppManOrderId > 24";
const std::string kTurns = "KindRegister = 1 and DocumentId > 24";

const std::vector<std::string> kClearing = {
    "delete from SuppManOrderAdmin where " + kParts, "delete from SuppManOrderDet where " + kParts,
    "delete from SuppManifacOrder where " + kOwn, "delete from ApprovalTurn where " + kTurns,
    "update DocumentCounter set LastNumber = 24 where TableName = 'SuppManifacOrder'"};

/// Columns that a client does not send with a new row.
const std::set<std::string_view> kServers = {
    "IdNumber", "AmendFrom", "AmendOn",     "AnnulFrom", "AnnulOn",          "SendingNumber",
    "SentFrom", "SentOn",    "CreatedFrom", "CreatedOn", "CurrSumWithoutVAT"};

NamedValues Sent(const NamedValues& row) {
  NamedValues values;
  for (const NamedValue& value : row) {
    if (!kServers.contains(value.name)) values.push_back(value);
  }
  for (NamedValue& value : values) {
    if (value.name == "Status") value.value = static_cast<int>(Entered);
    if (value.name.ends_with("ManifacOrder")) value.value = Decimal(0, 4);
    if (value.name.ends_with("Numerator")) value.value = 1;
  }
  return values;
}

class OrderClerk : public DemoClerk {
 public:
  explicit OrderClerk(Database& base)
      : DemoClerk(base, kClearing, supplier_order::kServerClass, Point::SupplierOrders) {}

  void Enter(const NamedValues& head, const std::vector<NamedValues>& rows,
             const std::vector<NamedValues>& decisions) {
    id_ = NumberAt(head, "IdNumber");
    Come(At(head, "CreatedFrom").ToText(), *At(head, "CreatedOn").AsStamp());
    Apply("dspSuppManifacOrder", InsertOf(Sent(head)));
    for (const NamedValues& row : rows) {
      if (NumberAt(row, "SuppManOrderId") == id_) Apply("dspSuppManOrderDet", InsertOf(Sent(row)));
    }
    if (NumberAt(head, "SendingNumber") > 0) {
      Come(At(head, "SentFrom").ToText(), *At(head, "SentOn").AsStamp());
      Apply("dspSuppManifacOrder", UpdateOf({{"IdNumber", id_}, {"Status", int{Entered}}},
                                            {{"Status", int{ForApproval}}}));
    }
    for (const NamedValues& row : decisions) {
      if (NumberAt(row, "SuppManOrderId") == id_) Decide(row);
    }
    if (At(head, "AnnulOn").IsNull()) return;
    Come(At(head, "AnnulFrom").ToText(), *At(head, "AnnulOn").AsStamp());
    Apply("dspSuppManifacOrder",
          UpdateOf({{"IdNumber", id_}, {"AnnulFrom", Variant()}, {"AnnulOn", Variant()}},
                   {{"AnnulFrom", login_}, {"AnnulOn", clock_.Now()}}));
  }

 private:
  std::string Where() const override { return std::to_string(id_); }

  void Decide(const NamedValues& row) {
    const std::int64_t status = NumberAt(row, "Status");
    if (status == ApprovalWaiting) return;
    Come(logins_.at(NumberAt(row, "ConfirmedFrom")), *At(row, "ConfermedOn").AsStamp());
    Apply("dspSuppManOrderAdmin", UpdateOf({{"SuppManOrderId", id_},
                                            {"ConfirmationLevel", At(row, "ConfirmationLevel")},
                                            {"SendingNumber", At(row, "SendingNumber")},
                                            {"Status", int{ApprovalWaiting}}},
                                           {{"Status", status}}));
  }

  std::int64_t id_ = 0;
};

class DemoOrderEntry : public ServerCase {};
INSTANTIATE_TEST_SUITE_P(Engines, DemoOrderEntry, testing::ValuesIn(TestEngines()), TestEngineName);

TEST_P(DemoOrderEntry, OrdersEnteredByTheirBuyerAreTheRowsOfTheDemonstration) {
  const auto base = FreshDatabase(GetParam());
  MakeSmallDemo(*base, kRequests);
  const struct {
    const DemoTable& table;
    const std::string& where;
  } tables[] = {{demo::kOrders, kOwn},
                {demo::kOrderRows, kParts},
                {demo::kOrderApproval, kParts},
                {demo::kTurns, kTurns}};
  std::vector<std::vector<NamedValues>> written;
  for (const auto& own : tables)
    written.push_back(RowsOf(*base, own.table, own.where));
  ASSERT_EQ(written[0].size(), 16u);
  OrderClerk clerk(*base);
  for (const NamedValues& head : written[0])
    clerk.Enter(head, written[1], written[2]);
  for (std::size_t i = 0; i < std::size(tables); ++i)
    Compare(tables[i].table, written[i], RowsOf(*base, tables[i].table, tables[i].where));
}

}  // namespace
}  // namespace orvane::server
