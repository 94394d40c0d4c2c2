#include "platform/Controls_linux.h"

#include "platform/Queue_linux.h"
#include "platform/WrappingText_linux.h"

#include <QApplication>
#include <QFont>
#include <QPainter>
#include <QPainterPath>
#include <QPushButton>

#include <algorithm>
#include <cmath>
#include <utility>

namespace orvane::platform {

namespace {

constexpr int kBarHeight = 8;
constexpr int kGrooveAlpha = 64; ///< of 255: a quarter

/// Far inside the range of `int`, so that rounding cannot leave it.
constexpr double kLargestWholeValue = 1e9;

int wholeValue(double value) {
    if (std::isnan(value)) {
        return 0;
    }
    return static_cast<int>(std::lround(std::clamp(value, -kLargestWholeValue, kLargestWholeValue)));
}

float component(double value) { return static_cast<float>(std::clamp(value, 0.0, 1.0)); }

QPainterPath roundedBar(const QRectF& area) {
    QPainterPath path;
    path.addRoundedRect(area, area.height() / 2, area.height() / 2);
    return path;
}

QPainterPath leftPart(const QRectF& area, double proportion) {
    QPainterPath path;
    path.addRect(QRectF(area.topLeft(), QSizeF(area.width() * proportion, area.height())));
    return path;
}

} // namespace

QColor colorFrom(const Color& color) {
    return QColor::fromRgbF(component(color.red), component(color.green), component(color.blue),
                            component(color.alpha));
}

ProgressBar::ProgressBar(QWidget* parent) : QProgressBar(parent) {
    setTextVisible(false);
    setFixedHeight(kBarHeight);
    refresh();
}

void ProgressBar::setLowest(double lowest) {
    lowest_ = lowest;
    refresh();
}

void ProgressBar::setHighest(double highest) {
    highest_ = highest;
    refresh();
}

void ProgressBar::setExactValue(double value) {
    value_ = value;
    refresh();
}

void ProgressBar::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF area = rect();
    const QPainterPath groove = roundedBar(area);
    painter.fillPath(groove, QColor(255, 255, 255, kGrooveAlpha));
    painter.fillPath(groove.intersected(leftPart(area, proportion())), Qt::white);
}

/// From 0 to 1. A value or a range that is not a number gives 0, an infinite value the end it lies beyond.
double ProgressBar::proportion() const {
    const double exact = (value_ - lowest_) / (highest_ - lowest_);
    return exact > 0 ? std::min(exact, 1.0) : 0.0;
}

void ProgressBar::refresh() {
    setRange(wholeValue(lowest_), wholeValue(highest_));
    setValue(wholeValue(lowest_ + proportion() * (highest_ - lowest_)));
    update();
}

LinuxTextField::LinuxTextField(ScrollingText& area, TextObserver observer)
    : area_(area), observer_(std::move(observer)) {}

void LinuxTextField::setStringValue(const std::string& stringValue) {
    area_.setText(plainText(stringValue));
    if (observer_) {
        observer_(stringValue);
    }
}

void LinuxTextField::setTextColor(const Color& textColor) { area_.setTextColor(colorFrom(textColor)); }

void LinuxTextField::setSystemFontOfSize(double size) {
    QFont font = QApplication::font();
    font.setPixelSize(std::max(1, wholeValue(size)));
    area_.setTextFont(font);
}

void LinuxButton::setTitle(const std::string& title) { button_.setText(plainTitle(title)); }

void LinuxButton::setEnabled(bool enabled) {
    runOnMainThreadAndWait([this, enabled] {
        button_.setEnabled(enabled);
        // A disabled button gives the focus away, and only the button itself can give the keyboard its way
        // back.
        if (enabled && button_.window()->focusWidget() == nullptr) {
            button_.setFocus();
        }
    });
}

} // namespace orvane::platform
