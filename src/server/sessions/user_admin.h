#pragma once

// Users, their rights and their employee records, as an administrator keeps them from the server's
// command line. What is taken away is gone at the user's next request.

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "packet/clock.h"
#include "packet/failure.h"
#include "server/engine/database.h"
#include "server/sessions/passwords.h"

namespace orvane::server {

struct NewUser {
  std::string login;  ///< up to 10 letters, digits, '.', '_' or '-'; unique whatever the case
  std::string name;
  std::string name2;
  std::int32_t level = 3;     ///< 0 to 99; 0 sees everything; 3 and more need an employee record
  std::int32_t language = 1;  ///< 1 first, 2 second
  std::string password;
};

struct NewEmployee {
  std::int64_t code = 0;
  std::string name;
  std::string name2;
  std::optional<std::string> login;
};

inline constexpr std::int32_t kAllRights = 15;

/// A column of documents that keeps a login: whose they are, and who stamped them.
struct LoginColumn {
  std::string_view table;
  std::string_view column;
};
std::span<const LoginColumn> LoginColumns();

class UserAdmin {
 public:
  UserAdmin(Database& database, const Clock& clock, PasswordCost cost)
      : database_(database), clock_(clock), cost_(cost) {}

  Answer<Done> NameCompany(const std::string& name);
  /// Refused when documents name a removed user of that login: they would become the new one's.
  Answer<Done> AddUser(const NewUser& user);
  /// Refused while the user heads a department. His employee record stays, without a login.
  Answer<Done> RemoveUser(const std::string& login);
  /// An employee who is there already and has no login gets this one.
  Answer<Done> AddEmployee(const NewEmployee& employee);
  /// Refused when another login stands for that employee.
  Answer<Done> CheckEmployeeFree(std::int64_t code);
  /// Rights are the sum of the bits of Right; 0 takes the point away.
  Answer<Done> Grant(const std::string& login, std::int32_t point, std::int32_t rights);
  /// The same rights at every point of the module.
  Answer<Done> GrantEverywhere(const std::string& login, std::int32_t rights);
  /// Ends the user's sessions too.
  Answer<Done> SetPassword(const std::string& login, std::string_view password);
  Answer<Done> SetBlocked(const std::string& login, bool blocked);

 private:
  struct Entry;
  Answer<Done> Write(std::span<const Entry> entries, std::string_view doing);
  Answer<Done> WriteOne(const Entry& entry, std::string_view doing);
  Answer<DataPacket> Read(const Statement& statement, std::string_view doing);
  Answer<DataPacket> LoginOf(std::int64_t employee);
  Answer<Done> CheckNobodyElses(const std::string& login);
  Entry GrantEntry(const std::string& login, std::int32_t point, std::int32_t rights) const;

  Database& database_;
  const Clock& clock_;
  const PasswordCost cost_;
};

}  // namespace orvane::server
