#include "platform/Activity.h"

#include "platform/ProcessInfo.h"
#include "platform/Queue.h"

#include <systemd/sd-bus.h>

#include <chrono>
#include <cstdint>
#include <fcntl.h>
#include <memory>
#include <unistd.h>
#include <utility>

namespace orvane::platform {

namespace {

/// The bus is always the one at this path: a process of root follows no DBUS_SYSTEM_BUS_ADDRESS of its
/// caller.
constexpr const char* kSystemBus = "unix:path=/run/dbus/system_bus_socket";

constexpr std::chrono::microseconds kAnswerWait = std::chrono::seconds(10);

struct CloseBus {
    void operator()(sd_bus* bus) const { ::sd_bus_close_unref(bus); }
};
struct ReleaseMessage {
    void operator()(sd_bus_message* message) const { ::sd_bus_message_unref(message); }
};
using Bus = std::unique_ptr<sd_bus, CloseBus>;
using Message = std::unique_ptr<sd_bus_message, ReleaseMessage>;

/// Null when there is no system bus.
Bus connectToSystemBus() {
    sd_bus* made = nullptr;
    if (::sd_bus_new(&made) < 0) {
        return nullptr;
    }
    Bus bus(made);
    const auto wait = static_cast<std::uint64_t>(kAnswerWait.count());
    const bool isStarted = ::sd_bus_set_address(made, kSystemBus) >= 0 &&
                           ::sd_bus_set_bus_client(made, 1) >= 0 &&
                           ::sd_bus_set_method_call_timeout(made, wait) >= 0 && ::sd_bus_start(made) >= 0;
    return isStarted ? std::move(bus) : nullptr;
}

/// Takes an inhibitor lock of logind, see org.freedesktop.login1(5). The lock lasts until every copy of the
/// descriptor in the answer is closed; children do not inherit this one.
void takeInhibitorLock(const std::string& reason) {
    const Bus bus = connectToSystemBus();
    if (!bus) {
        return;
    }
    sd_bus_message* received = nullptr;
    if (::sd_bus_call_method(bus.get(), "org.freedesktop.login1", "/org/freedesktop/login1",
                             "org.freedesktop.login1.Manager", "Inhibit", nullptr, &received, "ssss",
                             "sleep:idle", processName().c_str(), reason.c_str(), "block") < 0) {
        return;
    }
    const Message answer(received);
    int lock = -1;
    if (::sd_bus_message_read(answer.get(), "h", &lock) >= 0) {
        // The answer closes its own descriptor; the copy stays open until the process ends.
        ::fcntl(lock, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    }
}

} // namespace

/// On a thread of its own, because neither the bus nor logind need answer.
void beginActivity(const std::string& reason) {
    utilityQueueAsync([reason] { takeInhibitorLock(reason); });
}

} // namespace orvane::platform
