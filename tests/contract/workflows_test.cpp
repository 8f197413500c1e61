// docs/workflows.md is printed from the tables that run. The page cannot lie: a test fails when it
// differs.

#include <gtest/gtest.h>

#include <span>
#include <sstream>

#include "contract/delivery.h"
#include "contract/golden_page.h"
#include "contract/purchase_request.h"
#include "contract/supplier_order.h"
#include "contract/workflow.h"

namespace orvane {
namespace {

constexpr const char* kStatusNames[] = {"анулиран",     "отхвърлен",        "въведен",
                                        "за одобрение", "частично одобрен", "одобрен",
                                        "в изпълнение", "приключен"};
constexpr const char* kWhoNames[] = {"всеки с правото",
                                     "началник на центъра или заявител",
                                     "създател или ниво под 3",
                                     "заявител или пълен достъп",
                                     "чийто ред е",
                                     "който е решил"};

std::string RightName(Right right) {
  switch (right) {
    case Right::Open:
      return "отваряне";
    case Right::Edit:
      return "редакция";
    case Right::Insert:
      return "добавяне";
    case Right::Delete:
      return "изтриване";
    case Right::None:
      break;
  }
  return "без право";
}

std::string FromNames(const StatusSet& from) {
  std::string names;
  for (int status = 0; status <= Completed; ++status) {
    if (!from.Has(status)) continue;
    names += names.empty() ? "" : ", ";
    names += kStatusNames[status];
  }
  return names;
}

void PrintMoves(std::ostream& page, const std::string& title, std::span<const Move> moves) {
  page << "\n## " << title << "\n\n| move | from | right | who | to | also writes |\n"
       << "|---|---|---|---|---|---|\n";
  for (const Move& move : moves) {
    page << "| " << move.name << " | " << FromNames(move.from) << " | " << RightName(move.right)
         << " | " << kWhoNames[static_cast<int>(move.who)] << " | "
         << (move.to == kKeepsStatus ? "unchanged" : kStatusNames[move.to]) << " | "
         << move.alsoWrites << " |\n";
  }
}

std::string Page() {
  std::ostringstream page;
  page << "# Workflows\n\nPrinted from the tables by which screens offer moves and the server "
          "judges them. An annulled\nor superseded document allows none.\n";
  PrintMoves(page, "Purchase request", purchase_request::kMoves);
  PrintMoves(page, "Supplier order", supplier_order::kMoves);
  PrintMoves(page, "Delivery", delivery::kMoves);
  return page.str();
}

TEST(Workflows, ThePageIsWhatTheTablesSay) {
  ExpectPage("workflows.md", Page());
}

/// Written by hand from the rules of requests and orders, not from the tables.
bool MayHappen(const std::string& move, int status, bool order) {
  if (move == "send") return status == 2;
  if (move == "correct") return status == 3;
  if (move == "annul") return status == 1 || status == 2;
  if (move == "complete") return status == 6 || (status == 5 && !order);
  return move == "reopen" && status == 7;
}

TEST(Workflows, RequestsAndOrdersMoveFromTheirStatusesOnly) {
  for (const bool order : {false, true}) {
    const std::span<const Move> moves =
        order ? std::span<const Move>(supplier_order::kMoves) : purchase_request::kMoves;
    for (const Move& move : moves) {
      for (int status = -1; status <= 9; ++status) {
        EXPECT_EQ(move.from.Has(status), MayHappen(std::string(move.name), status, order))
            << move.name << " from " << status;
      }
    }
  }
}

}  // namespace
}  // namespace orvane
