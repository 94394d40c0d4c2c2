#pragma once

#include "platform/Controls.h"
#include "tests/support/Journal.h"

#include <memory>

namespace orvane::test {

/// The main window's controls as a test sees them: each call becomes a line of `journal`, for instance
///
///     textStep text "Download"        textStep color 1 1 1 1      textStep font size 16
///     progressBar min 0               progressBar value 42.5      cancelButton disabled
///     window movable                  window ordered out          layer background 0 0.5 1 1
///
/// A call from another thread than the one that made them fails the test, save for enabling the button.
platform::MainWindowControls makeRecordingControls(const std::shared_ptr<Journal>& journal);

} // namespace orvane::test
