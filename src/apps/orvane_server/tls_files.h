#pragma once

#include <string>

#include "packet/failure.h"

namespace orvane::apps {

/// Looks at the files of TLS before they are used. Refused when others than their owner and its
/// group can read the key, or when the certificate does not hold today: no client would take it.
/// The text is a warning for the administrator: the certificate ends soon, the group reads the key.
Answer<std::string> CheckTlsFiles(const std::string& certificate, const std::string& key);

}  // namespace orvane::apps
