// What associating and dissociating leaves in the store and, on a freedesktop desktop, what the
// desktop's own tools make of it. Everything happens in a temporary home.

#include "dialogs/fenopt.h"
#include "dialogs/shell_association.h"
#include "platform/association_store.h"
#include "tests/support/test_dir.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const QString program = u"/opt/My Tools/tavrel"_s;
const QString verb = u"&Vérifier le checksum..."_s;

std::optional<QString> class_value(const QString& path)
{
    return platform::default_value(u"HKEY_CLASSES_ROOT\\"_s + path);
}

/// What a command prints, without the last line break.
QString output_of(const QString& command, const QStringList& arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(command, arguments);
    return process.waitForFinished() ? QString::fromUtf8(process.readAll()).trimmed() : u"hangs"_s;
}

QString default_of(const QString& type)
{
    return output_of(u"xdg-mime"_s, {u"query"_s, u"default"_s, type});
}

} // namespace

class TestAssociation : public QObject
{
    Q_OBJECT

  private slots:
    void initTestCase();
    void init();
    void store_holds_what_was_associated();
    void desktop_opens_checksum_files_only();
    void desktop_entry_quotes_any_path();
    void lists_of_others_survive();
    void installed_program_needs_no_entry();

  private:
    bool has_tools() const
    {
        return !QStandardPaths::findExecutable(u"xdg-mime"_s).isEmpty() &&
               !QStandardPaths::findExecutable(u"desktop-file-validate"_s).isEmpty() &&
               !QStandardPaths::findExecutable(u"gio"_s).isEmpty();
    }
    QString list() const { return QString::fromUtf8(home->read(u"config/mimeapps.list"_s)); }
    void add_other_program() const;

    std::unique_ptr<TestDir> home;
};

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

void TestAssociation::add_other_program() const
{
    home->createFile(u"system/applications/other.desktop"_s,
                     "[Desktop Entry]\nType=Application\nName=Other\nExec=/bin/true %F\n"
                     "MimeType=inode/directory;application/octet-stream;\n");
    output_of(u"update-desktop-database"_s, {home->at(u"system/applications"_s)});
}

void TestAssociation::store_holds_what_was_associated()
{
    FenOpt dialog(nullptr);
    const QString native = QDir::toNativeSeparators(QCoreApplication::applicationFilePath());
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
    for (int time = 0; time < 2; ++time) {
        QVERIFY(QMetaObject::invokeMethod(&dialog, "set_assoc"));
        for (const auto& [key, value] : expected.asKeyValueRange()) {
            QVERIFY2(class_value(key) == value, qUtf8Printable(key));
        }
    }
    // Only the verbs of all files and directories go; the extensions are emptied.
    platform::set_default_value(u"HKEY_CLASSES_ROOT\\*\\shell\\Tavrel test"_s, u"other"_s);
    for (int time = 0; time < 2; ++time) {
        QVERIFY(QMetaObject::invokeMethod(&dialog, "rem_assoc"));
        for (const auto& [key, value] : expected.asKeyValueRange()) {
            const bool goes = key.startsWith(u'*') || key.startsWith("Directory"_L1);
            const std::optional<QString> kept = key.startsWith(u'.') ? QString() : value;
            QVERIFY2(class_value(key) == (goes ? std::nullopt : kept), qUtf8Printable(key));
        }
    }
    QCOMPARE(class_value(u"*\\shell\\Tavrel test"_s), u"other"_s);
    platform::remove_group(u"HKEY_CLASSES_ROOT\\*\\shell"_s, u"Tavrel test"_s);
    QVERIFY(!class_value(u"*\\shell\\Tavrel test"_s));
}

void TestAssociation::desktop_opens_checksum_files_only()
{
    if (!has_tools()) {
        QSKIP("a tool of the desktop is missing");
    }
    const QStringList general = {u"inode/directory"_s, u"application/octet-stream"_s};
    for (const bool other : {false, true}) {
        other ? add_other_program() : void();
        for (int time = 0; time < 2; ++time) {
            shell_association::associate(QCoreApplication::applicationFilePath(), verb);
            for (const QString& type : {u"text/x-md5sum"_s, u"text/x-sha1sum"_s}) {
                QCOMPARE(default_of(type), u"tavrel.desktop"_s);
            }
            for (const QString& type : general) {
                QCOMPARE(default_of(type), other ? u"other.desktop"_s : QString());
                QCOMPARE(output_of(u"gio"_s, {u"mime"_s, type}).contains("tavrel"_L1), other);
            }
        }
        shell_association::dissociate();
        QVERIFY(!QFile::exists(home->at(u"config/mimeapps.list"_s)));
        QVERIFY(!QFile::exists(home->at(u"data/applications/tavrel.desktop"_s)));
        QCOMPARE(default_of(u"text/x-md5sum"_s), QString());
    }
    // Without the desktop's tools nothing is known of other programs, so nothing is offered.
    const QByteArray path = qgetenv("PATH");
    qputenv("PATH", home->at().toUtf8());
    shell_association::associate(QCoreApplication::applicationFilePath(), verb);
    qputenv("PATH", path);
    QVERIFY(!home->read(u"data/applications/tavrel.desktop"_s).contains("inode/directory"));
    QVERIFY(!list().contains("inode/directory"_L1));
}

/// The program that the entry names is started through the desktop and writes down its arguments.
void TestAssociation::desktop_entry_quotes_any_path()
{
    if (!has_tools()) {
        QSKIP("a tool of the desktop is missing");
    }
    for (const QString& folder :
         {u"my tools"_s, u"été"_s, u"a\"b'c`d"_s, u"a$HOME\\\\n\\t"_s, u"%1 %2 a"_s}) {
        const QString stand_in = home->createFile(
            folder + u"/tavrel"_s, "#!/bin/sh\nprintf '%s\\n' \"$@\" > \"$HOME/arguments\"\n");
        QFile::setPermissions(stand_in, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        const QString opened = home->createFile(u"a \"file\" of $1.md5"_s, "plain text\n");
        shell_association::associate(stand_in, verb);
        const QString entry = home->at(u"data/applications/tavrel.desktop"_s);
        QCOMPARE(output_of(u"desktop-file-validate"_s, {u"--warn-kde"_s, entry}), QString());
        if (folder.contains(u'%')) {
            // GLib looks the program up before it undoes the doubling of "%", so it cannot start.
            QVERIFY(home->read(u"data/applications/tavrel.desktop"_s).contains("%%1 %%2 a/tav"));
            continue;
        }
        QFile::remove(home->at(u"arguments"_s));
        output_of(u"gio"_s, {u"open"_s, opened});
        QTRY_COMPARE(QString::fromUtf8(home->read(u"arguments"_s)), opened + u'\n');
    }
}

void TestAssociation::lists_of_others_survive()
{
    if (!has_tools()) {
        QSKIP("a tool of the desktop is missing");
    }
    const QString ours = u"text/x-sha1sum=tavrel.desktop;\ntext/x-md5sum=tavrel.desktop;\n"_s;
    const QString head = u"# mine\n\n[Added Associations]\nimage/png=a.desktop;b.desktop\n\n"_s;
    const QString section = u"[Default Applications]\n"_s;
    const QString tail = u"image/png=a.desktop\n# text/x-md5sum=x.desktop\n[Other]\nx=y\n"_s;
    const QList<std::array<QString, 3>> cases = {
        {head + section + tail, head + section + ours + tail, head + section + tail},
        {section + u"text/x-md5sum=x.desktop;y.desktop\ntext/x-sha1sum = tavrel.desktop\n"_s,
         section + u"text/x-md5sum=tavrel.desktop;x.desktop;y.desktop;\n"
                   "text/x-sha1sum=tavrel.desktop;\n"_s,
         section + u"text/x-md5sum=x.desktop;y.desktop;\n"_s},
        {u"[Removed Associations]\ntext/x-md5sum=tavrel.desktop;\ntext/html=z.desktop;\n"_s,
         u"[Removed Associations]\ntext/html=z.desktop;\n"_s + section + ours,
         u"[Removed Associations]\ntext/html=z.desktop;\n"_s}};
    for (const auto& [before, associated, dissociated] : cases) {
        // People keep such files elsewhere and put a link in their place.
        home->createFile(u"dotfiles/mimeapps.list"_s, before.toUtf8());
        QFile::link(home->at(u"dotfiles/mimeapps.list"_s),
                    home->at(u"config"_s) + u"/mimeapps.list"_s);
        for (int time = 0; time < 2; ++time) {
            shell_association::associate(program, verb);
            QCOMPARE(list(), associated);
        }
        shell_association::dissociate();
        QCOMPARE(list(), dissociated);
        QVERIFY(QFileInfo(home->at(u"config"_s) + u"/mimeapps.list"_s).isSymLink());
    }
}

void TestAssociation::installed_program_needs_no_entry()
{
    if (!has_tools()) {
        QSKIP("a tool of the desktop is missing");
    }
    home->createFile(u"system/applications/tavrel.desktop"_s,
                     "[Desktop Entry]\nType=Application\nName=Tavrel\nExec=" +
                         QCoreApplication::applicationFilePath().toUtf8() + " %F\n");
    shell_association::associate(QCoreApplication::applicationFilePath(), verb);
    QCOMPARE(list(), u"[Default Applications]\ntext/x-sha1sum=tavrel.desktop;\n"
                     "text/x-md5sum=tavrel.desktop;\n"_s);
    QCOMPARE(home->entries(u"data"_s), QString());
}

QTEST_MAIN(TestAssociation)
#include "test_association.moc"
