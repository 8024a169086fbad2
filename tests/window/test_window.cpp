// The window as a whole: what it is made of, its place, and who can read it.

#include "app/screen_fit.h"
#include "dialogs/fencheck.h"
#include "tests/support/scene.h"

namespace {

/// Text, shortcut and status tip of each action, "|" for separators.
QString described(const QList<QAction*>& actions)
{
    QString texts;
    for (const QAction* action : actions) {
        const QString shortcut = action->shortcut().toString(QKeySequence::PortableText);
        const QString all = action->text() + u'/' + shortcut + u'/' + action->statusTip();
        texts += (action->isSeparator() ? u"|"_s : all) + u" ; "_s;
    }
    return texts;
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
    void stays_in_sight_and_its_size();
    void can_be_read_by_everyone();
    void tab_follows_the_layout();
};

void TestWindow::is_made_as_described()
{
    const Scene scene;
    QString all;
    for (const QAction* menu : scene.window->menuBar()->actions()) {
        all += menu->text() + u": ; "_s + described(menu->menu()->actions());
    }
    const auto* bar = scene.window->findChild<QToolBar*>();
    for (QAction* action : bar->actions()) {
        const auto* radio = qobject_cast<QRadioButton*>(bar->widgetForAction(action));
        all += radio                   ? u'(' + radio->text() + u')'
               : action->isSeparator() ? u"|"_s
                                       : action->text();
    }
    all += u" ; "_s + described(scene.first->findChildren<QAction*>(Qt::FindDirectChildrenOnly));
    const QString golden = QString::fromUtf8(
        "&Fichier: ; Comparer/Ctrl+F/Compare les éléments sélectionnés. ; "
        "Comparer Tout/Ctrl+Shift+F/Compare tous les éléments. ; | ; Quitter/Ctrl+Q/ ; "
        "&Edition: ; Copier le resultat/Ctrl+C/Copie le résultat dans le Presse Papier ; "
        "Copier tous les résultats/Ctrl+Shift+C/Copie tous les résultat dans le Presse Papi"
        "er ; | ; Options...// ; Fe&nêtre: ; Vues Horizontales./F2/Vues Horizontales. ; "
        "Vues Verticales./F3/Vues Verticales. ; ?: ; A Propos...// ; "
        "(MD5)(SHA1)|Comparer|Comparer Tout|Stop|Réinitialiser|Vues Horizontales.Vues Verti"
        "cales. ; MD5.../Ctrl+D/Calcule le MD5 du (ou des) fichier(s) séléctionné(s). ; "
        "MD5 de tous les fichiers/Ctrl+Shift+D/Calcule le MD5 de tous les fichiers du réper"
        "toire. ; Créer fichier MD5//Crée un fichier .md5 ; "
        "Créer fichier MD5 du répertoire//Crée un fichier .md5 avec tous les fichiers du ré"
        "pertoire ; "
        "SHA1.../Ctrl+S/Calcule le SHA1 du (ou des) fichier(s) séléctionné(s). ; "
        "SHA1 de tous les fichiers/Ctrl+Shift+S/Calcule le SHA1 de tous les fichiers du rép"
        "ertoire. ; Créer fichier SHA1//Crée un fichier .sha1 ; "
        "Créer fichier SHA1 du répertoire//Crée un fichier .sha1 avec tous les fichiers du "
        "répertoire ; "
        "Vérifier MD5/SHA1//Entrez un MD5/SHA1 pour le comparer à celui du fichier. ; "
        "Exclure ce type de fichier//Exclure ce type de fichier lors de la comparaison. ; "
        "Inclure ce type de fichier//Réinclure ce type de fichier lors de la comparaison. ;"
        " Ouvrir dans l'explorateur//Ouvrir dans l'explorateur Windows. ; "
        "AutoScroll//Désactivez pour gagner en rapidité lorsque le répertoire contient plei"
        "ns de (+ de 2500) petits fichiers.");
    QCOMPARE(all.chopped(3), golden);
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
    Scene scene;
    scene.window->show();
    const QString deep = u"l"_s + u"/a directory"_s.repeated(14);
    QCOMPARE(scene.run(u"put \"%1/\" ; type L \"%1\" ; path L"_s.arg(deep)), u'~' + deep);
    QCOMPARE(scene.window->size(), QSize(800, 600));
    QVERIFY(scene.window->minimumSizeHint().width() <= 800);
}

void TestWindow::can_be_read_by_everyone()
{
    Scene scene;
    for (MyTreeWidget* pane : {scene.first, scene.second}) {
        const QString number = pane == scene.first ? u" 1"_s : u" 2"_s;
        for (QObject* control : QObjectList{pane->path_edit, pane->progress, pane->reset_button,
                                            pane->stop_button, pane}) {
            QVERIFY(told(control, QAccessible::Name).endsWith(number));
        }
    }
    scene.run(u"lay l/a"_s);
    auto* row = static_cast<PaneRow*>(find_row(*scene.first, u"a"_s));
    const QList<std::tuple<engine::Mark, bool, bool>> looks = {
        {engine::Mark::Identical, false, false},
        {engine::Mark::NoPartner, false, true},
        {engine::Mark::Different, true, false}};
    row->setIcon(ColName, QIcon(u":/res/ok.png"_s));
    QCOMPARE(row->data(ColName, Qt::DecorationRole).value<QIcon>().availableSizes().size(), 1);
    for (const auto& [mark, bold, italic] : looks) {
        row->set_mark(mark);
        QCOMPARE(row->foreground(ColName).color(), QColor(Qt::black));
        QCOMPARE(row->background(ColPath), QBrush());
        const auto font = row->data(ColName, Qt::FontRole).value<QFont>();
        QVERIFY(font.bold() == bold && font.italic() == italic);
    }
    scene.first->doItemsLayout();
    auto* table = QAccessible::queryAccessibleInterface(scene.first)->tableInterface();
    QCOMPARE(table->cellAt(1, ColName)->text(QAccessible::Name), u"Différent => a"_s);

    FenCheck dialog(u"/a/"_s + QString(400, u'w'), nullptr);
    dialog.show();
    QVERIFY(dialog.width() < dialog.screen()->geometry().width());
    dialog.set_check_enabled(true);
    dialog.handle_res(u"other"_s);
    QCOMPARE(told(dialog.focusWidget(), QAccessible::Description), u"Il y a des erreurs."_s);
    QCOMPARE(dialog.findChild<QLineEdit*>()->actions().size(), 1); // the sign
}

void TestWindow::tab_follows_the_layout()
{
    const Scene scene;
    scene.window->show();
    QVERIFY(QTest::qWaitForWindowActive(scene.window.get()));
    const auto& [a, b] = std::pair(scene.first, scene.second);
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
