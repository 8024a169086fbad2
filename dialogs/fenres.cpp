#include "dialogs/fenres.h"

#include "dialogs/line_view.h"
#include "rows/pane_row.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QLabel>
#include <QPushButton>
#include <QStringListModel>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <algorithm>

using namespace Qt::StringLiterals;
using engine::Mark;

namespace {

LineView* create_view()
{
    auto* view = new LineView;
    view->setMinimumWidth(400);
    return view;
}

void show_lines(LineView* view, QStringListModel* model, const QStringList& lines)
{
    const auto shorter = [](const QString& a, const QString& b) { return a.size() < b.size(); };
    const auto longest = std::max_element(lines.begin(), lines.end(), shorter);
    view->set_longest(static_cast<int>(longest - lines.begin()));
    model->setStringList(lines);
}

/// Calls `visit` for every row, parents before their children, collapsed branches included.
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

/// Allocates once, where operator+ does so twice: there may be 500,000 of them.
QString with_arrow(const QString& path, QLatin1StringView arrow)
{
    QString entry;
    entry.reserve(path.size() + arrow.size());
    entry += path;
    entry += arrow;
    return entry;
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
    // What has the focus is what a screen reader says first.
    ok_button->setAccessibleDescription(verdict->text());
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
    for_each_row(*tree1->invisibleRootItem(), [&](const PaneRow& row) {
        if (row.mark() == Mark::Different) {
            list_diff.append(row.path());
        } else if (row.mark() == Mark::NoPartner) {
            list_missing.append(with_arrow(row.path(), " --> "_L1));
        }
    });
    list_missing.append(u"---------------"_s);
    // A difference is listed once, by its file in the first pane.
    for_each_row(*tree2->invisibleRootItem(), [&](const PaneRow& row) {
        if (row.mark() == Mark::NoPartner) {
            list_missing.append(with_arrow(row.path(), " <-- "_L1));
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
