#include "server/requests/request_load.h"

#include "contract/purchase_request.h"
#include "server/approval/approval_rows.h"
#include "server/approval/approvers.h"
#include "server/documents/claims.h"
#include "server/documents/document_roles.h"
#include "server/providers/arguments.h"
#include "server/requests/request_document.h"
#include "server/statements/named_statement.h"

namespace orvane::server {
namespace {

namespace request = purchase_request;
using request::get_rec::Ask;
using request::get_rec::Tell;

constexpr std::string_view kCostCenterOfKept =
    "(select o.CostCenter from PurchaseOrder o where o.POIdNumber = orvane_kept('DocumentId')"
    " and o.POVersion = orvane_kept('DocumentVersion'))";

constexpr std::size_t kFurtherPackets = 3;  // of the rows behind the head's codes

DataPacket RolesPacket(const std::vector<RoleRow>& roles) {
  DataPacket packet;
  for (const FieldDef& field : request::roles::dspGetSuppDocConfirm.fields)
    packet.AddColumn(field.name, field.kind, field.size);
  for (const RoleRow& role : roles) {
    const Variant values[] = {static_cast<int>(role.role), role.level, role.status};
    packet.AppendRow(values);
  }
  return packet;
}

constexpr Argument kAsked[] = {
    {"Operation", ValueKind::String, Need::Needed},
    {"Language", ValueKind::Byte, Need::Optional},
    {"Nav", ValueKind::Byte, Need::Needed},
    {"Step", ValueKind::Int16, Need::Optional},
    {"Id", ValueKind::Code, Need::Optional},
    {"Version", ValueKind::Code, Need::Optional},
    {"Login", ValueKind::String, Need::Optional},
    {"Employee", ValueKind::Code, Need::Optional},
    {"NeedsEmployee", ValueKind::Bool, Need::Optional},
    {"OneDocument", ValueKind::Bool, Need::Optional},
};

constexpr std::size_t kApprovals = 1 + std::size_t{kRequestApprovals};  // packet of a load

DocumentInApproval InApproval(const LoadedDocument& loaded) {
  const DataPacket& head = loaded.packets.front();
  return {.status = static_cast<int>(head.At(0, "Status").AsInt().value_or(0)),
          .closed =
              !head.At(0, "AnnulOn").IsNull() || head.At(0, "OldVersion").AsBool().value_or(false),
          .createdFrom = head.At(0, "CreatedFrom").ToText(),
          .notifier = head.At(0, "Notifier").AsInt().value_or(0),
          .rows = ReadApprovalRows(loaded.packets.at(kApprovals)),
          .approvers = ReadApprovers(loaded.further.at(0), loaded.further.at(1))};
}

}  // namespace

Answer<VariantArray> GetPurchaseRequest(Work& work, const VariantArray& ask) {
  const auto sound = CheckArguments(request::get_rec::kName, kAsked, ask);
  if (!sound) return sound.GetFailure();
  const auto claimed =
      CheckClaims(work, {ask[Ask::kLogin], ask[Ask::kEmployee], ask[Ask::kNeedsEmployee]});
  if (!claimed) return claimed.GetFailure();
  const auto place = ReadPlace(
      ask, {.nav = Ask::kNav, .step = Ask::kStep, .id = Ask::kId, .version = Ask::kVersion});
  if (!place) return place.GetFailure();
  const Language language = ask[Ask::kLanguage].AsInt() == 2 ? Language::Second : Language::First;

  auto loaded = LoadDocument(
      work, PurchaseRequest(), *place, language,
      SelectApprovers(kCostCenterOfKept, {}, work.Today(), InLanguage("{e.Name}", language)));
  if (!loaded) return loaded.GetFailure();
  VariantArray tell(Tell::kTellSize);
  tell[Tell::kCode] = static_cast<int>(loaded->code);
  tell[Tell::kFound] = loaded->code != LoadCode::None;
  if (loaded->code == LoadCode::None) return tell;

  const DocumentInApproval approval = InApproval(*loaded);
  Variant roles(RolesPacket(RolesInDocument(work, approval)));
  TellWaitsFor(work, approval, language, loaded->packets.at(kApprovals));
  std::size_t position = Tell::kFirstPacket;
  const std::size_t parts = loaded->packets.size() - kFurtherPackets;
  for (std::size_t i = 0; i < parts; ++i)
    tell[position++] = Variant(std::move(loaded->packets[i]));
  tell[position++] = std::move(roles);
  for (std::size_t i = parts; i < loaded->packets.size(); ++i)
    tell[position++] = Variant(std::move(loaded->packets[i]));
  return tell;
}

}  // namespace orvane::server
