#pragma once

#include <QIcon>

/// A tick or a cross in the colour of the text beside it: says a verdict to people who do not tell
/// red from green. Looks the same on a widget that is disabled.
QIcon verdict_sign(bool good, const QColor& colour);
