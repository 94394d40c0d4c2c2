#include "platform/CodeSignature.h"

namespace orvane::platform {

/// "Updating Mac Software" in Apple's developer documentation: the crash report of the killed process says
/// "Code Signature Invalid".
bool remembersCodeSignatures() { return true; }

} // namespace orvane::platform
