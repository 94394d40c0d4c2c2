#include "log/Logger.h"

#include "tests/support/CaptureStandardOutput.h"
#include "tests/support/EnvironmentVariable.h"
#include "tests/support/TestDeployment.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <csignal>
#include <ctime>
#include <fstream>
#include <functional>
#include <map>
#include <sstream>
#include <sys/resource.h>
#include <thread>
#include <vector>

namespace orvane {
namespace {

using test::CaptureStandardOutput;
using test::contentsOf;
using test::EnvironmentVariable;
using test::TestDeployment;
using test::writeFile;

constexpr std::time_t kMinute = 60;

std::string formatted(std::time_t time, const char* format) {
    std::tm local{};
    localtime_r(&time, &local);
    std::array<char, 64> text{};
    return {text.data(), std::strftime(text.data(), text.size(), format, &local)};
}

/// The time five and a half hours east of Greenwich, where the zone "TST-05:30" is.
std::string eastOfGreenwich(std::time_t time, const char* format) {
    time += (5 * 60 + 30) * kMinute;
    std::tm fields{};
    gmtime_r(&time, &fields);
    std::array<char, 64> text{};
    return {text.data(), std::strftime(text.data(), text.size(), format, &fields)};
}

/// Whether a text looks like a pattern in which "#" stands for any digit.
bool hasForm(std::string_view text, std::string_view pattern) {
    return std::equal(text.begin(), text.end(), pattern.begin(), pattern.end(),
                      [](char character, char form) {
                          return form == '#' ? character >= '0' && character <= '9' : character == form;
                      });
}

/// A zone that is not the machine's, for as long as the object lives.
class TimeZone {
public:
    explicit TimeZone(const std::string& zone) : variable_(std::in_place, "TZ", zone) { tzset(); }
    ~TimeZone() {
        variable_.reset();
        tzset();
    }
    TimeZone(const TimeZone&) = delete;
    TimeZone& operator=(const TimeZone&) = delete;

private:
    std::optional<EnvironmentVariable> variable_;
};

class LoggerTest : public testing::Test {
protected:
    void open() { logger.OpenProgramLog(logFolder); }

    std::filesystem::path logFile() const {
        return logFolder / ("Install " + logger.GetCurrentTimeString() + " (bootstrap).log");
    }

    /// Does something to each file the log could be while this test runs, whose second nobody knows before.
    void forEachPossibleLogFile(const std::function<void(const std::filesystem::path&)>& action) const {
        const std::time_t now = std::time(nullptr);
        for (std::time_t second = now; second < now + 2 * kMinute; ++second) {
            action(logFolder / ("Install " + formatted(second, "%Y-%m-%d %H-%M-%S") + " (bootstrap).log"));
        }
    }

    /// The log without the times, and with every line break as a plain line feed.
    std::string texts() const {
        std::istringstream log(contentsOf(logFile()));
        std::string texts;
        for (std::string line; std::getline(log, line);) {
            const bool isOurs = line.ends_with('\r') && hasForm(line.substr(0, 10), "##:##:##: ");
            texts += (isOurs ? line.substr(10, line.size() - 11) : line) + "\n";
        }
        return texts;
    }

    CaptureStandardOutput output;
    TestDeployment deployment;
    std::filesystem::path logFolder = deployment.values.logRoot / "Installations";
    Logger logger{deployment.values};
};

TEST_F(LoggerTest, BeforeItIsOpenedItHasNoTimeStamp) { EXPECT_EQ(logger.GetCurrentTimeString(), ""); }

TEST_F(LoggerTest, OpeningMakesTheFolderAndAnEmptyFileNamedAfterTheTime) {
    open();
    EXPECT_TRUE(hasForm(logger.GetCurrentTimeString(), "####-##-## ##-##-##"))
        << logger.GetCurrentTimeString();
    EXPECT_EQ(contentsOf(logFile()), "");
    EXPECT_EQ(output.finish(), "");
}

TEST_F(LoggerTest, TheTimeStampIsLocalTime) {
    const TimeZone zone("TST-05:30");
    const std::string before = eastOfGreenwich(std::time(nullptr), "%Y-%m-%d %H-%M-%S");
    open();
    const std::string after = eastOfGreenwich(std::time(nullptr), "%Y-%m-%d %H-%M-%S");
    EXPECT_LE(before, logger.GetCurrentTimeString());
    EXPECT_LE(logger.GetCurrentTimeString(), after);
}

TEST_F(LoggerTest, AFolderThatExistsAndItsOtherFilesStay) {
    writeFile(logFolder / "Install 2024-03-05 14-07-09 (bootstrap).log", "older run");
    open();
    EXPECT_EQ(contentsOf(logFolder / "Install 2024-03-05 14-07-09 (bootstrap).log"), "older run");
    EXPECT_EQ(contentsOf(logFile()), "");
}

TEST_F(LoggerTest, AFileOfTheSameSecondIsReplaced) {
    forEachPossibleLogFile([](const auto& file) { writeFile(file, "the run before"); });
    open();
    logger.WriteProgramLog("this run");
    EXPECT_EQ(texts(), "this run\n");
}

TEST_F(LoggerTest, ALineIsTheTimeTheTextAndCarriageReturnLineFeed) {
    open();
    logger.WriteProgramLog("Using existing orvane");
    const std::string line = contentsOf(logFile());
    EXPECT_TRUE(hasForm(line, "##:##:##: Using existing orvane\r\n")) << line;
}

TEST_F(LoggerTest, ALinesTimeIsTheLocalTimeOfItsWriting) {
    const TimeZone zone("TST-05:30");
    open();
    const std::time_t before = std::time(nullptr);
    logger.WriteProgramLog("");
    const std::time_t after = std::time(nullptr);
    std::vector<std::string> possible;
    for (std::time_t second = before; second <= after; ++second) {
        possible.push_back(eastOfGreenwich(second, "%H:%M:%S"));
    }
    const std::string time = contentsOf(logFile()).substr(0, 8);
    EXPECT_NE(std::find(possible.begin(), possible.end(), time), possible.end()) << time;
}

TEST_F(LoggerTest, ALineIsInTheFileWhenTheCallReturns) {
    open();
    logger.WriteProgramLog("one");
    EXPECT_EQ(texts(), "one\n");
    logger.WriteProgramLog("two");
    EXPECT_EQ(texts(), "one\ntwo\n");
}

TEST_F(LoggerTest, EveryLineIsPrintedWithoutATime) {
    open();
    logger.WriteProgramLog("one");
    logger.WriteProgramLog("two");
    EXPECT_EQ(output.finish(), "one\ntwo\n");
}

TEST_F(LoggerTest, ALineBreakInsideATextIsWrittenAsItIs) {
    open();
    logger.WriteProgramLog("two\nlines");
    EXPECT_TRUE(contentsOf(logFile()).ends_with(": two\nlines\r\n"));
    EXPECT_EQ(output.finish(), "two\nlines\n");
}

TEST_F(LoggerTest, OtherThanAsciiCharactersAreUtf8) {
    open();
    logger.WriteProgramLog("L'installation a échoué");
    EXPECT_TRUE(contentsOf(logFile()).ends_with(": L'installation a \xC3\xA9"
                                                "chou\xC3\xA9\r\n"));
}

TEST_F(LoggerTest, NothingInATextIsTakenForAFormat) {
    open();
    logger.WriteProgramLog("100 %s %n %d");
    EXPECT_EQ(texts(), "100 %s %n %d\n");
    EXPECT_EQ(output.finish(), "100 %s %n %d\n");
}

TEST_F(LoggerTest, TheEmptyTextIsALineToo) {
    open();
    logger.WriteProgramLog("");
    EXPECT_EQ(texts(), "\n");
    EXPECT_EQ(output.finish(), "\n");
}

TEST_F(LoggerTest, ALineGoesToTheEndWhateverElseWasAppended) {
    open();
    logger.WriteProgramLog("ours");
    std::ofstream(logFile(), std::ios::app) << "theirs\n";
    logger.WriteProgramLog("ours again");
    EXPECT_EQ(texts(), "ours\ntheirs\nours again\n");
}

TEST_F(LoggerTest, BeforeItIsOpenedItOnlyPrints) {
    logger.WriteProgramLog("early");
    EXPECT_EQ(output.finish(), "early\n");
    EXPECT_FALSE(std::filesystem::exists(logFolder));
}

TEST_F(LoggerTest, AFolderThatCannotBeMadeIsPrintedAndTheLogGoesOnAsPrintsAlone) {
    writeFile(deployment.values.logRoot, "a file in the way");
    open();
    logger.WriteProgramLog("goes on");
    const std::string printed = output.finish();
    EXPECT_EQ(printed,
              "Error initializing logger: " + logFolder.string() + ": Not a directory (ENOTDIR)\ngoes on\n");
    EXPECT_NE(logger.GetCurrentTimeString(), "") << "the engine is told the run's time all the same";
}

TEST_F(LoggerTest, AFolderOfTheSameSecondIsRemovedWithItsContents) {
    const auto kept = deployment.values.logRoot / "kept";
    writeFile(kept, "of another");
    forEachPossibleLogFile([&kept](const auto& file) {
        std::filesystem::create_directories(file);
        std::filesystem::create_symlink(kept, file / "link");
    });
    open();
    logger.WriteProgramLog("this run");
    EXPECT_EQ(texts(), "this run\n");
    EXPECT_EQ(contentsOf(kept), "of another");
}

TEST_F(LoggerTest, ALinkOfTheSameSecondIsReplacedWhereverItLeads) {
    const auto kept = deployment.values.logRoot / "kept";
    writeFile(kept, "of another");
    for (const auto& goal : {kept, deployment.values.logRoot / "nothing"}) {
        forEachPossibleLogFile([&goal](const auto& file) {
            std::filesystem::create_directories(file.parent_path());
            std::filesystem::remove(file);
            std::filesystem::create_symlink(goal, file);
        });
        open();
        logger.WriteProgramLog("this run");
        EXPECT_EQ(texts(), "this run\n");
    }
    EXPECT_EQ(contentsOf(kept), "of another");
    EXPECT_FALSE(std::filesystem::exists(deployment.values.logRoot / "nothing"));
}

TEST_F(LoggerTest, AFileThatCannotBeMadeIsPrintedAndTheLogGoesOnAsPrintsAlone) {
    std::filesystem::create_directories(deployment.values.logRoot);
    std::filesystem::create_symlink("/proc/self", logFolder);
    open();
    logger.WriteProgramLog("goes on");
    EXPECT_EQ(output.finish(), "Error initializing logger: " + logFile().string() +
                                   ": No such file or directory (ENOENT)\ngoes on\n");
}

/// Whoever of them comes first, each must have its log.
TEST_F(LoggerTest, RunsThatBeginInTheSameMomentAllHaveALog) {
    for (int round = 0; round < 200; ++round) {
        std::vector<std::thread> runs;
        for (int run = 0; run < 4; ++run) {
            runs.emplace_back([this] { Logger(deployment.values).OpenProgramLog(logFolder); });
        }
        for (std::thread& run : runs) {
            run.join();
        }
    }
    EXPECT_EQ(output.finish(), "");
}

TEST_F(LoggerTest, ALogThatIsBeingOpenedMayBeUsedByEveryThread) {
    std::atomic<bool> isOpen = false;
    std::thread user([this, &isOpen] {
        while (!isOpen) {
            logger.WriteProgramLog("early");
            EXPECT_TRUE(logger.GetCurrentTimeString().empty() || logger.GetCurrentTimeString().size() == 19);
        }
    });
    open();
    isOpen = true;
    user.join();
    logger.WriteProgramLog("last");
    EXPECT_TRUE(texts().ends_with("last\n"));
}

TEST_F(LoggerTest, AClosedLogGoesOnAsPrintsAlone) {
    open();
    logger.WriteProgramLog("one");
    logger.CloseProgramLog();
    logger.WriteProgramLog("two");
    logger.CloseProgramLog();
    EXPECT_EQ(texts(), "one\n");
    EXPECT_EQ(output.finish(), "one\ntwo\n");
}

TEST_F(LoggerTest, AClosedLogCanBeOpenedAgain) {
    open();
    logger.CloseProgramLog();
    open();
    logger.WriteProgramLog("again");
    EXPECT_EQ(texts(), "again\n");
}

TEST_F(LoggerTest, AFileThatCannotBeWrittenAnyMoreDisturbsNobody) {
    open();
    rlimit limit{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &limit), 0);
    const auto oldHandler = std::signal(SIGXFSZ, SIG_IGN);
    const rlimit small{.rlim_cur = 4096, .rlim_max = limit.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
    EXPECT_NO_THROW(logger.WriteProgramLog(std::string(10000, 'x')));
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
    std::signal(SIGXFSZ, oldHandler);
    EXPECT_EQ(contentsOf(logFile()).size(), 4096U);
}

TEST_F(LoggerTest, LinesOfManyThreadsStayWholeAndInEachThreadsOrder) {
    constexpr int threadCount = 8;
    constexpr int lineCount = 200;
    open();
    std::vector<std::thread> threads;
    for (int thread = 0; thread < threadCount; ++thread) {
        threads.emplace_back([this, thread] {
            for (int line = 0; line < lineCount; ++line) {
                logger.WriteProgramLog(std::to_string(thread) + " " + std::to_string(line));
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    std::istringstream lines(texts());
    std::map<int, int> nextLine;
    int thread = 0;
    int line = 0;
    while (lines >> thread >> line) {
        EXPECT_EQ(line, nextLine[thread]++);
    }
    EXPECT_TRUE(lines.eof());
    EXPECT_EQ(nextLine.size(), 8U);
    for (const auto& [number, count] : nextLine) {
        EXPECT_EQ(count, lineCount) << "thread " << number;
    }
}

} // namespace
} // namespace orvane
