#include "kit/current_employee.h"

#include "host/form.h"

namespace orvane::kit {
namespace {

constexpr int kFirstCategoryWithEmployee = 3;

}  // namespace

bool NeedsEmployee(const VosApplication& app) {
  return app.UserCategory() >= kFirstCategoryWithEmployee;
}

void RequireEmployee(TVosBaseForm& form, std::string_view text) {
  form.RefuseIf(form.App().vCurrentEmployee.IsNull() && NeedsEmployee(form.App()), text);
}

}  // namespace orvane::kit
