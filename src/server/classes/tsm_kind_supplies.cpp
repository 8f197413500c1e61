#include "contract/kind_supplies.h"
#include "server/classes/parameter_rules.h"
#include "server/classes/server_classes.h"
#include "server/providers/row_checks.h"
#include "server/providers/row_lock.h"

namespace orvane::server {

using namespace kind_supplies;

namespace {

constexpr char kSelect[] = "select Code, Name, Name2 from KindSupplies order by Code";

constexpr std::string_view kCode[] = {"Code"};
constexpr UniqueRule kUnique[] = {
    {kCode, "Вече има вид покупка с код {Code}. Изберете друг код."},
};
constexpr RangeRule kRanges[] = {
    {Code, 1, 9999, "Кодът на вид покупка е от 1 до 9999."},
};
constexpr UsedByRule kUsedBy[] = {
    {"Code", "LevelsApproval", "KindSupply",
     "Вид покупка {Code} се ползва в „Нива на одобрение“. Изтрийте първо нивата за него."},
    {"Code", "SuppliesContracts", "KindContract",
     "Вид покупка {Code} се ползва в договор за доставка {used} и остава, докато има такива "
     "договори.",
     "IdNumber"},
    {"Code", "SuppManifacOrder", "KindSupply",
     "Вид покупка {Code} се ползва в поръчка за производство {used} и остава, докато има такива "
     "поръчки.",
     "IdNumber"},
    {"Code", "PurchaseOrder", "KindSupply",
     "Вид покупка {Code} се ползва в искане за покупка {used} и остава, докато има такива искания.",
     "POIdNumber"},
    {"Code", "Deliveries", "KindSupply",
     "Вид покупка {Code} се ползва в доставка {used} и остава, докато има такива доставки.",
     "IdNumber"},
};

/// The code that a change gives up; empty when it keeps it.
std::optional<std::int64_t> CodeGivenUp(const Change& change) {
  if (change.kind == ChangeKind::Insert) return std::nullopt;
  if (change.kind == ChangeKind::Update && !FindValue(change.after, Code.name)) return std::nullopt;
  const Variant* code = FindValue(change.before, Code.name);
  return code ? code->AsInt() : std::nullopt;
}

/// Parameters keep codes as texts, so that no engine guards them.
Answer<Done, Setback> BeforeWrite(WriteContext& context, std::span<PreparedChange> changes) {
  if (auto within = WithinRanges(changes, kRanges); !within) return within;
  for (const PreparedChange& prepared : changes) {
    const auto code = CodeGivenUp(prepared.change);
    if (!code) continue;
    auto locked = LockRow(context, "KindSupplies", "Code", *code);
    if (!locked) return locked;
    auto unused = NotInParameters(context.transaction, parameters::Refers::KindSupplies, *code,
                                  "Вид покупка");
    if (!unused) return unused;
  }
  return Done{};
}

}  // namespace

ServerClass TsmKindSupplies() {
  return ServerClass(kServerClass)
      .UsedFrom({Point::KindSupplies})
      .Provider(dsKindSupplies, kSelect,
                {.unique = kUnique, .usedBy = kUsedBy, .beforeWrite = &BeforeWrite});
}

}  // namespace orvane::server
