#pragma once

namespace orvane::platform {

// The main window's measures on every platform, in points of 1/72 inch at scale 1.
inline constexpr int kWindowWidth = 520;
inline constexpr int kWindowHeight = 260;
inline constexpr int kWindowMargin = 24;   ///< between the window's edges and its controls
inline constexpr int kTextSpacing = 8;     ///< between step text and error text
inline constexpr int kControlSpacing = 16; ///< above the progress bar and between the bar and the button
inline constexpr int kBarHeight = 8;

} // namespace orvane::platform
