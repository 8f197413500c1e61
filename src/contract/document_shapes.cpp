#include "contract/document_shapes.h"

#include "contract/delivery.h"
#include "contract/initial_map.h"
#include "contract/purchase_request.h"
#include "contract/supplier_invoice.h"
#include "contract/supplier_order.h"
#include "contract/supplies_contract.h"

namespace orvane {
namespace {

constexpr std::string_view kIdentityAndExisted = "identity, existed before";

constexpr DocumentShape kShapes[] = {
    {.name = "Искане за покупка",
     .serverClass = purchase_request::kServerClass,
     .loadMethod = "Operations",
     .askSize = 10,
     .navPosition = 2,
     .languagePosition = 1,
     .firstPacket = 2,
     .packets = 7,
     .roles = RolesCome::AsRows,
     .headOwnerData = kIdentityAndExisted,
     .decisionStamp = "ConfermedOn"},
    {.name = "Поръчки за производство",
     .serverClass = supplier_order::kServerClass,
     .loadMethod = "GetRecord",
     .askSize = 9,
     .navPosition = 0,
     .languagePosition = 7,
     .firstPacket = 11,
     .packets = 1,
     .roles = RolesCome::AsElements,
     .headRepeats = false,
     .rowsMaxErrors = 0,
     .rowsRepeat = false,
     .headOwnerData = "identity",
     .identifier = IdentifierComes::InAppliedRow,
     .refusal = HeadRefusal::AbortsAndTells,
     .decisionStamp = "ConfermedOn"},
    {.name = "Доставки",
     .serverClass = delivery::kServerClass,
     .loadMethod = "Operations",
     .askSize = 11,
     .navPosition = 1,
     .languagePosition = 9,
     .firstPacket = 2,
     .packets = 3,
     .roles = RolesCome::AsElements,
     .rowsMaxErrors = 0,
     .headOwnerData = "identity, being deleted",
     .refusal = HeadRefusal::AbortsAndTells,
     .decisionStamp = "ConfirmedOn"},
    {.name = "Регистър на фактури от доставчици",
     .serverClass = supplier_invoice::kServerClass,
     .loadMethod = "Operations",
     .askSize = 8,
     .navPosition = 1,
     .languagePosition = 4,
     .firstPacket = 2,
     .packets = 5,
     .roles = RolesCome::AsRows,
     .headOwnerData = kIdentityAndExisted,
     .refusal = HeadRefusal::AbortsAndTells,
     .decisionStamp = "ConfirmedOn"},
    {.name = "Договори за доставки",
     .serverClass = supplies_contract::kServerClass,
     .loadMethod = "Operations",
     .askSize = 4,
     .navPosition = 1,
     .languagePosition = -1,
     .firstPacket = 2,
     .packets = 1,
     .headOwnerData = "existed before",
     .refusal = HeadRefusal::AbortsAndTells,
     .decisionStamp = {}},
    {.name = "Карта за първоначално оценяване",
     .serverClass = initial_map::kServerClass,
     .loadMethod = "GetRecord",
     .askSize = 5,
     .navPosition = 1,
     .languagePosition = 4,
     .firstPacket = 3,
     .packets = 3,
     .headMaxErrors = -1,
     .headRepeats = false,
     .rowsRepeat = false,
     .headOwnerData = {},
     .identifier = IdentifierComes::FromScreen,
     .decisionStamp = {}},
};

constexpr ProviderDef kProviders[] = {
    purchase_request::head::dspPurchaseOrder,
    purchase_request::det::dspPurchaseOrderDet,
    purchase_request::del::dspPurchaseOrderDel,
    purchase_request::pay::dspPurchaseOrderPayPl,
    purchase_request::adm::dspPurchaseOrderAdm,
    supplier_order::head::dspSuppManifacOrder,
    supplier_order::det::dspSuppManOrderDet,
    supplier_order::adm::dspSuppManOrderAdmin,
    delivery::head::dspDeliveries,
    delivery::rows::dspDeliveriesRows,
    delivery::adm::dspDeliveryAdm,
    supplier_invoice::head::dspSuppInvRegister,
    supplier_invoice::links::dspSuppInvPurchaseOrder,
    supplier_invoice::adm::dspAdm,
    supplies_contract::dspSuppliesContracts,
    initial_map::head::dspInitEvalMap,
    initial_map::criteria::dspCriteries,
};

}  // namespace

std::span<const DocumentShape> DocumentShapes() {
  return kShapes;
}

std::span<const ProviderDef> DocumentProviders() {
  return kProviders;
}

}  // namespace orvane
