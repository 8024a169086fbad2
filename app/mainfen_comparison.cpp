// The comparison run: both panes hash, then their rows are paired, marked and summed up.

#include "app/mainfen.h"
#include "app/message_keeper.h"
#include "app/pair_marker.h"
#include "dialogs/fenres.h"
#include "engine/duration_text.h"
#include "rows/pane_row.h"
#include "rows/selection.h"
#include "tree/directory_navigator.h"
#include "tree/mytreewidget.h"

#include <QComboBox>
#include <QHash>
#include <QStatusBar>

namespace {

QStringList names_of(const QList<QTreeWidgetItem*>& rows)
{
    QStringList names;
    names.reserve(rows.size());
    for (const QTreeWidgetItem* row : rows) {
        names.append(name_of(*row));
    }
    return names;
}

/// The pane's top-level rows that carry one of the names: in the order of those, each with all its
/// namesakes.
QList<QTreeWidgetItem*> namesakes(const MyTreeWidget& pane, const QStringList& names)
{
    QHash<QString, QList<QTreeWidgetItem*>> by_name;
    for (int i = 0; i < pane.topLevelItemCount(); ++i) {
        by_name[name_of(*pane.topLevelItem(i))].append(pane.topLevelItem(i));
    }
    QList<QTreeWidgetItem*> found;
    for (const QString& name : names) {
        found.append(by_name.take(name));
    }
    return found;
}

} // namespace

void MainFen::reinitialiser_lancer()
{
    finish_marking();
    timer.start();
    if (sender() == act_compare_all) {
        start_comparing_all();
    } else {
        start_comparing_selection();
    }
}

void MainFen::start_comparing_selection()
{
    tree1->reset_marks();
    tree2->reset_marks();
    tree1->HashThis();
    tree2->HashThis();
}

// A pane that is hashing goes on, and its end is compared with that of the other.
void MainFen::start_comparing_all()
{
    QList<MyTreeWidget*> idle{tree1, tree2};
    idle.removeIf([](const MyTreeWidget* pane) { return pane->job_running(); });
    for (MyTreeWidget* pane : idle) {
        if (pane->drive_combo->currentText() != tr("Personnalisé")) {
            pane->list_anew();
        }
    }
    for (MyTreeWidget* pane : idle) {
        pane->HashAll();
    }
}

void MainFen::compare()
{
    compare_postponed = is_hashing();
    if (compare_postponed) {
        return;
    }
    if (consume_stop()) {
        run_judged = true; // a run that was stopped gets no verdict
        return;
    }
    // Both panes' ends bring us here, and so does the end of a run that was judged already.
    const bool notified = sender() == &tree1->job_watcher || sender() == &tree2->job_watcher;
    if ((notified && run_judged) || statusBar()->currentMessage().contains(tr("Temps total : "))) {
        return;
    }
    run_judged = true;
    pair_marker->start([this] { tell_verdict(); });
}

bool MainFen::is_marking() const
{
    return pair_marker->is_busy();
}

void MainFen::tell_verdict()
{
    if (timer.isValid()) {
        message_keeper->show(tr("Temps total : ") + format_time(timer.elapsed()), 2000);
    }
    tree1->job_items.clear();
    tree2->job_items.clear();
    emit alldone();
}

bool MainFen::consume_stop()
{
    for (MyTreeWidget* pane : {tree1, tree2}) {
        if (pane->stop_flagged()) {
            pane->clear_stop_flag();
            pane->job_items.clear();
            return true;
        }
    }
    return false;
}

// The dialog opens on every other run.
void MainFen::results()
{
    if (results_shown) {
        results_shown = false;
        return;
    }
    auto* dialog = new FenRes(this, tree1, tree2);
    dialog->open();
    results_shown = true;
}

void MainFen::compare_against(QList<QTreeWidgetItem*> list)
{
    MyTreeWidget* target = sender() == tree1 ? tree2 : tree1;
    tree1->list_anew();
    tree2->list_anew();
    target->navigator().when_listed([target, names = names_of(list)] {
        target->deselect_top_level();
        select_rows(*target, namesakes(*target, names));
    });
    target->HashThis();
}
