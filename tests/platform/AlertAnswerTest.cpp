#include "platform/AlertAnswer.h"

#include "tests/support/DeathTest.h"

#include <deque>
#include <string>
#include <vector>

namespace orvane::test {

namespace {

class AlertAnswerTest : public DeathTest {
protected:
    std::int64_t ask(std::size_t buttonCount, std::deque<std::int64_t> results) {
        return platform::askUntilAnswered(
            buttonCount,
            [this, &results] {
                calls.emplace_back("show");
                const std::int64_t result = results.front();
                results.pop_front();
                return result;
            },
            [this] { calls.emplace_back("turn"); });
    }

    std::vector<std::string> calls;
};

TEST_F(AlertAnswerTest, AButtonIsTheAnswer) {
    EXPECT_EQ(ask(1, {1000}), 1000);
    EXPECT_EQ(ask(2, {1001}), 1001);
    EXPECT_EQ(calls, (std::vector<std::string>{"show", "show"}));
}

TEST_F(AlertAnswerTest, AnyOtherResultIsAskedAgainInALaterTurn) {
    // Cancelled from code, stopped, aborted, a button that is not there.
    EXPECT_EQ(ask(2, {0, -1000, -1001, 999, 1002, 1001}), 1001);
    std::vector<std::string> expected;
    for (int count = 0; count < 5; ++count) {
        expected.insert(expected.end(), {"show", "turn"});
    }
    expected.emplace_back("show");
    EXPECT_EQ(calls, expected);
}

TEST_F(AlertAnswerTest, ASecondButtonThatIsNotThereIsNoAnswer) { EXPECT_EQ(ask(1, {1001, 1000}), 1000); }

TEST_F(AlertAnswerTest, AnAlertWithoutAButtonIsAProgrammingError) {
    EXPECT_DEATH(ask(0, {1000}), "an alert without a button");
}

} // namespace

} // namespace orvane::test
