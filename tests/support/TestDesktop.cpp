#include "tests/support/TestDesktop.h"

#include "platform/Activity.h"
#include "platform/ProgrammingError.h"
#include "platform/Queue.h"
#include "tests/support/RecordingControls.h"

#include <gtest/gtest.h>

#include <condition_variable>
#include <deque>
#include <mutex>
#include <utility>

namespace orvane::test {

/// What the main thread and the program's other threads share. It outlives the desktop while one of them is
/// inside a call.
class TestDesktop::State {
public:
    void submitToMainQueue(std::function<void()> work) {
        const std::lock_guard lock(mutex_);
        mainItems_.push_back(std::move(work));
        changed_.notify_all();
    }

    void submitToUtilityQueue(std::function<void()> work) {
        const std::lock_guard lock(mutex_);
        utilityItems_.push_back(std::move(work));
        changed_.notify_all();
    }

    std::function<void()> takeMainItem() { return take(mainItems_); }
    std::function<void()> takeUtilityItem() { return take(utilityItems_); }

    std::size_t waitingMainItems() const {
        const std::lock_guard lock(mutex_);
        return mainItems_.size();
    }

    std::size_t waitingUtilityItems() const {
        const std::lock_guard lock(mutex_);
        return utilityItems_.size();
    }

    /// Returns when the main queue has an item, and also soon after, since a condition that a test awaits may
    /// come true without one.
    void waitForMainItem() const {
        std::unique_lock lock(mutex_);
        changed_.wait_for(lock, std::chrono::milliseconds(5), [this] { return !mainItems_.empty(); });
    }

    /// Gives up what nobody ran, as the end of a process does.
    void dropItems() {
        while (takeMainItem() || takeUtilityItem()) {
        }
    }

    bool isMainThread() const { return std::this_thread::get_id() == mainThread_; }

    std::int64_t runAlert(const platform::Alert& alert, bool raisedOnMainThread) {
        std::string titles;
        for (const std::string& title : alert.buttonTitles) {
            titles += (titles.empty() ? "" : "|") + title;
        }
        journal->add("alert \"" + alert.messageText + "\" [" + titles + "]");
        shownAlerts.push_back({alert, raisedOnMainThread});
        if (answers.empty()) {
            ADD_FAILURE() << "nobody expected the alert \"" << alert.messageText << '"';
            return platform::kAlertFirstButtonReturn;
        }
        const AlertAnswer answer = std::move(answers.front());
        answers.pop_front();
        const std::int64_t response = answer(alert);
        journal->add("alert answered " + std::to_string(response));
        return response;
    }

    [[noreturn]] void endProcess(int status) {
        {
            const std::lock_guard lock(mutex_);
            endStatus_ = endStatus_.value_or(status);
        }
        journal->add("process ended " + std::to_string(status));
        throw ProcessEnded{status};
    }

    std::optional<int> endStatus() const {
        const std::lock_guard lock(mutex_);
        return endStatus_;
    }

    void setArguments(std::vector<std::string> arguments) {
        const std::lock_guard lock(mutex_);
        arguments_ = std::move(arguments);
    }

    std::vector<std::string> arguments() const {
        const std::lock_guard lock(mutex_);
        return arguments_;
    }

    const std::shared_ptr<Journal> journal = std::make_shared<Journal>();

    // For the main thread alone.
    std::deque<AlertAnswer> answers;
    std::vector<ShownAlert> shownAlerts;
    ApplicationScript script;
    bool runsMainItem = false;

private:
    std::function<void()> take(std::deque<std::function<void()>>& items) {
        const std::lock_guard lock(mutex_);
        if (items.empty()) {
            return {};
        }
        std::function<void()> item = std::move(items.front());
        items.pop_front();
        return item;
    }

    const std::thread::id mainThread_ = std::this_thread::get_id();
    mutable std::mutex mutex_;
    mutable std::condition_variable changed_;
    std::deque<std::function<void()>> mainItems_;
    std::deque<std::function<void()>> utilityItems_;
    std::vector<std::string> arguments_{"OrvaneBootstrap"};
    std::optional<int> endStatus_;
};

namespace {

std::mutex currentMutex;
std::weak_ptr<TestDesktop::State> currentState;

/// Absent between two tests, when a transfer that nobody waits for may still bring something.
std::shared_ptr<TestDesktop::State> currentDesktop() {
    const std::lock_guard lock(currentMutex);
    return currentState.lock();
}

std::shared_ptr<TestDesktop::State> requiredDesktop() {
    auto state = currentDesktop();
    if (!state) {
        programmingError("the test uses the desktop and has made no TestDesktop");
    }
    return state;
}

/// Marks the time in which a main queue item runs, however it ends.
class RunningItem {
public:
    explicit RunningItem(bool& runs) : runs_(runs) {
        EXPECT_FALSE(runs_) << "the main queue was run from within one of its own items";
        runs_ = true;
    }
    ~RunningItem() { runs_ = false; }
    RunningItem(const RunningItem&) = delete;
    RunningItem& operator=(const RunningItem&) = delete;

private:
    bool& runs_;
};

bool runNextMainItem(TestDesktop::State& state) {
    const std::function<void()> item = state.takeMainItem();
    if (!item) {
        return false;
    }
    const RunningItem running(state.runsMainItem);
    item();
    return true;
}

std::optional<int> statusAfter(const std::function<void()>& work) {
    try {
        work();
    } catch (const ProcessEnded& end) {
        return end.status;
    }
    return std::nullopt;
}

} // namespace

BackgroundWork::BackgroundWork(std::function<void()> work) {
    std::packaged_task<std::optional<int>()> task([work = std::move(work)] { return statusAfter(work); });
    end_ = task.get_future();
    thread_ = std::thread(std::move(task));
}

BackgroundWork::~BackgroundWork() {
    if (thread_.joinable()) {
        EXPECT_NO_THROW(wait());
    }
}

bool BackgroundWork::isFinished() const {
    return !end_.valid() || end_.wait_for(std::chrono::seconds(0)) == std::future_status::ready;
}

std::optional<int> BackgroundWork::wait() {
    if (end_.wait_for(TestDesktop::kPatience) != std::future_status::ready) {
        programmingError("work of the utility queue does not end");
    }
    thread_.join();
    return end_.get();
}

TestDesktop::TestDesktop() : state_(std::make_shared<State>()) {
    const std::lock_guard lock(currentMutex);
    if (!currentState.expired()) {
        programmingError("two test desktops at a time");
    }
    currentState = state_;
}

TestDesktop::~TestDesktop() {
    EXPECT_TRUE(state_->answers.empty()) << state_->answers.size() << " expected alert(s) never came";
    state_->dropItems();
    const std::lock_guard lock(currentMutex);
    currentState.reset();
}

std::shared_ptr<Journal> TestDesktop::journal() const { return state_->journal; }

void TestDesktop::setProcessArguments(std::vector<std::string> arguments) {
    state_->setArguments(std::move(arguments));
}

void TestDesktop::drainMainQueue() {
    while (runNextMainItem(*state_)) {
    }
}

bool TestDesktop::runMainQueueUntil(const std::function<bool()>& condition) {
    const auto deadline = std::chrono::steady_clock::now() + kPatience;
    while (!condition()) {
        if (runNextMainItem(*state_)) {
            continue;
        }
        if (std::chrono::steady_clock::now() >= deadline) {
            ADD_FAILURE() << "what the test waits for does not happen";
            return false;
        }
        state_->waitForMainItem();
    }
    return true;
}

std::optional<int> TestDesktop::runMainQueueUntilProcessEnds() {
    statusAfter([this] { runMainQueueUntil([this] { return state_->endStatus().has_value(); }); });
    return state_->endStatus();
}

std::size_t TestDesktop::waitingMainItems() const { return state_->waitingMainItems(); }
std::size_t TestDesktop::waitingUtilityItems() const { return state_->waitingUtilityItems(); }

BackgroundWork TestDesktop::startUtilityItem() {
    std::function<void()> item = state_->takeUtilityItem();
    if (!item) {
        ADD_FAILURE() << "the utility queue is empty";
        item = [] {};
    }
    return BackgroundWork(std::move(item));
}

std::optional<int> TestDesktop::runUtilityItem() { return startUtilityItem().wait(); }

void TestDesktop::answerNextAlert(std::int64_t response) {
    answerNextAlert([response](const platform::Alert&) { return response; });
}

void TestDesktop::answerNextAlert(AlertAnswer answer) { state_->answers.push_back(std::move(answer)); }

std::vector<ShownAlert> TestDesktop::shownAlerts() const { return state_->shownAlerts; }

void TestDesktop::setApplicationScript(ApplicationScript script) { state_->script = std::move(script); }

} // namespace orvane::test

namespace orvane::platform {

using test::currentDesktop;
using test::requiredDesktop;

std::int64_t Alert::runModal() const {
    const auto desktop = requiredDesktop();
    if (desktop->isMainThread()) {
        return desktop->runAlert(*this, true);
    }
    const auto question = std::make_shared<std::packaged_task<std::int64_t()>>(
        [desktop, alert = *this] { return desktop->runAlert(alert, false); });
    desktop->submitToMainQueue([question] { (*question)(); });
    return question->get_future().get();
}

void mainQueueAsync(std::function<void()> work) {
    if (const auto desktop = currentDesktop()) {
        desktop->submitToMainQueue(std::move(work));
    }
}

bool isMainThread() { return requiredDesktop()->isMainThread(); }

void utilityQueueAsync(std::function<void()> work) {
    requiredDesktop()->submitToUtilityQueue(std::move(work));
}

std::vector<std::string> processArguments() { return requiredDesktop()->arguments(); }

void activateIgnoringOtherApps(bool ignoringOtherApps) {
    requiredDesktop()->journal->add(ignoringOtherApps ? "activate ignoring other apps" : "activate");
}

void beginActivity(const std::string& reason) {
    const auto desktop = requiredDesktop();
    const bool isFirst = desktop->waitingUtilityItems() == 0;
    desktop->journal->add("activity \"" + reason + (isFirst ? "\"" : "\" after work was submitted"));
}

void endProcess(int status) { requiredDesktop()->endProcess(status); }

void applicationMain(int argumentCount, char** arguments, const std::string& windowTitle,
                     ApplicationDelegate& delegate, const ViewControllerFactory& makeViewController) {
    const auto desktop = requiredDesktop();
    desktop->setArguments({arguments, arguments + argumentCount});
    delegate.applicationDidFinishLaunching();
    desktop->journal->add("window titled \"" + windowTitle + "\"");
    const MainWindowControls controls = test::makeRecordingControls(desktop->journal);
    const std::shared_ptr<ViewControllerBase> controller = makeViewController();
    controller->connectOutlets(controls);
    mainQueueAsync([controller] {
        controller->awakeFromNib();
        controller->viewDidLoad();
        controller->viewWillAppear();
        controller->viewDidAppear();
    });
    if (desktop->script) {
        desktop->script(delegate, *controller);
    }
}

} // namespace orvane::platform
