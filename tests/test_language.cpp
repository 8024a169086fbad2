// The two languages: the switch with its question, the About box, the restart of the real program,
// and that nothing of the interface stays behind in French.

#include "dialogs/fencheck.h"
#include "dialogs/fenopt.h"
#include "dialogs/fenres.h"
#include "engine/product.h"
#include "tests/catalogue_source.h"
#include "tests/modal_driver.h"
#include "tests/pane_fixture.h"

#include <QComboBox>
#include <QFileInfo>
#include <QMessageBox>
#include <QProcess>
#include <QScopeGuard>
#include <QSet>
#include <QSettings>
#include <QTest>
#include <QTranslator>

using namespace Qt::StringLiterals;

namespace {

// Made whole before any test changes the working directory: a path may lack the drive.
const QString catalogue = QFileInfo(QString::fromLocal8Bit(TAVREL_CATALOGUE)).absoluteFilePath();
const QString plugins = QFileInfo(QString::fromLocal8Bit(TAVREL_TEST_PLUGINS)).absoluteFilePath();

/// All texts that a window shows, speaks or offers, those of its actions and menus included.
QSet<QString> texts_of(const QWidget& window)
{
    QSet<QString> texts;
    for (const QAction* action : window.findChildren<QAction*>()) {
        texts << action->text() << action->statusTip() << action->toolTip();
    }
    QList<const QWidget*> widgets = {&window};
    for (const QWidget* widget : window.findChildren<QWidget*>()) {
        widgets.append(widget);
    }
    for (const QWidget* widget : widgets) {
        texts << widget->windowTitle() << widget->toolTip() << widget->accessibleName();
        for (const char* property : {"text", "title", "currentMessage", "placeholderText"}) {
            texts << widget->property(property).toString();
        }
        if (const auto* combo = qobject_cast<const QComboBox*>(widget)) {
            for (int i = 0; i < combo->count(); ++i) {
                texts << combo->itemText(i);
            }
        }
        if (const auto* tree = qobject_cast<const QTreeWidget*>(widget)) {
            for (int column = 0; column < tree->columnCount(); ++column) {
                texts << tree->headerItem()->text(column);
                for (int row = 0; row < tree->topLevelItemCount(); ++row) {
                    texts << tree->topLevelItem(row)->text(column);
                }
            }
        }
    }
    return texts;
}

/// The texts of the catalogue's French side that stand in what was seen, if English has another.
QStringList french_in(const QSet<QString>& seen)
{
    const QList<Message> messages = read_messages(catalogue);
    QSet<QString> english;
    for (const Message& message : messages) {
        english.unite(QSet<QString>(message.forms.begin(), message.forms.end()));
    }
    QStringList found;
    for (const Message& message : messages) {
        if (english.contains(message.source)) {
            continue;
        }
        // Texts that go on after a number, a path or a time are found by how they begin.
        const QString start = message.source.section(u'%', 0, 0);
        for (const QString& text : seen) {
            if (text == message.source || (start.size() > 4 && text.contains(start))) {
                found.append(message.key());
                break;
            }
        }
    }
    return found;
}

/// A window whose translator is the application's, as in the program.
class LanguageFixture : public WindowFixture
{
  public:
    explicit LanguageFixture(bool english)
    {
        if (english && !translator.load(QString::fromLatin1(product::english_catalogue))) {
            qFatal("no English catalogue");
        }
        QCoreApplication::installTranslator(&translator);
        rebuild();
        window->translator = &translator;
    }
    ~LanguageFixture() { QCoreApplication::removeTranslator(&translator); }

    /// Switches the language, and answers the texts of the question, or nothing if none came.
    QStringList switch_to(const QString& code)
    {
        QStringList texts;
        const ModalDriver<QMessageBox> driver([&](QMessageBox& box) {
            texts = {box.windowTitle(), box.text()};
            for (const QAbstractButton* button : box.buttons()) {
                texts.append(button->text());
            }
            QTest::mouseClick(box.buttons().last(), Qt::LeftButton);
        });
        window->setLang(code);
        return driver.met() ? texts : QStringList();
    }

    QTranslator translator;
};

QString saved_language()
{
    return QSettings(u"Tavrel.ini"_s, QSettings::IniFormat).value(u"MainWindow/lang"_s).toString();
}

} // namespace

class TestLanguage : public QObject
{
    Q_OBJECT

  private slots:
    void switching();
    void about_box();
    void whole_interface_data();
    void whole_interface();
    void restart();
};

void TestLanguage::switching()
{
    LanguageFixture fixture(false);
    QCOMPARE(fixture.switch_to(QString()), QStringList());
    const QStringList english = {u"Restart"_s,
                                 u"You need to restart in order to apply languages changes.\n"
                                 "Do you want to restart now ?"_s,
                                 u"Yes"_s, u"No"_s};
    const QStringList french = {
        u"Redémarrage"_s,
        u"Un Redémarrage est nécessaire pour appliquer les changements de langues.\n"
        "Voulez-vous redémarrer maintenant ?"_s,
        u"Oui"_s, u"Non"_s};
    QCOMPARE(fixture.switch_to(u"en"_s), english);
    QCOMPARE(fixture.switch_to(u"en"_s), QStringList());
    // "No" leaves all as it is until the program ends by itself.
    QVERIFY(fixture.action(u"Comparer"_s));
    QCOMPARE(saved_language(), QString());
    QCOMPARE(fixture.switch_to(u"fr"_s), french);
    QCOMPARE(fixture.switch_to(u"en"_s), english);
    fixture.window->writeSettings();
    QCOMPARE(saved_language(), u"en"_s);
}

void TestLanguage::about_box()
{
    const QString text = u"<strong>Tavrel v1.42</strong><br />Copyright 2026 Brennick<br /><hr />"
                         "%1<br /><a href=\"%2\">%2</a>"_s;
    const QImage logo = QPixmap(u":/res/logo.png"_s).toImage();
    for (const bool english : {false, true}) {
        LanguageFixture fixture(english);
        const ModalDriver<QMessageBox> driver([&](QMessageBox& box) {
            QCOMPARE(box.windowTitle(), english ? u"About Tavrel"_s : u"A Propos de Tavrel"_s);
            QCOMPARE(box.text(),
                     english
                         ? text.arg(u"For more information:"_s, u"https://tavrel.example/home"_s)
                         : text.arg(u"Pour plus d'information :"_s, u"https://tavrel.example/"_s));
            QCOMPARE(box.standardButtons(), QMessageBox::Ok);
            QVERIFY(!box.parent());
            QCOMPARE(box.iconPixmap().toImage(), logo);
            QCOMPARE(box.windowIcon().availableSizes(), QList<QSize>{logo.size()});
        });
        fixture.action(english ? u"About..."_s : u"A Propos..."_s)->trigger();
        QVERIFY(driver.met());
    }
}

void TestLanguage::whole_interface_data()
{
    QTest::addColumn<bool>("english");
    QTest::newRow("fr") << false;
    QTest::newRow("en") << true;
}

// In French the walk must come upon most of the catalogue, in English upon nothing of it.
void TestLanguage::whole_interface()
{
    QFETCH(bool, english);

    LanguageFixture fixture(english);
    TestDir& dir = fixture.working_dir;
    dir.createFile(u"one/a.txt"_s, "same");
    dir.createFile(u"one/b.txt"_s, QByteArray(1500, 'b'));
    dir.createFile(u"two/a.txt"_s, "same");
    dir.createFile(u"two/b.txt"_s, QByteArray(2000000, 'c'));
    dir.createFile(u"two/c.txt"_s, "alone");
    MyTreeWidget& pane = *fixture.first;
    pane.changeModel(dir.at(u"one"_s));
    fixture.second->changeModel(dir.at(u"two"_s));
    fixture.window->show();

    QSet<QString> seen;
    const auto look_at = [&](QWidget& window) { seen.unite(texts_of(window)); };

    // A comparison, its end and its result.
    connect(fixture.first, &MyTreeWidget::processing, this,
            [&](const QString& text) { seen.insert(text); });
    fixture.action(english ? u"Compare All"_s : u"Comparer Tout"_s)->trigger();
    QVERIFY(fixture.wait_idle());
    QTRY_VERIFY(fixture.window->findChild<FenRes*>());
    look_at(*fixture.window);
    fixture.window->findChild<FenRes*>()->close();

    // The dialogs.
    pane.setCurrentItem(find_row(pane, u"a.txt"_s));
    const ModalDriver<FenCheck> check([&](FenCheck& dialog) { look_at(dialog); });
    pane.act_check->trigger();
    QVERIFY(check.met());
    const ModalDriver<FenOpt> options([&](FenOpt& dialog) { look_at(dialog); });
    fixture.action(u"Options..."_s)->trigger();
    QVERIFY(options.met());

    // The verifier's three answers.
    const QList<QByteArray> listings = {reference_digest("same").toLatin1() + "  a.txt\n", "",
                                        QByteArray(32, '0') + "  a.txt\n" + QByteArray(32, '0') +
                                            "  missing.txt\n"};
    for (const QByteArray& listing : listings) {
        dir.createFile(u"one/sum.md5"_s, listing);
        pane.Reset();
        const ModalDriver<QMessageBox> verdict([&](QMessageBox& box) { look_at(box); });
        activate(pane, u"sum.md5"_s);
        QTRY_VERIFY(verdict.met());
        QVERIFY(fixture.wait_idle());
    }

    const QStringList french = french_in(seen);
    const QString shown = french.join(u'\n');
    if (english) {
        QCOMPARE(shown, QString());
        QVERIFY(seen.contains(u"2 Kb"_s) || seen.contains(u"1 Kb"_s));
        QVERIFY(seen.contains(u"2 Mb"_s));
    } else {
        QVERIFY2(french.size() >= 75, qUtf8Printable(shown));
    }
}

void TestLanguage::restart()
{
    const TestDir dir;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"QT_PLUGIN_PATH"_s, plugins);
    environment.insert(u"QT_QPA_GENERIC_PLUGINS"_s, u"restart_driver"_s);
    QProcess program;
    program.setProcessEnvironment(environment);
    program.setWorkingDirectory(dir.path());
    program.setProcessChannelMode(QProcess::ForwardedChannels);
    const auto end = qScopeGuard([&] { program.kill(); });
    program.start(QString::fromLocal8Bit(TAVREL_PROGRAM), {u"some path"_s});
    QVERIFY(program.waitForFinished(60000));
    QCOMPARE(program.exitStatus(), QProcess::NormalExit);
    QCOMPARE(program.exitCode(), 0);
    QVERIFY(dir.read(u"question"_s).startsWith("You need to restart"));

    // The second one is on its own: without arguments, in English, with what the first one saved.
    QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(dir.filePath(u"second ended"_s)), 60000);
    QCOMPARE(dir.read(u"second"_s), QByteArray("\n&File"));
    QSettings found(dir.filePath(u"settings found"_s), QSettings::IniFormat);
    QCOMPARE(found.value(u"MainWindow/lang"_s).toString(), u"en"_s);
    QVERIFY(found.value(u"App/ccpath"_s).toBool());
    // The first one went before the dialog could hand out the exclusions, and did not quit as
    // others do, which would have saved once more.
    QCOMPARE(found.value(u"App/exclu"_s).toString(), QString());
    QVERIFY(QFile::exists(dir.filePath(u"second quits"_s)));
    QVERIFY(!QFile::exists(dir.filePath(u"first quits"_s)));
}

QTEST_MAIN(TestLanguage)
#include "test_language.moc"
