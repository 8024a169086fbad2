#include "dialogs/fenres.h"

#include "rows/pane_row.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QLabel>
#include <QListView>
#include <QPushButton>
#include <QStringListModel>
#include <QStyledItemDelegate>
#include <QTreeWidgetItemIterator>
#include <QVBoxLayout>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// Gives all lines of a list the size of the longest one, so that none is cut off and none but
/// that one is measured: a list may have 100,000 lines.
class LongestLineDelegate final : public QStyledItemDelegate
{
  public:
    LongestLineDelegate(const QStringList& lines, QObject* parent) : QStyledItemDelegate(parent)
    {
        const auto shorter = [](const QString& a, const QString& b) { return a.size() < b.size(); };
        const auto longest = std::max_element(lines.begin(), lines.end(), shorter);
        longest_row = static_cast<int>(longest - lines.begin());
    }

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override
    {
        return QStyledItemDelegate::sizeHint(option, index.siblingAtRow(longest_row));
    }

  private:
    int longest_row;
};

QListView* create_view()
{
    auto* view = new QListView;
    view->setMinimumWidth(400);
    view->setUniformItemSizes(true);
    // The most characters are not always the widest: what is still too long keeps both its ends.
    view->setTextElideMode(Qt::ElideMiddle);
    return view;
}

void show_lines(QListView* view, QStringListModel* model, const QStringList& lines)
{
    model->setStringList(lines);
    view->setItemDelegate(new LongestLineDelegate(lines, view));
}

/// Calls `visit` for every item, parents before their children, collapsed branches included.
template<typename Visit>
void for_each_item(QTreeWidget* tree, Visit visit)
{
    for (QTreeWidgetItemIterator it(tree); *it; ++it) {
        visit(**it);
    }
}

QString as_lines(const QStringList& entries)
{
    return entries.join(u'\n') + u'\n';
}

} // namespace

FenRes::FenRes(QWidget* parent, QTreeWidget* tree1, QTreeWidget* tree2) : QDialog(parent)
{
    auto* verdict = new QLabel(tr("Résultat :"));
    verdict->setMargin(6);
    auto* diff_label = new QLabel(tr("Fichiers différents :"));
    auto* missing_label = new QLabel(tr("Fichiers manquants :"));
    auto* diff_view = create_view();
    auto* missing_view = create_view();
    diff_label->setBuddy(diff_view);
    missing_label->setBuddy(missing_view);
    auto* ok_button = new QPushButton(tr("Ok"));
    auto* copy_button = new QPushButton(tr("Copier"));

    auto* labels = new QHBoxLayout;
    labels->addWidget(diff_label);
    labels->addWidget(missing_label);
    auto* views = new QHBoxLayout;
    views->addWidget(diff_view);
    views->addWidget(missing_view);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(ok_button);
    buttons->addWidget(copy_button);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(verdict);
    layout->addLayout(labels);
    layout->addLayout(views);
    layout->addLayout(buttons);

    connect(ok_button, &QPushButton::clicked, this, &QDialog::close);
    connect(copy_button, &QPushButton::clicked, this, &FenRes::ccc);
    // Closed dialogs live on, and every other comparison opens one: the picture of the window,
    // which takes megabytes, is given back.
    const auto release = [this] {
        if (!isVisible()) {
            destroy();
        }
    };
    connect(this, &QDialog::finished, this, release, Qt::QueuedConnection);
    setWindowTitle(tr("Résultats"));
    setMinimumSize(1000, 600);
    auto* diff_model = new QStringListModel(this);
    auto* missing_model = new QStringListModel(this);

    read_marks(tree1, tree2);
    const bool any_different = !list_diff.isEmpty();
    const bool any_missing = list_missing.size() > 1; // more than the separator
    if (any_different || any_missing) {
        verdict->setText(verdict->text() + tr(" Il y a des erreurs."));
        verdict->setStyleSheet(u"QLabel { background-color : red; color: white }"_s);
    } else {
        verdict->setText(verdict->text() + tr(" Tout est OK !"));
        verdict->setStyleSheet(u"QLabel { background-color : green; color: white }"_s);
    }
    if (any_different) {
        show_lines(diff_view, diff_model, list_diff);
    }
    if (any_missing) {
        show_lines(missing_view, missing_model, list_missing);
    }
    diff_view->setModel(diff_model);
    missing_view->setModel(missing_model);
}

void FenRes::read_marks(QTreeWidget* tree1, QTreeWidget* tree2)
{
    const QBrush different(Qt::red, Qt::SolidPattern);
    const QBrush no_partner(Qt::yellow, Qt::SolidPattern);

    for_each_item(tree1, [&](const QTreeWidgetItem& item) {
        const QBrush mark = item.background(ColSize);
        if (mark == different) {
            list_diff.append(path_of(item));
        } else if (mark == no_partner) {
            list_missing.append(path_of(item) + " --> "_L1);
        }
    });
    list_missing.append(u"---------------"_s);
    // A difference is listed once, by its file in the first pane.
    for_each_item(tree2, [&](const QTreeWidgetItem& item) {
        if (item.background(ColSize) == no_partner) {
            list_missing.append(path_of(item) + " <-- "_L1);
        }
    });
}

void FenRes::ccc()
{
    QString text;
    if (!list_diff.isEmpty()) {
        text += tr("Fichiers différents :\n") + as_lines(list_diff);
    }
    if (!list_missing.isEmpty()) {
        text += tr("Fichiers manquants :\n") + as_lines(list_missing);
    }
    if (!text.isEmpty()) {
        QGuiApplication::clipboard()->setText(text);
    }
}
