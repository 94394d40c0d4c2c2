#include "tests/support/RecordingControls.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <utility>

namespace orvane::test {

namespace {

std::string colorText(const platform::Color& color) {
    return numberText(color.red) + " " + numberText(color.green) + " " + numberText(color.blue) + " " +
           numberText(color.alpha);
}

/// What all controls share: their name, the journal, and the one thread that may change them.
class Recorder {
public:
    Recorder(std::string name, std::shared_ptr<Journal> journal)
        : name_(std::move(name)), journal_(std::move(journal)) {}

    void record(const std::string& effect) const {
        EXPECT_EQ(std::this_thread::get_id(), mainThread_)
            << name_ << " was changed outside the main thread: " << effect;
        journal_->add(name_ + " " + effect);
    }

private:
    std::string name_;
    std::shared_ptr<Journal> journal_;
    std::thread::id mainThread_ = std::this_thread::get_id();
};

class RecordingButton final : public platform::Button, Recorder {
public:
    using Recorder::Recorder;
    void setTitle(const std::string& title) override { record("title \"" + title + "\""); }

private:
    void applyEnabled(bool enabled) override { record(enabled ? "enabled" : "disabled"); }
};

class RecordingTextField final : public platform::TextField, Recorder {
public:
    using Recorder::Recorder;
    void setStringValue(const std::string& stringValue) override { record("text \"" + stringValue + "\""); }
    void setTextColor(const platform::Color& textColor) override { record("color " + colorText(textColor)); }
    void setSystemFontOfSize(double size) override { record("font size " + numberText(size)); }
};

class RecordingLevelIndicator final : public platform::LevelIndicator, Recorder {
public:
    using Recorder::Recorder;
    void setMinValue(double minValue) override { record("min " + numberText(minValue)); }
    void setMaxValue(double maxValue) override { record("max " + numberText(maxValue)); }
    void setDoubleValue(double doubleValue) override { record("value " + numberText(doubleValue)); }
};

class RecordingWindow final : public platform::Window, Recorder {
public:
    using Recorder::Recorder;
    void setMovableByWindowBackground(bool movable) override { record(movable ? "movable" : "not movable"); }
    void displayIfNeeded() override { record("displayed"); }
    void orderOut() override { record("ordered out"); }
};

class RecordingLayer final : public platform::Layer, Recorder {
public:
    using Recorder::Recorder;
    void setBackgroundColor(const platform::Color& backgroundColor) override {
        record("background " + colorText(backgroundColor));
    }
};

} // namespace

platform::MainWindowControls makeRecordingControls(const std::shared_ptr<Journal>& journal) {
    return {
        .cancelButton = std::make_shared<RecordingButton>("cancelButton", journal),
        .textError = std::make_shared<RecordingTextField>("textError", journal),
        .textStep = std::make_shared<RecordingTextField>("textStep", journal),
        .progressBar = std::make_shared<RecordingLevelIndicator>("progressBar", journal),
        .window = std::make_shared<RecordingWindow>("window", journal),
        .layer = std::make_shared<RecordingLayer>("layer", journal),
    };
}

} // namespace orvane::test
