#include "tree/mytreewidget.h"

#include "rows/pane_row.h"
#include "rows/row_marks.h"
#include "rows/selection.h"
#include "tree/checksum_file_verifier.h"
#include "tree/checksum_file_writer.h"
#include "tree/digest_check.h"
#include "tree/digest_recorder.h"
#include "tree/directory_navigator.h"
#include "tree/hash_job_controller.h"
#include "tree/pane_host.h"
#include "tree/row_deaths.h"
#include "tree/row_expander.h"

#include <QAction>
#include <QComboBox>
#include <QItemSelection>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QTimer>

using namespace Qt::StringLiterals;

MyTreeWidget::MyTreeWidget(QWidget* parent)
    : QTreeWidget(parent), main_window(dynamic_cast<PaneHost*>(parent)),
      recorder_(std::make_unique<DigestRecorder>()),
      navigator_(std::make_unique<DirectoryNavigator>(*this, *this)),
      expander_(std::make_unique<RowExpander>(*this)),
      jobs_(std::make_unique<HashJobController>(*this, *recorder_)),
      writer_(std::make_unique<ChecksumFileWriter>(*this, *recorder_, *jobs_)),
      verifier_(std::make_unique<ChecksumFileVerifier>(*this, *recorder_, *jobs_)),
      check_(std::make_unique<DigestCheck>(*this, *jobs_))
{
    if (!main_window) {
        lone_host_ = make_lone_host();
        main_window = lone_host_.get();
    }
    create_actions(this);
    watch_row_deaths(
        *this, [this](const auto& dying) { forget_rows(dying); }, [this] { forget_all_rows(); });
    configure_view();
    make_connections();
    // The first drive, unless another directory is opened before anybody can see it.
    QTimer::singleShot(0, this, [this] {
        if (navigator_->is_fresh()) {
            navigator_->reload();
        }
    });
}

MyTreeWidget::~MyTreeWidget()
{
    // The base class clears its model when our members are gone already.
    model()->disconnect(this);
}

void MyTreeWidget::configure_view()
{
    setHeaderLabels({tr("Nom"), tr("Taille"), QString(), u"MD5"_s});
    setColumnWidth(ColName, 250);
    setColumnWidth(ColSize, 75);
    setColumnWidth(ColHash, 250);
    setColumnHidden(ColPath, true);
    setAcceptDrops(true);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setAutoScroll(true);
    // Every row is one line high; asking each of 100,000 would take seconds.
    setUniformRowHeights(true);
    addActions({act_md5, act_sha1, act_md5_all, act_sha1_all});
}

void MyTreeWidget::make_connections()
{
    connect_controls();
    main_window->attach(*this);
    connect_actions();
    connect(this, &MyTreeWidget::alldone, this, &MyTreeWidget::reactivate_all);
    connect(this, &MyTreeWidget::done, status_label, &QLabel::setText);
    qRegisterMetaType<QItemSelection>("QItemSelection");
    expander_->set_lazy(true);
    connect(this, &MyTreeWidget::expand_parent, this, &MyTreeWidget::expand_tree);
    qRegisterMetaType<QFileInfo>("QFileInfo");
    connect(this, &MyTreeWidget::icon_req, this, &MyTreeWidget::aff_icon);
}

void MyTreeWidget::connect_controls()
{
    connect(drive_combo, &QComboBox::textActivated, this, &MyTreeWidget::open_directory);
    connect(this, &QTreeWidget::itemActivated, this, &MyTreeWidget::showDir);
    connect(path_edit, &QLineEdit::returnPressed, this, &MyTreeWidget::retrieve_path_lineedit);
    connect(this, &QTreeWidget::itemActivated, this, &MyTreeWidget::set_path_lineedit);
    connect(stop_button, &QPushButton::clicked, this, &MyTreeWidget::stop_thread);
    connect(reset_button, &QPushButton::clicked, this, &MyTreeWidget::list_anew);
    connect(this, &MyTreeWidget::processing, status_label, &QLabel::setText);
    connect(this, &MyTreeWidget::prog_bar, progress, &QProgressBar::setValue);
}

void MyTreeWidget::connect_actions()
{
    connect(act_md5, &QAction::triggered, this, &MyTreeWidget::HashThis);
    connect(act_md5_all, &QAction::triggered, this, &MyTreeWidget::HashDir);
    connect(act_md5_file, &QAction::triggered, this, &MyTreeWidget::cc_file);
    connect(act_md5_dir_file, &QAction::triggered, this, &MyTreeWidget::cc_all_file);
    connect(act_sha1, &QAction::triggered, this, &MyTreeWidget::HashThis);
    connect(act_sha1_all, &QAction::triggered, this, &MyTreeWidget::HashDir);
    connect(act_sha1_file, &QAction::triggered, this, &MyTreeWidget::cc_file);
    connect(act_sha1_dir_file, &QAction::triggered, this, &MyTreeWidget::cc_all_file);
    connect(act_check, &QAction::triggered, this, &MyTreeWidget::checksum);
    connect(act_explorer, &QAction::triggered, this, &MyTreeWidget::open_explorer);
    connect(act_autoscroll, &QAction::toggled, this, &MyTreeWidget::set_AutoScroll);
}

void MyTreeWidget::forget_rows(const QSet<QTreeWidgetItem*>& dying)
{
    job_items.removeIf([&](QTreeWidgetItem* row) { return dying.contains(row); });
    jobs_->forget(dying);
    check_->forget(dying);
    expander_->forget(dying);
}

void MyTreeWidget::forget_all_rows()
{
    job_items.clear();
    jobs_->forget_all();
    check_->forget_all();
    expander_->cancel();
}

void MyTreeWidget::reset_marks()
{
    main_window->finish_marking();
    clear_checksums(*this);
}

void MyTreeWidget::deselect_top_level()
{
    deselect_top_level_rows(*this);
}

QTreeWidgetItem* MyTreeWidget::select_by_name(const QString& name)
{
    QTreeWidgetItem* row = find_content_row(*this, name);
    if (row) {
        row->setSelected(true);
    }
    return row;
}
