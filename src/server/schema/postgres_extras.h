#pragma once

#include <string>

namespace orvane {

/// What a PostgreSQL database needs beside its tables, written from the same lists that SQLite
/// obeys: the function orvane_fold, equal to Fold in every letter, and the role of search
/// statements with its grants. May be run any number of times.
std::string PostgresExtrasScript();

}  // namespace orvane
