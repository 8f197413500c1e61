#include "server/contracts/contract_apply.h"

#include <string>
#include <vector>

#include "contract/supplies_contract.h"
#include "server/documents/document_steps.h"
#include "server/documents/server_writes.h"
#include "server/documents/settings.h"
#include "server/providers/row_lock.h"
#include "server/statements/named_statement.h"

namespace orvane::server {

using namespace supplies_contract;

namespace {

constexpr ReferenceRule kReferences[] = {
    {"Supplier", "Partners", "Partner", "Няма доставчик {Supplier}. Изберете друг доставчик."},
    {"KindContract", "KindSupplies", "Code",
     "Няма вид договор {KindContract}. Изберете друг вид договор."},
    {"CapExPlanCode", "CapExPlan", "Code",
     "Няма код {CapExPlanCode} в плана за капиталови разходи. Изберете друг код."},
    {"SupplyRequestDescr", "SupplyRequestDescr", "Code",
     "Няма описание на поръчка {SupplyRequestDescr}. Изберете друго описание."},
    {"SupplyArtVchDescr", "SupplyArtVchDescr", "Code",
     "Няма описание на стокова разписка {SupplyArtVchDescr}. Изберете друго описание."},
    {"ToSupplyArtVchDescr", "SupplyArtVchDescr", "Code",
     "Няма описание на разлики по стокова разписка {ToSupplyArtVchDescr}. Изберете друго "
     "описание."},
    {"SupplyInvoiceDescr", "SupplyInvoiceDescr", "Code",
     "Няма описание на фактура {SupplyInvoiceDescr}. Изберете друго описание."},
    {"SuppAdvInvDescr", "SupplyInvoiceDescr", "Code",
     "Няма описание на фактура за авансово плащане {SuppAdvInvDescr}. Изберете друго описание."},
    {"SuppDNoticeDescr", "SupplyInvoiceDescr", "Code",
     "Няма описание на дебитно известие {SuppDNoticeDescr}. Изберете друго описание."},
    {"SuppCNoticeDescr", "SupplyInvoiceDescr", "Code",
     "Няма описание на кредитно известие {SuppCNoticeDescr}. Изберете друго описание."},
    {"KindSupplyList", "KindSupplyLists", "Code",
     "Няма вид списък за доставка {KindSupplyList}. Изберете друг вид."},
};

/// Documents that name the contract, the first of each kind, and what it says of itself.
constexpr std::string_view kPresent =
    "select c.Supplier, c.KindContract, c.KindSupplyList, c.AutomaticRenewal,"
    " (select min(p.POIdNumber) from PurchaseOrder p where p.ContractId = c.IdNumber),"
    " (select min(o.IdNumber) from SuppManifacOrder o where o.ContractId = c.IdNumber)"
    " from SuppliesContracts c where c.IdNumber = :Id";

/// What is not told is no.
constexpr FieldDef kFlags[] = {AutomaticRenewal, ManifacOrder, InclTransportInPrice,
                               UseQuantityRabat};

/// Lists whose elements no reference of the tables guards.
struct ElementRule {
  FieldDef field;
  std::string_view known;  ///< counts the elements equal to :Code
  std::string_view refusal;
};
constexpr ElementRule kElements[] = {
    {KindSupplyChoice, "select count(*) from NomIn where Nomenclature = 90 and Element = :Code",
     "Няма начин на избор %. Изберете друг начин."},
    {SuppElKindPayment,
     "select count(*) from FreeNomElements where FreeNomenclature = 15 and Element = :Code",
     "Няма начин на плащане %. Изберете друг начин."},
};

Variant IdOf(const Change& change) {
  const Variant* id = FindValue(change.before, IdNumber.name);
  return id ? id->AsInt().value_or(0) : 0;
}

/// Elements that the change brings are known; a contract of a kind that is bought by supply list
/// names one. `present` is the contract as it stands, empty for a new one.
Answer<Done, Setback> CheckTerms(WriteContext& context, const Change& change,
                                 const NamedValues& present) {
  std::vector<Statement> statements = {SelectSettings()};
  for (const ElementRule& rule : kElements) {
    const Variant* code = FindValue(change.after, rule.field.name);
    statements.push_back(
        Named(rule.known, {{"Code", code ? *code : Variant()}}, {{"Known", ValueKind::Code, 0}}));
  }
  const auto read = context.transaction.QueryAll(statements);
  if (!read) return ToSetback(read.GetFailure(), "reading what stands behind a contract");
  for (std::size_t i = 0; i < std::size(kElements); ++i) {
    const Variant* code = FindValue(change.after, kElements[i].field.name);
    if (!code || code->IsNull() || (*read)[i + 1].At(0, "Known").AsInt() != 0) continue;
    return Refusal(Refused(Replaced(kElements[i].refusal, "%", code->ToText())));
  }
  const DocumentSettings settings = ReadSettings(read->front());
  const Variant kind = ValueAfter(change, present, KindContract.name);
  const bool listed = NeedsSupplyList(kind.AsInt().value_or(0), settings.bulkKind.value_or(0),
                                      settings.waresKind.value_or(0));
  if (!listed || !ValueAfter(change, present, KindSupplyList.name).IsNull()) return Done{};
  return Refusal(Refused("Договор от вид " + kind.ToText() +
                         " се сключва по списък за доставка. Попълнете стойност в поле „Вид "
                         "списък за доставка“."));
}

Answer<Done, Setback> BeforeInsert(WriteContext& context, PreparedChange& prepared) {
  const auto checked = CheckTerms(context, prepared.change, {});
  if (!checked) return checked;
  const auto number = context.transaction.Query(NextNumber(dspSuppliesContracts.table));
  if (!number) return ToSetback(number.GetFailure(), "numbering a contract");
  const Variant id = number->At(0, "LastNumber");
  Impose(prepared, {}, IdNumber.name, id);
  context.ownerAnswer = id;
  return Done{};
}

/// The contract as it stands, behind its lock; without rows when it is gone, which the write tells.
Answer<DataPacket, Setback> LockPresent(WriteContext& context, const Variant& id) {
  const auto locked = LockRow(context, dspSuppliesContracts.table, IdNumber.name, id);
  if (!locked) return locked.GetFailure();
  auto row =
      context.transaction.Query(Named(kPresent, {{"Id", id}},
                                      {{std::string(Supplier.name), Supplier.kind, 0},
                                       {std::string(KindContract.name), KindContract.kind, 0},
                                       {std::string(KindSupplyList.name), KindSupplyList.kind, 0},
                                       {"Renewed", ValueKind::Bool, 0},
                                       {"Request", ValueKind::Int32, 0},
                                       {"Order", ValueKind::Int32, 0}}));
  if (!row) return ToSetback(row.GetFailure(), "reading a contract");
  return *std::move(row);
}

/// "по него е искане за покупка 17"; empty while no document names the contract.
std::string NamedBy(const DataPacket& present) {
  const auto named = [&](std::string_view column, std::string_view kind) {
    const Variant id = present.At(0, column);
    return id.IsNull() ? std::string() : "по него е " + std::string(kind) + " " + id.ToText();
  };
  const std::string request = named("Request", "искане за покупка");
  return request.empty() ? named("Order", "поръчка за производство") : request;
}

/// What documents were made by its terms stays true: it keeps supplier and kind.
std::optional<Failure> WhyTermsKept(const Change& change, const DataPacket& present) {
  const std::string namedBy = NamedBy(present);
  if (namedBy.empty()) return std::nullopt;
  for (const FieldDef& field : {Supplier, KindContract}) {
    const Variant* value = FindValue(change.after, field.name);
    if (!value || *value == present.At(0, field.name)) continue;
    return Refused("Договор " + IdOf(change).ToText() +
                   " запазва доставчика и вида си: " + namedBy + ". Въведете нов договор.");
  }
  return std::nullopt;
}

Answer<Done, Setback> BeforeDelete(WriteContext& context, const Change& change) {
  context.ownerAnswer = {};
  const Variant id = IdOf(change);
  const auto present = LockPresent(context, id);
  if (!present) return present.GetFailure();
  const std::string namedBy = present->rowCount == 0 ? std::string() : NamedBy(*present);
  if (namedBy.empty()) return Done{};
  // One that is renewed by itself outlives its end.
  const bool renewed = present->At(0, "Renewed").AsBool().value_or(false);
  return Refusal(Refused("Договор " + id.ToText() + " не се изтрива: " + namedBy +
                         ". Вместо това въведете дата на " +
                         (renewed ? "блокиране" : "прекратяване") + "."));
}

/// Kind and list are judged together, so nobody may change the other one meanwhile.
Answer<Done, Setback> BeforeUpdate(WriteContext& context, const Change& change) {
  if (FindValue(change.after, IdNumber.name))
    return BadRequest("Идентификаторът на договор („IdNumber“) не се променя.");
  const Variant id = IdOf(change);
  context.ownerAnswer = id;
  const auto present = LockPresent(context, id);
  if (!present) return present.GetFailure();
  if (present->rowCount == 0) return Done{};
  if (auto kept = WhyTermsKept(change, *present)) return Refusal(*std::move(kept));
  return CheckTerms(context, change,
                    {{std::string(KindContract.name), present->At(0, KindContract.name)},
                     {std::string(KindSupplyList.name), present->At(0, KindSupplyList.name)}});
}

Answer<Done, Setback> BeforeContracts(WriteContext& context, std::span<PreparedChange> changes) {
  for (PreparedChange& prepared : changes) {
    Change& change = prepared.change;
    for (const FieldDef& flag : kFlags) {
      const Variant* sent = FindValue(change.after, flag.name);
      if (sent && sent->IsNull()) SetValue(change.after, flag.name, false);
    }
    const auto ready = change.kind == ChangeKind::Insert   ? BeforeInsert(context, prepared)
                       : change.kind == ChangeKind::Delete ? BeforeDelete(context, change)
                                                           : BeforeUpdate(context, change);
    if (!ready) return ready;
  }
  return Done{};
}

}  // namespace

WriteRules ContractRules() {
  return {.references = kReferences, .beforeWrite = &BeforeContracts};
}

}  // namespace orvane::server
