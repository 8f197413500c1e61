#include "server/orders/order_load.h"

#include <charconv>

#include "contract/supplier_order.h"
#include "server/documents/claims.h"
#include "server/documents/document_roles.h"
#include "server/orders/admissible_centers.h"
#include "server/orders/order_document.h"
#include "server/providers/arguments.h"
#include "server/statements/named_statement.h"

namespace orvane::server {
namespace {

namespace order = supplier_order;
namespace params = supplier_order::get_params;
using order::get_record::At;

/// Null where nobody decides (kDecidableStatuses): nobody is looked for then.
constexpr std::string_view kCostCenterOfKept =
    "(select o.CostCenter from SuppManifacOrder o where o.IdNumber = orvane_kept('DocumentId')"
    " and o.Status in (1, 3, 4, 5) and o.AnnulOn is null)";
constexpr std::string_view kApprovalRowsOfKept =
    "select ConfirmationLevel, Approval, Status, ConfirmedFrom from SuppManOrderAdmin"
    " where SuppManOrderId = orvane_kept('DocumentId') order by ConfirmationLevel";

// Nomenclatures.
constexpr int kStatusNames = 249;
constexpr int kNoYesNames = 250;

Statement SelectNomenclature(int number) {
  return Named("select Element, Name, Name2 from NomIn where Nomenclature = :Nom order by Element",
               {{"Nom", number}}, ColumnsOf(order::opening_rows::kNomenclature));
}

/// Statements behind the parts of a load.
enum Further : std::uint8_t { kPlaces, kPeople, kApprovalRows, kRequests };

/// A number that travels as text or as a number; empty when it is neither, Null is 0.
std::optional<std::int64_t> NumberIn(const Variant& value) {
  if (value.IsEmpty()) return 0;
  const std::string* text = value.AsString();
  if (!text) return value.AsInt();
  std::int64_t number = 0;
  const auto [end, error] = std::from_chars(text->data(), text->data() + text->size(), number);
  const bool whole = error == std::errc() && end == text->data() + text->size();
  return whole ? std::optional(number) : std::nullopt;
}

/// The server context is the session it was given to; none is accepted.
bool IsContextOf(const Work& work, const Variant& context) {
  return context.IsEmpty() || context == Variant(work.Who().sessionName);
}

Statement SelectRequests(const Work& work, Language language) {
  const AskerVisibility seen(kSeenRequests, SightOf(work));
  return Named(InLanguage(SelectRequestsOfOrder(kKeptId, seen.On("p")), language), seen.Params(),
               ColumnsOf(order::requests::dspPurchaseOrder));
}

std::vector<Statement> FurtherStatements(const Work& work, Language language) {
  std::vector<Statement> further =
      SelectApprovers(kCostCenterOfKept, {}, work.Today(), InLanguage("{e.Name}", language));
  further.push_back({std::string(kApprovalRowsOfKept),
                     {},
                     {{"ConfirmationLevel", ValueKind::Byte, 0},
                      {"Approval", ValueKind::Byte, 0},
                      {"Status", ValueKind::Byte, 0},
                      {"ConfirmedFrom", ValueKind::Code, 0}}});
  further.push_back(SelectRequests(work, language));
  return further;
}

DocumentInApproval InApproval(const LoadedDocument& loaded) {
  const DataPacket& head = loaded.packets.front();
  return {.status = static_cast<int>(head.At(0, "Status").AsInt().value_or(0)),
          .closed = !head.At(0, "AnnulOn").IsNull(),
          .createdFrom = head.At(0, "CreatedFrom").ToText(),
          .notifier = head.At(0, "Notifier").AsInt().value_or(0),
          .rows = ReadApprovalRows(loaded.further.at(kApprovalRows)),
          .approvers = ReadApprovers(loaded.further.at(kPlaces), loaded.further.at(kPeople))};
}

/// One field carries the level of the turn or of the own decision, and the turn goes first.
void TellRoles(const Work& work, const std::vector<RoleRow>& roles, VariantArray& tell) {
  const auto find = [&](ApprovalRole wanted) -> const RoleRow* {
    for (const RoleRow& role : roles) {
      if (role.role == wanted) return &role;
    }
    return nullptr;
  };
  const RoleRow* turn = find(ApprovalRole::HasTurn);
  const RoleRow* own = turn ? nullptr : find(ApprovalRole::HasDecided);
  const RoleRow* shown = turn ? turn : own;
  tell[At::kMayApprove] = turn != nullptr;
  tell[At::kMayWithdraw] = own != nullptr;
  tell[At::kPendingStatus] = turn ? turn->status : 0;
  tell[At::kOwnStatus] = own ? own->status : 0;
  tell[At::kOwnLevel] = shown ? shown->level : 0;
  tell[At::kReserved] = 0;
  tell[At::kFullAccess] = HasFullAccess(work);
}

void TellPackets(LoadedDocument loaded, VariantArray& tell) {
  const auto part = [&](OrderLoadPart number) {
    return Variant(std::move(loaded.packets.at(1 + std::size_t{number})));
  };
  tell[At::kHead] = Variant(std::move(loaded.packets.front()));
  tell[At::kRows] = part(kOrderRows);
  tell[At::kApprovals] = part(kOrderApprovals);
  tell[At::kRequests] = Variant(std::move(loaded.further.at(kRequests)));
  tell[At::kCostCenterRow] = part(kOrderCostCenterRow);
  tell[At::kSupplierRow] = part(kOrderPartnerRow);
  tell[At::kContractRow] = part(kOrderContractRow);
}

/// What is asked of whom, compared with the session.
Answer<Done> CheckAsker(const Work& work, const VariantArray& ask) {
  const auto employee = NumberIn(ask[At::kEmployee]);
  const auto below = ask[At::kBelowThree].AsBool();
  if (!employee || !IsContextOf(work, ask[At::kContext])) {
    return Failure{FailureKind::BadRequest, "Методът „GetRecord“ не приема аргумента „" +
                                                std::string(employee ? "Context" : "Employee") +
                                                "“."};
  }
  return CheckClaims(work, {ask[At::kLogin], *employee, below ? Variant(!*below) : Variant()});
}

}  // namespace

Answer<VariantArray> GetOrderParams(Work& work, const VariantArray& ask) {
  constexpr Argument kAsked[] = {
      {"Employee", ValueKind::Code, Need::OrText},
      {"FirstLanguage", ValueKind::Bool, Need::Needed},
  };
  const auto sound = CheckArguments(params::kName, kAsked, ask);
  if (!sound) return sound.GetFailure();
  const auto employee = NumberIn(ask[params::kEmployee]);
  const auto first = ask[params::kFirstLanguage].AsBool();
  if (!employee || !first) {
    return Failure{FailureKind::BadRequest, "Методът „GetParams“ не приема аргумента „Employee“."};
  }
  const auto claimed = CheckClaims(work, {{}, *employee, {}});
  if (!claimed) return claimed.GetFailure();
  const Language language = *first ? Language::First : Language::Second;
  const Statement statements[] = {
      Named(InLanguage("select {e.Name} from Employees e where e.Employee = :Employee", language),
            {{"Employee", *employee}}, {{"Name", ValueKind::String, 60}}),
      {"select IdentityWithNom from DescrBaseSupplyList",
       {},
       {{"IdentityWithNom", ValueKind::Bool, 0}}},
      SelectAdmissibleCenters(*employee),
      SelectNomenclature(kStatusNames),
      SelectNomenclature(kNoYesNames),
      {"select Code, Name, Name2 from Currencies order by Code",
       {},
       ColumnsOf(order::opening_rows::kCurrency)}};
  auto packets = work.Read(statements);
  if (!packets) return packets.GetFailure();
  const DataPacket& names = (*packets)[0];
  const DataPacket& naming = (*packets)[1];
  VariantArray tell = ask;
  tell.resize(params::kSize);
  tell[params::kEmployeeName] = names.rowCount == 1 ? names.At(0, 0) : Variant("");
  tell[params::kIdentityWithNom] = naming.rowCount == 1 && naming.At(0, 0).AsBool().value_or(false);
  tell[params::kContext] = work.Who().sessionName;
  tell[params::kCostCenters] = AdmissibleCenters(std::move((*packets)[2]));
  tell[params::kStatuses] = Variant(std::move((*packets)[3]));
  tell[params::kNoYes] = Variant(std::move((*packets)[4]));
  tell[params::kCurrencies] = Variant(std::move((*packets)[5]));
  return tell;
}

Answer<VariantArray> GetOrder(Work& work, const VariantArray& ask) {
  constexpr Argument kAsked[] = {
      {"Mode", ValueKind::Byte, Need::Needed},
      {"Step", ValueKind::Int16, Need::Optional},
      {"Id", ValueKind::Code, Need::OrText},
      {"Employee", ValueKind::Code, Need::OrText},
      {"BelowThree", ValueKind::Bool, Need::Optional},
      {"Login", ValueKind::String, Need::Optional},
      {"Context", ValueKind::String, Need::Optional},
      {"FirstLanguage", ValueKind::Bool, Need::Optional},
      {"ViewOnly", ValueKind::Bool, Need::Optional},
  };
  const auto sound = CheckArguments(order::get_record::kName, kAsked, ask);
  if (!sound) return sound.GetFailure();
  const auto claimed = CheckAsker(work, ask);
  if (!claimed) return claimed.GetFailure();
  VariantArray question = ask;  // a text that is no number names no order
  question[At::kIdText] = NumberIn(ask[At::kIdText]).value_or(0);
  const auto place = ReadPlace(question, {.nav = At::kMode, .step = At::kStep, .id = At::kIdText});
  if (!place) return place.GetFailure();
  const bool second = ask[At::kFirstLanguage].AsBool() == false;
  const Language language = second ? Language::Second : Language::First;

  auto loaded =
      LoadDocument(work, SupplierOrder(), *place, language, FurtherStatements(work, language));
  if (!loaded) return loaded.GetFailure();
  VariantArray tell = ask;
  tell.resize(At::kSize);
  tell[At::kFound] = loaded->code != LoadCode::None;
  tell[At::kPosition] = static_cast<int>(loaded->code);
  if (loaded->code == LoadCode::None) return tell;
  const DocumentInApproval approval = InApproval(*loaded);
  TellRoles(work, RolesInDocument(work, approval), tell);
  TellWaitsFor(work, approval, language, loaded->packets.at(1 + std::size_t{kOrderApprovals}));
  TellPackets(*std::move(loaded), tell);
  return tell;
}

}  // namespace orvane::server
