#include "download/DownloadService.h"

#include "tests/support/CaptureStandardOutput.h"
#include "tests/support/Gate.h"
#include "tests/support/ScriptedServer.h"
#include "tests/support/TestDesktop.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <thread>

namespace orvane::test {
namespace {

using namespace std::chrono_literals;
using Result = ResultType<std::int64_t>;

class DownloadServiceTest : public testing::Test {
protected:
    std::shared_ptr<DownloadTask> download(const std::string& url) {
        return service->download({.url = url}, target);
    }

    /// Notes what a task reports, and that it does so on the main thread.
    void observe(DownloadTask& task) {
        task.progressHandler = [this](double fraction) {
            EXPECT_EQ(std::this_thread::get_id(), mainThread);
            EXPECT_TRUE(results.empty()) << "progress after the end";
            fractions.push_back(fraction);
        };
        task.completionHandler = [this](const Result& result) {
            EXPECT_EQ(std::this_thread::get_id(), mainThread);
            contentsAtEnd = contentsOf(target);
            results.push_back(result);
        };
    }

    /// Downloads what the server answers for "/file", to its end.
    void fetch() {
        const auto task = download(server.root() + "/file");
        observe(*task);
        task->resume();
        awaitEnd();
    }

    void awaitEnd() {
        desktop.runMainQueueUntil([this] { return !results.empty(); });
        desktop.drainMainQueue();
        EXPECT_EQ(results.size(), 1U);
    }

    /// The number of bytes that the only result announces; -1 for an error.
    std::int64_t writtenBytes() const {
        const auto* written = results.empty() ? nullptr : std::get_if<std::int64_t>(&results.front());
        return written == nullptr ? -1 : *written;
    }

    std::string errorDescription() const {
        const auto* error = results.empty() ? nullptr : std::get_if<platform::Error>(&results.front());
        return error == nullptr ? std::string() : error->localizedDescription();
    }

    const std::thread::id mainThread = std::this_thread::get_id();
    TemporaryFolder folder;
    std::filesystem::path target = folder.path() / "target";
    TestDesktop desktop;
    ScriptedServer server;
    std::shared_ptr<DownloadService> service = DownloadService::create();
    std::vector<double> fractions;
    std::vector<Result> results;
    std::string contentsAtEnd;
};

TEST_F(DownloadServiceTest, TheBodyIsInTheFileWhenTheEndIsReported) {
    server.answer("/file", response("the engine"));
    fetch();
    EXPECT_EQ(writtenBytes(), 10);
    EXPECT_EQ(contentsAtEnd, "the engine");
}

TEST_F(DownloadServiceTest, ALargeBodyArrivesWhole) {
    std::string body(8'000'001, '\0');
    for (std::size_t index = 0; index < body.size(); ++index) {
        body[index] = static_cast<char>(index % 251);
    }
    server.answer("/file", response(body));
    fetch();
    EXPECT_EQ(writtenBytes(), 8'000'001);
    EXPECT_TRUE(contentsAtEnd == body);
    EXPECT_GT(fractions.size(), 1U) << "it is reported piece by piece";
    EXPECT_TRUE(std::is_sorted(fractions.begin(), fractions.end()));
    EXPECT_EQ(fractions.back(), 1.0);
}

TEST_F(DownloadServiceTest, EachPieceReportsTheFractionReceivedSoFar) {
    const Gate mayGoOn;
    server.answer("/file", [mayGoOn](LoopbackConnection& connection) {
        connection.send("HTTP/1.1 200 OK\r\nContent-Length: 8\r\n\r\n12");
        EXPECT_TRUE(mayGoOn.wait());
        connection.send("345678");
    });
    const auto task = download(server.root() + "/file");
    observe(*task);
    task->resume();
    desktop.runMainQueueUntil([this] { return !fractions.empty(); });
    EXPECT_EQ(fractions, std::vector<double>{0.25});
    EXPECT_TRUE(results.empty());
    mayGoOn.open();
    awaitEnd();
    EXPECT_EQ(fractions.back(), 1.0);
}

TEST_F(DownloadServiceTest, WithoutAnAnnouncedLengthTheFractionsAreNegative) {
    server.answer("/file", "HTTP/1.1 200 OK\r\nConnection: close\r\n\r\n12345");
    fetch();
    ASSERT_FALSE(fractions.empty());
    EXPECT_EQ(fractions.back(), -5.0);
    EXPECT_EQ(writtenBytes(), 5);
    EXPECT_EQ(contentsAtEnd, "12345");
}

TEST_F(DownloadServiceTest, AnEmptyBodyIsASuccessOfNoBytes) {
    server.answer("/file", response(""));
    fetch();
    EXPECT_EQ(writtenBytes(), 0);
    EXPECT_EQ(contentsAtEnd, "");
    EXPECT_TRUE(fractions.empty());
}

TEST_F(DownloadServiceTest, AnErrorPageIsWrittenLikeAnyBody) {
    server.answer("/file", response("<html>Not Found</html>", "404 Not Found"));
    fetch();
    EXPECT_EQ(writtenBytes(), 22);
    EXPECT_EQ(contentsAtEnd, "<html>Not Found</html>");
}

TEST_F(DownloadServiceTest, AConnectionThatBreaksOffIsAFailureAndTheFileKeepsWhatCame) {
    server.answer("/file", [](LoopbackConnection& connection) {
        connection.send("HTTP/1.1 200 OK\r\nContent-Length: 1000\r\n\r\nhalf");
        connection.drop();
    });
    fetch();
    EXPECT_NE(errorDescription(), "");
    EXPECT_EQ(contentsAtEnd, "half");
    EXPECT_EQ(contentsOf(target), "half");
}

TEST_F(DownloadServiceTest, AServerThatIsNotThereIsAFailure) {
    const auto task = download("https://localhost:1/file");
    observe(*task);
    task->resume();
    awaitEnd();
    EXPECT_NE(errorDescription().find("localhost"), std::string::npos) << errorDescription();
    EXPECT_EQ(contentsAtEnd, "");
}

TEST_F(DownloadServiceTest, TheCallersTimeoutEndsTheTransfer) {
    const Gate mayEnd;
    server.answer("/file", [mayEnd](LoopbackConnection& connection) {
        connection.send("HTTP/1.1 200 OK\r\nContent-Length: 1000\r\n\r\nsome");
        mayEnd.wait();
    });
    const auto task = service->download({.url = server.root() + "/file", .timeoutInterval = 1s}, target);
    observe(*task);
    task->resume();
    awaitEnd();
    mayEnd.open();
    EXPECT_NE(errorDescription(), "");
    EXPECT_EQ(contentsAtEnd, "some");
}

TEST_F(DownloadServiceTest, ATargetThatCannotBeOpenedThrowsWithoutAnyRequest) {
    try {
        service->download({.url = server.root() + "/file"}, folder.path() / "missing" / "target");
        ADD_FAILURE() << "a file in a missing folder was opened";
    } catch (const DownloadError& error) {
        EXPECT_EQ(error.text(), "Could not open target file");
        EXPECT_EQ(error.localizedDescription(),
                  platform::genericErrorDescription(error.domain(), error.code()));
        EXPECT_EQ(error.localizedDescription().find(error.text()), std::string::npos);
    }
    EXPECT_EQ(server.connectionCount(), 0);
}

TEST_F(DownloadServiceTest, AFailedStartLeavesTheServiceAsItWas) {
    EXPECT_THROW(service->download({.url = server.root() + "/file"}, folder.path()), DownloadError);
    server.answer("/file", response("next"));
    fetch();
    EXPECT_EQ(contentsAtEnd, "next");
}

TEST_F(DownloadServiceTest, AnOldTargetIsEmptiedAtOnceAndNothingIsAskedBeforeTheStart) {
    writeFile(target, "the engine before");
    const auto task = download(server.root() + "/file");
    EXPECT_EQ(contentsOf(target), "");
    EXPECT_EQ(server.connectionCount(), 0);
    server.answer("/file", response("new"));
    observe(*task);
    task->resume();
    awaitEnd();
    EXPECT_EQ(contentsAtEnd, "new");
}

TEST_F(DownloadServiceTest, AFileThatTakesNothingIsNotNoticed) {
    // Everything written to this device is refused for want of room.
    const std::filesystem::path fullDisk = "/dev/full";
    server.answer("/file", response(std::string(100000, 'x')));
    const auto task = service->download({.url = server.root() + "/file"}, fullDisk);
    task->completionHandler = [this](const Result& result) { results.push_back(result); };
    task->resume();
    awaitEnd();
    EXPECT_EQ(writtenBytes(), 100000);
}

TEST_F(DownloadServiceTest, ADownloadIsKeptUntilItsEndAlthoughItsCallerLetGo) {
    server.answer("/file", response("kept"));
    auto task = download(server.root() + "/file");
    observe(*task);
    task->resume();
    task.reset();
    awaitEnd();
    EXPECT_EQ(contentsAtEnd, "kept");
}

TEST_F(DownloadServiceTest, SeveralDownloadsKeepApart) {
    constexpr int count = 8;
    std::vector<std::shared_ptr<DownloadTask>> tasks(count);
    std::vector<std::thread> callers;
    int ended = 0;
    for (int index = 0; index < count; ++index) {
        const std::string name = std::to_string(index);
        server.answer("/" + name, response(std::string(1000, static_cast<char>('a' + index))));
        callers.emplace_back([this, &tasks, &ended, index, name] {
            auto& task = tasks[static_cast<std::size_t>(index)];
            task = service->download({.url = server.root() + "/" + name}, folder.path() / name);
            task->completionHandler = [&ended](const Result& result) {
                EXPECT_EQ(std::get<std::int64_t>(result), 1000);
                ++ended;
            };
            task->resume();
        });
    }
    for (std::thread& caller : callers) {
        caller.join();
    }
    desktop.runMainQueueUntil([&ended] { return ended == count; });
    for (int index = 0; index < count; ++index) {
        EXPECT_EQ(contentsOf(folder.path() / std::to_string(index)),
                  std::string(1000, static_cast<char>('a' + index)));
    }
}

TEST_F(DownloadServiceTest, ItsLastOwnerPrintsWhatWasDownloaded) {
    server.answer("/file", response("x"));
    CaptureStandardOutput output;
    auto task = download(server.root() + "/file");
    observe(*task);
    task->resume();
    awaitEnd();
    EXPECT_EQ(output.text(), "");
    task.reset();
    // The session's thread may be the last to let go.
    desktop.runMainQueueUntil([&output] { return !output.text().empty(); });
    EXPECT_EQ(output.finish(), "Deinit: " + server.root() + "/file\n");
}

TEST(SharedDownloadServiceTest, ThereIsOneForTheProcess) {
    EXPECT_EQ(&DownloadService::shared(), &DownloadService::shared());
}

} // namespace
} // namespace orvane::test
