#include "rows/pane_row.h"

#include "rows/size_text.h"

#include <QBrush>
#include <QCoreApplication>
#include <QFont>
#include <QTreeWidget>

#include <algorithm>

using namespace Qt::StringLiterals;
using engine::Mark;

namespace {

/// What a screen reader says of a row instead of its name alone.
QString spoken(Mark mark, const QString& name)
{
    switch (mark) {
    case Mark::Identical:
        return QCoreApplication::translate("MyTreeWidget", "Ok") + " => "_L1 + name;
    case Mark::Different:
        return QCoreApplication::translate("MyTreeWidget", "Différent => %1").arg(name);
    case Mark::NoPartner:
        return QCoreApplication::translate("MyTreeWidget", "Manquant  => %1").arg(name);
    case Mark::Cleared:
    case Mark::None:
        break;
    }
    return name;
}

/// A second sign of the mark, for people who do not tell its colours apart.
QVariant mark_font(Mark mark)
{
    QFont font;
    if (mark == Mark::Different) {
        font.setBold(true);
    } else if (mark == Mark::NoPartner) {
        font.setItalic(true);
    } else {
        return {};
    }
    return font;
}

QBrush mark_brush(Mark mark)
{
    switch (mark) {
    case Mark::Identical:
        return {Qt::green, Qt::SolidPattern};
    case Mark::Different:
        return {Qt::red, Qt::SolidPattern};
    case Mark::NoPartner:
        return {Qt::yellow, Qt::SolidPattern};
    case Mark::Cleared:
        return {Qt::white, Qt::SolidPattern};
    case Mark::None:
        break;
    }
    return {};
}

bool has_text(int column)
{
    return column >= 0 && column < ColumnCount;
}

} // namespace

PaneRow::PaneRow(const engine::Entry& entry, Origin origin)
    : QTreeWidgetItem(entry.is_dir ? TypeDir : TypeFile), texts_{entry.name, {}, entry.path, {}},
      origin_(origin)
{
    if (!entry.is_dir) {
        texts_[ColSize] = format_size(entry.size);
    } else if (entry.name != ".."_L1) {
        setChildIndicatorPolicy(QTreeWidgetItem::ShowIndicator);
    }
}

QVariant PaneRow::alignment(int column) const
{
    if (type() == TypeFile && column == ColSize && origin_ != Origin::Walked) {
        return static_cast<int>(Qt::AlignRight | Qt::AlignVCenter);
    }
    if (type() == TypeFile && column == ColHash && origin_ == Origin::Listed) {
        return static_cast<int>(Qt::AlignVCenter);
    }
    return {};
}

QVariant PaneRow::data(int column, int role) const
{
    const bool marked = mark_ != Mark::None && column != ColPath;
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        if (has_text(column)) {
            return texts_[static_cast<size_t>(column)];
        }
        break;
    case Qt::DecorationRole:
        if (column == ColName && !icon_.isNull()) {
            return icon_;
        }
        break;
    case Qt::TextAlignmentRole:
        return alignment(column);
    case Qt::BackgroundRole:
        if (marked) {
            return mark_brush(mark_);
        }
        break;
    case Qt::ForegroundRole:
        if (marked) {
            return QBrush(Qt::black);
        }
        break;
    case Qt::FontRole:
        if (const QVariant font = mark_font(mark_); marked && font.isValid()) {
            return font;
        }
        break;
    case Qt::AccessibleTextRole:
        if (column == ColName) {
            return spoken(mark_, name());
        }
        break;
    default:
        break;
    }
    return QTreeWidgetItem::data(column, role);
}

void PaneRow::setData(int column, int role, const QVariant& value)
{
    if (role == Qt::DecorationRole && column == ColName) {
        icon_ = value.value<QIcon>();
        emitDataChanged();
        return;
    }
    if ((role != Qt::DisplayRole && role != Qt::EditRole) || !has_text(column)) {
        QTreeWidgetItem::setData(column, role, value);
        return;
    }
    texts_[static_cast<size_t>(column)] = value.toString();
    if (const QTreeWidget* tree = treeWidget()) {
        // One cell only, where emitDataChanged() would name the whole row: the view then repaints
        // no more than that cell, and nothing when it is out of sight.
        static const QList<int> roles = {Qt::DisplayRole, Qt::EditRole};
        const QModelIndex index = tree->indexFromItem(this, column);
        emit tree->model()->dataChanged(index, index, roles);
    }
}

void PaneRow::clear_checksum()
{
    texts_[ColHash].clear();
    mark_ = Mark::Cleared;
}

bool is_way_up(const QTreeWidgetItem* row)
{
    return row && name_of(*row) == ".."_L1;
}

QList<QTreeWidgetItem*> content_rows(const QTreeWidget& tree)
{
    QList<QTreeWidgetItem*> rows;
    rows.reserve(tree.topLevelItemCount());
    for (int i = is_way_up(tree.topLevelItem(0)) ? 1 : 0; i < tree.topLevelItemCount(); ++i) {
        rows.append(tree.topLevelItem(i));
    }
    return rows;
}

QTreeWidgetItem* find_content_row(const QTreeWidget& tree, const QString& name)
{
    const QList<QTreeWidgetItem*> rows = content_rows(tree);
    const auto named = [&](const QTreeWidgetItem* row) { return name_of(*row) == name; };
    const auto found = std::find_if(rows.begin(), rows.end(), named);
    return found == rows.end() ? nullptr : *found;
}

QString place_of_link(const QTreeWidgetItem& row, const QString& directory)
{
    const QString above = row.parent() ? path_of(*row.parent()) : directory;
    const QString path = path_of(row);
    const QString name = name_of(row);
    const qsizetype slash = above.endsWith(u'/') ? 0 : 1;
    const bool plain = above.isEmpty() || (path.size() == above.size() + slash + name.size() &&
                                           path.startsWith(above) && path.endsWith(name));
    return plain ? QString() : (slash ? above + u'/' : above) + name;
}

QString place_of(const QTreeWidgetItem& row, const QString& directory)
{
    const QString link = place_of_link(row, directory);
    return link.isEmpty() ? path_of(row) : link;
}
