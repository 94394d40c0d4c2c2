#pragma once

#include "platform/Controls.h"

#include <QColor>
#include <QProgressBar>
#include <QPushButton>

#include <functional>

namespace orvane::platform {

class ScrollingText;

QColor colorFrom(const Color& color);

/// A thin bar that draws any value, bounded by its range, and tells assistive technology the value in whole
/// steps.
class ProgressBar final : public QProgressBar {
public:
    explicit ProgressBar(QWidget* parent);

    void setLowest(double lowest);
    void setHighest(double highest);
    void setExactValue(double value);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    double proportion() const;
    void refresh();

    double lowest_ = 0;
    double highest_ = 100;
    double value_ = 0;
};

/// The button on the window's ground, whose colour no desktop changes; so this one keeps its own colours too:
/// white, with writing and focus ring in the colour of the ground.
class GroundButton final : public QPushButton {
public:
    explicit GroundButton(QWidget* parent);

    void setGround(const QColor& ground);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QColor faceColor() const;

    QColor ground_ = Qt::black;
};

class LinuxTextField final : public TextField {
public:
    using TextObserver = std::function<void(const std::string& stringValue)>;

    /// `area` outlives this. `observer`, if any, is told of each text set.
    explicit LinuxTextField(ScrollingText& area, TextObserver observer = {});

    void setStringValue(const std::string& stringValue) override;
    void setTextColor(const Color& textColor) override;
    void setSystemFontOfSize(double size) override;

private:
    ScrollingText& area_;
    TextObserver observer_;
};

class LinuxLevelIndicator final : public LevelIndicator {
public:
    explicit LinuxLevelIndicator(ProgressBar& bar) : bar_(bar) {}

    void setMinValue(double minValue) override { bar_.setLowest(minValue); }
    void setMaxValue(double maxValue) override { bar_.setHighest(maxValue); }
    void setDoubleValue(double doubleValue) override { bar_.setExactValue(doubleValue); }

private:
    ProgressBar& bar_;
};

class LinuxButton final : public Button {
public:
    explicit LinuxButton(QPushButton& button) : button_(button) {}

    void setTitle(const std::string& title) override;

private:
    void applyEnabled(bool enabled) override;

    QPushButton& button_;
};

} // namespace orvane::platform
