#pragma once

#include <QMessageBox>
#include <QPixmap>
#include <QString>

/// What a verification reports.
struct Report
{
    QMessageBox::Icon icon;
    QString title;
    QString text;            ///< rich text
    QPixmap picture;         ///< instead of the icon, also as window icon; may be null
    bool selectable = false; ///< whether the text can be selected and copied
};

/// Shows a report in a message box of its own and waits until it is closed. A text
/// that is too long for the screen scrolls.
void show_report(const Report& report);
