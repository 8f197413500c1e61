#pragma once

// What the print forms of documents share: the frame of the paper, labelled values in words, and
// tables of a document's rows.

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "host/report.h"
#include "packet/data_packet.h"

namespace orvane::host {
class TVosBaseForm;
}  // namespace orvane::host

namespace orvane::modules {

/// One column of a printed table.
struct PrintedColumn {
  std::string_view field;
  std::string_view title;  ///< '~' breaks the line
  int width = 10;          ///< characters
  bool summed = false;
};

/// A form with its company, title, number, and who prints it when.
ReportDocument BeginBlank(TVosBaseForm& owner, int documentCode, int variant,
                          std::string_view title, std::string number);

/// The title of a document that was annulled says so ("annulled" in the document's gender), and
/// one that a later version replaced.
std::string TitleOf(std::string_view title, const TField& annulledOn, std::string_view annulled,
                    bool oldVersion = false);

/// "20117  Стил Трейд ООД"; the code alone when there is no name, nothing without a code.
std::string CodeAndName(const TField& code, std::string_view name);
/// "ivanova  Мария Иванова, 05.03.2026 09:00"; empty when nobody did it.
std::string StampOf(const TField& by, const TField& name, const TField& on);
/// The name in the only row of a packet; empty without a row.
std::string NameIn(const DataPacket& row, bool second, std::string_view column = "Name");
/// The document is in another than the national currency; `currency` is its code.
bool IsForeign(TVosBaseForm& owner, const TField& currency);
/// What a document's sum in the national currency is called.
struct NationalSumWords {
  std::string_view plain;  ///< "Сума на искането"
  std::string_view lev;  ///< of a document in a foreign currency, while the national one is the lev
};
/// The label of that sum: where the document is in a foreign currency it says in what it is.
/// `currencies` has Code and Name.
std::string NationalSumLabel(TVosBaseForm& owner, const TField& currency,
                             const NationalSumWords& words, TVosClientDataSet& currencies);
std::vector<ReportFact> WithoutEmpty(std::vector<ReportFact> facts);

ReportTable PrintedTable(std::string_view caption, TVosClientDataSet& rows,
                         std::span<const PrintedColumn> columns);

/// Tells the user that the server has no such document for him.
void TellNoDocument(TVosBaseForm& owner, std::int64_t id);

}  // namespace orvane::modules
