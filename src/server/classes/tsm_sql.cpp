#include "contract/system.h"
#include "server/classes/server_classes.h"

namespace orvane::server {

// Any screen searches; what a session may read is decided table by table (dialect/catalogue.h).
ServerClass TsmSQL() {
  return ServerClass(system::kSearchClass)
      .UsedFromAnywhere()
      .SearchProvider(system::kSearchProvider)
      .SearchProvider(system::kDialogSearchProvider);
}

}  // namespace orvane::server
