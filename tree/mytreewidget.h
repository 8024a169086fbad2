#pragma once

#include "engine/hash_job.h"
#include "engine/listing.h"
#include "tree/row_table.h"

#include <QAction>
#include <QComboBox>
#include <QCryptographicHash>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QFuture>
#include <QFutureWatcher>
#include <QLabel>
#include <QLineEdit>
#include <QMap>
#include <QProgressBar>
#include <QPushButton>
#include <QSet>
#include <QStringList>
#include <QTreeWidget>

#include <memory>
#include <optional>

class BackgroundListing;
class FenCheck;
class MainFen;
struct ReportLine;

namespace engine {
class JobRun;
}

/// One directory pane: a tree of files and directories with the controls around it.
///
/// The pane lists a directory (pane_navigation.cpp), hashes rows on the thread pool
/// (pane_jobs.cpp), writes and verifies checksum files (pane_writer.cpp, pane_verifier.cpp), checks
/// one file against a digest (pane_check.cpp) and offers its commands by menu, keys and clipboard
/// (pane_menu.cpp, pane_clipboard.cpp) and by drops and command-line paths (pane_drops.cpp). What
/// it needs of the main window stands in pane_main_window.cpp.
///
/// Lives in the GUI thread; jobs reach it by messages only.
class MyTreeWidget : public QTreeWidget
{
    Q_OBJECT

  public:
    /// Whether a new pane lists the first drive, or waits for a changeModel() that follows before
    /// anyone sees it: no directory is read only to be thrown away.
    enum class FirstListing : quint8 { AtOnce, OnRequest };

    /// `parent` is the main window; a pane without one works by itself.
    explicit MyTreeWidget(QWidget* parent, FirstListing first_listing = FirstListing::AtOnce);

    /// Running jobs are asked to stop and not waited for.
    ~MyTreeWidget() override;

    /// Controls without parent until the main window lays them out.
    QComboBox* drive_combo;
    QLineEdit* path_edit;
    QLabel* status_label;
    QProgressBar* progress;
    QPushButton* stop_button;
    QPushButton* reset_button;

    /// Children of the pane, in the order in which they are made.
    QAction* act_md5;
    QAction* act_md5_all;
    QAction* act_md5_file;
    QAction* act_md5_dir_file;
    QAction* act_sha1;
    QAction* act_sha1_all;
    QAction* act_sha1_file;
    QAction* act_sha1_dir_file;
    QAction* act_check;
    QAction* act_exclude;
    QAction* act_include;
    QAction* act_explorer;
    QAction* act_autoscroll;

    /// The constructor's parent when it is the main window, else null.
    MainFen* main_window;

    /// Options, set from the settings before use and by setopt().
    bool ccname = false;   ///< copies include the name
    bool ccsize = false;   ///< copies include the size
    bool ccpath = false;   ///< copies include the path
    bool upper = false;    ///< checksums are shown in capitals
    bool rem_dir = false;  ///< directories are remembered across runs
    bool rem_view = false; ///< the view layout is remembered across runs

    /// Watches the pane's job; `finished()` follows everything that the job did.
    QFutureWatcher<void> job_watcher;

    /// Rows hashed by the last job, in hashing order; rows that died since are gone from it.
    QList<QTreeWidgetItem*> job_items;

    /// Rebuilds the top level from the current directory; every caller has cleared the tree.
    /// Answers false when another change of the listing overtook this one.
    bool PopulateView();

    /// Starts to list the directory for a Reset() that follows soon, while others are being reset.
    void prepare_reset();

    /// The label of the volume with this root path; empty when it has none.
    QString volume_label(const QString& root) const;

    /// The directory shown, or the last one shown before a list of dropped files.
    const QDir& current_dir() const { return dir; }

    /// Whether a list of dropped files is shown instead of a directory.
    bool in_custom_mode() const;

    /// The exclusion list as text, see engine::format_exclusions().
    QString get_exclus() const;

    /// Suffixes of the files that directory jobs leave out.
    QStringList exclusions;

    /// Empties the checksums of rows without children and whitens these rows.
    void reset_marks();

    /// Unselects every top-level row.
    void deselect_top_level();

    /// Opens a directory and hashes the files of its top level.
    void open_and_hash_all(const QString& path);

    /// Selects and returns the first top-level row of that name; null when there is none.
    QTreeWidgetItem* select_by_name(const QString& name);

    /// Whether a job runs, from its launch until everything it did is in the rows.
    bool job_running() const { return job_future.isRunning(); }

    /// Whether the last job was asked to stop and nobody has taken note yet.
    bool stop_flagged() const { return stop_flag; }
    void clear_stop_flag() { stop_flag = false; }

    QCryptographicHash::Algorithm algorithm() const { return algo; }

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
    /// Which rows a job works on.
    enum class JobKind { Selection, Directory };

    // mytreewidget.cpp
    void create_header();
    void create_controls();
    void fill_drive_combo();
    void configure_view();
    void make_connections();
    void track_rows();
    void forget_rows(const QModelIndex& parent, int first, int last);
    void forget_all_rows();
    void unselect_all();

    // pane_main_window.cpp
    void connect_main_window();
    void connect_check_dialog(FenCheck& dialog);
    bool comparison_starts() const;
    void restart_total_timer();
    void show_in_status_bar(const QString& text);
    void switch_algorithm(QCryptographicHash::Algorithm algorithm);
    void enable_main_window();

    // pane_navigation.cpp
    bool list_into(QTreeWidgetItem* parent, const QString& path, QDir::Filters filters);
    bool append_rows(QTreeWidgetItem* parent, const QList<engine::Entry>& entries,
                     const BackgroundListing& listing);
    void abandon_listings();
    bool listing() const;
    bool open_directory(const QString& path);
    void open_or_fall_back(const QString& path);
    void show_current_path();
    qsizetype first_content_row() const;
    QTreeWidgetItem* find_top_level(const QString& name) const;

    // pane_jobs.cpp
    void launch(void (MyTreeWidget::*job)());
    bool refused_while_listing();
    void prepare_hash();
    void plan_step(engine::HashStep::Kind kind, QTreeWidgetItem* row, const QString& path);
    bool plan_step_once(engine::HashStep::Kind kind, QTreeWidgetItem* row);
    void start_job(JobKind kind);
    void calculate_hash(QTreeWidgetItem* item);
    void finish_hash(JobKind kind);
    void receive(engine::JobMessage& message);
    void receive_single(engine::JobMessage& message);
    void add_found_directory(engine::DirectoryFound& found);
    void add_found_file(engine::FileFound& found);
    void show_result(QTreeWidgetItem* item, const QString& path, const engine::FileResult& result);
    void announce(const QString& path);

    // pane_menu.cpp
    void create_actions();
    void connect_actions();

    // pane_clipboard.cpp
    void copy_rows(const QList<QTreeWidgetItem*>& rows);

    // pane_drops.cpp
    void add_dropped_rows(const QStringList& paths);
    void compare_dropped_rows();
    void handle_one_argument(const QString& path);
    void handle_many_arguments(const QStringList& paths);

    // pane_writer.cpp
    void add_checksum_suffixes();
    void remove_checksum_suffixes();
    void arm_file_writer();
    void write_file_checksums();
    void arm_directory_writer();
    void write_directory_checksums();
    void report_not_created(const QString& name);

    // pane_verifier.cpp
    void arm_verifier(const QString& path, const QMap<QString, QString>& expected);
    void report_verification(const QList<ReportLine>& errors);

    QTreeWidgetItem* header = nullptr;
    QDir dir;
    QCryptographicHash::Algorithm algo = QCryptographicHash::Md5;

    /// Raised by stop_thread(); stays so until the main window's comparison takes note.
    bool stop_flag = false;

    QFuture<void> job_future;
    QFuture<void> file_future;
    QElapsedTimer job_timer;

    /// Full path to lowercase digest. Filled by jobs only while it is not empty: the writer and the
    /// verifier arm it with entries of their own.
    QMap<QString, QString> digests;

    /// The open verify dialog; only used while there is one.
    FenCheck* check_dialog = nullptr;

    std::unique_ptr<engine::JobRun> job_run;
    std::unique_ptr<engine::JobRun> file_run;
    std::optional<engine::HashPlan> plan; ///< while a job is being planned
    QSet<QTreeWidgetItem*> planned_rows;  ///< rows that have a step in it
    RowTable job_rows;
    QTreeWidgetItem* file_row = nullptr; ///< the row that file_run hashes

    QList<BackgroundListing*> listings; ///< being waited for, the outermost first
    std::unique_ptr<BackgroundListing> prepared_listing;
};
