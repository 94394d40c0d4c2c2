#pragma once

#include "platform/Controls.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace orvane::platform {

enum class TerminateReply { cancel = 0, now = 1 };

/// Is told of the application's life. Every call comes on the main thread.
class ApplicationDelegate {
public:
    virtual ~ApplicationDelegate() = default;

    /// Once, before the main window is made.
    virtual void applicationDidFinishLaunching() = 0;

    /// The user asked to quit, from the menu, by its shortcut or, where no dock could bring a closed window
    /// back, by closing the window. May run a modal alert.
    virtual TerminateReply applicationShouldTerminate() = 0;

    virtual void applicationWillTerminate() = 0;
};

/// The base of the main window's controller.
///
/// The order on every platform, each step once and on the main thread:
///
/// 1. `ApplicationDelegate::applicationDidFinishLaunching`
/// 2. the window and its four controls are made, and the controller by its factory
/// 3. `connectOutlets`, with all controls, the window included
/// 4. `awakeFromNib`, `viewDidLoad`, `viewWillAppear`
/// 5. the window is shown
/// 6. `viewDidAppear`
///
/// Steps 2 to 6 are one item of the main queue: work that they submit to it runs after `viewDidAppear`.
class ViewControllerBase {
public:
    virtual ~ViewControllerBase() = default;

    virtual void connectOutlets(const MainWindowControls& controls) = 0;

    virtual void awakeFromNib() = 0;
    virtual void viewDidLoad() = 0;
    virtual void viewWillAppear() = 0;
    virtual void viewDidAppear() = 0;

    /// The Cancel button was pressed.
    virtual void cancelButtonClicked() = 0;

    /// The name of the menu's quit command, asked for each time a menu is shown.
    virtual std::string quitCommandTitle() = 0;

    /// The language of the texts, as a tag such as "fr-ch"; chosen in `viewWillAppear`.
    virtual std::string languageTag() = 0;
};

using ViewControllerFactory = std::function<std::shared_ptr<ViewControllerBase>()>;

/// Runs the application: makes the main window and its controller, then handles events. `windowTitle` names
/// the window. Normally the process ends inside; returns only if the platform's event loop does.
void applicationMain(int argumentCount, char** arguments, const std::string& windowTitle,
                     ApplicationDelegate& delegate, const ViewControllerFactory& makeViewController);

/// The process's argument vector, its first element included. Any thread, after `applicationMain` was
/// entered.
std::vector<std::string> processArguments();

/// Brings the application to the front; with `ignoringOtherApps` even if the user is busy in another one.
/// Main thread.
void activateIgnoringOtherApps(bool ignoringOtherApps);

/// Ends the process at once with `status`: nothing is waited for, not even a reader of standard output, and
/// no destructor runs that could race a running thread. Any thread.
[[noreturn]] void endProcess(int status);

} // namespace orvane::platform
