#include "torture/promises.h"

#include <signal.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <fstream>
#include <random>
#include <thread>

#include "contract/department.h"
#include "contract/points.h"
#include "contract/system.h"
#include "packet/clock.h"
#include "server/check/check.h"
#include "torture/cutting_proxy.h"
#include "torture/floods.h"
#include "torture/writers.h"

namespace orvane::torture {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;
using std::chrono::seconds;

constexpr int kWriters = 6;
constexpr long kMostMegabytes = 300;
constexpr seconds kNewcomerWaits{30};
/// A call may wait for its turn and for the database's answer; then it says so.
constexpr seconds kLongestCall{40};

Outcome Held(std::string note) {
  return {Outcome::Kind::Held, std::move(note)};
}
Outcome Broken(std::string note) {
  return {Outcome::Kind::Broken, std::move(note)};
}
Outcome Left(std::string note) {
  return {Outcome::Kind::Left, std::move(note)};
}

ServerProcess ServerOf(const Place& place) {
  return {place.program, place.database, place.folder + "/server.log"};
}

std::string Joined(const std::vector<std::string>& texts) {
  std::string joined;
  for (const std::string& text : texts)
    joined += (joined.empty() ? "" : "; ") + text;
  return joined;
}

/// Nothing acknowledged is lost, doubled or torn, and the database finds nothing wrong with itself.
Outcome Judge(const Place& place, const Book& book, const std::string& note) {
  const auto database = Look(place);
  if (!database) return Broken("the database does not open");
  std::vector<std::string> wrong = book.Differences(*database);
  const auto findings = CheckDatabase(*database, SystemClock().Now());
  if (!findings) wrong.push_back(findings.GetFailure().message);
  for (std::size_t i = 0; findings && i < std::min<std::size_t>(findings->size(), 3); ++i)
    wrong.push_back((*findings)[i]);
  if (book.Acknowledged() == 0) wrong.emplace_back("nothing was written");
  const std::string all = note + ", " + std::to_string(book.Acknowledged()) + " acknowledged";
  return wrong.empty() ? Held(all) : Broken(all + ": " + Joined(wrong));
}

milliseconds Somewhile(std::mt19937& random, int lowest, int highest) {
  return milliseconds(std::uniform_int_distribution<int>(lowest, highest)(random));
}

Outcome KilledServers(const Place& place) {
  ServerProcess server = ServerOf(place);
  if (!server.Start()) return Broken("the server does not start");
  std::mt19937 random(place.seed);
  Book book;
  int kills = 0;
  {
    Writers writers(book, server.Address(), "kill", kWriters);
    for (const auto end = Clock::now() + place.time; Clock::now() < end; ++kills) {
      std::this_thread::sleep_for(Somewhile(random, 300, 1200));
      server.Kill();
      if (!server.Start()) return Broken("the server does not start again");
    }
    writers.Finish();
  }
  if (!server.Stop()) return Broken("the server does not stop");
  return Judge(place, book, std::to_string(kills) + " kills");
}

Outcome CutConnections(const Place& place) {
  ServerProcess server = ServerOf(place);
  if (!server.Start()) return Broken("the server does not start");
  CuttingProxy proxy(server.Port());
  std::mt19937 random(place.seed);
  Book book;
  int cuts = 0;
  {
    Writers writers(book, "127.0.0.1:" + std::to_string(proxy.Port()), "cut", kWriters);
    for (const auto end = Clock::now() + place.time; Clock::now() < end;) {
      std::this_thread::sleep_for(Somewhile(random, 150, 900));
      cuts += proxy.CutAll();
    }
    writers.Finish();
  }
  if (!server.Stop()) return Broken("the server does not stop");
  return Judge(place, book, std::to_string(cuts) + " connections cut");
}

/// Takes the room of a disk but for so much, or gives it back.
void TakeRoom(const Place& place, std::size_t leave) {
  const std::string ballast = place.small + "/ballast";
  if (leave == 0) {
    unlink(ballast.c_str());
    return;
  }
  struct statvfs disk {};
  statvfs(place.small.c_str(), &disk);
  const std::size_t free = static_cast<std::size_t>(disk.f_bavail) * disk.f_bsize;
  if (free > leave) std::ofstream(ballast) << std::string(free - leave, 'x');
}

Outcome FullDisk(const Place& place) {
  constexpr char kSentence[] = "Дискът на базата от данни е пълен";
  constexpr std::size_t kLeft = 256 * 1024;
  if (place.small.empty()) return Left("a small disk is mounted by root only");
  ServerProcess server = ServerOf(place);
  if (!server.Start()) return Broken("the server does not start");
  Book book;
  bool told = false;
  {
    Writers writers(book, server.Address(), "full", 2);
    std::this_thread::sleep_for(seconds(1));
    TakeRoom(place, kLeft);
    const auto end = Clock::now() + std::max(place.time, seconds(20));
    while (!told && Clock::now() < end) {
      std::this_thread::sleep_for(milliseconds(100));
      told = book.Heard(kSentence) > 3;
    }
    TakeRoom(place, 0);
    const std::size_t before = book.Acknowledged();
    const auto again = Clock::now() + kNewcomerWaits;
    while (book.Acknowledged() < before + 3 && Clock::now() < again)
      std::this_thread::sleep_for(milliseconds(100));
    if (book.Acknowledged() < before + 3) return Broken("it does not go on when there is room");
    writers.Finish();
  }
  server.Stop();
  if (!told) return Broken("nobody was told that the disk is full");
  return Judge(place, book, "told, and went on when there was room");
}

/// Writes, as the library reads it, where a process's clock stands from now on.
void SetClockBy(const std::string& file, const std::string& offset) {
  std::ofstream(file + ".new") << offset << "\n";
  rename((file + ".new").c_str(), file.c_str());
}

Outcome JumpingClock(const Place& place) {
  if (place.clock.empty()) return Left("libfaketime is not installed");
  const std::string file = place.folder + "/clock";
  SetClockBy(file, "+0d");
  ServerProcess server = ServerOf(place);
  if (!server.Start({{"LD_PRELOAD", place.clock},
                     {"FAKETIME_TIMESTAMP_FILE", file},
                     {"FAKETIME_NO_CACHE", "1"},
                     {"FAKETIME_DONT_FAKE_MONOTONIC", "1"}})) {
    return Broken("the server does not start");
  }
  Book book;
  std::vector<std::string> wrong;
  Variant first;
  for (const char* offset : {"+0d", "+8d", "+9d", "-1d", "+365d", "+0d"}) {
    SetClockBy(file, offset);
    StrangerGuesses(server.Address(), kLogin, 3);
    const auto visitor = LetIn(server.Address(), kNewcomerWaits * 2);
    if (!visitor) {
      wrong.push_back(std::string(offset) + ": the user is locked out");
      continue;
    }
    const auto answer = visitor->server->Apply(visitor->caller, NewRequest("jump", "the-same-key"));
    if (!answer || !answer->outcomes.front().applied) {
      wrong.push_back(std::string(offset) + ": the same request is refused");
      continue;
    }
    if (first.IsNull()) first = answer->ownerData;
    if (!(answer->ownerData == first)) wrong.push_back(std::string(offset) + ": written again");
  }
  if (!server.Stop()) return Broken("the server does not stop");
  if (!wrong.empty()) return Broken(Joined(wrong));
  return Held("six jumps: nobody locked out, nothing twice");
}

/// A user at work beside what is done to the server: how long his longest question took, and how
/// many were not answered.
class AtWork {
 public:
  explicit AtWork(const std::string& address) : visitor_(LetIn(address, kNewcomerWaits)) {
    if (visitor_) thread_ = std::thread([this] { Ask(); });
  }
  ~AtWork() { Stop(); }
  bool WasLetIn() const { return visitor_ != nullptr; }
  void Stop() {
    over_ = true;
    if (thread_.joinable()) thread_.join();
  }
  milliseconds Longest() const { return longest_; }
  int Unanswered() const { return unanswered_; }
  int Asked() const { return asked_; }

 private:
  void Ask() {
    const std::vector<FetchRequest> requests = {
        {std::string(department::kServerClass), "dspDepartment", {}, {}, 0, {}},
        {std::string(system::kSearchClass),
         std::string(system::kSearchProvider),
         {},
         "SELECT Element, Name FROM NomIn WHERE Nomenclature = 250",
         0,
         {}}};
    const Caller caller{visitor_->caller.ticket, kOrvaneModuleNo,
                        static_cast<std::int32_t>(Point::Departments)};
    while (!over_) {
      const auto start = Clock::now();
      const auto answer = visitor_->server->Fetch(caller, requests);
      longest_ = std::max(longest_, std::chrono::duration_cast<milliseconds>(Clock::now() - start));
      if (!answer) ++unanswered_;
      ++asked_;
      std::this_thread::sleep_for(milliseconds(100));
    }
  }

  std::unique_ptr<Visitor> visitor_;
  std::atomic<bool> over_{false};
  milliseconds longest_{0};
  int unanswered_ = 0;
  int asked_ = 0;
  std::thread thread_;
};

/// Does something to a server while a user works: he is served, newcomers are, and the server stays
/// small.
Outcome Besieged(const Place& place, const std::function<void(const std::string&)>& siege) {
  ServerProcess server = ServerOf(place);
  if (!server.Start()) return Broken("the server does not start");
  AtWork user(server.Address());
  if (!user.WasLetIn()) return Broken("the user is not let in");
  siege(server.Address());
  user.Stop();
  std::vector<std::string> wrong;
  if (!server.IsAlive()) return Broken("the server has ended");
  if (!LetIn(server.Address(), kNewcomerWaits)) wrong.emplace_back("a newcomer is not let in");
  const long peak = server.PeakMegabytes();
  if (peak > kMostMegabytes) wrong.emplace_back("memory");
  if (user.Unanswered() * 10 > user.Asked()) wrong.emplace_back("a user is not served");
  const std::string note = "at most " + std::to_string(peak) + " MB; of " +
                           std::to_string(user.Asked()) + " questions " +
                           std::to_string(user.Unanswered()) + " unanswered, the longest " +
                           std::to_string(user.Longest().count()) + " ms";
  return wrong.empty() ? Held(note) : Broken(Joined(wrong) + ": " + note);
}

Outcome Bombs(const Place& place) {
  return Besieged(place, [&](const std::string& address) { ThrowBombs(address); });
}

Outcome Floods(const Place& place) {
  return Besieged(place, [&](const std::string& address) { Flood(address, place.time); });
}

Outcome HostileUser(const Place& place) {
  bool letIn = false;
  Outcome outcome = Besieged(place, [&](const std::string& address) {
    const auto hostile = LetIn(address, kNewcomerWaits, kHostileLogin);
    letIn = hostile != nullptr;
    if (!letIn) return;
    Caller caller = hostile->caller;
    caller.pointNo = static_cast<std::int32_t>(Point::Departments);
    Starve(address, caller, place.time);
  });
  return letIn ? outcome : Broken("the hostile user is not let in");
}

/// Newcomers are let in while the crowd is there and after it has gone, and its files come back.
Outcome SilentConnections(const Place& place) {
  constexpr int kMostFiles = 1'000;
  constexpr int kFewer = 30;
  int before = 0;
  int during = 0;
  int after = 0;
  ServerProcess server = ServerOf(place);
  if (!server.Start()) return Broken("the server does not start");
  std::vector<std::string> wrong;
  if (!LetIn(server.Address(), kNewcomerWaits)) wrong.emplace_back("nobody is let in");
  before = server.OpenFiles();
  for (int times = 0; times < 2; ++times) {
    const SilentCrowd crowd(server.Address());
    if (crowd.Count() < 1'024) return Left("this process may not open as many connections");
    during = std::max(during, server.OpenFiles());
    if (!LetIn(server.Address(), kNewcomerWaits)) wrong.emplace_back("a newcomer finds no room");
  }
  const auto end = Clock::now() + kNewcomerWaits;
  do {
    std::this_thread::sleep_for(milliseconds(100));
    after = server.OpenFiles();
  } while (after > before + kFewer && Clock::now() < end);
  if (!LetIn(server.Address(), kNewcomerWaits)) wrong.emplace_back("nobody is let in afterwards");
  if (during > kMostFiles) wrong.emplace_back("files");
  if (after > before + kFewer) wrong.emplace_back("files do not come back");
  const long peak = server.PeakMegabytes();
  if (peak > kMostMegabytes) wrong.emplace_back("memory");
  const std::string note = std::to_string(before) + ", at most " + std::to_string(during) +
                           ", then " + std::to_string(after) + " files; at most " +
                           std::to_string(peak) + " MB";
  return wrong.empty() ? Held(note) : Broken(Joined(wrong) + ": " + note);
}

Outcome HangingDatabase(const Place& place) {
  if (!place.backends) return Left("a file does not hang");
  ServerProcess server = ServerOf(place);
  if (!server.Start()) return Broken("the server does not start");
  std::vector<std::unique_ptr<Visitor>> visitors;
  for (int i = 0; i < 12; ++i) {
    visitors.push_back(LetIn(server.Address(), kNewcomerWaits));
    if (!visitors.back()) return Broken("a user is not let in");
  }
  Book book;
  std::atomic<int> answered{0};
  std::atomic<std::int64_t> longest{0};
  const std::vector<pid_t> stopped = place.backends();
  if (stopped.empty()) return Left("the database's processes are not to be found");
  for (const pid_t process : stopped)
    kill(process, SIGSTOP);
  std::vector<std::thread> calls;
  for (std::size_t i = 0; i < visitors.size(); ++i) {
    calls.emplace_back([&, i] {
      const auto start = Clock::now();
      const std::string name = "hang-" + std::to_string(i);
      const auto answer = visitors[i]->server->Apply(visitors[i]->caller, NewRequest(name, name));
      const auto took = std::chrono::duration_cast<milliseconds>(Clock::now() - start).count();
      for (std::int64_t most = longest;
           most < took && !longest.compare_exchange_weak(most, took);) {
      }
      // A connection that is opened meanwhile may be served.
      const bool told =
          !answer && answer.GetFailure().message.find("от данни") != std::string::npos;
      if (answer || told) ++answered;
    });
  }
  for (std::thread& call : calls)
    call.join();
  for (const pid_t process : stopped)
    kill(process, SIGCONT);
  const std::string note = "twelve calls ended within " + std::to_string(longest / 1000) + " s, " +
                           std::to_string(answered) + " with a sentence";
  if (longest > milliseconds(kLongestCall).count() || answered < 12) return Broken(note);
  {
    Writers writers(book, server.Address(), "after", 2);
    std::this_thread::sleep_for(seconds(2));
    writers.Finish();
  }
  server.Stop();
  return Judge(place, book, note);
}

}  // namespace

std::vector<PromiseRow> Promises() {
  return {
      {"a server killed under writers loses, doubles and tears nothing", &KilledServers},
      {"nor do connections that are cut", &CutConnections},
      {"a full disk is told and loses nothing", &FullDisk, true},
      {"a clock that jumps locks nobody out and writes nothing twice", &JumpingClock},
      {"bombs before login cost little", &Bombs},
      {"1,100 silent connections keep nobody out and give their files back", &SilentConnections},
      {"floods of strangers keep nobody out", &Floods},
      {"one user's searches and unread answers hold nobody up", &HostileUser},
      {"calls to a database that hangs end with a sentence", &HangingDatabase}};
}

std::string MakeCompany(const Place& place) {
  const std::string program = "'" + place.program + "' --database '" + place.database + "' ";
  const std::string password = place.folder + "/password";
  std::ofstream(password) << kPassword << "\n";
  return Shell("cd '" + place.source + "' && " + program + "init && " + program + "user add " +
               kLogin + " --name Мария --employee 101 < '" + password + "' && " + program +
               "user add " + kHostileLogin + " --name Петър --level 2 < '" + password + "' && " +
               program + "import docs/first-day");
}

std::unique_ptr<Database> Look(const Place& place) {
  auto database = place.engine == "SQLite" ? OpenSqlite(place.database)
                                           : OpenPostgres({.connectionInfo = place.database});
  return database ? *std::move(database) : nullptr;
}

}  // namespace orvane::torture
