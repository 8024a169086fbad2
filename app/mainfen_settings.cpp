// The window's state in the settings file.

#include "app/mainfen.h"
#include "app/screen_fit.h"
#include "app/setting_keys.h"
#include "app/settings_file.h"
#include "platform/volumes.h"
#include "tree/directory_navigator.h"
#include "tree/mytreewidget.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QScreen>
#include <QSettings>

using namespace Qt::StringLiterals;

namespace {

QList<QRect> screen_areas()
{
    QList<QRect> areas;
    const QScreen* primary = QGuiApplication::primaryScreen();
    const QList<QScreen*> screens = QGuiApplication::screens();
    for (const QScreen* screen : screens) {
        screen == primary ? areas.prepend(screen->availableGeometry())
                          : areas.append(screen->availableGeometry());
    }
    return areas;
}

struct PaneOption
{
    QLatin1StringView key;
    bool MyTreeWidget::*value;
};

/// One value each for both panes. The last one is also read earlier, with the layout it decides on.
constexpr PaneOption pane_options[] = {
    {setting::copy_name, &MyTreeWidget::ccname},
    {setting::copy_size, &MyTreeWidget::ccsize},
    {setting::copy_path, &MyTreeWidget::ccpath},
    {setting::upper_case, &MyTreeWidget::upper},
    {setting::keep_directories, &MyTreeWidget::rem_dir},
    {setting::keep_view, &MyTreeWidget::rem_view},
};

/// A saved size, unless it is none that a window could have had.
QSize usable_size(const QSize& saved, const QSize& fallback)
{
    // Wider than any set of screens, and still no more than memory can paint.
    constexpr int largest = 10000;
    const bool usable = saved.width() > 0 && saved.height() > 0 && saved.width() <= largest &&
                        saved.height() <= largest;
    return usable ? saved : fallback;
}

} // namespace

void MainFen::restore_view_layout()
{
    const QSettings settings(settings_path_to_read(), QSettings::IniFormat);
    const bool rem_view = settings.value(setting::keep_view).toBool();
    tree1->rem_view = rem_view;
    tree2->rem_view = rem_view;
    if (!rem_view) {
        setSplitOrientHoriz();
        return;
    }
    splitter->restoreState(settings.value(setting::splitter).toByteArray());
    // The state may date from a time when a pane could be dragged to nothing.
    if (splitter->sizes().contains(0)) {
        splitter->setSizes(splitter->sizes());
    }
    if (settings.value(setting::orientation).toInt() == Qt::Horizontal) {
        setSplitOrientHoriz();
    } else {
        setSplitOrientVerti();
    }
}

void MainFen::readSettings()
{
    const QSettings settings(settings_path_to_read(), QSettings::IniFormat);
    const QSize default_size(800, 600);
    resize(usable_size(settings.value(setting::size, default_size).toSize(), default_size));
    const QVariant saved = settings.value(setting::position);
    const bool usable = saved.typeId() == QMetaType::QPoint;
    const QPoint position = usable ? saved.toPoint() : QPoint(100, 200);
    move(position_in_sight(position, size(), screen_areas()));
    lang = settings.value(setting::language).toString();

    const bool sha1 = settings.value(setting::algorithm).toString() == "SHA1"_L1;
    (sha1 ? radio_sha1 : radio_md5)->setChecked(true);
    for (MyTreeWidget* pane : {tree1, tree2}) {
        for (const PaneOption& option : pane_options) {
            pane->*option.value = settings.value(option.key).toBool();
        }
        pane->set_exclus(settings.value(setting::exclusions).toString());
    }
    QString path1 = settings.value(setting::first_directory).toString();
    QString path2 = settings.value(setting::second_directory).toString();
    if (!tree1->rem_dir) {
        path1 = platform::root_of_path(path1);
        path2 = platform::root_of_path(path2);
    }
    tree1->open_directory(path1);
    tree2->open_directory(path2);
}

void MainFen::writeSettings()
{
    QSettings settings(settings_path_to_write(), QSettings::IniFormat);
    settings.setValue(setting::size, size());
    settings.setValue(setting::position, pos());
    settings.setValue(setting::language, lang);
    settings.setValue(setting::splitter, splitter->saveState());
    settings.setValue(setting::orientation, static_cast<int>(splitter->orientation()));

    settings.setValue(setting::algorithm, radio_md5->isChecked() ? u"MD5"_s : u"SHA1"_s);
    // Started on a path, the program keeps the directory that the person had before.
    if (QCoreApplication::arguments().size() <= 1) {
        settings.setValue(setting::first_directory, tree1->navigator().canonical_path());
    }
    settings.setValue(setting::second_directory, tree2->navigator().canonical_path());
    for (const PaneOption& option : pane_options) {
        settings.setValue(option.key, tree1->*option.value);
    }
    settings.setValue(setting::exclusions, tree1->get_exclus());
}
