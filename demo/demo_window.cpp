#include "demo/demo_window.h"

#include "demo/event_wait.h"
#include "tree/mytreewidget.h"

#include <QStatusBar>

DemoWindow::DemoWindow(const SampleDirectories& samples, int width, int height)
{
    window_.resize(width, height);
    window_.move(20, 20);
    window_.show();
    window_.first_pane()->changeModel(samples.original());
    window_.second_pane()->changeModel(samples.copy());
}

bool DemoWindow::compare_all()
{
    // While the time of a run is shown, the window takes another end for one of the same run.
    const auto quiet = [&] { return window_.statusBar()->currentMessage().isEmpty(); };
    if (!wait_until(quiet)) {
        return false;
    }
    bool compared = false;
    const auto connection = QObject::connect(&window_, &MainFen::alldone, [&] { compared = true; });
    trigger(MainFen::tr("Comparer Tout"));
    const bool ended = wait_until([&] { return compared; });
    QObject::disconnect(connection);
    return ended;
}

void DemoWindow::trigger(const QString& text) const
{
    const auto actions = window_.findChildren<QAction*>();
    for (QAction* action : actions) {
        if (action->text() == text) {
            action->trigger();
            return;
        }
    }
}
