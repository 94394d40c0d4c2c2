#include "platform/MainWindow_linux.h"

#include "platform/Controls_linux.h"
#include "platform/WrappingText_linux.h"

#include <QAction>
#include <QApplication>
#include <QContextMenuEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QScreen>
#include <QShortcut>
#include <QVBoxLayout>
#include <QWindow>

namespace orvane::platform {

namespace {

constexpr QSize kWindowSize(520, 260);
constexpr int kMargin = 24;
constexpr int kTextWidth = kWindowSize.width() - 2 * kMargin;
constexpr int kTextSpacing = 8;
constexpr int kControlSpacing = 16;
constexpr QSize kLeastButtonSize(96, 28);

MainWindow* theMainWindow = nullptr;

class LinuxWindow final : public Window {
public:
    explicit LinuxWindow(MainWindow& window) : window_(window) {}

    void setMovableByWindowBackground(bool movable) override { window_.setMovableByBackground(movable); }
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
    setFixedSize(kWindowSize);
    move(screen()->availableGeometry().center() - rect().center());

    setCentralWidget(new QWidget(this));
    auto* layout = new QVBoxLayout(centralWidget());
    layout->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
    layout->setSpacing(0);
    addTextsAndProgressBar(*layout);
    addCancelButton(*layout);
    addQuitMenu();
    controls_.window = std::make_shared<LinuxWindow>(*this);
    controls_.layer = std::make_shared<LinuxLayer>(*this);
}

MainWindow::~MainWindow() { theMainWindow = nullptr; }

MainWindow* MainWindow::instance() { return theMainWindow; }

void MainWindow::addTextsAndProgressBar(QVBoxLayout& layout) {
    auto* step = new ScrollingText(kTextWidth, this);
    auto* error = new ScrollingText(kTextWidth, this);
    auto* bar = new ProgressBar(this);
    layout.addWidget(step);
    layout.addSpacing(kTextSpacing);
    layout.addWidget(error);
    layout.addStretch(1);
    layout.addSpacing(kControlSpacing);
    layout.addWidget(bar);

    // A screen reader thus says what it is that progresses.
    const auto nameBar = [bar](const std::string& stepText) { bar->setAccessibleName(plainText(stepText)); };
    controls_.textStep = std::make_shared<LinuxTextField>(*step, nameBar);
    controls_.textError = std::make_shared<LinuxTextField>(*error);
    controls_.progressBar = std::make_shared<LinuxLevelIndicator>(*bar);
}

void MainWindow::addCancelButton(QVBoxLayout& layout) {
    auto* button = new QPushButton(this);
    button->setMinimumSize(kLeastButtonSize);
    button->setMaximumWidth(kTextWidth);
    // Outside a dialog a button takes the Return key only if told so.
    button->setAutoDefault(true);
    button->setFocus();
    connect(button, &QPushButton::clicked, this, [this] { callUnlessBlocked(commands_.cancel); });
    layout.addSpacing(kControlSpacing);
    layout.addWidget(button, 0, Qt::AlignRight);
    controls_.cancelButton = std::make_shared<LinuxButton>(*button);
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
