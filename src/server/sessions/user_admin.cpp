#include "server/sessions/user_admin.h"

#include <algorithm>
#include <vector>

#include "contract/points.h"
#include "packet/fold.h"
#include "server/sessions/engine_failures.h"
#include "server/sessions/statements.h"

namespace orvane::server {
namespace {

/// What history names as the author of changes from the command line.
constexpr char kAdministrator[] = "server";

constexpr std::int32_t kHighestLevel = 99;
constexpr std::size_t kLongestLogin = 10;
constexpr std::size_t kLongestUserName = 30;
constexpr std::size_t kLongestEmployeeName = 60;
constexpr std::size_t kLongestCompanyName = 120;

constexpr char kHistory[] =
    "insert into History (TableName, RowKey, ColumnName, NewValue, ChangedBy, ChangedOn, "
    "MachineName, Kind) values (?1, ?2, ?3, ?4, ?5, ?6, '', ?7)";

constexpr char kInsertUser[] =
    "insert into WSysUsers (ShortName, UserName, UserName2, FoldShortName, FoldUserName, "
    "FoldUserName2, Category, Language, PasswordHash) values (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9)";
constexpr char kSelectRemoved[] =
    "select distinct RowKey from History where TableName = 'WSysUsers' and Kind = 'D' "
    "and orvane_fold(RowKey) = ?1";
constexpr char kSelectHeaded[] =
    "select Name from Department where Chief = ?1 order by Code limit 1";
constexpr char kSelectRights[] = "select Point from UserRights where Login = ?1 order by Point";
constexpr char kSelectEmployees[] =
    "select Employee from Employees where Login = ?1 order by Employee";
constexpr char kSelectLogin[] = "select Login from Employees where Employee = ?1";
constexpr char kSetLogin[] =
    "update Employees set Login = ?1 where Employee = ?2 and Login is null";
constexpr char kTakeLogin[] =
    "update Employees set Login = null where Employee = ?1 and Login = ?2";
constexpr char kInsertEmployee[] =
    "insert into Employees (Employee, Name, Name2, FoldName, FoldName2, Login) "
    "values (?1, ?2, ?3, ?4, ?5, ?6)";
constexpr char kGrant[] =
    "insert into UserRights (Login, Point, Rights) values (?1, ?2, ?3) "
    "on conflict (Login, Point) do update set Rights = excluded.Rights";
constexpr char kSetPassword[] = "update WSysUsers set PasswordHash = ?1 where ShortName = ?2";
constexpr char kEndSessions[] =
    "update Session set EndedOn = ?1 where Login = ?2 and EndedOn is null";
constexpr char kSetBlocked[] = "update WSysUsers set Blocked = ?1 where ShortName = ?2";

constexpr LoginColumn kLoginColumns[] = {
    {"SuppliesContracts", "CreatedFrom"}, {"SuppliesContracts", "AmendFrom"},
    {"SuppManifacOrder", "CreatedFrom"},  {"SuppManifacOrder", "AmendFrom"},
    {"SuppManifacOrder", "AnnulFrom"},    {"SuppManifacOrder", "SentFrom"},
    {"PurchaseOrder", "CreatedFrom"},     {"PurchaseOrder", "AmendFrom"},
    {"PurchaseOrder", "AnnulFrom"},       {"PurchaseOrder", "SentFrom"},
    {"Deliveries", "CreatedFrom"},        {"Deliveries", "AmendFrom"},
    {"Deliveries", "ConfirmedFrom"},      {"Deliveries", "AnnulFrom"},
    {"Deliveries", "SentFrom"},           {"SuppInvRegister", "CreatedFrom"},
    {"SuppInvRegister", "AnnulFrom"},
};

/// Has a row when a document names the login.
Statement NamedByDocuments(const Variant& login) {
  std::string text;
  for (const LoginColumn& one : kLoginColumns) {
    text += text.empty() ? "select 1 where exists (select 1 from " : ") or exists (select 1 from ";
    text.append(one.table).append(" where ").append(one.column).append(" = ?1");
  }
  return Select(text + ")", {login}, {{"Named", ValueKind::Int32, 0}});
}

Answer<Done> CheckLogin(std::string_view login) {
  const bool ascii = std::all_of(login.begin(), login.end(), [](char c) {
    return static_cast<unsigned char>(c) > 32 && c != '"' && c != '\'' && c != 127;
  });
  if (login.empty() || !ascii || !IsUtf8(login) || Utf8Length(login) > kLongestLogin) {
    return Refused("Потребителското име е от 1 до " + std::to_string(kLongestLogin) +
                   " знака без интервали и кавички.");
  }
  return Done{};
}

Answer<Done> CheckName(std::string_view name, std::size_t longest) {
  if (IsBlank(name)) return Refused("Името не може да е празно.");
  if (!IsUtf8(name) || Utf8Length(name) > longest) {
    return Refused("Името е по-дълго от " + std::to_string(longest) + " знака.");
  }
  return Done{};
}

Variant TextOrNull(const std::string& text) {
  return text.empty() ? Variant() : Variant(text);
}
Variant FoldOrNull(const std::string& text) {
  return text.empty() ? Variant() : Variant(Fold(text));
}

Failure SomebodyElses(const std::string& login) {
  return Refused("Потребителското име „" + login +
                 "“ е било на друг потребител и документи го помнят: те щяха да станат на новия. "
                 "Изберете друго име.");
}

Failure NoSuchUser(const std::string& login) {
  return Refused("Няма потребител „" + login + "“.");
}

}  // namespace

std::span<const LoginColumn> LoginColumns() {
  return kLoginColumns;
}

/// One statement with what history says of it.
struct UserAdmin::Entry {
  Statement statement;
  std::string_view table;
  std::string rowKey;
  std::string_view column;
  Variant value;
  std::string_view kind;   ///< I, U or D
  bool mustTouch = false;  ///< the row has to be there
};

Answer<Done> UserAdmin::Write(std::span<const Entry> entries, std::string_view doing) {
  auto transaction = database_.Begin();
  if (!transaction) return ToFailure(transaction.GetFailure(), doing);
  std::vector<Statement> statements;
  for (const Entry& entry : entries) {
    statements.push_back(entry.statement);
    statements.push_back(Command(kHistory, {entry.table, entry.rowKey, entry.column, entry.value,
                                            kAdministrator, clock_.Now(), entry.kind}));
  }
  const auto touched = (*transaction)->ExecuteAll(statements);
  if (!touched && touched.GetFailure().kind == EngineErrorKind::Unique) {
    return Refused("Вече има запис „" + entries.front().rowKey + "“.");
  }
  if (!touched && touched.GetFailure().kind == EngineErrorKind::ForeignKey) {
    return Refused(entries.front().kind == "D"
                       ? "„" + entries.front().rowKey + "“ се ползва и не може да бъде изтрит."
                       : "Няма такъв потребител.");
  }
  if (!touched) return ToFailure(touched.GetFailure(), doing);
  for (std::size_t i = 0; i < entries.size(); ++i) {
    if (entries[i].mustTouch && (*touched)[i * 2] == 0) return NoSuchUser(entries[i].rowKey);
  }
  const auto committed = (*transaction)->Commit();
  if (!committed) return ToFailure(committed.GetFailure(), doing);
  return Done{};
}

Answer<DataPacket> UserAdmin::Read(const Statement& statement, std::string_view doing) {
  auto packets = database_.ReadSnapshot({&statement, 1});
  if (!packets) return ToFailure(packets.GetFailure(), doing);
  return std::move(packets->front());
}

Answer<Done> UserAdmin::WriteOne(const Entry& entry, std::string_view doing) {
  return Write({&entry, 1}, doing);
}

Answer<Done> UserAdmin::NameCompany(const std::string& name) {
  if (const auto checked = CheckName(name, kLongestCompanyName); !checked) {
    return checked.GetFailure();
  }
  return WriteOne(
      {Command("update Company set Name = ?1", {name}), "Company", "1", "Name", name, "U"},
      "naming the company");
}

Answer<Done> UserAdmin::AddUser(const NewUser& user) {
  if (const auto checked = CheckLogin(user.login); !checked) return checked.GetFailure();
  if (const auto checked = CheckName(user.name, kLongestUserName); !checked) {
    return checked.GetFailure();
  }
  if (!user.name2.empty()) {
    const auto checked = CheckName(user.name2, kLongestUserName);
    if (!checked) return checked.GetFailure();
  }
  if (user.level < 0 || user.level > kHighestLevel) {
    return Refused("Нивото на потребителя е от 0 до " + std::to_string(kHighestLevel) + ".");
  }
  if (const auto checked = CheckPassword(user.password); !checked) return checked.GetFailure();
  if (const auto free = CheckNobodyElses(user.login); !free) return free.GetFailure();
  const auto hash = HashPassword(user.password, cost_);
  if (!hash) return hash.GetFailure();
  const Statement insert = Command(
      kInsertUser, {user.login, user.name, TextOrNull(user.name2), Fold(user.login),
                    Fold(user.name), FoldOrNull(user.name2), user.level, user.language, *hash});
  return WriteOne({insert, "WSysUsers", user.login, "ShortName", user.login, "I"}, "adding a user");
}

Answer<Done> UserAdmin::CheckNobodyElses(const std::string& login) {
  constexpr char kDoing[] = "looking for a former user";
  const auto removed =
      Read(Select(kSelectRemoved, {Fold(login)}, {{"RowKey", ValueKind::Memo, 0}}), kDoing);
  if (!removed) return removed.GetFailure();
  for (std::size_t row = 0; row < removed->rowCount; ++row) {
    const auto named = Read(NamedByDocuments(removed->At(row, "RowKey")), kDoing);
    if (!named) return named.GetFailure();
    if (named->rowCount > 0) return SomebodyElses(login);
  }
  return Done{};
}

Answer<Done> UserAdmin::RemoveUser(const std::string& login) {
  constexpr char kDoing[] = "removing a user";
  const auto headed =
      Read(Select(kSelectHeaded, {login}, {{"Name", ValueKind::String, 40}}), kDoing);
  if (!headed) return headed.GetFailure();
  if (headed->rowCount > 0) {
    return Refused("Потребител „" + login + "“ е началник на дирекция „" +
                   headed->At(0, "Name").ToText() +
                   "“. Изберете първо друг началник на дирекцията.");
  }
  // The engine takes what hangs on the user with him; history tells of it.
  const auto rights =
      Read(Select(kSelectRights, {login}, {{"Point", ValueKind::Int32, 0}}), kDoing);
  if (!rights) return rights.GetFailure();
  const auto employees =
      Read(Select(kSelectEmployees, {login}, {{"Employee", ValueKind::Code, 0}}), kDoing);
  if (!employees) return employees.GetFailure();
  std::vector<Entry> entries = {{Command("delete from WSysUsers where ShortName = ?1", {login}),
                                 "WSysUsers", login, "ShortName", Variant(), "D", true}};
  for (std::size_t row = 0; row < rights->rowCount; ++row) {
    const auto point = rights->At(row, "Point").AsInt().value_or(0);
    entries.push_back(GrantEntry(login, static_cast<std::int32_t>(point), 0));
  }
  for (std::size_t row = 0; row < employees->rowCount; ++row) {
    const Variant employee = employees->At(row, "Employee");
    entries.push_back({Command(kTakeLogin, {employee, login}), "Employees", employee.ToText(),
                       "Login", Variant(), "U"});
  }
  return Write(entries, kDoing);
}

Answer<Done> UserAdmin::AddEmployee(const NewEmployee& employee) {
  if (employee.code <= 0) return Refused("Кодът на служителя е положително число.");
  if (const auto checked = CheckName(employee.name, kLongestEmployeeName); !checked) {
    return checked.GetFailure();
  }
  const std::string code = std::to_string(employee.code);
  const auto present = LoginOf(employee.code);
  if (!present) return present.GetFailure();
  if (employee.login && present->rowCount > 0 && present->At(0, "Login").IsNull()) {
    return WriteOne({Command(kSetLogin, {*employee.login, employee.code}), "Employees", code,
                     "Login", *employee.login, "U"},
                    "naming an employee's login");
  }
  const Statement insert =
      Command(kInsertEmployee,
              {employee.code, employee.name, TextOrNull(employee.name2), Fold(employee.name),
               FoldOrNull(employee.name2), employee.login ? Variant(*employee.login) : Variant()});
  return WriteOne({insert, "Employees", code, "Employee", code, "I"}, "adding an employee");
}

Answer<DataPacket> UserAdmin::LoginOf(std::int64_t employee) {
  return Read(Select(kSelectLogin, {employee}, {{"Login", ValueKind::String, 10}}),
              "looking for an employee");
}

Answer<Done> UserAdmin::CheckEmployeeFree(std::int64_t code) {
  const auto present = LoginOf(code);
  if (!present) return present.GetFailure();
  if (present->rowCount == 0 || present->At(0, "Login").IsNull()) return Done{};
  return Refused("Служител " + std::to_string(code) + " вече е свързан с потребител „" +
                 present->At(0, "Login").ToText() + "“.");
}

UserAdmin::Entry UserAdmin::GrantEntry(const std::string& login, std::int32_t point,
                                       std::int32_t rights) const {
  const std::string key = login + "/" + std::to_string(point);
  if (rights == 0) {
    return {Command("delete from UserRights where Login = ?1 and Point = ?2", {login, point}),
            "UserRights",
            key,
            "Rights",
            Variant(),
            "D"};
  }
  return {Command(kGrant, {login, point, rights}),
          "UserRights",
          key,
          "Rights",
          std::to_string(rights),
          "U"};
}

Answer<Done> UserAdmin::Grant(const std::string& login, std::int32_t point, std::int32_t rights) {
  if (rights < 0 || rights > kAllRights) return Refused("Правата са сбор от 1, 2, 4 и 8.");
  return WriteOne(GrantEntry(login, point, rights), "granting rights");
}

Answer<Done> UserAdmin::GrantEverywhere(const std::string& login, std::int32_t rights) {
  if (rights < 0 || rights > kAllRights) return Refused("Правата са сбор от 1, 2, 4 и 8.");
  std::vector<Entry> entries;
  for (const PointRow& row : kPoints) {
    entries.push_back(GrantEntry(login, static_cast<std::int32_t>(row.point), rights));
  }
  return Write(entries, "granting rights");
}

Answer<Done> UserAdmin::SetPassword(const std::string& login, std::string_view password) {
  if (const auto checked = CheckPassword(password); !checked) return checked.GetFailure();
  const auto hash = HashPassword(password, cost_);
  if (!hash) return hash.GetFailure();
  const Entry entries[] = {
      {Command(kSetPassword, {*hash, login}), "WSysUsers", login, "PasswordHash", Variant(), "U",
       true},
      {Command(kEndSessions, {clock_.Now(), login}), "Session", login, "EndedOn", Variant(), "U"}};
  return Write(entries, "setting a password");
}

Answer<Done> UserAdmin::SetBlocked(const std::string& login, bool blocked) {
  return WriteOne({Command(kSetBlocked, {blocked ? 1 : 0, login}), "WSysUsers", login, "Blocked",
                   blocked ? "1" : "0", "U", true},
                  "blocking a user");
}

}  // namespace orvane::server
