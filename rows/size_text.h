#pragma once

#include <QString>

/// The text of a file size in bytes: whole numbers of Ko, Mo or Go, rounded to the nearest. A unit
/// is used up to 1000 of it; a small file is never less than 1 Ko, so that it does not look empty;
/// from 1000 Go on there is only a remark. In the language of the interface.
QString format_size(qint64 bytes);
