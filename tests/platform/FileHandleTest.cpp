#include "platform/Files.h"

#include "tests/platform/ErrorExpectation.h"
#include "tests/support/OpenDescriptors.h"
#include "tests/support/TemporaryFolder.h"

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <gtest/gtest.h>
#include <optional>
#include <sstream>
#include <thread>
#include <unistd.h>
#include <vector>

namespace orvane::test {

namespace {

using platform::FileHandle;
using std::filesystem::path;

class FileHandleTest : public testing::Test {
protected:
    path at(const std::string& name) const { return folder_.path() / name; }

    path fileWith(const std::string& contents) const {
        writeFile(at("file"), contents);
        return at("file");
    }

private:
    const TemporaryFolder folder_;
};

std::string longContents(std::size_t length) {
    std::string contents;
    while (contents.size() < length) {
        contents += std::to_string(contents.size()) + '\n';
    }
    contents.resize(length);
    return contents;
}

std::string text(const Bytes& bytes) { return std::string(textOf(bytes)); }

TEST_F(FileHandleTest, ReadsOnUntilTheEndAndThenNothing) {
    const FileHandle file = FileHandle::forReading(fileWith("abcdef"));
    std::array<std::byte, 4> buffer{};
    EXPECT_EQ(file.read(buffer), 4U);
    EXPECT_EQ(textOf(buffer), "abcd");
    EXPECT_EQ(file.read(buffer), 2U);
    EXPECT_EQ(textOf(ByteView(buffer).first(2)), "ef");
    EXPECT_EQ(file.read(buffer), 0U);
    EXPECT_EQ(file.read(buffer), 0U);
}

TEST_F(FileHandleTest, ReadsUpToACountAndGoesOnFromThere) {
    const std::string contents = longContents(3'500'000);
    const FileHandle file = FileHandle::forReading(fileWith(contents));
    EXPECT_TRUE(text(file.readUpToCount(0)).empty());
    EXPECT_EQ(text(file.readUpToCount(10)), contents.substr(0, 10));
    EXPECT_TRUE(text(file.readUpToCount(3'000'000)) == contents.substr(10, 3'000'000));
    EXPECT_TRUE(text(file.readUpToCount(3'000'000)) == contents.substr(3'000'010));
    EXPECT_TRUE(file.readUpToCount(1).empty());
}

TEST_F(FileHandleTest, ACountFarBeyondTheEndCostsNoMemory) {
    const FileHandle file = FileHandle::forReading(fileWith("short"));
    const Bytes contents = file.readUpToCount(UINT64_MAX);
    EXPECT_EQ(text(contents), "short");
    EXPECT_LT(contents.capacity(), std::size_t{4} << 20);
}

TEST_F(FileHandleTest, AnEndlessFileIsReadOnlyUpToTheCount) {
    EXPECT_EQ(FileHandle::forReading("/dev/zero").readUpToCount(5'000'000), Bytes(5'000'000));
}

TEST_F(FileHandleTest, AMissingFileOpensForAppendingAlone) {
    for (const auto open : {FileHandle::forReading, FileHandle::forWriting}) {
        expectError(ENOENT, at("missing"), [&] { open(at("missing")); });
        EXPECT_FALSE(std::filesystem::exists(at("missing")));
    }
    FileHandle::forAppending(at("missing")).write(bytesOf("made"));
    EXPECT_EQ(contentsOf(at("missing")), "made");
}

TEST_F(FileHandleTest, AppendingFollowsNoLink) {
    const path file = fileWith("kept");
    for (const path& goal : {file, at("missing")}) {
        std::filesystem::create_symlink(goal, at("link"));
        expectError(ELOOP, at("link"), [&] { FileHandle::forAppending(at("link")); });
        std::filesystem::remove(at("link"));
    }
    EXPECT_EQ(contentsOf(file), "kept");
    EXPECT_FALSE(std::filesystem::exists(at("missing")));
}

TEST_F(FileHandleTest, ReadsFullyThoughThePiecesAreShort) {
    std::array<int, 2> ends{};
    ASSERT_EQ(pipe(ends.data()), 0);
    std::thread writer([end = ends[1]] {
        for (const char* part : {"ab", "cd", "e"}) {
            EXPECT_EQ(write(end, part, std::strlen(part)), static_cast<ssize_t>(std::strlen(part)));
        }
        close(end);
    });
    const FileHandle file = FileHandle::forReading("/dev/fd/" + std::to_string(ends[0]));
    std::array<std::byte, 4> buffer{};
    EXPECT_EQ(file.readFully(buffer), 4U);
    EXPECT_EQ(textOf(buffer), "abcd");
    EXPECT_EQ(file.readFully(buffer), 1U);
    EXPECT_EQ(file.readFully(buffer), 0U);
    writer.join();
    close(ends[0]);
}

TEST_F(FileHandleTest, TheRemainingSizeShrinksAsTheFileIsRead) {
    const FileHandle file = FileHandle::forReading(fileWith("abcdef"));
    EXPECT_EQ(file.remainingSize(), 6U);
    file.readUpToCount(4);
    EXPECT_EQ(file.remainingSize(), 2U);
    file.readToEnd();
    EXPECT_EQ(file.remainingSize(), 0U);
}

TEST_F(FileHandleTest, AFolderOpensInNoWay) {
    for (const auto open : {FileHandle::forReading, FileHandle::forWriting, FileHandle::forAppending}) {
        expectError(EISDIR, at(""), [&] { open(at("")); });
    }
}

TEST_F(FileHandleTest, WritingBeginsAtTheFrontAndTruncatesNothing) {
    const path file = fileWith("old contents");
    const FileHandle handle = FileHandle::forWriting(file);
    handle.write(bytesOf("NEW"));
    handle.write({});
    handle.write(bytesOf("!"));
    EXPECT_EQ(contentsOf(file), "NEW!contents");
}

TEST_F(FileHandleTest, AppendingGoesToTheEndOfTheMoment) {
    const path file = fileWith("one\n");
    const FileHandle first = FileHandle::forAppending(file);
    const FileHandle second = FileHandle::forAppending(file);
    first.write(bytesOf("two\n"));
    second.write(bytesOf("three\n"));
    first.write(bytesOf("four\n"));
    EXPECT_EQ(contentsOf(file), "one\ntwo\nthree\nfour\n");
}

TEST_F(FileHandleTest, LinesAppendedByManyThreadsStayWhole) {
    constexpr int kWriters = 4;
    constexpr int kLines = 500;
    const path file = fileWith("");
    const FileHandle handle = FileHandle::forAppending(file);
    std::vector<std::thread> writers;
    writers.reserve(kWriters);
    for (int writer = 0; writer < kWriters; ++writer) {
        writers.emplace_back([&handle, writer] {
            const std::string line = std::string(200, static_cast<char>('a' + writer)) + '\n';
            for (int count = 0; count < kLines; ++count) {
                handle.write(bytesOf(line));
            }
        });
    }
    for (std::thread& writer : writers) {
        writer.join();
    }
    std::istringstream lines(contentsOf(file));
    int count = 0;
    for (std::string line; std::getline(lines, line); ++count) {
        EXPECT_EQ(line, std::string(200, line.front()));
    }
    EXPECT_EQ(count, kWriters * kLines);
}

TEST_F(FileHandleTest, AMovedHandleGoesOnWhereItWas) {
    std::optional<FileHandle> first = FileHandle::forReading(fileWith("abcd"));
    EXPECT_EQ(text(first->readUpToCount(2)), "ab");
    FileHandle second = std::move(*first);
    first.reset();
    EXPECT_EQ(text(second.readUpToCount(1)), "c");
    FileHandle third = FileHandle::forReading(at("file"));
    third = std::move(second);
    EXPECT_EQ(text(third.readToEnd()), "d");
}

TEST_F(FileHandleTest, HandlesCloseTheirFiles) {
    const path file = fileWith("contents");
    const std::size_t before = openDescriptors();
    {
        FileHandle handle = FileHandle::forReading(file);
        FileHandle moved = std::move(handle);
        moved = FileHandle::forAppending(file);
        EXPECT_LE(openDescriptors(), before + 1);
    }
    EXPECT_LE(openDescriptors(), before);
    expectError(EISDIR, at(""), [&] { FileHandle::forReading(at("")); });
    EXPECT_LE(openDescriptors(), before);
}

} // namespace

} // namespace orvane::test
