#include "server/orvane_server.h"

#include <spdlog/spdlog.h>

#include <algorithm>
#include <iterator>

#include "server/classes/server_classes.h"
#include "server/demo/demo_users.h"
#include "server/dialect/search.h"
#include "server/documents/visibility.h"
#include "server/providers/apply.h"
#include "server/providers/select_statement.h"
#include "server/sessions/engine_failures.h"

namespace orvane::server {
namespace {

/// More fetches than any screen sends together.
constexpr std::size_t kMostFetches = 64;

Failure UnknownFailure(std::string_view what, std::string_view name) {
  return {FailureKind::BadRequest,
          "Сървърът не познава " + std::string(what) + " „" + std::string(name) + "“."};
}

bool MayRead(const Session& session, const CatalogueTable& table) {
  return table.readers.empty() ||
         std::any_of(table.readers.begin(), table.readers.end(), [&](Point point) {
           return session.May(static_cast<std::int32_t>(point), Right::Open);
         });
}

Answer<RenderedSearch> Render(KeptSearches& kept, const Work& work, const FetchRequest& request) {
  const Session& who = work.Who();
  const SearchInput input{
      request.sql,
      request.params,
      request.rowLimit,
      request.continuation,
      work.EngineKind(),
      [&who](const CatalogueTable& table) { return MayRead(who, table); },
      [&work](const CatalogueTable& table) { return SearchVisibility(work, table.name); },
      work.Today(),
      work.Zone()};
  return kept.Render(input);
}

/// The fetches of one request, sorted by how they run, with where each answer belongs.
struct Sorted {
  std::vector<const ProviderRow*> selectProviders;
  std::vector<Statement> selects;
  std::vector<std::size_t> selectPlaces;
  std::vector<RenderedSearch> searches;
  std::vector<std::size_t> searchPlaces;
};

}  // namespace

OrvaneServer::OrvaneServer(Database& database, const Clock& clock, ServerOptions options)
    : OrvaneServer(database, clock, options, MakeServerClasses()) {}

OrvaneServer::OrvaneServer(Database& database, const Clock& clock, ServerOptions options,
                           std::vector<ServerClass> classes)
    : database_(database),
      clock_(clock),
      options_(options),
      classes_(std::move(classes)),
      sessions_(database, clock, options.sessions) {}

const ServerClass* OrvaneServer::FindClass(std::string_view name) const {
  const auto found = std::find_if(classes_.begin(), classes_.end(),
                                  [&](const ServerClass& own) { return own.Name() == name; });
  return found == classes_.end() ? nullptr : &*found;
}

Answer<std::shared_ptr<const Company>> OrvaneServer::KnownCompany() {
  const std::lock_guard lock(companyMutex_);
  if (company_) return company_;
  auto company = ReadCompany(database_);
  if (!company) return company.GetFailure();
  company_ = std::make_shared<const Company>(*std::move(company));
  return company_;
}

Answer<Greeting> OrvaneServer::Greet() {
  auto company = KnownCompany();
  if (!company) return company.GetFailure();
  Greeting greeting;
  greeting.protocolVersion = kProtocolVersion;
  greeting.companyName = (*company)->name;
  if ((*company)->demonstration) greeting.demonstrationUsers = DemonstrationUsers();
  return greeting;
}

Answer<SessionInfo> OrvaneServer::LogInFrom(std::string_view address, const LoginRequest& request) {
  auto company = KnownCompany();
  if (!company) return company.GetFailure();
  return sessions_.LogIn(request, **company, address);
}

bool OrvaneServer::KnowsTicket(const std::string& ticket) {
  const auto session = sessions_.Find(ticket);
  return session || session.GetFailure().kind != FailureKind::SessionEnded;
}

Answer<Done> OrvaneServer::LogOut(const Caller& caller) {
  return sessions_.LogOut(caller.ticket);
}

template <class T>
Answer<T> OrvaneServer::Serve(const Caller& caller, const std::function<Answer<T>(Work&)>& task) {
  auto company = KnownCompany();
  if (!company) return company.GetFailure();
  auto session = sessions_.Find(caller.ticket);
  if (!session) return session.GetFailure();
  constexpr int kAttempts = 3;  // the second sees what changed; the third, what changed meanwhile
  for (int attempt = 1;; ++attempt) {
    Work work(database_, sessions_, *session, **company, caller, clock_.Now(), options_.documents);
    auto answer = task(work);
    if (!work.Guarded()) {  // refused without a look at the database: is it still so?
      const auto guarded = work.Read({});
      if (!guarded && !work.Stale()) return guarded.GetFailure();
    }
    if (!work.Stale() || attempt == kAttempts) {
      if (answer) sessions_.NoteSeen(work.Who());
      if (!answer && answer.GetFailure().kind == FailureKind::NoRight) ++claimsRefused_;
      return answer;
    }
    session = sessions_.Reload((*session)->ticketHash);
    if (!session) return session.GetFailure();
  }
}

Answer<std::vector<DataPacket>> OrvaneServer::Fetch(const Caller& caller,
                                                    const std::vector<FetchRequest>& requests) {
  return Serve<std::vector<DataPacket>>(caller,
                                        [&](Work& work) { return FetchOnce(work, requests); });
}

Answer<std::vector<DataPacket>> OrvaneServer::FetchOnce(Work& work,
                                                        const std::vector<FetchRequest>& requests) {
  if (requests.size() > kMostFetches) {
    return Failure{FailureKind::BadRequest, "Твърде много заявки наведнъж."};
  }
  for (const FetchRequest& request : requests) {
    const ServerClass* serverClass = FindClass(request.serverClass);
    if (!serverClass) return UnknownFailure("клас", request.serverClass);
    const ProviderRow* provider = serverClass->FindProvider(request.provider);
    if (!provider) return UnknownFailure("доставчик", request.provider);
    if (provider->select.empty() && !provider->search) {
      return Failure{FailureKind::BadRequest, "Тези данни се зареждат с документа си."};
    }
    const auto allowed = CheckRight(work, *serverClass, Use::Read, Right::Open);
    if (!allowed) return allowed.GetFailure();
  }
  return RunFetches(work, requests);
}

/// Selects of providers are one snapshot; searches run behind their fences, which readers of
/// documents may not pass, and so are a snapshot of their own.
Answer<std::vector<DataPacket>> OrvaneServer::RunFetches(
    Work& work, const std::vector<FetchRequest>& requests) {
  Sorted sorted;
  for (std::size_t i = 0; i < requests.size(); ++i) {
    const ProviderRow* provider =
        FindClass(requests[i].serverClass)->FindProvider(requests[i].provider);
    if (provider->search) {
      auto search = Render(searches_, work, requests[i]);
      if (!search) return search.GetFailure();
      sorted.searches.push_back(*std::move(search));
      sorted.searchPlaces.push_back(i);
      continue;
    }
    auto select = SelectStatement(work, *provider, requests[i]);
    if (!select) return select.GetFailure();
    sorted.selects.push_back(*std::move(select));
    sorted.selectProviders.push_back(provider);
    sorted.selectPlaces.push_back(i);
  }
  std::vector<DataPacket> answers(requests.size());
  if (!sorted.selects.empty()) {
    auto packets = work.Read(sorted.selects);
    if (!packets) return packets.GetFailure();
    for (std::size_t i = 0; i < packets->size(); ++i) {
      const std::size_t place = sorted.selectPlaces[i];
      CutPortion(*sorted.selectProviders[i], requests[place].rowLimit, (*packets)[i]);
      answers[place] = std::move((*packets)[i]);
    }
  }
  if (!sorted.searches.empty()) {
    std::vector<Statement> statements;
    for (RenderedSearch& search : sorted.searches) {
      statements.push_back(std::move(search.statement));
      statements.back().mostRows = search.rowLimit + 1;
    }
    const auto turn = turns_.Take(work.Who().login);
    if (!turn) return turn.GetFailure();
    auto packets = work.Search(statements, options_.searchLimits);
    if (!packets) return packets.GetFailure();
    for (std::size_t i = 0; i < packets->size(); ++i) {
      answers[sorted.searchPlaces[i]] = FinishPortion(sorted.searches[i], std::move((*packets)[i]));
    }
  }
  return answers;
}

Answer<ApplyAnswer> OrvaneServer::Apply(const Caller& caller, const ApplyRequest& request) {
  return Serve<ApplyAnswer>(caller, [&](Work& work) -> Answer<ApplyAnswer> {
    const ServerClass* serverClass = FindClass(request.serverClass);
    if (!serverClass) return UnknownFailure("клас", request.serverClass);
    const ProviderRow* provider = serverClass->FindProvider(request.provider);
    if (!provider) return UnknownFailure("доставчик", request.provider);
    return ApplyDelta(work, *serverClass, *provider, request);
  });
}

Answer<VariantArray> OrvaneServer::Call(const Caller& caller, const MethodCall& call) {
  return Serve<VariantArray>(caller, [&](Work& work) -> Answer<VariantArray> {
    const ServerClass* serverClass = FindClass(call.serverClass);
    if (!serverClass) return UnknownFailure("клас", call.serverClass);
    const OperationRow* operation = serverClass->FindOperation(call.method);
    if (!operation) return UnknownFailure("метод", call.method);
    const auto allowed = CheckRule(work, *serverClass, operation->rule);
    if (!allowed) return allowed.GetFailure();
    work.Carry(call);
    return operation->function(work, call.arguments);
  });
}

}  // namespace orvane::server
