#include "dialogs/cut_text_tips.h"

#include <QHeaderView>
#include <QHelpEvent>
#include <QTextDocument>
#include <QToolTip>
#include <QTreeView>

namespace {

class CutTextTips final : public QObject
{
  public:
    explicit CutTextTips(QTreeView& tree) : QObject(&tree), tree_(tree)
    {
        tree.viewport()->installEventFilter(this);
        tree.header()->viewport()->installEventFilter(this);
    }

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() != QEvent::ToolTip) {
            return false;
        }
        const auto* help = static_cast<QHelpEvent*>(event);
        const QString text =
            watched == tree_.viewport() ? cut_cell(help->pos()) : cut_header(help->pos().x());
        if (text.isEmpty()) {
            QToolTip::hideText();
        } else {
            // Escaped: a tool tip guesses whether it is given markup.
            QToolTip::showText(help->globalPos(), Qt::convertFromPlainText(text), &tree_);
        }
        return true;
    }

  private:
    QString cut_cell(const QPoint& position) const
    {
        const QModelIndex index = tree_.indexAt(position);
        const QRect seen = tree_.visualRect(index).intersected(tree_.viewport()->rect());
        const QString text = index.data().toString();
        return tree_.sizeHintForIndex(index).width() > seen.width() ? text : QString();
    }

    QString cut_header(int x) const
    {
        const QHeaderView& header = *tree_.header();
        const int column = header.logicalIndexAt(x);
        if (column < 0 || header.sectionSizeHint(column) <= header.sectionSize(column)) {
            return {};
        }
        return tree_.model()->headerData(column, Qt::Horizontal).toString();
    }

    QTreeView& tree_;
};

} // namespace

void show_cut_texts_as_tips(QTreeView& tree)
{
    new CutTextTips(tree);
}
