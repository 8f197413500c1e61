#pragma once

// What waits for the user, in the status bar of every screen.

#include <cstdint>
#include <string>

namespace orvane {

class VosApplication;

/// "1 документ чака Вас", "2 документа чакат Вас"; empty for none.
std::string WaitingText(std::int64_t documents);

/// Asks the server and takes the answer to the status bar. A failure leaves the former text: it is
/// no part of anybody's work.
void RefreshWaiting(VosApplication& app);

}  // namespace orvane
