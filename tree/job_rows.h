#pragma once

#include "engine/hash_job.h"
#include "tree/row_table.h"

#include <QSet>

class DigestRecorder;
class MyTreeWidget;
class QTreeWidgetItem;

/// Writes what a job tells into the rows of its pane, into the list of the rows that were hashed
/// and on record. A row that has died meanwhile gets nothing. GUI thread only.
class JobRows final
{
  public:
    JobRows(MyTreeWidget& pane, DigestRecorder& recorder) : pane_(pane), recorder_(recorder) {}

    /// A job begins over these rows.
    void start(RowTable rows);

    /// Files that are done since then.
    int files_done() const { return files_done_; }

    void receive(engine::JobMessage& message);

    /// Tells which file is being read.
    void announce(const QString& path);

    /// Puts a result into its row, if there is one, and on record; answers the text of the row.
    QString show_result(QTreeWidgetItem* row, const QString& path, const QString& place,
                        const engine::FileResult& result);

    /// These rows die now.
    void forget(const QSet<QTreeWidgetItem*>& dying) { rows_.forget(dying); }
    void forget_all() { rows_.forget_all(); }

  private:
    void take_file(const engine::FileEnded& ended);
    void add_found_directory(engine::DirectoryFound& found);
    void add_found_file(engine::FileFound& found);

    MyTreeWidget& pane_;
    DigestRecorder& recorder_;
    RowTable rows_;
    int files_done_ = 0;
};
