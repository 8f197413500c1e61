#pragma once

#include "contract/field.h"
#include "packet/delta.h"
#include "packet/failure.h"

namespace orvane::server {

/// The change as the provider's fields keep it: names spelled as in the contract, values of the
/// fields' kinds, stamped fields dropped. Fails with BadRequest when the change is malformed
/// (unknown or joined columns, a key that is missing, a changed column without its old value), and
/// with Refused when a value is (required but empty, control characters).
Answer<Change> CheckChange(const ProviderDef& provider, const Change& change);

/// Null pointer when the provider has no such field; case does not matter.
const FieldDef* FindField(const ProviderDef& provider, std::string_view name);

/// "Поле „Име“: " and the sentence.
std::string AboutField(const FieldDef& field, std::string_view sentence);

}  // namespace orvane::server
