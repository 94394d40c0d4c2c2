#include "platform/MainWindow_linux.h"

#include "platform/Controls_linux.h"
#include "platform/WindowMetrics.h"
#include "platform/WrappingText_linux.h"

#include <QAction>
#include <QApplication>
#include <QContextMenuEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>
#include <QShortcut>
#include <QTimer>
#include <QVBoxLayout>
#include <QWindow>

#include <chrono>

namespace orvane::platform {

namespace {

/// Room on the screen for the frame that a window manager adds.
constexpr QSize kFrame(8, 40);

/// A window on another desktop, or on a locked screen, may never be exposed; the run must begin all the same.
constexpr std::chrono::seconds kLongestWaitForExpose{3};

MainWindow* theMainWindow = nullptr;

class LinuxWindow final : public Window {
public:
    explicit LinuxWindow(MainWindow& window) : window_(window) {}

    void setMovableByWindowBackground(bool movable) override { window_.setMovableByBackground(movable); }
    void displayIfNeeded() override {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
        window_.repaint();
    }
    void orderOut() override { window_.hide(); }

private:
    MainWindow& window_;
};

class LinuxLayer final : public Layer {
public:
    explicit LinuxLayer(MainWindow& window) : window_(window) {}

    void setBackgroundColor(const Color& backgroundColor) override {
        window_.setBackgroundColor(colorFrom(backgroundColor));
    }

private:
    MainWindow& window_;
};

/// Alerts block keyboard and mouse by themselves; assistive technology acts on a blocked window all the same.
void callUnlessBlocked(const std::function<void()>& command) {
    if (command && QApplication::activeModalWidget() == nullptr) {
        command();
    }
}

} // namespace

MainWindow::MainWindow(const QString& title) {
    theMainWindow = this;
    setWindowTitle(title);
    setWindowFlag(Qt::WindowMaximizeButtonHint, false);
    const QRect room = screen()->availableGeometry();
    setFixedSize(QSize(kWindowWidth, kWindowHeight).boundedTo(room.size() - kFrame));
    move(room.center() - rect().center());

    setCentralWidget(new QWidget(this));
    auto* layout = new QVBoxLayout(centralWidget());
    layout->setContentsMargins(kWindowMargin - kTextOverhang, kWindowMargin, kWindowMargin - kTextOverhang,
                               kWindowMargin);
    layout->setSpacing(0);
    addTexts(*layout);
    auto* controls = new QVBoxLayout;
    controls->setContentsMargins(kTextOverhang, 0, kTextOverhang, 0);
    controls->setSpacing(kControlSpacing);
    layout->addStretch(1);
    layout->addSpacing(kControlSpacing);
    layout->addLayout(controls);
    addProgressBar(*controls);
    addCancelButton(*controls);
    addQuitMenu();
    controls_.window = std::make_shared<LinuxWindow>(*this);
    controls_.layer = std::make_shared<LinuxLayer>(*this);
}

MainWindow::~MainWindow() { theMainWindow = nullptr; }

MainWindow* MainWindow::instance() { return theMainWindow; }

void MainWindow::awaitFirstExpose() {
    QTimer deadline;
    deadline.setSingleShot(true);
    deadline.start(kLongestWaitForExpose);
    // The window is painted within the event that exposes it.
    while (deadline.isActive() && !windowHandle()->isExposed()) {
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents | QEventLoop::WaitForMoreEvents);
    }
}

void MainWindow::addTexts(QVBoxLayout& layout) {
    const int textWidth = width() - 2 * (kWindowMargin - kTextOverhang);
    auto* step = new ScrollingText(textWidth, this);
    auto* error = new ScrollingText(textWidth, this);
    layout.addWidget(step);
    layout.addSpacing(kTextSpacing);
    layout.addWidget(error);

    // A screen reader thus says what it is that progresses.
    const auto nameBar = [this](const std::string& text) { bar_->setAccessibleName(plainText(text)); };
    controls_.textStep = std::make_shared<LinuxTextField>(*step, nameBar);
    controls_.textError = std::make_shared<LinuxTextField>(*error);
}

void MainWindow::addProgressBar(QVBoxLayout& layout) {
    bar_ = new ProgressBar(this);
    layout.addWidget(bar_);
    controls_.progressBar = std::make_shared<LinuxLevelIndicator>(*bar_);
}

void MainWindow::addCancelButton(QVBoxLayout& layout) {
    cancelButton_ = new GroundButton(this);
    cancelButton_->setMaximumWidth(width() - 2 * kWindowMargin);
    // Outside a dialog a button takes the Return key only if told so.
    cancelButton_->setAutoDefault(true);
    cancelButton_->setFocus();
    connect(cancelButton_, &QPushButton::clicked, this, [this] { callUnlessBlocked(commands_.cancel); });
    layout.addWidget(cancelButton_, 0, Qt::AlignRight);
    controls_.cancelButton = std::make_shared<LinuxButton>(*cancelButton_);
}

void MainWindow::addQuitMenu() {
    menu_ = new QMenu(this);
    quitAction_ = menu_->addAction(QString());
    quitAction_->setShortcut(Qt::CTRL | Qt::Key_Q);
    quitAction_->setShortcutVisibleInContextMenu(true);
    connect(quitAction_, &QAction::triggered, this, [this] { callUnlessBlocked(commands_.quit); });
    addAction(quitAction_);

    // Qt opens context menus at the menu key alone, which many keyboards lack.
    auto* menuShortcut = new QShortcut(Qt::SHIFT | Qt::Key_F10, this);
    connect(menuShortcut, &QShortcut::activated, this, [this] { openMenu(mapToGlobal(rect().center())); });
}

void MainWindow::setBackgroundColor(const QColor& color) {
    backgroundColor_ = color;
    cancelButton_->setGround(color);
    update();
}

void MainWindow::closeEvent(QCloseEvent* event) {
    event->ignore();
    callUnlessBlocked(commands_.quit);
}

void MainWindow::contextMenuEvent(QContextMenuEvent* event) { openMenu(event->globalPos()); }

void MainWindow::openMenu(const QPoint& globalPosition) {
    if (commands_.quitTitle) {
        quitAction_->setText(plainTitle(commands_.quitTitle()));
        menu_->popup(globalPosition);
    }
}

void MainWindow::mousePressEvent(QMouseEvent* event) {
    if (isMovableByBackground_ && event->button() == Qt::LeftButton) {
        windowHandle()->startSystemMove();
    }
}

void MainWindow::paintEvent(QPaintEvent* /*event*/) {
    if (backgroundColor_) {
        QPainter(this).fillRect(rect(), *backgroundColor_);
    }
}

} // namespace orvane::platform
