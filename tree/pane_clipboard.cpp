// Checksums and file details for the clipboard.

#include "tree/copy_text.h"
#include "tree/mytreewidget.h"
#include "tree/pane_row.h"
#include "tree/selection.h"

#include <QClipboard>
#include <QGuiApplication>

void MyTreeWidget::cc()
{
    if (hasFocus()) {
        copy_rows(selected_rows(*this));
    }
}

void MyTreeWidget::ccAll()
{
    if (!hasFocus()) {
        return;
    }
    QList<QTreeWidgetItem*> rows;
    for (auto i = static_cast<int>(first_content_row()); i < topLevelItemCount(); ++i) {
        rows.append(topLevelItem(i));
    }
    copy_rows(rows);
}

void MyTreeWidget::copy_rows(const QList<QTreeWidgetItem*>& rows)
{
    QList<CopyRow> files;
    for (const QTreeWidgetItem* row : rows) {
        if (row->type() == TypeFile) {
            files.append({checksum_of(*row), name_of(*row), row->text(ColSize), path_of(*row)});
        }
    }
    const QString text = copy_text(files, {ccname, ccsize, ccpath});
    if (!text.isEmpty()) {
        QGuiApplication::clipboard()->setText(text);
    }
}
