#include "server/providers/server_class.h"

#include <spdlog/spdlog.h>

#include <algorithm>
#include <cassert>

#include "server/providers/work.h"

namespace orvane {
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

ServerClass ServerClass::UsedFrom(std::initializer_list<Point> points) && {
  points_ = points;
  return std::move(*this);
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

bool ServerClass::UsedFromPoint(std::int32_t point) const {
  return anywhere_ || std::any_of(points_.begin(), points_.end(), [&](Point own) {
           return static_cast<std::int32_t>(own) == point;
         });
}

Answer<Done> CheckRight(const Work& work, const ServerClass& serverClass, Right right) {
  if (serverClass.IsUsedAnywhere()) return Done{};
  if (!serverClass.UsedFromPoint(work.PointNo())) {
    spdlog::warn("session {} of {} claims point {} for {}", work.Who().sessionName,
                 work.Who().login, work.PointNo(), serverClass.Name());
    return Failure{FailureKind::NoRight, "Тези данни не се ползват от " + PlaceOf(work.PointNo()) +
                                             ". Отворете ги от собствения им екран."};
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

Answer<Done> CheckRule(const Work& work, const ServerClass& serverClass, Rule rule) {
  switch (rule) {
    case Rule::Session:
      return Done{};
    case Rule::Open:
      return CheckRight(work, serverClass, Right::Open);
    case Rule::Edit:
      return CheckRight(work, serverClass, Right::Edit);
    case Rule::Insert:
      return CheckRight(work, serverClass, Right::Insert);
    case Rule::Delete:
      break;
  }
  return CheckRight(work, serverClass, Right::Delete);
}

}  // namespace orvane
