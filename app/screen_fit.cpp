#include "app/screen_fit.h"

#include <algorithm>

namespace {

// As much of a title bar as a hand needs to move the window.
constexpr int grip_width = 64;
constexpr int grip_height = 24;

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
