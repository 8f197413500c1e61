#include "modules/core/document_blank.h"

#include <utility>

#include "contract/parameters.h"
#include "contract/system.h"
#include "host/dialogs.h"
#include "host/form.h"
#include "kit/documents/national_currency.h"
#include "kit/parameters.h"

namespace orvane::modules {
namespace {

std::int64_t NationalCurrency(TVosBaseForm& owner) {
  return ParamNumber(owner, system::kHostGroup, parameters::kNationalCurrency);
}

}  // namespace

ReportDocument BeginBlank(TVosBaseForm& owner, int documentCode, int variant,
                          std::string_view title, std::string number) {
  const VosApplication& app = owner.App();
  const SessionInfo& info = app.Info();
  const bool second = !owner.FirstLanguage() && !info.userName2.empty();
  ReportDocument report;
  report.key = {0, documentCode, variant};
  report.company = info.companyName;
  report.title = title;
  report.number = std::move(number);
  report.printedBy = second ? info.userName2 : info.userName;
  report.printedOn = info.zone.ToText(app.Now());
  return report;
}

std::string TitleOf(std::string_view title, const TField& annulledOn, std::string_view annulled,
                    bool oldVersion) {
  std::string whole(title);
  if (!annulledOn.IsEmpty()) return whole.append(" – ").append(annulled);
  return oldVersion ? whole + " – СТАРА ВЕРСИЯ" : whole;
}

std::string CodeAndName(const TField& code, std::string_view name) {
  std::string text = code.Text();
  if (!text.empty() && !name.empty()) text += "  " + std::string(name);
  return text;
}

std::string StampOf(const TField& by, const TField& name, const TField& on) {
  return by.IsEmpty() ? std::string() : CodeAndName(by, name.Text()) + ", " + on.Text();
}

std::string NameIn(const DataPacket& row, bool second, std::string_view column) {
  if (row.rowCount == 0) return {};
  return row.At(0, second ? std::string(column) + "2" : std::string(column)).ToText();
}

bool IsForeign(TVosBaseForm& owner, const TField& currency) {
  const std::int64_t national = NationalCurrency(owner);
  return currency.AsInt().value_or(national) != national;
}

std::string NationalSumLabel(TVosBaseForm& owner, const TField& currency,
                             const NationalSumWords& words, TVosClientDataSet& currencies) {
  if (!IsForeign(owner, currency)) return std::string(words.plain);
  const bool known = currencies.Locate("Code", Variant(NationalCurrency(owner)));
  return NationalCaption(words.lev, words.plain,
                         known ? currencies.FieldByName("Name").Text() : std::string());
}

std::vector<ReportFact> WithoutEmpty(std::vector<ReportFact> facts) {
  std::erase_if(facts, [](const ReportFact& fact) { return fact.value.empty(); });
  return facts;
}

ReportTable PrintedTable(std::string_view caption, TVosClientDataSet& rows,
                         std::span<const PrintedColumn> columns) {
  ReportTable table;
  table.caption = caption;
  for (const PrintedColumn& column : columns) {
    table.columns.push_back(ColumnOf(rows.FieldByName(column.field), column.title, column.width));
    table.columns.back().summed = column.summed;
  }
  std::vector<ReportRow> printed;
  for (std::size_t row = 0; row < rows.RecordCount(); ++row) {
    ReportRow& cells = printed.emplace_back();
    for (const PrintedColumn& column : columns)
      cells.push_back(CellOf(rows, row, rows.FieldByName(column.field)));
  }
  table.source = RowsAtHand(std::move(printed));
  return table;
}

void TellNoDocument(TVosBaseForm& owner, std::int64_t id) {
  VosMessageDlg(owner, 0, owner.caption, "Документ " + std::to_string(id) + " не е намерен!");
}

}  // namespace orvane::modules
