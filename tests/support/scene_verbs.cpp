// The commands of which scenarios are made.

#include "dialogs/fenres.h"
#include "tests/support/scene.h"

namespace {

using A = const QStringList&;
using P = MyTreeWidget;
using S = Scene;

QString clipboard() { return QGuiApplication::clipboard()->text().replace(u'\t', u'^'); }

/// Does something with the rows named.
template<class Act>
QString each_row(P& pane, A names, Act act)
{
    for (const QString& name : names) {
        QTreeWidgetItem* row = find_row(pane, name);
        if (!row) { return u"no row "_s + name; }
        act(*row);
    }
    return {};
}

} // namespace

/// The texts of the context menu, "|" for separators, "-" before what is disabled.
QString Scene::menu_of(MyTreeWidget& pane)
{
    QStringList texts;
    QTimer::singleShot(0, &watch_, [&] {
        auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        for (const QAction* action : menu ? menu->actions() : QList<QAction*>()) {
            const QString text = (action->isEnabled() ? QString() : u"-"_s) + action->text();
            texts << (action->isSeparator() ? u"|"_s : text);
            const auto below = action->menu() ? action->menu()->actions() : QList<QAction*>();
            for (const QAction* each : below) { texts << u'>' + each->text(); }
        }
        menu ? (texts << menu->title(), menu->close()) : false;
    });
    QContextMenuEvent event(QContextMenuEvent::Keyboard, QPoint(5, 5), QPoint(5, 5));
    QCoreApplication::sendEvent(&pane, &event);
    return texts.join(u' ').trimmed();
}

void Scene::press(QWidget& widget, const QString& key)
{
    // An offscreen view takes keys once it has been shown.
    window->show();
    QTest::qWait(0);
    const auto combination = QKeySequence(key)[0];
    QTest::keyClick(&widget, combination.key(), combination.keyboardModifiers());
}

/// Drops files as a file manager does; answers whether the pane took them.
bool Scene::drop(MyTreeWidget& pane, const QStringList& names)
{
    QMimeData data;
    QList<QUrl> urls;
    for (const QString& name : names) { urls.append(QUrl::fromLocalFile(working_dir.at(name))); }
    data.setUrls(urls);
    QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    enter.ignore();
    QCoreApplication::sendEvent(pane.viewport(), &enter);
    QDropEvent event(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    event.ignore();
    if (enter.isAccepted()) { QCoreApplication::sendEvent(pane.viewport(), &event); }
    return event.isAccepted();
}

/// A file, given as "name", "name=content" or "name=huge", or a directory, given as "name/".
void Scene::put(const QString& what)
{
    const QString name = what.section(u'=', 0, 0);
    QString content = what.contains(u'=') ? what.section(u'=', 1) : name.section(u'/', -1);
    if (name.endsWith(u'/')) {
        working_dir.createDir(name);
    } else if (content == "huge"_L1) {
        working_dir.createHuge(name);
    } else {
        content.replace(u"\\n"_s, u"\n"_s).replace(u'~', working_dir.at() + u'/');
        working_dir.createFile(name, content.toUtf8());
    }
}

QHash<QString, Scene::Verb> Scene::verbs()
{
    QHash<QString, Verb> verbs;
    const auto add = [&](const char* name, auto act) {
        verbs[QString::fromLatin1(name)] = [act](S& s, P& p, A a) {
            if constexpr (std::is_void_v<decltype(act(s, p, a))>) {
                act(s, p, a);
                return QString();
            } else {
                return QString(act(s, p, a));
            }
        };
    };
    // The files.
    add("put", [](S& s, P&, A a) {
        for (const QString& what : a) { s.put(what); }
    });
    add("lay", [](S& s, P&, A a) { // puts files where both panes show them
        for (const QString& what : a) { s.put(what); }
        s.first->list_anew();
        s.second->list_anew();
    });
    add("rm", [](S& s, P&, A a) {
        const QString path = s.working_dir.at(a[0]);
        return QFile::remove(path) || QDir(path).removeRecursively() ? u""_s : u"failed"_s;
    });
    add("link", [](S& s, P&, A a) { QFile::link(s.working_dir.at(a[1]), s.working_dir.at(a[0])); });
    add("lock", [](S& s, P&, A a) { make_unreadable(s.working_dir, a[0]); });
    add("many", [](S& s, P&, A a) { // so many empty files, named 1, 2, 3
        for (int i = 1; i <= a[1].toInt(); ++i) {
            s.working_dir.createFile(a[0] + u'/' + QString::number(i));
        }
    });
    add("sh", [](S&, P&, A a) { // a command of the shell, in the scene's directory
        QProcess shell;
        shell.start(u"sh"_s, {u"-c"_s, a[0]});
        shell.waitForFinished();
        return QString::fromLocal8Bit(shell.readAllStandardOutput()).trimmed();
    });
    add("ls", [](S& s, P&, A a) { return s.working_dir.entries(a.value(0)); });
    add("cat", [](S& s, P&, A a) { // a digest at the beginning of a line by its name
        QStringList lines = QString::fromLocal8Bit(s.working_dir.read(a[0])).split(u'\n');
        for (QString& line : lines) {
            if (const QString file = line.section(u"  "_s, 1); !file.isEmpty()) {
                const QString path = s.working_dir.at(a[0]).section(u'/', 0, -2) + u'/' + file;
                line = s.digest_name(line.section(u"  "_s, 0, 0), path) + u"  "_s + file;
            }
        }
        return lines.join(u" | "_s);
    });

    // What a person does.
    add("select", [](S&, P& p, A a) {
        p.clearSelection();
        return each_row(p, a, [](auto& row) { row.setSelected(true); });
    });
    add("expand",
        [](S&, P& p, A a) { return each_row(p, a, [](auto& row) { row.setExpanded(true); }); });
    add("activate", [](S&, P& p, A a) {
        return each_row(p, a, [&](auto& row) { emit p.itemActivated(&row, 0); });
    });
    add("do", [](S& s, P& p, A a) { s.named<QAction>(p, a[0])->trigger(); });
    add("command", [](S& s, P&, A a) {
        s.window->statusBar()->clearMessage();
        s.named<QAction>(*s.window, a[0])->trigger();
    });
    add("call", [](S&, P& p, A a) {
        return QMetaObject::invokeMethod(&p, a[0].toUtf8()) ? u""_s : u"none"_s;
    });
    add("stop", [](S&, P& p, A) { p.stop_button->click(); });
    add("drop", [](S& s, P& p, A a) { return s.drop(p, a) ? u""_s : u"refused"_s; });
    add("args", [](S& s, P&, A a) {
        QStringList paths = a;
        for (QString& path : paths) { path.prepend(s.working_dir.at() + u'/'); }
        emit s.window->send_args(paths);
    });
    add("key", [](S& s, P& p, A a) { s.press(p, a[0]); });
    add("current", [](S&, P& p, A a) {
        const QTreeWidgetItem* row = p.currentItem();
        return a.isEmpty() ? (row ? name_of(*row) : u"none"_s) : each_row(p, a, [&](auto& named) {
            p.setCurrentItem(&named, 0, QItemSelectionModel::NoUpdate);
        });
    });
    add("type", [](S& s, P& p, A a) {
        p.path_edit->setText(QDir::toNativeSeparators(s.working_dir.at(a[0])));
        QTest::keyClick(p.path_edit, Qt::Key_Return);
    });
    add("check", [](S& s, P& p, A a) { // a digest, and what happens while the dialog is open
        s.steps_ = QStringList(u"type "_s + a[0]) + a.mid(1) + QStringList(u"press Vérifier"_s);
        p.act_check->trigger();
    });
    add("with", [](S& s, P&, A a) { s.steps_ = a; });
    add("lang", [](S& s, P&, A a) { s.window->setLang(a[0]); });
    add("exclude", [](S& s, P&, A a) {
        s.first->set_exclus(a[0]);
        s.second->set_exclus(a[0]);
    });
    add("capitals", [](S&, P& p, A) { p.upper = true; });
    add("radio", [](S& s, P&, A a) { s.named<QRadioButton>(*s.window, a[0])->click(); });
    add("start", [](S& s, P&, A) { s.rebuild(); });

    // A line for a certain moment: when a file is announced, and its digest yet to come; when a
    // job's digests are there, and nothing has been made of them yet.
    add("during", [](S& s, P& p, A a) {
        const QString moment = u"En cours : "_s + s.working_dir.at(a[0]);
        QObject::connect(&p, &P::processing, &s.watch_, [&s, moment, a](const QString& text) {
            text == moment ? void(s.run(a[1] + u'&')) : void();
        });
    });
    add("after-job", [](S& s, P& p, A a) {
        QObject::connect(&p, &P::alldone, &s.watch_, [&s, a] { s.run(a[0] + u'&'); });
    });
    add("hold", [](S& s, P& p, A a) { // until a file is being read, and those before are counted
        const QString moment = u"En cours : "_s + s.working_dir.at(a[0]);
        const auto* done = s.window->statusBar()->findChildren<QLabel*>()[&p == s.first ? 0 : 1];
        const auto counted = [&] {
            return done->text().startsWith(QString::number(p.job_items.size()));
        };
        const auto came = [&] { return p.status_label->text() == moment && counted(); };
        return QTest::qWaitFor(came, 60000) ? u""_s : u"never"_s;
    });

    // What is to be seen.
    add("see", [](S& s, P& p, A) { return s.rows_of(*p.invisibleRootItem()); });
    add("label", [](S& s, P& p, A) { return s.told(p.status_label->text()); });
    add("path",
        [](S& s, P& p, A) { return s.told(QDir::fromNativeSeparators(p.path_edit->text())); });
    add("menu", [](S& s, P& p, A) { return s.menu_of(p); });
    add("message", [](S& s, P&, A) { return s.told(s.window->statusBar()->currentMessage()); });
    add("overview", [](S& s, P&, A a) { // the end of the status bar; a number presses a count
        const auto counts = s.window->statusBar()->findChildren<QPushButton*>();
        a.isEmpty() ? void() : counts[a[0].toInt()]->click();
        QStringList texts;
        for (auto* label : s.window->statusBar()->findChildren<QLabel*>()) {
            texts << label->text();
        }
        for (auto* count : counts) { texts << (count->isHidden() ? u""_s : count->text()); }
        return texts.join(u' ').replace(QChar::Nbsp, u' ').simplified();
    });
    add("exclusions", [](S&, P& p, A) { return p.exclusions.join(u' '); });
    add("copy", [](S& s, P& p, A a) {
        s.window->show();
        s.window->activateWindow();
        QTest::qWait(0);
        p.setFocus();
        QGuiApplication::clipboard()->setText(u"untouched"_s);
        s.named<QAction>(*s.window, a[0])->trigger();
        return s.told(clipboard());
    });
    add("window", [](S& s, P&, A) {
        const bool sides = s.window->findChild<QSplitter*>()->orientation() == Qt::Horizontal;
        const QRect place(s.window->pos(), s.window->size());
        const QString at =
            QString::asprintf("%dx%d+%d+%d ", place.width(), place.height(), place.x(), place.y());
        return at + (sides ? u"horizontal "_s : u"vertical "_s) +
               s.first->headerItem()->text(ColHash);
    });
    add("saved", [](S& s, P&, A a) { // what the program would leave of its settings
        s.window->writeSettings();
        const QSettings file(u"Tavrel.ini"_s, QSettings::IniFormat);
        QStringList values;
        for (const QString& key : a) { values << s.told(file.value(key).toString()); }
        return values.join(u" | "_s);
    });
    add("results", [](S& s, P&, A a) { // of every dialog; what the last one copies
        QStringList texts;
        for (const FenRes* dialog : s.window->findChildren<FenRes*>()) {
            texts << dialog->findChild<QLabel*>()->text().section(u" : "_s, 1);
            for (const QListView* view : dialog->findChildren<QListView*>()) {
                for (int i = 0; i < view->model()->rowCount(); ++i) {
                    texts << s.told(view->model()->index(i, 0).data().toString());
                }
            }
            s.named<QAbstractButton>(*dialog, u"Copier"_s)->click();
        }
        return a.contains(u"copied"_s) ? s.told(clipboard()) : texts.join(u" | "_s);
    });
    return verbs;
}
