#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>
#include <unistd.h>

namespace orvane::test {
namespace {

/// Whether a thread of this process is neither asleep nor gone; see proc(5).
bool isAtWork(const std::filesystem::path& task) {
    std::ifstream file(task / "stat");
    std::string line;
    std::getline(file, line);
    const std::size_t endOfName = line.rfind(')');
    return endOfName != std::string::npos && line.substr(endOfName, 3) != ") S";
}

bool isAnotherAtWork() {
    const std::string self = std::to_string(::gettid());
    const std::filesystem::directory_iterator tasks("/proc/self/task");
    return std::any_of(begin(tasks), end(tasks), [&self](const std::filesystem::directory_entry& task) {
        return task.path().filename() != self && isAtWork(task.path());
    });
}

/// Lets a test program exit only once all its other threads sleep or have ended. A session's thread may work
/// on for a moment after its session's end, and where a library has readied OpenSSL for its own use, OpenSSL
/// vanishes at exit from under it. The product ends without exiting.
class QuietEnd final : public testing::Environment {
public:
    void TearDown() override {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(30);
        while (isAnotherAtWork()) {
            ASSERT_LT(std::chrono::steady_clock::now(), deadline) << "a test left a thread at work";
            std::this_thread::yield();
        }
    }
};

const testing::Environment* const kQuietEnd = testing::AddGlobalTestEnvironment(new QuietEnd);

} // namespace
} // namespace orvane::test
