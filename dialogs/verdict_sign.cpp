#include "dialogs/verdict_sign.h"

#include <QPainter>
#include <QPixmap>
#include <QPolygonF>

namespace {

// Drawn on a grid of 16 by 16.
constexpr qreal grid = 16;

QPixmap draw(bool good, const QColor& colour, int pixels)
{
    QPixmap picture(pixels, pixels);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(pixels / grid, pixels / grid);
    painter.setPen(QPen(colour, 2.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    if (good) {
        painter.drawPolyline(QPolygonF({{3, 8.5}, {6.5, 12.5}, {13, 3.5}}));
    } else {
        painter.drawLine(QPointF(4, 4), QPointF(12, 12));
        painter.drawLine(QPointF(12, 4), QPointF(4, 12));
    }
    return picture;
}

} // namespace

QIcon verdict_sign(bool good, const QColor& colour)
{
    QIcon icon;
    for (const int pixels : {16, 24, 32, 48, 64}) {
        const QPixmap picture = draw(good, colour, pixels);
        icon.addPixmap(picture, QIcon::Normal);
        icon.addPixmap(picture, QIcon::Disabled);
    }
    return icon;
}
