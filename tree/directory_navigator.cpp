#include "tree/directory_navigator.h"

#include "platform/volumes.h"
#include "tree/mytreewidget.h"
#include "tree/row_disposal.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>

#include <utility>

namespace {

// Most directories are listed within so many milliseconds; nobody notices that the window does not
// answer meanwhile, and the pane is not seen empty.
constexpr int patience_ms = 8;

// A directory that had more rows than this is not waited for when it is listed again.
constexpr int most_rows_in_time = 2'000;

QString custom_entry()
{
    return MyTreeWidget::tr("Personnalisé");
}

/// The selector's entry for the volume of a canonical path, or -1.
int entry_of(const QComboBox& selector, const QString& canonical)
{
    QStringList entries;
    for (int i = 0; i < selector.count(); ++i) {
        const QString entry = selector.itemText(i);
        entries.append(entry == custom_entry() ? QString() : entry);
    }
    return static_cast<int>(platform::find_entry(entries, canonical));
}

} // namespace

DirectoryNavigator::DirectoryNavigator(QTreeWidget& tree, PaneControls& controls)
    : tree_(tree), controls_(controls), inserter_(tree),
      dir_(platform::root_of_entry(controls.drive_combo->currentText()))
{
    dir_.setFilter(engine::shown_entries);
}

void DirectoryNavigator::open(const QString& path, Then then)
{
    start({path, dir_.filter(), true}, std::move(then));
}

void DirectoryNavigator::enter(const QString& path, Then then)
{
    dir_.setPath(path);
    canonical_ = path;
    show_path();
    controls_.status_label->setText(path);
    reload(std::move(then));
}

void DirectoryNavigator::reload(Then then)
{
    // A list of dropped files gives way to the directory that was shown before it.
    if (in_custom_mode()) {
        open(dir_.path(), std::move(then));
    } else {
        start({dir_.path(), dir_.filter(), false}, std::move(then));
    }
}

void DirectoryNavigator::start(const DirectoryRequest& request, Then then)
{
    fresh_ = false;
    drop_listing();
    const bool again = std::exchange(listed_path_, request.path) == request.path;
    const bool is_long = again && tree_.topLevelItemCount() > most_rows_in_time;
    dispose_of_rows(tree_);
    listing_ = true;
    then_ = std::move(then);
    loader_.reset(new DirectoryLoader(request));
    connect(loader_.get(), &DirectoryLoader::resolved, this,
            [this, opened = request.falls_back](const QString& path, const QString& canonical) {
                show_resolved(path, canonical, opened);
            });
    connect(loader_.get(), &DirectoryLoader::loaded, this, &DirectoryNavigator::insert_rows);
    loader_->wait(is_long ? 0 : patience_ms);
    if (loader_ && request.falls_back) {
        controls_.status_label->setText(QDir::toNativeSeparators(request.path));
    }
}

void DirectoryNavigator::drop_listing()
{
    loader_.reset();
    inserter_.cancel();
    then_ = {};
}

void DirectoryNavigator::abandon()
{
    if (listing_) {
        drop_listing();
        settle();
    }
}

void DirectoryNavigator::show_resolved(const QString& path, const QString& canonical, bool opened)
{
    const bool elsewhere = canonical != canonical_ && !canonical.isEmpty();
    if (elsewhere) {
        canonical_ = canonical;
    }
    if (opened) {
        dir_.setPath(path);
        controls_.status_label->setText(canonical);
        controls_.drive_combo->setCurrentIndex(entry_of(*controls_.drive_combo, canonical));
    }
    if (opened || elsewhere) {
        show_path();
    }
}

void DirectoryNavigator::insert_rows(QList<engine::Entry>& entries)
{
    loader_.reset();
    tree_.scrollToTop();
    inserter_.insert(nullptr, std::move(entries), [this] {
        listing_ = false;
        if (const Then then = std::exchange(then_, {})) {
            then();
        }
        if (!listing_) {
            settle();
        }
    });
}

void DirectoryNavigator::settle()
{
    listing_ = false;
    while (!listing_ && !when_listed_.empty()) {
        const Then next = std::move(when_listed_.front());
        when_listed_.pop_front();
        next();
    }
    if (!listing_) {
        emit settled();
    }
}

void DirectoryNavigator::when_listed(Then then)
{
    if (listing_) {
        when_listed_.push_back(std::move(then));
    } else {
        then();
    }
}

bool DirectoryNavigator::in_custom_mode() const
{
    return controls_.drive_combo->currentText() == custom_entry();
}

void DirectoryNavigator::enter_custom_mode()
{
    int entry =
        controls_.drive_combo->findText(custom_entry(), Qt::MatchExactly | Qt::MatchCaseSensitive);
    if (entry < 0) {
        controls_.drive_combo->addItem(custom_entry());
        entry = controls_.drive_combo->count() - 1;
    }
    controls_.drive_combo->setCurrentIndex(entry);
}

void DirectoryNavigator::show_path()
{
    controls_.path_edit->setText(QDir::toNativeSeparators(canonical_));
}
