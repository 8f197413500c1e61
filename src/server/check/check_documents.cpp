#include "server/check/check_documents.h"

#include "server/approval/approval_rows.h"
#include "server/catalogue/order_remainder.h"
#include "server/documents/values.h"
#include "server/orders/order_head.h"
#include "server/requests/request_head.h"
#include "server/sessions/engine_failures.h"
#include "server/statements/named_statement.h"

namespace orvane::server {
namespace {

using Findings = std::vector<std::string>;

constexpr int kMostDecimals = 4;

Answer<DataPacket> Read(Database& database, const Statement& statement) {
  auto packets = database.ReadSnapshot({&statement, 1});
  if (!packets) return ToFailure(packets.GetFailure(), "checking documents");
  return std::move(packets->front());
}

void Tell(Findings& findings, std::string_view what, const StoredDocument& document,
          const DataPacket& found, std::size_t row, std::string_view sentence) {
  const std::int64_t more = found.At(row, "Documents").AsInt().value_or(1) - 1;
  std::string text = std::string(what) + " на " + std::string(document.within) + " " +
                     found.At(row, "Id").ToText() + " " + std::string(sentence);
  if (more > 0) text += " Такива има още " + std::to_string(more) + ".";
  findings.push_back(std::move(text));
}

std::vector<ApprovalRow> RowsLike(const DataPacket& counts, std::size_t row) {
  std::vector<ApprovalRow> rows;
  const auto add = [&](std::string_view column, int status) {
    const std::int64_t count = counts.At(row, column).AsInt().value_or(0);
    for (std::int64_t i = 0; i < count; ++i)
      rows.push_back({static_cast<int>(rows.size()) + 1, {}, status, {}});
  };
  add("Rejected", ApprovalRejected);
  add("Waiting", ApprovalWaiting);
  add("Given", ApprovalGiven);
  return rows;
}

/// Documents without approval rows are entered, or were approved without levels.
bool StatusFits(int status, const std::vector<ApprovalRow>& rows) {
  const int decided = status == Fulfilling || status == Completed ? int{Approved} : status;
  if (rows.empty()) return decided == Entered || decided == Approved;
  return decided == StatusOf(rows);
}

/// Documents with the same status and the same decisions are looked at once.
Answer<Done> CheckDecisions(Database& database, const StoredDocument& document,
                            Findings& findings) {
  const auto count = [](std::string_view condition) {
    return ", coalesce(sum(case when a.Status " + std::string(condition) +
           " then 1 else 0 end), 0)";
  };
  const std::string ofEach =
      "select p." + std::string(document.seen.id) + " as Id, p.Status as Status" + count("= 1") +
      " as Rejected" + count("= 2") + " as Waiting" + count("in (3, 4)") + " as Given from " +
      std::string(document.head.table) + " p left join " + std::string(document.approvals.table) +
      " a on " + OfHead(document, "a") + " where p.AnnulOn is null group by p." +
      std::string(document.seen.id) + ", p.Status" +
      (document.seen.version.empty() ? "" : ", p." + std::string(document.seen.version));
  const auto found =
      Read(database, {"select min(Id), count(*), Status, Rejected, Waiting, Given from (" + ofEach +
                          ") each_one group by Status, Rejected, Waiting, Given order by 1",
                      {},
                      {{"Id", ValueKind::Int32, 0},
                       {"Documents", ValueKind::Code, 0},
                       {"Status", ValueKind::Byte, 0},
                       {"Rejected", ValueKind::Code, 0},
                       {"Waiting", ValueKind::Code, 0},
                       {"Given", ValueKind::Code, 0}}});
  if (!found) return found.GetFailure();
  for (std::size_t row = 0; row < found->rowCount; ++row) {
    const int status = static_cast<int>(found->At(row, "Status").AsInt().value_or(0));
    if (StatusFits(status, RowsLike(*found, row))) continue;
    Tell(findings, "Статусът", document, *found, row, "не е този, който дават решенията.");
  }
  return Done{};
}

/// An order is being fulfilled exactly while a current request that was sent is against it, and its
/// annulment is its status.
Answer<Done> CheckOrders(Database& database, Findings& findings) {
  const std::string against =
      "select min(o.IdNumber), count(*) from SuppManifacOrder o where o.Status in (5, 6)"
      " and (o.Status = 6) <> (exists (select 1 " +
      Replaced(kTakenFromOrder, "{order}", "o.IdNumber") + "))";
  constexpr std::string_view kAnnulled =
      "select min(IdNumber), count(*) from SuppManifacOrder"
      " where (Status = 0) <> (AnnulOn is not null)";
  const struct {
    std::string_view sql;
    std::string_view sentence;
  } checks[] = {{against, "не е този, който дават исканията по нея."},
                {kAnnulled, "и анулирането ѝ си противоречат."}};
  for (const auto& check : checks) {
    const auto found =
        Read(database, {std::string(check.sql),
                        {},
                        {{"Id", ValueKind::Int32, 0}, {"Documents", ValueKind::Code, 0}}});
    if (!found) return found.GetFailure();
    if (found->At(0, "Id").IsNull()) continue;
    Tell(findings, "Статусът", StoredOrder(), *found, 0, check.sentence);
  }
  return Done{};
}

/// The sum in the document's currency is that of its rows.
Answer<Done> CheckCurrencySums(Database& database, const StoredDocument& document,
                               Findings& findings) {
  const auto found = Read(
      database,
      {"select min(p." + std::string(document.seen.id) + "), count(*) from " +
           std::string(document.head.table) + " p where p." + std::string(document.currencySum) +
           " <> coalesce((select sum(r." + std::string(stored::kRowAmount) + ") from " +
           std::string(document.rows.table) + " r where " + OfHead(document, "r") + "), 0)",
       {},
       {{"Id", ValueKind::Int32, 0}, {"Documents", ValueKind::Code, 0}}});
  if (!found) return found.GetFailure();
  if (found->At(0, "Id").IsNull()) return Done{};
  Tell(findings, "Сумата", document, *found, 0, "не е сборът на редовете.");
  return Done{};
}

/// Rounded to as many decimals as the parameter said then.
bool IsNational(Decimal national, Decimal currency, Decimal rate) {
  for (int decimals = 0; decimals <= kMostDecimals; ++decimals) {
    if (InNational(currency, rate, decimals) == national) return true;
  }
  return false;
}

/// The sum in national currency is the other one at the document's rate. With rate 1 the engine
/// compares; the others are few.
Answer<Done> CheckNationalSums(Database& database, const StoredDocument& document,
                               Findings& findings) {
  const std::string currency(document.currencySum);
  const std::string national(document.nationalSum);
  const Statement select{
      "select p." + std::string(document.seen.id) + ", 1, p." + currency + ", p." + national +
          ", p.RateOfExchange from " + std::string(document.head.table) +
          " p where p.RateOfExchange <> ?1 or p." + currency + " <> p." + national + " order by 1",
      {Decimal(10'000'000, 7)},
      {{"Id", ValueKind::Int32, 0},
       {"Documents", ValueKind::Code, 0},
       {"Currency", ValueKind::Amount, 0},
       {"National", ValueKind::Amount, 0},
       {"Rate", ValueKind::Rate, 0}}};
  const auto found = Read(database, select);
  if (!found) return found.GetFailure();
  for (std::size_t row = 0; row < found->rowCount; ++row) {
    const auto at = [&](std::string_view column) {
      return found->At(row, column).AsDecimal().value_or(Decimal());
    };
    if (IsNational(at("National"), at("Currency"), at("Rate"))) continue;
    Tell(findings, "Сумата", document, *found, row, "в национална валута не е по нейния курс.");
  }
  return Done{};
}

}  // namespace

Answer<std::vector<std::string>> CheckDocuments(Database& database) {
  Findings findings;
  for (const StoredDocument* document : {&StoredRequest(), &StoredOrder()}) {
    for (const auto check : {&CheckDecisions, &CheckCurrencySums, &CheckNationalSums}) {
      if (const auto checked = check(database, *document, findings); !checked)
        return checked.GetFailure();
    }
  }
  if (const auto checked = CheckOrders(database, findings); !checked) return checked.GetFailure();
  return findings;
}

}  // namespace orvane::server
