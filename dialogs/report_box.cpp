#include "dialogs/report_box.h"

#include "dialogs/line_view.h"

#include <QAbstractListModel>
#include <QAction>
#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QScreen>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

// Rich text takes a millisecond a line to lay out; more lines than these are not even tried.
constexpr qsizetype most_rich_lines = 100;

QString line_text(const ReportLine& line)
{
    return line.message.arg(line.name);
}

/// Puts a line together only when it is looked at: a report may have a million of them.
class ReportModel final : public QAbstractListModel
{
  public:
    ReportModel(const ReportLines& lines, QObject* parent)
        : QAbstractListModel(parent), lines_(lines)
    {}

    int rowCount(const QModelIndex& parent) const override
    {
        return parent.isValid() ? 0 : static_cast<int>(lines_.count);
    }

    QVariant data(const QModelIndex& index, int role) const override
    {
        return role == Qt::DisplayRole ? line_text(lines_.at(index.row())) : QVariant();
    }

  private:
    ReportLines lines_;
};

QString rich_lines(const ReportLines& lines)
{
    QString text;
    for (qsizetype i = 0; i < lines.count; ++i) {
        const ReportLine line = lines.at(i);
        text += line.message.arg(line.name.toHtmlEscaped()) + u"<br />"_s;
    }
    return text;
}

LineView* create_line_view(const ReportLines& lines, QWidget* parent)
{
    auto* view = new LineView(parent);
    auto* model = new ReportModel(lines, view);
    view->set_longest(static_cast<int>(lines.longest));
    view->setModel(model);
    view->setSelectionMode(QAbstractItemView::ExtendedSelection);
    auto* copy = new QAction(QCoreApplication::translate("FenCheck", "Copier"), view);
    view->addAction(copy);
    view->setContextMenuPolicy(Qt::ActionsContextMenu);
    QObject::connect(copy, &QAction::triggered, view, &LineView::copy);
    return view;
}

/// Adds the lines in a view of their own between the box's text and its button.
void add_line_view(QMessageBox& box, const ReportLines& lines)
{
    auto* view = create_line_view(lines, &box);
    const QSize screen = box.screen()->availableGeometry().size();
    // Room for a scroll bar beside the longest line, which every index answers for: the view would
    // ask for each of a million lines.
    const int wanted = view->sizeHintForIndex(view->model()->index(0, 0)).width() + 40;
    view->setMinimumSize(std::clamp(wanted, screen.width() / 3, screen.width() * 2 / 3),
                         screen.height() / 2);
    auto* buttons = box.findChild<QDialogButtonBox*>();
    auto* grid = qobject_cast<QGridLayout*>(box.layout());
    if (!grid || !buttons) {
        box.layout()->addWidget(view);
        return;
    }
    grid->removeWidget(buttons);
    grid->addWidget(view, grid->rowCount(), 0, 1, -1);
    grid->addWidget(buttons, grid->rowCount(), 0, 1, -1);
}

/// Whether the box would be taller than half of its screen, the wrapped ends of long lines counted.
/// A message box wraps no line below 500 pixels, however small the screen.
bool is_too_tall(const QMessageBox& box)
{
    const QSize half = box.screen()->availableGeometry().size() / 2;
    const QSize hint = box.sizeHint();
    return hint.height() * (1 + hint.width() / std::max(500, half.width())) > half.height();
}

} // namespace

void show_report(const Report& report)
{
    bool in_view = report.lines.count > most_rich_lines;
    const QString text = report.lines.count == 0
                             ? report.text
                             : report.text.arg(in_view ? QString() : rich_lines(report.lines));
    QMessageBox box(report.icon, report.title, text,
                    report.picture.isNull() ? QMessageBox::NoButton : QMessageBox::Ok, nullptr,
                    Qt::Dialog | Qt::MSWindowsFixedSizeDialogHint);
    if (report.lines.count > 0) {
        box.setStyleSheet(u"messagebox-text-interaction-flags: 5;"_s);
    }
    if (!report.picture.isNull()) {
        box.setIconPixmap(report.picture);
        box.setWindowIcon(QIcon(report.picture));
    }
    if (!in_view && report.lines.count > 0 && is_too_tall(box)) {
        in_view = true;
        box.setText(report.text.arg(QString()));
    }
    if (in_view) {
        add_line_view(box, report.lines);
    }
    box.exec();
}
