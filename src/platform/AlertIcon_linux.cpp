#include "platform/AlertIcon_linux.h"

#include <QPainter>
#include <QPolygonF>

namespace orvane::platform {

namespace {

/// A triangle with an exclamation mark. The wide pen rounds the corners.
void drawWarning(QPainter& painter) {
    const QColor amber(0xF5, 0xB4, 0x00);
    const QColor ink(0x2B, 0x21, 0x00);
    painter.setPen(QPen(amber, 5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(amber);
    painter.drawPolygon(QPolygonF({{20, 5.5}, {36, 34.5}, {4, 34.5}}));
    painter.setPen(QPen(ink, 4, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(QPointF(20, 15), QPointF(20, 24));
    painter.drawPoint(QPointF(20, 31));
}

/// A disc with a cross.
void drawCritical(QPainter& painter) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0xDC, 0x3B, 0x3B));
    painter.drawEllipse(QPointF(20, 20), 18, 18);
    painter.setPen(QPen(Qt::white, 4, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(QPointF(13.5, 13.5), QPointF(26.5, 26.5));
    painter.drawLine(QPointF(26.5, 13.5), QPointF(13.5, 26.5));
}

} // namespace

AlertIcon::AlertIcon(AlertStyle alertStyle, QWidget* parent) : QWidget(parent), alertStyle_(alertStyle) {
    setFixedSize(kAlertIconExtent, kAlertIconExtent);
}

void AlertIcon::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (alertStyle_ == AlertStyle::critical) {
        drawCritical(painter);
    } else {
        drawWarning(painter);
    }
}

} // namespace orvane::platform
