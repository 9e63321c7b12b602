#include "platform/ui/Frame.h"

#include <QPainter>

namespace qor {

void Frame::paintEvent(QPaintEvent* /*event*/)
{
    constexpr int captionLeft = 8;
    constexpr int captionPadding = 3;
    constexpr int cornerRadius = 3;
    const QFontMetrics metrics = fontMetrics();
    const QRect caption(captionLeft, 0, metrics.horizontalAdvance(title()) + 2 * captionPadding, metrics.height());

    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setClipRegion(QRegion(rect()) - caption);
    painter.setPen(palette().color(QPalette::Mid));
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, metrics.height() / 2.0, -0.5, -0.5), cornerRadius,
                            cornerRadius);
    painter.setClipping(false);
    painter.setPen(palette().color(isEnabled() ? QPalette::Active : QPalette::Disabled, QPalette::WindowText));
    painter.drawText(caption, Qt::AlignCenter, title());
}

} // namespace qor
