// The results, verify and options dialogs by themselves: what they show, accept and send.

#include "dialogs/fencheck.h"
#include "dialogs/fenopt.h"
#include "dialogs/fenres.h"
#include "rows/pane_row.h"
#include "tests/test_dir.h"

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

/// Fills a tree with rows given as "path mark", a mark being the first letter of its name. A path
/// that begins with the one before it and a slash is a row below that.
void fill(QTreeWidget& tree, const QString& rows)
{
    tree.setColumnCount(ColumnCount);
    QTreeWidgetItem* parent = nullptr;
    for (const QString& text : words(rows)) {
        const QString path = text.section(u' ', 0, 0);
        while (parent && !path.startsWith(path_of(*parent) + u'/')) {
            parent = parent->parent();
        }
        auto* row = new PaneRow({path, path, 1, false}, PaneRow::Origin::Listed);
        const QList<Mark> marks = {Mark::None, Mark::Identical, Mark::Different, Mark::NoPartner,
                                   Mark::Cleared};
        row->set_mark(marks.value(QStringLiteral("-IDNC").indexOf(text.back())));
        parent ? parent->addChild(row) : tree.addTopLevelItem(row);
        parent = row;
    }
}

QString lines_of(const QListView& view)
{
    QStringList lines;
    for (int i = 0; i < view.model()->rowCount(); ++i) {
        lines.append(view.model()->index(i, 0).data().toString());
    }
    return lines.join(u", "_s);
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

/// Ends a dialog: by the title bar, the Escape key or the button of that text.
void leave(QDialog& dialog, const QString& way)
{
    if (way == "title bar"_L1) {
        dialog.close();
    } else if (way == "Escape"_L1) {
        QTest::keyClick(&dialog, Qt::Key_Escape);
    } else {
        QTest::mouseClick(with_text<QPushButton>(dialog, way), Qt::LeftButton);
    }
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

class TestDialogs : public QObject
{
    Q_OBJECT

  private slots:
    void results_list_the_marks_data();
    void results_list_the_marks();
    void long_paths_can_be_read_to_their_end();

    void check_accepts_only_digests();
    void check_runs_once_and_judges_data();
    void check_runs_once_and_judges();
    void check_survives_impatient_keys();
    void check_announces_its_end();
    void check_shows_any_path_as_it_is();

    void options_are_shown_and_sent_in_order();
    void language_and_exclusions_are_sent_as_given();
    void options_are_kept_to_themselves();
};

void TestDialogs::results_list_the_marks_data()
{
    QTest::addColumn<QString>("first");
    QTest::addColumn<QString>("second");
    QTest::addColumn<QString>("different");
    QTest::addColumn<QString>("missing");
    const auto row = [](const char* title, const QString& first, const QString& second,
                        const QString& different, const QString& missing) {
        QTest::newRow(title) << first << second << different << missing;
    };
    row("nothing to tell", u"/a/same I, /a/other -"_s, u"/b/same I, /b/old C"_s, {}, {});
    row("empty panes", {}, {}, {}, {});
    row("two differ, one is missing on the right", u"/a/1 D, /a/2 N, /a/3 D"_s, {}, u"/a/1, /a/3"_s,
        u"/a/2 --> , ---------------"_s);
    row("only differences, seen from the left", u"/a/1 D"_s, u"/b/1 D"_s, u"/a/1"_s, {});
    row("red on the right alone", {}, u"/b/1 D"_s, {}, {});
    row("missing on the left", u"/a/1 I"_s, u"/b/2 N, /b/3 N"_s, {},
        u"---------------, /b/2 <-- , /b/3 <-- "_s);
    row("collapsed branches", u"/a/d -, /a/d/e -, /a/d/e/1 D, /a/d/2 N, /a/3 D"_s,
        u"/b/d -, /b/d/4 N"_s, u"/a/d/e/1, /a/3"_s, u"/a/d/2 --> , ---------------, /b/d/4 <-- "_s);
}

void TestDialogs::results_list_the_marks()
{
    QFETCH(QString, first);
    QFETCH(QString, second);
    QFETCH(QString, different);
    QFETCH(QString, missing);
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

    // What is copied is the dialog's own, whatever became of panes and views.
    left.clear();
    views[0]->model()->removeRows(0, views[0]->model()->rowCount());
    QTest::mouseClick(with_text<QPushButton>(dialog, u"Copier"_s), Qt::LeftButton);
    const QString head =
        different.isEmpty() ? QString() : u"Fichiers différents :\n"_s + different + u", "_s;
    const QString separator = missing.isEmpty() ? u"---------------"_s : missing;
    const QString expected = head + u"Fichiers manquants :\n"_s + separator + u'\n';
    QCOMPARE(QGuiApplication::clipboard()->text(), QString(expected).replace(u", "_s, u"\n"_s));
}

void TestDialogs::long_paths_can_be_read_to_their_end()
{
    QTreeWidget left;
    QTreeWidget right;
    const QString long_path = u"/a/"_s + QString(300, u'w');
    fill(left, u"/a/1 D, %1 D, /a/2 D"_s.arg(long_path));
    const FenRes dialog(nullptr, &left, &right);
    const QListView* view = dialog.findChild<QListView*>();
    QVERIFY(view->sizeHintForColumn(0) >= view->fontMetrics().horizontalAdvance(long_path));
    QCOMPARE(view->sizeHintForIndex(view->model()->index(0, 0)).width(),
             view->sizeHintForIndex(view->model()->index(1, 0)).width());
}

void TestDialogs::check_accepts_only_digests()
{
    FenCheck dialog(u"/a/file"_s, nullptr);
    const auto* button = with_text<QPushButton>(dialog, u"Vérifier"_s);
    QVERIFY(!button->isEnabled());
    for (const QString& entry : {md5, sha1, sha1.toUpper(), "  \t"_L1 + md5 + u' '}) {
        enter(dialog, u"no digest"_s);
        QVERIFY(!button->isEnabled());
        enter(dialog, entry);
        QVERIFY2(button->isEnabled(), qUtf8Printable(entry));
    }
    const QStringList refused = {md5.first(16) + u' ' + md5.last(15), // a blank within
                                 u' ' + md5.first(30) + u' ',
                                 md5.first(31) + u'g',
                                 md5.first(31) + u'٣',
                                 QString(),
                                 u"a"_s,
                                 md5.first(31),
                                 md5 + u'a',
                                 sha1.first(39),
                                 sha1 + u'a',
                                 md5 + md5};
    for (const QString& entry : refused) {
        enter(dialog, md5);
        QVERIFY(button->isEnabled());
        enter(dialog, entry);
        QVERIFY2(!button->isEnabled(), qUtf8Printable(entry));
    }
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

void TestDialogs::check_announces_its_end()
{
    const QList<std::pair<QString, int>> ways = {
        {u"Annuler"_s, 2}, {u"title bar"_s, 1}, {u"Escape"_s, 1}, {u"Ok"_s, 1}};
    for (const auto& each : ways) {
        const QString& way = each.first;
        FenCheck dialog(u"/a/file"_s, nullptr);
        if (way == "Ok"_L1) {
            dialog.set_check_enabled(true);
            dialog.handle_res(md5);
        }
        const QSignalSpy announced(&dialog, &FenCheck::finalise);
        QMetaObject::invokeMethod(
            &dialog, [&] { leave(dialog, way); }, Qt::QueuedConnection);
        dialog.exec();
        QVERIFY(!dialog.isVisible());
        QVERIFY2(announced.size() == each.second, qPrintable(way));
    }
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

void TestDialogs::options_are_shown_and_sent_in_order()
{
    const QList<std::pair<QString, void (FenOpt::*)(bool)>> boxes = {
        {u"Nom"_s, &FenOpt::set_name},
        {u"Taille"_s, &FenOpt::set_size},
        {u"Chemin"_s, &FenOpt::set_path},
        {u"Sauvegarder les répertoires courants en quittant."_s, &FenOpt::set_rem_dir},
        {u"Sauvegarder l'agencement des vues en quittant."_s, &FenOpt::set_rem_view},
        {u"Résultats tout en majuscule"_s, &FenOpt::set_upper}};
    for (qsizetype i = 0; i < boxes.size(); ++i) {
        FenOpt dialog(nullptr);
        auto* box = with_text<QCheckBox>(dialog, boxes[i].first);
        QVERIFY(!box->isChecked());
        (dialog.*boxes[i].second)(true);
        QVERIFY(box->isChecked());
        (dialog.*boxes[i].second)(false);
        QTest::keyClick(box, Qt::Key_Space);

        QString sent;
        connect(&dialog, &FenOpt::opt, this, [&](bool a, bool b, bool c, bool d, bool e, bool f) {
            sent += u"%1%2%3%4%5%6 "_s.arg(a).arg(b).arg(c).arg(d).arg(e).arg(f);
        });
        connect(&dialog, &FenOpt::lang, this, [&](const QString& code) { sent += code; });
        connect(&dialog, &FenOpt::exclusion, this,
                [&](const QString& text) { sent += u" [%1]"_s.arg(text); });
        leave(dialog, u"Sauver"_s);
        QCOMPARE(sent, u"000000 fr []"_s.replace(i, 1, u"1"_s));
    }
}

void TestDialogs::language_and_exclusions_are_sent_as_given()
{
    FenOpt dialog(nullptr);
    const auto* always = with_text<QCheckBox>(dialog, u"MD5/SHA1"_s);
    QVERIFY(always->isChecked() && !always->isEnabled());
    auto* edit = dialog.findChild<QLineEdit*>();
    dialog.set_exclus({u"jpg"_s, u"tmp"_s});
    QCOMPARE(edit->text(), u"*.jpg;*.tmp"_s);

    const QSignalSpy language(&dialog, &FenOpt::lang);
    const QSignalSpy exclusion(&dialog, &FenOpt::exclusion);
    edit->setText(u" *.a;; b ;"_s);
    for (const QString& code : {u"en"_s, u"fr"_s, u"en"_s, u"de"_s, u"en"_s, QString()}) {
        dialog.set_lang(code);
        const bool english = code == "en"_L1;
        QCOMPARE(dialog.findChild<QComboBox*>()->currentText(),
                 english ? u"English"_s : u"Français"_s);
        leave(dialog, u"Sauver"_s);
        QCOMPARE(language.constLast().constFirst().toString(), english ? u"en"_s : u"fr"_s);
        QCOMPARE(exclusion.constLast().constFirst().toString(), u" *.a;; b ;"_s);
    }
}

void TestDialogs::options_are_kept_to_themselves()
{
    for (const QString& way : {u"Annuler"_s, u"title bar"_s, u"Escape"_s, u"Enter"_s}) {
        FenOpt dialog(nullptr);
        dialog.show();
        QVERIFY(QTest::qWaitForWindowActive(&dialog));
        const QSignalSpy sent(&dialog, &FenOpt::opt);
        const bool saves = way == "Enter"_L1;
        if (saves) {
            dialog.findChild<QLineEdit*>()->setFocus();
            QTest::keyClick(dialog.focusWidget(), Qt::Key_Return);
        } else {
            leave(dialog, way);
        }
        QVERIFY(!dialog.isVisible());
        QVERIFY2(sent.size() == (saves ? 1 : 0), qPrintable(way));
    }
}

QTEST_MAIN(TestDialogs)
#include "test_dialogs.moc"
