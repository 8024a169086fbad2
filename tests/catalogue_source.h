#pragma once

#include <QList>
#include <QString>
#include <QStringList>

/// One message of a translation source file (.ts).
struct Message
{
    QString context;
    QString source;
    QStringList forms = {}; ///< the translation; several for a plural
    bool plural = false;
    bool commented = false; ///< told apart from the same text by a comment

    /// What makes it another message than others.
    QString key() const { return context + QLatin1String(plural ? "|%n|" : "|") + source; }
};

/// All messages of a .ts file, in its order; none when it cannot be read.
QList<Message> read_messages(const QString& path);
