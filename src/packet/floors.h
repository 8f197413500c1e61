#pragma once

/// The floors' namespaces. What both sides of the door say (packet, contract) stands in `orvane`
/// itself; each further floor has its own namespace and sees the names of those below it.
namespace orvane {

namespace data {}
namespace host {
using namespace data;
}
namespace kit {
using namespace host;
}
namespace modules {
using namespace kit;
}
namespace desktop {
using namespace host;
}
namespace server {}
namespace wire {}
namespace apps {
using namespace desktop;
using namespace modules;
using namespace server;
using namespace wire;
}  // namespace apps

}  // namespace orvane
