// What only Windows has: drives with letters and labels, the file manager's quoting, shortcuts,
// code pages, long paths. packaging/windows/test runs this on a machine of its own and names in the
// environment a drive that tests may fill, the selector entry of one that has a label, and whether
// system folders may be changed: TAVREL_TEST_DRIVE, TAVREL_TEST_LABELLED, TAVREL_TEST_REGISTRY.

#include "tests/support/scene.h"

class TestWindows : public QObject
{
    Q_OBJECT

  private slots:
    void drives_have_letters_and_labels();
    void long_paths_and_code_pages();
    void shortcuts_are_files();
    void explorer_is_started();
};

void TestWindows::drives_have_letters_and_labels()
{
    Scene scene;
    QComboBox& combo = *scene.first->drive_combo;
    QCOMPARE(combo.count(), QDir::drives().size());
    const QString drive = qEnvironmentVariable("TAVREL_TEST_DRIVE");
    const QString labelled = qEnvironmentVariable("TAVREL_TEST_LABELLED");
    if (labelled.isEmpty()) { QSKIP("no drives of the tests' own"); }
    for (const QString& entry : {u'(' + drive + u')', labelled}) {
        QVERIFY(combo.findText(entry) >= 0);
        emit combo.textActivated(entry);
        QVERIFY(scene.wait_idle());
        QCOMPARE(scene.first->current_dir().path(), entry.chopped(1).right(2) + u'/');
        QCOMPARE(combo.currentText(), entry);
    }
    const QString name = drive.left(1) + u".md5"_s;
    QVERIFY(QFile(drive + u"/letter.txt"_s).open(QIODevice::WriteOnly));
    scene.first->changeModel(drive + u"/gone/below"_s);
    scene.run(u"do L \"Créer fichier MD5 du répertoire\""_s);
    QCOMPARE(scene.run(u"activate L "_s + name), u"[Ok] Aucune erreur trouvée !"_s);
    QFile::remove(drive + u'/' + name);
}

void TestWindows::long_paths_and_code_pages()
{
    Scene scene;
    const QString deep = u"l"_s + QString(u'/' + QString(60, u'd')).repeated(5);
    scene.working_dir.createFile(deep + u"/été.txt"_s);
    scene.run(u"type L "_s + deep + u" ; do L \"Créer fichier SHA1 du répertoire\""_s);
    const QByteArray list = scene.working_dir.read(deep + u'/' + QString(60, u'd') + u".sha1"_s);
    QVERIFY(list.contains("da39a3ee5e6b4b0d3255bfef95601890afd80709  \xe9t\xe9.txt\n"));
}

void TestWindows::shortcuts_are_files()
{
    Scene scene;
    scene.run(u"put l/target l/dir/"_s);
    const QString below = scene.working_dir.at(u"l/"_s);
    for (const QString& pair : {u"target a"_s, u"dir b"_s, u"gone c"_s}) {
        QVERIFY(QFile::link(below + pair.chopped(2), below + pair.last(1) + u".lnk"_s));
    }
    const QString rows = scene.run(u"lay ; call L HashAll ; see L"_s);
    QVERIFY(rows.startsWith(u".. dir/ a.lnk=md5,yellow b.lnk=md5,yellow c.lnk=md5"_s));
}

void TestWindows::explorer_is_started()
{
    if (!qEnvironmentVariableIsSet("TAVREL_TEST_REGISTRY")) {
        QSKIP("this system is not the tests' own");
    }
    const QString explorer = qEnvironmentVariable("SystemRoot") + u"/explorer.exe"_s;
    QFile::remove(explorer);
    QVERIFY(QFile::copy(QCoreApplication::applicationDirPath() + u"/explorer_stand_in.exe"_s,
                        explorer));
    for (const QString& name : {u"a photo, mine.jpg"_s, u"folder"_s}) {
        Scene scene;
        scene.run(u"lay \"l/a photo, mine.jpg\" l/folder/"_s);
        scene.run(u"current L \"%1\" ; call L open_explorer"_s.arg(name));
        QTRY_VERIFY_WITH_TIMEOUT(scene.working_dir.entries().contains("command_line"_L1), 30000);
        const QByteArray bytes = scene.working_dir.read(u"command_line.txt"_s);
        const QString line = QString::fromUtf16(
            reinterpret_cast<const char16_t*>(bytes.constData()), bytes.size() / 2);
        const QString path = QDir::toNativeSeparators(scene.working_dir.at(u"l/"_s + name));
        const QString select = name == "folder"_L1 ? QString() : u"/select,"_s;
        QVERIFY2(line.trimmed().endsWith(select + u'"' + path + u'"'), qUtf8Printable(line));
    }
}

QTEST_MAIN(TestWindows)
#include "test_windows.moc"
