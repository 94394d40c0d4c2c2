#include "tests/platform/ProcessFixture.h"
#include "tests/support/OpenDescriptors.h"
#include "tests/support/SeveralThreads.h"
#include "tests/support/Watchdog.h"

#include "platform/Bytes.h"
#include "platform/Error.h"

#include <atomic>
#include <cerrno>
#include <csignal>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <vector>

namespace orvane::test {

namespace {

using platform::Process;

class ProcessHammerTest : public ProcessTest {
protected:
    /// Whether every child, waited for or not, is gone in time.
    static bool noChildIsLeft() {
        const auto limit = std::chrono::steady_clock::now() + kPatience;
        siginfo_t end{};
        while (::waitid(P_ALL, 0, &end, WEXITED | WNOHANG | WNOWAIT) == 0 || errno != ECHILD) {
            if (std::chrono::steady_clock::now() > limit) {
                return false;
            }
            std::this_thread::yield();
        }
        return true;
    }

    const Watchdog watchdog_;
};

TEST_F(ProcessHammerTest, ProcessesThatComeAndGoOnSeveralThreadsKeepTheirOutputAndStatus) {
    const std::size_t before = openDescriptors();
    onSeveralThreads([](int thread) {
        for (int round = 0; round < 25; ++round) {
            const std::string number = std::to_string(thread * 50 + round);
            const auto process = shell("echo $1; exit $1", {number});
            process->pipeStandardOutput();
            process->launch();
            EXPECT_EQ(textOf(process->readStandardOutputToEnd()), number + "\n");
            EXPECT_EQ(process->waitUntilExit(), thread * 50 + round);
        }
    });
    EXPECT_TRUE(noChildIsLeft());
    EXPECT_TRUE(openDescriptorsComeDownTo(before));
}

TEST_F(ProcessHammerTest, ProcessesDestroyedInAnyStateLeaveNothingBehind) {
    const std::size_t before = openDescriptors();
    onSeveralThreads([this](int thread) {
        for (int round = 0; round < 40; ++round) {
            Process process;
            process.setLaunchPath((round + thread) % 4 == 3 ? at("missing").string() : "/usr/bin/true");
            if (round % 2 == 0) {
                process.pipeStandardOutput();
            }
            switch ((round + thread) % 4) {
            case 0: // never launched
                break;
            case 1: // let go while it runs
                process.launch();
                break;
            case 2: // interrupted, and let go
                process.launch();
                process.interrupt();
                break;
            default: // cannot be launched
                EXPECT_THROW(process.launch(), platform::Error);
            }
        }
    });
    EXPECT_TRUE(noChildIsLeft());
    EXPECT_TRUE(openDescriptorsComeDownTo(before));
}

TEST_F(ProcessHammerTest, InterruptsFromSeveralThreadsMeetALaunchAnEndAndADestructionAtAnyMoment) {
    for (int round = 0; round < 20; ++round) {
        const auto process = std::make_shared<Process>();
        process->setLaunchPath("/bin/sleep");
        process->setArguments({round % 2 == 0 ? "0" : "600"});
        std::atomic<bool> isOver = false;
        std::vector<std::thread> interrupters;
        for (int number = 0; number < kSeveralThreads; ++number) {
            interrupters.emplace_back([process, &isOver] {
                while (!isOver) {
                    process->interrupt();
                    std::this_thread::yield();
                }
            });
        }
        process->launch();
        const int result = process->waitUntilExit();
        EXPECT_TRUE(result == SIGINT || (round % 2 == 0 && result == 0)) << result;
        isOver = true;
        for (std::thread& interrupter : interrupters) {
            interrupter.join();
        }
    }
    EXPECT_TRUE(noChildIsLeft());
}

TEST_F(ProcessHammerTest, SeveralThreadsMayAwaitOneEnd) {
    for (int round = 0; round < 20; ++round) {
        const auto process = shell("exit 6");
        process->launch();
        onSeveralThreads([&process](int /*thread*/) { EXPECT_EQ(process->waitUntilExit(), 6); });
    }
}

} // namespace

} // namespace orvane::test
