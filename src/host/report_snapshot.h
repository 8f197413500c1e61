#pragma once

// All that a report says, taken once: its head in memory, its rows in a temporary file that is gone
// with the snapshot. Preview, printer and exports read the same rows, forward or from a mark, and
// hold no more of them than they show.
//
//   auto taken = ReportSnapshot::Take(std::move(document), progress);
//   if (!taken) return Tell(taken.GetFailure().message);
//   ReportSnapshot::Reader reader(**taken, 0);
//   while (reader.HasNext()) Show(reader.Next());

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/report.h"
#include "packet/failure.h"

namespace orvane::host {

class ReportSnapshot {
 public:
  /// A place between two rows of a table.
  struct Mark {
    std::int64_t row = 0;
    std::int64_t offset = 0;  ///< in the file
  };

  /// Without rows; Take makes those that have some.
  ReportSnapshot() = default;
  /// Reads the document's sources to their ends, asking `progress` after every portion. Refused, in
  /// a sentence, when it was stopped or the rows found no room on the disk; passes on what the
  /// sources throw.
  static Answer<std::shared_ptr<const ReportSnapshot>> Take(ReportDocument document,
                                                            const ReportProgress& progress = {});

  /// Its tables' sources are spent.
  const ReportDocument& Document() const { return document_; }
  std::int64_t RowCount(std::size_t table) const { return tables_[table].rows; }
  /// Of all tables.
  std::int64_t RowCount() const;
  /// One cell per column with the sums and the word for them; empty when no column is summed. A sum
  /// that outgrows exact numbers is left out.
  const ReportRow& Totals(std::size_t table) const { return tables_[table].totals; }

  /// Reads the rows of one table forward. Several may read side by side.
  class Reader {
   public:
    /// From the table's first row.
    Reader(const ReportSnapshot& snapshot, std::size_t table);
    /// From a mark that another reader of the table gave.
    Reader(const ReportSnapshot& snapshot, std::size_t table, Mark from);

    bool HasNext() const;
    /// Without cells when the file cannot be read any more.
    ReportRow Next();
    /// Before the row that Next would answer.
    Mark At() const { return at_; }

   private:
    /// The next `count` bytes, behind the mark; fewer when the file cannot be read.
    std::string_view Bytes(std::size_t count);

    const ReportSnapshot& snapshot_;
    std::size_t table_;
    Mark at_;
    std::string buffer_;
    std::int64_t bufferStart_ = 0;
  };

 private:
  struct TableRows {
    std::int64_t begin = 0;  ///< in the file
    std::int64_t rows = 0;
    ReportRow totals;
  };
  struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };

  /// False when it was stopped.
  bool TakeTable(ReportTable& table, const ReportProgress& progress);
  bool Write(const std::string& bytes);

  ReportDocument document_;
  std::unique_ptr<std::FILE, CloseFile> file_;
  std::vector<TableRows> tables_;
  std::int64_t written_ = 0;
  bool full_ = false;  ///< the disk took no more
};

/// Shared by all who show it.
using TakenReport = std::shared_ptr<const ReportSnapshot>;

}  // namespace orvane::host
