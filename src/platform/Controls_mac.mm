#include "platform/Controls_mac.h"

#include "platform/Foundation_mac.h"

#import <QuartzCore/QuartzCore.h>

namespace orvane::platform {

namespace {

constexpr CGFloat kWindowWidth = 520;
constexpr CGFloat kWindowHeight = 260;
constexpr CGFloat kMargin = 24;
constexpr CGFloat kSpacing = 12;
constexpr CGFloat kBarHeight = 8;

NSColor* toNSColor(const Color& color) {
    return [NSColor colorWithSRGBRed:color.red green:color.green blue:color.blue alpha:color.alpha];
}

class MacTextField final : public TextField {
  public:
    /// VoiceOver names `described`, if there is one, by this field's text.
    explicit MacTextField(NSTextField* field, NSView* described = nil)
        : field_(field), described_(described) {}

    void setStringValue(const std::string& stringValue) override {
        field_.stringValue = toNSString(stringValue);
        described_.accessibilityLabel = field_.stringValue;
    }

    void setTextColor(const Color& textColor) override { field_.textColor = toNSColor(textColor); }
    void setSystemFontOfSize(double size) override { field_.font = [NSFont systemFontOfSize:size]; }

  private:
    NSTextField* const field_;
    NSView* const described_;
};

class MacLevelIndicator final : public LevelIndicator {
  public:
    explicit MacLevelIndicator(NSLevelIndicator* indicator) : indicator_(indicator) {}

    void setMinValue(double minValue) override { indicator_.minValue = minValue; }
    void setMaxValue(double maxValue) override { indicator_.maxValue = maxValue; }
    void setDoubleValue(double doubleValue) override { indicator_.doubleValue = doubleValue; }

  private:
    NSLevelIndicator* const indicator_;
};

class MacButton final : public Button {
  public:
    explicit MacButton(NSButton* button) : button_(button) {}

    void setTitle(const std::string& title) override { button_.title = toNSString(title); }

  private:
    void applyEnabled(bool enabled) override { button_.enabled = enabled; }

    NSButton* const button_;
};

class MacLayer final : public Layer {
  public:
    explicit MacLayer(CALayer* layer) : layer_(layer) {}

    void setBackgroundColor(const Color& backgroundColor) override {
        layer_.backgroundColor = toNSColor(backgroundColor).CGColor;
    }

  private:
    CALayer* const layer_;
};

class MacWindow final : public Window {
  public:
    explicit MacWindow(NSWindow* window) : window_(window) {}

    void setMovableByWindowBackground(bool movable) override { window_.movableByWindowBackground = movable; }
    void displayIfNeeded() override { [window_ displayIfNeeded]; }
    void orderOut() override { [window_ orderOut:nil]; }

  private:
    NSWindow* const window_;
};

/// A label that breaks long words and never widens the window.
NSTextField* makeLabel() {
    NSTextField* const label = [NSTextField wrappingLabelWithString:@""];
    label.preferredMaxLayoutWidth = kWindowWidth - 2 * kMargin;
    [label setContentCompressionResistancePriority:NSLayoutPriorityDefaultLow
                                    forOrientation:NSLayoutConstraintOrientationHorizontal];
    [label setContentCompressionResistancePriority:NSLayoutPriorityDefaultLow
                                    forOrientation:NSLayoutConstraintOrientationVertical];
    return label;
}

NSLevelIndicator* makeBar() {
    NSLevelIndicator* const bar = [[NSLevelIndicator alloc] initWithFrame:NSZeroRect];
    bar.levelIndicatorStyle = NSLevelIndicatorStyleContinuousCapacity;
    bar.fillColor = NSColor.whiteColor;
    return bar;
}

NSArray<NSLayoutConstraint*>* fullWidth(NSView* view, NSView* inside) {
    return @[
        [view.leadingAnchor constraintEqualToAnchor:inside.leadingAnchor constant:kMargin],
        [view.trailingAnchor constraintEqualToAnchor:inside.trailingAnchor constant:-kMargin],
    ];
}

/// From top to bottom: step, error, bar, and the button at the lower right.
void layOut(NSView* view, NSTextField* step, NSTextField* error, NSLevelIndicator* bar, NSButton* cancel) {
    for (NSView* control in @[ step, error, bar, cancel ]) {
        control.translatesAutoresizingMaskIntoConstraints = NO;
        [view addSubview:control];
    }
    [NSLayoutConstraint activateConstraints:fullWidth(step, view)];
    [NSLayoutConstraint activateConstraints:fullWidth(error, view)];
    [NSLayoutConstraint activateConstraints:fullWidth(bar, view)];
    [NSLayoutConstraint activateConstraints:@[
        [view.widthAnchor constraintEqualToConstant:kWindowWidth],
        [view.heightAnchor constraintEqualToConstant:kWindowHeight],
        [step.topAnchor constraintEqualToAnchor:view.topAnchor constant:kMargin],
        [error.topAnchor constraintEqualToAnchor:step.bottomAnchor constant:kSpacing],
        [error.bottomAnchor constraintLessThanOrEqualToAnchor:bar.topAnchor constant:-kSpacing],
        [bar.heightAnchor constraintEqualToConstant:kBarHeight],
        [bar.bottomAnchor constraintEqualToAnchor:cancel.topAnchor constant:-kSpacing],
        [cancel.trailingAnchor constraintEqualToAnchor:view.trailingAnchor constant:-kMargin],
        [cancel.bottomAnchor constraintEqualToAnchor:view.bottomAnchor constant:-kMargin],
    ]];
}

} // namespace

MainView makeMainView(id cancelTarget, SEL cancelAction) {
    NSView* const view = [[NSView alloc] initWithFrame:NSMakeRect(0, 0, kWindowWidth, kWindowHeight)];
    view.wantsLayer = YES;
    NSTextField* const step = makeLabel();
    NSTextField* const error = makeLabel();
    NSLevelIndicator* const bar = makeBar();
    NSButton* const cancel = [NSButton buttonWithTitle:@"" target:cancelTarget action:cancelAction];
    layOut(view, step, error, bar, cancel);
    return {view,
            {
                .cancelButton = std::make_shared<MacButton>(cancel),
                .textError = std::make_shared<MacTextField>(error),
                .textStep = std::make_shared<MacTextField>(step, bar),
                .progressBar = std::make_shared<MacLevelIndicator>(bar),
                .window = nullptr,
                .layer = std::make_shared<MacLayer>(view.layer),
            }};
}

std::shared_ptr<Window> makeWindowControl(NSWindow* window) { return std::make_shared<MacWindow>(window); }

} // namespace orvane::platform
