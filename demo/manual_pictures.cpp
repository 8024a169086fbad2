// A walk through the program with a camera: one function per window of the manual.

#include "demo/manual_pictures.h"

#include "demo/demo_window.h"
#include "demo/event_wait.h"
#include "dialogs/fencheck.h"
#include "dialogs/fenopt.h"
#include "dialogs/fenres.h"
#include "rows/pane_row.h"
#include "tree/mytreewidget.h"

#include <QContextMenuEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPainter>
#include <QPushButton>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int window_width = 1260;
constexpr int window_height = 500;

class Walk
{
  public:
    Walk(const SampleDirectories& samples, const Pictures& pictures)
        : samples_(samples), pictures_(pictures), demo_(samples, window_width, window_height),
          pane_(*demo_.window().first_pane())
    {}

    bool comparison();
    bool context_menu();
    bool check_of_one_file();
    bool options();
    bool stacked_views();
    bool verification();

  private:
    /// Makes the row of that name current and selects it alone; null when there is none.
    static QTreeWidgetItem* choose(MyTreeWidget& pane, const QString& name);

    bool check(const QString& digest, const std::function<void(FenCheck&)>& before_start,
               const QString& picture);
    bool verify(const QString& checksum_file, const QString& picture);

    const SampleDirectories& samples_;
    const Pictures& pictures_;
    DemoWindow demo_;
    MyTreeWidget& pane_;
};

QTreeWidgetItem* Walk::choose(MyTreeWidget& pane, const QString& name)
{
    const QList<QTreeWidgetItem*> rows = pane.findItems(name, Qt::MatchExactly, ColName);
    if (rows.isEmpty()) {
        return nullptr;
    }
    pane.setCurrentItem(rows.first());
    return rows.first();
}

bool Walk::comparison()
{
    if (!demo_.compare_all()) {
        return false;
    }
    auto* results = demo_.window().findChild<FenRes*>();
    const bool saved = results && pictures_.save_window(*results, u"results"_s) &&
                       pictures_.save_window(demo_.window(), u"main"_s);
    if (results) {
        results->close();
    }
    return saved;
}

bool Walk::context_menu()
{
    const QTreeWidgetItem* row = choose(pane_, samples_.names().same.at(1));
    if (!row) {
        return false;
    }
    bool saved = false;
    const WhenShown<QMenu> shown([&](QMenu& menu) {
        QAction* digests = menu.actions().constFirst();
        menu.setActiveAction(digests);
        QMenu* submenu = digests->menu();
        if (!submenu || !wait_until([&] { return submenu->isVisible(); })) {
            return;
        }
        const MainFen& window = demo_.window();
        QPixmap picture = demo_.window().grab(QRect(0, 0, window_width / 2, window_height));
        QPainter painter(&picture);
        for (QMenu* popup : {&menu, submenu}) {
            painter.drawPixmap(window.mapFromGlobal(popup->pos()), popup->grab());
        }
        painter.end();
        saved = pictures_.save(picture, u"menu"_s);
        submenu->close();
    });
    QWidget* viewport = pane_.viewport();
    const QPoint position = pane_.visualItemRect(row).topLeft() + QPoint(30, 16);
    QContextMenuEvent event(QContextMenuEvent::Mouse, position, viewport->mapToGlobal(position));
    QApplication::sendEvent(viewport, &event);
    return saved;
}

bool Walk::check(const QString& digest, const std::function<void(FenCheck&)>& before_start,
                 const QString& picture)
{
    bool saved = false;
    const WhenShown<FenCheck> shown([&](FenCheck& dialog) {
        const auto buttons = dialog.findChildren<QPushButton*>();
        const auto start =
            std::find_if(buttons.begin(), buttons.end(),
                         [](const QPushButton* button) { return button->isDefault(); });
        dialog.findChild<QLineEdit*>()->insert(digest);
        before_start(dialog);
        (*start)->click();
        saved = wait_until([&] { return (*start)->isEnabled(); }) &&
                pictures_.save_window(dialog, picture);
    });
    pane_.act_check->trigger();
    return saved;
}

bool Walk::check_of_one_file()
{
    const QString& name = samples_.names().changed;
    const QTreeWidgetItem* mine = choose(pane_, name);
    const QTreeWidgetItem* other = choose(*demo_.window().second_pane(), name);
    if (!mine || !other) {
        return false;
    }
    bool entered = false;
    const bool good = check(
        checksum_of(*mine),
        [&](FenCheck& dialog) { entered = pictures_.save_window(dialog, u"check-entry"_s); },
        u"check-good"_s);
    const bool bad = check(
        checksum_of(*other), [](FenCheck&) {}, u"check-bad"_s);
    return entered && good && bad;
}

bool Walk::options()
{
    bool saved = false;
    const WhenShown<FenOpt> shown(
        [&](FenOpt& dialog) { saved = pictures_.save_window(dialog, u"options"_s); });
    demo_.trigger(MainFen::tr("Options..."));
    return saved;
}

bool Walk::stacked_views()
{
    demo_.window().resize(window_width * 2 / 3, window_height * 3 / 2);
    demo_.trigger(MainFen::tr("Vues Verticales."));
    // Compared anew, so that nothing is left of what the other pictures did.
    return demo_.compare_all() && pictures_.save_window(demo_.window(), u"stacked"_s);
}

bool Walk::verify(const QString& checksum_file, const QString& picture)
{
    QTreeWidgetItem* row = choose(pane_, checksum_file);
    if (!row) {
        return false;
    }
    bool saved = false;
    const WhenShown<QMessageBox> report(
        [&](QMessageBox& box) { saved = pictures_.save_window(box, picture); });
    emit pane_.itemActivated(row, ColName);
    return wait_until([&] { return report.met(); }) && saved;
}

bool Walk::verification()
{
    const QString checksum_file = samples_.names().original + u".md5"_s;
    pane_.act_md5_dir_file->trigger();
    const auto written = [&] { return choose(pane_, checksum_file) && !pane_.job_running(); };
    if (!wait_until(written) || !verify(checksum_file, u"report-good"_s)) {
        return false;
    }
    samples_.damage_original();
    pane_.Reset();
    return verify(checksum_file, u"report-bad"_s);
}

} // namespace

bool take_manual_pictures(const SampleDirectories& samples, const Pictures& pictures)
{
    Walk walk(samples, pictures);
    return walk.comparison() && walk.context_menu() && walk.check_of_one_file() && walk.options() &&
           walk.stacked_views() && walk.verification();
}
