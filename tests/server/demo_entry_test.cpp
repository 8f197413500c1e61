// Requests of the demonstration entered anew through the providers, with the changes that a client
// sends and on the days on which the demonstration says it happened: the server makes of them the
// very rows that the demonstration wrote.

#include <algorithm>
#include <map>
#include <set>

#include "contract/purchase_request.h"
#include "server/demo/demo_company.h"
#include "server/server_case.h"
#include "support/demo_rows.h"
#include "support/engine_steps.h"

namespace orvane {
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

NamedValues RowAt(const DataPacket& rows, const DemoTable& table, std::size_t row) {
  NamedValues values;
  for (std::size_t column = 0; column < table.columns.size(); ++column)
    values.push_back({std::string(table.columns[column].name), rows.At(row, column)});
  return values;
}

const Variant& At(const NamedValues& row, std::string_view column) {
  const Variant* value = FindValue(row, column);
  EXPECT_NE(value, nullptr) << column;
  static const Variant kNull;
  return value ? *value : kNull;
}

std::int64_t NumberAt(const NamedValues& row, std::string_view column) {
  return At(row, column).AsInt().value_or(0);
}

/// The rows of the tables that hold requests.
struct Documents {
  std::vector<NamedValues> heads;
  std::map<const DemoTable*, std::vector<NamedValues>> parts;
};
const DemoTable* const kParts[] = {&demo::kRequestRows, &demo::kRequestDates,
                                   &demo::kRequestPayments, &demo::kRequestApproval};

std::vector<NamedValues> RowsOf(Database& base, const DemoTable& table, const std::string& where) {
  const DataPacket packet = ReadDemoTable(base, table, where);
  std::vector<NamedValues> rows;
  for (std::size_t row = 0; row < packet.rowCount; ++row)
    rows.push_back(RowAt(packet, table, row));
  return rows;
}

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

/// Enters what it is given into a company whose requests were taken away.
class Clerk {
 public:
  explicit Clerk(Database& base) : base_(base), clock_(Stamp{}) {
    for (const char* table : {"DeliveryRows", "Deliveries", "PurchaseOrderAdm", "PurchaseOrderDet",
                              "PurchaseOrderDel", "PurchaseOrderPayPl", "PurchaseOrder"})
      Do(base_, Sql(std::string("delete from ").append(table)));
    Do(base_, Sql("delete from ApprovalTurn where KindRegister = 2"));
    Do(base_, Sql("update DocumentCounter set LastNumber = 0 where TableName = 'PurchaseOrder'"));
    // What the requests had taken of the orders is free again.
    Do(base_, Sql("update SuppManifacOrder set Status = 5 where Status in (6, 7)"));
    ServerOptions options;
    options.sessions.passwordCost = PasswordCost::Lowest();
    server_ = std::make_unique<OrvaneServer>(base_, clock_, options);
    for (const auto& row : RowsOf(base_, demo::kEmployees, "Login is not null"))
      logins_[NumberAt(row, "Employee")] = At(row, "Login").ToText();
  }

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
  /// Somebody sits down at that moment.
  void Come(const std::string& login, Stamp moment) {
    clock_.Set(moment);
    const auto password = login + "2026";
    auto info = server_->LogIn({.protocolVersion = kProtocolVersion,
                                .login = login,
                                .password = password,
                                .machineName = "TEST-PC",
                                .programVersion = "0.1.0"});
    ASSERT_TRUE(info) << login << ": " << info.GetFailure().message;
    caller_ = {info->ticket, kOrvaneModuleNo, static_cast<std::int32_t>(Point::PurchaseRequests)};
    login_ = login;
  }

  void Apply(std::string_view provider, Change change) {
    const auto answer = server_->Apply(
        caller_, {std::string(request::kServerClass), std::string(provider), 0, {}, {change}});
    ASSERT_TRUE(answer) << answer.GetFailure().message;
    const ChangeOutcome& outcome = answer->outcomes.front();
    EXPECT_FALSE(outcome.failure) << Where() << ", " << provider << ": "
                                  << outcome.failure->message;
  }

  std::string Where() const {
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
                  {"NewRec", 2, At(head, "POIdNumber"), NumberAt(head, "POVersion") - 1, login_}});
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
      Come(At(head, "AmendFrom").ToText(), *At(head, "AmendOn").AsStamp());
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

  Database& base_;
  SetClock clock_;
  std::unique_ptr<OrvaneServer> server_;
  std::map<std::int64_t, std::string> logins_;
  Caller caller_;
  std::string login_;
  NamedValues key_;  ///< of the request being entered
};

class DemoEntry : public ServerCase {};
INSTANTIATE_TEST_SUITE_P(Engines, DemoEntry, testing::ValuesIn(TestEngines()), TestEngineName);

/// Moments to the second: the clock of the tests never shows the same one twice.
std::string Shown(const Variant& value) {
  constexpr std::int64_t kSecond = 1'000'000;
  const auto stamp = value.AsStamp();
  return (stamp ? Variant(Stamp{stamp->micros / kSecond * kSecond}) : value).ToText();
}

/// Lines of what differs between two tables' rows.
void Compare(const DemoTable& table, const std::vector<NamedValues>& written,
             const std::vector<NamedValues>& entered) {
  std::map<std::string, NamedValues> byKey;
  const auto keyOf = [&](const NamedValues& row) {
    std::string key;
    for (std::size_t i = 0; i < table.keyColumns; ++i)
      key += row[i].value.ToText() + " ";
    return key;
  };
  for (const NamedValues& row : entered)
    byKey[keyOf(row)] = row;
  for (const NamedValues& row : written) {
    const auto found = byKey.find(keyOf(row));
    if (found == byKey.end()) {
      ADD_FAILURE() << table.name << " " << keyOf(row) << "is not there";
      continue;
    }
    for (std::size_t i = 0; i < row.size(); ++i)
      EXPECT_EQ(Shown(found->second[i].value), Shown(row[i].value))
          << table.name << " " << keyOf(row) << row[i].name;
    byKey.erase(found);
  }
  for (const auto& [key, row] : byKey)
    ADD_FAILURE() << table.name << " " << key << "is one too many";
}

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
  DemoOptions options;
  options.passwordCost = PasswordCost::Lowest();
  options.documents = kRequests;
  ASSERT_TRUE(MakeDemoCompany(*base, SystemClock{}, options));
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
}  // namespace orvane
