#pragma once

namespace orvane::platform {

/// How much of a progress bar is filled, from 0 to 1, for any values. A value or a range that is not a number
/// gives 0, an infinite value the end beyond which it lies.
double barProportion(double lowest, double highest, double value);

} // namespace orvane::platform
