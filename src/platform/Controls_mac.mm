#include "platform/Controls_mac.h"

#include "platform/Foundation_mac.h"
#include "platform/ProgressBar_mac.h"
#include "platform/ScrollingText_mac.h"
#include "platform/WindowMetrics.h"
#include "platform/WindowPresence.h"

#import <QuartzCore/QuartzCore.h>

namespace orvane::platform {

namespace {

constexpr NSLayoutPriority kTextMayShrink = 400; ///< below what keeps three lines of each text

NSColor* toNSColor(const Color& color) {
    return [NSColor colorWithSRGBRed:color.red green:color.green blue:color.blue alpha:color.alpha];
}

class MacTextField final : public TextField {
public:
    /// VoiceOver names `described`, if there is one, by this field's text.
    explicit MacTextField(OrvaneScrollingText* area, NSView* described = nil)
        : area_(area), described_(described) {}

    void setStringValue(const std::string& stringValue) override {
        [area_ showText:toNSString(stringValue)];
        described_.accessibilityLabel = area_.label.stringValue;
    }

    void setTextColor(const Color& textColor) override { area_.label.textColor = toNSColor(textColor); }
    void setSystemFontOfSize(double size) override { area_.label.font = [NSFont systemFontOfSize:size]; }

private:
    OrvaneScrollingText* const area_;
    NSView* const described_;
};

class MacLevelIndicator final : public LevelIndicator {
public:
    explicit MacLevelIndicator(OrvaneProgressBar* bar) : bar_(bar) {}

    void setMinValue(double minValue) override {
        bar_.minValue = minValue;
        [bar_ tellValue];
    }

    void setMaxValue(double maxValue) override {
        bar_.maxValue = maxValue;
        [bar_ tellValue];
    }

    void setDoubleValue(double doubleValue) override {
        bar_.doubleValue = doubleValue;
        [bar_ tellValue];
    }

private:
    OrvaneProgressBar* const bar_;
};

/// A title in the colour of the window's background, whatever the button's state: AppKit's own colour for the
/// title of a disabled button cannot be read on that background.
class MacButton final : public Button {
public:
    explicit MacButton(NSButton* button) : button_(button) {}

    void setTitle(const std::string& title) override {
        title_ = toNSString(title);
        showTitle();
    }

    void setTitleColor(NSColor* color) {
        color_ = color;
        showTitle();
    }

private:
    void applyEnabled(bool enabled) override { button_.enabled = enabled; }

    void showTitle() {
        NSDictionary<NSString*, id>* const attributes = @{
            NSFontAttributeName : [NSFont systemFontOfSize:NSFont.systemFontSize],
            NSForegroundColorAttributeName : color_,
        };
        button_.attributedTitle = [[NSAttributedString alloc] initWithString:title_ attributes:attributes];
    }

    NSButton* const button_;
    NSString* title_ = @"";
    NSColor* color_ = NSColor.blackColor;
};

class MacLayer final : public Layer {
public:
    MacLayer(CALayer* layer, std::shared_ptr<MacButton> button) : layer_(layer), button_(std::move(button)) {}

    void setBackgroundColor(const Color& backgroundColor) override {
        NSColor* const color = toNSColor(backgroundColor);
        layer_.backgroundColor = color.CGColor;
        button_->setTitleColor(color);
    }

private:
    CALayer* const layer_;
    const std::shared_ptr<MacButton> button_;
};

class MacWindow final : public Window {
public:
    MacWindow(NSWindow* window, WindowPresence& presence) : window_(window), presence_(presence) {}

    void setMovableByWindowBackground(bool movable) override { window_.movableByWindowBackground = movable; }
    void displayIfNeeded() override { [window_ displayIfNeeded]; }

    void orderOut() override {
        presence_.withdraw();
        [window_ orderOut:nil];
    }

private:
    NSWindow* const window_;
    WindowPresence& presence_;
};

NSArray<NSLayoutConstraint*>* fullWidth(NSView* view, NSView* inside) {
    return @[
        [view.leadingAnchor constraintEqualToAnchor:inside.leadingAnchor constant:kWindowMargin],
        [view.trailingAnchor constraintEqualToAnchor:inside.trailingAnchor constant:-kWindowMargin],
    ];
}

/// From top to bottom: step, error, bar, and the button at the lower right.
void layOut(NSView* view, OrvaneScrollingText* step, OrvaneScrollingText* error, NSView* bar,
            NSView* cancel) {
    for (NSView* control in @[ step, error, bar, cancel ]) {
        control.translatesAutoresizingMaskIntoConstraints = NO;
        [view addSubview:control];
    }
    [NSLayoutConstraint activateConstraints:fullWidth(step, view)];
    [NSLayoutConstraint activateConstraints:fullWidth(error, view)];
    [NSLayoutConstraint activateConstraints:fullWidth(bar, view)];
    // Of two long texts the error's gives way first, and no further than to its first lines.
    [step limitHeightWithPriority:kTextMayShrink + 1];
    [error limitHeightWithPriority:kTextMayShrink];
    [NSLayoutConstraint activateConstraints:@[
        [view.widthAnchor constraintEqualToConstant:kWindowWidth],
        [view.heightAnchor constraintEqualToConstant:kWindowHeight],
        [step.topAnchor constraintEqualToAnchor:view.topAnchor constant:kWindowMargin],
        [error.topAnchor constraintEqualToAnchor:step.bottomAnchor constant:kTextSpacing],
        [error.bottomAnchor constraintLessThanOrEqualToAnchor:bar.topAnchor constant:-kControlSpacing],
        [bar.heightAnchor constraintEqualToConstant:kBarHeight],
        [bar.bottomAnchor constraintEqualToAnchor:cancel.topAnchor constant:-kControlSpacing],
        [cancel.leadingAnchor constraintGreaterThanOrEqualToAnchor:view.leadingAnchor constant:kWindowMargin],
        [cancel.trailingAnchor constraintEqualToAnchor:view.trailingAnchor constant:-kWindowMargin],
        [cancel.bottomAnchor constraintEqualToAnchor:view.bottomAnchor constant:-kWindowMargin],
    ]];
}

} // namespace

MainView makeMainView(id cancelTarget, SEL cancelAction) {
    constexpr CGFloat textWidth = kWindowWidth - 2 * kWindowMargin;
    NSView* const view = [[NSView alloc] initWithFrame:NSMakeRect(0, 0, kWindowWidth, kWindowHeight)];
    view.wantsLayer = YES;
    OrvaneScrollingText* const step = [OrvaneScrollingText areaOfWidth:textWidth];
    OrvaneScrollingText* const error = [OrvaneScrollingText areaOfWidth:textWidth];
    OrvaneProgressBar* const bar = [OrvaneProgressBar bar];
    NSButton* const cancel = [NSButton buttonWithTitle:@"" target:cancelTarget action:cancelAction];
    layOut(view, step, error, bar, cancel);
    cancel.nextKeyView = step;
    step.nextKeyView = error;
    error.nextKeyView = cancel;
    const auto cancelButton = std::make_shared<MacButton>(cancel);
    return {view,
            {
                .cancelButton = cancelButton,
                .textError = std::make_shared<MacTextField>(error),
                .textStep = std::make_shared<MacTextField>(step, bar),
                .progressBar = std::make_shared<MacLevelIndicator>(bar),
                .window = nullptr,
                .layer = std::make_shared<MacLayer>(view.layer, cancelButton),
            },
            cancel};
}

std::shared_ptr<Window> makeWindowControl(NSWindow* window, WindowPresence& presence) {
    return std::make_shared<MacWindow>(window, presence);
}

} // namespace orvane::platform
