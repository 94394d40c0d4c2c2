#pragma once

#include "platform/Controls.h"

#include <QMainWindow>

#include <functional>
#include <optional>
#include <string>
#include <utility>

class QAction;
class QMenu;
class QVBoxLayout;

namespace orvane::platform {

class GroundButton;
class ProgressBar;

/// The window with its four controls. It never closes: a close request is a wish to quit. Main thread.
class MainWindow final : public QMainWindow {
public:
    /// What the window's user can ask for. None of it is called while a modal alert is up.
    struct Commands {
        std::function<void()> cancel;
        std::function<void()> quit;
        std::function<std::string()> quitTitle;
    };

    explicit MainWindow(const QString& title);
    ~MainWindow() override;

    /// The one main window; absent before it was made.
    static MainWindow* instance();

    const MainWindowControls& controls() const { return controls_; }
    void connectCommands(Commands commands) { commands_ = std::move(commands); }

    /// Runs the event loop, without the user's input, until the shown window was painted for the first time
    /// or a bounded time has passed. A window manager or compositor decides when that is, if ever.
    void awaitFirstExpose();

    void setBackgroundColor(const QColor& color);
    void setMovableByBackground(bool movable) { isMovableByBackground_ = movable; }

protected:
    void closeEvent(QCloseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void addTexts(QVBoxLayout& layout);
    void addProgressBar(QVBoxLayout& layout);
    void addCancelButton(QVBoxLayout& layout);
    void addQuitMenu();
    void openMenu(const QPoint& globalPosition);

    MainWindowControls controls_;
    Commands commands_;
    std::optional<QColor> backgroundColor_;
    bool isMovableByBackground_ = false;
    ProgressBar* bar_ = nullptr;
    GroundButton* cancelButton_ = nullptr;
    QMenu* menu_ = nullptr;
    QAction* quitAction_ = nullptr;
};

} // namespace orvane::platform
