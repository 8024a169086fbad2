// A pane's way through the file system, handed on to the parts that know it.

#include "platform/volumes.h"
#include "rows/icon_cache.h"
#include "rows/pane_row.h"
#include "tree/directory_navigator.h"
#include "tree/hash_job_controller.h"
#include "tree/mytreewidget.h"
#include "tree/pane_host.h"
#include "tree/path_arguments.h"
#include "tree/row_expander.h"

#include <QEventLoop>
#include <QLineEdit>
#include <QRegularExpression>
#include <QScrollBar>

using namespace Qt::StringLiterals;

void MyTreeWidget::PopulateView()
{
    navigator_->reload();
    wait_until_listed();
}

void MyTreeWidget::open_directory(const QString& path)
{
    if (!job_running()) {
        navigator_->open(path);
    }
}

MyTreeWidget* MyTreeWidget::changeModel(QString path)
{
    open_directory(path);
    wait_until_listed();
    return this;
}

void MyTreeWidget::Reset()
{
    list_anew();
    wait_until_listed();
}

void MyTreeWidget::list_anew()
{
    if (in_custom_mode()) {
        reset_marks();
        return;
    }
    navigator_->reload([this, position = verticalScrollBar()->value()] {
        // The scroll bar knows its new range only once the rows are laid out.
        executeDelayedItemsLayout();
        verticalScrollBar()->setValue(position);
    });
}

void MyTreeWidget::update_view(QString name)
{
    list_anew_and_select(name);
    wait_until_listed();
}

void MyTreeWidget::list_anew_and_select(const QString& name)
{
    main_window->show_status(name);
    const QString wanted = name.isEmpty() && currentItem() ? name_of(*currentItem()) : name;
    navigator_->reload([this, wanted] {
        if (QTreeWidgetItem* row = select_by_name(wanted)) {
            setCurrentItem(row, ColName, QItemSelectionModel::NoUpdate);
            scrollToItem(row, QAbstractItemView::PositionAtCenter);
        }
    });
}

void MyTreeWidget::wait_until_listed()
{
    QEventLoop loop;
    connect(navigator_.get(), &DirectoryNavigator::settled, &loop, &QEventLoop::quit);
    connect(expander_.get(), &RowExpander::settled, &loop, &QEventLoop::quit);
    // Ends without the rows when the application quits.
    if (is_listing()) {
        loop.exec();
    }
}

void MyTreeWidget::showDir(QTreeWidgetItem* item, int /*column*/)
{
    static const QRegularExpression checksum_suffix(u"md5|sha1"_s);
    const QString path = path_of(*item);
    if (checksum_suffix.match(QFileInfo(path).suffix().toLower()).hasMatch()) {
        compute_compare(item);
    } else if (item->type() != TypeDir) {
        HashThis();
    } else if (!job_running()) {
        navigator_->enter(path);
    }
}

void MyTreeWidget::PopulateDir(QTreeWidgetItem* parent)
{
    expander_->fill(parent);
    wait_until_listed();
}

void MyTreeWidget::expand_tree(QTreeWidgetItem* item)
{
    if (item->treeWidget()) {
        item->setExpanded(true);
    }
}

void MyTreeWidget::aff_icon(QTreeWidgetItem* item, QFileInfo info)
{
    IconCache& icons = IconCache::shared();
    const bool directory = item->type() == TypeDir;
    item->setIcon(ColName, directory ? icons.directory() : icons.file(info.filePath()));
}

void MyTreeWidget::set_path_lineedit()
{
    navigator_->show_path();
}

void MyTreeWidget::retrieve_path_lineedit()
{
    open_directory(path_edit->text());
}

void MyTreeWidget::open_and_hash_all(const QString& path)
{
    navigator_->enter(path, [this] { jobs_->hash_directory(); });
}

void MyTreeWidget::handle_args(QStringList& args)
{
    open_arguments(*this, args);
}

QString MyTreeWidget::volume_label(const QString& root) const
{
    return platform::volume_label(root);
}

const QDir& MyTreeWidget::current_dir() const
{
    return navigator_->directory();
}

QString MyTreeWidget::shown_directory() const
{
    return in_custom_mode() ? QString() : navigator_->canonical_path();
}

bool MyTreeWidget::in_custom_mode() const
{
    return navigator_->in_custom_mode();
}

bool MyTreeWidget::is_listing() const
{
    return navigator_->is_listing() || expander_->is_busy();
}
