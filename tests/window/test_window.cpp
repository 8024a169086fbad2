// The window as a whole: what it is made of, what it keeps, its languages, and who can read it.

#include "app/screen_fit.h"
#include "app/settings_file.h"
#include "dialogs/fencheck.h"
#include "engine/product.h"
#include "tests/support/modal_driver.h"
#include "tests/support/window_fixture.h"

#include <QAccessible>
#include <QApplication>
#include <QMenuBar>
#include <QMessageBox>
#include <QSettings>
#include <QSplitter>
#include <QStandardPaths>
#include <QTest>
#include <QToolBar>
#include <QTranslator>

using namespace Qt::StringLiterals;

namespace {

const QString file_name = u"Tavrel.ini"_s;

QString value_of(const QString& path, const QString& key)
{
    return QSettings(path, QSettings::IniFormat).value(key).toString();
}

/// Text, shortcut and status tip of each action, "|" for separators.
QString described(const QList<QAction*>& actions)
{
    QStringList texts;
    for (const QAction* action : actions) {
        const QString shortcut = action->shortcut().toString(QKeySequence::PortableText);
        texts << (action->isSeparator()
                      ? u"|"_s
                      : action->text() + u'/' + shortcut + u'/' + action->statusTip());
    }
    return texts.join(u'\n');
}

QString told(QObject* widget, QAccessible::Text kind)
{
    return QAccessible::queryAccessibleInterface(widget)->text(kind);
}

} // namespace

class TestWindow : public QObject
{
    Q_OBJECT

  private slots:
    void is_made_as_described();
    void every_setting_goes_round();
    void settings_mean_what_they_always_did();
    void damaged_settings_give_the_defaults();
    void locked_settings_are_kept_elsewhere();
    void stays_in_sight_and_its_size();
    void speaks_the_language_of_the_next_start();
    void can_be_read_by_everyone();
    void tab_follows_the_layout();
};

void TestWindow::is_made_as_described()
{
    const WindowFixture fixture;
    QString all;
    for (const QAction* menu : fixture.window->menuBar()->actions()) {
        all += menu->text() + u":\n"_s + described(menu->menu()->actions()) + u'\n';
    }
    const auto* bar = fixture.window->findChild<QToolBar*>();
    for (QAction* action : bar->actions()) {
        const auto* radio = qobject_cast<QRadioButton*>(bar->widgetForAction(action));
        all += radio                   ? u'(' + radio->text() + u')'
               : action->isSeparator() ? u"|"_s
                                       : action->text();
    }
    all += u'\n' +
           described(fixture.first->findChildren<QAction*>(QString(), Qt::FindDirectChildrenOnly));
    const QString golden = QString::fromUtf8(R"(&Fichier:
Comparer/Ctrl+F/Compare les éléments sélectionnés.
Comparer Tout/Ctrl+Shift+F/Compare tous les éléments.
|
Quitter/Ctrl+Q/
&Edition:
Copier le resultat/Ctrl+C/Copie le résultat dans le Presse Papier
Copier tous les résultats/Ctrl+Shift+C/Copie tous les résultat dans le Presse Papier
|
Options...//
Fe&nêtre:
Vues Horizontales./F2/Vues Horizontales.
Vues Verticales./F3/Vues Verticales.
?:
A Propos...//
(MD5)(SHA1)|Comparer|Comparer Tout|Stop|Réinitialiser|Vues Horizontales.Vues Verticales.
MD5.../Ctrl+D/Calcule le MD5 du (ou des) fichier(s) séléctionné(s).
MD5 de tous les fichiers/Ctrl+Shift+D/Calcule le MD5 de tous les fichiers du répertoire.
Créer fichier MD5//Crée un fichier .md5
Créer fichier MD5 du répertoire//Crée un fichier .md5 avec tous les fichiers du répertoire
SHA1.../Ctrl+S/Calcule le SHA1 du (ou des) fichier(s) séléctionné(s).
SHA1 de tous les fichiers/Ctrl+Shift+S/Calcule le SHA1 de tous les fichiers du répertoire.
Créer fichier SHA1//Crée un fichier .sha1
Créer fichier SHA1 du répertoire//Crée un fichier .sha1 avec tous les fichiers du répertoire
Vérifier MD5/SHA1//Entrez un MD5/SHA1 pour le comparer à celui du fichier.
Exclure ce type de fichier//Exclure ce type de fichier lors de la comparaison.
Inclure ce type de fichier//Réinclure ce type de fichier lors de la comparaison.
Ouvrir dans l'explorateur//Ouvrir dans l'explorateur Windows.
AutoScroll//Désactivez pour gagner en rapidité lorsque le répertoire contient pleins de (+ de 2500) petits fichiers.)");
    QCOMPARE(all, golden);
}

void TestWindow::every_setting_goes_round()
{
    // With every other option on, then with the rest of them.
    for (const bool odd : {true, false}) {
        const QString on = odd ? u"true"_s : u"false"_s;
        const QString off = odd ? u"false"_s : u"true"_s;
        WindowFixture fixture;
        fixture.working_dir.createDir(u"one, two; three = é"_s);
        const QString directory = fixture.working_dir.at(u"one, two; three = é"_s);
        const QMap<QString, QString> values = {{u"MainWindow/lang"_s, u"en_GB"_s},
                                               {u"MainWindow/views"_s, u"2"_s},
                                               {u"App/alg"_s, u"SHA1"_s},
                                               {u"App/tree1"_s, directory},
                                               {u"App/tree2"_s, directory},
                                               {u"App/ccname"_s, on},
                                               {u"App/ccsize"_s, off},
                                               {u"App/ccpath"_s, on},
                                               {u"App/upper"_s, off},
                                               {u"App/rem_dir"_s, u"true"_s},
                                               {u"App/rem_view"_s, u"true"_s},
                                               {u"App/exclu"_s, u"*.jpg;*.tmp"_s}};
        {
            QSettings file(file_name, QSettings::IniFormat);
            for (const auto& [key, value] : values.asKeyValueRange()) {
                file.setValue(key, value);
            }
            file.setValue(u"MainWindow/size"_s, QSize(640, 480));
            file.setValue(u"MainWindow/pos"_s, QPoint(20, 30));
        }
        fixture.rebuild();
        QCOMPARE(fixture.window->size(), QSize(640, 480));
        QCOMPARE(fixture.window->pos(), QPoint(20, 30));
        for (const MyTreeWidget* pane : {fixture.first, fixture.second}) {
            QVERIFY(pane->ccname == odd && pane->ccsize != odd && pane->ccpath == odd);
            QVERIFY(pane->upper != odd && pane->rem_dir && pane->rem_view);
            QCOMPARE(pane->exclusions, (QStringList{u"jpg"_s, u"tmp"_s}));
            QCOMPARE(pane->headerItem()->text(ColHash), u"SHA1"_s);
            QCOMPARE(pane->current_dir().path(), directory);
        }
        // What is written for both panes is the first one's.
        fixture.second->setopt(!odd, odd, !odd, false, false, odd);
        fixture.second->set_exclus(u"c"_s);
        QVERIFY(QFile::remove(file_name));
        fixture.window->writeSettings();
        for (const auto& [key, value] : values.asKeyValueRange()) {
            QCOMPARE(value_of(file_name, key), value);
        }
        QCOMPARE(QSettings(file_name, QSettings::IniFormat).allKeys().size(), values.size() + 3);
    }
}

void TestWindow::settings_mean_what_they_always_did()
{
    const QString views = u"MainWindow/views"_s;
    const QList<std::tuple<QByteArray, QString, QString>> cases = {
        {"[MainWindow]\nviews=1\n[App]\nrem_view=true\n", views, u"1"_s},
        {"[App]\nrem_view=true\n", views, u"2"_s},
        {"[MainWindow]\nviews=2\n[App]\nrem_view=false\n", views, u"1"_s},
        {"[App]\nalg=sha1\n", u"App/alg"_s, u"MD5"_s},
        {"[App]\nexclu=\";;\"\n", u"App/exclu"_s, QString()},
        {"[App]\nccsize=1\n", u"App/ccsize"_s, u"true"_s},
        {"[App]\nrem_dir=true\ntree1=DIR\n", u"App/tree1"_s, u"DIR"_s},
        {"[App]\nrem_dir=true\ntree1=DIR/gone\n", u"App/tree1"_s, u"ROOT"_s},
        {"[App]\nrem_dir=false\ntree1=DIR\n", u"App/tree1"_s, u"ROOT"_s}};
    for (const auto& [content, key, written] : cases) {
        WindowFixture fixture;
        const QString directory = fixture.working_dir.at();
        fixture.working_dir.createFile(file_name,
                                       QByteArray(content).replace("DIR", directory.toUtf8()));
        fixture.rebuild();
        fixture.window->writeSettings();
        QCOMPARE(value_of(file_name, key), QString(written)
                                               .replace(u"DIR"_s, directory)
                                               .replace(u"ROOT"_s, volume_root(directory)));
        const bool vertical =
            fixture.window->findChild<QSplitter*>()->orientation() == Qt::Vertical;
        QCOMPARE(fixture.action(u"Vues Horizontales."_s)->isEnabled(), vertical);
        QCOMPARE(fixture.action(u"Vues Verticales."_s)->isEnabled(), !vertical);
    }
}

void TestWindow::damaged_settings_give_the_defaults()
{
    for (const QByteArray& content :
         {QByteArray(), QByteArray("[MainWindow]\nsize=@Size(64"),
          QByteArray("[MainWindow]\nsize=large\npos=left\nviews=@Size(1 1)\n"
                     "splitterSizes=@Point(1 1)\n[App]\nexclu=a,b\ntree1=a,b\nrem_view=true\n"),
          QByteArray("[MainWindow]\nsize=@Size(2000000000 2000000000)\npos=@Invalid()\n"
                     "splitterSizes=\"@ByteArray(\\0\\0\\0\\xff\\0\\0\\0\\x1\\x7f\\xff\\xff\\xff)\""
                     "\n[App]\nrem_view=true\n")}) {
        WindowFixture fixture;
        if (!content.isEmpty()) {
            fixture.working_dir.createFile(file_name, content);
        }
        fixture.rebuild();
        QCOMPARE(QFile::exists(file_name), !content.isEmpty()); // nothing is written before the end
        QCOMPARE(fixture.window->size(), QSize(800, 600));
        QCOMPARE(fixture.window->pos(), QPoint(100, 200));
        QCOMPARE(fixture.first->current_dir().path(), QDir::rootPath());
        QVERIFY(fixture.radio(u"MD5"_s)->isChecked() && fixture.first->exclusions.isEmpty());
    }
}

void TestWindow::locked_settings_are_kept_elsewhere()
{
    WindowFixture fixture;
    const TestDir config;
    qputenv("XDG_CONFIG_HOME", config.at().toLocal8Bit());
    const QString substitute = config.at(u"Brennick/Tavrel.ini"_s);
    if (!permissions_hold() || !substitute.startsWith(QStandardPaths::writableLocation(
                                   QStandardPaths::GenericConfigLocation))) {
        QSKIP("nothing is locked to this user");
    }
    fixture.working_dir.createFile(file_name, "[App]\nalg=SHA1\n");
    QFile::setPermissions(file_name, QFile::ReadOwner);
    // It is read until something was saved in the user's own folder, which counts from then on.
    QCOMPARE(settings_path_to_read(), file_name);
    QCOMPARE(settings_path_to_write(), substitute);
    fixture.window->writeSettings();
    QCOMPARE(settings_path_to_read(), substitute);
    QCOMPARE(value_of(file_name, u"App/alg"_s), u"SHA1"_s);
    qunsetenv("XDG_CONFIG_HOME");
}

void TestWindow::stays_in_sight_and_its_size()
{
    // A window of 800 by 600 on a screen of 1920 by 1080 with another one to its left.
    const QList<QRect> screens = {QRect(0, 0, 1920, 1080), QRect(-1280, 0, 1280, 1024)};
    const QList<std::pair<QPoint, QPoint>> rows = {
        {{100, 200}, {100, 200}},     {{-1200, 300}, {-1200, 300}},
        {{1856, 1000}, {1856, 1000}}, {{1857, 200}, {1120, 200}},
        {{100, 1060}, {100, 480}},    {{100, -10}, {100, 0}},
        {{-5000, -5000}, {0, 0}},     {{2147483647, 2147483647}, {1120, 480}}};
    for (const auto& [saved, shown] : rows) {
        QCOMPARE(position_in_sight(saved, QSize(800, 600), screens), shown);
    }
    WindowFixture fixture;
    fixture.window->show();
    QString deep = u"deep"_s;
    for (int i = 0; i < 12; ++i) {
        deep += u"/a directory"_s;
    }
    fixture.working_dir.createDir(deep);
    for (MyTreeWidget* pane : {fixture.first, fixture.second}) {
        pane->changeModel(fixture.working_dir.at(deep));
    }
    QTest::qWait(0);
    QCOMPARE(fixture.window->size(), QSize(800, 600));
    QVERIFY(fixture.window->minimumSizeHint().width() <= 800);
}

void TestWindow::speaks_the_language_of_the_next_start()
{
    WindowFixture fixture;
    QTranslator translator;
    fixture.window->translator = &translator;
    const auto question_after = [&](const QString& code) {
        QString asked;
        const ModalDriver<QMessageBox> driver([&](QMessageBox& box) {
            asked = box.windowTitle() + u'|' + box.text().section(u'\n', 1) + u'|' +
                    box.buttons().constLast()->text();
            box.buttons().constLast()->click();
        });
        fixture.window->setLang(code);
        return driver.met() ? asked : QString();
    };
    QCOMPARE(question_after(u"fr"_s), QString()); // it is French already
    QCOMPARE(question_after(u"en"_s), u"Restart|Do you want to restart now ?|No"_s);
    QCOMPARE(question_after(u"en"_s), QString());
    QCOMPARE(fixture.action(u"Comparer"_s)->text(), u"Comparer"_s);
    fixture.window->writeSettings();
    QCOMPARE(value_of(file_name, u"MainWindow/lang"_s), u"en"_s);
    fixture.rebuild();
    fixture.window->translator = &translator;
    QVERIFY(fixture.action(u"Compare All"_s));
    QCOMPARE(fixture.first->headerItem()->text(ColName), u"Name"_s);
    const ModalDriver<QMessageBox> about([](QMessageBox& box) {
        QCOMPARE(box.windowTitle(), u"About Tavrel"_s);
        QVERIFY(box.text().contains(u"v1.42"_s) && box.text().contains(u"/home\">"_s));
        QVERIFY(!box.iconPixmap().isNull());
    });
    fixture.action(u"About..."_s)->trigger();
    QVERIFY(about.met());
    QCOMPARE(question_after(u"fr"_s), u"Redémarrage|Voulez-vous redémarrer maintenant ?|Non"_s);
}

void TestWindow::can_be_read_by_everyone()
{
    WindowFixture fixture;
    for (MyTreeWidget* pane : {fixture.first, fixture.second}) {
        const QString number = pane == fixture.first ? u" 1"_s : u" 2"_s;
        for (QObject* control : QObjectList{pane->path_edit, pane->progress, pane->reset_button,
                                            pane->stop_button, pane}) {
            QVERIFY(told(control, QAccessible::Name).endsWith(number));
        }
        QVERIFY(told(pane->drive_combo, QAccessible::Description).endsWith(number));
    }
    fixture.working_dir.createFile(u"a"_s);
    fixture.first->changeModel(fixture.working_dir.at());
    auto* row = static_cast<PaneRow*>(find_row(*fixture.first, u"a"_s));
    const QList<std::tuple<engine::Mark, Qt::GlobalColor, bool, bool>> looks = {
        {engine::Mark::Identical, Qt::green, false, false},
        {engine::Mark::Different, Qt::red, true, false},
        {engine::Mark::NoPartner, Qt::yellow, false, true},
        {engine::Mark::Cleared, Qt::white, false, false}};
    for (const auto& [mark, colour, bold, italic] : looks) {
        row->set_mark(mark);
        for (const int column : {ColName, ColSize, ColHash}) {
            QCOMPARE(row->background(column), QBrush(colour, Qt::SolidPattern));
            QCOMPARE(row->foreground(column).color(), QColor(Qt::black));
        }
        QCOMPARE(row->background(ColPath), QBrush());
        const QFont font = row->data(ColName, Qt::FontRole).value<QFont>();
        QVERIFY(font.bold() == bold && font.italic() == italic);
    }
    row->set_mark(engine::Mark::Different);
    fixture.first->doItemsLayout();
    auto* table = QAccessible::queryAccessibleInterface(fixture.first)->tableInterface();
    const int index = fixture.first->indexOfTopLevelItem(row);
    QCOMPARE(table->cellAt(index, ColName)->text(QAccessible::Name), u"Différent => a"_s);

    FenCheck dialog(u"/a"_s, nullptr);
    dialog.show();
    dialog.set_check_enabled(true);
    dialog.handle_res(u"other"_s);
    QCOMPARE(told(dialog.focusWidget(), QAccessible::Description), u"Il y a des erreurs."_s);
}

void TestWindow::tab_follows_the_layout()
{
    const WindowFixture fixture;
    fixture.window->show();
    QVERIFY(QTest::qWaitForWindowActive(fixture.window.get()));
    const auto& [a, b] = std::pair(fixture.first, fixture.second);
    a->drive_combo->setFocus();
    for (QWidget* next : QWidgetList{a->path_edit, a->reset_button, a->stop_button, a,
                                     b->drive_combo, b->path_edit, b->reset_button}) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), next);
    }
    b->path_edit->setFocus();
    QTest::keyClicks(b->path_edit, u"a\t"_s); // typed: the list comes next
    QCOMPARE(QApplication::focusWidget(), b);
}

// The window reads the application's arguments, and those of a test are not meant for it.
int main(int argc, char* argv[])
{
    int only_the_program = 1;
    const QApplication application(only_the_program, argv);
    TestWindow test;
    return QTest::qExec(&test, argc, argv);
}
#include "test_window.moc"
