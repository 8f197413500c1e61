// torture SECONDS PROGRAM SOURCE FOLDER [--postgres CONNINFO] [--small FOLDER] [--clock LIBRARY]
// Tries every promise on both engines and prints a table; not 0 when one is broken.

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <map>

#include "support/seed.h"
#include "torture/promises.h"

namespace orvane::torture {
namespace {

struct Told {
  int seconds = 60;
  std::string program;
  std::string source;
  std::string folder;
  std::string postgres;  ///< without a database's name
  std::string small;
  std::string clock;
};

Told ToldBy(int argc, char** argv) {
  Told told;
  std::map<std::string, std::string*> options = {
      {"--postgres", &told.postgres}, {"--small", &told.small}, {"--clock", &told.clock}};
  std::vector<std::string> places;
  for (int i = 1; i < argc; ++i) {
    const auto option = options.find(argv[i]);
    if (option != options.end() && i + 1 < argc) {
      *option->second = argv[++i];
    } else {
      places.emplace_back(argv[i]);
    }
  }
  if (places.size() != 4) {
    std::fprintf(stderr, "torture: SECONDS PROGRAM SOURCE FOLDER …; scripts/torture calls it\n");
    std::exit(2);
  }
  told.seconds = std::stoi(places[0]);
  told.program = places[1];
  told.source = places[2];
  told.folder = places[3];
  return told;
}

std::string Psql(const std::string& conninfo, const std::string& sql) {
  return "psql -X -q -A -t '" + conninfo + "' -c \"" + sql + "\"";
}

/// Processes of the database server that serve this database, and the one that takes new
/// connections.
std::vector<pid_t> BackendsOf(const std::string& postgres, const std::string& name,
                              const std::string& folder) {
  const std::string file = folder + "/backends";
  Shell(Psql(postgres + " dbname=postgres",
             "select pid from pg_stat_activity where datname = '" + name + "'") +
        " > '" + file + "'");
  std::vector<pid_t> processes;
  std::ifstream read(file);
  for (pid_t process = 0; read >> process;)
    processes.push_back(process);
  if (processes.empty()) return processes;
  std::ifstream status("/proc/" + std::to_string(processes.front()) + "/status");
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with("PPid:")) processes.push_back(std::stoi(line.substr(5)));
  }
  return processes;
}

/// A company of its own for one promise on one engine; what went wrong, empty when nothing did.
std::string Prepare(const Told& told, const PromiseRow& promise, int number, Place& place) {
  const std::string name = "torture" + std::to_string(number);
  const std::string under = promise.onSmallDisk && !told.small.empty() ? told.small : told.folder;
  place.folder = told.folder + "/" + place.engine + std::to_string(number);
  std::filesystem::create_directories(place.folder);
  place.small = promise.onSmallDisk ? told.small : "";
  if (place.engine == "SQLite") {
    place.database = under + "/" + name + ".sqlite";
    return MakeCompany(place);
  }
  const bool small = !place.small.empty();
  const std::string server = told.postgres + " dbname=postgres";
  std::string made;
  if (small) {
    made = Shell("mkdir -p '" + under + "/space' && chown postgres '" + under + "/space' && " +
                 Psql(server, "create tablespace small location '" + under + "/space'"));
  }
  if (made.empty()) {
    made = Shell(Psql(server, "create database " + name + (small ? " tablespace small" : "")));
  }
  if (!made.empty()) return made;
  place.database = told.postgres + " dbname=" + name;
  place.backends = [told, name, folder = place.folder] {
    return BackendsOf(told.postgres, name, folder);
  };
  return MakeCompany(place);
}

int Run(const Told& told) {
  std::vector<std::string> engines = {"SQLite"};
  if (!told.postgres.empty()) engines.emplace_back("PostgreSQL");
  const std::vector<PromiseRow> promises = Promises();
  const auto share = told.seconds / static_cast<int>(promises.size() * engines.size());
  constexpr const char* kWords[] = {"held  ", "BROKEN", "left  "};
  const unsigned seed = Seed();
  int broken = 0;
  int number = 0;
  for (const PromiseRow& promise : promises) {
    std::cout << promise.name << '\n' << std::flush;
    for (const std::string& engine : engines) {
      Place place;
      place.engine = engine;
      place.program = told.program;
      place.source = told.source;
      place.clock = told.clock;
      place.seed = seed;
      place.time = std::chrono::seconds(std::max(share, 3));
      const std::string wrong = Prepare(told, promise, ++number, place);
      const Outcome outcome =
          wrong.empty() ? promise.keep(place) : Outcome{Outcome::Kind::Broken, wrong};
      if (outcome.kind == Outcome::Kind::Broken) ++broken;
      std::cout << "  " << kWords[static_cast<int>(outcome.kind)] << "  " << engine << ": "
                << outcome.note << '\n'
                << std::flush;
    }
  }
  std::cout << (broken == 0 ? "All promises were held." : std::to_string(broken) + " broken.")
            << '\n'
            << std::flush;
  return broken == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}

}  // namespace
}  // namespace orvane::torture

int main(int argc, char** argv) {
  return orvane::torture::Run(orvane::torture::ToldBy(argc, argv));
}
