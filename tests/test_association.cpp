// What associating and dissociating leaves in the store and, on a freedesktop desktop, what the
// desktop's own tools make of it. Everything happens in a temporary home.

#include "dialogs/fenopt.h"
#include "dialogs/shell_association.h"
#include "platform/association_store.h"
#include "tests/test_dir.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTest>
#include <QTranslator>

#include <algorithm>
#include <iterator>

using namespace Qt::StringLiterals;

namespace {

const QString program = u"/opt/My Tools/tavrel"_s;
const QString verb = u"&Vérifier le checksum..."_s;

std::optional<QString> class_value(const QString& path)
{
    return platform::default_value(u"HKEY_CLASSES_ROOT\\"_s + path);
}

/// What a command prints to both of its outputs, without the last line break.
QString output_of(const QString& command, const QStringList& arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(command, arguments);
    if (!process.waitForFinished()) {
        return u"did not finish"_s;
    }
    return QString::fromUtf8(process.readAll()).trimmed();
}

QString default_of(const QString& type)
{
    return output_of(u"xdg-mime"_s, {u"query"_s, u"default"_s, type});
}

QString type_of(const QString& path)
{
    const QString info =
        output_of(u"gio"_s, {u"info"_s, u"-a"_s, u"standard::content-type"_s, path});
    return info.section(u"content-type: "_s, -1).trimmed();
}

QString handlers_of(const QString& type)
{
    return output_of(u"gio"_s, {u"mime"_s, type});
}

/// The English text of the verb alone.
class EnglishVerb final : public QTranslator
{
  public:
    bool isEmpty() const override { return false; }
    QString translate(const char* context, const char* source, const char*, int) const override
    {
        const bool is_verb = QByteArray(context) == "FenOpt" && QString::fromUtf8(source) == verb;
        return is_verb ? u"&Verify checksum..."_s : QString();
    }
};

} // namespace

class TestAssociation : public QObject
{
    Q_OBJECT

  private slots:
    void initTestCase();
    void init();
    void cleanup();
    void store_holds_what_was_associated();
    void dissociating_alone_makes_nothing_more();
    void verb_speaks_the_language_of_the_moment();
    void checksum_files_open_in_the_program();
    void desktop_entry_quotes_any_path_data();
    void desktop_entry_quotes_any_path();
    void foreign_lines_survive_data();
    void foreign_lines_survive();
    void defaults_of_others_stay();

  private:
    QString list() const { return QString::fromUtf8(home->read(u"config/mimeapps.list"_s)); }

    std::unique_ptr<TestDir> home;
};

#define REQUIRE_DESKTOP_TOOLS()                                                                    \
    for (const auto& tool : {u"xdg-mime"_s, u"gio"_s, u"desktop-file-validate"_s,                  \
                             u"update-mime-database"_s, u"update-desktop-database"_s}) {           \
        if (QStandardPaths::findExecutable(tool).isEmpty())                                        \
            QSKIP("a tool of the desktop is missing");                                             \
    }

void TestAssociation::initTestCase()
{
    if (QSysInfo::productType() == "windows"_L1 &&
        !qEnvironmentVariableIsSet("TAVREL_TEST_REGISTRY")) {
        QSKIP("this registry is not the tests' own");
    }
}

void TestAssociation::init()
{
    home = std::make_unique<TestDir>();
    const auto folder = [&](const QString& name) { return home->createDir(name).toUtf8(); };
    qputenv("HOME", home->at().toUtf8());
    qputenv("XDG_CONFIG_HOME", folder(u"config"_s));
    qputenv("XDG_CONFIG_DIRS", folder(u"xdg"_s));
    qputenv("XDG_DATA_HOME", folder(u"data"_s));
    qputenv("XDG_DATA_DIRS", folder(u"system"_s));
    qputenv("LC_ALL", "C.UTF-8"); // the tools answer in English
    for (const char* name : {"XDG_CURRENT_DESKTOP", "DESKTOP_SESSION", "KDE_FULL_SESSION",
                             "GNOME_DESKTOP_SESSION_ID", "DBUS_SESSION_BUS_ADDRESS"}) {
        qunsetenv(name);
    }
}

void TestAssociation::cleanup()
{
    shell_association::dissociate();
}

void TestAssociation::store_holds_what_was_associated()
{
    const QString native = QDir::toNativeSeparators(program);
    const QString command = u'"' + native + u"\" \"%1\""_s;
    const QMap<QString, QString> expected = {
        {u".md5"_s, u"Tavrel"_s},
        {u".sha1"_s, u"Tavrel"_s},
        {u"Tavrel"_s, u"Checksum hash file"_s},
        {u"Tavrel\\DefaultIcon"_s, native + u",0"_s},
        {u"Tavrel\\shell"_s, u"open"_s},
        {u"Tavrel\\shell\\open"_s, verb},
        {u"Tavrel\\shell\\open\\command"_s, command},
        {u"*\\shell\\Tavrel"_s, u"Tavrel"_s},
        {u"*\\shell\\Tavrel\\command"_s, command},
        {u"Directory\\shell\\Tavrel"_s, u"Tavrel"_s},
        {u"Directory\\shell\\Tavrel\\command"_s, command},
    };
    const QStringList parents = {u"*"_s, u"*\\shell"_s, u"Directory"_s, u"Directory\\shell"_s};
    QList<std::optional<QString>> before;
    std::transform(parents.begin(), parents.end(), std::back_inserter(before), class_value);

    for (const char* time : {"first time", "second time"}) {
        shell_association::associate(program, verb);
        for (const auto& [key, value] : expected.asKeyValueRange()) {
            QVERIFY2(class_value(key) == value, qUtf8Printable(key + u' ' + QLatin1String(time)));
        }
    }
    for (qsizetype i = 0; i < parents.size(); ++i) {
        QVERIFY2(class_value(parents[i]) == before[i], qUtf8Printable(parents[i]));
    }

    // Only the verbs of all files and directories go; the extensions are emptied.
    platform::set_default_value(u"HKEY_CLASSES_ROOT\\*\\shell\\Tavrel test"_s, u"other"_s);
    for (int i = 0; i < 2; ++i) {
        shell_association::dissociate();
        for (const auto& [key, value] : expected.asKeyValueRange()) {
            const bool goes = key.startsWith(u'*') || key.startsWith("Directory"_L1);
            const bool emptied = key.startsWith(u'.');
            QVERIFY2(class_value(key) == (goes      ? std::nullopt
                                          : emptied ? std::optional(QString())
                                                    : std::optional(value)),
                     qUtf8Printable(key));
        }
    }
    QCOMPARE(class_value(u"*\\shell\\Tavrel test"_s), u"other"_s);
    platform::remove_group(u"HKEY_CLASSES_ROOT\\*\\shell"_s, u"Tavrel test"_s);
    QVERIFY(!class_value(u"*\\shell\\Tavrel test"_s));
}

void TestAssociation::dissociating_alone_makes_nothing_more()
{
    const bool type_was_there = class_value(u"Tavrel"_s).has_value();
    shell_association::dissociate();

    QCOMPARE(class_value(u".md5"_s), QString());
    QCOMPARE(class_value(u".sha1"_s), QString());
    QCOMPARE(class_value(u"Tavrel"_s).has_value(), type_was_there);
    QVERIFY(!QFile::exists(home->at(u"config/mimeapps.list"_s)));
}

void TestAssociation::verb_speaks_the_language_of_the_moment()
{
    FenOpt dialog(nullptr);
    QVERIFY(QMetaObject::invokeMethod(&dialog, "set_assoc"));
    QCOMPARE(class_value(u"Tavrel\\shell\\open"_s), verb);

    EnglishVerb english;
    QCoreApplication::installTranslator(&english);
    QVERIFY(QMetaObject::invokeMethod(&dialog, "set_assoc"));
    QCOMPARE(class_value(u"Tavrel\\shell\\open"_s), u"&Verify checksum..."_s);
    const QString running = QDir::toNativeSeparators(QCoreApplication::applicationFilePath());
    QCOMPARE(class_value(u"Tavrel\\DefaultIcon"_s), running + u",0"_s);

    QVERIFY(QMetaObject::invokeMethod(&dialog, "rem_assoc"));
    QCOMPARE(class_value(u".md5"_s), QString());
}

void TestAssociation::checksum_files_open_in_the_program()
{
    REQUIRE_DESKTOP_TOOLS();
    const QString md5_file = home->createFile(u"sums.md5"_s, "plain text\n");
    const QString sha1_file = home->createFile(u"sums.SHA1"_s, "plain text\n");
    const QString entry = QCoreApplication::applicationFilePath();

    for (int i = 0; i < 2; ++i) {
        shell_association::associate(entry, verb);
        const QString types[] = {type_of(md5_file), type_of(sha1_file)};
        QVERIFY(types[0] != types[1]);
        for (const QString& type : types) {
            QCOMPARE(default_of(type), u"tavrel.desktop"_s);
            QVERIFY(handlers_of(type).startsWith(
                u"Default application for “%1”: tavrel.desktop"_s.arg(type)));
        }
        for (const QString& type : {u"inode/directory"_s, u"application/octet-stream"_s}) {
            QVERIFY2(handlers_of(type).contains("tavrel.desktop"_L1), qUtf8Printable(type));
        }
    }

    const QString icon = home->at(u"data"_s) + u"/icons/hicolor/128x128/apps/tavrel.png"_s;
    QCOMPARE(QFile::exists(icon), QFile::exists(u":/res/logo.png"_s));

    shell_association::dissociate();
    QVERIFY(type_of(md5_file) != "text/x-md5sum"_L1);
    QVERIFY(!QFile::exists(icon));
    QCOMPARE(default_of(u"text/x-md5sum"_s), QString());
    QVERIFY(!handlers_of(u"inode/directory"_s).contains("tavrel.desktop"_L1));
    QVERIFY(!list().contains("tavrel"_L1));
    QVERIFY(!QFile::exists(home->at(u"data/applications/tavrel.desktop"_s)));
}

void TestAssociation::desktop_entry_quotes_any_path_data()
{
    QTest::addColumn<QString>("folder");
    QTest::newRow("blanks") << u"my tools"_s;
    QTest::newRow("accents") << u"été"_s;
    QTest::newRow("quotes") << u"a\"b'c`d"_s;
    QTest::newRow("dollar and backslash") << u"a$HOME\\\\n\\t"_s;
    QTest::newRow("what looks like a placeholder") << u"%1 %2 a"_s;
}

/// The program that the entry names is started through the desktop and writes down its arguments.
void TestAssociation::desktop_entry_quotes_any_path()
{
    REQUIRE_DESKTOP_TOOLS();
    QFETCH(QString, folder);
    const QString stand_in = home->createFile(
        folder + u"/tavrel"_s, "#!/bin/sh\nprintf '%s\\n' \"$@\" > \"$HOME/arguments\"\n");
    QVERIFY(
        QFile::setPermissions(stand_in, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    const QString opened = home->createFile(u"a \"file\" of $1.md5"_s, "plain text\n");

    shell_association::associate(stand_in, verb);

    const QString entry = home->at(u"data/applications/tavrel.desktop"_s);
    QCOMPARE(output_of(u"desktop-file-validate"_s, {u"--warn-kde"_s, entry}), QString());
    if (folder.contains(u'%')) {
        // GLib looks the program up before it undoes the doubling of "%", so it cannot start it.
        QVERIFY(
            home->read(u"data/applications/tavrel.desktop"_s).contains("%%1 %%2 a/tavrel\" %F"));
        return;
    }
    output_of(u"gio"_s, {u"open"_s, opened});
    QTRY_COMPARE(QString::fromUtf8(home->read(u"arguments"_s)), opened + u'\n');
}

void TestAssociation::foreign_lines_survive_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("associated");
    QTest::addColumn<QString>("dissociated");

    const QString ours = u"text/x-sha1sum=tavrel.desktop;\ntext/x-md5sum=tavrel.desktop;\n"_s;
    QTest::newRow("no file") << QString() << u"[Default Applications]\n"_s + ours
                             << u"[Default Applications]\n"_s;
    QTest::newRow("other types, comments, other sections, no last line break")
        << u"# mine\n\n[Added Associations]\nimage/png=a.desktop;b.desktop\n\n"
           "[Default Applications]\nimage/png=a.desktop\n# text/x-md5sum=x.desktop\n[Other]\nx=y"_s
        << u"# mine\n\n[Added Associations]\nimage/png=a.desktop;b.desktop\n\n"
           "[Default Applications]\n"_s +
               ours + u"image/png=a.desktop\n# text/x-md5sum=x.desktop\n[Other]\nx=y\n"_s
        << u"# mine\n\n[Added Associations]\nimage/png=a.desktop;b.desktop\n\n"
           "[Default Applications]\nimage/png=a.desktop\n# text/x-md5sum=x.desktop\n"
           "[Other]\nx=y\n"_s;
    QTest::newRow("another default of our types")
        << u"[Default Applications]\ntext/x-md5sum=x.desktop;y.desktop\n"
           "text/x-sha1sum = tavrel.desktop\n"_s
        << u"[Default Applications]\ntext/x-md5sum=tavrel.desktop;x.desktop;y.desktop;\n"
           "text/x-sha1sum=tavrel.desktop;\n"_s
        << u"[Default Applications]\ntext/x-md5sum=x.desktop;y.desktop;\n"_s;
    QTest::newRow("removed before, chosen by the user since")
        << u"[Removed Associations]\ntext/x-md5sum=tavrel.desktop;\ntext/html=z.desktop;\n"
           "[Added Associations]\nimage/png=tavrel.desktop;a.desktop;\n[Default Applications]\n"_s
        << u"[Removed Associations]\ntext/html=z.desktop;\n"
           "[Added Associations]\nimage/png=tavrel.desktop;a.desktop;\n[Default Applications]\n"_s +
               ours
        << u"[Removed Associations]\ntext/html=z.desktop;\n"
           "[Added Associations]\nimage/png=a.desktop;\n[Default Applications]\n"_s;
}

void TestAssociation::foreign_lines_survive()
{
    REQUIRE_DESKTOP_TOOLS();
    QFETCH(QString, before);
    // People keep such files elsewhere and put a link in their place.
    if (!before.isEmpty()) {
        home->createFile(u"dotfiles/mimeapps.list"_s, before.toUtf8());
        QVERIFY(QFile::link(home->at(u"dotfiles/mimeapps.list"_s),
                            home->at(u"config"_s) + u"/mimeapps.list"_s));
    }

    shell_association::associate(program, verb);
    QTEST(list(), "associated");
    shell_association::associate(program, verb);
    QTEST(list(), "associated");
    shell_association::dissociate();
    QTEST(list(), "dissociated");

    QCOMPARE(QFileInfo(home->at(u"config"_s) + u"/mimeapps.list"_s).isSymLink(), !before.isEmpty());
}

void TestAssociation::defaults_of_others_stay()
{
    REQUIRE_DESKTOP_TOOLS();
    home->createFile(u"system/applications/other.desktop"_s,
                     "[Desktop Entry]\nType=Application\nName=Other\nExec=/bin/true %F\n"
                     "MimeType=inode/directory;application/octet-stream;\n");
    output_of(u"update-desktop-database"_s, {home->at(u"system/applications"_s)});
    const QStringList types = {u"inode/directory"_s, u"application/octet-stream"_s};
    for (const QString& type : types) {
        QCOMPARE(default_of(type), u"other.desktop"_s);
    }

    shell_association::associate(QCoreApplication::applicationFilePath(), verb);

    for (const QString& type : types) {
        QCOMPARE(default_of(type), u"other.desktop"_s);
        QVERIFY(handlers_of(type).contains("tavrel.desktop"_L1));
    }
}

QTEST_MAIN(TestAssociation)
#include "test_association.moc"
