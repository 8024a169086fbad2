#pragma once

#include <QProxyStyle>

/// The platform's own style without the dotted rectangle around the widget that has the focus.
class NoFocusProxyStyle : public QProxyStyle
{
  public:
    NoFocusProxyStyle();
    ~NoFocusProxyStyle() override;

    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
};
