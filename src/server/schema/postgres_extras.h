#pragma once

#include <string>

namespace orvane::server {

/// What a PostgreSQL database needs beside its tables, written from the same lists that SQLite
/// obeys. Both scripts may be run any number of times, by one server at a time.

/// Creates the function orvane_fold, equal to Fold in every letter.
std::string PostgresFoldFunction();
/// Creates the role of search statements and grants it what the fence leaves open.
std::string PostgresSearchRole();

}  // namespace orvane::server
