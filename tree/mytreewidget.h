#pragma once

#include "tree/pane_actions.h"
#include "tree/pane_controls.h"
#include "tree/pane_options.h"

#include <QCryptographicHash>
#include <QFileInfo>
#include <QFutureWatcher>
#include <QTreeWidget>

#include <memory>

class ChecksumFileVerifier;
class ChecksumFileWriter;
class DigestCheck;
class DigestRecorder;
class DirectoryNavigator;
class HashJobController;
class PaneHost;
class QDir;
class RowExpander;

/// One directory pane: a tree of files and directories with the controls around it.
///
/// It is what the rest of the program sees of a pane; the work is done by the objects that it owns,
/// each with a subject of its own (docs/architecture.md says which). Lives in the GUI thread.
///
/// A public slot that lists a directory returns with the rows in place, however long that takes,
/// and keeps the window alive meanwhile. What the pane does of itself never waits.
class MyTreeWidget : public QTreeWidget, public PaneControls, public PaneActions, public PaneOptions
{
    Q_OBJECT

  public:
    /// `parent` is the window, a PaneHost; a pane with another parent, or none, works by itself.
    explicit MyTreeWidget(QWidget* parent);
    /// Running jobs are asked to stop and not waited for.
    ~MyTreeWidget() override;

    /// Watches the pane's job; `finished()` follows everything that the job did.
    QFutureWatcher<void> job_watcher;

    /// Rows hashed by the last job, in hashing order; rows that died since are gone from it.
    QList<QTreeWidgetItem*> job_items;

    /// Suffixes of the files that directory jobs leave out, and the same as text.
    QStringList exclusions;
    QString get_exclus() const;

    PaneHost& host() const { return *main_window; }
    DirectoryNavigator& navigator() { return *navigator_; }
    RowExpander& expander() { return *expander_; }
    HashJobController& jobs() { return *jobs_; }

    void PopulateView(); ///< lists the current directory
    /// What changeModel(), Reset() and update_view() do, for callers who do not wait.
    void open_directory(const QString& path);
    void list_anew();
    void list_anew_and_select(const QString& name);

    QString volume_label(const QString& root) const; ///< empty when it has none
    const QDir& current_dir() const; ///< stays the last one while dropped files are shown

    /// The canonical path of the directory that the top-level rows lie in; empty for a list of
    /// dropped files, which lie where their paths say.
    QString shown_directory() const;

    bool in_custom_mode() const; ///< a list of dropped files is shown instead of a directory
    bool is_listing() const;     ///< rows are still to come: of the directory or of one below

    /// Whether a job runs, from its launch until everything it did is in the rows, or the pane is
    /// busy with a checksum file.
    bool job_running() const;
    bool stop_flagged() const; ///< a job was asked to stop, and nobody has taken note yet
    void clear_stop_flag();

    /// The algorithm of the next job.
    QCryptographicHash::Algorithm algorithm() const { return algo; }
    void set_algorithm(QCryptographicHash::Algorithm algorithm) { algo = algorithm; }

    void reset_marks();        ///< empties and whitens the rows that have a checksum
    void deselect_top_level(); ///< unselects every top-level row
    QTreeWidgetItem* select_by_name(const QString& name); ///< answers null without such a row
    void open_and_hash_all(const QString& path);          ///< the files of the top level

  signals:
    void alldone();
    void done(QString text);
    void processing(QString hash);
    void prog_bar(int a);
    void concurrent_compare(QList<QTreeWidgetItem*> liste);
    void checksum_hash_done_send(QString res);
    void tampon(QTreeWidgetItem* item);
    void expand_parent(QTreeWidgetItem* item);
    void icon_req(QTreeWidgetItem* item, QFileInfo info);

  public slots:
    void showDir(QTreeWidgetItem* item, int column);
    MyTreeWidget* changeModel(QString path);
    void Reset();
    void update_view(QString name);
    void PopulateDir(QTreeWidgetItem* parent);
    void aff_icon(QTreeWidgetItem* item, QFileInfo info);
    void retrieve_path_lineedit();
    void set_path_lineedit();
    void set_exclus(QString exclu);
    void changeHeaderMD5(bool on);
    void changeHeaderSHA1(bool on);
    void cc();
    void ccAll();
    void setopt(bool name, bool size, bool path, bool remember_dir, bool remember_view,
                bool upper_case);
    void scrollitem(QTreeWidgetItem* item, int column);
    void set_AutoScroll(bool on);
    void open_explorer();
    void handle_args(QStringList& args);
    void HashThis();
    void HashAll();
    void HashDir();
    void stop_thread();
    void done_single();
    void cc_file();
    void cc_all_file();
    void checksum_hash();

  protected slots:
    void reactivate_all();
    void tampon_calculate_hash();
    void tampon_calculate_hashdir();
    void PopulateList(QTreeWidgetItem* parent);
    void expand_tree(QTreeWidgetItem* item);
    void compute_compare(QTreeWidgetItem* item);
    void compute_compare2();
    void checksum();
    void checksum_hash_done();

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

  private:
    friend class ChecksumFileVerifier; // connects a slot that is nobody else's

    void configure_view();
    void make_connections();
    void connect_controls();
    void connect_actions();
    void forget_rows(const QSet<QTreeWidgetItem*>& dying);
    void forget_all_rows();
    void unselect_all();
    void wait_until_listed();

    PaneHost* main_window; ///< the window, or the next
    std::unique_ptr<PaneHost> lone_host_;
    QCryptographicHash::Algorithm algo = QCryptographicHash::Md5;
    std::unique_ptr<DigestRecorder> recorder_;
    std::unique_ptr<DirectoryNavigator> navigator_;
    std::unique_ptr<RowExpander> expander_;
    std::unique_ptr<HashJobController> jobs_;
    std::unique_ptr<ChecksumFileWriter> writer_;
    std::unique_ptr<ChecksumFileVerifier> verifier_;
    std::unique_ptr<DigestCheck> check_;
};
