#include "server/documents/navigation.h"

#include <algorithm>
#include <cstdlib>
#include <functional>

#include "server/documents/named_statement.h"

namespace orvane {
namespace {

/// Beyond every identifier and version.
constexpr std::string_view kBeyond = "2147483647";

/// The keys that a move goes over: documents, or the versions of one.
struct Track {
  std::string byKey;  ///< scalar subquery: the asked key when it may be seen
  std::function<std::string(std::string_view)> next;
  std::function<std::string(std::string_view)> previous;
};

Track DocumentTrack(const SeenTable& table, const Visibility& visibility) {
  const std::string id(table.id);
  return {"(select p." + id + " from " + std::string(table.table) + " p where p." + id +
              " = :Position and " + Replaced(table.current, "{t}", "p") + " and " +
              visibility.Among("p") + ")",
          [&](std::string_view position) { return visibility.Next(position); },
          [&](std::string_view position) { return visibility.Previous(position); }};
}

Track VersionTrack(const SeenTable& table, const Visibility& visibility) {
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

/// Common table expressions that end in `target`, one row with the key that is moved to.
struct Target {
  std::string tables;
  int steps = 1;
};

Target At(const std::string& key) {
  return {"target (Id) as (select " + key + ")"};
}

/// So many steps from :Position, or the end when there are fewer.
Target Walked(const Track& track, bool forward, int steps) {
  const auto& step = forward ? track.next : track.previous;
  const std::string end = forward ? track.previous(kBeyond) : track.next("0");
  return {
      "walk (N, Id) as (select 0, cast(:Position as integer) union all select walk.N + 1, " +
          step("walk.Id") +
          " from walk where walk.N < :Steps and walk.Id is not null), "
          "target (Id) as (select coalesce((select w.Id from walk w where w.N > 0 and w.Id is not "
          "null order by w.N desc limit 1), " +
          end + "))",
      steps};
}

/// 1 forward or -1 back from where the asker stands, 0 for a place of its own.
int DirectionOf(const Place& place) {
  if (place.nav == Nav::Next) return 1;
  if (place.nav == Nav::Previous) return -1;
  if (place.nav != Nav::Step || place.step == 0) return 0;
  return place.step > 0 ? 1 : -1;
}

Target TargetOf(const Track& track, const Place& place) {
  switch (place.nav) {
    case Nav::ByKey:
      break;
    case Nav::First:
      return At(track.next("0"));
    case Nav::Last:
      return At(track.previous(kBeyond));
    case Nav::Previous:
      return Walked(track, false, 1);
    case Nav::Next:
      return Walked(track, true, 1);
    case Nav::Step:
      if (place.step != 0) return Walked(track, place.step > 0, std::abs(place.step));
      break;
  }
  return At(track.byKey);
}

}  // namespace

std::optional<Nav> NavOf(const Variant& number) {
  const auto value = number.AsInt();
  if (!value || *value < 0 || *value > static_cast<int>(Nav::Step)) return std::nullopt;
  return static_cast<Nav>(*value);
}

Answer<Place> ReadPlace(const VariantArray& ask, const PlaceAt& at) {
  const Variant none;
  const Variant& version = at.version ? ask[*at.version] : none;
  const auto nav = NavOf(ask[at.nav]);
  const bool readable = std::ranges::all_of(
      std::initializer_list<const Variant*>{&ask[at.step], &ask[at.id], &version},
      [](const Variant* number) { return number->IsNull() || number->AsInt(); });
  if (!nav || !readable) {
    return Failure{FailureKind::BadRequest, "Методът „GetRec“ очаква посока, стъпка и номера."};
  }
  Place place;
  place.nav = *nav;
  place.step = static_cast<int>(ask[at.step].AsInt().value_or(0));
  place.id = ask[at.id].AsInt().value_or(0);
  if (version.AsInt().value_or(0) != 0) place.version = version.AsInt();
  return place;
}

Statement FindDocument(const SeenTable& table, const Visibility& visibility, const Place& place) {
  const bool versions = place.version.has_value();
  const Track track = versions ? VersionTrack(table, visibility) : DocumentTrack(table, visibility);
  const Target target = TargetOf(track, place);
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
  // Whoever moved on from a document that he sees has it behind him, and need not look for it.
  const int direction = DirectionOf(place);
  const auto ends = [&](const std::string& beside, bool came, std::string_view from) {
    const std::string behind = "target.Id " + std::string(from) + " :Position and " + track.byKey +
                               " is not null then 0 when ";
    return "case when " + (came ? behind : std::string()) + beside + " is null then 1 else 0 end";
  };
  const std::string text = "with recursive " + visibility.Tables() + target.tables +
                           " select orvane_keep('DocumentId', " + id +
                           "), orvane_keep('DocumentVersion', " + version + "), " +
                           ends(track.previous("target.Id"), direction > 0, ">") + ", " +
                           ends(track.next("target.Id"), direction < 0, "<") + " from target";
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

}  // namespace orvane
