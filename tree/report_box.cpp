#include "tree/report_box.h"

#include <QGridLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QScreen>
#include <QScrollArea>

using namespace Qt::StringLiterals;

namespace {

// Rich text takes a millisecond a line to lay out; more lines than these go into a plain view.
constexpr qsizetype most_rich_lines = 100;

/// Puts the box's text into a scroll area when it would make the box taller than half the screen.
void keep_on_screen(QMessageBox& box)
{
    auto* label = box.findChild<QLabel*>(u"qt_msgbox_label"_s);
    auto* grid = qobject_cast<QGridLayout*>(box.layout());
    const int highest = box.screen()->availableGeometry().height() / 2;
    if (!label || !grid || label->sizeHint().height() <= highest) {
        return;
    }
    int row = 0;
    int column = 0;
    int rows = 0;
    int columns = 0;
    grid->getItemPosition(grid->indexOf(label), &row, &column, &rows, &columns);
    auto* area = new QScrollArea(&box);
    area->setFrameShape(QFrame::NoFrame);
    area->setWidgetResizable(true);
    area->setMinimumHeight(highest);
    area->setMinimumWidth(
        qMin(label->sizeHint().width() + 40, box.screen()->availableGeometry().width() * 2 / 3));
    grid->removeWidget(label);
    area->setWidget(label);
    grid->addWidget(area, row, column, rows, columns);
}

QString rich_lines(const QList<ReportLine>& lines)
{
    QString text;
    for (const ReportLine& line : lines) {
        text += line.message.arg(line.name.toHtmlEscaped()) + u"<br />"_s;
    }
    return text;
}

QString plain_lines(const QList<ReportLine>& lines)
{
    QString text;
    for (const ReportLine& line : lines) {
        text += line.message.arg(line.name) + u'\n';
    }
    return text;
}

/// Shows the lines in a view of their own below the box's text.
void add_line_view(QMessageBox& box, const QList<ReportLine>& lines)
{
    auto* grid = qobject_cast<QGridLayout*>(box.layout());
    if (!grid) {
        return;
    }
    auto* view = new QPlainTextEdit(plain_lines(lines), &box);
    view->setReadOnly(true);
    view->setLineWrapMode(QPlainTextEdit::NoWrap);
    const QSize screen = box.screen()->availableGeometry().size();
    view->setMinimumSize(screen.width() / 2, screen.height() / 2);
    grid->addWidget(view, grid->rowCount(), 0, 1, -1);
}

} // namespace

void show_report(const Report& report)
{
    const bool many = report.lines.size() > most_rich_lines;
    const QString text = report.lines.isEmpty()
                             ? report.text
                             : report.text.arg(many ? QString() : rich_lines(report.lines));
    QMessageBox box(report.icon, report.title, text,
                    report.picture.isNull() ? QMessageBox::NoButton : QMessageBox::Ok, nullptr,
                    Qt::Dialog | Qt::MSWindowsFixedSizeDialogHint);
    if (!report.lines.isEmpty()) {
        box.setStyleSheet(u"messagebox-text-interaction-flags: 5;"_s);
    }
    if (!report.picture.isNull()) {
        box.setIconPixmap(report.picture);
        box.setWindowIcon(QIcon(report.picture));
    }
    many ? add_line_view(box, report.lines) : keep_on_screen(box);
    box.exec();
}
