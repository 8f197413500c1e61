#pragma once

// A small company for the tests of purchase requests:
//
//   who       employee  is
//   author    100       admissible requester for cost centres 1001 and 1002
//   kolev     101       head of cost centre 1001 (section 20, department 3)
//   petrova   102       head of section 20
//   dimitrov  103       head of department 3
//   deputy    104       stands in for the head of cost centre 1001 in March 2026
//   stranger  105       nobody's head; rights everywhere but on deliveries and invoices
//   boss      -         level 0
//
// Kinds of supply: 1 capital, 2 ОСМ, 3 goods, 4 others, 5 priced services. Supplier 7. Entries:
// 20 sheet metal (price 12.50 for a kilogram, piece = 1), 21 screws (1.00 for a dozen, counted by
// ordinary fractions), 22 transport (service, 200.00), 23 no price. Today is 5 March 2026.

#include <string>
#include <vector>

#include "contract/purchase_request.h"
#include "server/server_case.h"

namespace orvane::server {

class RequestWorld {
 public:
  explicit RequestWorld(Engine engine);

  TestServer& Server() { return server_; }
  const TestSession& As(const std::string& login);
  void RunSql(const std::string& sql, VariantArray params = {});
  std::int64_t Count(const std::string& from, VariantArray params = {});
  /// The first column of the rows, joined by blanks.
  std::string Column(const std::string& sql, ValueKind kind = ValueKind::Code);

  /// Levels of approval for requests: kind of supply, level, from, to, approver.
  void AddLevel(int kindSupply, int level, int from, int to, ApproverKind approver,
                DocumentKind document = DocumentKind::PurchaseRequest);
  /// An approved order to supplier 7 that holds `quantity` of the entry in row 1.
  std::int64_t AddOrder(std::int64_t serial, double quantity);

  // Applies; each answers "ok" or the message of what went wrong.
  std::string Apply(const std::string& login, std::string_view provider, const Change& change,
                    Point point = Point::PurchaseRequests);
  ApplyAnswer ApplyFully(const std::string& login, std::string_view provider, const Change& change,
                         Point point = Point::PurchaseRequests);

  static NamedValues HeadValues(int kindSupply = 4);
  /// A new request of `author`; its identifier.
  std::int64_t NewRequest(int kindSupply = 4, NamedValues changed = {});
  static NamedValues RowValues(std::int64_t id, int number, std::int64_t serial, double quantity,
                               const char* amount = "0", Variant order = {});
  std::string AddRow(std::int64_t id, int number, std::int64_t serial, double quantity,
                     const char* amount = "0", Variant order = {});
  std::string AddDate(std::int64_t id, int day = 20);
  /// Writes the status of version `version`, as the screen does.
  std::string Move(const std::string& login, std::int64_t id, int from, int to, int version = 1);
  std::string Annul(const std::string& login, std::int64_t id, int version = 1);
  /// A request of one row (100.00) and a date, sent by its author.
  std::int64_t SentRequest(int kindSupply = 4, const char* amount = "100");
  /// A decision on a level, as the screen makes it from what it last loaded.
  std::string Decide(const std::string& login, std::int64_t id, int level, int from, int to,
                     int sending = 1, Point point = Point::PurchaseRequests);

  Answer<VariantArray> Call(const std::string& login, const std::string& serverClass,
                            VariantArray arguments, Point point = Point::PurchaseRequests);
  /// "GetRec" as the screen sends it.
  VariantArray Load(const std::string& login, Nav nav, std::int64_t id, Variant version = {},
                    int step = 0, int language = 1);
  /// "<code>:<id>/<version>" of such a load, "3" when nothing was found.
  std::string Where(const std::string& login, Nav nav, std::int64_t id, Variant version = {},
                    int step = 0);
  /// "1@2=3" for every role: kind at level with status.
  std::string Roles(const std::string& login, std::int64_t id, Variant version = {});
  int StatusOf(std::int64_t id, int version = 1);
  /// "1:2 2:3", level and status of the approval rows.
  std::string Rows(std::int64_t id, int version = 1);

 private:
  TestServer server_;
  std::vector<std::pair<std::string, TestSession>> sessions_;
};

/// A case on every engine with a world of its own.
class RequestCase : public testing::TestWithParam<Engine> {
 protected:
  RequestCase() : world(GetParam()) {}
  RequestWorld world;
};

}  // namespace orvane::server
