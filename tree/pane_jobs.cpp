// The pane's hash jobs: what they work on, and what comes of their messages.
//
// A job is planned here, in the GUI thread, and runs on the pool with a plan made of values. The
// rows are touched only by the messages that come back, so no row is written from another thread
// and a row may die while its job runs.

#include "engine/duration_text.h"
#include "engine/exclusions.h"
#include "engine/job_run.h"
#include "tree/mytreewidget.h"
#include "tree/pane_row.h"
#include "tree/selection.h"

using namespace Qt::StringLiterals;

namespace {

template<class... Ts>
struct Overloaded : Ts...
{
    using Ts::operator()...;
};
template<class... Ts>
Overloaded(Ts...) -> Overloaded<Ts...>;

} // namespace

void MyTreeWidget::HashThis()
{
    launch(&MyTreeWidget::tampon_calculate_hash);
}

void MyTreeWidget::HashAll()
{
    launch(&MyTreeWidget::tampon_calculate_hashdir);
}

// HashAll() under the name that the menu actions and the directory writer use.
void MyTreeWidget::HashDir()
{
    HashAll();
}

void MyTreeWidget::launch(void (MyTreeWidget::*job)())
{
    if (job_running()) {
        return;
    }
    if (refused_while_listing()) {
        return;
    }
    restart_total_timer();
    job_items.clear();
    drive_combo->setEnabled(false);
    setAcceptDrops(false);
    job_timer.start();
    (this->*job)();
}

/// Half of the rows are not there yet while the pane lists, or are about to go while a comparison
/// lists the panes anew. Whoever disabled controls for the job that is refused hears of its end all
/// the same, unless another has begun by then, whose end will do.
bool MyTreeWidget::refused_while_listing()
{
    const bool refused = listing() || comparison_starts();
    if (refused) {
        const auto tell = [this] {
            if (!job_running()) {
                emit alldone();
            }
        };
        QMetaObject::invokeMethod(this, tell, Qt::QueuedConnection);
    }
    return refused;
}

void MyTreeWidget::prepare_hash()
{
    algo = algo == QCryptographicHash::Md5 ? QCryptographicHash::Md5 : QCryptographicHash::Sha1;
    plan = engine::HashPlan{};
    plan->algorithm = algo;
    plan->exclusions = exclusions;
    planned_rows.clear();
    job_rows.clear();
    // The job lists what it walks itself; a row expanded meanwhile must not be listed twice.
    disconnect(this, &QTreeWidget::itemExpanded, this, &MyTreeWidget::PopulateDir);
}

void MyTreeWidget::plan_step(engine::HashStep::Kind kind, QTreeWidgetItem* row, const QString& path)
{
    plan->steps.push_back({kind, job_rows.add(row), path});
}

/// Adds a step for a row, unless it has one: a row that is selected together with its directory
/// is hashed once, or it would take two partners in a comparison.
bool MyTreeWidget::plan_step_once(engine::HashStep::Kind kind, QTreeWidgetItem* row)
{
    if (planned_rows.contains(row)) {
        return false;
    }
    planned_rows.insert(row);
    plan_step(kind, row, path_of(*row));
    return true;
}

void MyTreeWidget::PopulateList(QTreeWidgetItem* parent)
{
    using Kind = engine::HashStep::Kind;
    const bool known = parent && parent->childCount() > 0;
    if (!plan || !parent || !plan_step_once(known ? Kind::Enter : Kind::Walk, parent)) {
        return;
    }
    for (int i = 0; i < parent->childCount(); ++i) {
        QTreeWidgetItem* child = parent->child(i);
        if (child->type() == TypeFile) {
            plan_step_once(Kind::File, child);
        } else if (!is_way_up(child)) {
            PopulateList(child);
        }
    }
}

void MyTreeWidget::tampon_calculate_hash()
{
    if (job_running()) {
        return;
    }
    prepare_hash();
    for (QTreeWidgetItem* row : selected_rows(*this)) {
        if (row->type() == TypeFile) {
            plan_step_once(engine::HashStep::Kind::File, row);
        } else if (!is_way_up(row)) {
            PopulateList(row);
        }
    }
    start_job(JobKind::Selection);
}

void MyTreeWidget::tampon_calculate_hashdir()
{
    if (job_running()) {
        return;
    }
    prepare_hash();
    for (auto i = static_cast<int>(first_content_row()); i < topLevelItemCount(); ++i) {
        QTreeWidgetItem* row = topLevelItem(i);
        const QString path = path_of(*row);
        if (row->type() == TypeFile && !engine::is_excluded(exclusions, path)) {
            plan_step(engine::HashStep::Kind::File, row, path);
        }
    }
    start_job(JobKind::Directory);
}

void MyTreeWidget::start_job(JobKind kind)
{
    // A job launched while an earlier stop has not been noted hashes nothing. Of a selection it
    // still opens and announces the first file.
    if (stop_flag && kind == JobKind::Directory) {
        plan->steps.clear();
    }
    plan->next_row = job_rows.size();
    job_run = std::make_unique<engine::JobRun>(
        std::move(*plan), stop_flag,
        engine::JobRun::Handler{
            [this](engine::JobMessage& message) { receive(message); },
            [this, kind] { finish_hash(kind); },
        });
    plan.reset();
    planned_rows.clear();
    job_future = job_run->future();
    job_watcher.setFuture(job_future);
}

void MyTreeWidget::calculate_hash(QTreeWidgetItem* item)
{
    engine::HashPlan single;
    single.algorithm = algo;
    single.steps.push_back({engine::HashStep::Kind::File, 0, path_of(*item)});
    file_row = item;
    file_run = std::make_unique<engine::JobRun>(
        std::move(single), stop_flag,
        engine::JobRun::Handler{
            [this](engine::JobMessage& message) { receive_single(message); },
            [] {},
        });
    file_future = file_run->future();
}

void MyTreeWidget::receive(engine::JobMessage& message)
{
    std::visit(Overloaded{
                   [this](const engine::DirectoryReached& reached) {
                       if (QTreeWidgetItem* row = job_rows.row(reached.row)) {
                           emit expand_parent(row);
                       }
                   },
                   [this](engine::DirectoryFound& found) { add_found_directory(found); },
                   [this](const engine::FileStarted& started) { announce(started.path); },
                   [this](const engine::FileProgress& now) { emit prog_bar(now.percent); },
                   [this](const engine::FileEnded& ended) {
                       QTreeWidgetItem* row = job_rows.row(ended.row);
                       if (row) {
                           job_items.append(row);
                       }
                       show_result(row, ended.path, ended.result);
                   },
                   [this](engine::FileFound& found) { add_found_file(found); },
               },
               message);
}

void MyTreeWidget::receive_single(engine::JobMessage& message)
{
    if (const auto* started = std::get_if<engine::FileStarted>(&message)) {
        announce(started->path);
    } else if (const auto* now = std::get_if<engine::FileProgress>(&message)) {
        emit prog_bar(now->percent);
    } else if (const auto* ended = std::get_if<engine::FileEnded>(&message)) {
        show_result(file_row, ended->path, ended->result);
    }
}

void MyTreeWidget::announce(const QString& path)
{
    emit processing(tr("En cours : ") + path);
}

void MyTreeWidget::add_found_directory(engine::DirectoryFound& found)
{
    QTreeWidgetItem* parent = job_rows.row(found.parent);
    if (!parent) {
        return;
    }
    auto* row = new PaneRow(found.entry, PaneRow::Origin::Walked);
    emit icon_req(row, QFileInfo(found.entry.path));
    parent->addChild(row);
    indexFromItem(row);
    job_rows.set(found.row, row);
}

void MyTreeWidget::add_found_file(engine::FileFound& found)
{
    QTreeWidgetItem* parent = job_rows.row(found.parent);
    if (!parent) {
        return;
    }
    auto* row = new PaneRow(found.entry, PaneRow::Origin::Walked);
    emit icon_req(row, QFileInfo(found.entry.path));
    show_result(row, found.entry.path, found.result);
    parent->addChild(row);
    indexFromItem(row);
    job_items.append(row);
}

void MyTreeWidget::show_result(QTreeWidgetItem* item, const QString& path,
                               const engine::FileResult& result)
{
    QString text;
    switch (result.outcome) {
    case engine::FileOutcome::Stopped:
        return;
    case engine::FileOutcome::Unreadable:
        text = tr("Impossible d'ouvrir le fichier %1").arg(path);
        break;
    case engine::FileOutcome::Digested:
        text = upper ? result.digest.toUpper() : result.digest;
        // By path, not by row: a listing that was refreshed meanwhile makes no file unverified.
        if (!digests.isEmpty()) {
            digests.insert(path, result.digest);
        }
        break;
    }
    if (item) {
        item->setData(ColHash, Qt::DisplayRole, text);
    }
}

void MyTreeWidget::finish_hash(JobKind kind)
{
    if (stop_flag && kind == JobKind::Selection) {
        job_items.clear();
    }
    emit alldone();
    const auto n = static_cast<int>(job_items.size());
    const QString count =
        n > 1 ? tr("Fini. %n fichiers traités", "", n) : tr("Fini. %n fichier traité", "", n);
    if (!stop_flag) {
        emit done(count + tr(" en ") + format_time(job_timer.elapsed()));
    }
    connect(this, &QTreeWidget::itemExpanded, this, &MyTreeWidget::PopulateDir);
}

void MyTreeWidget::stop_thread()
{
    if (!job_future.isRunning() && !file_future.isRunning()) {
        return;
    }
    stop_flag = true;
    for (engine::JobRun* run : {job_run.get(), file_run.get()}) {
        if (run) {
            run->stop();
        }
    }
}

void MyTreeWidget::done_single()
{
    status_label->setText(tr("Fini en ") + format_time(job_timer.elapsed()));
    drive_combo->setEnabled(true);
}
