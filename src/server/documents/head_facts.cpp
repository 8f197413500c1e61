#include "server/documents/head_facts.h"

#include "server/catalogue/active_contract.h"
#include "server/documents/document_steps.h"
#include "server/statements/named_statement.h"

namespace orvane::server {

std::vector<Statement> SelectHeadFacts(const Work& work, const Change& change,
                                       const NamedValues& present) {
  const NamedValues params = {{"CostCenter", ValueAfter(change, present, stored::kCostCenter)},
                              {"Notifier", ValueAfter(change, present, stored::kNotifier)},
                              {"Supplier", ValueAfter(change, present, stored::kSupplier)},
                              {"Contract", ValueAfter(change, present, stored::kContractId)},
                              {"Today", work.Today()}};
  return {SelectSettings(),
          Named("select count(*), coalesce((select p.PartnerTypeSupplier from Partners p"
                " where p.Partner = :Supplier), 0) from AdmissibleNotifiers"
                " where CostCenter = :CostCenter and Notifier = :Notifier",
                params, {{"Found", ValueKind::Code, 0}, {"Supplier", ValueKind::Bool, 0}}),
          Named("select c.Supplier, c.KindContract, " + ActiveContract("c", ":Today") +
                    ", c.ManifacOrder from SuppliesContracts c where c.IdNumber = :Contract",
                params,
                {{"Supplier", ValueKind::Code, 0},
                 {"Kind", ValueKind::Int16, 0},
                 {"Active", ValueKind::Bool, 0},
                 {"Orders", ValueKind::Bool, 0}})};
}

HeadFacts ReadHeadFacts(std::span<const DataPacket> packets) {
  HeadFacts facts;
  facts.settings = ReadSettings(packets[0]);
  facts.admissible = packets[1].At(0, "Found").AsInt().value_or(0) > 0;
  facts.isSupplier = packets[1].At(0, "Supplier").AsBool().value_or(false);
  const DataPacket& contract = packets[2];
  facts.hasContract = contract.rowCount == 1;
  if (!facts.hasContract) return facts;
  facts.contractSupplier = contract.At(0, "Supplier").AsInt().value_or(0);
  facts.contractKind = contract.At(0, "Kind").AsInt().value_or(0);
  facts.contractActive = contract.At(0, "Active").AsBool().value_or(false);
  facts.contractThroughOrders = contract.At(0, "Orders").AsBool().value_or(false);
  return facts;
}

std::optional<std::string> WhyContractRefused(const StoredDocument& document,
                                              const HeadFacts& facts, const Variant& contract,
                                              std::optional<std::int64_t> supplier,
                                              std::optional<std::int64_t> kind) {
  if (contract.IsNull() || !facts.hasContract) return std::nullopt;
  const std::string name = contract.ToText();
  if (supplier != facts.contractSupplier || kind != facts.contractKind) {
    return name + " не е за доставчика и вида покупка на " + std::string(document.itself) +
           ". Изберете друг договор.";
  }
  if (!facts.contractActive) return name + " не е действащ днес. Изберете друг договор.";
  return std::nullopt;
}

}  // namespace orvane::server
