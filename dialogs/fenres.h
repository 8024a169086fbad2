#pragma once

#include <QDialog>
#include <QStringList>

class QTreeWidget;

/// Sums up a comparison of two panes: the files that differ and those without a counterpart, side
/// by side under a coloured verdict, with a button that copies both lists.
///
/// It takes its snapshot in the constructor, from the marks that the comparison left in the trees;
/// later changes to the trees do not reach it. Every item of the trees is a PaneRow. Lives in the
/// GUI thread.
class FenRes : public QDialog
{
    Q_OBJECT

  public:
    /// The trees are only read, and not used any more once the constructor has returned.
    FenRes(QWidget* parent, QTreeWidget* tree1, QTreeWidget* tree2);

  public slots:
    /// Copies both lists to the clipboard as text, whatever was edited in the views.
    void ccc();

  private:
    void read_marks(QTreeWidget* tree1, QTreeWidget* tree2);

    QStringList list_diff;
    QStringList list_missing; ///< first pane's entries, a separator, second pane's entries
};
