#pragma once

// How a search's rows are divided into portions: without duplicates, in an order that tells any two
// rows apart.

#include <vector>

#include "server/dialect/typed.h"

namespace orvane::server::dialect {

/// Takes out outer joined single-row tables of which nothing is read: their values are known.
void DropUnusedSettings(TypedSelect& select);

/// Turns DISTINCT into a semi-join where the rows are told apart by a key that is read: tables that
/// only say which rows are meant become an EXISTS. Then the index of the order serves the portion;
/// with DISTINCT all rows would be read and sorted first. Other statements keep their DISTINCT.
void ReplaceDistinct(TypedSelect& select);

/// What was asked for, then the keys of the tables whose rows it leaves open, so that no two rows
/// are alike. With DISTINCT the columns that are read tell rows apart.
std::vector<TypedOrder> PortionOrder(const TypedSelect& select);

/// The condition by whose index of trigrams SQLite may find the rows before ordering them: one of
/// those that every row meets, on the table that leads the order (or that a list names), in a
/// statement whose rows everybody sees. Null pointer where there is none. PostgreSQL's planner
/// finds such conditions by itself.
const Condition* ByTrigrams(const TypedSelect& select, const std::vector<TypedOrder>& order);
/// The statement of only those rows that the index finds.
TypedSelect AmongTrigrams(const TypedSelect& select, const Condition& part);

/// Whether one plan cannot serve all values: a range beside the order, any value beside the order
/// of a key, a part of a name, or rows elsewhere that have a value, let through everything or next
/// to nothing, and the portion is then found by walking the order or by sorting the few.
bool ValuesDecideThePlan(const TypedSelect& select, const std::vector<TypedOrder>& order);

}  // namespace orvane::server::dialect
