#include "app/run_overview.h"

#include "rows/pane_row.h"

#include <QCoreApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QTreeWidget>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using engine::Mark;

namespace {

// Fast enough to see that it goes on, slow enough to be read.
constexpr auto pace = 250ms;

// A few milliseconds of counting, before other events have their turn.
constexpr int rows_per_slice = 10'000;

QString grouped(int number)
{
    return QLocale(QLocale::English).toString(number).replace(u',', QChar::Nbsp);
}

QString progress_text(const RunOverview::Progress& progress)
{
    if (!progress.busy) {
        return {};
    }
    const QString done = grouped(progress.done);
    return progress.total < 0 ? done : done + u" / "_s + grouped(progress.total);
}

QTreeWidgetItem* first_marked(QTreeWidgetItemIterator from, Mark mark)
{
    while (*from && mark_of(**from) != mark) {
        ++from;
    }
    return *from;
}

/// The next row of that mark behind the current one, collapsed branches included; behind the last
/// one comes the first. Null when there is none.
QTreeWidgetItem* next_marked(QTreeWidget& tree, Mark mark)
{
    QTreeWidgetItem* found = nullptr;
    if (QTreeWidgetItem* current = tree.currentItem()) {
        found = first_marked(++QTreeWidgetItemIterator(current), mark);
    }
    return found ? found : first_marked(QTreeWidgetItemIterator(&tree), mark);
}

void make_current(QTreeWidget& tree, QTreeWidgetItem* row)
{
    for (QTreeWidgetItem* parent = row->parent(); parent; parent = parent->parent()) {
        parent->setExpanded(true);
    }
    tree.setCurrentItem(row);
    tree.scrollToItem(row);
}

} // namespace

RunOverview::RunOverview(const Pane& first, const Pane& second, QWidget* parent)
    : QWidget(parent), panes_{first, second}
{
    const auto text = [](const char* context, const char* source) {
        return QCoreApplication::translate(context, source).trimmed();
    };
    const QString missing = text("FenRes", "Fichiers manquants :");
    counts_ = {{
        {Mark::Identical, 0, u"="_s, text("MyTreeWidget", "Ok"), u"lime"_s},
        {Mark::Different, 0, u"≠"_s, text("FenRes", "Fichiers différents :"), u"red"_s},
        {Mark::NoPartner, 0, u"→"_s, missing + " -->"_L1, u"yellow"_s},
        {Mark::NoPartner, 1, u"←"_s, missing + " <--"_L1, u"yellow"_s},
    }};
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->addStretch();
    const QString processing = text("MyTreeWidget", "En cours : ");
    for (std::size_t i = 0; i < labels_.size(); ++i) {
        labels_[i] = new QLabel;
        labels_[i]->setIndent(2 * fontMetrics().averageCharWidth());
        labels_[i]->setToolTip(processing + u' ' + QString::number(i + 1));
        row->addWidget(labels_[i]);
    }
    for (Count& count : counts_) {
        create_button(count);
        row->addWidget(count.button);
    }
    forget_marks();
    next_slice_.setSingleShot(true);
    connect(&next_slice_, &QTimer::timeout, this, &RunOverview::count_slice);
    pace_.setInterval(pace);
    connect(&pace_, &QTimer::timeout, this, &RunOverview::show_progress);
    for (const Pane& pane : panes_) {
        const QAbstractItemModel* model = pane.rows->model();
        connect(model, &QAbstractItemModel::rowsAboutToBeRemoved, this, &RunOverview::forget_marks);
        connect(model, &QAbstractItemModel::modelAboutToBeReset, this, &RunOverview::forget_marks);
    }
}

// What does not fit is cut off: a window that someone has made narrow stays so.
QSize RunOverview::minimumSizeHint() const
{
    return {0, QWidget::minimumSizeHint().height()};
}

void RunOverview::create_button(Count& count)
{
    // A push button, because Enter presses it.
    count.button = new QPushButton;
    count.button->setAutoDefault(true);
    count.button->setFocusPolicy(Qt::TabFocus);
    count.button->setToolTip(count.meaning);
    connect(count.button, &QPushButton::clicked, this, [this, &count] { go_to_next(count); });
}

void RunOverview::follow_jobs()
{
    forget_marks();
    show_progress();
    pace_.start();
}

void RunOverview::show_progress()
{
    bool busy = false;
    for (std::size_t i = 0; i < panes_.size(); ++i) {
        const Progress progress = panes_[i].progress();
        const QString text = progress_text(progress);
        if (labels_[i]->text() != text) {
            labels_[i]->setText(text);
            labels_[i]->setAccessibleName(labels_[i]->toolTip() + u' ' + text);
        }
        labels_[i]->setVisible(progress.busy);
        busy = busy || progress.busy;
    }
    if (!busy) {
        pace_.stop();
    }
}

void RunOverview::count_marks()
{
    show_progress();
    for (Count& count : counts_) {
        count.rows = 0;
    }
    pane_counted_ = 0;
    next_row_.emplace(panes_.front().rows);
    count_slice();
}

void RunOverview::count_slice()
{
    for (int rows = 0; rows < rows_per_slice; ++rows) {
        if (const QTreeWidgetItem* row = **next_row_) {
            count_row(mark_of(*row));
            ++*next_row_;
        } else if (++pane_counted_ < panes_.size()) {
            next_row_.emplace(panes_[pane_counted_].rows);
        } else {
            stop_counting();
            show_counts();
            return;
        }
    }
    next_slice_.start(0);
}

void RunOverview::count_row(Mark mark)
{
    for (Count& count : counts_) {
        if (count.mark == mark && count.pane == pane_counted_) {
            ++count.rows;
        }
    }
}

void RunOverview::stop_counting()
{
    next_slice_.stop();
    next_row_.reset();
}

void RunOverview::show_counts()
{
    for (const Count& count : counts_) {
        show_count(count);
    }
}

void RunOverview::show_count(const Count& count)
{
    const QString number = grouped(count.rows);
    const QString ground =
        count.rows > 0 ? u"background: %1; color: black;"_s.arg(count.colour) : u""_s;
    count.button->setText(count.sign + QChar::Nbsp + number);
    count.button->setAccessibleName(count.meaning + u' ' + number);
    count.button->setEnabled(count.rows > 0);
    count.button->setStyleSheet(
        u"QPushButton { border: 1px solid transparent; padding: 0px 5px; %1 }"
        "QPushButton:focus { border-color: palette(window-text); }"_s.arg(ground));
    count.button->show();
}

void RunOverview::forget_marks()
{
    stop_counting();
    for (const Count& count : counts_) {
        count.button->hide();
    }
}

void RunOverview::go_to_next(const Count& count)
{
    QTreeWidget& tree = *panes_[count.pane].rows;
    if (QTreeWidgetItem* row = next_marked(tree, count.mark)) {
        make_current(tree, row);
    } else {
        count_marks();
    }
}
