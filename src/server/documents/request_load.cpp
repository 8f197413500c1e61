#include "server/documents/request_load.h"

#include "contract/purchase_request.h"
#include "server/approval/approval_rows.h"
#include "server/approval/approvers.h"
#include "server/documents/claims.h"
#include "server/documents/named_statement.h"
#include "server/documents/request_document.h"
#include "server/documents/request_head.h"

namespace orvane {
namespace {

namespace request = purchase_request;
using request::get_rec::Ask;
using request::get_rec::Tell;

constexpr std::string_view kCostCenterOfKept =
    "(select o.CostCenter from PurchaseOrder o where o.POIdNumber = orvane_kept('DocumentId')"
    " and o.POVersion = orvane_kept('DocumentVersion'))";

constexpr std::size_t kFurtherPackets = 3;  // of the rows behind the head's codes

std::vector<ApprovalRow> ApprovalRowsOf(const DataPacket& packet) {
  std::vector<ApprovalRow> rows;
  for (std::size_t row = 0; row < packet.rowCount; ++row) {
    const auto number = [&](std::string_view column) {
      return static_cast<int>(packet.At(row, column).AsInt().value_or(0));
    };
    rows.push_back({number("ConfirmationLevel"), static_cast<ApproverKind>(number("Approval")),
                    number("Status"), packet.At(row, "ConfirmedFrom").AsInt()});
  }
  return rows;
}

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

/// The asker's roles in the request that was loaded.
DataPacket RolesIn(const Work& work, const LoadedDocument& loaded) {
  const DataPacket& head = loaded.packets.front();
  const std::vector<ApprovalRow> rows =
      ApprovalRowsOf(loaded.packets.at(1 + std::size_t{kRequestApprovals}));
  const ApproversOfCostCenter approvers = ReadApprovers(loaded.further.at(0), loaded.further.at(1));
  RoleFacts facts;
  facts.status = static_cast<int>(head.At(0, "Status").AsInt().value_or(0));
  facts.closed =
      !head.At(0, "AnnulOn").IsNull() || head.At(0, "OldVersion").AsBool().value_or(false);
  facts.rows = rows;
  facts.employee = work.Who().Employee();
  if (facts.employee) {
    const ApprovalRow* turn = TurnOf(rows);
    const bool own = IsForbiddenOwn(work, head.At(0, "CreatedFrom").ToText(),
                                    head.At(0, "Notifier").AsInt().value_or(0));
    facts.decidesTurn = turn && !own && approvers.Of(turn->approver).Has(*facts.employee);
    facts.isChief = approvers.Of(ApproverKind::CostCenterHead).Has(*facts.employee);
  }
  return RolesPacket(RolesOf(facts));
}

}  // namespace

Answer<VariantArray> GetPurchaseRequest(Work& work, const VariantArray& ask) {
  if (ask.size() != Ask::kAskSize) {
    return Failure{FailureKind::BadRequest, "Методът „GetRec“ очаква десет елемента."};
  }
  const auto claimed =
      CheckClaims(work, {ask[Ask::kLogin], ask[Ask::kEmployee], ask[Ask::kNeedsEmployee]});
  if (!claimed) return claimed.GetFailure();
  const auto place = ReadPlace(
      ask, {.nav = Ask::kNav, .step = Ask::kStep, .id = Ask::kId, .version = Ask::kVersion});
  if (!place) return place.GetFailure();
  const Language language = ask[Ask::kLanguage].AsInt() == 2 ? Language::Second : Language::First;

  auto loaded = LoadDocument(work, PurchaseRequest(), *place, language,
                             SelectApprovers(kCostCenterOfKept, {}, work.Today()));
  if (!loaded) return loaded.GetFailure();
  VariantArray tell(Tell::kTellSize);
  tell[Tell::kCode] = static_cast<int>(loaded->code);
  tell[Tell::kFound] = loaded->code != LoadCode::None;
  if (loaded->code == LoadCode::None) return tell;

  Variant roles(RolesIn(work, *loaded));
  std::size_t position = Tell::kFirstPacket;
  const std::size_t parts = loaded->packets.size() - kFurtherPackets;
  for (std::size_t i = 0; i < parts; ++i)
    tell[position++] = Variant(std::move(loaded->packets[i]));
  tell[position++] = std::move(roles);
  for (std::size_t i = parts; i < loaded->packets.size(); ++i)
    tell[position++] = Variant(std::move(loaded->packets[i]));
  return tell;
}

}  // namespace orvane
