#include "app/pane_access.h"

#include "tree/mytreewidget.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>
#include <QProgressBar>
#include <QPushButton>
#include <QStyledItemDelegate>

using namespace Qt::StringLiterals;

namespace {

/// Sends Tab from a path line past the buttons, straight to the list, while the line holds what
/// was typed since it got the focus.
class TypedPathTab final : public QObject
{
  public:
    TypedPathTab(QLineEdit& line, QWidget& list) : QObject(&line), list_(list)
    {
        connect(&line, &QLineEdit::textEdited, this, [this] { typed_ = true; });
        connect(&line, &QLineEdit::returnPressed, this, [this] { typed_ = true; });
        line.installEventFilter(this);
    }

    bool eventFilter(QObject* /*line*/, QEvent* event) override
    {
        if (event->type() == QEvent::FocusIn) {
            typed_ = false;
            return false;
        }
        const bool tab = event->type() == QEvent::KeyPress &&
                         static_cast<QKeyEvent*>(event)->key() == Qt::Key_Tab;
        if (!tab || !typed_) {
            return false;
        }
        list_.setFocus(Qt::TabFocusReason);
        return true;
    }

  private:
    QWidget& list_;
    bool typed_ = false;
};

/// Draws a frame around the current row of a list that has the focus.
class CurrentRowDelegate final : public QStyledItemDelegate
{
  public:
    explicit CurrentRowDelegate(QTreeView& list) : QStyledItemDelegate(&list), list_(list) {}

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override
    {
        QStyledItemDelegate::paint(painter, option, index);
        const QModelIndex current = list_.currentIndex();
        if (!list_.hasFocus() || index != current.siblingAtColumn(index.column())) {
            return;
        }
        painter->save();
        painter->setPen(frame_colour(option, index));
        const QRect& cell = option.rect;
        painter->drawLine(cell.topLeft(), cell.topRight());
        painter->drawLine(cell.bottomLeft(), cell.bottomRight());
        if (option.viewItemPosition == QStyleOptionViewItem::Beginning) {
            painter->drawLine(cell.topLeft(), cell.bottomLeft());
        } else if (option.viewItemPosition == QStyleOptionViewItem::End) {
            painter->drawLine(cell.topRight(), cell.bottomRight());
        }
        painter->restore();
    }

  private:
    /// That of the text, which can be read on the row's ground.
    static QColor frame_colour(const QStyleOptionViewItem& option, const QModelIndex& index)
    {
        const QVariant text = index.data(Qt::ForegroundRole);
        if (option.state.testFlag(QStyle::State_Selected)) {
            return option.palette.color(QPalette::HighlightedText);
        }
        return text.isValid() ? text.value<QBrush>().color() : option.palette.color(QPalette::Text);
    }

    const QTreeView& list_;
};

} // namespace

void name_controls(MyTreeWidget& pane, int number)
{
    const QString suffix = u' ' + QString::number(number);
    const QString path = QCoreApplication::translate("FenOpt", "Chemin") + suffix;
    pane.drive_combo->setAccessibleName(path);
    // Where desktops take the entry shown for a selector's name.
    pane.drive_combo->setAccessibleDescription(path);
    pane.path_edit->setAccessibleName(path);
    for (QPushButton* button : {pane.reset_button, pane.stop_button}) {
        button->setAccessibleName(button->toolTip() + suffix);
    }
    pane.setAccessibleName(QCoreApplication::translate("MainFen", "&Fichier").remove(u'&') +
                           suffix);
    pane.progress->setAccessibleName(
        QCoreApplication::translate("MyTreeWidget", "En cours : ").trimmed() + suffix);
}

void order_tabs(MyTreeWidget& pane)
{
    QWidget::setTabOrder(pane.drive_combo, pane.path_edit);
    QWidget::setTabOrder(pane.path_edit, pane.reset_button);
    QWidget::setTabOrder(pane.reset_button, pane.stop_button);
    QWidget::setTabOrder(pane.stop_button, &pane);
    new TypedPathTab(*pane.path_edit, pane);
}

void show_current_row(MyTreeWidget& pane)
{
    // Else only the current cell would be drawn anew when the focus moves.
    pane.setAllColumnsShowFocus(true);
    pane.setItemDelegate(new CurrentRowDelegate(pane));
}
