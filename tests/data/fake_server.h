#pragma once

// A server of one table, in memory, for the tests of the client's data floor and of the kit: it
// checks old values, carries a client key out once, can be told to refuse, and its link can be cut.

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "contract/field.h"
#include "data/client_dataset.h"
#include "data/connection.h"

namespace orvane::data::test {

namespace item {
inline constexpr auto Id = Int32("Id", Key | Required, "Номер");
inline constexpr auto Name = String("Name", 20, Required | Folded, "Име");
inline constexpr auto Price = Amount("Price", Plain, "Цена");
inline constexpr auto Unit = Int16("Unit", Plain, "Мярка");
inline constexpr auto UnitName = String("UnitName", 10, Joined, "Мярка");
inline constexpr auto dspItem = Writes("dspItem", "Item", Id, Name, Price, Unit, UnitName);
}  // namespace item

enum class Link { Whole, CutBefore, CutAfter };

class FakeServer final : public IApplicationServer {
 public:
  /// Of three rows of dspItem.
  FakeServer();
  /// Of any table whose key is "Id" and whose second field is "Name", without rows.
  explicit FakeServer(const ProviderDef& table) : table_(table) {}

  // --- what tests set ---------------------------------------------------------------------------
  Link link = Link::Whole;
  int breaksAfter = -1;                 ///< answered applies after which the link is cut before
  std::optional<Failure> wholeFailure;  ///< answers the next apply
  std::function<std::optional<Failure>(const Change&)> refuses;
  Variant ownerDataAnswer;
  std::function<DataPacket(const FetchRequest&)> answers;  ///< instead of the table's rows

  // --- what tests read --------------------------------------------------------------------------
  std::map<std::int64_t, std::vector<Variant>> rows;  ///< values in the order of the fields
  std::vector<ApplyRequest> applies;
  std::vector<std::vector<FetchRequest>> fetches;
  std::vector<MethodCall> calls;
  int carriedOut = 0;

  void Put(int id, std::string_view name, std::optional<int> unit = {});
  /// "1 Ана, 2 Боби": the rows as the server holds them.
  std::string Text() const;

  Answer<Greeting> Greet() override { return Greeting{}; }
  Answer<SessionInfo> LogIn(const LoginRequest&) override { return SessionInfo{}; }
  Answer<Done> LogOut(const Caller&) override { return Done{}; }
  Answer<std::vector<DataPacket>> Fetch(const Caller& caller,
                                        const std::vector<FetchRequest>& requests) override;
  Answer<ApplyAnswer> Apply(const Caller& caller, const ApplyRequest& request) override;
  Answer<VariantArray> Call(const Caller& caller, const MethodCall& call) override;
  /// The rows whose value in that column is the given one; without a column all of them.
  DataPacket Rows(std::string_view column = {}, const Variant& value = {}) const;

 private:
  ApplyAnswer CarryOut(const ApplyRequest& request);
  ChangeOutcome CarryOut(const Change& change);
  std::size_t ColumnOf(std::string_view name) const;
  NamedValues Named(const std::vector<Variant>& values) const;

  ProviderDef table_ = item::dspItem;
  std::map<std::string, ChangeOutcome> answered_;
  std::int64_t nextId_ = 100;
};

/// A session on that server, a connection and the dataset of its table.
struct Desk {
  Desk();

  /// Fetches the rows and forgets what was counted and noted so far.
  void Open();
  /// Notes every event of the dataset under its name.
  void NoteEvents();
  /// What was noted since the last call, parted by blanks.
  std::string Noted();
  void Note(const std::string& what) { notes += (notes.empty() ? "" : " ") + what; }
  /// Edits the row with that key: values as "Name=Ана Price=3,50"; nothing is posted.
  void Type(int id, const std::string& values);
  void TypeNew(const std::string& values);
  void Fill(const std::string& values);

  FakeServer server;
  ClientSession session;
  TVosSQLConnection connection;
  TVosClientDataSet items;
  TDataSource source;
  std::string notes;
};

/// Rows as they are shown, the current one in brackets: "1 Ана, [2 Боби]".
std::string Shown(const TVosClientDataSet& dataSet);
/// A change as a line: "update 1 Name: Ана → Боби".
std::string TextOf(const Change& change);
std::string TextOf(const Delta& delta);

}  // namespace orvane::data::test
