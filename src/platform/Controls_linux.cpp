#include "platform/Controls_linux.h"

#include "platform/BarProportion.h"
#include "platform/WindowMetrics.h"
#include "platform/WrappingText_linux.h"

#include <QApplication>
#include <QFont>
#include <QPainter>
#include <QPainterPath>
#include <QPen>

#include <algorithm>
#include <cmath>
#include <utility>

namespace orvane::platform {

namespace {

constexpr int kOutlineAlpha = 160; ///< of 255: what may be done without yet stands out from the ground

constexpr QSize kLeastButtonSize(96, 32);
constexpr int kButtonPadding = 20; ///< left and right of the title
constexpr qreal kCornerRadius = 4;
constexpr int kHoveredAlpha = 230;
constexpr int kPressedAlpha = 200;
constexpr qreal kRingInset = 3;
constexpr qreal kRingWidth = 2;

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

/// The whole way is outlined; what is done of it is filled.
void ProgressBar::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF area = rect();
    painter.setPen(QColor(255, 255, 255, kOutlineAlpha));
    painter.drawPath(roundedBar(area.adjusted(0.5, 0.5, -0.5, -0.5)));
    painter.fillPath(roundedBar(area).intersected(leftPart(area, proportion())), Qt::white);
}

double ProgressBar::proportion() const { return barProportion(lowest_, highest_, value_); }

void ProgressBar::refresh() {
    setRange(wholeValue(lowest_), wholeValue(highest_));
    // Qt would paint the whole window at once, for each of many values; it is to happen when there is time.
    setUpdatesEnabled(false);
    setValue(wholeValue(lowest_ + proportion() * (highest_ - lowest_)));
    setUpdatesEnabled(true);
    update();
}

GroundButton::GroundButton(QWidget* parent) : QPushButton(parent) { setAttribute(Qt::WA_Hover); }

void GroundButton::setGround(const QColor& ground) {
    ground_ = ground;
    update();
}

QSize GroundButton::sizeHint() const {
    const QSize title = fontMetrics().size(Qt::TextShowMnemonic, text());
    return QSize(title.width() + 2 * kButtonPadding, title.height() + kButtonPadding / 2)
        .expandedTo(kLeastButtonSize);
}

QSize GroundButton::minimumSizeHint() const { return kLeastButtonSize; }

void GroundButton::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF area = rect();
    if (isEnabled()) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(faceColor());
        painter.drawRoundedRect(area, kCornerRadius, kCornerRadius);
    } else {
        painter.setPen(QColor(255, 255, 255, kOutlineAlpha));
        painter.drawRoundedRect(area.adjusted(0.5, 0.5, -0.5, -0.5), kCornerRadius, kCornerRadius);
    }
    if (hasFocus()) {
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(ground_, kRingWidth));
        const qreal inset = kRingInset + kRingWidth / 2;
        painter.drawRoundedRect(area.adjusted(inset, inset, -inset, -inset), kCornerRadius / 2,
                                kCornerRadius / 2);
    }
    painter.setPen(isEnabled() ? ground_ : QColor(255, 255, 255, kOutlineAlpha));
    painter.drawText(rect(), Qt::AlignCenter | Qt::TextShowMnemonic, text());
}

/// A little of the ground shows through under the mouse, more when pressed.
QColor GroundButton::faceColor() const {
    const int alpha = isDown() ? kPressedAlpha : underMouse() ? kHoveredAlpha : 255;
    return {255, 255, 255, alpha};
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

void LinuxButton::applyEnabled(bool enabled) {
    button_.setEnabled(enabled);
    // A disabled button gives the focus away, and only the button itself can give the keyboard its way back.
    if (enabled && button_.window()->focusWidget() == nullptr) {
        button_.setFocus();
    }
}

} // namespace orvane::platform
