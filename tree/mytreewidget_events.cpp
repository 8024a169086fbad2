// Menu, keys and drops.

#include "rows/pane_row.h"
#include "tree/dropped_files.h"
#include "tree/mytreewidget.h"
#include "tree/row_expander.h"

#include <QDragEnterEvent>
#include <QKeyEvent>
#include <QMimeData>

void MyTreeWidget::contextMenuEvent(QContextMenuEvent* event)
{
    show_context_menu(*this, *event);
}

void MyTreeWidget::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Backspace) {
        if (is_way_up(topLevelItem(0))) {
            emit itemActivated(topLevelItem(0), ColName);
        }
    } else if (event->key() == Qt::Key_Asterisk && !job_running()) {
        expander_->expand_all(currentItem());
    } else {
        QTreeWidget::keyPressEvent(event);
    }
}

void MyTreeWidget::dragEnterEvent(QDragEnterEvent* event)
{
    if (event->mimeData()->hasUrls()) {
        event->acceptProposedAction();
    } else {
        event->ignore();
    }
}

void MyTreeWidget::dragMoveEvent(QDragMoveEvent* event)
{
    event->acceptProposedAction();
}

void MyTreeWidget::dragLeaveEvent(QDragLeaveEvent* event)
{
    event->accept();
}

void MyTreeWidget::dropEvent(QDropEvent* event)
{
    take_drop(*this, *event);
}
