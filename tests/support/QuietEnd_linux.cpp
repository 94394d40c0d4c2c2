#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <iterator>
#include <string>
#include <thread>
#include <unistd.h>

namespace orvane::test {
namespace {

std::ptrdiff_t countThreads() {
    return std::distance(std::filesystem::directory_iterator("/proc/self/task"), {});
}

/// Lets a test program exit only once the threads have ended that its tests left behind. A session's thread
/// may outlive its session for a moment, and where a library has readied OpenSSL for its own use, OpenSSL
/// vanishes at exit from under it. The product ends without exiting.
class QuietEnd final : public testing::Environment {
public:
    void SetUp() override {
        // The thread sanitizer brings a thread of its own along with a program's first one.
        std::filesystem::path first;
        std::thread([&first] { first = "/proc/self/task/" + std::to_string(::gettid()); }).join();
        while (std::filesystem::exists(first)) {
            std::this_thread::yield();
        }
        threads_ = countThreads();
    }

    void TearDown() override {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(30);
        while (countThreads() > threads_) {
            ASSERT_LT(std::chrono::steady_clock::now(), deadline) << "a test left a thread at work";
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    }

private:
    std::ptrdiff_t threads_ = 0;
};

const testing::Environment* const kQuietEnd = testing::AddGlobalTestEnvironment(new QuietEnd);

} // namespace
} // namespace orvane::test
