#include "download/DownloadService.h"

#include "tests/support/ScriptedServer.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/TestDesktop.h"
#include "tests/support/Watchdog.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <thread>
#include <vector>

namespace orvane::test {
namespace {

constexpr int kThreads = 4;

class DownloadServiceHammerTest : public testing::Test {
protected:
    std::filesystem::path target(int thread, int round) const {
        return folder.path() / (std::to_string(thread) + " " + std::to_string(round));
    }

    /// Starts a download and lets go of it at once; it counts itself when it has ended.
    void startAndLetGo(DownloadService& service, const std::string& path, const std::filesystem::path& file) {
        const auto task = service.download({.url = server.root() + path}, file);
        task->progressHandler = [this](double /*fraction*/) { ++pieces; };
        task->completionHandler = [this](const ResultType<std::int64_t>& result) {
            ++ended;
            failed += std::holds_alternative<platform::Error>(result) ? 1 : 0;
        };
        task->resume();
    }

    void onSeveralThreads(const std::function<void(int)>& work, int downloads) {
        std::vector<std::thread> threads;
        for (int number = 0; number < kThreads; ++number) {
            threads.emplace_back(work, number);
        }
        desktop.runMainQueueUntil([this, downloads] { return ended == downloads; });
        for (std::thread& thread : threads) {
            thread.join();
        }
        desktop.drainMainQueue();
        EXPECT_EQ(ended, downloads);
    }

    const Watchdog watchdog;
    TemporaryFolder folder;
    TestDesktop desktop;
    ScriptedServer server;

    // For the main thread alone.
    int pieces = 0;
    int ended = 0;
    int failed = 0;
};

TEST_F(DownloadServiceHammerTest, DownloadsOfOneServiceFromSeveralThreadsEndOnceEach) {
    constexpr int rounds = 15;
    const std::string body(30'000, 'x');
    server.answer("/file", response(body));
    const auto service = DownloadService::create();
    onSeveralThreads(
        [&](int thread) {
            for (int round = 0; round < rounds; ++round) {
                startAndLetGo(*service, "/file", target(thread, round));
            }
        },
        kThreads * rounds);
    EXPECT_EQ(failed, 0);
    EXPECT_GE(pieces, kThreads * rounds);
    for (int thread = 0; thread < kThreads; ++thread) {
        EXPECT_TRUE(contentsOf(target(thread, rounds - 1)) == body);
    }
}

TEST_F(DownloadServiceHammerTest, ServicesThatGoBeforeTheirDownloadsLetThemRunToTheirEndUnheard) {
    constexpr int rounds = 10;
    server.answer("/file", response(std::string(30'000, 'x')));
    std::vector<std::thread> threads;
    for (int thread = 0; thread < kThreads; ++thread) {
        threads.emplace_back([this, thread] {
            for (int round = 0; round < rounds; ++round) {
                const auto service = DownloadService::create();
                const auto task = service->download({.url = server.root() + "/file"}, target(thread, round));
                if (round % 2 == 0) {
                    task->resume();
                }
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    desktop.runMainQueueUntil([this] { return server.requests().size() == kThreads * rounds / 2; });
}

TEST_F(DownloadServiceHammerTest, GoodBrokenAndImpossibleDownloadsMixedAreToldApart) {
    constexpr int rounds = 10;
    server.answer("/good", response("good"));
    server.answer("/broken", [](LoopbackConnection& connection) {
        connection.send("HTTP/1.1 200 OK\r\nContent-Length: 1000\r\n\r\nhalf");
        connection.drop();
    });
    const auto service = DownloadService::create();
    onSeveralThreads(
        [&](int thread) {
            for (int round = 0; round < rounds; ++round) {
                startAndLetGo(*service, round % 2 == 0 ? "/good" : "/broken", target(thread, round));
                EXPECT_THROW(service->download({.url = server.root() + "/good"}, folder.path()),
                             DownloadError);
            }
        },
        kThreads * rounds);
    EXPECT_EQ(failed, kThreads * rounds / 2);
}

} // namespace
} // namespace orvane::test
