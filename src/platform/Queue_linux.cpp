#include "platform/Queue_linux.h"

#include "platform/ProgrammingError.h"
#include "platform/Queue.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEvent>
#include <QObject>

#include <deque>
#include <exception>
#include <future>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <system_error>
#include <thread>
#include <utility>

namespace orvane::platform {

namespace {

/// How long items may follow one another before mouse, keyboard, timers and painting get their turn.
constexpr qint64 kTurnMilliseconds = 4;

/// Receives on the main thread the events that call for service.
class Servant final : public QObject {
public:
    bool event(QEvent* event) override;
};

class MainQueue {
public:
    void submit(std::function<void()> work);
    void attach();
    void detach();
    bool isMainThread();

    /// Runs items until none is left or the turn is over. Does nothing inside an item, whose event loop (a
    /// modal alert's) then goes on without them. Main thread.
    void serve();

private:
    std::optional<std::function<void()>> takeNext();
    void callForService();

    std::mutex mutex_;
    std::deque<std::function<void()>> items_;
    std::unique_ptr<Servant> servant_; ///< absent while detached
    std::thread::id mainThread_;
    bool serviceIsCalled_ = false;

    bool isServing_ = false; ///< main thread alone
};

/// Lives as long as the process: a background thread may submit work even while the process ends.
MainQueue& mainQueue() {
    static auto* const queue = new MainQueue;
    return *queue;
}

QEvent::Type serviceEventType() {
    static const int type = QEvent::registerEventType();
    return static_cast<QEvent::Type>(type);
}

bool Servant::event(QEvent* event) {
    if (event->type() != serviceEventType()) {
        return QObject::event(event);
    }
    mainQueue().serve();
    return true;
}

void MainQueue::submit(std::function<void()> work) {
    const std::lock_guard lock(mutex_);
    items_.push_back(std::move(work));
    callForService();
}

void MainQueue::attach() {
    const std::lock_guard lock(mutex_);
    servant_ = std::make_unique<Servant>();
    mainThread_ = std::this_thread::get_id();
    callForService();
}

void MainQueue::detach() {
    const std::lock_guard lock(mutex_);
    servant_.reset();
    serviceIsCalled_ = false;
}

bool MainQueue::isMainThread() {
    const std::lock_guard lock(mutex_);
    return mainThread_ == std::this_thread::get_id();
}

void MainQueue::serve() {
    if (isServing_) {
        return; // `serviceIsCalled_` stays set: the serving item's end calls again
    }
    isServing_ = true;
    QElapsedTimer turn;
    turn.start();
    while (turn.elapsed() < kTurnMilliseconds) {
        const auto item = takeNext();
        if (!item) {
            break;
        }
        (*item)();
    }
    isServing_ = false;

    const std::lock_guard lock(mutex_);
    serviceIsCalled_ = false;
    callForService();
}

std::optional<std::function<void()>> MainQueue::takeNext() {
    const std::lock_guard lock(mutex_);
    if (items_.empty()) {
        return std::nullopt;
    }
    std::optional<std::function<void()>> item(std::move(items_.front()));
    items_.pop_front();
    return item;
}

/// The mutex is held by the caller. The low priority lets painting, which Qt asks for with the same, have its
/// turn.
void MainQueue::callForService() {
    if (servant_ && !serviceIsCalled_ && !items_.empty()) {
        serviceIsCalled_ = true;
        QCoreApplication::postEvent(servant_.get(), new QEvent(serviceEventType()), Qt::LowEventPriority);
    }
}

void runGuarded(const std::function<void()>& work) noexcept {
    try {
        work();
    } catch (const std::exception& error) {
        programmingError(std::string("an exception left a background thread: ") + error.what());
    } catch (...) {
        programmingError("an exception left a background thread");
    }
}

} // namespace

MainQueueService::MainQueueService() { mainQueue().attach(); }

MainQueueService::~MainQueueService() { mainQueue().detach(); }

void mainQueueAsync(std::function<void()> work) { mainQueue().submit(std::move(work)); }

bool isMainThread() { return mainQueue().isMainThread(); }

/// The priority stays the ordinary one: a thread's niceness would pass on to the processes started from it.
void utilityQueueAsync(std::function<void()> work) {
    try {
        std::thread([work = std::move(work)] { runGuarded(work); }).detach();
    } catch (const std::system_error& error) {
        unexpectedError(std::string("no background thread can be started: ") + error.what());
    }
}

void runOnMainThreadAndWait(const std::function<void()>& work) {
    if (isMainThread()) {
        work();
        return;
    }
    // Owned by the item as well, which may still be inside set_value when the caller goes on.
    const auto done = std::make_shared<std::promise<void>>();
    mainQueue().submit([&work, done] {
        work();
        done->set_value();
    });
    done->get_future().wait();
}

} // namespace orvane::platform
