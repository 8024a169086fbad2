#pragma once

#include "tree/directory_loader.h"
#include "tree/row_inserter.h"

#include <QDir>
#include <QObject>

#include <deque>
#include <functional>

class QTreeWidget;
struct PaneControls;

/// Where a pane is in the file system: its directory, the listing of it that is under way, and the
/// top-level rows that come of it.
///
/// Nothing in here waits for a drive: what is to be done with the rows is handed over and runs when
/// they are there. A directory that answers at once is shown at once all the same.
class DirectoryNavigator final : public QObject
{
    Q_OBJECT

  public:
    using Then = std::function<void()>;

    DirectoryNavigator(QTreeWidget& tree, PaneControls& controls);

    /// Opens a directory, or the nearest that can be meant by the text, and shows it in the
    /// controls. `then` runs when it is listed, and never when another listing overtakes it.
    void open(const QString& path, Then then = {});

    /// Opens a directory that is known to be one. `then` as above.
    void enter(const QString& path, Then then = {});

    /// Lists the directory anew. `then` as above.
    void reload(Then then = {});

    /// Gives up the listing under way.
    void abandon();

    /// Runs it when nothing is being listed: now, or after whatever listing is the last.
    void when_listed(Then then);

    bool is_listing() const { return listing_; }

    /// Whether anything was listed yet.
    bool is_fresh() const { return fresh_; }

    /// Whether a list of dropped files is shown instead of a directory.
    bool in_custom_mode() const;

    /// Makes the selector name the list of dropped files.
    void enter_custom_mode();

    /// The directory shown, or the last one shown before a list of dropped files.
    const QDir& directory() const { return dir_; }

    /// The same as a canonical path, without a look at the drive: as it was when last listed.
    const QString& canonical_path() const { return canonical_; }

    /// Shows the directory in the path line.
    void show_path();

  signals:
    /// Nothing is being listed any more.
    void settled();

  private:
    void start(const DirectoryRequest& request, Then then);
    void drop_listing();
    void show_resolved(const QString& path, const QString& canonical, bool opened);
    void insert_rows(QList<engine::Entry>& entries);
    void settle();

    QTreeWidget& tree_;
    PaneControls& controls_;
    RowInserter inserter_;
    QDir dir_;
    QString canonical_;
    QString listed_path_; ///< what the last listing was asked for
    DirectoryLoaderPointer loader_;
    bool listing_ = false;
    bool fresh_ = true;
    Then then_;
    std::deque<Then> when_listed_;
};
