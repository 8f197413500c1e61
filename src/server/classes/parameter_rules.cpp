#include "server/classes/parameter_rules.h"

#include "contract/system.h"
#include "packet/decimal.h"
#include "server/sessions/statements.h"

namespace orvane::server {

using parameters::ModuleParameter;
using parameters::Refers;

namespace {

struct ReferredRegister {
  Refers refers;
  std::string_view find;  ///< the row of code ?1
};
constexpr ReferredRegister kRegisters[] = {
    {Refers::KindSupplies, "select Code from KindSupplies where Code = ?1"},
    {Refers::KindSupplyLists, "select Code from KindSupplyLists where Code = ?1"},
    {Refers::InventoryReceipts,
     "select Code from KindDocInventory where Code = ?1 and KindOperation = 1"},
    {Refers::Employees, "select Employee from Employees where Employee = ?1"},
    {Refers::WaysOfChoosing, "select Element from NomIn where Nomenclature = 90 and Element = ?1"},
    {Refers::PriceAlgorithms,
     "select Element from NomIn where Nomenclature = 283 and Element = ?1"},
};

constexpr char kSelectGroup[] =
    "select Number, Value from Params where ParamGroup = ?1 and Value is not null order by Number";

/// Values of earlier installations may carry a comma, blanks or a fraction of zeros.
std::optional<std::int64_t> WholeOf(const std::string& text) {
  const auto read = Decimal::Parse(text);
  const auto whole = read ? read->AtScale(0) : std::nullopt;
  if (!whole) return std::nullopt;
  return whole->Mantissa();
}

Failure OutsideBounds(const ModuleParameter& parameter) {
  return Refused(ParameterName(parameter) + " е от " + std::to_string(parameter.lowest) + " до " +
                 std::to_string(parameter.highest) + ".");
}

}  // namespace

std::string ParameterName(const ModuleParameter& parameter) {
  std::string label(parameter.field.label);
  label.erase(label.find_last_not_of(' ') + 1);
  return "Параметърът '" + label + "'";
}

Answer<Variant> ParameterValue(const ModuleParameter& parameter, const std::string& text) {
  if (Variant(text).IsEmpty()) return Variant();
  const auto number = Decimal::Parse(text);
  if (!number) return Refused(ParameterName(parameter) + " трябва да е число.");
  const bool whole = parameter.field.kind != ValueKind::Amount;
  if (whole && !number->AtScale(0)) {
    return Refused(ParameterName(parameter) + " трябва да е цяло число.");
  }
  const Variant sent = whole ? Variant(number->AtScale(0)->Mantissa()) : Variant(*number);
  const Answer<Variant> fitting = sent.As(parameter.field.kind, parameter.field.size);
  const bool bounded = parameter.refers == Refers::Nothing;
  if (!fitting) {
    return bounded ? OutsideBounds(parameter)
                   : Refused(ParameterName(parameter) + " няма стойност " + text +
                             ". Изберете от списъка.");
  }
  const bool inside =
      *number >= Decimal(parameter.lowest, 0) && *number <= Decimal(parameter.highest, 0);
  if (bounded && !inside) return OutsideBounds(parameter);
  return *fitting;
}

std::optional<Statement> ReferredRow(const Work& work, const ModuleParameter& parameter,
                                     const Variant& value) {
  if (value.IsNull()) return std::nullopt;
  for (const ReferredRegister& row : kRegisters) {
    if (row.refers != parameter.refers) continue;
    std::string text(row.find);
    if (work.EngineKind() == Engine::Postgres) text += " for share";
    return Select(text, {value}, {{"Code", ValueKind::Code, 0}});
  }
  return std::nullopt;
}

Answer<Done, Setback> NotInParameters(Transaction& transaction, Refers refers, std::int64_t code,
                                      std::string_view what) {
  const auto held = transaction.Query(
      Select(kSelectGroup, {system::kModuleGroup},
             {{"Number", ValueKind::Int32, 0}, {"Value", ValueKind::String, 250}}));
  if (!held) return ToSetback(held.GetFailure(), "reading parameters");
  for (std::size_t row = 0; row < held->rowCount; ++row) {
    const ModuleParameter* parameter =
        parameters::FindModuleParameter(held->At(row, "Number").AsInt().value_or(0));
    if (!parameter || parameter->refers != refers) continue;
    if (WholeOf(held->At(row, "Value").ToText()) != code) continue;
    return Setback{
        Refused(std::string(what) + " " + std::to_string(code) + " е стойност на параметъра '" +
                std::string(parameter->field.label) + "'. Изберете първо друга стойност за него."),
        false};
  }
  return Done{};
}

}  // namespace orvane::server
