#pragma once

// Small steps that the applies of all documents share.

#include <initializer_list>
#include <span>
#include <string>

#include "server/documents/document_head.h"
#include "server/providers/write_rules.h"

namespace orvane::server {

/// The document whose parts a batch of changes belongs to. BadRequest when they belong to several,
/// or when a change would move its row to another document.
Answer<DocumentKey, Setback> DocumentOf(const StoredDocument& document,
                                        std::span<const PreparedChange> changes);

/// Value of a column in the row that a change leaves: the new one, else the one in `present`.
Variant ValueAfter(const Change& change, const NamedValues& present, std::string_view column);
/// Whether the change brings a new value of one of the columns.
bool Changes(const Change& change, std::span<const std::string_view> columns);
bool Changes(const Change& change, std::initializer_list<std::string_view> columns);
/// Takes a column out.
void Drop(NamedValues& values, std::string_view column);

/// Puts the present value of every changed column beside it, where the client sent none: history
/// keeps both.
void CompleteOldValues(Change& change, const NamedValues& present);

/// Takes the next number of a table's documents; to be the last lock of a transaction. Answers
/// LastNumber.
Statement NextNumber(std::string_view table);

Setback Refusal(Failure failure);
Setback BadRequest(std::string sentence);

}  // namespace orvane::server
