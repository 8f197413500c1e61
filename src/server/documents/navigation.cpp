#include "server/documents/navigation.h"

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <limits>

#include "server/statements/named_statement.h"

namespace orvane::server {
namespace {

/// Beyond every identifier and version.
constexpr std::string_view kBeyond = "2147483647";

/// The keys that a move goes over: documents, or the versions of one.
struct Track {
  std::string byKey;  ///< scalar subquery: the asked key when it may be seen
  std::function<std::string(std::string_view)> next;
  std::function<std::string(std::string_view)> previous;
};

Track DocumentTrack(const SeenTable& table, const AskerVisibility& visibility) {
  const std::string id(table.id);
  return {"(select p." + id + " from " + std::string(table.table) + " p where p." + id +
              " = :Position and " + Replaced(table.current, "{t}", "p") + " and " +
              visibility.Among("p") + ")",
          [&](std::string_view position) { return visibility.Next(position); },
          [&](std::string_view position) { return visibility.Previous(position); }};
}

Track VersionTrack(const SeenTable& table, const AskerVisibility& visibility) {
  const std::string version(table.version);
  const std::string seen = " from " + std::string(table.table) + " p where p." +
                           std::string(table.id) + " = :Id and " + visibility.Among("p") +
                           " and p." + version;
  return {"(select p." + version + seen + " = :Position)",
          [=](std::string_view position) {
            return "(select min(p." + version + ")" + seen + " > " + std::string(position) + ")";
          },
          [=](std::string_view position) {
            return "(select max(p." + version + ")" + seen + " < " + std::string(position) + ")";
          }};
}

/// Common table expressions that end in `target`, one row with the key that is moved to, and what
/// tells whether nothing lies before and behind it.
struct Target {
  std::string tables;
  std::string isFirst;
  std::string isLast;
  int steps = 1;
};

std::string OneWhenNull(const std::string& key) {
  return "case when " + key + " is null then 1 else 0 end";
}

Target At(const Track& track, const std::string& key) {
  return {"target (Id) as (select " + key + ")", OneWhenNull(track.previous("target.Id")),
          OneWhenNull(track.next("target.Id"))};
}

/// So many steps from :Position, or the end when there are fewer. Every question stands where it is
/// asked: on SQLite only what runs costs, but each table expression costs a temporary tree, and one
/// step needs none. Whoever moved on from a document that he sees has it behind him, and need not
/// look for it.
Target WalkedInPlace(const Track& track, bool forward, int steps) {
  const auto& ahead = forward ? track.next : track.previous;
  const auto& back = forward ? track.previous : track.next;
  Target target;
  target.steps = steps;
  const std::string walk =
      "walk (N, Id) as (select 0, cast(:Position as integer) union all select walk.N + 1, " +
      ahead("walk.Id") + " from walk where walk.N < :Steps and walk.Id is not null), ";
  const std::string_view walked =
      "(select w.Id from walk w where w.N > 0 and w.Id is not null order by w.N desc limit 1)";
  target.tables = (steps == 1 ? "" : walk) + "target (Id) as (select coalesce(" +
                  (steps == 1 ? ahead(":Position") : std::string(walked)) + ", " +
                  back(forward ? kBeyond : "0") + "))";
  const std::string behind = std::string("case when target.Id ") + (forward ? ">" : "<") +
                             " :Position and " + track.byKey + " is not null then 0 else " +
                             OneWhenNull(back("target.Id")) + " end";
  const std::string atEnd = OneWhenNull(ahead("target.Id"));
  target.isFirst = forward ? behind : atEnd;
  target.isLast = forward ? atEnd : behind;
  return target;
}

/// The same with each direction once in the statement: PostgreSQL makes a plan of several hundred
/// nodes ready to run for longer than it then runs. One step more tells whether that is the end.
/// Steps back are taken only for what is not known: the end itself when no step could
/// be made, and what lies behind.
Target WalkedOnce(const Track& track, bool forward, int steps) {
  const auto& ahead = forward ? track.next : track.previous;
  const auto& back = forward ? track.previous : track.next;
  const std::string far(forward ? kBeyond : "0");
  Target target;
  target.steps = steps;
  target.tables =
      "walk (N, Id) as (select 0, cast(:Position as integer) union all select walk.N + 1, " +
      ahead("walk.Id") +
      " from walk where walk.N <= :Steps and walk.Id is not null), "
      "reached (Id) as (select (select w.Id from walk w where w.N between 1 and :Steps and w.Id is"
      " not null order by w.N desc limit 1)), "
      "unknown (N) as (select case when r.Id is null then 2 when " +
      track.byKey +
      " is null then 1 else 0 end from reached r), "
      "back (N, Id) as (select 0, coalesce((select r.Id from reached r), " +
      far + ") union all select back.N + 1, " + back("back.Id") +
      " from back where back.N < (select u.N from unknown u) and back.Id is not null), "
      "target (Id) as (select coalesce((select r.Id from reached r),"
      " (select b.Id from back b where b.N = 1)))";
  const std::string atEnd = OneWhenNull("(select w.Id from walk w where w.N = :Steps + 1)");
  const std::string alone =
      "(select case when u.N > 0 and (select b.Id from back b where b.N = u.N) is null then 1 else"
      " 0 end from unknown u)";
  target.isFirst = forward ? alone : atEnd;
  target.isLast = forward ? atEnd : alone;
  return target;
}

Target TargetOf(const Track& track, const Destination& place, Engine engine) {
  const auto walked = engine == Engine::Postgres ? &WalkedOnce : &WalkedInPlace;
  switch (place.nav) {
    case Nav::ByKey:
      break;
    case Nav::First:
      return At(track, track.next("0"));
    case Nav::Last:
      return At(track, track.previous(kBeyond));
    case Nav::Previous:
      return walked(track, false, 1);
    case Nav::Next:
      return walked(track, true, 1);
    case Nav::Step:
      if (place.step != 0) return walked(track, place.step > 0, std::abs(place.step));
      break;
  }
  return At(track, track.byKey);
}

}  // namespace

std::optional<Nav> NavOf(const Variant& number) {
  const auto value = number.AsInt();
  if (!value || *value < 0 || *value > static_cast<int>(Nav::Step)) return std::nullopt;
  return static_cast<Nav>(*value);
}

Answer<Destination> ReadPlace(const VariantArray& ask, const PlaceAt& at) {
  const Variant none;
  const Variant& version = at.version ? ask[*at.version] : none;
  const auto nav = NavOf(ask[at.nav]);
  const bool readable = std::ranges::all_of(
      std::initializer_list<const Variant*>{&ask[at.step], &ask[at.id], &version},
      [](const Variant* number) { return number->IsNull() || number->AsInt(); });
  if (!nav || !readable) {
    return Failure{FailureKind::BadRequest, "Методът „GetRec“ очаква посока, стъпка и номера."};
  }
  Destination place;
  place.nav = *nav;
  place.step = static_cast<int>(ask[at.step].AsInt().value_or(0));
  // No document has a number beyond these, which the engines count with.
  const auto bounded = [](const Variant& number) {
    constexpr std::int64_t kFurthest = std::numeric_limits<std::int32_t>::max();
    return std::clamp(number.AsInt().value_or(0), -kFurthest, kFurthest);
  };
  place.id = bounded(ask[at.id]);
  if (bounded(version) != 0) place.version = bounded(version);
  return place;
}

Statement FindDocument(const SeenTable& table, const AskerVisibility& visibility,
                       const Destination& place, Engine engine) {
  const bool versions = place.version.has_value();
  const Track track = versions ? VersionTrack(table, visibility) : DocumentTrack(table, visibility);
  const Target target = TargetOf(track, place, engine);
  std::string id = "target.Id";
  std::string version = "0";
  if (versions) {
    id = "case when target.Id is null then null else cast(:Id as integer) end";
    version = "target.Id";
  } else if (!table.version.empty()) {
    version = "(select p." + std::string(table.version) + " from " + std::string(table.table) +
              " p where p." + std::string(table.id) + " = target.Id and " +
              Replaced(table.current, "{t}", "p") + ")";
  }
  const std::string text = "with recursive " + visibility.Tables() + target.tables +
                           " select orvane_keep('DocumentId', " + id +
                           "), orvane_keep('DocumentVersion', " + version + "), " + target.isFirst +
                           ", " + target.isLast + " from target";
  NamedValues params = visibility.Params();
  params.push_back({"Id", place.id});
  params.push_back({"Position", versions ? *place.version : place.id});
  params.push_back({"Steps", target.steps});
  return Named(text, params,
               {{"Id", ValueKind::Code, 0},
                {"Version", ValueKind::Code, 0},
                {"IsFirst", ValueKind::Bool, 0},
                {"IsLast", ValueKind::Bool, 0}});
}

LoadCode LoadCodeOf(const DataPacket& found) {
  if (found.rowCount == 0 || found.At(0, "Id").IsNull()) return LoadCode::None;
  if (found.At(0, "IsLast").AsBool().value_or(false)) return LoadCode::Last;
  if (found.At(0, "IsFirst").AsBool().value_or(false)) return LoadCode::First;
  return LoadCode::Between;
}

}  // namespace orvane::server
