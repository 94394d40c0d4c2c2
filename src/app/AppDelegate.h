#pragma once

#include "platform/Application.h"

namespace orvane {

/// Guards the application's Quit command. It has no state; every call comes on the main thread.
class AppDelegate final : public platform::ApplicationDelegate {
public:
    void applicationDidFinishLaunching() override {}

    /// Asks the user, in the same French words whatever the language and the mode.
    platform::TerminateReply applicationShouldTerminate() override;

    /// Quitting sends nothing to the engine, which goes on without us.
    void applicationWillTerminate() override {}
};

} // namespace orvane
