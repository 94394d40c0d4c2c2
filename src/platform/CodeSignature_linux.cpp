#include "platform/CodeSignature.h"

namespace orvane::platform {

bool remembersCodeSignatures() { return false; }

} // namespace orvane::platform
