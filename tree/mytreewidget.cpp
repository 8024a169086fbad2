#include "tree/mytreewidget.h"

#include "app/mainfen.h"
#include "engine/job_run.h"
#include "platform/volumes.h"
#include "tree/background_listing.h"
#include "tree/icon_cache.h"
#include "tree/pane_row.h"

#include <QItemSelection>
#include <QSet>

#include <algorithm>

using namespace Qt::StringLiterals;

MyTreeWidget::MyTreeWidget(QWidget* parent, FirstListing first_listing)
    : QTreeWidget(parent), main_window(qobject_cast<MainFen*>(parent))
{
    create_actions();
    create_header();
    dir = QDir(QString());
    dir.setFilter(engine::shown_entries);
    dir.setSorting(QDir::Name | QDir::DirsFirst | QDir::LocaleAware);
    create_controls();
    fill_drive_combo();
    dir.setPath(platform::root_of_entry(drive_combo->currentText()));
    status_label->setText(drive_combo->currentText().left(3));
    track_rows();
    if (first_listing == FirstListing::AtOnce) {
        PopulateView();
    }
    configure_view();
    make_connections();
}

MyTreeWidget::~MyTreeWidget()
{
    // The base class clears its model when our members are gone already.
    disconnect(model(), &QAbstractItemModel::rowsAboutToBeRemoved, this,
               &MyTreeWidget::forget_rows);
    disconnect(model(), &QAbstractItemModel::modelAboutToBeReset, this,
               &MyTreeWidget::forget_all_rows);
    abandon_listings();
}

void MyTreeWidget::create_header()
{
    header = new QTreeWidgetItem;
    header->setText(ColName, tr("Nom"));
    header->setText(ColSize, tr("Taille"));
    header->setText(ColPath, QString());
    header->setText(ColHash, u"MD5"_s);
    setColumnCount(ColumnCount);
    setHeaderItem(header);
}

void MyTreeWidget::create_controls()
{
    drive_combo = new QComboBox;
    path_edit = new QLineEdit;
    path_edit->setTextMargins(5, 0, 0, 2);
    status_label = new QLabel;
    // File names are shown as they are, whatever markup they look like.
    status_label->setTextFormat(Qt::PlainText);
    status_label->setMaximumWidth(600);
    progress = new QProgressBar;

    constexpr int button_width = 30;
    stop_button = new QPushButton(QIcon(u":/res/close.png"_s), QString());
    stop_button->setMaximumWidth(button_width);
    reset_button = new QPushButton(QIcon(u":/res/reset.png"_s), QString());
    reset_button->setMaximumWidth(button_width);
}

void MyTreeWidget::fill_drive_combo()
{
    const QList<platform::Volume> volumes = platform::volumes();
    for (const platform::Volume& volume : volumes) {
        drive_combo->addItem(IconCache::shared().drive(volume.root),
                             platform::volume_entry(volume));
    }
}

void MyTreeWidget::configure_view()
{
    setColumnWidth(ColName, 250);
    setColumnWidth(ColSize, 75);
    setColumnWidth(ColHash, 250);
    setColumnHidden(ColPath, true);
    progress->setBaseSize(300, 50);

    setAcceptDrops(true);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setAutoScroll(true);
    // Every row is one line high; asking each of 100,000 would take seconds.
    setUniformRowHeights(true);
}

void MyTreeWidget::make_connections()
{
    connect(drive_combo, &QComboBox::textActivated, this, &MyTreeWidget::changeModel);
    connect(this, &QTreeWidget::itemActivated, this, &MyTreeWidget::showDir);
    connect(path_edit, &QLineEdit::returnPressed, this, &MyTreeWidget::retrieve_path_lineedit);
    connect(this, &QTreeWidget::itemActivated, this, &MyTreeWidget::set_path_lineedit);
    connect(stop_button, &QPushButton::clicked, this, &MyTreeWidget::stop_thread);
    connect(reset_button, &QPushButton::clicked, this, &MyTreeWidget::Reset);
    connect(this, &MyTreeWidget::processing, status_label, &QLabel::setText);
    connect(this, &MyTreeWidget::prog_bar, progress, &QProgressBar::setValue);
    connect_main_window();
    connect_actions();
    connect(this, &MyTreeWidget::alldone, this, &MyTreeWidget::reactivate_all);
    connect(this, &MyTreeWidget::done, status_label, &QLabel::setText);
    qRegisterMetaType<QItemSelection>("QItemSelection");
    connect(this, &QTreeWidget::itemExpanded, this, &MyTreeWidget::PopulateDir);
    connect(this, &MyTreeWidget::expand_parent, this, &MyTreeWidget::expand_tree);
    qRegisterMetaType<QFileInfo>("QFileInfo");
    connect(this, &MyTreeWidget::icon_req, this, &MyTreeWidget::aff_icon);
}

void MyTreeWidget::track_rows()
{
    connect(model(), &QAbstractItemModel::rowsAboutToBeRemoved, this, &MyTreeWidget::forget_rows);
    connect(model(), &QAbstractItemModel::modelAboutToBeReset, this,
            &MyTreeWidget::forget_all_rows);
}

void MyTreeWidget::forget_rows(const QModelIndex& parent, int first, int last)
{
    QSet<QTreeWidgetItem*> dying;
    const auto add_with_children = [&](auto&& self, QTreeWidgetItem* row) -> void {
        dying.insert(row);
        for (int i = 0; i < row->childCount(); ++i) {
            self(self, row->child(i));
        }
    };
    for (int r = first; r <= last; ++r) {
        if (QTreeWidgetItem* row = itemFromIndex(model()->index(r, 0, parent))) {
            add_with_children(add_with_children, row);
        }
    }
    abandon_listings();
    job_items.removeIf([&](QTreeWidgetItem* row) { return dying.contains(row); });
    job_rows.forget(dying);
    if (dying.contains(file_row)) {
        file_row = nullptr;
    }
}

void MyTreeWidget::forget_all_rows()
{
    // What is still being listed belongs to rows that die now.
    abandon_listings();
    job_items.clear();
    job_rows.forget_all();
    file_row = nullptr;
}

void MyTreeWidget::changeHeaderMD5(bool on)
{
    if (on) {
        header->setText(ColHash, u"MD5"_s);
        algo = QCryptographicHash::Md5;
    }
}

void MyTreeWidget::changeHeaderSHA1(bool on)
{
    if (on) {
        header->setText(ColHash, u"SHA1"_s);
        algo = QCryptographicHash::Sha1;
    }
}

void MyTreeWidget::unselect_all()
{
    clearSelection();
}

void MyTreeWidget::reactivate_all()
{
    unselect_all();
    drive_combo->setEnabled(true);
    setAcceptDrops(true);
    progress->setValue(0);
}

void MyTreeWidget::reset_marks()
{
    QSet<QTreeWidgetItem*> cleared;
    const auto reset_below = [&](auto&& self, QTreeWidgetItem* row) -> void {
        if (row->childCount() == 0) {
            if (!checksum_of(*row).isEmpty()) {
                static_cast<PaneRow*>(row)->clear_checksum();
                cleared.insert(row);
            }
            return;
        }
        for (int i = 0; i < row->childCount(); ++i) {
            self(self, row->child(i));
        }
    };
    for (int i = 0; i < topLevelItemCount(); ++i) {
        reset_below(reset_below, topLevelItem(i));
    }
    // A job that is still running has nothing to say of these any more: two files that both lost
    // their checksums would pass for alike at its end.
    job_items.removeIf([&](QTreeWidgetItem* row) { return cleared.contains(row); });
    viewport()->update();
}

void MyTreeWidget::deselect_top_level()
{
    if (topLevelItemCount() == 0) {
        return;
    }
    const QItemSelection all(indexFromItem(topLevelItem(0)),
                             indexFromItem(topLevelItem(topLevelItemCount() - 1)));
    selectionModel()->select(all, QItemSelectionModel::Deselect | QItemSelectionModel::Rows);
}
