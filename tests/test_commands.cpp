// A pane's commands: copies, context menus, keys, the file manager, options and exclusions.

#include "tests/pane_fixture.h"
#include "tree/copy_text.h"

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QDir>
#include <QLineEdit>
#include <QMenu>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTest>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace {

/// A shown and active window, both panes on a directory of the test.
class Bench : public WindowFixture
{
  public:
    Bench()
    {
        dir.createFiles({u"a.txt"_s, u"b.TMP"_s, u"c.tmp"_s, u"sub/d.tmp"_s, u"sub/e.txt"_s});
        first->changeModel(dir.at());
        second->changeModel(dir.at());
        window->show();
        window->activateWindow();
        if (!QTest::qWaitForWindowActive(window.get())) {
            qFatal("the window does not become active");
        }
    }

    void focus(QWidget* widget)
    {
        widget->setFocus();
        QTRY_VERIFY(widget->hasFocus());
    }

    TestDir dir;
};

QString described(const QMenu& menu)
{
    QStringList entries;
    for (const QAction* action : menu.actions()) {
        if (action->isSeparator()) {
            entries.append(u"-"_s);
        } else if (action->menu()) {
            entries.append(action->text() + u'(' + described(*action->menu()) + u')');
        } else {
            entries.append((action->isEnabled() ? u""_s : u"disabled "_s) + action->text());
        }
    }
    return entries.join(u", "_s);
}

/// Opens a pane's context menu as a right click does, chooses an entry by key or closes it, and
/// answers what it offered.
QString right_click(MyTreeWidget& pane, QAction* choice = nullptr)
{
    QString offered;
    QTimer hand;
    QObject::connect(&hand, &QTimer::timeout, &pane, [&] {
        if (auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget())) {
            offered = described(*menu);
            menu->setActiveAction(choice);
            QTest::keyClick(menu, choice ? Qt::Key_Return : Qt::Key_Escape);
        }
    });
    hand.start(1);
    const QPoint position = pane.viewport()->rect().center();
    QContextMenuEvent event(QContextMenuEvent::Mouse, position,
                            pane.viewport()->mapToGlobal(position));
    QApplication::sendEvent(pane.viewport(), &event);
    return offered;
}

} // namespace

class TestCommands : public QObject
{
    Q_OBJECT

  private slots:
    void copied_texts();
    void copies_come_from_the_focused_pane();
    void menu_follows_the_current_row_data();
    void menu_follows_the_current_row();
    void menu_excludes_and_includes();
    void shortcuts_hash_in_the_focused_pane_data();
    void shortcuts_hash_in_the_focused_pane();
    void backspace_goes_up();
    void autoscroll_follows_changes();
    void options_arrive_in_their_order();
    void file_manager_shows_the_current_row_data();
    void file_manager_shows_the_current_row();
};

void TestCommands::copied_texts()
{
    const QList<CopyRow> rows = {{u"0f"_s, u"a.txt"_s, u"1 Ko"_s, u"/x/a.txt"_s},
                                 {QString(), u"bb bb.txt"_s, u"12 Mo"_s, u"/x/bb bb.txt"_s},
                                 {u"1e"_s, u"c"_s, QString(), u"/c"_s}};
    // Name, size, path.
    QCOMPARE(copy_text(rows, {false, false, false}), u"0f\n1e\n"_s);
    QCOMPARE(copy_text(rows, {true, false, false}), u"0f\ta.txt    \nbb bb.txt\n1e\tc        \n"_s);
    QCOMPARE(copy_text(rows, {false, true, false}), u"0f\t 1 Ko\n12 Mo\n1e\t     \n"_s);
    QCOMPARE(copy_text(rows, {false, false, true}),
             u"0f\t/x/a.txt    \n/x/bb bb.txt\n1e\t/c          \n"_s);
    QCOMPARE(copy_text(rows, {true, true, true}), u"0f\t/x/a.txt    \ta.txt    \t 1 Ko\n"
                                                  "/x/bb bb.txt\tbb bb.txt\t12 Mo\n"
                                                  "1e\t/c          \tc        \t     \n"_s);
    QCOMPARE(copy_text({}, {true, true, true}), QString());
}

void TestCommands::copies_come_from_the_focused_pane()
{
    Bench bench;
    QClipboard& clipboard = *QGuiApplication::clipboard();
    /// What "Copier le resultat" and "Copier tous les résultats" put into the clipboard.
    const auto copied = [&](QWidget* focused) {
        bench.focus(focused);
        QStringList texts;
        for (const QString& command : {u"Copier le resultat"_s, u"Copier tous les résultats"_s}) {
            clipboard.setText(u"untouched"_s);
            bench.action(command)->trigger();
            texts.append(clipboard.text());
        }
        return texts.join(u'|');
    };
    for (MyTreeWidget* pane : {bench.first, bench.second}) {
        select_names(*pane, {u"sub"_s, u"c.tmp"_s, u"a.txt"_s});
    }
    QCOMPARE(copied(bench.first), u"untouched|untouched"_s);
    for (const QString& name : {u"sub"_s, u"a.txt"_s, u"b.TMP"_s, u"c.tmp"_s}) {
        find_row(*bench.first, name)->setText(ColHash, u"1 "_s + name);
        find_row(*bench.second, name)->setText(ColHash, u"2 "_s + name);
    }
    QCOMPARE(copied(bench.first), u"1 c.tmp\n1 a.txt\n|1 a.txt\n1 b.TMP\n1 c.tmp\n"_s);
    QCOMPARE(copied(bench.second), u"2 c.tmp\n2 a.txt\n|2 a.txt\n2 b.TMP\n2 c.tmp\n"_s);
    QCOMPARE(copied(bench.first->path_edit), u"untouched|untouched"_s);
}

void TestCommands::menu_follows_the_current_row_data()
{
    QTest::addColumn<QString>("current");
    QTest::addColumn<bool>("selected");
    QTest::addColumn<QString>("offered");
    const QString directory =
        u"MD5(MD5...), SHA1(SHA1...), Ouvrir dans l'explorateur, -, AutoScroll"_s;
    const QString general = u"MD5(MD5 de tous les fichiers, Créer fichier MD5 du répertoire), "
                            "SHA1(SHA1 de tous les fichiers, Créer fichier SHA1 du répertoire), "
                            "Ouvrir dans l'explorateur, -, AutoScroll"_s;
    const QString file = u"MD5(MD5..., MD5 de tous les fichiers, Créer fichier MD5, "
                         "Créer fichier MD5 du répertoire), "
                         "SHA1(SHA1..., SHA1 de tous les fichiers, Créer fichier SHA1, "
                         "Créer fichier SHA1 du répertoire), -, Vérifier MD5/SHA1, -, "
                         "%1Exclure ce type de fichier, %2Inclure ce type de fichier, -, "
                         "Ouvrir dans l'explorateur, -, AutoScroll"_s;
    QTest::newRow("no row") << QString() << false << general;
    QTest::newRow("way up") << u".."_s << true << directory;
    QTest::newRow("directory") << u"sub"_s << true << directory;
    QTest::newRow("file") << u"a.txt"_s << true << file.arg(u""_s, u"disabled "_s);
    QTest::newRow("file, not selected") << u"a.txt"_s << false << general;
    QTest::newRow("excluded file") << u"c.tmp"_s << true << file.arg(u"disabled "_s, u""_s);
    QTest::newRow("excluded file, other case")
        << u"b.TMP"_s << true << file.arg(u"disabled "_s, u""_s);
}

void TestCommands::menu_follows_the_current_row()
{
    QFETCH(QString, current);
    QFETCH(bool, selected);
    Bench bench;
    bench.first->set_exclus(u"*.tmp"_s);
    QTreeWidgetItem* row = find_row(*bench.first, current);
    bench.first->setCurrentItem(row);
    bench.first->clearSelection();
    if (row) {
        row->setSelected(selected);
    }
    QTEST(right_click(*bench.first), "offered");
    QVERIFY(bench.first->act_exclude->isEnabled());
    QVERIFY(bench.first->act_include->isEnabled());
}

void TestCommands::menu_excludes_and_includes()
{
    Bench bench;
    const auto choose = [](MyTreeWidget& pane, const QString& name, QAction* choice) {
        pane.setCurrentItem(find_row(pane, name));
        QVERIFY(right_click(pane, choice).contains(choice->text()));
    };
    const auto both = [&](const QStringList& list) {
        QCOMPARE(bench.first->exclusions, list);
        QCOMPARE(bench.second->exclusions, list);
    };
    choose(*bench.first, u"a.txt"_s, bench.first->act_exclude);
    both({u"txt"_s});
    choose(*bench.second, u"b.TMP"_s, bench.second->act_exclude);
    both({u"txt"_s, u"TMP"_s});
    // Offered whatever the case, taken back only as it is written.
    choose(*bench.first, u"c.tmp"_s, bench.first->act_include);
    both({u"txt"_s, u"TMP"_s});
    choose(*bench.second, u"a.txt"_s, bench.second->act_include);
    both({u"TMP"_s});

    // Without a current row there is no type.
    for (MyTreeWidget* pane : {bench.first, bench.second}) {
        pane->setCurrentItem(nullptr);
        pane->act_exclude->trigger();
        pane->act_include->trigger();
    }
    both({u"TMP"_s});
}

void TestCommands::shortcuts_hash_in_the_focused_pane_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<bool>("all");
    QTest::addColumn<QString>("algorithm");
    QTest::newRow("Ctrl+D") << Qt::Key_D << false << u"MD5"_s;
    QTest::newRow("Ctrl+Shift+D") << Qt::Key_D << true << u"MD5"_s;
    QTest::newRow("Ctrl+S") << Qt::Key_S << false << u"SHA1"_s;
    QTest::newRow("Ctrl+Shift+S") << Qt::Key_S << true << u"SHA1"_s;
}

void TestCommands::shortcuts_hash_in_the_focused_pane()
{
    QFETCH(Qt::Key, key);
    QFETCH(bool, all);
    QFETCH(QString, algorithm);
    Bench bench;
    bench.radio(algorithm == "MD5"_L1 ? u"SHA1"_s : u"MD5"_s)->setChecked(true);
    for (MyTreeWidget* pane : {bench.first, bench.second}) {
        select_names(*pane, {u"a.txt"_s});
    }
    bench.focus(bench.second);
    QTest::keyClick(bench.second, key,
                    all ? Qt::ControlModifier | Qt::ShiftModifier : Qt::ControlModifier);
    QVERIFY(bench.wait_idle());
    QVERIFY(bench.radio(algorithm)->isChecked());
    QCOMPARE(bench.first->headerItem()->text(ColHash), algorithm);
    QCOMPARE(hashed_in(*bench.second), all ? u"a.txt, b.TMP, c.tmp"_s : u"a.txt"_s);
    QCOMPARE(checksum_at(*bench.second, u"a.txt"_s),
             reference_digest("a.txt", algorithm == "MD5"_L1 ? QCryptographicHash::Md5
                                                             : QCryptographicHash::Sha1));
    QCOMPARE(hashed_in(*bench.first), QString());
}

void TestCommands::backspace_goes_up()
{
    Bench bench;
    bench.first->changeModel(bench.dir.at(u"sub"_s));
    bench.focus(bench.first);
    QTest::keyClick(bench.first, Qt::Key_Backspace);
    QCOMPARE(bench.first->current_dir().path(), bench.dir.at());
    QCOMPARE(bench.first->path_edit->text(), QDir::toNativeSeparators(bench.dir.at()));

    // Without a way up nothing happens, and nobody else sees the key.
    delete bench.first->takeTopLevelItem(0);
    QSignalSpy activated(bench.first, &QTreeWidget::itemActivated);
    QKeyEvent press(QEvent::KeyPress, Qt::Key_Backspace, Qt::NoModifier);
    QApplication::sendEvent(bench.first, &press);
    QVERIFY(press.isAccepted());
    QCOMPARE(activated.count(), 0);
    QCOMPARE(bench.first->current_dir().path(), bench.dir.at());

    // Other keys go on to the view.
    bench.first->setCurrentItem(find_row(*bench.first, u"a.txt"_s));
    QTest::keyClick(bench.first, Qt::Key_Down);
    QCOMPARE(bench.first->currentItem(), find_row(*bench.first, u"b.TMP"_s));
}

void TestCommands::autoscroll_follows_changes()
{
    Bench bench;
    QVERIFY(bench.first->act_autoscroll->isCheckable());
    // Off, on and off again.
    for (const QString& followed : {u"sub"_s, u"c.tmp"_s, u"sub"_s}) {
        bench.first->setCurrentItem(find_row(*bench.first, u"sub"_s));
        bench.first->HashDir();
        QVERIFY(bench.wait_idle());
        QCOMPARE(bench.first->currentItem(), find_row(*bench.first, followed));
        bench.first->act_autoscroll->trigger();
    }
}

void TestCommands::options_arrive_in_their_order()
{
    WindowFixture fixture;
    MyTreeWidget& pane = *fixture.first;
    for (int chosen = 0; chosen < 6; ++chosen) {
        const auto is = [&](int option) { return option == chosen; };
        pane.setopt(is(0), is(1), is(2), is(3), is(4), is(5));
        const QList<bool> options = {pane.ccname,  pane.ccsize,   pane.ccpath,
                                     pane.rem_dir, pane.rem_view, pane.upper};
        QCOMPARE(options.indexOf(true), chosen);
        QCOMPARE(options.count(true), 1);
    }
}

void TestCommands::file_manager_shows_the_current_row_data()
{
    QTest::addColumn<bool>("desktop_answers");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QStringList>("calls"); // %1 is the directory
    const QString method = u"org.freedesktop.FileManager1.Show%1 array:string:file://%2"_s;
    const auto folders = method.arg(u"Folders"_s);
    const auto items = method.arg(u"Items"_s);
    QTest::newRow("file") << true << u"a.txt"_s << QStringList{items.arg(u"%1/a.txt"_s)};
    QTest::newRow("directory") << true << u"sub"_s << QStringList{folders.arg(u"%1/sub"_s)};
    QTest::newRow("awkward name") << true << u"a, 'b'$(c).txt"_s
                                  << QStringList{items.arg(u"%1/a%2C%20'b'$(c).txt"_s)};
    QTest::newRow("file, no desktop")
        << false << u"a.txt"_s << QStringList{items.arg(u"%1/a.txt"_s), u"xdg-open %1"_s};
    QTest::newRow("directory, no desktop")
        << false << u"sub"_s << QStringList{folders.arg(u"%1/sub"_s), u"xdg-open %1/sub"_s};
}

void TestCommands::file_manager_shows_the_current_row()
{
    QFETCH(bool, desktop_answers);
    QFETCH(QString, name);
    QFETCH(QStringList, calls);
    if (QStandardPaths::findExecutable(u"sh"_s).isEmpty()) {
        QSKIP("no shell for the programs that stand in for the desktop");
    }
    TestDir programs;
    const QByteArray record = "\" >> '" + programs.filePath(u"record"_s).toUtf8() + "'\n";
    const auto stand_in = [&](const QString& program, const QByteArray& script) {
        QFile::setPermissions(programs.createFile(program, "#!/bin/sh\n" + script),
                              QFile::ReadOwner | QFile::ExeOwner);
    };
    stand_in(u"dbus-send"_s,
             "shift 6\necho \"$1 $2" + record + (desktop_answers ? "exit 0\n" : "exit 1\n"));
    stand_in(u"xdg-open"_s, "echo \"xdg-open $1" + record);
    const QByteArray path = qgetenv("PATH");
    qputenv("PATH", programs.path().toLocal8Bit() + ':' + path);

    Bench bench;
    bench.dir.createFile(name == "sub"_L1 ? u"other"_s : name);
    bench.first->Reset();
    bench.first->setCurrentItem(nullptr);
    bench.first->act_explorer->trigger();
    bench.first->setCurrentItem(find_row(*bench.first, name));
    bench.first->act_explorer->trigger();
    const auto recorded = [&] {
        return QString::fromUtf8(programs.read(u"record"_s)).split(u'\n', Qt::SkipEmptyParts);
    };
    calls.replaceInStrings(u"%1"_s, bench.dir.at());
    QTRY_COMPARE(recorded().size(), calls.size());
    qputenv("PATH", path);
    QCOMPARE(recorded(), calls);
}

QTEST_MAIN(TestCommands)
#include "test_commands.moc"
