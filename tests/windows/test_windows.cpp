// What only Windows has: drives with letters and labels, back slashes, the file manager's quoting,
// the registry, code pages, long paths.
//
// packaging/windows/test runs this on a machine of its own and says so in the environment:
//   TAVREL_TEST_DRIVE     letter and colon of a drive without a label that tests may fill
//   TAVREL_TEST_LABELLED  selector entry of a drive that has a label
//   TAVREL_TEST_REGISTRY  set when registry and system folders may be changed

#include "dialogs/fenopt.h"
#include "platform/volumes.h"
#include "tests/support/scene.h"

#include <QProcess>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

/// The default values that the system's own tool reads from keys below HKEY_CLASSES_ROOT and all
/// that is below these, by key.
QMap<QString, QString> registry_defaults(const QStringList& keys)
{
    QMap<QString, QString> values;
    for (const QString& key : keys) {
        QProcess reg;
        reg.start(u"reg"_s, {u"query"_s, u"HKCR\\"_s + key, u"/s"_s});
        reg.waitForFinished();
        QString current;
        const QString output = QString::fromLocal8Bit(reg.readAllStandardOutput());
        for (const QString& line : output.split(u"\r\n"_s)) {
            if (line.startsWith("HKEY_CLASSES_ROOT\\"_L1)) {
                current = line.section(u'\\', 1);
            } else if (line.trimmed().startsWith(u'(') && line.contains("REG_SZ"_L1)) {
                values[current] = line.section(u"REG_SZ"_s, 1).trimmed();
            }
        }
    }
    return values;
}

} // namespace

class TestWindows : public QObject
{
    Q_OBJECT

  private slots:
    void letters_and_labels();
    void texts_of_drives();
    void paths_data();
    void paths();
    void drive_root_has_a_checksum_file();
    void explorer_is_started_data();
    void explorer_is_started();
    void registry_holds_the_association();
};

void TestWindows::letters_and_labels()
{
    const Scene scene;
    QComboBox& combo = *scene.first->drive_combo;
    QCOMPARE(combo.count(), QDir::drives().size());
    for (const QFileInfo& drive : QDir::drives()) {
        const QString label = scene.first->volume_label(drive.filePath());
        const QString letter = u'(' + drive.filePath().left(2) + u')';
        QVERIFY(combo.findText(label.isEmpty() ? letter : label + u' ' + letter) >= 0);
    }
    const QString labelled = qEnvironmentVariable("TAVREL_TEST_LABELLED");
    if (labelled.isEmpty()) {
        QSKIP("no drives of the tests' own");
    }
    QVERIFY(combo.findText(u'(' + qEnvironmentVariable("TAVREL_TEST_DRIVE") + u')') >= 0);
    combo.setCurrentText(labelled);
    emit combo.textActivated(labelled);
    QVERIFY(scene.wait_idle());
    QCOMPARE(scene.first->current_dir().path(), labelled.chopped(1).right(2) + u'/');
    QCOMPARE(combo.currentText(), labelled);
}

void TestWindows::texts_of_drives()
{
    QCOMPARE(platform::root_of_path(u"D:/Photos/2024"_s), u"D:/"_s);
    QCOMPARE(platform::root_of_path(u"D:\\Photos"_s), u"D:\\"_s);
    QCOMPARE(platform::root_of_entry(u"Données (D:)"_s), u"D:/"_s);
    QCOMPARE(platform::root_of_entry(u"Personnalisé"_s), u"lisé"_s);
    const QStringList entries{u"(C:)"_s, u"Données (D:)"_s, u"(E:)"_s, u"C: bis (F:)"_s};
    QCOMPARE(platform::find_entry(entries, u"D:/Photos"_s), 1);
    QCOMPARE(platform::find_entry(entries, u"e:/"_s), 2);
    QCOMPARE(platform::find_entry(entries, u"C:/"_s), 0);
    QCOMPARE(platform::find_entry(entries, u"//server/share"_s), -1);
}

// A path that is opened, and what the path line shows; %1 is the scene in the system's spelling.
void TestWindows::paths_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("shown");
    QTest::newRow("root") << u"C:/"_s << u"C:\\"_s;
    QTest::newRow("back slashes") << u"%1\\l"_s << u"%1\\l"_s;
    QTest::newRow("slashes") << u"%1/l"_s << u"%1\\l"_s;
    QTest::newRow("missing") << u"C:/no such folder/below"_s << u"C:\\"_s;
    QTest::newRow("entry of old") << u"An entry (C:)"_s << u"C:\\"_s;
    const QString deep = QString(u"\\"_s + QString(60, u'd')).repeated(5);
    QTest::newRow("too long for the old calls") << u"%1\\l"_s + deep << u"%1\\l"_s + deep;
}

void TestWindows::paths()
{
    QFETCH(QString, path);
    QFETCH(QString, shown);
    Scene scene;
    const QString here = QDir::toNativeSeparators(scene.working_dir.at());
    path.replace(u"%1"_s, here);
    QDir().mkpath(path.contains("ddd"_L1) ? path : here);
    QFile file(path + u"/été.txt"_s);
    const bool written = path.startsWith(here) && file.open(QIODevice::WriteOnly);
    file.close();
    scene.first->path_edit->setText(path);
    emit scene.first->path_edit->returnPressed();
    QVERIFY(scene.wait_idle());
    QCOMPARE(scene.first->path_edit->text(), shown.replace(u"%1"_s, here));
    if (written) {
        scene.run(u"do L \"Créer fichier SHA1 du répertoire\""_s);
        QFile list(path + u'/' + path.section(u'\\', -1).section(u'/', -1) + u".sha1"_s);
        QVERIFY(list.open(QIODevice::ReadOnly));
        // In the code page, which the scenarios' other system does not have.
        QVERIFY(
            list.readAll().contains("da39a3ee5e6b4b0d3255bfef95601890afd80709  \xe9t\xe9.txt\n"));
        QStringList arguments{QDir::toNativeSeparators(QFileInfo(file).filePath())};
        scene.first->Reset();
        emit scene.window->send_args(arguments);
        QVERIFY(scene.wait_idle());
        QVERIFY(scene.run(u"see L"_s).contains(u"été.txt=md5"_s));
    }
}

void TestWindows::drive_root_has_a_checksum_file()
{
    const QString drive = qEnvironmentVariable("TAVREL_TEST_DRIVE");
    if (drive.isEmpty()) {
        QSKIP("no drive of the tests' own");
    }
    const QString name = drive.left(1) + u".md5"_s;
    QVERIFY(QFile(drive + u"/letter.txt"_s).open(QIODevice::WriteOnly));
    Scene scene;
    scene.first->changeModel(drive + u'/');
    scene.run(u"do L \"Créer fichier MD5 du répertoire\""_s);
    QCOMPARE(scene.run(u"activate L "_s + name), u"[Ok] Aucune erreur trouvée !"_s);
    QFile::remove(drive + u'/' + name);
}

void TestWindows::explorer_is_started_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("arguments");
    // %1 is the folder, in which there is no blank.
    QTest::newRow("file") << u"photo.jpg"_s << u"/select, %1\\photo.jpg"_s;
    QTest::newRow("blanks") << u"my photo.jpg"_s << u"/select, \"%1\\my photo.jpg\""_s;
    QTest::newRow("directory") << u"folder"_s << u"%1\\folder"_s;
}

void TestWindows::explorer_is_started()
{
    QFETCH(QString, name);
    QFETCH(QString, arguments);
    if (!qEnvironmentVariableIsSet("TAVREL_TEST_REGISTRY")) {
        QSKIP("this system is not the tests' own");
    }
    const QString explorer = qEnvironmentVariable("SystemRoot") + u"/explorer.exe"_s;
    QFile::remove(explorer);
    QVERIFY(QFile::copy(QCoreApplication::applicationDirPath() + u"/explorer_stand_in.exe"_s,
                        explorer));
    Scene scene;
    scene.run(u"put l/photo.jpg \"l/my photo.jpg\" l/folder/"_s);
    scene.run(u"call L Reset"_s);
    scene.first->setCurrentItem(find_row(*scene.first, name));
    scene.run(u"call L open_explorer"_s);
    QTRY_VERIFY_WITH_TIMEOUT(scene.working_dir.entries().contains("command_line.txt"_L1), 30000);
    const QByteArray bytes = scene.working_dir.read(u"command_line.txt"_s);
    const QString line =
        QString::fromUtf16(reinterpret_cast<const char16_t*>(bytes.constData()), bytes.size() / 2);
    QCOMPARE(line.section(u' ', 1).trimmed(),
             arguments.arg(QDir::toNativeSeparators(scene.working_dir.at(u"l"_s))));
}

void TestWindows::registry_holds_the_association()
{
    if (!qEnvironmentVariableIsSet("TAVREL_TEST_REGISTRY")) {
        QSKIP("this registry is not the tests' own");
    }
    FenOpt dialog(nullptr);
    const QString program = QDir::toNativeSeparators(QCoreApplication::applicationFilePath());
    const QString command = u'"' + program + u"\" \"%1\""_s;
    const QStringList extensions{u".md5"_s, u".sha1"_s};
    const QStringList type{u"Tavrel"_s};
    const QStringList verbs{u"*\\shell\\Tavrel"_s, u"Directory\\shell\\Tavrel"_s};
    const QMap<QString, QString> type_values = {
        {u"Tavrel"_s, u"Checksum hash file"_s},
        {u"Tavrel\\DefaultIcon"_s, program + u",0"_s},
        {u"Tavrel\\shell"_s, u"open"_s},
        {u"Tavrel\\shell\\open"_s, u"&Vérifier le checksum..."_s},
        {u"Tavrel\\shell\\open\\command"_s, command},
    };
    const QMap<QString, QString> verb_values = {
        {u"*\\shell\\Tavrel"_s, u"Tavrel"_s},
        {u"*\\shell\\Tavrel\\command"_s, command},
        {u"Directory\\shell\\Tavrel"_s, u"Tavrel"_s},
        {u"Directory\\shell\\Tavrel\\command"_s, command},
    };
    const auto both_extensions = [](const QString& value) {
        return QMap<QString, QString>{{u".md5"_s, value}, {u".sha1"_s, value}};
    };
    for (int time = 0; time < 2; ++time) {
        QVERIFY(QMetaObject::invokeMethod(&dialog, "set_assoc"));
        QCOMPARE(registry_defaults(extensions), both_extensions(u"Tavrel"_s));
        QCOMPARE(registry_defaults(type), type_values);
        QCOMPARE(registry_defaults(verbs), verb_values);
    }
    for (int time = 0; time < 2; ++time) {
        QVERIFY(QMetaObject::invokeMethod(&dialog, "rem_assoc"));
        QCOMPARE(registry_defaults(extensions), both_extensions(u""_s));
        QCOMPARE(registry_defaults(type), type_values);
        QVERIFY(registry_defaults(verbs).isEmpty());
    }
}

QTEST_MAIN(TestWindows)
#include "test_windows.moc"
