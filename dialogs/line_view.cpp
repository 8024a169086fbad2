#include "dialogs/line_view.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QStyledItemDelegate>

#include <algorithm>
#include <utility>

namespace {

class LongestLineDelegate final : public QStyledItemDelegate
{
  public:
    LongestLineDelegate(int longest_row, QObject* parent)
        : QStyledItemDelegate(parent), longest_row_(longest_row)
    {}

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override
    {
        return QStyledItemDelegate::sizeHint(option, index.siblingAtRow(longest_row_));
    }

  private:
    int longest_row_;
};

} // namespace

LineView::LineView(QWidget* parent) : QListView(parent)
{
    setUniformItemSizes(true);
    // The most characters are not always the widest: what is still too long keeps both its ends.
    setTextElideMode(Qt::ElideMiddle);
}

void LineView::set_longest(int row)
{
    setItemDelegate(new LongestLineDelegate(row, this));
}

QString LineView::selected_text() const
{
    QItemSelection selection = selectionModel()->selection();
    std::sort(selection.begin(), selection.end(),
              [](const QItemSelectionRange& a, const QItemSelectionRange& b) {
                  return a.top() < b.top();
              });
    QString text;
    for (const QItemSelectionRange& range : std::as_const(selection)) {
        for (int row = range.top(); row <= range.bottom(); ++row) {
            text += model()->index(row, 0).data().toString() + u'\n';
        }
    }
    return text;
}

void LineView::copy() const
{
    const QString text = selected_text();
    if (!text.isEmpty()) {
        QGuiApplication::clipboard()->setText(text);
    }
}

void LineView::keyPressEvent(QKeyEvent* event)
{
    if (event->matches(QKeySequence::Copy)) {
        copy();
        event->accept();
        return;
    }
    QListView::keyPressEvent(event);
}
