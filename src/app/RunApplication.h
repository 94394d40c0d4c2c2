#pragma once

#include "config/Deployment.h"

namespace orvane {

/// The whole program, on the main thread: starts the application with one window whose controller works with
/// `deployment`, which must outlive the process. Returns the exit status if the platform's event loop ever
/// returns.
int runApplication(int argumentCount, char** arguments, const Deployment& deployment);

} // namespace orvane
