#include "tree/job_rows.h"

#include "rows/pane_row.h"
#include "tree/digest_recorder.h"
#include "tree/mytreewidget.h"

#include <QAction>

#include <utility>

namespace {

template<class... Ts>
struct Overloaded : Ts...
{
    using Ts::operator()...;
};
template<class... Ts>
Overloaded(Ts...) -> Overloaded<Ts...>;

} // namespace

void JobRows::start(RowTable rows)
{
    rows_ = std::move(rows);
    files_done_ = 0;
}

void JobRows::receive(engine::JobMessage& message)
{
    std::visit(Overloaded{
                   [this](const engine::DirectoryReached& reached) {
                       if (QTreeWidgetItem* row = rows_.row(reached.row)) {
                           emit pane_.expand_parent(row);
                       }
                   },
                   [this](engine::DirectoryFound& found) { add_found_directory(found); },
                   [this](const engine::FileStarted& started) { announce(started.path); },
                   [this](const engine::FileProgress& now) { emit pane_.prog_bar(now.percent); },
                   [this](const engine::FileEnded& ended) { take_file(ended); },
                   [this](engine::FileFound& found) { add_found_file(found); },
               },
               message);
}

void JobRows::take_file(const engine::FileEnded& ended)
{
    QTreeWidgetItem* row = rows_.row(ended.row);
    if (row) {
        pane_.job_items.append(row);
    }
    ++files_done_;
    show_result(row, ended.path, ended.place, ended.result);
}

void JobRows::announce(const QString& path)
{
    emit pane_.processing(MyTreeWidget::tr("En cours : ") + path);
}

void JobRows::add_found_directory(engine::DirectoryFound& found)
{
    QTreeWidgetItem* parent = rows_.row(found.parent);
    if (!parent) {
        return;
    }
    auto* row = new PaneRow(found.entry, PaneRow::Origin::Walked);
    emit pane_.icon_req(row, QFileInfo(found.entry.path));
    parent->addChild(row);
    pane_.indexFromItem(row);
    rows_.set(found.row, row);
}

void JobRows::add_found_file(engine::FileFound& found)
{
    ++files_done_;
    QTreeWidgetItem* parent = rows_.row(found.parent);
    QTreeWidgetItem* row = nullptr;
    if (parent) {
        row = new PaneRow(found.entry, PaneRow::Origin::Walked);
        emit pane_.icon_req(row, QFileInfo(found.entry.path));
    }
    show_result(row, found.entry.path, found.place, found.result);
    if (row) {
        parent->addChild(row);
        pane_.indexFromItem(row);
        pane_.job_items.append(row);
        if (pane_.act_autoscroll->isChecked()) {
            pane_.scrollitem(row, ColHash);
        }
    }
}

QString JobRows::show_result(QTreeWidgetItem* row, const QString& path, const QString& place,
                             const engine::FileResult& result)
{
    QString text;
    switch (result.outcome) {
    case engine::FileOutcome::Stopped:
        return row ? checksum_of(*row) : QString();
    case engine::FileOutcome::Unreadable:
        text = MyTreeWidget::tr("Impossible d'ouvrir le fichier %1").arg(path);
        break;
    case engine::FileOutcome::Digested:
        text = pane_.upper ? result.digest.toUpper() : result.digest;
        // By place, not by row: a listing that was refreshed meanwhile makes no file unverified.
        recorder_.record(place, result.digest);
        break;
    }
    if (row) {
        row->setData(ColHash, Qt::DisplayRole, text);
    }
    return text;
}
