#pragma once

#include <QList>
#include <QString>
#include <QStringList>

/// The drives that a person can choose from.
///
/// On Windows a volume is a drive letter and its root is the letter, a colon and a slash. On Unix
/// it is a mounted file system that a person would recognise, and its root is the mount point.
namespace platform {

struct Volume
{
    QString root;  ///< root path, with "/" as separator
    QString label; ///< label without surrounding blanks, empty when there is none
};

/// From now on a drive without a medium is an error like others; without this, Windows asks for a
/// medium in a box of its own, in which the thread that looked at the drive hangs. For the whole
/// process; call once, at its start.
void never_ask_for_media();

/// The volumes in the system's order (Unix: "/" first, then by mount point). Drives without a
/// medium are listed, without a label.
QList<Volume> volumes();

/// The label of the volume whose root is given; empty when there is none or it cannot be read.
QString volume_label(const QString& root);

/// How a volume stands in a selector: "label (C:)", or "(C:)" without a label. On Unix the mount
/// point stands between the parentheses.
QString volume_entry(const Volume& volume);

/// The root that a selector entry names, or a text that names no directory when the entry is not
/// of that form (Windows: its last four characters without "(" and with "/" for ")").
QString root_of_entry(const QString& entry);

/// The root of the volume that a path lies on. Windows: the first three characters, whatever they
/// are. Unix: the mount point of the path, or of its nearest existing ancestor; empty for a
/// relative path.
QString root_of_path(const QString& path);

/// The directories that a text which names none may mean, likeliest first: the root of the volume
/// that a saved path lay on, or the root that an entry of the selector names. Not all may be there.
QStringList fallback_roots(const QString& text);

/// The first of the entries that stands for the volume of a canonical path, or -1. Windows: the
/// first that contains the path's first two characters, whatever the case.
qsizetype find_entry(const QStringList& entries, const QString& canonical_path);

} // namespace platform
