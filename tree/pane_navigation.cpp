// The pane's way through the file system: listing directories and moving between them.

#include "platform/volumes.h"
#include "tree/background_listing.h"
#include "tree/icon_cache.h"
#include "tree/mytreewidget.h"
#include "tree/pane_row.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QRegularExpression>
#include <QScopeGuard>
#include <QScrollBar>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

// Rows are added in portions; between two of them the window may answer.
constexpr qsizetype rows_per_portion = 1000;
constexpr int breath_ms = 20;

// Asked for a longer path, a system may cut it off and answer for another one.
constexpr qsizetype longest_path = 32'000;

PaneRow* make_row(const engine::Entry& entry)
{
    auto* row = new PaneRow(entry, PaneRow::Origin::Listed);
    IconCache& icons = IconCache::shared();
    row->set_icon(entry.is_dir ? icons.directory() : icons.file(entry.path));
    return row;
}

QList<QTreeWidgetItem*> make_rows(const QList<engine::Entry>& entries, qsizetype from, qsizetype n)
{
    QList<QTreeWidgetItem*> rows;
    rows.reserve(n);
    for (qsizetype i = from; i < from + n; ++i) {
        rows.append(make_row(entries[i]));
    }
    return rows;
}

/// An item that does not know its position is looked for from the end of its parent's list, and
/// remembers what was found. Asked for right after it was added, last one first, each is found
/// near the end; left for later, a large listing would be searched once per row.
void prime_positions(const QTreeWidget& tree, const QList<QTreeWidgetItem*>& rows)
{
    std::for_each(rows.crbegin(), rows.crend(),
                  [&](QTreeWidgetItem* row) { tree.indexFromItem(row); });
}

} // namespace

QString MyTreeWidget::volume_label(const QString& root) const
{
    return platform::volume_label(root);
}

bool MyTreeWidget::in_custom_mode() const
{
    return drive_combo->currentText() == tr("Personnalisé");
}

qsizetype MyTreeWidget::first_content_row() const
{
    return is_way_up(topLevelItem(0)) ? 1 : 0;
}

QTreeWidgetItem* MyTreeWidget::find_top_level(const QString& name) const
{
    for (int i = 0; i < topLevelItemCount(); ++i) {
        if (name_of(*topLevelItem(i)) == name) {
            return topLevelItem(i);
        }
    }
    return nullptr;
}

void MyTreeWidget::abandon_listings()
{
    for (BackgroundListing* listing : std::as_const(listings)) {
        listing->abandon();
    }
}

bool MyTreeWidget::listing() const
{
    return std::any_of(listings.begin(), listings.end(),
                       [](const BackgroundListing* listing) { return !listing->abandoned(); });
}

bool MyTreeWidget::append_rows(QTreeWidgetItem* parent, const QList<engine::Entry>& entries,
                               const BackgroundListing& listing)
{
    // Invalid at first: the pane was emptied and the listing waited for without a breath.
    QElapsedTimer since_breath;
    for (qsizetype at = 0; at < entries.size(); at += rows_per_portion) {
        const qsizetype portion = std::min(rows_per_portion, entries.size() - at);
        const QList<QTreeWidgetItem*> rows = make_rows(entries, at, portion);
        parent ? parent->addChildren(rows) : addTopLevelItems(rows);
        prime_positions(*this, rows);
        const bool more = at + portion < entries.size();
        if (more && (!since_breath.isValid() || since_breath.hasExpired(breath_ms))) {
            QCoreApplication::processEvents();
            since_breath.start();
        }
        if (listing.abandoned()) {
            return false;
        }
    }
    return true;
}

void MyTreeWidget::prepare_reset()
{
    if (!in_custom_mode()) {
        prepared_listing = std::make_unique<BackgroundListing>(dir.path(), dir.filter());
    }
}

/// Lists a directory and adds its rows below `parent`, or at the top level for null. False when
/// the listing was abandoned on the way: the parent may be gone then.
bool MyTreeWidget::list_into(QTreeWidgetItem* parent, const QString& path, QDir::Filters filters)
{
    std::unique_ptr<BackgroundListing> listing = std::move(prepared_listing);
    if (!listing || listing->path() != path || listing->filters() != filters) {
        listing = std::make_unique<BackgroundListing>(path, filters);
    }
    listings.append(listing.get());
    const auto closed = qScopeGuard([&] { listings.removeOne(listing.get()); });
    const auto entries = listing->wait();
    if (entries && parent && parent->childCount() > 0) {
        return true; // collapsed and expanded again meanwhile: it is filled already
    }
    return entries && append_rows(parent, *entries, *listing);
}

bool MyTreeWidget::PopulateView()
{
    if (in_custom_mode()) {
        return !job_running() && open_directory(dir.canonicalPath());
    }
    if (!list_into(nullptr, dir.path(), dir.filter())) {
        return false;
    }
    scrollToTop();
    return true;
}

void MyTreeWidget::PopulateDir(QTreeWidgetItem* parent)
{
    if (parent && parent->childCount() == 0) {
        list_into(parent, path_of(*parent), engine::held_entries);
    }
}

void MyTreeWidget::show_current_path()
{
    path_edit->setText(QDir::toNativeSeparators(dir.canonicalPath()));
}

// Takes a path, a saved path whose drive is gone, or the text of a selector entry.
void MyTreeWidget::open_or_fall_back(const QString& path)
{
    const auto opened = [this](const QString& candidate) {
        dir.setPath(candidate);
        return !candidate.isEmpty() && candidate.size() <= longest_path && dir.exists();
    };
    if (!opened(path) && !opened(platform::root_of_path(path)) &&
        !opened(platform::root_of_entry(path))) {
        dir.setPath(QDir::rootPath());
    }
}

MyTreeWidget* MyTreeWidget::changeModel(QString path)
{
    if (!job_running()) {
        open_directory(path);
    }
    return this;
}

/// Answers like PopulateView().
bool MyTreeWidget::open_directory(const QString& path)
{
    open_or_fall_back(path);
    const QString canonical = dir.canonicalPath();
    status_label->setText(canonical);
    show_current_path();

    QStringList entries;
    for (int i = 0; i < drive_combo->count(); ++i) {
        const QString entry = drive_combo->itemText(i);
        entries.append(entry == tr("Personnalisé") ? QString() : entry);
    }
    drive_combo->setCurrentIndex(static_cast<int>(platform::find_entry(entries, canonical)));

    clear();
    return PopulateView();
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
        dir.setPath(path);
        status_label->setText(path);
        clear();
        PopulateView();
    }
}

void MyTreeWidget::set_path_lineedit()
{
    show_current_path();
}

void MyTreeWidget::retrieve_path_lineedit()
{
    changeModel(path_edit->text());
}

void MyTreeWidget::Reset()
{
    if (in_custom_mode()) {
        reset_marks();
        return;
    }
    const int position = verticalScrollBar()->value();
    clear();
    dir.refresh();
    if (PopulateView()) {
        // The scroll bar knows its new range only once the rows are laid out.
        executeDelayedItemsLayout();
        verticalScrollBar()->setValue(position);
    }
}

void MyTreeWidget::update_view(QString name)
{
    show_in_status_bar(name);
    QString wanted = name;
    if (wanted.isEmpty() && currentItem()) {
        wanted = name_of(*currentItem());
    }
    clear();
    dir.refresh();
    PopulateView();
    QTreeWidgetItem* row = wanted.isEmpty() ? nullptr : find_top_level(wanted);
    if (row) {
        scrollToItem(row, QAbstractItemView::PositionAtCenter);
        row->setSelected(true);
    }
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
