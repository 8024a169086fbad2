#pragma once

#include <QListView>

/// A list of very many lines: they all have the size of the longest one, so that none is cut off
/// and no other one is ever measured.
///
/// Ctrl+C copies all selected lines, in the order in which they stand. Lives in the GUI thread.
class LineView final : public QListView
{
    Q_OBJECT

  public:
    explicit LineView(QWidget* parent = nullptr);

    /// Names the row of the model whose line is the longest.
    void set_longest(int row);

    /// The selected lines, each ended by a line break.
    QString selected_text() const;

  public slots:
    /// Puts the selected lines on the clipboard; without any, leaves it alone.
    void copy() const;

  protected:
    void keyPressEvent(QKeyEvent* event) override;
};
