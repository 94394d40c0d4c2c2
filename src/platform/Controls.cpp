#include "platform/Controls.h"

#include "platform/WindowUpdates.h"

namespace orvane::platform {

void Button::setEnabled(bool enabled) {
    submitUpdate(this, [self = shared_from_this(), enabled] { self->applyEnabled(enabled); });
}

} // namespace orvane::platform
