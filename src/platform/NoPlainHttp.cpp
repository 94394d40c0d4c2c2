#include "platform/PlainHttp.h"

namespace orvane::platform {

std::string_view plainHttpPrefix() { return {}; }

} // namespace orvane::platform
