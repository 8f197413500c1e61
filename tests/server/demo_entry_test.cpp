// Requests of the demonstration entered anew through the providers, with the changes that a client
// sends and on the days on which the demonstration says it happened: the server makes of them the
// very rows that the demonstration wrote.

#include <algorithm>
#include <map>
#include <set>

#include "contract/purchase_request.h"
#include "server/demo_clerk.h"

namespace orvane::server {
namespace {

namespace request = purchase_request;

constexpr std::int64_t kRequests = 100;
const std::string kOfRequests = "KindRegister = 2";

/// Columns that a client does not send with a new row.
const std::set<std::string_view> kServers = {"CurrSumPurchaseOrder",
                                             "SumPurchaseOrder",
                                             "AmendFrom",
                                             "AmendOn",
                                             "AnnulFrom",
                                             "AnnulOn",
                                             "SendingNumber",
                                             "SentFrom",
                                             "SentOn",
                                             "ServiceEmployee",
                                             "InventoryId",
                                             "ServiceCode",
                                             "Delivered",
                                             "Numerator",
                                             "RowNumerator"};

/// The rows of the tables that hold requests.
struct Documents {
  std::vector<NamedValues> heads;
  std::map<const DemoTable*, std::vector<NamedValues>> parts;
};
const DemoTable* const kParts[] = {&demo::kRequestRows, &demo::kRequestDates,
                                   &demo::kRequestPayments, &demo::kRequestApproval};

Documents ReadDocuments(Database& base) {
  Documents documents;
  documents.heads = RowsOf(base, demo::kRequests, "");
  for (const DemoTable* table : kParts)
    documents.parts[table] = RowsOf(base, *table, "");
  documents.parts[&demo::kTurns] = RowsOf(base, demo::kTurns, kOfRequests);
  return documents;
}

/// Rows of a part that belong to a head.
std::vector<NamedValues> PartOf(const Documents& documents, const DemoTable& table,
                                const NamedValues& head) {
  std::vector<NamedValues> rows;
  for (const NamedValues& row : documents.parts.at(&table)) {
    if (At(row, "PurchaseOrderId") == At(head, "POIdNumber") &&
        At(row, "PurchaseOrderVer") == At(head, "POVersion"))
      rows.push_back(row);
  }
  return rows;
}

/// What the requests had taken of the orders is free again.
const std::vector<std::string> kClearing = {
    "delete from DeliveryRows",
    "delete from Deliveries",
    "delete from PurchaseOrderAdm",
    "delete from PurchaseOrderDet",
    "delete from PurchaseOrderDel",
    "delete from PurchaseOrderPayPl",
    "delete from PurchaseOrder",
    "delete from ApprovalTurn where KindRegister = 2",
    "update DocumentCounter set LastNumber = 0 where TableName = 'PurchaseOrder'",
    "update SuppManifacOrder set Status = 5 where Status in (6, 7)"};

/// Enters what it is given into a company whose requests were taken away.
class Clerk : public DemoClerk {
 public:
  explicit Clerk(Database& base)
      : DemoClerk(base, kClearing, request::kServerClass, Point::PurchaseRequests) {}

  void Enter(const NamedValues& head, const Documents& documents) {
    key_ = {{"PurchaseOrderId", At(head, "POIdNumber")},
            {"PurchaseOrderVer", At(head, "POVersion")}};
    const std::string creator = At(head, "CreatedFrom").ToText();
    Come(creator, *At(head, "CreatedOn").AsStamp());
    if (NumberAt(head, "POVersion") == 1) {
      EnterHead(head);
    } else {
      MakeVersion(head, documents);
    }
    if (NumberAt(head, "POVersion") == 1)
      AddAll("dspPurchaseOrderDet", PartOf(documents, demo::kRequestRows, head), head);
    AddAll("dspPurchaseOrderDel", PartOf(documents, demo::kRequestDates, head), head);
    AddAll("dspPurchaseOrderPayPl", PartOf(documents, demo::kRequestPayments, head), head);
    Send(head);
    for (const NamedValues& row : PartOf(documents, demo::kRequestApproval, head))
      Decide(row);
    Finish(head);
  }

 private:
  std::string Where() const override {
    return At(key_, "PurchaseOrderId").ToText() + "/" + At(key_, "PurchaseOrderVer").ToText();
  }

  void EnterHead(const NamedValues& head) {
    NamedValues values;
    for (const NamedValue& value : head) {
      if (!kServers.contains(value.name)) values.push_back(value);
    }
    for (NamedValue& value : values) {
      if (value.name == "POIdNumber") value.value = -1;
      if (value.name == "POVersion") value.value = 0;
      if (value.name == "Status") value.value = static_cast<int>(Entered);
      if (value.name == "OldVersion") value.value = false;
    }
    values.push_back({"CurrSumPurchaseOrder", Decimal(0, 4)});
    values.push_back({"SumPurchaseOrder", Decimal(0, 4)});
    Apply("dspPurchaseOrder", InsertOf(std::move(values)));
  }

  /// The former version's dates and payments were planned anew.
  void MakeVersion(const NamedValues& head, const Documents& documents) {
    const auto told = server_->Call(
        caller_, {"TsmPurchaseOrderReport",
                  "Operations",
                  {"NewRec", 2, At(head, "POIdNumber"), NumberAt(head, "POVersion") - 1, login_},
                  NewClientKey()});
    ASSERT_TRUE(told) << Where() << ": " << told.GetFailure().message;
    for (const NamedValues& row : documents.heads) {
      if (At(row, "POIdNumber") != At(head, "POIdNumber") || NumberAt(row, "POVersion") != 1)
        continue;
      DeleteAll("dspPurchaseOrderDel", PartOf(documents, demo::kRequestDates, row));
      DeleteAll("dspPurchaseOrderPayPl", PartOf(documents, demo::kRequestPayments, row));
    }
  }

  void DeleteAll(std::string_view provider, const std::vector<NamedValues>& rows) {
    for (NamedValues row : rows) {
      for (NamedValue& value : row) {
        if (value.name == "PurchaseOrderVer") value.value = At(key_, "PurchaseOrderVer");
        if (value.name == "Delivered") value.value = false;
      }
      Apply(provider, DeleteOf(std::move(row)));
    }
  }

  void AddAll(std::string_view provider, const std::vector<NamedValues>& rows,
              const NamedValues& head) {
    const std::int64_t kind = NumberAt(head, "KindSupply");
    for (const NamedValues& row : rows) {
      NamedValues values;
      for (const NamedValue& value : row) {
        if (!kServers.contains(value.name)) values.push_back(value);
      }
      for (NamedValue& value : values) {
        // Amounts that follow from prices are not typed, payments are numbered by the server.
        if (value.name == "CurrSumWithoutVAT" && kind >= 2 && kind <= 4)
          value.value = Decimal(0, 4);
        if (value.name == "RowNumber" && provider == "dspPurchaseOrderPayPl") value.value = {};
      }
      if (provider == "dspPurchaseOrderDet") {
        values.push_back({"Numerator", 1});
        values.push_back({"RowNumerator", 1});
      }
      Apply(provider, InsertOf(std::move(values)));
    }
  }

  void Move(int from, int to) {
    Apply("dspPurchaseOrder", UpdateOf({{"POIdNumber", At(key_, "PurchaseOrderId")},
                                        {"POVersion", At(key_, "PurchaseOrderVer")},
                                        {"Status", from}},
                                       {{"Status", to}}));
  }

  /// Sent and, before each further sending and when it ended as entered, taken back.
  void Send(const NamedValues& head) {
    const std::int64_t times = NumberAt(head, "SendingNumber");
    if (times == 0) return;
    Come(At(head, "SentFrom").ToText(), *At(head, "SentOn").AsStamp());
    for (std::int64_t sending = 1; sending <= times; ++sending) {
      Move(Entered, ForApproval);
      if (sending < times || NumberAt(head, "Status") == Entered) Move(ForApproval, Entered);
    }
  }

  void Decide(const NamedValues& row) {
    const int status = static_cast<int>(NumberAt(row, "Status"));
    if (status == ApprovalWaiting) return;
    Come(logins_.at(NumberAt(row, "ConfirmedFrom")), *At(row, "ConfermedOn").AsStamp());
    NamedValues before = key_;
    before.push_back({"ConfirmationLevel", At(row, "ConfirmationLevel")});
    before.push_back({"SendingNumber", At(row, "SendingNumber")});
    before.push_back({"Status", static_cast<int>(ApprovalWaiting)});
    Apply("dspPurchaseOrderAdm", UpdateOf(std::move(before), {{"Status", status}}));
  }

  void Finish(const NamedValues& head) {
    if (NumberAt(head, "Status") == Completed) {
      // A requester without a login leaves it to the chief. It is no amendment, whoever does it.
      const auto requester = logins_.find(NumberAt(head, "Notifier"));
      const std::string center = "CostCenter = " + At(head, "CostCenter").ToText();
      const NamedValues place = RowsOf(base_, demo::kCostCenters, center).at(0);
      Come(requester != logins_.end() ? requester->second : logins_.at(NumberAt(place, "Chief")),
           clock_.Now());
      Move(Approved, Completed);
    }
    if (At(head, "AnnulOn").IsNull()) return;
    Come(At(head, "AnnulFrom").ToText(), *At(head, "AnnulOn").AsStamp());
    Apply("dspPurchaseOrder", UpdateOf({{"POIdNumber", At(key_, "PurchaseOrderId")},
                                        {"POVersion", At(key_, "PurchaseOrderVer")},
                                        {"AnnulFrom", Variant()},
                                        {"AnnulOn", Variant()}},
                                       {{"AnnulFrom", login_}, {"AnnulOn", clock_.Now()}}));
  }

  NamedValues key_;  ///< of the request being entered
};

class DemoEntry : public ServerCase {};
INSTANTIATE_TEST_SUITE_P(Engines, DemoEntry, testing::ValuesIn(TestEngines()), TestEngineName);

/// Deliveries are not entered: they alone make a request one that is being fulfilled.
void WithoutDeliveries(Documents& documents) {
  for (NamedValues& head : documents.heads) {
    for (NamedValue& value : head) {
      if (value.name == "Status" && value.value.AsInt() == Fulfilling)
        value.value = static_cast<int>(Approved);
    }
  }
  for (NamedValues& row : documents.parts.at(&demo::kRequestDates)) {
    for (NamedValue& value : row) {
      if (value.name == "Delivered") value.value = false;
    }
  }
}

TEST_P(DemoEntry, RequestsEnteredByTheirRequestersAreTheRowsOfTheDemonstration) {
  const auto base = FreshDatabase(GetParam());
  MakeSmallDemo(*base, kRequests);
  Documents written = ReadDocuments(*base);
  Clerk clerk(*base);
  for (const NamedValues& head : written.heads)
    clerk.Enter(head, written);
  const Documents entered = ReadDocuments(*base);
  WithoutDeliveries(written);
  Compare(demo::kRequests, written.heads, entered.heads);
  for (const auto& [table, rows] : written.parts)
    Compare(*table, rows, entered.parts.at(table));
}

}  // namespace
}  // namespace orvane::server
