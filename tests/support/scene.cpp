#include "tests/support/scene.h"

#include "dialogs/fencheck.h"
#include "dialogs/fenres.h"

#include <QApplication>
#include <QClipboard>
#include <QDir>
#include <QHeaderView>
#include <QListView>
#include <QMenu>
#include <QMessageBox>
#include <QProcess>
#include <QRegularExpression>
#include <QStatusBar>
#include <QTest>
#include <QTreeWidgetItemIterator>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 huge_size = qint64(1) << 40;

QAction* action_of(const QObject& owner, const QString& text)
{
    for (QAction* action : owner.findChildren<QAction*>(QString(), Qt::FindDirectChildrenOnly)) {
        if (action->text() == text) {
            return action;
        }
    }
    qFatal("no action \"%s\"", qUtf8Printable(text));
}

} // namespace

Scene::Scene()
{
    working_dir.createDir(u"l"_s);
    working_dir.createDir(u"r"_s);
    first->changeModel(working_dir.at(u"l"_s));
    second->changeModel(working_dir.at(u"r"_s));
    poll_.callOnTimeout([this] { look_at_boxes(); });
    poll_.start(1);
}

void Scene::look_at_boxes()
{
    QWidget* modal = QApplication::activeModalWidget();
    if (auto* check = qobject_cast<FenCheck*>(modal)) {
        use(*check);
    } else if (auto* box = qobject_cast<QMessageBox*>(modal); box && box->isVisible()) {
        boxes_ << u"[%1] %2"_s.arg(box->windowTitle(), told(box->text()));
        box->buttons().constFirst()->click();
    } else if (modal && !box) {
        modal->close(); // the results: they would keep a box below them from being closed
    }
}

/// Enters the digest, presses the button, and notes what comes of it.
void Scene::use(FenCheck& dialog)
{
    auto* button = dialog.findChild<QPushButton*>();
    auto* line = dialog.findChild<QLineEdit*>();
    if (!entry_.isEmpty()) {
        QTest::keyClicks(line, std::exchange(entry_, QString()));
        if (!button->isEnabled()) {
            boxes_ << u"[check] refused"_s;
            dialog.close();
        }
        if (const QString line_of_script = std::exchange(meanwhile_, {});
            !line_of_script.isEmpty()) {
            run(line_of_script + u'&');
        }
        button->click();
    } else if (button->isEnabled() && button->text() == u"Ok"_s) {
        const bool good = line->styleSheet().contains(u"green"_s);
        boxes_ << (good ? u"[check] right"_s : u"[check] wrong"_s);
        button->click();
    }
}

/// The texts of the context menu, "|" for separators, "-" before what is disabled.
QString Scene::menu_of(MyTreeWidget& pane)
{
    QStringList texts;
    const std::function<void(const QMenu&)> note = [&](const QMenu& menu) {
        for (const QAction* action : menu.actions()) {
            texts << (action->isSeparator()
                          ? u"|"_s
                          : (action->isEnabled() ? QString() : u"-"_s) + action->text());
            if (action->menu()) {
                texts << u"{"_s;
                note(*action->menu());
                texts << u"}"_s;
            }
        }
    };
    QTimer::singleShot(0, &poll_, [&] {
        auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        if (menu) {
            note(*menu);
            menu->close();
        }
    });
    QContextMenuEvent event(QContextMenuEvent::Keyboard, QPoint(5, 5), QPoint(5, 5));
    QCoreApplication::sendEvent(&pane, &event);
    return texts.join(u' ');
}

void Scene::press(MyTreeWidget& pane, const QString& key)
{
    // An offscreen view takes keys once it has been shown.
    window->show();
    QTest::qWait(0);
    const QKeySequence sequence(key);
    const auto combination = sequence[0];
    QTest::keyClick(&pane, combination.key(), combination.keyboardModifiers());
}

MyTreeWidget& Scene::pane(const Arguments& arguments) const
{
    return arguments.value(0) == "R"_L1 ? *second : *first;
}

/// A text with the directory of the scene and every time left out.
QString Scene::told(QString text) const
{
    static const QRegularExpression time(u"\\d+\\.\\d\\ds"_s);
    return text.replace(working_dir.at() + u'/', u"~"_s)
        .replace(u"/proc/sys/vm/compact_memory"_s, u"unreadable"_s)
        .replace(working_dir.at(), u"~"_s)
        .replace(time, u"T"_s)
        .trimmed();
}

/// "md5" or "sha1" when that is what the file holds now, in capitals when the digest is; else "?".
QString Scene::digest_name(const QString& hex, const QString& path) const
{
    const auto algorithm = hex.size() == 32 ? QCryptographicHash::Md5 : QCryptographicHash::Sha1;
    QFile file(path);
    const bool right = file.open(QIODevice::ReadOnly) && file.size() < huge_size &&
                       hex.toLower() == reference_digest(file.readAll(), algorithm);
    const QString name = hex.size() == 32 ? u"md5"_s : u"sha1"_s;
    return !right ? u"?"_s : hex == hex.toLower() ? name : name.toUpper();
}

/// What a row shows beside its name: "*" selected, the digest, the mark's first letter.
QString Scene::flags_of(const QTreeWidgetItem& row) const
{
    const QString hash = checksum_of(row);
    const QBrush brush = row.background(ColSize);
    QStringList flags;
    if (hash == u"Impossible d'ouvrir le fichier "_s + path_of(row)) {
        flags << u"unreadable"_s;
    } else if (!hash.isEmpty()) {
        flags << digest_name(hash, path_of(row));
    }
    for (const auto& [color, name] : {std::pair{Qt::green, u"green"_s},
                                      {Qt::red, u"red"_s},
                                      {Qt::yellow, u"yellow"_s},
                                      {Qt::white, u"white"_s}}) {
        const QBrush mark(color, Qt::SolidPattern);
        if (brush == mark && row.background(ColName) == mark && row.background(ColHash) == mark) {
            flags << name;
        }
    }
    return (row.isSelected() ? u"*"_s : QString()) +
           (flags.isEmpty() ? QString() : u'=' + flags.join(u','));
}

/// The rows below another; "/" after directories and, in parentheses, what is below these.
QString Scene::rows_of(const QTreeWidgetItem& parent) const
{
    QStringList rows;
    for (int i = 0; i < parent.childCount(); ++i) {
        const QTreeWidgetItem& row = *parent.child(i);
        const bool directory = row.type() == TypeDir && !is_way_up(&row);
        rows << name_of(row) + (directory ? u"/"_s : QString()) +
                    (row.childCount() > 0 ? u'(' + rows_of(row) + u')' : QString()) + flags_of(row);
    }
    return rows.join(u' ');
}

void Scene::put(const QString& what)
{
    const QString name = what.section(u'=', 0, 0);
    if (name.endsWith(u'/')) {
        working_dir.createDir(name);
    } else if (what.endsWith("=huge"_L1)) {
        QFile::resize(working_dir.createFile(name), huge_size);
    } else {
        QString content = what.contains(u'=') ? what.section(u'=', 1) : name.section(u'/', -1);
        working_dir.createFile(name, content.replace(u"\\n"_s, u"\n"_s).toUtf8());
    }
}

const QHash<QString, Scene::Verb>& Scene::verbs()
{
    using S = Scene;
    using A = Arguments;
    static const auto each_of = [](const A& a, auto act) {
        std::for_each(a.begin(), a.end(), act);
        return QString();
    };
    static const auto each_row = [](MyTreeWidget& pane, const A& a, auto act) {
        for (const QString& name : a.mid(1)) {
            QTreeWidgetItem* row = find_row(pane, name);
            if (!row) {
                return u"no row "_s + name;
            }
            act(*row);
        }
        return QString();
    };
    static const QHash<QString, Verb> all = {
        // the files
        {u"put"_s, [](S& s, const A& a) { return each_of(a, [&](auto& f) { s.put(f); }); }},
        {u"rm"_s,
         [](S& s, const A& a) {
             return each_of(a, [&](auto& f) {
                 QFile::remove(s.working_dir.at(f)) ||
                     QDir(s.working_dir.at(f)).removeRecursively();
             });
         }},
        {u"link"_s,
         [](S& s, const A& a) {
             return QFile::link(s.working_dir.at(a[1]), s.working_dir.filePath(a[0])) ? QString()
                                                                                      : u"failed"_s;
         }},
        /// So many empty files, named 1, 2, 3.
        {u"many"_s,
         [](S& s, const A& a) {
             for (int i = 1; i <= a[1].toInt(); ++i) {
                 s.working_dir.createFile(a[0] + u'/' + QString::number(i));
             }
             return QString();
         }},
        /// A command of the shell, in the scene's directory; answers what it prints.
        {u"sh"_s,
         [](S&, const A& a) {
             QProcess shell;
             shell.start(u"sh"_s, {u"-c"_s, a[0]});
             shell.waitForFinished();
             return QString::fromLocal8Bit(shell.readAllStandardOutput()).trimmed();
         }},
        {u"cut"_s,
         [](S& s, const A& a) {
             return QFile::resize(s.working_dir.at(a[0]), 0) ? QString() : u"failed"_s;
         }},
        {u"lock"_s,
         [](S& s, const A& a) {
             return make_unreadable(s.working_dir, a[0]).isEmpty() ? u"failed"_s : QString();
         }},
        {u"ls"_s, [](S& s, const A& a) { return s.working_dir.entries(a.value(0)); }},
        {u"cat"_s,
         [](S& s, const A& a) {
             QStringList lines = QString::fromLocal8Bit(s.working_dir.read(a[0])).split(u'\n');
             const QString beside = s.working_dir.at(a[0]).section(u'/', 0, -2) + u'/';
             for (QString& line : lines) {
                 const QString name = line.section(u"  "_s, 1);
                 if (!name.isEmpty()) {
                     line =
                         s.digest_name(line.section(u"  "_s, 0, 0), beside + name) + u"  "_s + name;
                 }
             }
             return lines.join(u" | "_s);
         }},
        // what a person does
        {u"open"_s,
         [](S& s, const A& a) { return s.pane(a).changeModel(s.working_dir.at(a[1])), QString(); }},
        {u"select"_s,
         [](S& s, const A& a) {
             s.pane(a).clearSelection();
             return each_row(s.pane(a), a, [](auto& row) { row.setSelected(true); });
         }},
        {u"expand"_s,
         [](S& s, const A& a) {
             return each_row(s.pane(a), a, [](auto& row) { row.setExpanded(true); });
         }},
        {u"activate"_s,
         [](S& s, const A& a) {
             return each_row(s.pane(a), a,
                             [&](auto& row) { emit s.pane(a).itemActivated(&row, 0); });
         }},
        {u"do"_s,
         [](S& s, const A& a) { return action_of(s.pane(a), a[1])->trigger(), QString(); }},
        {u"command"_s,
         [](S& s, const A& a) {
             s.window->statusBar()->clearMessage();
             return s.action(a[0])->trigger(), QString();
         }},
        {u"call"_s,
         [](S& s, const A& a) {
             return QMetaObject::invokeMethod(&s.pane(a), a[1].toUtf8()) ? QString() : u"none"_s;
         }},
        {u"stop"_s, [](S& s, const A& a) { return s.pane(a).stop_button->click(), QString(); }},
        {u"drop"_s,
         [](S& s, const A& a) {
             QStringList paths;
             std::transform(a.begin() + 1, a.end(), std::back_inserter(paths),
                            [&](const QString& name) { return s.working_dir.at(name); });
             return drop_files(s.pane(a), paths) ? QString() : u"refused"_s;
         }},
        {u"args"_s,
         [](S& s, const A& a) {
             QStringList paths;
             std::transform(a.begin(), a.end(), std::back_inserter(paths),
                            [&](const QString& name) { return s.working_dir.at(name); });
             emit s.window->send_args(paths);
             return QString();
         }},
        {u"key"_s, [](S& s, const A& a) { return s.press(s.pane(a), a[1]), QString(); }},
        {u"current"_s,
         [](S& s, const A& a) {
             if (a.size() == 1) {
                 const QTreeWidgetItem* row = s.pane(a).currentItem();
                 return row ? name_of(*row) : u"none"_s;
             }
             return each_row(s.pane(a), a, [&](auto& row) {
                 s.pane(a).setCurrentItem(&row, 0, QItemSelectionModel::NoUpdate);
             });
         }},
        {u"type"_s,
         [](S& s, const A& a) {
             s.pane(a).path_edit->setText(QDir::toNativeSeparators(s.working_dir.at(a[1])));
             return QTest::keyClick(s.pane(a).path_edit, Qt::Key_Return), QString();
         }},
        {u"check"_s,
         [](S& s, const A& a) {
             s.entry_ = a[1];
             return s.pane(a).act_check->trigger(), QString();
         }},
        {u"menu"_s, [](S& s, const A& a) { return s.menu_of(s.pane(a)); }},
        {u"autoscroll"_s,
         [](S& s, const A& a) { return s.pane(a).act_autoscroll->trigger(), QString(); }},
        {u"option"_s,
         [](S& s, const A& a) {
             return s.pane(a).setopt(a.contains(u"name"_s), a.contains(u"size"_s),
                                     a.contains(u"path"_s), false, false, a.contains(u"upper"_s)),
                    QString();
         }},
        {u"copy"_s,
         [](S& s, const A& a) {
             s.window->show();
             s.window->activateWindow();
             s.pane(a).setFocus();
             QGuiApplication::clipboard()->setText(u"untouched"_s);
             s.action(a[1])->trigger();
             return s.told(QGuiApplication::clipboard()->text())
                 .replace(u'\n', u'|')
                 .replace(u'\t', u'^');
         }},
        {u"exclude"_s,
         [](S& s, const A& a) {
             s.first->set_exclus(a[0]);
             s.second->set_exclus(a[0]);
             return QString();
         }},
        {u"capitals"_s, [](S& s, const A& a) { return s.pane(a).upper = true, QString(); }},
        {u"radio"_s, [](S& s, const A& a) { return s.radio(a[0])->click(), QString(); }},
        /// When a file is announced, and its digest yet to come: carries out the rest of the line.
        {u"during"_s,
         [](S& s, const A& a) {
             const QString moment = u"En cours : "_s + s.working_dir.at(a[1]);
             QObject::connect(&s.pane(a), &MyTreeWidget::processing, &s.poll_,
                              [&s, moment, line = a[2]](const QString& text) {
                                  if (text == moment) {
                                      s.run(line + u'&');
                                  }
                              });
             return QString();
         }},
        /// When a job's digests are there, and nothing has been made of them yet.
        {u"after-job"_s,
         [](S& s, const A& a) {
             QObject::connect(&s.pane(a), &MyTreeWidget::alldone, &s.poll_,
                              [&s, line = a[1]] { s.run(line + u'&'); });
             return QString();
         }},
        /// When the verify dialog is open, and its button yet to be pressed.
        {u"during-check"_s, [](S& s, const A& a) { return s.meanwhile_ = a[1], QString(); }},
        /// Waits until a file is being read.
        {u"hold"_s,
         [](S& s, const A& a) {
             const QString moment = u"En cours : "_s + s.working_dir.at(a[1]);
             return QTest::qWaitFor([&] { return s.pane(a).status_label->text() == moment; }, 60000)
                        ? QString()
                        : u"never"_s;
         }},
        // what is to be seen
        {u"see"_s, [](S& s, const A& a) { return s.rows_of(*s.pane(a).invisibleRootItem()); }},
        {u"first"_s, [](S& s, const A& a) { return name_of(*s.pane(a).topLevelItem(0)); }},
        {u"hashed"_s,
         [](S& s, const A& a) {
             QStringList names;
             for (const QTreeWidgetItem* row : s.pane(a).job_items) {
                 names << s.told(path_of(*row));
             }
             return names.join(u' ');
         }},
        {u"label"_s, [](S& s, const A& a) { return s.told(s.pane(a).status_label->text()); }},
        {u"path"_s,
         [](S& s, const A& a) {
             return s.told(QDir::fromNativeSeparators(s.pane(a).path_edit->text()));
         }},
        {u"selector"_s, [](S& s, const A& a) { return s.pane(a).drive_combo->currentText(); }},
        {u"header"_s, [](S& s, const A& a) { return s.pane(a).headerItem()->text(ColHash); }},
        /// A command given while the time of the last comparison is still shown.
        {u"at-once"_s, [](S& s, const A& a) { return s.action(a[0])->trigger(), QString(); }},
        {u"message"_s,
         [](S& s, const A&) { return s.told(s.window->statusBar()->currentMessage()); }},
        {u"exclusions"_s, [](S& s, const A& a) { return s.pane(a).exclusions.join(u' '); }},
        {u"results"_s,
         [](S& s, const A&) {
             QStringList texts;
             for (const FenRes* dialog : s.window->findChildren<FenRes*>()) {
                 texts << dialog->findChild<QLabel*>()->text().section(u" : "_s, 1);
                 for (const QListView* view : dialog->findChildren<QListView*>()) {
                     for (int i = 0; i < view->model()->rowCount(); ++i) {
                         texts << s.told(view->model()->index(i, 0).data().toString());
                     }
                 }
             }
             return texts.join(u" | "_s);
         }},
    };
    return all;
}

QString Scene::run(const QString& line)
{
    QStringList arguments = QProcess::splitCommand(line);
    QString name = arguments.takeFirst();
    const bool waits = !line.endsWith(u'&') && !name.endsWith(u'&');
    for (QString* text : {&name, arguments.isEmpty() ? &name : &arguments.last()}) {
        *text = text->endsWith(u'&') ? text->chopped(1) : *text;
    }
    const auto verb = verbs().constFind(name);
    if (verb == verbs().constEnd()) {
        return u"no such command"_s;
    }
    QString seen = (*verb)(*this, arguments);
    static const QStringList looks = {u"hold"_s, u"see"_s, u"hashed"_s, u"label"_s, u"path"_s};
    if (waits && !looks.contains(name) && !wait_idle()) {
        return u"does not come to rest"_s;
    }
    return (QStringList(seen.isEmpty() ? QStringList() : QStringList(seen)) +
            (waits ? std::exchange(boxes_, {}) : QStringList()))
        .join(u' ');
}

QString Scene::violation() const
{
    if (is_busy()) {
        return {};
    }
    for (MyTreeWidget* pane : {first, second}) {
        if (!pane->drive_combo->isEnabled() || !pane->acceptDrops() ||
            pane->progress->value() > 0) {
            return u"a pane is idle and its controls are not"_s;
        }
        QSet<const QTreeWidgetItem*> alive;
        for (QTreeWidgetItemIterator it(pane); *it; ++it) {
            alive.insert(*it);
        }
        for (const QTreeWidgetItem* row : pane->job_items) {
            if (!alive.contains(row)) {
                return u"a list holds a dead row"_s;
            }
        }
    }
    for (const char* name : {"Comparer", "Comparer Tout", "Réinitialiser"}) {
        if (!action(QString::fromUtf8(name))->isEnabled()) {
            return u"the panes are idle and a command is disabled"_s;
        }
    }
    return radio(u"MD5"_s)->isEnabled() && radio(u"SHA1"_s)->isEnabled()
               ? QString()
               : u"the panes are idle and the algorithm cannot be chosen"_s;
}
