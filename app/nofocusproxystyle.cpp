#include "app/nofocusproxystyle.h"

NoFocusProxyStyle::NoFocusProxyStyle() : QProxyStyle(static_cast<QStyle*>(nullptr))
{}

NoFocusProxyStyle::~NoFocusProxyStyle() = default;

void NoFocusProxyStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option,
                                      QPainter* painter, const QWidget* widget) const
{
    if (element != QStyle::PE_FrameFocusRect) {
        QProxyStyle::drawPrimitive(element, option, painter, widget);
    }
}
