#include "app/pair_marker.h"

#include "rows/pane_row.h"
#include "tree/mytreewidget.h"

#include <QApplication>
#include <QEvent>

#include <algorithm>
#include <limits>
#include <utility>

namespace {

// A few milliseconds of work.
constexpr qsizetype rows_per_slice = 10'000;

engine::Pairing::Items items_of(const QList<QTreeWidgetItem*>& rows)
{
    return {rows.size(), [rows](qsizetype i) -> engine::PairingItem {
                const auto& row = static_cast<const PaneRow&>(*rows[i]);
                return {row.name(), row.checksum(), row.mark() == engine::Mark::Cleared};
            }};
}

bool is_an_act(const QEvent& event)
{
    switch (event.type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::ShortcutOverride:
    case QEvent::ContextMenu:
    case QEvent::Drop:
        return true;
    default:
        return false;
    }
}

} // namespace

PairMarker::PairMarker(MyTreeWidget& first, MyTreeWidget& second) : sides_{{{&first}, {&second}}}
{
    next_slice_.setSingleShot(true);
    connect(&next_slice_, &QTimer::timeout, this, &PairMarker::slice);
    for (const Side& side : sides_) {
        const QAbstractItemModel* model = side.pane->model();
        connect(model, &QAbstractItemModel::rowsAboutToBeRemoved, this, &PairMarker::finish);
        connect(model, &QAbstractItemModel::modelAboutToBeReset, this, &PairMarker::finish);
    }
}

void PairMarker::start(std::function<void()> then)
{
    finish();
    for (Side& side : sides_) {
        side.rows = side.pane->job_items;
        side.marked = 0;
    }
    pairing_.emplace(items_of(sides_[0].rows), items_of(sides_[1].rows));
    then_ = std::move(then);
    qApp->installEventFilter(this);
    slice();
}

void PairMarker::slice()
{
    if (advance(rows_per_slice)) {
        conclude();
    } else {
        next_slice_.start(0);
    }
}

void PairMarker::finish()
{
    if (pairing_) {
        while (!advance(std::numeric_limits<qsizetype>::max())) {
        }
        conclude();
    }
}

bool PairMarker::advance(qsizetype rows)
{
    return pairing_->advance(rows) && mark(sides_[0], pairing_->result().first, rows) &&
           mark(sides_[1], pairing_->result().second, rows);
}

bool PairMarker::mark(Side& side, const QList<engine::Mark>& marks, qsizetype rows)
{
    const qsizetype end = side.marked + std::min(rows, marks.size() - side.marked);
    for (; side.marked < end; ++side.marked) {
        // A row that is left unmarked keeps the look it had.
        if (const engine::Mark mark = marks[side.marked]; mark != engine::Mark::None) {
            static_cast<PaneRow*>(side.rows[side.marked])->set_mark(mark);
        }
    }
    return side.marked == marks.size();
}

void PairMarker::conclude()
{
    next_slice_.stop();
    qApp->removeEventFilter(this);
    pairing_.reset();
    for (Side& side : sides_) {
        side.rows.clear();
        side.pane->viewport()->update();
    }
    // may start the next one
    if (const auto then = std::exchange(then_, {})) {
        then();
    }
}

bool PairMarker::eventFilter(QObject* watched, QEvent* event)
{
    if (!is_an_act(*event)) {
        return QObject::eventFilter(watched, event);
    }
    // Where that opens a dialog, the act was meant for what the dialog keeps out of reach.
    const QWidget* before = QApplication::activeModalWidget();
    finish();
    return QApplication::activeModalWidget() != before;
}
