#include "server/load/load_registers.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "packet/fold.h"
#include "server/demo/demo_tables.h"
#include "server/load/csv.h"
#include "server/providers/change_check.h"
#include "server/providers/change_writer.h"
#include "server/sessions/engine_failures.h"
#include "server/sessions/statements.h"

namespace orvane::server {
namespace {

namespace fs = std::filesystem;

/// What history names as the author of changes from the command line.
constexpr char kAdministrator[] = "server";

/// Each names only those before it.
constexpr const DemoTable* kRegisters[] = {&demo::kEmployees,
                                           &demo::kDepartment,
                                           &demo::kSections,
                                           &demo::kCostCenters,
                                           &demo::kStructure,
                                           &demo::kAdmissibleNotifiers,
                                           &demo::kKindSupplies,
                                           &demo::kCapExPlan,
                                           &demo::kCurrencies,
                                           &demo::kTowns,
                                           &demo::kKindSupplyLists,
                                           &demo::kInvoiceDescr,
                                           &demo::kRequestDescr,
                                           &demo::kReceiptDescr,
                                           &demo::kFreeNomElements,
                                           &demo::kPartners,
                                           &demo::kRates,
                                           &demo::kMeasures,
                                           &demo::kMaterials,
                                           &demo::kServices,
                                           &demo::kStores,
                                           &demo::kUserStores,
                                           &demo::kKindDocInventory,
                                           &demo::kSupplyNaming,
                                           &demo::kBaseSupplyList,
                                           &demo::kBaseSupplyListDates,
                                           &demo::kSupplyLists,
                                           &demo::kSupplyListsDates,
                                           &demo::kPartnerSupplyEntries,
                                           &demo::kParams};

/// A register as the writer of changes takes it.
struct Register {
  std::vector<FieldDef> fields;
  ProviderDef def;

  explicit Register(const DemoTable& table) {
    for (std::size_t i = 0; i < table.columns.size(); ++i) {
      const DemoColumn& column = table.columns[i];
      const FieldFlags flags =
          (i < table.keyColumns ? Key : Plain) | (column.folded ? Folded : Plain);
      fields.push_back({column.name, column.kind, 0, flags, {}});
    }
    def = {"", table.name, fields};
  }
};

Failure At(const std::string& file, int line, const std::string& sentence) {
  return Refused(file + ":" + std::to_string(line) + ": " + sentence);
}

/// Empty when the text is no value of that kind.
std::optional<Variant> ValueOf(ValueKind kind, const std::string& text) {
  if (text.empty()) return Variant();
  if (kind == ValueKind::Memo || kind == ValueKind::String) {
    return IsUtf8(text) ? std::optional<Variant>(text) : std::nullopt;
  }
  if (kind == ValueKind::Date) {
    const auto date = Date::Parse(text);
    return date ? std::optional<Variant>(*date) : std::nullopt;
  }
  const auto number = Decimal::Parse(text);
  auto value = number ? Variant(*number).As(kind) : Answer<Variant>(Failure{});
  return value ? std::optional<Variant>(*std::move(value)) : std::nullopt;
}

std::string WhyNot(const EngineError& error) {
  switch (error.kind) {
    case EngineErrorKind::Unique:
      return "такъв ред вече има.";
    case EngineErrorKind::ForeignKey:
      return "редът сочи към друг, който го няма.";
    case EngineErrorKind::NotNull:
      return "липсва задължителна стойност (" + error.constraint + ").";
    case EngineErrorKind::Check:
      return "недопустима стойност (" + error.constraint + ").";
    default:
      return ToFailure(error, "loading registers").message;
  }
}

class Loading {
 public:
  Loading(Transaction& transaction, Stamp now)
      : transaction_(transaction), writer_{kAdministrator, "", now} {}

  Answer<std::int64_t> Load(const DemoTable& table, const std::string& file,
                            const std::string& text) {
    const auto rows = ReadCsv(text);
    if (!rows) return Refused(file + ", " + Plainly(rows.GetFailure().message));
    if (rows->empty()) return std::int64_t{0};
    const Register target(table);
    for (const std::string& name : rows->front().values) {
      if (!FindField(target.def, name)) return At(file, 1, "непозната колона „" + name + "“.");
    }
    for (std::size_t row = 1; row < rows->size(); ++row) {
      const auto written = Write(target, file, rows->front().values, (*rows)[row]);
      if (!written) return written.GetFailure();
    }
    return static_cast<std::int64_t>(rows->size()) - 1;
  }

 private:
  static std::string Plainly(const std::string& refusal) {
    return refusal.substr(std::string_view(kRefusalMark).size());
  }

  Answer<Done> Write(const Register& target, const std::string& file,
                     const std::vector<std::string>& columns, const CsvRow& row) {
    Change change;
    for (std::size_t i = 0; i < columns.size(); ++i) {
      const FieldDef& field = *FindField(target.def, columns[i]);
      auto value = ValueOf(field.kind, row.values[i]);
      if (!value) {
        return At(
            file, row.line,
            "„" + row.values[i] + "“ не е стойност на колона „" + std::string(field.name) + "“.");
      }
      if (!value->IsNull()) change.after.push_back({std::string(field.name), *std::move(value)});
    }
    if (change.after.empty()) return At(file, row.line, "няма нито една стойност.");
    const Statement statements[] = {WriteStatement(target.def, change),
                                    HistoryStatement(target.def, writer_, change)};
    const auto written = transaction_.ExecuteAll(statements);
    if (!written) return At(file, row.line, WhyNot(written.GetFailure()));
    return Done{};
  }

  Transaction& transaction_;
  const Writer writer_;
};

/// Files of the folder that no register takes.
Answer<Done> CheckNames(const std::string& folder) {
  std::error_code error;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder, error)) {
    const fs::path path = entry.path();
    if (path.extension() != ".csv") continue;
    const bool known =
        std::any_of(std::begin(kRegisters), std::end(kRegisters),
                    [&](const DemoTable* table) { return table->name == path.stem().string(); });
    if (!known) return Refused("Файлът „" + path.string() + "“ не е на никой регистър.");
  }
  if (error) return Refused("Папката „" + folder + "“ не може да се прочете.");
  return Done{};
}

}  // namespace

Answer<std::int64_t> LoadRegisters(Database& database, const Clock& clock,
                                   const std::string& folder) {
  if (const auto checked = CheckNames(folder); !checked) return checked.GetFailure();
  auto transaction = database.Begin();
  if (!transaction) return ToFailure(transaction.GetFailure(), "loading registers");
  const bool postgres = database.Kind() == Engine::Postgres;
  if (postgres) {  // parts of names are sorted in together, behind the load
    const auto waiting =
        (*transaction)->Execute(Command("set local gin_pending_list_limit = '1GB'"));
    if (!waiting) return ToFailure(waiting.GetFailure(), "loading registers");
  }
  Loading loading(**transaction, clock.Now());
  std::int64_t rows = 0;
  for (const DemoTable* table : kRegisters) {
    const std::string file = std::string(table->name) + ".csv";
    const fs::path path = fs::path(folder) / file;
    if (!fs::exists(path)) continue;
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    const auto loaded = loading.Load(*table, file, text.str());
    if (!loaded) return loaded.GetFailure();
    rows += *loaded;
  }
  if (rows == 0) return Refused("В папката „" + folder + "“ няма редове за зареждане.");
  const auto committed = (*transaction)->Commit();
  if (!committed) return ToFailure(committed.GetFailure(), "loading registers");
  const auto sorted = postgres ? database.RunScript("select SortNameParts()") : Done{};
  if (!sorted) return ToFailure(sorted.GetFailure(), "sorting in parts of names");
  return rows;
}

}  // namespace orvane::server
