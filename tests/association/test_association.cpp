// What associating and dissociating leaves in the store and, on a freedesktop desktop, what the
// desktop's own tools make of it. Everything happens in a temporary home.

#include "dialogs/fenopt.h"
#include "dialogs/shell_association.h"
#include "platform/association_store.h"
#include "tests/support/test_dir.h"

#include <QtTest>
#include <QtWidgets>

namespace {

QString output_of(const QString& command, const QStringList& arguments)
{
    QProcess process;
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
    void init();
    void store_holds_what_was_associated();
    void desktop_opens_checksum_files_only();

  private:
    const QString verb = u"&Vérifier le checksum..."_s;
    std::unique_ptr<TestDir> home;
};

void TestAssociation::init()
{
    const bool windows = QDir::separator() == u'\\';
    if (windows && !qEnvironmentVariableIsSet("TAVREL_TEST_REGISTRY")) {
        QSKIP("this registry is not the tests' own");
    }
    if (!windows && QStandardPaths::findExecutable(u"gio"_s).isEmpty()) {
        QSKIP("the tools of the desktop are missing");
    }
    home = std::make_unique<TestDir>();
    for (const char* name : {"HOME", "XDG_CONFIG_DIRS", "XDG_DATA_DIRS"}) {
        qputenv(name, home->at().toUtf8());
    }
    qputenv("XDG_CONFIG_HOME", home->createDir(u"config"_s).toUtf8());
    qputenv("XDG_DATA_HOME", home->createDir(u"data"_s).toUtf8());
    for (const char* name :
         {"XDG_CURRENT_DESKTOP", "DESKTOP_SESSION", "DBUS_SESSION_BUS_ADDRESS"}) {
        qunsetenv(name);
    }
}

void TestAssociation::store_holds_what_was_associated()
{
    FenOpt dialog(nullptr);
    const QString native = QDir::toNativeSeparators(QCoreApplication::applicationFilePath());
    const QString expected = uR"(.md5=Tavrel
.sha1=Tavrel
Tavrel=Checksum hash file
Tavrel\DefaultIcon=PROGRAM,0
Tavrel\shell=open
Tavrel\shell\open=VERB
Tavrel\shell\open\command="PROGRAM" "%1"
*\shell\Tavrel=Tavrel
*\shell\Tavrel\command="PROGRAM" "%1"
Directory\shell\Tavrel=Tavrel
Directory\shell\Tavrel\command="PROGRAM" "%1")"_s;
    for (const char* slot : {"set_assoc", "set_assoc", "rem_assoc", "rem_assoc"}) {
        QVERIFY(QMetaObject::invokeMethod(&dialog, slot));
        for (QString line : expected.split(u'\n')) {
            line.replace(u"PROGRAM"_s, native).replace(u"VERB"_s, verb);
            auto value = std::optional(line.section(u'=', 1));
            if (qstrcmp(slot, "rem_assoc") == 0) {
                // Only the verbs of all files and directories go; the extensions are emptied.
                const bool goes = line.startsWith(u'*') || line.startsWith(u'D');
                value = goes ? std::nullopt : line.startsWith(u'.') ? QString() : value;
            }
            const QString key = u"HKEY_CLASSES_ROOT\\"_s + line.section(u'=', 0, 0);
            QVERIFY2(platform::default_value(key) == value, qUtf8Printable(line));
        }
    }
}

void TestAssociation::desktop_opens_checksum_files_only()
{
    if (QDir::separator() == u'\\') { QSKIP("of other desktops"); }
    const QString program = home->createFile(
        u"a \"b'c`d $HOME\\\\n/tavrel"_s, "#!/bin/sh\nprintf '%s\\n' \"$@\" > \"$HOME/opened\"\n");
    QFile::setPermissions(program, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    const QString sums = home->createFile(u"a \"file\" of $1.md5"_s, "plain text\n");
    const QByteArray entry = "[Desktop Entry]\nType=Application\nName=Tavrel\nExec=";
    const QByteArray types = "MimeType=inode/directory;application/octet-stream;\n";
    for (const bool other : {false, true}) {
        if (other) {
            home->createFile(u"applications/o.desktop"_s, entry + "/bin/true %F\n" + types);
            output_of(u"update-desktop-database"_s, {home->at(u"applications"_s)});
        }
        shell_association::associate(program, verb);
        const QString made = home->at(u"data/applications/tavrel.desktop"_s);
        QCOMPARE(output_of(u"desktop-file-validate"_s, {made}), QString());
        QCOMPARE(default_of(u"text/x-md5sum"_s) + default_of(u"text/x-sha1sum"_s),
                 u"tavrel.desktop"_s.repeated(2));
        for (const QString& type : {u"inode/directory"_s, u"application/octet-stream"_s}) {
            QCOMPARE(default_of(type), other ? u"o.desktop"_s : QString());
        }
        QFile::remove(home->at(u"opened"_s));
        output_of(u"gio"_s, {u"open"_s, sums});
        QTRY_COMPARE(QString::fromUtf8(home->read(u"opened"_s)), sums + u'\n');

        shell_association::dissociate();
        QCOMPARE(home->entries(u"config"_s), u"Brennick"_s);
        QCOMPARE(home->entries(u"data/applications"_s).remove(u"mimeinfo.cache"_s), QString());
        QCOMPARE(default_of(u"text/x-md5sum"_s), QString());
    }
    // A program that the system has installed needs no second entry, and lists that people keep
    // elsewhere, with a link in their place, stay as they are but for the types of ours.
    const QString self = QCoreApplication::applicationFilePath();
    home->createFile(u"applications/tavrel.desktop"_s,
                     entry + "/opt/open %F\nTryExec=" + self.toUtf8() + '\n');
    const QByteArray before = "# mine\n\n[Added Associations]\nimage/png=a.desktop;b.desktop\n\n"
                              "[Default Applications]\nimage/png=a.desktop\n"
                              "text/x-md5sum=x.desktop;y.desktop;\n# text/x-sha1sum=x\n"
                              "[Other]\nx=y\n";
    const QString kept = home->createFile(u"dotfiles/mimeapps.list"_s, before);
    QFile::link(kept, home->at(u"config/mimeapps.list"_s));
    for (int time = 0; time < 2; ++time) {
        shell_association::associate(self, verb);
        QVERIFY(home->read(u"dotfiles/mimeapps.list"_s)
                    .contains("\ntext/x-md5sum=tavrel.desktop;x.desktop;y.desktop;\n"));
    }
    QVERIFY(!home->entries(u"data/applications"_s).contains("tavrel"_L1));
    shell_association::dissociate();
    QCOMPARE(home->read(u"dotfiles/mimeapps.list"_s), before);
    QCOMPARE(QFile::symLinkTarget(home->at(u"config/mimeapps.list"_s)), kept);
}

QTEST_MAIN(TestAssociation)
#include "test_association.moc"
