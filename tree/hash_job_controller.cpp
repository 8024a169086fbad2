#include "tree/hash_job_controller.h"

#include "engine/duration_text.h"
#include "engine/job_run.h"
#include "rows/pane_row.h"
#include "rows/selection.h"
#include "tree/digest_recorder.h"
#include "tree/directory_navigator.h"
#include "tree/mytreewidget.h"
#include "tree/pane_host.h"
#include "tree/row_expander.h"

#include <QAction>
#include <QComboBox>

#include <limits>
#include <utility>

namespace {

// A few milliseconds of planning.
constexpr qsizetype rows_per_portion = 10'000;

} // namespace

HashJobController::HashJobController(MyTreeWidget& pane, DigestRecorder& recorder)
    : pane_(pane), recorder_(recorder), rows_(pane, recorder)
{
    next_portion_.setSingleShot(true);
    next_portion_.callOnTimeout([this] { plan_portion(); });
}

HashJobController::~HashJobController() = default;

void HashJobController::hash_selection()
{
    launch(Kind::Selection);
}

void HashJobController::hash_directory()
{
    launch(Kind::Directory);
}

void HashJobController::launch(Kind kind)
{
    if (is_running()) {
        return;
    }
    pane_.host().restart_timer();
    pane_.job_items.clear();
    lock_pane();
    timer_.start();
    kind_ = kind;
    waiting_ = true;
    rows_.start({});
    files_total_ = 0;
    rows_run_ = std::make_unique<engine::JobRun>(engine::JobRun::Handler{
        [this](engine::JobMessage& message) { rows_.receive(message); },
        [this] { finish_hash(); },
    });
    rows_future_ = rows_run_->future();
    pane_.job_watcher.setFuture(rows_future_);
    pane_.navigator().when_listed([this] { begin(); });
}

/// Plans the job from the rows that are there now, and starts it.
void HashJobController::begin()
{
    if (!std::exchange(waiting_, false)) {
        return;
    }
    // The job lists what it walks itself; a row expanded meanwhile must not be listed twice.
    pane_.expander().set_lazy(false);
    pane_.expander().cancel();
    planning_.emplace(pane_.algorithm(), pane_.exclusions, pane_.shown_directory());
    recorder_.set_algorithm(pane_.algorithm());
    if (kind_ == Kind::Selection) {
        planning_->plan_selection(selected_rows(pane_));
    } else {
        planning_->plan_files(content_rows(pane_));
    }
    plan_portion();
}

// Planned in portions, many rows keep nothing from happening meanwhile.
void HashJobController::plan_portion()
{
    const bool planned = planning_->advance(rows_per_portion);
    if (planned || stop_flagged_) {
        run_plan();
    } else {
        next_portion_.start(0);
    }
}

void HashJobController::run_plan()
{
    next_portion_.stop();
    files_total_ = planning_->file_count();
    engine::HashPlan plan = planning_->take_plan();
    rows_.start(planning_->take_rows());
    planning_.reset();
    // A job launched while an earlier stop has not been noted hashes nothing. Of a selection it
    // still opens and announces the first file.
    if (stop_flagged_ && kind_ == Kind::Directory) {
        plan.steps.clear();
    }
    rows_run_->start(std::move(plan), stop_flagged_);
}

// Before rows die, they are planned as they are; of those that are gone then, the job tells nobody.
void HashJobController::finish_planning()
{
    if (planning_) {
        planning_->advance(std::numeric_limits<qsizetype>::max());
        run_plan();
    }
}

void HashJobController::add_directory(QTreeWidgetItem* row)
{
    if (planning_ && row) {
        planning_->add_directory(row);
    }
}

void HashJobController::calculate_hash(const QString& path, QTreeWidgetItem* row,
                                       std::function<void(const QString&)> then)
{
    engine::HashPlan single;
    single.algorithm = pane_.algorithm();
    single.steps.push_back({engine::HashStep::Kind::File, 0, path, {}});
    file_row_ = row;
    file_done_ = std::move(then);
    file_run_ = std::make_unique<engine::JobRun>(engine::JobRun::Handler{
        [this](engine::JobMessage& message) { receive_single(message); },
        [] {},
    });
    file_future_ = file_run_->future();
    file_run_->start(std::move(single), stop_flagged_);
}

void HashJobController::receive_single(engine::JobMessage& message)
{
    if (const auto* started = std::get_if<engine::FileStarted>(&message)) {
        rows_.announce(started->path);
    } else if (const auto* now = std::get_if<engine::FileProgress>(&message)) {
        emit pane_.prog_bar(now->percent);
    } else if (const auto* ended = std::get_if<engine::FileEnded>(&message)) {
        file_done_(rows_.show_result(file_row_, ended->path, ended->place, ended->result));
    }
}

void HashJobController::finish_hash()
{
    if (stop_flagged_ && kind_ == Kind::Selection) {
        pane_.job_items.clear();
    }
    emit pane_.alldone();
    const auto n = static_cast<int>(pane_.job_items.size());
    const QString count = n > 1 ? MyTreeWidget::tr("Fini. %n fichiers traités", "", n)
                                : MyTreeWidget::tr("Fini. %n fichier traité", "", n);
    if (!stop_flagged_) {
        emit pane_.done(count + MyTreeWidget::tr(" en ") + elapsed_text());
    }
    pane_.expander().set_lazy(true);
}

void HashJobController::stop()
{
    if (!rows_future_.isRunning() && !file_future_.isRunning()) {
        return;
    }
    stop_flagged_ = true;
    for (engine::JobRun* run : {rows_run_.get(), file_run_.get()}) {
        if (run) {
            run->stop();
        }
    }
    begin(); // a job that waits for its rows has none to wait for any more
}

void HashJobController::lock_pane()
{
    pane_.drive_combo->setEnabled(false);
    pane_.setAcceptDrops(false);
}

void HashJobController::unlock_pane()
{
    pane_.drive_combo->setEnabled(true);
    pane_.setAcceptDrops(true);
}

void HashJobController::occupy()
{
    occupied_ = true;
    lock_pane();
}

void HashJobController::release()
{
    occupied_ = false;
    unlock_pane();
    pane_.host().pane_released();
}

QString HashJobController::elapsed_text() const
{
    return format_time(timer_.elapsed());
}

void HashJobController::forget(const QSet<QTreeWidgetItem*>& dying)
{
    finish_planning();
    rows_.forget(dying);
    if (dying.contains(file_row_)) {
        file_row_ = nullptr;
    }
}

void HashJobController::forget_all()
{
    finish_planning();
    rows_.forget_all();
    file_row_ = nullptr;
}
