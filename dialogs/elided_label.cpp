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

void ElidedLabel::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    drawFrame(&painter);
    style()->drawItemText(&painter, contentsRect(), static_cast<int>(alignment()), palette(),
                          isEnabled(), shown_text(), foregroundRole());
}

QString ElidedLabel::shown_text() const
{
    return fontMetrics().elidedText(text(), Qt::ElideMiddle, contentsRect().width());
}
