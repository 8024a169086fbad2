// The results, verify and options dialogs by themselves: what they show, accept and send.

#include "dialogs/fencheck.h"
#include "dialogs/fenopt.h"
#include "dialogs/fenres.h"
#include "tree/pane_row.h"

#include <QAction>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QProgressBar>
#include <QPushButton>
#include <QScreen>
#include <QSignalSpy>
#include <QTest>
#include <QTreeWidget>

using namespace Qt::StringLiterals;
using engine::Mark;

namespace {

struct Row
{
    QString path;
    Mark mark;
    QList<Row> children = {};
};

PaneRow* make_item(const Row& row)
{
    auto* item =
        new PaneRow({row.path, row.path, 1, !row.children.isEmpty()}, PaneRow::Origin::Listed);
    item->set_mark(row.mark);
    for (const Row& child : row.children) {
        item->addChild(make_item(child));
    }
    return item;
}

void fill(QTreeWidget& tree, const QList<Row>& rows)
{
    tree.setColumnCount(ColumnCount);
    for (const Row& row : rows) {
        tree.addTopLevelItem(make_item(row));
    }
}

QStringList lines_of(const QListView& view)
{
    QStringList lines;
    for (int i = 0; i < view.model()->rowCount(); ++i) {
        lines.append(view.model()->index(i, 0).data().toString());
    }
    return lines;
}

template<typename Widget>
Widget* with_text(const QWidget& dialog, const QString& text)
{
    for (Widget* widget : dialog.findChildren<Widget*>()) {
        if (widget->text() == text) {
            return widget;
        }
    }
    qFatal("no widget \"%s\"", qUtf8Printable(text));
}

template<typename Widget>
void click(const QWidget& dialog, const QString& text)
{
    QTest::mouseClick(with_text<Widget>(dialog, text), Qt::LeftButton);
}

/// The only label with a context menu.
QLabel* result_label(const FenCheck& dialog)
{
    for (QLabel* label : dialog.findChildren<QLabel*>()) {
        if (!label->actions().isEmpty()) {
            return label;
        }
    }
    qFatal("no result label");
}

void enter(const FenCheck& dialog, const QString& text)
{
    auto* line = dialog.findChild<QLineEdit*>();
    line->selectAll();
    QGuiApplication::clipboard()->setText(text);
    line->paste();
}

const QString md5 = u"d41d8cd98f00b204e9800998ecf8427e"_s;
const QString sha1 = u"da39a3ee5e6b4b0d3255bfef95601890afd80709"_s;

} // namespace

Q_DECLARE_METATYPE(QList<Row>)

class TestDialogs : public QObject
{
    Q_OBJECT

  private slots:
    void results_list_the_marks_data();
    void results_list_the_marks();
    void results_copy_their_own_lists();
    void long_paths_can_be_read_to_their_end();

    void check_accepts_only_digests_data();
    void check_accepts_only_digests();
    void check_runs_once_and_judges_data();
    void check_runs_once_and_judges();
    void check_survives_impatient_keys();
    void check_announces_its_end_data();
    void check_announces_its_end();
    void check_shows_any_path_as_it_is();

    void options_are_sent_in_order_data();
    void options_are_sent_in_order();
    void options_are_shown_and_sent_as_given();
    void options_are_kept_to_themselves_data();
    void options_are_kept_to_themselves();
};

void TestDialogs::results_list_the_marks_data()
{
    QTest::addColumn<QList<Row>>("first");
    QTest::addColumn<QList<Row>>("second");
    QTest::addColumn<QStringList>("different");
    QTest::addColumn<QStringList>("missing");
    QTest::addColumn<QString>("copied");

    const QString line = u"---------------"_s;
    QTest::newRow("nothing to tell")
        << QList<Row>{{u"/a/same"_s, Mark::Identical}, {u"/a/other"_s, Mark::None}}
        << QList<Row>{{u"/b/same"_s, Mark::Identical}, {u"/b/old"_s, Mark::Cleared}}
        << QStringList() << QStringList() << u"Fichiers manquants :\n---------------\n"_s;
    QTest::newRow("empty panes") << QList<Row>() << QList<Row>() << QStringList() << QStringList()
                                 << u"Fichiers manquants :\n---------------\n"_s;
    QTest::newRow("two differ, one is missing on the right")
        << QList<Row>{{u"/a/1"_s, Mark::Different},
                      {u"/a/2"_s, Mark::NoPartner},
                      {u"/a/3"_s, Mark::Different}}
        << QList<Row>() << QStringList{u"/a/1"_s, u"/a/3"_s} << QStringList{u"/a/2 --> "_s, line}
        << u"Fichiers différents :\n/a/1\n/a/3\nFichiers manquants :\n/a/2 --> \n---------------\n"_s;
    QTest::newRow("only differences, seen from the left")
        << QList<Row>{{u"/a/1"_s, Mark::Different}} << QList<Row>{{u"/b/1"_s, Mark::Different}}
        << QStringList{u"/a/1"_s} << QStringList()
        << u"Fichiers différents :\n/a/1\nFichiers manquants :\n---------------\n"_s;
    QTest::newRow("red on the right alone")
        << QList<Row>() << QList<Row>{{u"/b/1"_s, Mark::Different}} << QStringList()
        << QStringList() << u"Fichiers manquants :\n---------------\n"_s;
    QTest::newRow("missing on the left")
        << QList<Row>{{u"/a/1"_s, Mark::Identical}}
        << QList<Row>{{u"/b/2"_s, Mark::NoPartner}, {u"/b/3"_s, Mark::NoPartner}} << QStringList()
        << QStringList{line, u"/b/2 <-- "_s, u"/b/3 <-- "_s}
        << u"Fichiers manquants :\n---------------\n/b/2 <-- \n/b/3 <-- \n"_s;
    QTest::newRow("collapsed branches")
        << QList<Row>{{u"/a/d"_s,
                       Mark::None,
                       {{u"/a/d/e"_s, Mark::None, {{u"/a/d/e/1"_s, Mark::Different}}},
                        {u"/a/d/2"_s, Mark::NoPartner}}},
                      {u"/a/3"_s, Mark::Different}}
        << QList<Row>{{u"/b/d"_s, Mark::None, {{u"/b/d/4"_s, Mark::NoPartner}}}}
        << QStringList{u"/a/d/e/1"_s, u"/a/3"_s}
        << QStringList{u"/a/d/2 --> "_s, line, u"/b/d/4 <-- "_s}
        << u"Fichiers différents :\n/a/d/e/1\n/a/3\n"
           "Fichiers manquants :\n/a/d/2 --> \n---------------\n/b/d/4 <-- \n"_s;
}

void TestDialogs::results_list_the_marks()
{
    QFETCH(QList<Row>, first);
    QFETCH(QList<Row>, second);
    QFETCH(QStringList, different);
    QFETCH(QStringList, missing);
    QTreeWidget left;
    QTreeWidget right;
    fill(left, first);
    fill(right, second);

    const FenRes dialog(nullptr, &left, &right);

    const QList<QListView*> views = dialog.findChildren<QListView*>();
    QCOMPARE(views.size(), 2);
    QCOMPARE(lines_of(*views[0]), different);
    QCOMPARE(lines_of(*views[1]), missing);
    const bool fine = different.isEmpty() && missing.isEmpty();
    const auto* verdict = with_text<QLabel>(dialog, fine ? u"Résultat : Tout est OK !"_s
                                                         : u"Résultat : Il y a des erreurs."_s);
    QVERIFY(verdict->styleSheet().contains(fine ? "background-color : green"_L1
                                                : "background-color : red"_L1));

    click<QPushButton>(dialog, u"Copier"_s);
    QTEST(QGuiApplication::clipboard()->text(), "copied");
}

void TestDialogs::results_copy_their_own_lists()
{
    QTreeWidget left;
    QTreeWidget right;
    fill(left, {{u"/a/1"_s, Mark::Different}});
    FenRes dialog(nullptr, &left, &right);
    dialog.findChildren<QListView*>()[0]->model()->setData(
        dialog.findChildren<QListView*>()[0]->model()->index(0, 0), u"edited"_s);
    left.clear();

    dialog.ccc();

    QCOMPARE(QGuiApplication::clipboard()->text(),
             u"Fichiers différents :\n/a/1\nFichiers manquants :\n---------------\n"_s);
}

void TestDialogs::long_paths_can_be_read_to_their_end()
{
    QTreeWidget left;
    QTreeWidget right;
    const QString long_path = u"/a/"_s + QString(300, u'w');
    fill(
        left,
        {{u"/a/1"_s, Mark::Different}, {long_path, Mark::Different}, {u"/a/2"_s, Mark::Different}});
    const FenRes dialog(nullptr, &left, &right);
    const QListView* view = dialog.findChild<QListView*>();

    QVERIFY(view->sizeHintForColumn(0) >= view->fontMetrics().horizontalAdvance(long_path));
    QCOMPARE(view->sizeHintForIndex(view->model()->index(0, 0)).width(),
             view->sizeHintForIndex(view->model()->index(1, 0)).width());
}

void TestDialogs::check_accepts_only_digests_data()
{
    QTest::addColumn<QString>("entry");
    QTest::addColumn<bool>("accepted");

    for (const int size : {0, 1, 31, 33, 39, 41, 64}) {
        QTest::addRow("%d digits", size) << QString(size, u'a') << false;
    }
    QTest::newRow("MD5") << md5 << true;
    QTest::newRow("SHA1") << sha1 << true;
    QTest::newRow("capitals") << sha1.toUpper() << true;
    QTest::newRow("blanks around") << "  \t"_L1 + md5 + u' ' << true;
    QTest::newRow("blank within") << md5.first(16) + u' ' + md5.last(15) << false;
    QTest::newRow("32 with blanks, 30 without") << u' ' + md5.first(30) + u' ' << false;
    QTest::newRow("letter beyond f") << md5.first(31) + u'g' << false;
    QTest::newRow("digit of another script") << md5.first(31) + u'٣' << false;
}

void TestDialogs::check_accepts_only_digests()
{
    QFETCH(QString, entry);
    FenCheck dialog(u"/a/file"_s, nullptr);
    const auto* button = with_text<QPushButton>(dialog, u"Vérifier"_s);
    QVERIFY(!button->isEnabled());

    enter(dialog, entry);
    QTEST(button->isEnabled(), "accepted");
    enter(dialog, md5);
    QVERIFY(button->isEnabled());
    enter(dialog, u"no digest"_s);
    QVERIFY(!button->isEnabled());

    dialog.findChild<QLineEdit*>()->setText(md5);
    QVERIFY2(!button->isEnabled(), "only what the user enters counts");
}

void TestDialogs::check_runs_once_and_judges_data()
{
    QTest::addColumn<QString>("entry");
    QTest::addColumn<QString>("result");
    QTest::addColumn<bool>("same");

    QTest::newRow("equal") << md5 << md5 << true;
    QTest::newRow("entered in capitals, with blanks") << u' ' + sha1.toUpper() << sha1 << true;
    QTest::newRow("shown in capitals") << sha1 << sha1.toUpper() << true;
    QTest::newRow("other digest") << md5 << QString(md5).replace(u'd', u'e') << false;
    QTest::newRow("longer digest") << md5 << md5 + md5.first(8) << false;
    QTest::newRow("error") << md5 << u"Impossible d'ouvrir le fichier /a/<b>file</b>"_s << false;
    QTest::newRow("nothing") << md5 << QString() << false;
}

void TestDialogs::check_runs_once_and_judges()
{
    QFETCH(QString, entry);
    QFETCH(QString, result);
    QFETCH(bool, same);
    FenCheck dialog(u"/a/file"_s, nullptr);
    dialog.show();
    auto* button = with_text<QPushButton>(dialog, u"Vérifier"_s);
    auto* line = dialog.findChild<QLineEdit*>();
    const auto* bar = dialog.findChild<QProgressBar*>();
    const QLabel* label = result_label(dialog);
    QVERIFY(!bar->isVisible() && !label->isVisible());
    const QSignalSpy started(&dialog, &FenCheck::calcul);

    enter(dialog, entry);
    QTest::mouseClick(button, Qt::LeftButton);
    QCOMPARE(started.size(), 1);
    QCOMPARE(dialog.entry_text(), entry.trimmed());
    QVERIFY(!line->isEnabled() && !button->isEnabled());

    dialog.progress(43);
    QVERIFY(bar->isVisible());
    QCOMPARE(bar->value(), 43);

    dialog.set_check_enabled(true);
    dialog.set_progress_visible(false);
    dialog.handle_res(result);
    QVERIFY(!bar->isVisible() && label->isVisible() && !line->isEnabled());
    QCOMPARE(label->text(), result);
    const QString colours = same ? u"background-color: green; color: white"_s
                                 : u"background-color: rgb(220, 70, 70); color: white"_s;
    QCOMPARE(label->styleSheet(), colours);
    QCOMPARE(line->styleSheet(), colours);

    QGuiApplication::clipboard()->setText(u"before"_s);
    label->actions().constFirst()->trigger();
    QCOMPARE(QGuiApplication::clipboard()->text(), result);

    QCOMPARE(button->text(), u"Ok"_s);
    QTest::mouseClick(button, Qt::LeftButton);
    QVERIFY(!dialog.isVisible());
    QCOMPARE(started.size(), 1);
}

void TestDialogs::check_survives_impatient_keys()
{
    FenCheck dialog(u"/a/file"_s, nullptr);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    const QSignalSpy started(&dialog, &FenCheck::calcul);

    QTest::keyClick(dialog.focusWidget(), Qt::Key_Return);
    QCOMPARE(started.size(), 0);
    enter(dialog, md5);
    for (int i = 0; i < 3; ++i) {
        QTest::keyClick(dialog.focusWidget() ? dialog.focusWidget() : &dialog, Qt::Key_Return);
    }
    QCOMPARE(started.size(), 1);
    QVERIFY2(dialog.isVisible(), "Enter must not cancel what it started");
}

void TestDialogs::check_announces_its_end_data()
{
    QTest::addColumn<QString>("way");
    QTest::addColumn<int>("announced");

    QTest::newRow("cancel") << u"Annuler"_s << 2;
    QTest::newRow("title bar") << u"title bar"_s << 1;
    QTest::newRow("Escape") << u"Escape"_s << 1;
    QTest::newRow("ok") << u"Ok"_s << 1;
}

void TestDialogs::check_announces_its_end()
{
    QFETCH(QString, way);
    FenCheck dialog(u"/a/file"_s, nullptr);
    const QSignalSpy announced(&dialog, &FenCheck::finalise);
    QMetaObject::invokeMethod(
        &dialog,
        [&] {
            if (way == "title bar"_L1) {
                dialog.close();
            } else if (way == "Escape"_L1) {
                QTest::keyClick(&dialog, Qt::Key_Escape);
            } else {
                if (way == "Ok"_L1) {
                    dialog.set_check_enabled(true);
                    dialog.handle_res(md5);
                }
                click<QPushButton>(dialog, way);
            }
        },
        Qt::QueuedConnection);

    dialog.exec();

    QVERIFY(!dialog.isVisible());
    QTEST(static_cast<int>(announced.size()), "announced");
}

void TestDialogs::check_shows_any_path_as_it_is()
{
    const QString path = u"/<b>a</b> & b/"_s + u"un répertoire/"_s.repeated(200) + u"<i>c</i>"_s;
    FenCheck dialog(path, nullptr);
    dialog.handle_res(u"Impossible d'ouvrir le fichier "_s + path);
    dialog.show();

    QCOMPARE(with_text<QLabel>(dialog, path)->textFormat(), Qt::PlainText);
    QCOMPARE(result_label(dialog)->textFormat(), Qt::PlainText);
    QVERIFY(dialog.width() < dialog.screen()->geometry().width());
}

void TestDialogs::options_are_sent_in_order_data()
{
    QTest::addColumn<QString>("box");
    QTest::addColumn<qsizetype>("position");

    const QStringList boxes = {u"Nom"_s,
                               u"Taille"_s,
                               u"Chemin"_s,
                               u"Sauvegarder les répertoires courants en quittant."_s,
                               u"Sauvegarder l'agencement des vues en quittant."_s,
                               u"Résultats tout en majuscule"_s};
    QTest::newRow("none") << QString() << qsizetype(-1);
    for (qsizetype i = 0; i < boxes.size(); ++i) {
        QTest::addRow("%d", static_cast<int>(i)) << boxes[i] << i;
    }
}

void TestDialogs::options_are_sent_in_order()
{
    QFETCH(QString, box);
    QFETCH(qsizetype, position);
    FenOpt dialog(nullptr);
    if (position >= 0) {
        QTest::keyClick(with_text<QCheckBox>(dialog, box), Qt::Key_Space);
    }
    QStringList order;
    QList<bool> flags;
    connect(&dialog, &FenOpt::opt, this, [&](bool a, bool b, bool c, bool d, bool e, bool f) {
        order.append(u"opt"_s);
        flags = {a, b, c, d, e, f};
    });
    connect(&dialog, &FenOpt::lang, this, [&](const QString& code) { order.append(code); });
    connect(&dialog, &FenOpt::exclusion, this,
            [&](const QString& text) { order.append(u'[' + text + u']'); });

    click<QPushButton>(dialog, u"Sauver"_s);

    QCOMPARE(order, QStringList({u"opt"_s, u"fr"_s, u"[]"_s}));
    QCOMPARE(flags.count(true), position >= 0 ? 1 : 0);
    QCOMPARE(flags.indexOf(true), position);
}

void TestDialogs::options_are_shown_and_sent_as_given()
{
    FenOpt dialog(nullptr);
    const QList<std::pair<QString, void (FenOpt::*)(bool)>> setters = {
        {u"Nom"_s, &FenOpt::set_name},
        {u"Taille"_s, &FenOpt::set_size},
        {u"Chemin"_s, &FenOpt::set_path},
        {u"Résultats tout en majuscule"_s, &FenOpt::set_upper},
        {u"Sauvegarder les répertoires courants en quittant."_s, &FenOpt::set_rem_dir},
        {u"Sauvegarder l'agencement des vues en quittant."_s, &FenOpt::set_rem_view}};
    for (const auto& [text, setter] : setters) {
        const auto* box = with_text<QCheckBox>(dialog, text);
        QVERIFY(!box->isChecked());
        (dialog.*setter)(true);
        QVERIFY2(box->isChecked(), qUtf8Printable(text));
    }
    const auto* always = with_text<QCheckBox>(dialog, u"MD5/SHA1"_s);
    QVERIFY(always->isChecked() && !always->isEnabled());

    auto* edit = dialog.findChild<QLineEdit*>();
    dialog.set_exclus({u"jpg"_s, u"tmp"_s});
    QCOMPARE(edit->text(), u"*.jpg;*.tmp"_s);
    dialog.set_exclus({});
    QCOMPARE(edit->text(), QString());

    const QSignalSpy language(&dialog, &FenOpt::lang);
    const QSignalSpy exclusion(&dialog, &FenOpt::exclusion);
    edit->setText(u" *.a;; b ;"_s);
    for (const QString& code : {u"en"_s, u"fr"_s, u"de"_s, QString()}) {
        dialog.set_lang(code);
        QCOMPARE(dialog.findChild<QComboBox*>()->currentText(),
                 code == "en"_L1 ? u"English"_s : u"Français"_s);
        click<QPushButton>(dialog, u"Sauver"_s);
        QCOMPARE(language.constLast().constFirst().toString(), code == "en"_L1 ? u"en"_s : u"fr"_s);
        QCOMPARE(exclusion.constLast().constFirst().toString(), u" *.a;; b ;"_s);
    }
}

void TestDialogs::options_are_kept_to_themselves_data()
{
    QTest::addColumn<QString>("way");
    QTest::addColumn<int>("sent");

    QTest::newRow("cancel") << u"Annuler"_s << 0;
    QTest::newRow("title bar") << u"title bar"_s << 0;
    QTest::newRow("Escape") << u"Escape"_s << 0;
    QTest::newRow("Enter saves") << u"Enter"_s << 1;
}

void TestDialogs::options_are_kept_to_themselves()
{
    QFETCH(QString, way);
    FenOpt dialog(nullptr);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    const QSignalSpy options(&dialog, &FenOpt::opt);

    if (way == "title bar"_L1) {
        dialog.close();
    } else if (way == "Escape"_L1) {
        QTest::keyClick(&dialog, Qt::Key_Escape);
    } else if (way == "Enter"_L1) {
        dialog.findChild<QLineEdit*>()->setFocus();
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Return);
    } else {
        click<QPushButton>(dialog, way);
    }

    QVERIFY(!dialog.isVisible());
    QTEST(static_cast<int>(options.size()), "sent");
}

QTEST_MAIN(TestDialogs)
#include "test_dialogs.moc"
