#include "kit/parameters.h"

#include "host/form.h"
#include "packet/decimal.h"

namespace orvane {

std::int64_t ParamNumber(const TVosBaseForm& form, int group, int number) {
  const Variant value = form.App().GetParam(form.ModuleNo(), form.PointNo(), group, number);
  const std::optional<Decimal> read = Decimal::Parse(value.ToText());
  const std::optional<Decimal> whole = read ? read->AtScale(0) : std::nullopt;
  return whole ? whole->Mantissa() : 0;
}

std::string SumMask(int decimals) {
  const std::string whole = "{{;-,;+}#,#}[*12[#]]";
  if (decimals <= 0) return whole;
  if (decimals == 1) return whole + "[;.[#]]";
  return whole + "[;.[#[*" + std::to_string(decimals - 1) + "[#]]]]";
}

}  // namespace orvane
