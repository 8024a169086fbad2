// The pane's list of file types that directory jobs leave out.

#include "engine/exclusions.h"
#include "tree/mytreewidget.h"

void MyTreeWidget::set_exclus(QString exclu)
{
    exclusions = engine::parse_exclusions(exclu);
}

QString MyTreeWidget::get_exclus() const
{
    return engine::format_exclusions(exclusions);
}
