// The dialogs by themselves: what they show, accept and send.

#include "dialogs/fencheck.h"
#include "dialogs/fenopt.h"
#include "dialogs/fenres.h"
#include "dialogs/report_box.h"
#include "rows/pane_row.h"
#include "tests/support/modal_driver.h"

#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
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
    for (const QString& text : rows.split(u", "_s, Qt::SkipEmptyParts)) {
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

QPushButton* button(const QWidget& dialog, const QString& text)
{
    for (auto* each : dialog.findChildren<QPushButton*>()) {
        if (each->text() == text) {
            return each;
        }
    }
    qFatal("no button \"%s\"", qUtf8Printable(text));
}

/// Leaves a dialog by the title bar, the Escape key or the button of that text.
void leave(QDialog& dialog, const QString& way)
{
    way == "title bar"_L1 ? void(dialog.close())
    : way == "Escape"_L1  ? QTest::keyClick(&dialog, Qt::Key_Escape)
                          : QTest::mouseClick(button(dialog, way), Qt::LeftButton);
}

} // namespace

class TestDialogs : public QObject
{
    Q_OBJECT

  private slots:
    void results_list_the_marks();
    void check_locks_judges_and_ends();
    void options_are_shown_and_sent_in_order();
    void options_are_kept_to_themselves();
    void reports_of_any_length();
};

void TestDialogs::results_list_the_marks()
{
    const QList<std::array<QString, 4>> cases = {
        {u"/a/same I, /a/other -"_s, u"/b/same I, /b/old C"_s, u""_s, u""_s},
        {u"/a/1 D, /a/2 N, /a/3 D"_s, u""_s, u"/a/1, /a/3"_s, u"/a/2 --> , ---------------"_s},
        {u"/a/1 D"_s, u"/b/1 D"_s, u"/a/1"_s, u""_s},
        {u""_s, u"/b/1 D"_s, u""_s, u""_s},
        {u"/a/1 I"_s, u"/b/2 N, /b/3 N"_s, u""_s, u"---------------, /b/2 <-- , /b/3 <-- "_s},
        {u"/a/d -, /a/d/e -, /a/d/e/1 D, /a/d/2 N, /a/3 D"_s, u"/b/d -, /b/d/4 N"_s,
         u"/a/d/e/1, /a/3"_s, u"/a/d/2 --> , ---------------, /b/d/4 <-- "_s}};
    for (const auto& [first, second, different, missing] : cases) {
        QTreeWidget left;
        QTreeWidget right;
        fill(left, first);
        fill(right, second);
        const FenRes dialog(nullptr, &left, &right);
        const QList<QListView*> views = dialog.findChildren<QListView*>();
        QCOMPARE(lines_of(*views[0]), different);
        QCOMPARE(lines_of(*views[1]), missing);
        const bool fine = different.isEmpty() && missing.isEmpty();
        const auto* verdict = dialog.findChild<QLabel*>();
        QCOMPARE(verdict->text(),
                 fine ? u"Résultat : Tout est OK !"_s : u"Résultat : Il y a des erreurs."_s);
        QVERIFY(verdict->styleSheet().contains(fine ? "color : green"_L1 : "color : red"_L1));

        // What is copied is the dialog's own, whatever became of panes and views.
        left.clear();
        views[0]->model()->removeRows(0, views[0]->model()->rowCount());
        QTest::mouseClick(button(dialog, u"Copier"_s), Qt::LeftButton);
        const QString head =
            different.isEmpty() ? QString() : u"Fichiers différents :\n"_s + different + u", "_s;
        const QString separator = missing.isEmpty() ? u"---------------"_s : missing;
        QString expected = head + u"Fichiers manquants :\n"_s + separator + u'\n';
        QCOMPARE(QGuiApplication::clipboard()->text(), expected.replace(u", "_s, u"\n"_s));
    }
}

void TestDialogs::check_locks_judges_and_ends()
{
    const QString md5 = u"d41d8cd98f00b204e9800998ecf8427e"_s;
    for (const QString& way : {u"Annuler"_s, u"title bar"_s, u"Escape"_s}) {
        const QString path = u"/a/<b>/"_s + QString(400, u'w');
        FenCheck dialog(path, nullptr);
        dialog.show();
        QVERIFY(dialog.width() < dialog.screen()->geometry().width());
        auto* line = dialog.findChild<QLineEdit*>();
        const QSignalSpy asked(&dialog, &FenCheck::calcul);
        const QSignalSpy ended(&dialog, &FenCheck::finalise);
        QTest::keyClicks(line, u"  "_s + md5.toUpper());
        QTest::keyClick(line, Qt::Key_Return);
        QTest::keyClick(&dialog, Qt::Key_Return); // an impatient one
        QCOMPARE(asked.count(), 1);
        QVERIFY(!line->isEnabled() && line->text() == md5.toUpper());

        dialog.progress(40);
        dialog.set_check_enabled(true);
        dialog.set_progress_visible(false);
        dialog.handle_res(way == "Annuler"_L1 ? md5 : u"other"_s);
        const QString colour = way == "Annuler"_L1 ? u"green"_s : u"rgb(220, 70, 70)"_s;
        QVERIFY(line->styleSheet().contains(u"background-color: "_s + colour));
        QCOMPARE(line->actions().size(), 1); // the sign
        leave(dialog, way);
        QVERIFY(!dialog.isVisible() && !ended.isEmpty());
    }
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
        dialog.set_exclus({u"jpg"_s, u"tmp"_s});
        dialog.set_lang(i % 2 == 0 ? u"en"_s : u"de"_s);
        (dialog.*boxes[i].second)(true);
        for (const auto* box : dialog.findChildren<QCheckBox*>()) {
            QCOMPARE(box->isChecked(),
                     box->text() == boxes[i].first || box->text() == "MD5/SHA1"_L1);
        }
        QString sent;
        connect(&dialog, &FenOpt::opt, this, [&](bool a, bool b, bool c, bool d, bool e, bool f) {
            sent += u"%1%2%3%4%5%6 "_s.arg(a).arg(b).arg(c).arg(d).arg(e).arg(f);
        });
        connect(&dialog, &FenOpt::lang, this, [&](const QString& code) { sent += code; });
        connect(&dialog, &FenOpt::exclusion, this,
                [&](const QString& text) { sent += u" [%1]"_s.arg(text); });
        leave(dialog, u"Sauver"_s);
        const QString code = i % 2 == 0 ? u"en"_s : u"fr"_s;
        QCOMPARE(sent, u"000000 "_s.replace(i, 1, u"1"_s) + code + u" [*.jpg;*.tmp]"_s);
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

void TestDialogs::reports_of_any_length()
{
    for (const qsizetype count : {3, 60, 1'000'000}) {
        ReportLines lines{count, 1, [](qsizetype i) {
                              return ReportLine{u"Manquant  => %1"_s, u"<b>%1&"_s.arg(i)};
                          }};
        bool listed = false;
        const ModalDriver<QMessageBox> driver([&](QMessageBox& box) {
            const auto* view = box.findChild<QListView*>();
            listed = view != nullptr;
            if (view) {
                QCOMPARE(view->model()->rowCount(), static_cast<int>(count));
                QCOMPARE(view->model()->index(2, 0).data(), u"Manquant  => <b>2&"_s);
            } else {
                QCOMPARE(box.text().count(u"=> &lt;b&gt;"_s), count);
            }
            QVERIFY(box.height() < box.screen()->availableGeometry().height());
        });
        show_report({QMessageBox::Critical, u"Ko"_s, u"head<br />%1"_s, lines, {}});
        QVERIFY(driver.met());
        QCOMPARE(listed, count > 3);
    }
}

QTEST_MAIN(TestDialogs)
#include "test_dialogs.moc"
