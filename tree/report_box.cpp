#include "tree/report_box.h"

#include <QGridLayout>
#include <QLabel>
#include <QScreen>
#include <QScrollArea>

using namespace Qt::StringLiterals;

namespace {

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

} // namespace

void show_report(const Report& report)
{
    QMessageBox box(report.icon, report.title, report.text,
                    report.picture.isNull() ? QMessageBox::NoButton : QMessageBox::Ok, nullptr,
                    Qt::Dialog | Qt::MSWindowsFixedSizeDialogHint);
    if (report.selectable) {
        box.setStyleSheet(u"messagebox-text-interaction-flags: 5;"_s);
    }
    if (!report.picture.isNull()) {
        box.setIconPixmap(report.picture);
        box.setWindowIcon(QIcon(report.picture));
    }
    keep_on_screen(box);
    box.exec();
}
