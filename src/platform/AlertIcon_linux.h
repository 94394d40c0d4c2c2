#pragma once

#include "platform/Alert.h"

#include <QWidget>

namespace orvane::platform {

/// The sign beside an alert's message, drawn rather than loaded so that it is crisp at every scale.
/// The side of the icon's square.
inline constexpr int kAlertIconExtent = 40;

class AlertIcon final : public QWidget {
public:
    AlertIcon(AlertStyle alertStyle, QWidget* parent);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    AlertStyle alertStyle_;
};

} // namespace orvane::platform
