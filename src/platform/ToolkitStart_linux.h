#pragma once

namespace orvane::platform {

/// Has Qt's warnings written to standard error as `printErrorLine` writes: they wait for a reader for a
/// bounded time alone. Before anything else of Qt.
void printToolkitMessages();

/// Keeps Qt from loading plugins out of the program's own folder, where another user may have put some.
/// Before the application object is made. (A `qt.conf` in that folder is not read, since the program has one
/// of its own among its resources.)
void ignorePluginsBesideProgram();

/// While one lives, a process without a session bus does not start one: libdbus would run dbus-launch, which
/// leaves a bus behind that nobody else uses. Made before the application object and kept until Qt has looked
/// for the bus; then the environment is as before, for the children.
class NoSessionBusLaunch {
public:
    NoSessionBusLaunch();
    ~NoSessionBusLaunch();
    NoSessionBusLaunch(const NoSessionBusLaunch&) = delete;
    NoSessionBusLaunch& operator=(const NoSessionBusLaunch&) = delete;

private:
    bool isAddressSet_ = false;
};

} // namespace orvane::platform
