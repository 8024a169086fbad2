#include "dialogs/elided_label.h"

#include <QEvent>
#include <QPainter>
#include <QStyle>
#include <QTextDocument>

ElidedLabel::ElidedLabel(const QString& text) : QLabel(text)
{
    setTextFormat(Qt::PlainText);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

QSize ElidedLabel::sizeHint() const
{
    return at_most(80);
}

QSize ElidedLabel::minimumSizeHint() const
{
    return at_most(20);
}

QSize ElidedLabel::at_most(int characters) const
{
    const QSize whole = QLabel::sizeHint();
    return whole.boundedTo({characters * fontMetrics().averageCharWidth(), whole.height()});
}

bool ElidedLabel::event(QEvent* event)
{
    if (event->type() == QEvent::ToolTip) {
        // As rich text with everything escaped: a tool tip guesses whether it is given markup.
        setToolTip(shown_text() == text() ? QString() : Qt::convertFromPlainText(text()));
    }
    return QLabel::event(event);
}

void ElidedLabel::set_sign(const QIcon& sign)
{
    sign_ = sign;
    update();
}

int ElidedLabel::sign_width() const
{
    return sign_.isNull() ? 0 : 2 * fontMetrics().height();
}

void ElidedLabel::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    drawFrame(&painter);
    QRect area = contentsRect();
    if (!sign_.isNull()) {
        QRect place = area;
        place.setWidth(sign_width());
        const int side = fontMetrics().height() * 5 / 4;
        sign_.paint(&painter,
                    QStyle::alignedRect(Qt::LeftToRight, Qt::AlignCenter, {side, side}, place));
        // On both sides, so that a centred text stays where it was.
        area.adjust(sign_width(), 0, -sign_width(), 0);
    }
    style()->drawItemText(&painter, area, static_cast<int>(alignment()), palette(), isEnabled(),
                          shown_text(), foregroundRole());
}

QString ElidedLabel::shown_text() const
{
    const int width = contentsRect().width() - 2 * sign_width();
    return fontMetrics().elidedText(text(), Qt::ElideMiddle, width);
}
