#pragma once

#include <memory>
#include <string>

namespace orvane::platform {

/// Components from 0.0 to 1.0 in the standard RGB space.
struct Color {
    double red;
    double green;
    double blue;
    double alpha;

    bool operator==(const Color&) const = default;
};

/// A text that the user reads but does not edit: plain text, markup shown as it stands; a long text wraps, in
/// a word if need be, and never changes the window's size. Main thread.
class TextField {
public:
    virtual ~TextField() = default;
    virtual void setStringValue(const std::string& stringValue) = 0;
    virtual void setTextColor(const Color& textColor) = 0;
    virtual void setSystemFontOfSize(double size) = 0; ///< in points of 1/72 inch at scale 1
};

/// The progress bar. Main thread.
class LevelIndicator {
public:
    virtual ~LevelIndicator() = default;
    virtual void setMinValue(double minValue) = 0;
    virtual void setMaxValue(double maxValue) = 0;

    /// Any value is kept as it is, infinities and NaN included; only its drawing is bounded by the range.
    virtual void setDoubleValue(double doubleValue) = 0;
};

class Button : public std::enable_shared_from_this<Button> {
public:
    virtual ~Button() = default;
    virtual void setTitle(const std::string& title) = 0; ///< main thread

    /// Any thread; returns at once. The change is made on the main thread, in order with the other updates of
    /// the window.
    void setEnabled(bool enabled);

private:
    virtual void applyEnabled(bool enabled) = 0; ///< main thread
};

/// What the window's content is painted on. Main thread.
class Layer {
public:
    virtual ~Layer() = default;
    virtual void setBackgroundColor(const Color& backgroundColor) = 0;
};

/// Main thread.
class Window {
public:
    virtual ~Window() = default;
    virtual void setMovableByWindowBackground(bool movable) = 0;
    virtual void displayIfNeeded() = 0; ///< paints at once what has changed, without running the event loop
    virtual void orderOut() = 0;        ///< takes the window off the screen
};

/// What the main window consists of. The platform owns all of it; a controller keeps weak references.
struct MainWindowControls {
    std::shared_ptr<Button> cancelButton;
    std::shared_ptr<TextField> textError;
    std::shared_ptr<TextField> textStep;
    std::shared_ptr<LevelIndicator> progressBar;
    std::shared_ptr<Window> window;
    std::shared_ptr<Layer> layer; ///< absent where the view has no backing layer
};

} // namespace orvane::platform
