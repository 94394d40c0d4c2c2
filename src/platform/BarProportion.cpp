#include "platform/BarProportion.h"

#include <algorithm>

namespace orvane::platform {

double barProportion(double lowest, double highest, double value) {
    const double exact = (value - lowest) / (highest - lowest);
    return exact > 0 ? std::min(exact, 1.0) : 0.0;
}

} // namespace orvane::platform
