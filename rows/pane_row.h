#pragma once

#include "engine/listing.h"
#include "engine/pairing.h"

#include <QIcon>
#include <QString>
#include <QTreeWidgetItem>

#include <array>

/// Columns of a pane.
enum Column {
    ColName, ///< file name and system icon
    ColSize, ///< size text, files only
    ColPath, ///< hidden: the full path, a row's identity
    ColHash, ///< checksum in hexadecimal, empty until computed
    ColumnCount,
};

/// Kinds of rows, told apart by QTreeWidgetItem::type().
enum RowType {
    TypeDir = QTreeWidgetItem::UserType + 1, ///< a directory, the ".." row included
    TypeFile,                                ///< a file
};

/// A row of a pane.
///
/// It keeps its texts and its mark in fields of its own and answers the item interface from them:
/// a pane may show 100,000 rows, and the general store of QTreeWidgetItem would cost several
/// allocations and signals for every text, alignment and brush. What it does not know about goes
/// to that store.
///
/// Belongs to the GUI thread, like every item; owned by the tree once it has been added.
class PaneRow final : public QTreeWidgetItem
{
  public:
    /// Where a row came from decides which of its columns are aligned.
    enum class Origin : quint8 {
        Listed,  ///< by a directory listing: size to the right, checksum centred in height
        Dropped, ///< onto the pane: size to the right
        Walked,  ///< found by a job: none
    };

    /// A file or directory row without icon.
    PaneRow(const engine::Entry& entry, Origin origin);

    QVariant data(int column, int role) const override;

    /// Sets the display text of the four columns; any other role is kept by the base class.
    void setData(int column, int role, const QVariant& value) override;

    void set_icon(const QIcon& icon) { icon_ = icon; }

    /// The texts, without a detour by data().
    const QString& name() const { return texts_[ColName]; }
    const QString& path() const { return texts_[ColPath]; }
    const QString& checksum() const { return texts_[ColHash]; }

    /// Paints the mark on all columns but the path, with a text colour that can be read on it
    /// under any palette. The caller repaints the view: marks come by the thousand.
    void set_mark(engine::Mark mark) { mark_ = mark; }
    engine::Mark mark() const { return mark_; }

    /// Empties the checksum and whitens the row; the caller repaints the view.
    void clear_checksum();

  private:
    QVariant alignment(int column) const;

    std::array<QString, ColumnCount> texts_;
    QIcon icon_;
    Origin origin_;
    engine::Mark mark_ = engine::Mark::None;
};

/// The texts of a pane's row, whose items are all PaneRows.
inline const QString& name_of(const QTreeWidgetItem& row)
{
    return static_cast<const PaneRow&>(row).name();
}
inline const QString& path_of(const QTreeWidgetItem& row)
{
    return static_cast<const PaneRow&>(row).path();
}
inline const QString& checksum_of(const QTreeWidgetItem& row)
{
    return static_cast<const PaneRow&>(row).checksum();
}

/// The mark of a pane's row.
inline engine::Mark mark_of(const QTreeWidgetItem& row)
{
    return static_cast<const PaneRow&>(row).mark();
}

/// Calls `visit` for every PaneRow below an item, parents before their children, collapsed branches
/// included.
template<typename Visit>
void for_each_row(const QTreeWidgetItem& parent, const Visit& visit)
{
    for (int i = 0; i < parent.childCount(); ++i) {
        const auto& row = static_cast<const PaneRow&>(*parent.child(i));
        visit(row);
        if (row.childCount() > 0) {
            for_each_row(row, visit);
        }
    }
}

/// Whether this is the row that leads to the parent directory.
bool is_way_up(const QTreeWidgetItem* row);

/// The top-level rows of a pane, less the way up.
QList<QTreeWidgetItem*> content_rows(const QTreeWidget& tree);

/// The first of the content rows that has this name; null when there is none.
QTreeWidgetItem* find_content_row(const QTreeWidget& tree, const QString& name);

/// A row's file under the name that it has in its directory: that of the row above or, of a
/// top-level row, `directory`. Only for links is this another path than the row's own. An empty
/// `directory` says that top-level rows lie where their paths say.
QString place_of(const QTreeWidgetItem& row, const QString& directory);

/// The same, but empty where it is the row's own path.
QString place_of_link(const QTreeWidgetItem& row, const QString& directory);
