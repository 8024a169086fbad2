#pragma once

#include <QList>
#include <QMessageBox>
#include <QPixmap>
#include <QString>

/// One line of a report: a message with %1 for the name of a file, which is shown as it is,
/// whatever markup it looks like.
struct ReportLine
{
    QString message;
    QString name;
};

/// What a verification reports.
struct Report
{
    QMessageBox::Icon icon;
    QString title;
    QString text;            ///< rich text, with %1 for the lines if there are any
    QList<ReportLine> lines; ///< may be as many as a directory has files
    QPixmap picture;         ///< instead of the icon, also as window icon; may be null
};

/// Shows a report in a message box of its own and waits until it is closed. Lines can be selected
/// and copied; what is too long for the screen scrolls.
void show_report(const Report& report);
