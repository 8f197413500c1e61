#include "request_calls.h"

#include "contract/purchase_request.h"
#include "stage.h"

namespace orvane::bench {
namespace {

namespace request = purchase_request;

ChangeOutcome ApplyOne(const Visitor& visitor, std::string_view provider, Change change) {
  const ApplyRequest apply{
      std::string(request::kServerClass), std::string(provider), 0, {}, {std::move(change)}};
  return Must(visitor.door.Apply(visitor.caller, apply)).outcomes.front();
}

}  // namespace

VariantArray LoadRequest(const Visitor& visitor, Nav nav, std::int64_t id) {
  return Must(visitor.door.Call(visitor.caller,
                                {std::string(request::kServerClass), "Operations",
                                 VariantArray{"GetRec", 1, static_cast<int>(nav), 0, id, Variant(),
                                              visitor.login, Variant(), true, false}}));
}

std::int64_t EnteredRequest(const BenchCompany& company, int place) {
  return company.Number(
      "select o.POIdNumber from PurchaseOrder o where o.Status = 2 and o.OldVersion = 0 and"
      " o.POVersion = 1 and o.AnnulOn is null and exists (select 1 from PurchaseOrderDet d where"
      " d.PurchaseOrderId = o.POIdNumber and d.SuppManifacOrderId is null and d.RowNumber = 1)"
      " order by o.POIdNumber desc limit 1 offset " +
      std::to_string(place));
}

void PostRow(const Visitor& visitor, std::int64_t id, const std::string& clientKey) {
  const VariantArray told = LoadRequest(visitor, Nav::ByKey, id);
  const DataPacket& rows = *told.at(request::get_rec::kFirstPacket + 1).AsPacket();
  const auto value = [&](std::string_view column) {
    return NamedValue{std::string(column), rows.At(0, column)};
  };
  const double quantity = rows.At(0, "Quantity").AsDouble().value_or(1) > 1 ? 1 : 2;
  Change change;
  change.kind = ChangeKind::Update;
  change.clientKey = clientKey;
  change.before = {value("PurchaseOrderId"), value("PurchaseOrderVer"), value("RowNumber"),
                   value("Quantity")};
  change.after = {{"Quantity", quantity}};
  const ChangeOutcome outcome =
      ApplyOne(visitor, request::det::dspPurchaseOrderDet.name, std::move(change));
  if (outcome.applied) return;
  std::fprintf(stderr, "bench: %s\n", outcome.failure->message.c_str());
  std::exit(1);
}

bool Decide(const Visitor& visitor, const Turn& turn, int from, int to,
            const std::string& clientKey) {
  Change change;
  change.kind = ChangeKind::Update;
  change.clientKey = clientKey;
  change.before = {{"PurchaseOrderId", turn.request},
                   {"PurchaseOrderVer", turn.version},
                   {"ConfirmationLevel", turn.level},
                   {"SendingNumber", turn.sending},
                   {"Status", from}};
  change.after = {{"Status", to}};
  return ApplyOne(visitor, request::adm::dspPurchaseOrderAdm.name, std::move(change)).applied;
}

}  // namespace orvane::bench
