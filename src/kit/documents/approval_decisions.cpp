#include "kit/documents/approval_decisions.h"

namespace orvane::kit {
namespace {

int ReadInt(TVosClientDataSet& dataSet, std::string_view field) {
  return static_cast<int>(dataSet.FieldByName(field).AsInt().value_or(-1));
}

int At(TVosClientDataSet& rows, std::size_t position, std::string_view field) {
  const Variant value = rows.ValueAt(position, rows.FieldByName(field));
  return static_cast<int>(value.AsInt().value_or(-1));
}

}  // namespace

ApprovalRoles ReadRoles(TVosClientDataSet& roles) {
  const auto locate = [&roles](ApprovalRole role) {
    return roles.Locate("oKindUser", Variant(static_cast<int>(role)));
  };
  ApprovalRoles read;
  read.canUnConfirm = locate(ApprovalRole::HasDecided);
  if (read.canUnConfirm) {
    read.unConfirmLevel = ReadInt(roles, "oConfirmationLevel");
    read.unConfirmStatus = ReadInt(roles, "oConfirmationStats");
  }
  read.canConfirm = locate(ApprovalRole::HasTurn);
  if (read.canConfirm) {
    read.confirmLevel = ReadInt(roles, "oConfirmationLevel");
    read.confirmStatus = ReadInt(roles, "oConfirmationStats");
  }
  read.isChief = locate(ApprovalRole::IsChief);
  return read;
}

bool Decide(TVosClientDataSet& rows, const ApprovalFields& fields, const LevelDecision& made,
            std::string& note) {
  if (!rows.Locate(fields.level, Variant(made.level))) return false;
  rows.Edit();
  const bool withdrawn = made.decision == Decision::Withdraw;
  const int status = withdrawn                            ? ApprovalWaiting
                     : made.decision == Decision::Approve ? ApprovalGiven
                                                          : ApprovalRejected;
  const Variant why = withdrawn || note.empty() ? Variant() : Variant(note);
  rows.FieldByName(fields.status).Set(Variant(status));
  if (!withdrawn || !fields.keepsDecider) {
    rows.FieldByName(fields.by).Set(withdrawn ? Variant() : made.employee);
    rows.FieldByName(fields.on).Set(withdrawn ? Variant() : Variant(made.now));
    rows.FieldByName(fields.note).Set(why);
  }
  rows.FieldByName(fields.withdrawnBy).Set(withdrawn ? made.employee : Variant());
  rows.FieldByName(fields.withdrawnOn).Set(withdrawn ? Variant(made.now) : Variant());
  rows.Post();
  if (!rows.Locate(fields.level, Variant(made.level))) return true;
  const bool written = ReadInt(rows, fields.status) == status &&
                       rows.FieldByName(fields.note).Value() == why && rows.ChangeCount() == 0;
  if (written) note.clear();
  return true;
}

bool CanUnConfDoc(TVosClientDataSet& rows, const ApprovalFields& fields, int ownLevel) {
  if (rows.RecordCount() < 2) return true;
  for (std::size_t position = rows.RecordCount(); position-- > 0;) {
    if (At(rows, position, fields.level) == ownLevel) return true;
    if (At(rows, position, fields.status) == ApprovalGiven) return false;
  }
  return true;
}

}  // namespace orvane::kit
