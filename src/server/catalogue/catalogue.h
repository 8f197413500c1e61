#pragma once

// What search statements may read: tables, their columns with the types the statements are checked
// against, and from which points each table may be read. A table or a column that is not here does
// not exist for a search statement.

#include <cstdint>
#include <span>
#include <string_view>

#include "contract/points.h"
#include "packet/value_kind.h"

namespace orvane::server {

enum CatalogueFlags : std::uint8_t {
  kPlainColumn = 0,
  kKeyColumn = 1,  ///< part of the table's key; never null
  kNotNull = 2,    ///< never null
  kFolded = 4,     ///< text with its fold beside it, in the column Fold<name>
};

struct CatalogueColumn {
  std::string_view name;
  ValueKind kind = ValueKind::Int32;
  std::uint16_t size = 0;  ///< code points of a String
  std::uint8_t flags = kPlainColumn;
  /// When the column is not stored: SQL that derives it, the same on both engines, with {t} for the
  /// table's alias and {today} for the company's day.
  std::string_view expression = {};
  /// The fold of a text that is not stored, in the same manner.
  std::string_view foldExpression = {};
  /// Where the expression has a value also for a row that is not there: a column that then is null.
  std::string_view presence = {};
  /// An index of the trigrams of its fold: on SQLite a table by this name, whose rows are numbered
  /// by the key of this one. PostgreSQL chooses its own index by itself.
  std::string_view trigrams = {};

  constexpr bool Is(CatalogueFlags flag) const { return (flags & flag) != 0; }
  constexpr bool MayBeNull() const { return (flags & (kKeyColumn | kNotNull)) == 0; }
};

/// Whose rows of a table an asker sees.
enum class RowsSeen : std::uint8_t {
  All,      ///< whoever may read the table sees every row
  Visible,  ///< only the rows that the visibility predicate of the document lets through
};

struct CatalogueTable {
  std::string_view name;    ///< as search statements write it
  std::string_view stored;  ///< as the database calls it
  RowsSeen rows = RowsSeen::All;
  bool singleRow = false;  ///< holds one row at most
  /// A session with open on one of these points may read it; empty: every session may.
  std::span<const Point> readers;
  std::span<const CatalogueColumn> columns;
  /// Part of a document: its rows are seen with the row of the head table `head`, which `headLink`
  /// joins ({h} the head, {t} this table).
  std::string_view head = {};
  std::string_view headLink = {};
  /// Folds of the supply-list entry's names that a row keeps for the entry it lists, so that a list
  /// is read in the order of names by one index. They equal those of BaseSupplyList; no search
  /// names them, the reader puts them in place of the entry's.
  std::span<const CatalogueColumn> keptNames = {};

  /// Null pointer when there is no such column; case does not matter.
  const CatalogueColumn* Find(std::string_view column) const;
};

/// All tables that search statements may read.
std::span<const CatalogueTable> SearchCatalogue();
/// Null pointer when the table is not listed; case does not matter.
const CatalogueTable* FindCatalogueTable(std::string_view name);

}  // namespace orvane::server
