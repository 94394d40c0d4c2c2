#include "log/Logger.h"
#include "platform/ProgrammingError.h"

#include "tests/support/DeathTest.h"
#include "tests/support/TestDeployment.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <fstream>
#include <thread>
#include <vector>

namespace orvane {
namespace {

using test::TestDeployment;
using Lines = std::vector<std::string>;

/// What an abort leaves in the log of the process that it ends.
class AbortTest : public test::DeathTest {
protected:
    /// The texts of the dead process's log.
    Lines loggedTexts() const {
        Lines texts;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(folder())) {
            if (entry.path().extension() == ".log") {
                std::ifstream log(entry.path());
                for (std::string line; std::getline(log, line);) {
                    texts.push_back(line.substr(10, line.size() - 11));
                }
            }
        }
        return texts;
    }

    void startLog() { logger_.OpenProgramLog(deployment_.values.logRoot); }
    Logger& logger() { return logger_; }

private:
    TestDeployment deployment_;
    Logger logger_{deployment_.values};
};

TEST_F(AbortTest, TheReasonIsTheLogsLastLineAndOnStandardError) {
    const auto abortRun = [this] {
        startLog();
        logger().WriteProgramLog("works");
        programmingError("an alert without a button");
    };
    EXPECT_DEATH(abortRun(), "^OrvaneBootstrap: programming error: an alert without a button\n$");
    EXPECT_EQ(loggedTexts(), (Lines{"works", "programming error: an alert without a button"}));
}

TEST_F(AbortTest, EachKindOfReasonHasItsWords) {
    EXPECT_DEATH((startLog(), invalidInput("the engine's mistake")),
                 "^OrvaneBootstrap: invalid input: the engine's mistake\n$");
    EXPECT_DEATH((startLog(), unexpectedError("no room")), "^OrvaneBootstrap: unexpected error: no room\n$");
    auto texts = loggedTexts();
    std::sort(texts.begin(), texts.end());
    EXPECT_EQ(texts, (Lines{"invalid input: the engine's mistake", "unexpected error: no room"}));
}

TEST_F(AbortTest, AReasonThatMustNotBeLoggedIsOnStandardErrorAlone) {
    EXPECT_DEATH((startLog(), invalidInputNotLogged("not UTF-8")),
                 "^OrvaneBootstrap: invalid input: not UTF-8\n$");
    EXPECT_EQ(loggedTexts(), Lines{});
}

TEST_F(AbortTest, WithoutALogTheReasonIsOnStandardError) {
    EXPECT_DEATH(programmingError("no log"), "programming error: no log");
    EXPECT_DEATH((startLog(), logger().CloseProgramLog(), programmingError("closed log")),
                 "programming error: closed log");
    EXPECT_DEATH((Logger(TestDeployment().values), programmingError("log gone")),
                 "programming error: log gone");
    EXPECT_EQ(loggedTexts(), Lines{});
}

TEST_F(AbortTest, NoOtherThreadsLineFollowsTheReasonAndTheFirstReasonCounts) {
    const auto abortAmongThreads = [this] {
        startLog();
        for (int thread = 0; thread < 4; ++thread) {
            std::thread([this, thread] {
                for (int line = 0;; ++line) {
                    logger().WriteProgramLog("works");
                    if (line == 50 + thread) {
                        invalidInput("thread " + std::to_string(thread));
                    }
                }
            }).detach();
        }
        std::this_thread::sleep_until(std::chrono::steady_clock::time_point::max());
    };
    EXPECT_DEATH(abortAmongThreads(), "^OrvaneBootstrap: invalid input: thread .\n$");
    const auto texts = loggedTexts();
    ASSERT_FALSE(texts.empty());
    EXPECT_TRUE(texts.back().starts_with("invalid input: thread ")) << texts.back();
    EXPECT_EQ(std::count_if(texts.begin(), texts.end(),
                            [](const std::string& text) { return text.starts_with("invalid"); }),
              1);
}

} // namespace
} // namespace orvane
