#include "modules/purchases/registers/structure/tdm_structure.h"

#include "contract/structure.h"
#include "contract/system.h"
#include "data/screen_fetch.h"
#include "kit/immediate_apply.h"
#include "kit/name_fills.h"
#include "kit/row_names.h"
#include "modules/core/lookups.h"

namespace orvane::modules {

using namespace structure;

TdmStructure::TdmStructure(TVosDBForm& form)
    : TVosDataModule(form.App().Session(), form.DataPoint()),
      sqlcStructure(Session(), Point(), kServerClass),
      cSQL(Session(), Point(), system::kSearchClass),
      cdsStructure("cdsStructure", sqlcStructure, dspStructure),
      cdsCostCenters("cdsCostCenters", cSQL, {core::CostCenter, core::Name30, core::Name30Second}),
      cdsDepartments("cdsDepartments", cSQL, {core::Code, core::Name40, core::Name40Second}),
      cdsSections("cdsSections", cSQL, {core::Section, core::Name30, core::Name30Second}),
      costCenters(cdsCostCenters, "CostCenter"),
      departments(cdsDepartments, "Code"),
      sections(cdsSections, "Section"),
      dsStructure(cdsStructure),
      form_(form) {
  cdsStructure.SetIndexFieldNames("CostCenter");
  NameRows(cdsStructure, {{"Център на разход", CostCenter.name}});
  ApplyAtOnce(form_, cdsStructure, {.maxErrors = -1, .form = ApplyForm::Repeated});
  FillNames(form_, cdsStructure,
            {{"CostCenter", costCenters, "CCName"},
             {"Department", departments, "DepName"},
             {"Section", sections, "SCName"}});
}

void TdmStructure::Fetch() {
  cdsStructure.SetParam(LNG.name, NamesLanguage(form_));
  FetchTogether({&costCenters, &departments, &sections}, {&cdsStructure});
}

}  // namespace orvane::modules
