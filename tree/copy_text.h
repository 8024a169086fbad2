#pragma once

#include <QList>
#include <QString>

/// Which details of a row a copy includes besides the checksum.
struct CopyOptions
{
    bool name = false;
    bool size = false;
    bool path = false;
};

/// The texts of a row that is copied.
struct CopyRow
{
    QString checksum; ///< may be empty
    QString name;
    QString size;
    QString path;
};

/// The clipboard text of rows, a line each: checksum, path, name and size, as far as there is a
/// checksum and as the options say, parted by tabs. Paths and names are padded with blanks to
/// common widths, sizes stand to the right in theirs. Rows with nothing to show give no line.
QString copy_text(const QList<CopyRow>& rows, const CopyOptions& options);
