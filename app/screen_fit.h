#pragma once

#include <QList>
#include <QPoint>
#include <QRect>
#include <QSize>

/// Where a window of the given size may stand so that a person can get hold of it: the position
/// itself when enough of the window's top edge lies on one of the screens (available areas, the
/// first is the primary one), else the nearest position inside the primary screen.
QPoint position_in_sight(const QPoint& position, const QSize& size, const QList<QRect>& screens);
