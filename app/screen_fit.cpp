#include "app/screen_fit.h"

#include <QGuiApplication>
#include <QMargins>
#include <QScreen>
#include <QWidget>

#include <algorithm>

namespace {

// As much of a title bar as a hand needs to move the window.
constexpr int grip_width = 64;
constexpr int grip_height = 24;

// What a desktop puts around a window, which nobody can tell before it is shown; wide enough for
// all.
constexpr QMargins frame(8, 40, 8, 8);

// No screen lies farther out, and not much farther the arithmetic of rectangles ends.
constexpr int farthest = 0x1000000;

bool can_be_gripped(const QRect& top_edge, const QRect& screen)
{
    const QRect seen = top_edge.intersected(screen);
    return seen.width() >= std::min(grip_width, top_edge.width()) && seen.height() >= grip_height;
}

int into_range(int value, int length, int from, int available)
{
    return std::max(from, std::min(value, from + available - length));
}

} // namespace

QPoint position_in_sight(const QPoint& position, const QSize& size, const QList<QRect>& screens)
{
    const QPoint bounded(std::clamp(position.x(), -farthest, farthest),
                         std::clamp(position.y(), -farthest, farthest));
    const QRect top_edge(bounded, QSize(size.width(), grip_height));
    const bool seen = std::any_of(screens.begin(), screens.end(), [&](const QRect& screen) {
        return can_be_gripped(top_edge, screen);
    });
    if (seen || screens.isEmpty()) {
        return position;
    }
    const QRect& screen = screens.first();
    return {into_range(position.x(), size.width(), screen.left(), screen.width()),
            into_range(position.y(), size.height(), screen.top(), screen.height())};
}

QRect fitted_into(const QRect& wanted, const QRect& available)
{
    const QSize size = wanted.size().boundedTo(available.size());
    const QPoint corner(into_range(wanted.x(), size.width(), available.left(), available.width()),
                        into_range(wanted.y(), size.height(), available.top(), available.height()));
    return {corner, size};
}

void fit_first_window(QWidget& window)
{
    const QScreen* screen = QGuiApplication::screenAt(window.pos());
    if (!screen) {
        screen = QGuiApplication::primaryScreen();
    }
    // The position of a window is that of its frame, the size is without it.
    const QRect wanted(window.pos(), window.size().grownBy(frame));
    const QRect fitted = fitted_into(wanted, screen->availableGeometry());
    window.move(fitted.topLeft());
    window.resize(fitted.size().shrunkBy(frame));
}
