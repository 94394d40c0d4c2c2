#include "platform/StandardOutput.h"

#include "tests/support/TemporaryFolder.h"
#include "tests/support/Watchdog.h"

#include <array>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <set>
#include <sstream>
#include <string>
#include <termios.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace orvane::test {

namespace {

using namespace std::chrono_literals;
using platform::LineWriter;

constexpr std::chrono::milliseconds kShort{20};

/// The two ends of a stream. They stay open, since a writer may use its own to the end of the process.
struct Ends {
    int reader = -1;
    int writer = -1;
};

Ends makePipe() {
    std::array<int, 2> ends{};
    EXPECT_EQ(pipe(ends.data()), 0);
    return {.reader = ends[0], .writer = ends[1]};
}

/// A terminal, with the side that a terminal window holds as the reader. It takes what it is told at its own
/// pace: do not fill it.
Ends makeTerminal() {
    const int window = posix_openpt(O_RDWR | O_NOCTTY);
    EXPECT_EQ(grantpt(window), 0);
    EXPECT_EQ(unlockpt(window), 0);
    return {.reader = window, .writer = open(ptsname(window), O_RDWR | O_NOCTTY)};
}

/// Leaves no room in the stream.
void fill(int writer) {
    const int flags = fcntl(writer, F_GETFL);
    ASSERT_EQ(fcntl(writer, F_SETFL, flags | O_NONBLOCK), 0);
    const std::string piece(1000, '.');
    while (write(writer, piece.data(), piece.size()) > 0) {
    }
    while (write(writer, ".", 1) > 0) {
    }
    ASSERT_EQ(fcntl(writer, F_SETFL, flags), 0);
}

std::string readSome(int reader) {
    std::string piece(1U << 16U, '\0');
    const ssize_t length = read(reader, piece.data(), piece.size());
    piece.resize(length < 0 ? 0 : static_cast<std::size_t>(length));
    return piece;
}

/// What the stream brings until it ends with `end`.
std::string readUntil(int reader, const std::string& end) {
    std::string text;
    while (!text.ends_with(end)) {
        text += readSome(reader);
    }
    return text;
}

class LineWriterTest : public testing::Test {
private:
    Watchdog watchdog_;
};

TEST_F(LineWriterTest, ALineIsInThePipeWhenTheCallReturns) {
    const Ends ends = makePipe();
    LineWriter writer(ends.writer, kPatience);
    writer.writeLine("one");
    EXPECT_EQ(readSome(ends.reader), "one\n");
    writer.writeLine("");
    writer.writeLine("two\nlines");
    EXPECT_EQ(readSome(ends.reader), "\ntwo\nlines\n");
}

TEST_F(LineWriterTest, ALineLongerThanThePipeWaitsForItsReader) {
    const Ends ends = makePipe();
    const std::string line(1'000'000, 'x');
    std::thread reader([&] { EXPECT_EQ(readUntil(ends.reader, "\n").size(), line.size() + 1); });
    LineWriter(ends.writer, kPatience).writeLine(line);
    reader.join();
}

TEST_F(LineWriterTest, APipeThatIsNeverReadIsGivenUpForGood) {
    const Ends ends = makePipe();
    fill(ends.writer);
    LineWriter writer(ends.writer, kShort);
    writer.writeLine("waits in vain");
    writer.writeLine("dropped");
    std::string text = readUntil(ends.reader, "\n");
    EXPECT_TRUE(text.ends_with(".waits in vain\n")) << "the blocked write goes on";
    writer.writeLine("dropped too");
    const std::string mark = "mark\n";
    EXPECT_EQ(write(ends.writer, mark.data(), mark.size()), 5);
    EXPECT_EQ(readUntil(ends.reader, "\n"), mark);
}

TEST_F(LineWriterTest, AStoppedTerminalIsGivenUpForGood) {
    const Ends ends = makeTerminal();
    ASSERT_EQ(tcflow(ends.writer, TCOOFF), 0);
    LineWriter writer(ends.writer, kShort);
    writer.writeLine("waits in vain");
    writer.writeLine("dropped");
    ASSERT_EQ(tcflow(ends.writer, TCOON), 0);
    EXPECT_EQ(readUntil(ends.reader, "\n"), "waits in vain\r\n");
    writer.writeLine("dropped too");
    const std::string mark = "mark\n";
    EXPECT_EQ(write(ends.writer, mark.data(), mark.size()), 5);
    EXPECT_EQ(readUntil(ends.reader, "mark\r\n"), "mark\r\n");
}

TEST_F(LineWriterTest, WhoeverWaitsIsReleasedWhenTheStreamIsGivenUp) {
    const Ends ends = makePipe();
    fill(ends.writer);
    LineWriter writer(ends.writer, kShort);
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 8; ++thread) {
        threads.emplace_back([&writer] { writer.writeLine("waits in vain"); });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

TEST_F(LineWriterTest, AReaderThatIsGoneCostsTheLineAlone) {
    const auto oldHandler = std::signal(SIGPIPE, SIG_IGN);
    const Ends ends = makePipe();
    close(ends.reader);
    LineWriter writer(ends.writer, kPatience);
    writer.writeLine("to nobody");
    writer.writeLine("to nobody");
    std::signal(SIGPIPE, oldHandler);
}

TEST_F(LineWriterTest, AClosedDescriptorCostsTheLineAlone) {
    const Ends ends = makePipe();
    close(ends.writer);
    LineWriter(ends.writer, kPatience).writeLine("nowhere");
}

TEST_F(LineWriterTest, ANonBlockingDescriptorIsWaitedFor) {
    const Ends ends = makePipe();
    ASSERT_EQ(fcntl(ends.writer, F_SETFL, O_NONBLOCK), 0);
    const std::string line(1'000'000, 'x');
    std::thread reader([&] { EXPECT_EQ(readUntil(ends.reader, "\n").size(), line.size() + 1); });
    LineWriter(ends.writer, kPatience).writeLine(line);
    reader.join();
}

TEST_F(LineWriterTest, ARegularFileTakesEveryLineAndIsNeverGivenUp) {
    const TemporaryFolder folder;
    const auto file = folder.path() / "file";
    const int descriptor = open(file.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
    LineWriter writer(descriptor, 0ms);
    for (const char* line : {"one", "two", "three"}) {
        writer.writeLine(line);
    }
    EXPECT_EQ(contentsOf(file), "one\ntwo\nthree\n");
    close(descriptor);
}

TEST_F(LineWriterTest, LinesOfManyThreadsStayWhole) {
    const Ends ends = makePipe();
    LineWriter writer(ends.writer, kPatience);
    std::vector<std::thread> threads;
    for (char letter = 'a'; letter < 'i'; ++letter) {
        threads.emplace_back([&writer, letter] {
            for (int count = 0; count < 100; ++count) {
                writer.writeLine(std::string(5000, letter));
            }
        });
    }
    std::string text;
    while (text.size() < std::size_t{8} * 100 * 5001) {
        text += readSome(ends.reader);
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        EXPECT_EQ(line.size(), 5000U);
        EXPECT_EQ(std::set<char>(line.begin(), line.end()).size(), 1U);
    }
}

} // namespace

} // namespace orvane::test
