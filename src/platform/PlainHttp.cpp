#include "platform/PlainHttp.h"

#include "platform/Url.h"

namespace orvane::platform {

std::optional<Error> refusalOfTransfer(std::string_view url) {
    const std::string_view prefix = plainHttpPrefix();
    if (!prefix.empty() && url.starts_with(prefix)) {
        return std::nullopt;
    }
    return refusalOfAddress(url);
}

} // namespace orvane::platform
