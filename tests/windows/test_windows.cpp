// What only Windows has: drives with letters and labels, back slashes, the file manager, the
// registry, code pages, locked files and long paths.
//
// packaging/windows/test runs this on a machine of its own and says so in the environment:
//   TAVREL_TEST_DRIVE     letter and colon of a drive without a label that tests may fill
//   TAVREL_TEST_LABELLED  selector entry of a drive that has a label
//   TAVREL_TEST_REGISTRY  set when the registry may be changed

#include "app/settings_file.h"
#include "dialogs/fenopt.h"
#include "dialogs/shell_association.h"
#include "platform/volumes.h"
#include "tests/modal_driver.h"
#include "tests/pane_fixture.h"

#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QProcess>
#include <QPushButton>
#include <QSettings>
#include <QStandardPaths>
#include <QTest>
#include <QTranslator>

#include <qt_windows.h>

#include <array>

using namespace Qt::StringLiterals;

namespace {

const wchar_t* wide(const QString& text)
{
    return reinterpret_cast<const wchar_t*>(text.utf16());
}

QString system_label(const QString& root)
{
    std::array<wchar_t, MAX_PATH + 1> name{};
    return GetVolumeInformationW(wide(root), name.data(), static_cast<DWORD>(name.size()), nullptr,
                                 nullptr, nullptr, nullptr, 0)
               ? QString::fromWCharArray(name.data()).trimmed()
               : QString();
}

QByteArray in_code_page(UINT code_page, const QString& text)
{
    QByteArray bytes(text.size() * 4, '\0');
    bytes.resize(WideCharToMultiByte(code_page, 0, wide(text), static_cast<int>(text.size()),
                                     bytes.data(), static_cast<int>(bytes.size()), nullptr,
                                     nullptr));
    return bytes;
}

QString text_of_path(const MyTreeWidget& pane)
{
    return pane.path_edit->text();
}

/// Keeps every other program, and every other handle of this one, out of a file.
class Lock
{
  public:
    explicit Lock(const QString& path)
        : handle_(CreateFileW(wide(QDir::toNativeSeparators(path)), GENERIC_READ | GENERIC_WRITE, 0,
                              nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr))
    {}
    ~Lock() { CloseHandle(handle_); }
    Q_DISABLE_COPY_MOVE(Lock)

    bool holds() const { return handle_ != INVALID_HANDLE_VALUE; }

  private:
    HANDLE handle_;
};

QString from_code_page(UINT code_page, const QByteArray& bytes)
{
    QString text(bytes.size(), u'\0');
    text.resize(MultiByteToWideChar(code_page, 0, bytes.constData(), static_cast<int>(bytes.size()),
                                    reinterpret_cast<wchar_t*>(text.data()),
                                    static_cast<int>(text.size())));
    return text;
}

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
        const QString output = from_code_page(GetOEMCP(), reg.readAllStandardOutput());
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
    void selector_shows_letters_and_labels();
    void drive_root_is_shown_by_its_letter();
    void roots_of_paths_data();
    void roots_of_paths();
    void roots_of_entries_data();
    void roots_of_entries();
    void entries_are_found_by_letter_data();
    void entries_are_found_by_letter();
    void missing_paths_fall_back();
    void drive_root_has_a_checksum_file();
    void path_line_takes_both_slashes();
    void arguments_have_back_slashes();
    void explorer_is_started_data();
    void explorer_is_started();
    void registry_holds_the_association();
    void checksum_files_are_in_the_code_page();
    void settings_go_beside_a_closed_folder();
    void language_restarts_the_process();
    void long_paths_work();
    void locked_file_says_so();
    void case_of_names_counts();
};

void TestWindows::selector_shows_letters_and_labels()
{
    const WindowFixture f;
    QStringList expected;
    for (const QFileInfo& drive : QDir::drives()) {
        const QString label = system_label(drive.filePath());
        const QString letter = u'(' + drive.filePath().left(2) + u')';
        expected.append(label.isEmpty() ? letter : label + u' ' + letter);
    }
    QStringList entries;
    for (int i = 0; i < f.first->drive_combo->count(); ++i) {
        entries.append(f.first->drive_combo->itemText(i));
        QVERIFY(!f.first->drive_combo->itemIcon(i).isNull());
    }
    QCOMPARE(entries, expected);

    const QString plain = qEnvironmentVariable("TAVREL_TEST_DRIVE");
    const QString labelled = qEnvironmentVariable("TAVREL_TEST_LABELLED");
    if (plain.isEmpty() || labelled.isEmpty()) {
        QSKIP("no drives of the tests' own");
    }
    QVERIFY(entries.contains(u'(' + plain + u')'));
    QVERIFY(entries.contains(labelled));
    QCOMPARE(f.first->volume_label(plain + u'/'), QString());

    const int entry = f.first->drive_combo->findText(labelled);
    f.first->drive_combo->setCurrentIndex(entry);
    emit f.first->drive_combo->textActivated(labelled);
    QCOMPARE(f.first->current_dir().path(), labelled.chopped(1).right(2) + u'/');
    QCOMPARE(f.first->drive_combo->currentText(), labelled);
}

void TestWindows::drive_root_is_shown_by_its_letter()
{
    const WindowFixture f;
    f.first->changeModel(u"C:/"_s);
    QCOMPARE(text_of_path(*f.first), u"C:\\"_s);
    QCOMPARE(f.first->status_label->text(), u"C:/"_s);
    QVERIFY(f.first->drive_combo->currentText().endsWith("(C:)"_L1));
}

void TestWindows::roots_of_paths_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("root");
    QTest::newRow("path") << u"D:/Photos/2024"_s << u"D:/"_s;
    QTest::newRow("native") << u"D:\\Photos"_s << u"D:\\"_s;
    QTest::newRow("root") << u"D:/"_s << u"D:/"_s;
    QTest::newRow("whatever they are") << u"Photos"_s << u"Pho"_s;
    QTest::newRow("short") << u"D:"_s << u"D:"_s;
    QTest::newRow("nothing") << QString() << QString();
}

void TestWindows::roots_of_paths()
{
    QFETCH(QString, path);
    QTEST(platform::root_of_path(path), "root");
}

void TestWindows::roots_of_entries_data()
{
    QTest::addColumn<QString>("entry");
    QTest::addColumn<QString>("root");
    QTest::newRow("letter") << u"(D:)"_s << u"D:/"_s;
    QTest::newRow("label") << u"Disque (2) (E:)"_s << u"E:/"_s;
    QTest::newRow("no entry") << u"Personnalisé"_s << u"lisé"_s;
    QTest::newRow("nothing") << QString() << QString();
}

void TestWindows::roots_of_entries()
{
    QFETCH(QString, entry);
    QTEST(platform::root_of_entry(entry), "root");
}

void TestWindows::entries_are_found_by_letter_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<qsizetype>("entry");
    QTest::newRow("letter") << u"D:/Photos"_s << qsizetype(1);
    QTest::newRow("other case") << u"e:/"_s << qsizetype(2);
    QTest::newRow("first of several") << u"C:/"_s << qsizetype(0);
    QTest::newRow("none") << u"Q:/"_s << qsizetype(-1);
    QTest::newRow("share") << u"//server/share"_s << qsizetype(-1);
}

void TestWindows::entries_are_found_by_letter()
{
    QFETCH(QString, path);
    const QStringList entries{u"(C:)"_s, u"Données (D:)"_s, u"(E:)"_s, u"C: bis (F:)"_s};
    QTEST(platform::find_entry(entries, path), "entry");
}

void TestWindows::missing_paths_fall_back()
{
    const WindowFixture f;
    const auto lands = [&](const QString& path) {
        return f.first->changeModel(path)->current_dir().path();
    };
    QCOMPARE(lands(u"C:/no such folder/below"_s), u"C:/"_s);
    QCOMPARE(lands(u"C:\\no such folder"_s), u"C:/"_s);
    QCOMPARE(lands(u"An entry of old (C:)"_s), u"C:/"_s);
    QCOMPARE(lands(u"no way"_s), QDir::rootPath());
    QVERIFY(f.first->topLevelItemCount() > 0);
}

void TestWindows::drive_root_has_a_checksum_file()
{
    const QString drive = qEnvironmentVariable("TAVREL_TEST_DRIVE");
    if (drive.isEmpty()) {
        QSKIP("no drive of the tests' own");
    }
    const QString root = drive + u'/';
    const QString name = drive.left(1) + u".md5"_s;
    QFile::remove(root + name);
    QFile file(root + u"letter.txt"_s);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write("content") == 7);
    file.close();

    const WindowFixture f;
    f.first->changeModel(root);
    QCOMPARE(text_of_path(*f.first), drive + u'\\');
    f.first->act_md5_dir_file->trigger();
    QVERIFY(f.wait_idle());
    QFile written(root + name);
    QVERIFY(written.open(QIODevice::ReadOnly));
    QCOMPARE(QString::fromLatin1(written.readAll()).section(u'\n', -2),
             reference_digest("content") + u"  letter.txt\n"_s);
    written.close();
    QCOMPARE(f.first->selectedItems().value(0), find_row(*f.first, name));

    QString verdict;
    ModalDriver<QMessageBox> box([&](QMessageBox& shown) { verdict = shown.text(); });
    emit f.first->itemActivated(find_row(*f.first, name), 0);
    QVERIFY(f.wait_idle());
    QCOMPARE(verdict, u"Aucune erreur trouvée !"_s);
}

void TestWindows::path_line_takes_both_slashes()
{
    const WindowFixture f;
    TestDir dir;
    dir.createFile(u"sub/file.txt"_s, "x");
    const QString native = QDir::toNativeSeparators(dir.at(u"sub"_s));
    for (const QString& typed : {native, dir.at(u"sub"_s)}) {
        f.first->changeModel(u"C:/"_s);
        f.first->path_edit->setText(typed);
        emit f.first->path_edit->returnPressed();
        QCOMPARE(text_of_path(*f.first), native);
        QVERIFY(find_row(*f.first, u"file.txt"_s));
    }
    // The identity of a row keeps the slashes of the inside.
    QCOMPARE(find_row(*f.first, u"file.txt"_s)->text(ColPath), dir.at(u"sub/file.txt"_s));
}

void TestWindows::arguments_have_back_slashes()
{
    const WindowFixture f;
    TestDir dir;
    dir.createFiles({u"a.txt"_s, u"b.txt"_s, u"c.txt"_s, u"d.txt"_s});
    const auto native = [&](const QString& name) { return QDir::toNativeSeparators(dir.at(name)); };

    QStringList one{native(u"c.txt"_s)};
    f.first->handle_args(one);
    QVERIFY(f.wait_idle());
    QCOMPARE(checksum_at(*f.first, u"c.txt"_s), reference_digest("c.txt"));
    QCOMPARE(checksum_at(*f.first, u"a.txt"_s), QString());

    // Several are compared as written: only the system's own spelling selects a row.
    f.first->Reset();
    QStringList several{native(u"a.txt"_s), native(u"b.txt"_s).toUpper(), dir.at(u"c.txt"_s),
                        native(u"d.txt"_s)};
    f.first->handle_args(several);
    QVERIFY(f.wait_idle());
    QCOMPARE(checksum_at(*f.first, u"a.txt"_s), reference_digest("a.txt"));
    QCOMPARE(checksum_at(*f.first, u"b.txt"_s), QString());
    QCOMPARE(checksum_at(*f.first, u"c.txt"_s), QString());
    QCOMPARE(checksum_at(*f.first, u"d.txt"_s), reference_digest("d.txt"));
}

void TestWindows::explorer_is_started_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("arguments");
    // %1 is the folder, in which there is no blank.
    QTest::newRow("file") << u"photo.jpg"_s << u"/select, %1\\photo.jpg"_s;
    QTest::newRow("blanks") << u"my photo.jpg"_s << u"/select, \"%1\\my photo.jpg\""_s;
    QTest::newRow("accents") << u"été.jpg"_s << u"/select, %1\\été.jpg"_s;
    QTest::newRow("directory") << u"folder"_s << u"%1\\folder"_s;
}

void TestWindows::explorer_is_started()
{
    QFETCH(QString, name);
    QFETCH(QString, arguments);
    WindowFixture f;
    TestDir dir;
    dir.createFiles({u"photo.jpg"_s, u"my photo.jpg"_s, u"été.jpg"_s});
    dir.createDir(u"folder"_s);
    // The system looks for programs in the working directory before it looks at its own.
    QVERIFY(QFile::copy(QCoreApplication::applicationDirPath() + u"/explorer_stand_in.exe"_s,
                        f.working_dir.filePath(u"explorer.exe"_s)));

    f.first->changeModel(dir.path());
    f.first->open_explorer(); // no row is current: nothing is started
    f.first->setCurrentItem(find_row(*f.first, name));
    f.first->open_explorer();

    const QString record = f.working_dir.filePath(u"command_line.txt"_s);
    QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(record), 30000);
    const QByteArray bytes = f.working_dir.read(u"command_line.txt"_s);
    const QString line =
        QString::fromUtf16(reinterpret_cast<const char16_t*>(bytes.constData()), bytes.size() / 2);
    const QString folder = QDir::toNativeSeparators(dir.at());
    QCOMPARE(line.section(u' ', 1).trimmed(), arguments.arg(folder));
    // A program that still runs cannot be removed with its folder.
    const QString program = f.working_dir.filePath(u"explorer.exe"_s);
    QTRY_VERIFY_WITH_TIMEOUT(QFile::remove(program) || !QFile::exists(program), 30000);
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

void TestWindows::checksum_files_are_in_the_code_page()
{
    const WindowFixture f;
    TestDir dir;
    const QString accents = u"Forêt à Nîmes.jpg"_s;
    dir.createFile(u"Photos/"_s + accents, "trees");
    f.first->changeModel(dir.at(u"Photos"_s));
    f.first->act_md5_dir_file->trigger();
    QVERIFY(f.wait_idle());

    const QByteArray written = dir.read(u"Photos/Photos.md5"_s);
    const QByteArray line =
        reference_digest("trees").toLatin1() + "  " + in_code_page(CP_ACP, accents) + '\n';
    QVERIFY(written.startsWith(in_code_page(CP_ACP, u"# Fichier créé avec Tavrel\n"_s)));
    QCOMPARE(written.sliced(written.size() - line.size()), line);

    QString verdict;
    ModalDriver<QMessageBox> box([&](QMessageBox& shown) { verdict = shown.text(); });
    emit f.first->itemActivated(find_row(*f.first, u"Photos.md5"_s), 0);
    QVERIFY(f.wait_idle());
    QCOMPARE(verdict, u"Aucune erreur trouvée !"_s);
}

void TestWindows::settings_go_beside_a_closed_folder()
{
    QStringList closed;
    // The second is one for everybody who runs this elsewhere than on Windows itself.
    for (const QString& folder : {u"C:/Windows/System32"_s, u"Z:/proc"_s}) {
        if (QDir(folder).exists() && !QFile(folder + u"/Tavrel.ini"_s).open(QIODevice::NewOnly)) {
            closed.append(folder);
        }
        QFile::remove(folder + u"/Tavrel.ini"_s);
    }
    if (closed.isEmpty()) {
        QSKIP("every folder is open to this user");
    }
    QStandardPaths::setTestModeEnabled(true);
    const QString expected =
        QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
        u"/Brennick/Tavrel.ini"_s;
    QFile::remove(expected);

    const WindowFixture f;
    f.window->writeSettings();
    QVERIFY(QFile::exists(f.working_dir.filePath(u"Tavrel.ini"_s)));
    QVERIFY(!QFile::exists(expected));
    QVERIFY(QDir::setCurrent(closed.first()));
    f.window->writeSettings();
    QDir::setCurrent(f.working_dir.path());
    QCOMPARE(QSettings(expected, QSettings::IniFormat).value(u"App/alg"_s).toString(), u"MD5"_s);
    QFile::remove(expected);
    QStandardPaths::setTestModeEnabled(false);
}

namespace {

constexpr char restart_variable[] = "TAVREL_TEST_RESTART";

/// The program that language_restarts_the_process() starts, and that then starts itself.
int run_for_restart()
{
    QFile trace(u"trace.txt"_s);
    if (!trace.open(QIODevice::Append)) {
        return 2;
    }
    const QSettings settings(settings_path(), QSettings::IniFormat);
    const QString lang = settings.value(u"MainWindow/lang"_s).toString();
    const auto arguments = QCoreApplication::arguments().size() - 1;
    trace.write(u"language '%1', %2 arguments\n"_s.arg(lang).arg(arguments).toLatin1());
    trace.close();
    if (lang == "en"_L1) {
        return 0;
    }
    QTranslator translator;
    MainFen window;
    window.translator = &translator;
    const ModalDriver<QMessageBox> yes([](QMessageBox& box) {
        for (QAbstractButton* button : box.buttons()) {
            if (box.buttonRole(button) == QMessageBox::YesRole) {
                button->click();
            }
        }
    });
    window.setLang(u"en"_s);
    return 3; // the process has ended before
}

} // namespace

void TestWindows::language_restarts_the_process()
{
    TestDir dir;
    const QString argument = dir.createDir(u"shown"_s);
    QProcess program;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QString::fromLatin1(restart_variable), u"1"_s);
    program.setProcessEnvironment(environment);
    program.setWorkingDirectory(dir.path());
    program.setProcessChannelMode(QProcess::ForwardedChannels);
    program.start(QCoreApplication::applicationFilePath(), {argument});
    QVERIFY(program.waitForFinished());
    QCOMPARE(program.exitStatus(), QProcess::NormalExit);
    QCOMPARE(program.exitCode(), 0);
    const QByteArray both = "language '', 1 arguments\nlanguage 'en', 0 arguments\n";
    QTRY_COMPARE_WITH_TIMEOUT(dir.read(u"trace.txt"_s), both, 30000);
}

void TestWindows::long_paths_work()
{
    TestDir dir;
    const QString part(60, u'd');
    const QString folder = dir.at() + QString(u'/' + part).repeated(5);
    QVERIFY(folder.size() > 300);
    QVERIFY(QDir().mkpath(folder + u"/sub"_s));
    for (const QString& name : {u"/one.txt"_s, u"/sub/two.txt"_s}) {
        QFile file(folder + name);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write("far away") == 8);
    }

    const WindowFixture f;
    f.first->changeModel(folder);
    QCOMPARE(text_of_path(*f.first), QDir::toNativeSeparators(folder));
    f.first->HashDir();
    QVERIFY(f.wait_idle());
    QCOMPARE(checksum_at(*f.first, u"one.txt"_s), reference_digest("far away"));
    f.first->act_sha1_dir_file->trigger();
    QVERIFY(f.wait_idle());
    QFile written(folder + u'/' + part + u".sha1"_s);
    QVERIFY(written.open(QIODevice::ReadOnly));
    QVERIFY(written.readAll().contains(
        reference_digest("far away", QCryptographicHash::Sha1).toLatin1() + "  one.txt\n"));
}

void TestWindows::locked_file_says_so()
{
    const WindowFixture f;
    TestDir dir;
    dir.createFiles({u"free.txt"_s, u"locked.txt"_s});
    const Lock lock(dir.at(u"locked.txt"_s));
    QVERIFY(lock.holds());
    f.first->changeModel(dir.path());
    f.first->HashAll();
    QVERIFY(f.wait_idle());
    QCOMPARE(checksum_at(*f.first, u"free.txt"_s), reference_digest("free.txt"));
    QCOMPARE(checksum_at(*f.first, u"locked.txt"_s),
             u"Impossible d'ouvrir le fichier "_s + dir.at(u"locked.txt"_s));
}

void TestWindows::case_of_names_counts()
{
    WindowFixture f;
    TestDir dir;
    dir.createFile(u"left/Photo.JPG"_s, "same");
    dir.createFile(u"right/photo.jpg"_s, "same");
    dir.createFile(u"left/sums.md5"_s, reference_digest("same").toLatin1() + "  photo.jpg\n");
    f.first->changeModel(dir.at(u"left"_s));
    f.second->changeModel(dir.at(u"right"_s));
    QVERIFY(f.compare_all());
    QCOMPARE(mark_at(*f.first, u"Photo.JPG"_s), u"yellow"_s);
    QCOMPARE(mark_at(*f.second, u"photo.jpg"_s), u"yellow"_s);

    // The file could be opened by that name, and is missing all the same.
    QVERIFY(QFile::exists(dir.at(u"left"_s) + u"/photo.jpg"_s));
    QString verdict;
    ModalDriver<QMessageBox> box([&](QMessageBox& shown) { verdict = shown.text(); });
    emit f.first->itemActivated(find_row(*f.first, u"sums.md5"_s), 0);
    QVERIFY(f.wait_idle());
    QVERIFY2(verdict.contains(u"Manquant  => "_s + dir.at(u"left"_s) + u"/photo.jpg"_s),
             qUtf8Printable(verdict));
}

int main(int argc, char* argv[])
{
    QApplication application(argc, argv);
    if (qEnvironmentVariableIsSet(restart_variable)) {
        return run_for_restart();
    }
    TestWindows test;
    return QTest::qExec(&test, argc, argv);
}

#include "test_windows.moc"
