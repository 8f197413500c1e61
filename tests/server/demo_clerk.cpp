#include "server/demo_clerk.h"

#include "server/demo/demo_company.h"
#include "support/demo_rows.h"
#include "support/engine_steps.h"

namespace orvane::server {
namespace {

NamedValues RowAt(const DataPacket& rows, const DemoTable& table, std::size_t row) {
  NamedValues values;
  for (std::size_t column = 0; column < table.columns.size(); ++column)
    values.push_back({std::string(table.columns[column].name), rows.At(row, column)});
  return values;
}

/// Moments to the second: the clock of the tests never shows the same one twice.
std::string Shown(const Variant& value) {
  constexpr std::int64_t kSecond = 1'000'000;
  const auto stamp = value.AsStamp();
  return (stamp ? Variant(Stamp{stamp->micros / kSecond * kSecond}) : value).ToText();
}

}  // namespace

const Variant& At(const NamedValues& row, std::string_view column) {
  const Variant* value = FindValue(row, column);
  EXPECT_NE(value, nullptr) << column;
  static const Variant kNull;
  return value ? *value : kNull;
}

std::int64_t NumberAt(const NamedValues& row, std::string_view column) {
  return At(row, column).AsInt().value_or(0);
}

std::vector<NamedValues> RowsOf(Database& base, const DemoTable& table, const std::string& where) {
  const DataPacket packet = ReadDemoTable(base, table, where);
  std::vector<NamedValues> rows;
  for (std::size_t row = 0; row < packet.rowCount; ++row)
    rows.push_back(RowAt(packet, table, row));
  return rows;
}

void MakeSmallDemo(Database& base, std::int64_t requests) {
  DemoOptions options;
  options.passwordCost = PasswordCost::Lowest();
  options.documents = requests;
  ASSERT_TRUE(MakeDemoCompany(base, SystemClock{}, options));
}

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

DemoClerk::DemoClerk(Database& base, const std::vector<std::string>& clearing,
                     std::string_view serverClass, Point point)
    : base_(base), clock_(Stamp{}), serverClass_(serverClass), point_(point) {
  for (const std::string& statement : clearing)
    Do(base_, Sql(statement));
  ServerOptions options;
  options.sessions.passwordCost = PasswordCost::Lowest();
  server_ = std::make_unique<OrvaneServer>(base_, clock_, options);
  for (const auto& row : RowsOf(base_, demo::kEmployees, "Login is not null"))
    logins_[NumberAt(row, "Employee")] = At(row, "Login").ToText();
}

void DemoClerk::Come(const std::string& login, Stamp moment) {
  clock_.Set(moment);
  const auto password = login + "2026";
  auto info = server_->LogIn({.protocolVersion = kProtocolVersion,
                              .login = login,
                              .password = password,
                              .machineName = "TEST-PC",
                              .programVersion = "0.1.0"});
  ASSERT_TRUE(info) << login << ": " << info.GetFailure().message;
  caller_ = {info->ticket, kOrvaneModuleNo, static_cast<std::int32_t>(point_)};
  login_ = login;
}

void DemoClerk::Apply(std::string_view provider, Change change) {
  const auto answer = server_->Apply(
      caller_, {std::string(serverClass_), std::string(provider), 0, {}, {std::move(change)}});
  ASSERT_TRUE(answer) << answer.GetFailure().message;
  const ChangeOutcome& outcome = answer->outcomes.front();
  EXPECT_FALSE(outcome.failure) << Where() << ", " << provider << ": " << outcome.failure->message;
}

}  // namespace orvane::server
