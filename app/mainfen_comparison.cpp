// The comparison run: both panes hash, then their rows are paired, marked and summed up.

#include "app/mainfen.h"
#include "dialogs/fenres.h"
#include "engine/duration_text.h"
#include "engine/pairing.h"
#include "tree/mytreewidget.h"
#include "tree/pane_row.h"
#include "tree/selection.h"

#include <QHash>
#include <QScopedValueRollback>
#include <QStatusBar>

namespace {

QList<engine::PairingItem> pairing_items(const MyTreeWidget& pane)
{
    QList<engine::PairingItem> items;
    items.reserve(pane.job_items.size());
    for (const QTreeWidgetItem* row : pane.job_items) {
        items.append({name_of(*row), checksum_of(*row)});
    }
    return items;
}

void set_marks(MyTreeWidget& pane, const QList<engine::Mark>& marks)
{
    for (qsizetype i = 0; i < marks.size(); ++i) {
        // A row that is left unmarked keeps the look it had.
        if (marks[i] != engine::Mark::None) {
            static_cast<PaneRow*>(pane.job_items[i])->set_mark(marks[i]);
        }
    }
    pane.viewport()->update();
}

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
    // The window stays alive while a large directory is listed, so the command may come again.
    if (starting) {
        return;
    }
    if (sender() == act_compare_all) {
        start_comparing_all();
    } else {
        start_comparing_selection();
    }
}

void MainFen::start_comparing_selection()
{
    timer.start();
    tree1->reset_marks();
    tree2->reset_marks();
    tree1->HashThis();
    tree2->HashThis();
}

void MainFen::start_comparing_all()
{
    // A pane that is hashing could not start over: all files of the other would seem to miss.
    if (tree1->job_running() || tree2->job_running()) {
        return;
    }
    timer.start();
    tree2->prepare_reset();
    {
        const QScopedValueRollback<bool> started(starting, true);
        for (MyTreeWidget* pane : {tree1, tree2}) {
            if (pane->drive_combo->currentText() != tr("Personnalisé")) {
                pane->Reset();
            }
        }
    }
    tree1->HashAll();
    tree2->HashAll();
}

void MainFen::compare()
{
    if (tree1->job_running() || tree2->job_running() || consume_stop()) {
        return;
    }
    // Both panes' ends bring us here; the message of the first says that the run is compared.
    if (statusBar()->currentMessage().contains(tr("Temps total : "))) {
        return;
    }
    mark_pairs();
    if (timer.isValid()) {
        statusBar()->showMessage(tr("Temps total : ") + format_time(timer.elapsed()), 2000);
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

void MainFen::mark_pairs()
{
    const engine::PairingResult marks =
        engine::pair_by_name(pairing_items(*tree1), pairing_items(*tree2));
    set_marks(*tree1, marks.first);
    set_marks(*tree2, marks.second);
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
    // The window stays alive while a large directory is listed, so the dropped rows may die.
    const QStringList names = names_of(list);
    {
        const QScopedValueRollback<bool> started(starting, true);
        tree1->Reset();
        tree2->Reset();
    }
    target->deselect_top_level();
    select_rows(*target, namesakes(*target, names));
    target->HashThis();
}
