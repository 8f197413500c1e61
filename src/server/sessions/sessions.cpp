#include "server/sessions/sessions.h"

#include <spdlog/spdlog.h>

#include <algorithm>

#include "packet/fold.h"
#include "server/sessions/engine_failures.h"
#include "server/sessions/statements.h"

namespace orvane {
namespace {

constexpr std::int64_t kSecond = 1'000'000;
constexpr std::int64_t kMinute = 60 * kSecond;
constexpr std::int64_t kHour = 60 * kMinute;
constexpr std::int64_t kDay = 24 * kHour;

/// Failed logins that are free of charge; each further one doubles the wait.
constexpr std::int64_t kFreeFailures = 4;
constexpr std::int64_t kFirstWait = 15 * kSecond;
constexpr std::int64_t kLongestWait = 15 * kMinute;
/// After a day without a failed login the count starts anew.
constexpr std::int64_t kFailuresForgotten = kDay;

constexpr std::int64_t kSeenEvery = kMinute;
constexpr std::int64_t kSweepEvery = kHour;
constexpr std::int64_t kEndedSessionsKept = 30 * kDay;
constexpr std::int64_t kClientKeysKept = 7 * kDay;
/// More sessions than any server has; beyond it the memory starts anew.
constexpr std::size_t kMostRemembered = 20'000;

constexpr char kLoginSubject[] = "login:";
constexpr std::size_t kLongestLogin = 60;
constexpr std::size_t kLongestMachineName = 64;
constexpr std::size_t kLongestVersion = 32;

constexpr char kSelectCompany[] =
    "select Name, ZoneOffsetMinutes, SummerTime, LanguageName, LanguageName2, MultiLanguage, "
    "Demonstration from Company";

constexpr char kSelectAttempt[] =
    "select Failures, LockedUntil from LoginAttempt where Subject = ?1";

constexpr char kSelectPassword[] =
    "select ShortName, PasswordHash, Blocked from WSysUsers where FoldShortName = ?1";

/// Touches no row while the subject is locked.
constexpr char kCountAttempt[] =
    "insert into LoginAttempt (Subject, Failures, LastFailedOn) values (?1, 1, ?2) "
    "on conflict (Subject) do update set LastFailedOn = excluded.LastFailedOn, Failures = "
    "case when LoginAttempt.LastFailedOn < ?3 then 1 else LoginAttempt.Failures + 1 end "
    "where LoginAttempt.LockedUntil is null or LoginAttempt.LockedUntil <= ?2";

constexpr char kLockAttempts[] = "update LoginAttempt set LockedUntil = ?1 where Subject = ?2";

constexpr char kForgetAttempts[] = "delete from LoginAttempt where Subject = ?1";

constexpr char kInsertSession[] =
    "insert into Session (TicketHash, SessionName, Login, MachineName, ProgramVersion, StartedOn, "
    "LastSeen) values (?1, ?2, ?3, ?4, ?5, ?6, ?7)";

constexpr char kEndSession[] =
    "update Session set EndedOn = ?1 where TicketHash = ?2 and EndedOn is null";

constexpr char kNoteSeen[] =
    "update Session set LastSeen = ?1 where TicketHash = ?2 and LastSeen < ?1";

constexpr char kSelectSession[] =
    "select s.SessionName, s.MachineName, s.LastSeen, s.EndedOn, u.ShortName, u.UserName, "
    "u.UserName2, u.Category, u.Language, u.Blocked, u.RightsVersion, "
    "(select count(*) from Employees e where e.Login = u.ShortName) as EmployeeCount, "
    "(select min(e.Employee) from Employees e where e.Login = u.ShortName) as FirstEmployee "
    "from Session s join WSysUsers u on u.ShortName = s.Login where s.TicketHash = ?1";

constexpr char kSelectRights[] =
    "select r.Point, r.Rights from Session s join UserRights r on r.Login = s.Login "
    "where s.TicketHash = ?1 order by r.Point";

constexpr char kGuard[] =
    "select s.LastSeen, s.EndedOn, u.Blocked, u.RightsVersion, "
    "(select count(*) from Employees e where e.Login = u.ShortName) as EmployeeCount, "
    "(select min(e.Employee) from Employees e where e.Login = u.ShortName) as FirstEmployee "
    "from Session s join WSysUsers u on u.ShortName = s.Login where s.TicketHash = ?1";

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
                 {"LastSeen", ValueKind::Stamp, 0},
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

/// Whether a session of this row may ask; `packet` has LastSeen, EndedOn and Blocked.
bool Lives(const DataPacket& packet, Stamp now, std::int64_t idleMicros) {
  if (packet.rowCount != 1) return false;
  if (!packet.At(0, "EndedOn").IsNull()) return false;
  if (IntAt(packet, 0, "Blocked") != 0) return false;
  const auto seen = packet.At(0, "LastSeen").AsStamp();
  return seen && now.micros - seen->micros <= idleMicros;
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

/// How long the next attempt has to wait after so many failed ones.
std::int64_t WaitAfter(std::int64_t failures) {
  if (failures <= kFreeFailures) return 0;
  std::int64_t wait = kFirstWait;
  for (std::int64_t i = kFreeFailures + 1; i < failures && wait < kLongestWait; ++i)
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

Answer<SessionInfo> Sessions::LogIn(const LoginRequest& request, const Company& company) {
  if (const auto failure = CheckLoginTexts(request)) return *failure;
  const std::string folded = Fold(Utf8Cut(request.login, kLongestLogin));
  // Counted before the password is looked at, so that attempts side by side are counted too.
  if (const auto counted = CountAttempt(folded); !counted) return counted.GetFailure();

  const Statement select = Select(kSelectPassword, {folded},
                                  {{"ShortName", ValueKind::String, 10},
                                   {"PasswordHash", ValueKind::Memo, 0},
                                   {"Blocked", ValueKind::Bool, 0}});
  auto packets = database_.ReadSnapshot({&select, 1});
  if (!packets) return ToFailure(packets.GetFailure(), "reading a login");
  const DataPacket& user = packets->front();
  if (user.rowCount != 1) {
    SpendAsIfCompared(request.password, options_.passwordCost);
    return WrongPassword();
  }
  if (!PasswordMatches(request.password, TextAt(user, 0, "PasswordHash"))) {
    spdlog::warn("failed login of {} from {}", TextAt(user, 0, "ShortName"), request.machineName);
    return WrongPassword();
  }
  if (IntAt(user, 0, "Blocked") != 0) {
    return Refused("Потребител „" + TextAt(user, 0, "ShortName") +
                   "“ е блокиран. Обърнете се към администратора.");
  }
  LoginRequest known = request;
  known.login = TextAt(user, 0, "ShortName");
  return Start(known, company);
}

Answer<Done> Sessions::CountAttempt(const std::string& login) {
  const std::string subject = kLoginSubject + login;
  const Stamp now = clock_.Now();
  auto transaction = database_.Begin();
  if (!transaction) return ToFailure(transaction.GetFailure(), "counting a login");
  const Stamp forgotten{now.micros - kFailuresForgotten};
  const auto counted = (*transaction)->Execute(Command(kCountAttempt, {subject, now, forgotten}));
  if (!counted) return ToFailure(counted.GetFailure(), "counting a login");
  const auto attempt =
      (*transaction)
          ->Query(Select(kSelectAttempt, {subject},
                         {{"Failures", ValueKind::Code, 0}, {"LockedUntil", ValueKind::Stamp, 0}}));
  if (!attempt) return ToFailure(attempt.GetFailure(), "counting a login");
  if (*counted == 0) {
    const Stamp until = attempt->At(0, "LockedUntil").AsStamp().value_or(now);
    return Refused("Твърде много неуспешни опити за вход. Опитайте отново след " +
                   std::to_string((until.micros - now.micros + kSecond - 1) / kSecond) + " сек.");
  }
  const std::int64_t wait = WaitAfter(IntAt(*attempt, 0, "Failures"));
  if (wait > 0) {
    const Stamp until{now.micros + wait};
    const auto locked = (*transaction)->Execute(Command(kLockAttempts, {until, subject}));
    if (!locked) return ToFailure(locked.GetFailure(), "counting a login");
  }
  const auto committed = (*transaction)->Commit();
  if (!committed) return ToFailure(committed.GetFailure(), "counting a login");
  return Done{};
}

Answer<SessionInfo> Sessions::Start(const LoginRequest& request, const Company& company) {
  Sweep();
  const std::string ticket = NewTicket();
  const std::string hash = TicketHash(ticket);
  const Stamp now = clock_.Now();
  auto transaction = database_.Begin();
  if (!transaction) return ToFailure(transaction.GetFailure(), "starting a session");
  const Statement writes[] = {
      Command(kInsertSession, {hash, NewSessionName(), request.login,
                               Utf8Cut(request.machineName, kLongestMachineName),
                               Utf8Cut(request.programVersion, kLongestVersion), now, now}),
      Command(kForgetAttempts, {kLoginSubject + Fold(request.login)})};
  const auto written = (*transaction)->ExecuteAll(writes);
  if (!written) return ToFailure(written.GetFailure(), "starting a session");
  const auto committed = (*transaction)->Commit();
  if (!committed) return ToFailure(committed.GetFailure(), "starting a session");

  auto session = Reload(hash);
  if (!session) return session.GetFailure();
  const Session& known = **session;
  spdlog::info("session {} of {} started from {}", known.sessionName, known.login,
               known.machineName);
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

Answer<std::shared_ptr<const Session>> Sessions::Reload(const std::string& ticketHash) {
  const Statement asked[] = {SelectSession(ticketHash), SelectRights(ticketHash)};
  auto packets = database_.ReadSnapshot(asked);
  if (!packets) return ToFailure(packets.GetFailure(), "reading a session");
  const DataPacket& row = (*packets)[0];
  if (!Lives(row, clock_.Now(), options_.idleMinutes * kMinute)) {
    Forget(ticketHash);
    return SessionEndedFailure();
  }
  auto session = SessionOf(ticketHash, row, (*packets)[1]);
  const std::lock_guard lock(mutex_);
  if (remembered_.size() >= kMostRemembered) remembered_.clear();
  remembered_[ticketHash] = {session, row.At(0, "LastSeen").AsStamp().value_or(Stamp{})};
  return session;
}

Statement Sessions::Guard(const Session& session) const {
  return Select(kGuard, {session.ticketHash},
                {{"LastSeen", ValueKind::Stamp, 0},
                 {"EndedOn", ValueKind::Stamp, 0},
                 {"Blocked", ValueKind::Bool, 0},
                 {"RightsVersion", ValueKind::Code, 0},
                 {"EmployeeCount", ValueKind::Code, 0},
                 {"FirstEmployee", ValueKind::Code, 0}});
}

GuardVerdict Sessions::Judge(const Session& session, const DataPacket& guard) const {
  if (!Lives(guard, clock_.Now(), options_.idleMinutes * kMinute)) return GuardVerdict::Ended;
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
  const Stamp now = clock_.Now();
  {
    const std::lock_guard lock(mutex_);
    const auto found = remembered_.find(session.ticketHash);
    if (found == remembered_.end()) return;
    if (now.micros - found->second.lastSeen.micros < kSeenEvery) return;
    found->second.lastSeen = now;
  }
  auto transaction = database_.Begin();
  if (!transaction) return;
  const auto touched = (*transaction)->Execute(Command(kNoteSeen, {now, session.ticketHash}));
  const auto committed = (*transaction)->Commit();
  if (!touched || !committed)
    spdlog::warn("LastSeen of session {} not written", session.sessionName);
}

void Sessions::Sweep() {
  const Stamp now = clock_.Now();
  {
    const std::lock_guard lock(mutex_);
    if (now.micros - lastSweep_.micros < kSweepEvery) return;
    lastSweep_ = now;
  }
  auto transaction = database_.Begin();
  if (!transaction) return;
  const Statement sweeps[] = {
      Command("delete from ClientKey where CreatedOn < ?1", {Stamp{now.micros - kClientKeysKept}}),
      Command("delete from LoginAttempt where LastFailedOn < ?1",
              {Stamp{now.micros - kFailuresForgotten}}),
      Command("delete from Session where LastSeen < ?1", {Stamp{now.micros - kEndedSessionsKept}})};
  const auto swept = (*transaction)->ExecuteAll(sweeps);
  if (!swept) {
    spdlog::warn("sweeping failed: {}", swept.GetFailure().text);
    return;
  }
  if (!(*transaction)->Commit()) spdlog::warn("sweeping failed at its commit");
}

}  // namespace orvane
