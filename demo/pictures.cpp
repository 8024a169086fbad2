#include "demo/pictures.h"

#include <QDir>
#include <QPainter>
#include <QPainterPath>
#include <QTextStream>

using namespace Qt::StringLiterals;

namespace {

// A frame of no particular desktop.
constexpr int title_height = 30;
constexpr int corner_radius = 7;
constexpr QColor frame_colour(178, 178, 178);
constexpr QColor title_colour(222, 222, 222);
constexpr QColor title_text_colour(60, 60, 60);

QPixmap framed(const QPixmap& content, const QString& title)
{
    QPixmap picture(content.width() + 2, content.height() + title_height + 2);
    picture.fill(Qt::transparent);
    const QRectF area = QRectF(picture.rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    QPainterPath outline;
    outline.addRoundedRect(area, corner_radius, corner_radius);

    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setClipPath(outline);
    painter.fillRect(picture.rect(), title_colour);
    painter.drawPixmap(1, title_height + 1, content);
    painter.setClipping(false);

    painter.setPen(title_text_colour);
    QFont font = painter.font();
    font.setBold(true);
    painter.setFont(font);
    painter.drawText(QRect(0, 0, picture.width(), title_height), Qt::AlignCenter, title);
    painter.setPen(frame_colour);
    painter.drawPath(outline);
    return picture;
}

} // namespace

Pictures::Pictures(const QString& folder, const QString& prefix) : folder_(folder), prefix_(prefix)
{
    QDir().mkpath(folder);
}

bool Pictures::save(const QPixmap& picture, const QString& name) const
{
    const QString path = QDir(folder_).absoluteFilePath(prefix_ + name + u".png"_s);
    const bool saved = picture.save(path);
    QTextStream(stdout) << path << (saved ? "" : " (cannot be written)") << Qt::endl;
    return saved;
}

bool Pictures::save_content(QWidget& window, const QString& name) const
{
    return save(window.grab(), name);
}

bool Pictures::save_window(QWidget& window, const QString& name) const
{
    return save(framed(window.grab(), window.windowTitle()), name);
}
