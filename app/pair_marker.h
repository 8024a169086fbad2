#pragma once

#include "engine/pairing.h"

#include <QList>
#include <QObject>
#include <QTimer>

#include <array>
#include <functional>
#include <optional>

class MyTreeWidget;
class QTreeWidgetItem;

/// Pairs the rows that two panes have hashed and marks them, in slices, between which the window
/// answers.
///
/// The rows must stay as they are meanwhile. So whoever acts before the last slice, or takes a row
/// away, finds the work done: the rest of it is then done at once. GUI thread only.
class PairMarker final : public QObject
{
    Q_OBJECT

  public:
    /// Both panes outlive this object's events.
    PairMarker(MyTreeWidget& first, MyTreeWidget& second);

    /// Marks the panes' job_items and calls `then` once they are marked: before this returns when
    /// they are few.
    void start(std::function<void()> then);

    /// Marks what is not marked yet. Nothing when nothing is to be marked.
    void finish();

    bool is_busy() const { return pairing_.has_value(); }

    /// Of the application: what a person does finishes the work first.
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    struct Side
    {
        MyTreeWidget* pane;
        QList<QTreeWidgetItem*> rows{};
        qsizetype marked = 0;
    };

    bool advance(qsizetype rows);
    bool mark(Side& side, const QList<engine::Mark>& marks, qsizetype rows);
    void slice();
    void conclude();

    std::array<Side, 2> sides_;
    std::optional<engine::Pairing> pairing_; ///< while there is something to do
    std::function<void()> then_;
    QTimer next_slice_;
};
