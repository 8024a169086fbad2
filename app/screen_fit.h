#pragma once

#include <QList>
#include <QPoint>
#include <QRect>
#include <QSize>

class QWidget;

/// Where a window of the given size may stand so that a person can get hold of it: the position
/// itself when enough of the window's top edge lies on one of the screens (available areas, the
/// first is the primary one), else the nearest position inside the primary screen.
QPoint position_in_sight(const QPoint& position, const QSize& size, const QList<QRect>& screens);

/// Where a window with its frame stands that was to stand at `wanted`: moved, and made smaller
/// where it must be, so that all of it lies inside the available area.
QRect fitted_into(const QRect& wanted, const QRect& available);

/// Fits a window that was not shown yet, and that nobody has placed, into the screen it opens on.
void fit_first_window(QWidget& window);
