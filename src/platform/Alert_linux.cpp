#include "platform/Alert.h"

#include "platform/AlertIcon_linux.h"
#include "platform/MainWindow_linux.h"
#include "platform/ProgrammingError.h"
#include "platform/Queue_linux.h"
#include "platform/WrappingText_linux.h"

#include <QApplication>
#include <QDialog>
#include <QEventLoop>
#include <QHBoxLayout>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>

#include <algorithm>
#include <optional>

namespace orvane::platform {

namespace {

constexpr int kWidestText = 380 + 2 * kTextOverhang;
constexpr int kNarrowestText = 240 + 2 * kTextOverhang;
constexpr double kTallestTextOfScreen = 0.6;
constexpr int kMargin = 24;
constexpr int kSpacing = 16;
constexpr int kButtonSpacing = 8;
constexpr QSize kLeastButtonSize(88, 28);

/// What an alert's width takes up beside its text: margins, icon, spacing and a window manager's frame.
constexpr int kBesideText = 2 * kMargin + kAlertIconExtent + kSpacing - 2 * kTextOverhang + 8;

/// A window that a minimised parent might hide is better off without it.
QWidget* alertParent() {
    MainWindow* window = MainWindow::instance();
    return window != nullptr && window->isVisible() && !window->isMinimized() ? window : nullptr;
}

/// Nothing but its buttons ends it, so neither Escape nor a close request may reject it.
class AlertDialog final : public QDialog {
public:
    AlertDialog(const Alert& alert, QWidget* parent);

    /// The index of the button that was pressed.
    int run();

    void reject() override {}

private:
    QWidget* makeMessage(const Alert& alert);
    QHBoxLayout* makeButtonRow(const Alert& alert);
    void addButton(QHBoxLayout& row, const std::string& title);
    void answer(int index);

    QEventLoop loop_;
    int buttonCount_ = 0;
    std::optional<int> pressedButton_;
};

AlertDialog::AlertDialog(const Alert& alert, QWidget* parent)
    : QDialog(parent, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint) {
    setWindowTitle(QGuiApplication::applicationDisplayName());
    setWindowModality(Qt::ApplicationModal);
    setAccessibleDescription(plainText(alert.messageText));

    auto* top = new QHBoxLayout;
    top->setSpacing(kSpacing - kTextOverhang);
    top->addWidget(new AlertIcon(alert.style, this), 0, Qt::AlignTop);
    top->addWidget(makeMessage(alert), 0, Qt::AlignVCenter);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(kMargin, kMargin, kMargin - kTextOverhang, kMargin);
    layout->setSpacing(kSpacing);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    layout->addLayout(top);
    layout->addLayout(makeButtonRow(alert));
}

int AlertDialog::run() {
    show();
    raise();
    activateWindow();
    loop_.exec();
    if (!pressedButton_) {
        programmingError("the event loop ended under an alert");
    }
    return *pressedButton_;
}

QWidget* AlertDialog::makeMessage(const Alert& alert) {
    const QString text = plainText(alert.messageText);
    WrappingLabel measure(nullptr);
    measure.setPlainText(text);
    const QSize room = screen()->availableGeometry().size();
    const int widest = std::clamp(room.width() - kBesideText, kNarrowestText, kWidestText);
    const int width = std::max(kNarrowestText, measure.balancedWidth(widest));
    auto* message = new ScrollingText(width, this);
    message->setText(text);
    const int tallest = qRound(room.height() * kTallestTextOfScreen);
    message->setFixedSize(width, std::min(message->sizeHint().height(), tallest));
    return message;
}

QHBoxLayout* AlertDialog::makeButtonRow(const Alert& alert) {
    auto* row = new QHBoxLayout;
    row->setContentsMargins(0, 0, kTextOverhang, 0);
    row->setSpacing(kButtonSpacing);
    row->addStretch(1);
    for (const std::string& title : alert.buttonTitles) {
        addButton(*row, title);
    }
    return row;
}

void AlertDialog::addButton(QHBoxLayout& row, const std::string& title) {
    const int index = buttonCount_++;
    auto* button = new QPushButton(plainTitle(title), this);
    button->setMinimumSize(kLeastButtonSize);
    if (index == 0) {
        button->setDefault(true);
        button->setFocus();
    }
    connect(button, &QPushButton::clicked, this, [this, index] { answer(index); });
    row.addWidget(button);
}

/// Assistive technology can press a button of an alert that a newer one covers; mouse and keyboard cannot.
void AlertDialog::answer(int index) {
    if (QApplication::activeModalWidget() == this) {
        pressedButton_ = index;
        loop_.quit();
    }
}

/// An open menu holds mouse and keyboard and would keep the user from answering.
void closeMenus() {
    while (QWidget* popup = QApplication::activePopupWidget()) {
        popup->close();
    }
}

/// A window manager does so by itself; without one the keyboard would be left to no window.
void giveKeyboardBack() {
    QWidget* olderAlert = QApplication::activeModalWidget();
    if (QWidget* window = olderAlert != nullptr ? olderAlert : alertParent()) {
        window->activateWindow();
    }
}

} // namespace

std::int64_t Alert::runModal() const {
    if (buttonTitles.empty()) {
        programmingError("an alert without a button");
    }
    std::int64_t response = 0;
    runOnMainThreadAndWait([&] {
        closeMenus();
        response = kAlertFirstButtonReturn + AlertDialog(*this, alertParent()).run();
        giveKeyboardBack();
    });
    return response;
}

} // namespace orvane::platform
