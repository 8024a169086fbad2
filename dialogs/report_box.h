#pragma once

#include <QMessageBox>
#include <QPixmap>
#include <QString>

#include <functional>

/// One line of a report: a message with %1 for the name of a file, which is shown as it is,
/// whatever markup it looks like.
struct ReportLine
{
    QString message;
    QString name;
};

/// The lines of a report. Each is put together when it is looked at: there may be a million.
struct ReportLines
{
    qsizetype count = 0;
    qsizetype longest = 0; ///< the index of the longest line
    std::function<ReportLine(qsizetype index)> at;
};

/// What a verification reports.
struct Report
{
    QMessageBox::Icon icon;
    QString title;
    QString text; ///< rich text, with %1 for the lines if there are any
    ReportLines lines;
    QPixmap picture; ///< instead of the icon, also as window icon; may be null
};

/// Shows a report in a message box of its own and waits until it is closed. Lines can be selected
/// and copied; what is too long for the screen scrolls.
void show_report(const Report& report);
