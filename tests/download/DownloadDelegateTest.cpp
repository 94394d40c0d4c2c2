#include "download/DownloadService.h"

#include "platform/WindowUpdates.h"
#include "tests/support/CaptureStandardOutput.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/TestDesktop.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <limits>
#include <thread>

namespace orvane::test {
namespace {

using Result = ResultType<std::int64_t>;

/// A transfer that is not carried out; it only records what it is told.
class IdleDataTask final : public platform::UrlSessionDataTask {
public:
    std::optional<std::string> originalRequestUrl() const override { return std::nullopt; }
    void resume() override { calls.emplace_back("resume"); }
    void suspend() override { calls.emplace_back("suspend"); }
    void cancel() override { calls.emplace_back("cancel"); }

    std::vector<std::string> calls;
};

/// What a session tells the service is told by the test itself; no transfer is started.
class DownloadDelegateTest : public testing::Test {
protected:
    DownloadDelegateTest() { observe(); }

    void observe() {
        download->progressHandler = [this](double fraction) { fractions.push_back(fraction); };
        download->completionHandler = [this](const Result& result) { results.push_back(result); };
    }

    GenericDownloadTask& task() { return dynamic_cast<GenericDownloadTask&>(*download); }
    platform::UrlSessionDataTask& transfer() { return *task().task; }

    TemporaryFolder folder;
    std::filesystem::path target = folder.path() / "target";
    TestDesktop desktop;
    std::shared_ptr<DownloadService> service = DownloadService::create();
    std::shared_ptr<DownloadTask> download =
        service->download({.url = "https://downloads.example/file"}, target);
    IdleDataTask stranger;
    std::vector<double> fractions;
    std::vector<Result> results;
};

TEST_F(DownloadDelegateTest, ANewDownloadHasReceivedNothing) {
    EXPECT_EQ(task().expectedContentLength, 0);
    EXPECT_EQ(task().writtenBytes, 0);
    const auto another = service->download({.url = "https://downloads.example/"}, folder.path() / "another");
    EXPECT_FALSE(another->progressHandler);
    EXPECT_FALSE(another->completionHandler);
}

TEST_F(DownloadDelegateTest, ADownloadsOperationsAreThoseOfItsTransfer) {
    const auto idle = std::make_shared<IdleDataTask>();
    GenericDownloadTask generic(idle, nullptr);
    DownloadTask& asItsCallerSeesIt = generic;
    EXPECT_EQ(asItsCallerSeesIt.task, idle);
    asItsCallerSeesIt.resume();
    asItsCallerSeesIt.suspend();
    asItsCallerSeesIt.cancel();
    EXPECT_EQ(idle->calls, (std::vector<std::string>{"resume", "suspend", "cancel"}));
}

TEST_F(DownloadDelegateTest, TheResponseOfAKnownTransferIsAllowedAndItsLengthKept) {
    EXPECT_EQ(service->didReceiveResponse(transfer(), 1234), platform::ResponseDisposition::allow);
    EXPECT_EQ(task().expectedContentLength, 1234);
    EXPECT_EQ(service->didReceiveResponse(transfer(), -1), platform::ResponseDisposition::allow);
    EXPECT_EQ(task().expectedContentLength, -1);
}

/// How many times this thread has asked the kernel to write so far (proc(5), /proc/pid/io).
std::int64_t writesOfThisThread() {
    std::ifstream file("/proc/thread-self/io");
    std::string name;
    std::int64_t count = 0;
    while (file >> name >> count) {
        if (name == "syscw:") {
            return count;
        }
    }
    ADD_FAILURE() << "the kernel does not count system calls";
    return 0;
}

TEST_F(DownloadDelegateTest, EachChunkIsOneWriteAndInTheFileAtOnce) {
    service->didReceiveResponse(transfer(), -1);
    const auto writesFor = [this](const std::string& chunk) {
        const std::int64_t before = writesOfThisThread();
        service->didReceiveData(transfer(), bytesOf(chunk));
        return writesOfThisThread() - before;
    };
    // A sanitizer writes too: more for the first chunk than for the others.
    writesFor("c");
    const std::int64_t once = writesFor("c");
    const std::string largeChunk(512 << 10, 'c'); // the largest that libcurl delivers
    for (std::size_t count = 1; count <= 5; ++count) {
        EXPECT_EQ(writesFor(largeChunk), once);
        EXPECT_EQ(std::filesystem::file_size(target), 2 + count * largeChunk.size());
    }
}

TEST_F(DownloadDelegateTest, ATransferThatIsGivenUpLeavesItsStreamUsable) {
    service->didReceiveData(transfer(), bytesOf("data"));
    std::FILE* const stream = task().targetFileHandle;
    const std::unique_ptr<char[]> buffer(task().targetFileBuffer.get()); // left to the stream below
    download.reset();
    service.reset();
    EXPECT_EQ(std::fputs("more", stream), 1);
    EXPECT_EQ(std::fclose(stream), 0);
    EXPECT_EQ(contentsOf(target), "datamore");
}

TEST_F(DownloadDelegateTest, AnUnknownTransferIsCancelledAndOtherwiseIgnored) {
    EXPECT_EQ(service->didReceiveResponse(stranger, 1), platform::ResponseDisposition::cancel);
    service->didReceiveData(stranger, bytesOf("data"));
    service->didComplete(stranger, std::nullopt);
    EXPECT_EQ(desktop.waitingMainItems(), 0U);
    EXPECT_EQ(task().writtenBytes, 0);
    EXPECT_EQ(service->didReceiveResponse(transfer(), 1), platform::ResponseDisposition::allow);
}

TEST_F(DownloadDelegateTest, FractionsAreNeitherClampedNorRounded) {
    service->didReceiveResponse(transfer(), 3);
    service->didReceiveData(transfer(), bytesOf("1"));
    service->didReceiveData(transfer(), bytesOf("2345"));
    desktop.drainMainQueue();
    EXPECT_EQ(fractions, (std::vector<double>{1.0 / 3.0, 5.0 / 3.0}));
    EXPECT_EQ(task().writtenBytes, 5);
}

TEST_F(DownloadDelegateTest, WithAnAnnouncedLengthOfZeroTheFractionIsInfiniteOrNone) {
    service->didReceiveResponse(transfer(), 0);
    service->didReceiveData(transfer(), bytesOf(""));
    service->didReceiveData(transfer(), bytesOf("1"));
    desktop.drainMainQueue();
    ASSERT_EQ(fractions.size(), 2U);
    EXPECT_TRUE(std::isnan(fractions[0]));
    EXPECT_EQ(fractions[1], std::numeric_limits<double>::infinity());
}

TEST_F(DownloadDelegateTest, WhileAnAlertHoldsTheMainQueueOnlyTheLastProgressWaits) {
    service->didReceiveResponse(transfer(), 10'000);
    const platform::MainQueueHold hold;
    for (int piece = 0; piece < 10'000; ++piece) {
        service->didReceiveData(transfer(), bytesOf("1"));
    }
    service->didComplete(transfer(), std::nullopt);
    EXPECT_EQ(desktop.waitingMainItems(), 2U);
    desktop.drainMainQueue();
    EXPECT_EQ(fractions, std::vector<double>{1.0});
    ASSERT_EQ(results.size(), 1U);
}

TEST_F(DownloadDelegateTest, ProgressWaitsForTheMainQueue) {
    service->didReceiveResponse(transfer(), 1);
    service->didReceiveData(transfer(), bytesOf("1"));
    EXPECT_TRUE(fractions.empty());
    EXPECT_EQ(desktop.waitingMainItems(), 1U);
}

TEST_F(DownloadDelegateTest, ASessionFasterThanTheMainThreadWaitsAndNoPieceIsLost) {
    constexpr std::size_t pieces = 10'000;
    constexpr std::size_t far = 1024; // further ahead of the window than this a session does not run
    service->didReceiveResponse(transfer(), pieces);
    std::thread session([this] {
        for (std::size_t count = 0; count < pieces; ++count) {
            service->didReceiveData(transfer(), bytesOf("1"));
        }
        service->didComplete(transfer(), std::nullopt);
    });
    std::size_t mostWaiting = 0;
    desktop.runMainQueueUntil([&] {
        mostWaiting = std::max(mostWaiting, desktop.waitingMainItems());
        EXPECT_TRUE(results.empty() || fractions.size() == pieces) << "the end overtook progress";
        return !results.empty();
    });
    session.join();
    EXPECT_LE(mostWaiting, far + 1);
    EXPECT_EQ(fractions.size(), pieces);
    EXPECT_TRUE(std::is_sorted(fractions.begin(), fractions.end()));
    EXPECT_EQ(fractions.back(), 1.0);
}

TEST_F(DownloadDelegateTest, EachPieceIsInTheFileAtOnce) {
    service->didReceiveData(transfer(), bytesOf("small"));
    EXPECT_EQ(contentsOf(target), "small");
}

TEST_F(DownloadDelegateTest, HandlersCountAsTheyAreWhenTheMainQueueRuns) {
    download->progressHandler = nullptr;
    download->completionHandler = nullptr;
    service->didReceiveResponse(transfer(), 4);
    service->didReceiveData(transfer(), bytesOf("1"));
    desktop.drainMainQueue();
    service->didReceiveData(transfer(), bytesOf("2"));
    service->didComplete(transfer(), std::nullopt);
    observe();
    desktop.drainMainQueue();
    EXPECT_EQ(fractions, std::vector<double>{0.5});
    ASSERT_EQ(results.size(), 1U);
    EXPECT_EQ(std::get<std::int64_t>(results.front()), 2);
}

TEST_F(DownloadDelegateTest, AnEndNobodyWaitsForIsNoError) {
    download->completionHandler = nullptr;
    service->didComplete(transfer(), std::nullopt);
    desktop.drainMainQueue();
    EXPECT_TRUE(results.empty());
}

TEST_F(DownloadDelegateTest, TheFileIsClosedBeforeTheEndIsDelivered) {
    service->didReceiveData(transfer(), bytesOf("small enough to be kept back"));
    service->didComplete(transfer(), std::nullopt);
    EXPECT_EQ(contentsOf(target), "small enough to be kept back");
    EXPECT_TRUE(results.empty());
    desktop.drainMainQueue();
    ASSERT_EQ(results.size(), 1U);
    EXPECT_EQ(std::get<std::int64_t>(results.front()), 28);
}

TEST_F(DownloadDelegateTest, ThePlatformsErrorIsPassedOnUnchanged) {
    const platform::Error error("Network", -1009, "The line is dead");
    service->didReceiveData(transfer(), bytesOf("part"));
    service->didComplete(transfer(), error);
    desktop.drainMainQueue();
    ASSERT_EQ(results.size(), 1U);
    const auto* delivered = std::get_if<platform::Error>(&results.front());
    ASSERT_NE(delivered, nullptr);
    EXPECT_EQ(delivered->domain(), "Network");
    EXPECT_EQ(delivered->code(), -1009);
    EXPECT_EQ(delivered->localizedDescription(), "The line is dead");
    EXPECT_EQ(contentsOf(target), "part");
}

TEST_F(DownloadDelegateTest, AnEndedDownloadIsUnknownFromThenOn) {
    service->didComplete(transfer(), std::nullopt);
    EXPECT_EQ(service->didReceiveResponse(transfer(), 1), platform::ResponseDisposition::cancel);
    service->didReceiveData(transfer(), bytesOf("late"));
    service->didComplete(transfer(), std::nullopt);
    desktop.drainMainQueue();
    EXPECT_EQ(results.size(), 1U);
    EXPECT_EQ(contentsOf(target), "");
}

TEST_F(DownloadDelegateTest, ADownloadWithoutAnAddressPrintsNoneEither) {
    CaptureStandardOutput output;
    { const GenericDownloadTask task(std::make_shared<IdleDataTask>(), nullptr); }
    EXPECT_EQ(output.finish(), "Deinit: \n");
}

} // namespace
} // namespace orvane::test
