#include "server/sessions/sessions.h"

#include <spdlog/spdlog.h>

#include <algorithm>

#include "packet/fold.h"
#include "server/log/log_text.h"
#include "server/schema/embedded_migrations.h"
#include "server/sessions/engine_failures.h"
#include "server/sessions/statements.h"

namespace orvane::server {
namespace {

constexpr std::int64_t kSecond = 1'000'000;
constexpr std::int64_t kMinute = 60 * kSecond;
constexpr std::int64_t kHour = 60 * kMinute;
constexpr std::int64_t kDay = 24 * kHour;

/// Attempts of one login that are free of charge, and of one address whatever the logins; each
/// further one doubles the wait.
constexpr std::int64_t kFreeFailures = 4;
constexpr std::int64_t kFreeOfAddress = 20;
constexpr std::int64_t kFirstWait = 15 * kSecond;
constexpr std::int64_t kLongestWait = 15 * kMinute;
/// After a day without a failed login the count starts anew.
constexpr std::int64_t kFailuresForgotten = kDay;

constexpr std::int64_t kSeenEvery = kMinute;
constexpr std::int64_t kSweepEvery = kHour;
constexpr std::int64_t kEndedSessionsKept = 30 * kDay;
constexpr std::int64_t kClientKeysKept = 7 * kDay;
constexpr std::int64_t kMachinesKnown = 90 * kDay;
/// More sessions than any server has; beyond it the memory starts anew.
constexpr std::size_t kMostRemembered = 20'000;

constexpr char kLoginSubject[] = "login:";
constexpr char kKnownSubject[] = "known:";
constexpr char kAddressSubject[] = "address:";
constexpr std::size_t kLongestLogin = 60;
constexpr std::size_t kLongestMachineName = 64;
constexpr std::size_t kLongestVersion = 32;

constexpr char kSelectCompany[] =
    "select Name, ZoneOffsetMinutes, SummerTime, LanguageName, LanguageName2, MultiLanguage, "
    "Demonstration from Company";

constexpr char kSelectAttempt[] =
    "select Failures, LockedTill from LoginAttempt where Subject = ?1";

constexpr char kSelectPassword[] =
    "select ShortName, PasswordHash, Blocked, Identity from WSysUsers where FoldShortName = ?1";

/// The hash of the next user, the first one behind the last: an unknown name is compared with it,
/// and so costs what that of somebody costs. The schema is looked at on the way.
constexpr char kSelectDecoy[] =
    "select coalesce((select PasswordHash from WSysUsers where PasswordHash is not null and "
    "FoldShortName > ?1 order by FoldShortName limit 1), (select PasswordHash from WSysUsers where "
    "PasswordHash is not null order by FoldShortName limit 1)) as Decoy, "
    "(select count(*) from SchemaMigration) as Migrations, Elapsed from RunningTime";

constexpr char kSelectKnown[] = "select SeenAt from KnownMachine where Login = ?1 and Machine = ?2";

constexpr char kKnowMachine[] =
    "insert into KnownMachine (Login, Machine, SeenAt) values (?1, ?2, ?3) "
    "on conflict (Login, Machine) do update set SeenAt = excluded.SeenAt";

/// Touches no row while the subject is locked.
constexpr char kCountAttempt[] =
    "insert into LoginAttempt (Subject, Failures, FailedAt) values (?1, 1, ?2) "
    "on conflict (Subject) do update set FailedAt = excluded.FailedAt, Failures = "
    "case when LoginAttempt.FailedAt < ?3 then 1 else LoginAttempt.Failures + 1 end "
    "where LoginAttempt.LockedTill is null or LoginAttempt.LockedTill <= ?2";

constexpr char kLockAttempts[] = "update LoginAttempt set LockedTill = ?1 where Subject = ?2";

constexpr char kForgetAttempts[] = "delete from LoginAttempt where Subject = ?1";

/// A good login does not count against its address, and forgives nothing that counted before.
constexpr char kTakeBackAttempt[] =
    "update LoginAttempt set Failures = Failures - 1, LockedTill = null where Subject = ?1";

constexpr char kInsertSession[] =
    "insert into Session (TicketHash, SessionName, Login, MachineName, ProgramVersion, StartedOn, "
    "LastSeen, SeenAt, UserIdentity) values (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9)";

constexpr char kEndSession[] =
    "update Session set EndedOn = ?1 where TicketHash = ?2 and EndedOn is null";

constexpr char kNoteSeen[] =
    "update Session set LastSeen = ?1, SeenAt = ?2 where TicketHash = ?3 and SeenAt < ?2";

constexpr char kSelectSession[] =
    "select s.SessionName, s.MachineName, s.SeenAt, s.EndedOn, u.ShortName, u.UserName, "
    "u.UserName2, u.Category, u.Language, u.Blocked, u.RightsVersion, "
    "(select count(*) from Employees e where e.Login = u.ShortName) as EmployeeCount, "
    "(select min(e.Employee) from Employees e where e.Login = u.ShortName) as FirstEmployee "
    "from Session s join WSysUsers u on u.ShortName = s.Login and u.Identity = s.UserIdentity "
    "where s.TicketHash = ?1";

constexpr char kSelectRights[] =
    "select r.Point, r.Rights from Session s join UserRights r on r.Login = s.Login "
    "where s.TicketHash = ?1 order by r.Point";

/// A session belongs to a user's identity: his login may be somebody else's by now.
constexpr char kGuard[] =
    "select s.SeenAt, s.EndedOn, u.Blocked, u.RightsVersion, "
    "(select count(*) from Employees e where e.Login = u.ShortName) as EmployeeCount, "
    "(select min(e.Employee) from Employees e where e.Login = u.ShortName) as FirstEmployee, "
    "(select count(*) from SchemaMigration) as Migrations "
    "from Session s join WSysUsers u on u.ShortName = s.Login and u.Identity = s.UserIdentity "
    "where s.TicketHash = ?1";

std::int64_t IntAt(const DataPacket& packet, std::size_t row, std::string_view column) {
  return packet.At(row, column).AsInt().value_or(0);
}

std::string TextAt(const DataPacket& packet, std::size_t row, std::string_view column) {
  return packet.At(row, column).ToText();
}

Statement SelectSession(const std::string& ticketHash) {
  return Select(kSelectSession, {ticketHash},
                {{"SessionName", ValueKind::String, 16},
                 {"MachineName", ValueKind::String, 64},
                 {"SeenAt", ValueKind::Code, 0},
                 {"EndedOn", ValueKind::Stamp, 0},
                 {"ShortName", ValueKind::String, 10},
                 {"UserName", ValueKind::String, 30},
                 {"UserName2", ValueKind::String, 30},
                 {"Category", ValueKind::Int32, 0},
                 {"Language", ValueKind::Int32, 0},
                 {"Blocked", ValueKind::Bool, 0},
                 {"RightsVersion", ValueKind::Code, 0},
                 {"EmployeeCount", ValueKind::Code, 0},
                 {"FirstEmployee", ValueKind::Code, 0}});
}

Statement SelectRights(const std::string& ticketHash) {
  return Select(kSelectRights, {ticketHash},
                {{"Point", ValueKind::Int32, 0}, {"Rights", ValueKind::Int32, 0}});
}

/// Whether a session of this row may ask; `packet` has SeenAt, EndedOn and Blocked.
bool Lives(const DataPacket& packet, std::int64_t now, std::int64_t idleMicros) {
  if (packet.rowCount != 1) return false;
  if (!packet.At(0, "EndedOn").IsNull()) return false;
  if (IntAt(packet, 0, "Blocked") != 0) return false;
  return now - IntAt(packet, 0, "SeenAt") <= idleMicros;
}

std::shared_ptr<const Session> SessionOf(const std::string& ticketHash, const DataPacket& row,
                                         const DataPacket& rights) {
  auto session = std::make_shared<Session>();
  session->ticketHash = ticketHash;
  session->sessionName = TextAt(row, 0, "SessionName");
  session->machineName = TextAt(row, 0, "MachineName");
  session->login = TextAt(row, 0, "ShortName");
  session->userName = TextAt(row, 0, "UserName");
  session->userName2 = TextAt(row, 0, "UserName2");
  session->userLevel = static_cast<std::int32_t>(IntAt(row, 0, "Category"));
  session->userLanguage = static_cast<std::int32_t>(IntAt(row, 0, "Language"));
  session->rightsVersion = IntAt(row, 0, "RightsVersion");
  session->employeeCount = IntAt(row, 0, "EmployeeCount");
  session->firstEmployee = IntAt(row, 0, "FirstEmployee");
  for (std::size_t i = 0; i < rights.rowCount; ++i) {
    session->points.push_back({static_cast<std::int32_t>(IntAt(rights, i, "Point")),
                               static_cast<std::int32_t>(IntAt(rights, i, "Rights"))});
  }
  return session;
}

/// Whether the database has the migrations of this program and no others.
bool IsOwnSchema(const DataPacket& packet, Engine engine) {
  const auto own = engine == Engine::Sqlite ? SqliteMigrations() : PostgresMigrations();
  return IntAt(packet, 0, "Migrations") == static_cast<std::int64_t>(own.size());
}

/// How long the next attempt has to wait after so many, of which `free` cost nothing.
std::int64_t WaitAfter(std::int64_t failures, std::int64_t free) {
  if (failures <= free) return 0;
  std::int64_t wait = kFirstWait;
  for (std::int64_t i = free + 1; i < failures && wait < kLongestWait; ++i)
    wait *= 2;
  return std::min(wait, kLongestWait);
}

Failure WrongPassword() {
  return Refused("Грешно потребителско име или парола.");
}

/// Failure when what the client says of itself cannot be kept.
std::optional<Failure> CheckLoginTexts(const LoginRequest& request) {
  if (request.protocolVersion != kProtocolVersion) {
    return Refused("Програмата и сървърът са от различни версии (протокол " +
                   std::to_string(request.protocolVersion) + ", а на сървъра " +
                   std::to_string(kProtocolVersion) + "). Обновете програмата.");
  }
  for (const std::string* text :
       {&request.login, &request.password, &request.machineName, &request.programVersion}) {
    if (!IsUtf8(*text) || text->find('\0') != std::string::npos) {
      return Failure{FailureKind::BadRequest, "Заявката за вход съдържа непозволени знаци."};
    }
  }
  return std::nullopt;
}

}  // namespace

Failure SessionEndedFailure() {
  return {FailureKind::SessionEnded, "Сесията е приключила. Влезте отново."};
}

Failure OtherSchemaFailure() {
  return {FailureKind::LinkDown,
          "Базата от данни е обновена от друга програма и този сървър вече не я ползва. Обърнете "
          "се към администратора: сървърът трябва да се пусне отново с новата програма."};
}

/// What an attempt counts against. From a machine that the user is known from only against that
/// machine, so that nobody elsewhere can lock him out.
struct Sessions::Attempt {
  std::string login;    ///< folded
  std::string machine;  ///< hash of address and machine name
  std::string address;
  bool known = false;

  std::string LoginSubject() const {
    return known ? kKnownSubject + machine + ":" + login : kLoginSubject + login;
  }
  /// Empty when the address does not count.
  std::string AddressSubject() const {
    return known || address.empty() ? std::string() : kAddressSubject + address;
  }
};

Answer<Company> ReadCompany(Database& database) {
  const Statement select = Select(kSelectCompany, {},
                                  {{"Name", ValueKind::String, 120},
                                   {"ZoneOffsetMinutes", ValueKind::Int32, 0},
                                   {"SummerTime", ValueKind::Bool, 0},
                                   {"LanguageName", ValueKind::String, 40},
                                   {"LanguageName2", ValueKind::String, 40},
                                   {"MultiLanguage", ValueKind::Bool, 0},
                                   {"Demonstration", ValueKind::Bool, 0}});
  auto packets = database.ReadSnapshot({&select, 1});
  if (!packets) return ToFailure(packets.GetFailure(), "reading the company");
  const DataPacket& row = packets->front();
  if (row.rowCount != 1) {
    return Failure{FailureKind::Internal, "Базата от данни не съдържа фирма."};
  }
  Company company;
  company.name = TextAt(row, 0, "Name");
  company.zone.offsetMinutes = static_cast<std::int32_t>(IntAt(row, 0, "ZoneOffsetMinutes"));
  company.zone.europeanSummerTime = IntAt(row, 0, "SummerTime") != 0;
  company.languageNames.push_back(TextAt(row, 0, "LanguageName"));
  if (IntAt(row, 0, "MultiLanguage") != 0) {
    company.languageNames.push_back(TextAt(row, 0, "LanguageName2"));
  }
  company.demonstration = IntAt(row, 0, "Demonstration") != 0;
  return company;
}

Answer<SessionInfo> Sessions::LogIn(const LoginRequest& request, const Company& company,
                                    std::string_view address) {
  if (const auto failure = CheckLoginTexts(request)) return *failure;
  Attempt attempt;
  attempt.login = Fold(Utf8Cut(request.login, kLongestLogin));
  attempt.address = address;
  attempt.machine = TicketHash(attempt.address + '\n' + request.machineName);
  const Statement asked[] = {
      Select(kSelectPassword, {attempt.login},
             {{"ShortName", ValueKind::String, 10},
              {"PasswordHash", ValueKind::Memo, 0},
              {"Blocked", ValueKind::Bool, 0},
              {"Identity", ValueKind::String, 36}}),
      Select(kSelectDecoy, {attempt.login},
             {{"Decoy", ValueKind::Memo, 0},
              {"Migrations", ValueKind::Code, 0},
              {"Elapsed", ValueKind::Code, 0}}),
      Select(kSelectKnown, {attempt.login, attempt.machine}, {{"SeenAt", ValueKind::Code, 0}})};
  auto packets = database_.ReadSnapshot(asked);
  if (!packets) return ToFailure(packets.GetFailure(), "reading a login");
  const DataPacket& user = (*packets)[0];
  const DataPacket& around = (*packets)[1];
  if (!IsOwnSchema(around, database_.Kind())) return OtherSchemaFailure();
  running_.See(around);
  attempt.known = (*packets)[2].rowCount > 0;
  // Counted before the password is looked at, so that attempts side by side are counted too.
  if (const auto counted = CountAttempt(attempt); !counted) return counted.GetFailure();

  const bool exists = user.rowCount == 1 && !user.At(0, "PasswordHash").IsNull();
  const std::string hash = exists ? TextAt(user, 0, "PasswordHash") : TextAt(around, 0, "Decoy");
  if (!PasswordMatches(request.password, hash) || !exists) {
    spdlog::warn("failed login of {} from {} at {}", LogText(request.login),
                 LogText(request.machineName), LogText(address));
    return WrongPassword();
  }
  if (IntAt(user, 0, "Blocked") != 0) {
    return Refused("Потребител „" + TextAt(user, 0, "ShortName") +
                   "“ е блокиран. Обърнете се към администратора.");
  }
  LoginRequest known = request;
  known.login = TextAt(user, 0, "ShortName");
  return Start(known, company, attempt, TextAt(user, 0, "Identity"));
}

Answer<Done> Sessions::CountAttempt(const Attempt& attempt) {
  struct Counted {
    std::string subject;
    std::int64_t free;
  };
  const std::int64_t now = running_.Now();
  auto transaction = database_.Begin();
  if (!transaction) return ToFailure(transaction.GetFailure(), "counting a login");
  for (const Counted& row : {Counted{attempt.AddressSubject(), kFreeOfAddress},
                             Counted{attempt.LoginSubject(), kFreeFailures}}) {
    if (row.subject.empty()) continue;
    const auto counted =
        (*transaction)
            ->Execute(Command(kCountAttempt, {row.subject, now, now - kFailuresForgotten}));
    if (!counted) return ToFailure(counted.GetFailure(), "counting a login");
    const auto kept =
        (*transaction)
            ->Query(Select(kSelectAttempt, {row.subject},
                           {{"Failures", ValueKind::Code, 0}, {"LockedTill", ValueKind::Code, 0}}));
    if (!kept) return ToFailure(kept.GetFailure(), "counting a login");
    if (*counted == 0) {
      const std::int64_t left = IntAt(*kept, 0, "LockedTill") - now;
      return Refused("Твърде много неуспешни опити за вход. Опитайте отново след " +
                     std::to_string((left + kSecond - 1) / kSecond) + " сек.");
    }
    const std::int64_t wait = WaitAfter(IntAt(*kept, 0, "Failures"), row.free);
    if (wait == 0) continue;
    // With the time it counts from, so that a server that starts now tells the same wait.
    const Statement locks[] = {Command(kLockAttempts, {now + wait, row.subject}), running_.Note()};
    const auto locked = (*transaction)->ExecuteAll(locks);
    if (!locked) return ToFailure(locked.GetFailure(), "counting a login");
  }
  const auto committed = (*transaction)->Commit();
  if (!committed) return ToFailure(committed.GetFailure(), "counting a login");
  return Done{};
}

Answer<SessionInfo> Sessions::Start(const LoginRequest& request, const Company& company,
                                    const Attempt& attempt, const std::string& identity) {
  Sweep();
  const std::string ticket = NewTicket();
  const std::string hash = TicketHash(ticket);
  const Stamp now = clock_.Now();
  const std::int64_t running = running_.Now();
  auto transaction = database_.Begin();
  if (!transaction) return ToFailure(transaction.GetFailure(), "starting a session");
  std::vector<Statement> writes = {
      Command(
          kInsertSession,
          {hash, NewSessionName(), request.login, Utf8Cut(request.machineName, kLongestMachineName),
           Utf8Cut(request.programVersion, kLongestVersion), now, now, running, identity}),
      Command(kForgetAttempts, {attempt.LoginSubject()}),
      Command(kKnowMachine, {attempt.login, attempt.machine, running})};
  if (const std::string address = attempt.AddressSubject(); !address.empty()) {
    writes.push_back(Command(kTakeBackAttempt, {address}));
  }
  writes.push_back(running_.Note());
  const auto written = (*transaction)->ExecuteAll(writes);
  if (!written) return ToFailure(written.GetFailure(), "starting a session");
  const auto committed = (*transaction)->Commit();
  if (!committed) return ToFailure(committed.GetFailure(), "starting a session");

  auto session = Reload(hash);
  if (!session) return session.GetFailure();
  const Session& known = **session;
  spdlog::info("session {} of {} started from {} at {}", known.sessionName, LogText(known.login),
               LogText(known.machineName), LogText(attempt.address));
  SessionInfo info;
  info.ticket = ticket;
  info.sessionName = known.sessionName;
  info.login = known.login;
  info.userName = known.userName;
  info.userName2 = known.userName2;
  info.userLevel = known.userLevel;
  info.userLanguage = known.userLanguage;
  info.points = known.points;
  info.companyName = company.name;
  info.languageNames = company.languageNames;
  info.zone = company.zone;
  info.demonstration = company.demonstration;
  return info;
}

Answer<Done> Sessions::LogOut(const std::string& ticket) {
  const std::string hash = TicketHash(ticket);
  Forget(hash);
  auto transaction = database_.Begin();
  if (!transaction) return ToFailure(transaction.GetFailure(), "ending a session");
  const auto touched = (*transaction)->Execute(Command(kEndSession, {clock_.Now(), hash}));
  if (!touched) return ToFailure(touched.GetFailure(), "ending a session");
  const auto committed = (*transaction)->Commit();
  if (!committed) return ToFailure(committed.GetFailure(), "ending a session");
  if (*touched == 0) return SessionEndedFailure();
  return Done{};
}

Answer<std::shared_ptr<const Session>> Sessions::Find(const std::string& ticket) {
  if (ticket.empty()) return SessionEndedFailure();
  const std::string hash = TicketHash(ticket);
  {
    const std::lock_guard lock(mutex_);
    const auto found = remembered_.find(hash);
    if (found != remembered_.end()) return found->second.session;
  }
  return Reload(hash);
}

bool Sessions::Remembers(const std::string& ticket) {
  const std::lock_guard lock(mutex_);
  return remembered_.contains(TicketHash(ticket));
}

Answer<std::shared_ptr<const Session>> Sessions::Reload(const std::string& ticketHash) {
  const Statement asked[] = {SelectSession(ticketHash), SelectRights(ticketHash),
                             RunningTime::Read()};
  auto packets = database_.ReadSnapshot(asked);
  if (!packets) return ToFailure(packets.GetFailure(), "reading a session");
  running_.See((*packets)[2]);
  const DataPacket& row = (*packets)[0];
  if (!Lives(row, running_.Now(), options_.idleMinutes * kMinute)) {
    Forget(ticketHash);
    return SessionEndedFailure();
  }
  auto session = SessionOf(ticketHash, row, (*packets)[1]);
  const std::lock_guard lock(mutex_);
  if (remembered_.size() >= kMostRemembered) remembered_.clear();
  remembered_[ticketHash] = {session, IntAt(row, 0, "SeenAt")};
  return session;
}

Statement Sessions::Guard(const Session& session) const {
  return Select(kGuard, {session.ticketHash},
                {{"SeenAt", ValueKind::Code, 0},
                 {"EndedOn", ValueKind::Stamp, 0},
                 {"Blocked", ValueKind::Bool, 0},
                 {"RightsVersion", ValueKind::Code, 0},
                 {"EmployeeCount", ValueKind::Code, 0},
                 {"FirstEmployee", ValueKind::Code, 0},
                 {"Migrations", ValueKind::Code, 0}});
}

GuardVerdict Sessions::Judge(const Session& session, const DataPacket& guard) const {
  if (!Lives(guard, running_.Now(), options_.idleMinutes * kMinute)) return GuardVerdict::Ended;
  if (!IsOwnSchema(guard, database_.Kind())) return GuardVerdict::OtherSchema;
  const bool same = IntAt(guard, 0, "RightsVersion") == session.rightsVersion &&
                    IntAt(guard, 0, "EmployeeCount") == session.employeeCount &&
                    IntAt(guard, 0, "FirstEmployee") == session.firstEmployee;
  return same ? GuardVerdict::Current : GuardVerdict::Changed;
}

void Sessions::Forget(const std::string& ticketHash) {
  const std::lock_guard lock(mutex_);
  remembered_.erase(ticketHash);
}

void Sessions::NoteSeen(const Session& session) {
  const std::int64_t now = running_.Now();
  {
    const std::lock_guard lock(mutex_);
    const auto found = remembered_.find(session.ticketHash);
    if (found == remembered_.end()) return;
    if (now - found->second.seenAt < kSeenEvery) return;
    found->second.seenAt = now;
  }
  auto transaction = database_.Begin();
  if (!transaction) return;
  const Statement notes[] = {Command(kNoteSeen, {clock_.Now(), now, session.ticketHash}),
                             running_.Note()};
  const auto touched = (*transaction)->ExecuteAll(notes);
  const auto committed = (*transaction)->Commit();
  if (!touched || !committed)
    spdlog::warn("LastSeen of session {} not written", session.sessionName);
}

void Sessions::Sweep() {
  const std::int64_t now = running_.Now();
  {
    const std::lock_guard lock(mutex_);
    if (sweptAt_ && now - *sweptAt_ < kSweepEvery) return;
    sweptAt_ = now;
  }
  auto transaction = database_.Begin();
  if (!transaction) return;
  const Statement sweeps[] = {
      Command("delete from ClientKey where KeptAt < ?1", {now - kClientKeysKept}),
      Command("delete from LoginAttempt where FailedAt < ?1", {now - kFailuresForgotten}),
      Command("delete from KnownMachine where SeenAt < ?1", {now - kMachinesKnown}),
      Command("delete from Session where SeenAt < ?1", {now - kEndedSessionsKept})};
  const auto swept = (*transaction)->ExecuteAll(sweeps);
  if (!swept) {
    spdlog::warn("sweeping failed: {}", swept.GetFailure().text);
    return;
  }
  if (!(*transaction)->Commit()) spdlog::warn("sweeping failed at its commit");
}

}  // namespace orvane::server
