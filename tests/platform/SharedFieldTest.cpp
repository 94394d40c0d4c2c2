#include "platform/SharedField.h"

#include <atomic>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace orvane::test {

namespace {

TEST(SharedFieldTest, BeginsWithItsDefaultOrTheGivenValue) {
    EXPECT_EQ(SharedField<int>().load(), 0);
    EXPECT_EQ(SharedField<std::string>("given").load(), "given");
}

TEST(SharedFieldTest, ReadersGetWholeValues) {
    SharedField<std::string> field(std::string(1000, 'a'));
    std::atomic<bool> stop = false;
    constexpr int kReaders = 3;
    std::vector<std::thread> readers;
    readers.reserve(kReaders);
    for (int reader = 0; reader < kReaders; ++reader) {
        readers.emplace_back([&] {
            while (!stop) {
                const std::string value = field.load();
                EXPECT_EQ(value.size(), 1000U);
                EXPECT_EQ(value.find_first_not_of(value.front()), std::string::npos);
            }
        });
    }
    for (int round = 0; round < 2000; ++round) {
        field.store(std::string(1000, static_cast<char>('a' + round % 26)));
    }
    stop = true;
    for (std::thread& reader : readers) {
        reader.join();
    }
    EXPECT_EQ(field.load().front(), static_cast<char>('a' + 1999 % 26));
}

/// Does something of the test's when it goes.
struct Farewell {
    std::function<void()> say;
    ~Farewell() { say(); }
};

TEST(SharedFieldTest, TheOldValueMayUseTheFieldAsItGoes) {
    SharedField<std::shared_ptr<Farewell>> field;
    bool fieldWasReadable = false;
    field.store(std::make_shared<Farewell>(Farewell{[&] { fieldWasReadable = field.load() == nullptr; }}));
    field.store(nullptr);
    EXPECT_TRUE(fieldWasReadable);
}

} // namespace

} // namespace orvane::test
