#include "platform/Application.h"

#include "platform/MainWindow_linux.h"
#include "platform/ProgrammingError.h"
#include "platform/Queue.h"
#include "platform/Queue_linux.h"
#include "platform/ToolkitStart_linux.h"
#include "platform/WrappingText_linux.h"

#include <QApplication>
#include <QIcon>

#include <unistd.h>

#include <array>
#include <exception>
#include <optional>

namespace orvane::platform {

namespace {

/// The name of the desktop entry and of its icon, by which a desktop knows whose windows these are.
constexpr const char* kDesktopFileName = "orvane-bootstrap";

std::vector<std::string>& savedArguments() {
    static std::vector<std::string> arguments;
    return arguments;
}

/// Every event passes here, and with it all that this program does on the main thread. Qt cannot carry an
/// exception through its event loop.
class LinuxApplication final : public QApplication {
public:
    using QApplication::QApplication;

    bool notify(QObject* receiver, QEvent* event) override {
        try {
            return QApplication::notify(receiver, event);
        } catch (const std::exception& error) {
            programmingError(std::string("an exception left an event handler: ") + error.what());
        } catch (...) {
            programmingError("an exception left an event handler");
        }
    }
};

/// The main window and its controller, from the start to the end of the process.
class Session {
public:
    Session(const std::string& windowTitle, ApplicationDelegate& delegate)
        : delegate_(delegate), window_(plainText(windowTitle)) {}

    void start(const ViewControllerFactory& makeViewController) {
        controller_ = makeViewController();
        window_.connectCommands({[this] { controller_->cancelButtonClicked(); }, [this] { quitIfAgreed(); },
                                 [this] { return controller_->quitCommandTitle(); }});
        controller_->connectOutlets(window_.controls());
        controller_->awakeFromNib();
        controller_->viewDidLoad();
        controller_->viewWillAppear();
        window_.show();
        window_.awaitFirstExpose();
        controller_->viewDidAppear();
    }

private:
    void quitIfAgreed() {
        if (delegate_.applicationShouldTerminate() == TerminateReply::now) {
            delegate_.applicationWillTerminate();
            endProcess(0);
        }
    }

    ApplicationDelegate& delegate_;
    MainWindow window_;
    std::shared_ptr<ViewControllerBase> controller_;
};

/// The icon comes with the program, which need not be installed to be run.
QIcon windowIcon() {
    QIcon icon;
    for (const int size : {16, 24, 32, 48, 64, 128}) {
        icon.addFile(
            QStringLiteral(":/icons/%1x%1/apps/%2.png").arg(size).arg(QLatin1String(kDesktopFileName)));
    }
    return icon;
}

} // namespace

void applicationMain(int argumentCount, char** arguments, const std::string& windowTitle,
                     ApplicationDelegate& delegate, const ViewControllerFactory& makeViewController) {
    savedArguments().assign(arguments, arguments + argumentCount);

    // Qt sees the program's name alone: it would take options meant for the engine as its own.
    std::string programName = argumentCount > 0 ? savedArguments().front() : windowTitle;
    std::array<char*, 2> programArguments{programName.data(), nullptr};
    int programArgumentCount = 1;
    printToolkitMessages();
    ignorePluginsBesideProgram();
    std::optional<NoSessionBusLaunch> noSessionBusLaunch(std::in_place);
    LinuxApplication application(programArgumentCount, programArguments.data());
    QApplication::setApplicationDisplayName(plainText(windowTitle));
    QApplication::setDesktopFileName(kDesktopFileName);
    QApplication::setWindowIcon(windowIcon());
    QApplication::setQuitOnLastWindowClosed(false);

    const MainQueueService mainQueueService;
    std::unique_ptr<Session> session;
    mainQueueAsync([&] {
        delegate.applicationDidFinishLaunching();
        session = std::make_unique<Session>(windowTitle, delegate);
        noSessionBusLaunch.reset(); // Qt has looked for the bus; the engine finds the environment as it was
        session->start(makeViewController);
    });
    QApplication::exec();
}

std::vector<std::string> processArguments() { return savedArguments(); }

void activateIgnoringOtherApps(bool ignoringOtherApps) {
    MainWindow* window = MainWindow::instance();
    if (window == nullptr) {
        return;
    }
    if (ignoringOtherApps) {
        window->raise();
    }
    window->activateWindow();
}

void endProcess(int status) {
    // Every printed line is with the system already; see printLine.
    _exit(status);
}

} // namespace orvane::platform
