#include "server/providers/server_class.h"

#include <spdlog/spdlog.h>

#include <algorithm>
#include <cassert>

#include "server/providers/work.h"

namespace orvane::server {
namespace {

/// "в „Дирекции“", or the bare number for a point that is not known.
std::string PlaceOf(std::int32_t point) {
  for (const PointRow& row : kPoints) {
    if (static_cast<std::int32_t>(row.point) == point) {
      return "„" + std::string(row.caption) + "“";
    }
  }
  return "точка " + std::to_string(point);
}

/// Why the point is not good for what is asked; `allowed` is what it is good for.
std::string SentenceOf(std::optional<Use> allowed, const std::string& place) {
  if (!allowed)
    return "Тези данни не се ползват от " + place + ". Отворете ги от собствения им екран.";
  if (*allowed == Use::Read) {
    return "От " + place + " тези данни само се четат. Променете ги от собствения им екран.";
  }
  return "От " + place +
         " документите само се одобряват и отказват. Отворете собствения екран на документа.";
}

std::string_view WordFor(Right right) {
  switch (right) {
    case Right::Edit:
      return "да променяте данни";
    case Right::Insert:
      return "да въвеждате данни";
    case Right::Delete:
      return "да изтривате данни";
    default:
      return "да отваряте данни";
  }
}

}  // namespace

ServerClass ServerClass::From(std::initializer_list<Point> points, Use use) && {
  for (const Point point : points)
    points_.push_back({point, use});
  return std::move(*this);
}

ServerClass ServerClass::UsedFrom(std::initializer_list<Point> points) && {
  return std::move(*this).From(points, Use::Whole);
}

ServerClass ServerClass::DecidedFrom(std::initializer_list<Point> points) && {
  return std::move(*this).From(points, Use::Decide);
}

ServerClass ServerClass::ReadFrom(std::initializer_list<Point> points) && {
  return std::move(*this).From(points, Use::Read);
}

ServerClass ServerClass::UsedFromAnywhere() && {
  anywhere_ = true;
  return std::move(*this);
}

ServerClass ServerClass::Provider(const ProviderDef& def, std::string_view select,
                                  const WriteRules& rules, std::vector<FieldDef> params) && {
  assert(def.Writable());
  ProviderRow row;
  row.def = def;
  row.select = select;
  row.params = std::move(params);
  row.rules = rules;
  providers_.push_back(std::move(row));
  return std::move(*this);
}

ServerClass ServerClass::ReadOnly(const ProviderDef& def, std::string_view select,
                                  std::vector<FieldDef> params) && {
  ProviderRow row;
  row.def = def;
  row.def.table = {};
  row.select = select;
  row.params = std::move(params);
  providers_.push_back(std::move(row));
  return std::move(*this);
}

ServerClass ServerClass::SearchProvider(std::string_view name) && {
  ProviderRow row;
  row.def.name = name;
  row.search = true;
  providers_.push_back(std::move(row));
  return std::move(*this);
}

ServerClass ServerClass::Operation(std::string_view name, Rule rule,
                                   OperationFunction function) && {
  operations_.push_back({name, rule, function});
  return std::move(*this);
}

const ProviderRow* ServerClass::FindProvider(std::string_view name) const {
  const auto found = std::find_if(providers_.begin(), providers_.end(),
                                  [&](const ProviderRow& row) { return row.def.name == name; });
  return found == providers_.end() ? nullptr : &*found;
}

const OperationRow* ServerClass::FindOperation(std::string_view name) const {
  const auto found = std::find_if(operations_.begin(), operations_.end(),
                                  [&](const OperationRow& row) { return row.name == name; });
  return found == operations_.end() ? nullptr : &*found;
}

std::optional<Use> ServerClass::UseFrom(std::int32_t point) const {
  if (anywhere_) return Use::Whole;
  const auto found = std::find_if(points_.begin(), points_.end(), [&](const PointUse& own) {
    return static_cast<std::int32_t>(own.point) == point;
  });
  if (found == points_.end()) return std::nullopt;
  return found->use;
}

Answer<Done> CheckRight(const Work& work, const ServerClass& serverClass, Use use, Right right) {
  if (serverClass.IsUsedAnywhere()) return Done{};
  const std::optional<Use> allowed = serverClass.UseFrom(work.PointNo());
  if (!allowed || *allowed < use) {
    spdlog::warn("session {} of {} claims point {} for {}", work.Who().sessionName,
                 work.Who().login, work.PointNo(), serverClass.Name());
    return Failure{FailureKind::NoRight, SentenceOf(allowed, PlaceOf(work.PointNo()))};
  }
  if (work.Who().May(work.PointNo(), right)) return Done{};
  return Failure{FailureKind::NoRight, "Нямате право " + std::string(WordFor(right)) + " в " +
                                           PlaceOf(work.PointNo()) +
                                           ". Обърнете се към администратора."};
}

Right RightFor(ChangeKind kind) {
  switch (kind) {
    case ChangeKind::Insert:
      return Right::Insert;
    case ChangeKind::Update:
      return Right::Edit;
    case ChangeKind::Delete:
      break;
  }
  return Right::Delete;
}

Answer<Done> CheckChangeRight(const Work& work, const ServerClass& serverClass,
                              const ProviderRow& provider, const Change& change) {
  const WriteRules& rules = provider.rules;
  const bool decides = rules.decisions && change.kind == ChangeKind::Update;
  return CheckRight(work, serverClass, decides ? Use::Decide : Use::Whole,
                    rules.right ? rules.right(work, change) : RightFor(change.kind));
}

Answer<Done> CheckRule(const Work& work, const ServerClass& serverClass, Rule rule) {
  switch (rule) {
    case Rule::Session:
      return Done{};
    case Rule::Open:
      return CheckRight(work, serverClass, Use::Read, Right::Open);
    case Rule::Edit:
      return CheckRight(work, serverClass, Use::Whole, Right::Edit);
    case Rule::Insert:
      return CheckRight(work, serverClass, Use::Whole, Right::Insert);
    case Rule::Delete:
      break;
  }
  return CheckRight(work, serverClass, Use::Whole, Right::Delete);
}

}  // namespace orvane::server
