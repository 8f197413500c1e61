// The tables of documents hold what the contract says of their fields.

#include "contract/delivery.h"
#include "contract/purchase_request.h"
#include "contract/supplier_order.h"
#include "contract/supplies_contract.h"
#include "support/test_databases.h"

namespace orvane::server {
namespace {

class DocumentTables : public testing::TestWithParam<Engine> {};
INSTANTIATE_TEST_SUITE_P(Engines, DocumentTables, testing::ValuesIn(TestEngines()), TestEngineName);

const ProviderDef kWritten[] = {
    purchase_request::head::dspPurchaseOrder,   purchase_request::det::dspPurchaseOrderDet,
    purchase_request::del::dspPurchaseOrderDel, purchase_request::pay::dspPurchaseOrderPayPl,
    purchase_request::adm::dspPurchaseOrderAdm, supplier_order::head::dspSuppManifacOrder,
    supplier_order::det::dspSuppManOrderDet,    supplier_order::adm::dspSuppManOrderAdmin,
    supplies_contract::dspSuppliesContracts,    delivery::head::dspDeliveries,
    delivery::rows::dspDeliveriesRows,
};

TEST_P(DocumentTables, HaveAColumnForEveryFieldThatIsSent) {
  const auto database = FreshDatabase(GetParam());
  for (const ProviderDef& provider : kWritten) {
    for (const FieldDef& field : provider.fields) {
      if (field.Is(Joined)) continue;
      for (const std::string& column :
           {std::string(field.name), (field.Is(Folded) ? "Fold" : "") + std::string(field.name)}) {
        const Statement select{
            "select " + column + " from " + std::string(provider.table) + " where 1 = 0",
            {},
            {{column, field.kind, field.size}}};
        const auto read = database->ReadSnapshot({&select, 1});
        EXPECT_TRUE(read) << provider.table << "." << column;
      }
    }
  }
}

}  // namespace
}  // namespace orvane::server
