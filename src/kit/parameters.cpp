#include "kit/parameters.h"

#include "host/form.h"
#include "packet/decimal.h"

namespace orvane::kit {

std::int64_t ParamNumber(const TVosBaseForm& form, int group, int number) {
  const Variant value = form.App().GetParam(form.ModuleNo(), form.PointNo(), group, number);
  const std::optional<Decimal> read = Decimal::Parse(value.ToText());
  const std::optional<Decimal> whole = read ? read->AtScale(0) : std::nullopt;
  return whole ? whole->Mantissa() : 0;
}

std::int64_t RequiredParam(TVosBaseForm& form, int group, int number, std::string_view refusal) {
  const Variant set = form.App().GetParam(form.ModuleNo(), form.PointNo(), group, number);
  form.RefuseIf(set.IsEmpty(), refusal);
  return ParamNumber(form, group, number);
}

namespace {

std::string WithDecimals(std::string whole, int decimals) {
  if (decimals <= 0) return whole;
  if (decimals == 1) return whole + "[;.[#]]";
  return whole + "[;.[#[*" + std::to_string(decimals - 1) + "[#]]]]";
}

}  // namespace

std::string SumMask(int decimals) {
  return WithDecimals("{{;-,;+}#,#}[*12[#]]", decimals);
}

std::string UnsignedSumMask(int wholeDigits, int decimals) {
  return WithDecimals("[*" + std::to_string(wholeDigits) + "[#]]", decimals);
}

}  // namespace orvane::kit
