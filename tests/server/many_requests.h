#pragma once

// Requests by the thousand in a RequestWorld, written by the engine itself. Whatever their number,
// the first five have what no other has, so that a rare value is as rare among many:
//
//   1 to 5           cost centre 1003, supplier 8, kind 3, status 1, 1 April 2026, entry 21 in
//                    row 2, the order in row 1; annulled
//   200, 300, 400    cost centre 1001, as every thousandth; kolev and petrova see it
//   the others       cost centre 1002, supplier 7, kind 4, statuses 2 to 7, 1 March 2026, entry 20
//   even ones        a turn of petrova
//   all              two rows; one planned delivery, payment, approval row, delivery, client key
//                    and line of history; and as many entries and orders that none of them names,
//                    order i + 1 of the cost centre of request i

#include "server/request_world.h"

namespace orvane::server {

/// What requests 1 to 5 name in their first row.
inline constexpr std::int64_t kRareOrder = 1;

/// Writes requests 1 to `count` and refreshes the engine's statistics.
void FillManyRequests(RequestWorld& world, int count);

}  // namespace orvane::server
