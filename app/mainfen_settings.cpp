// The window's state in the settings file.

#include "app/mainfen.h"
#include "app/screen_fit.h"
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
    const QSettings settings(settings_path(), QSettings::IniFormat);
    const bool rem_view = settings.value(u"App/rem_view"_s).toBool();
    tree1->rem_view = rem_view;
    tree2->rem_view = rem_view;
    if (!rem_view) {
        setSplitOrientHoriz();
        return;
    }
    splitter->restoreState(settings.value(u"MainWindow/splitterSizes"_s).toByteArray());
    if (settings.value(u"MainWindow/views"_s).toInt() == Qt::Horizontal) {
        setSplitOrientHoriz();
    } else {
        setSplitOrientVerti();
    }
}

void MainFen::readSettings()
{
    QSettings settings(settings_path(), QSettings::IniFormat);
    settings.beginGroup(u"MainWindow"_s);
    const QSize default_size(800, 600);
    resize(usable_size(settings.value(u"size"_s, default_size).toSize(), default_size));
    const QVariant saved = settings.value(u"pos"_s);
    const bool usable = saved.typeId() == QMetaType::QPoint;
    const QPoint position = usable ? saved.toPoint() : QPoint(100, 200);
    move(position_in_sight(position, size(), screen_areas()));
    lang = settings.value(u"lang"_s).toString();
    settings.endGroup();

    settings.beginGroup(u"App"_s);
    const bool sha1 = settings.value(u"alg"_s).toString() == "SHA1"_L1;
    (sha1 ? radio_sha1 : radio_md5)->setChecked(true);
    for (MyTreeWidget* pane : {tree1, tree2}) {
        pane->ccname = settings.value(u"ccname"_s).toBool();
        pane->ccsize = settings.value(u"ccsize"_s).toBool();
        pane->ccpath = settings.value(u"ccpath"_s).toBool();
        pane->upper = settings.value(u"upper"_s).toBool();
        pane->rem_dir = settings.value(u"rem_dir"_s).toBool();
        pane->set_exclus(settings.value(u"exclu"_s).toString());
    }
    QString path1 = settings.value(u"tree1"_s).toString();
    QString path2 = settings.value(u"tree2"_s).toString();
    if (!tree1->rem_dir) {
        path1 = platform::root_of_path(path1);
        path2 = platform::root_of_path(path2);
    }
    tree1->open_directory(path1);
    tree2->open_directory(path2);
}

void MainFen::writeSettings()
{
    QSettings settings(settings_path(), QSettings::IniFormat);
    settings.beginGroup(u"MainWindow"_s);
    settings.setValue(u"size"_s, size());
    settings.setValue(u"pos"_s, pos());
    settings.setValue(u"lang"_s, lang);
    settings.setValue(u"splitterSizes"_s, splitter->saveState());
    settings.setValue(u"views"_s, static_cast<int>(splitter->orientation()));
    settings.endGroup();

    settings.beginGroup(u"App"_s);
    settings.setValue(u"alg"_s, radio_md5->isChecked() ? u"MD5"_s : u"SHA1"_s);
    // Started on a path, the program keeps the directory that the person had before.
    if (QCoreApplication::arguments().size() <= 1) {
        settings.setValue(u"tree1"_s, tree1->navigator().canonical_path());
    }
    settings.setValue(u"tree2"_s, tree2->navigator().canonical_path());
    settings.setValue(u"ccname"_s, tree1->ccname);
    settings.setValue(u"ccsize"_s, tree1->ccsize);
    settings.setValue(u"ccpath"_s, tree1->ccpath);
    settings.setValue(u"upper"_s, tree1->upper);
    settings.setValue(u"rem_dir"_s, tree1->rem_dir);
    settings.setValue(u"rem_view"_s, tree1->rem_view);
    settings.setValue(u"exclu"_s, tree1->get_exclus());
}
