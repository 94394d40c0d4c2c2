#include "platform/PlainHttp.h"

namespace orvane {

std::string_view platform::plainHttpPrefix() { return "http://127.0.0.1:"; }

} // namespace orvane
