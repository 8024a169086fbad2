// Plays the scenarios of the files named by the first argument's folder.

#include "tests/support/scene.h"

#include <QApplication>
#include <QDir>
#include <QTest>

using namespace Qt::StringLiterals;

/// In a file a scenario begins with "== title". "-> text" after a command is what must be seen. A
/// scenario with "$alg" is played for both algorithms.
class TestScenarios : public QObject
{
    Q_OBJECT

  public:
    QString folder;

  private slots:
    void play_data();
    void play();
};

void TestScenarios::play_data()
{
    QTest::addColumn<QStringList>("lines");
    QTest::addColumn<int>("number");
    for (const QFileInfo& info : QDir(folder).entryInfoList({u"*.txt"_s}, QDir::Files)) {
        QFile file(info.filePath());
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QStringList text = QString::fromUtf8(file.readAll()).split(u'\n');
        for (int at = 0; at < text.size(); ++at) {
            if (!text[at].startsWith("== "_L1)) {
                continue;
            }
            int end = at + 1;
            while (end < text.size() && !text[end].startsWith("== "_L1)) {
                ++end;
            }
            const QStringList lines = text.mid(at + 1, end - at - 1);
            const bool both = lines.join(u' ').contains("$alg"_L1, Qt::CaseInsensitive);
            for (const QString& alg :
                 both ? QStringList{u"md5"_s, u"sha1"_s} : QStringList{u"md5"_s}) {
                QStringList own = lines;
                own.replaceInStrings(u"$alg"_s, alg).replaceInStrings(u"$ALG"_s, alg.toUpper());
                QTest::addRow("%s: %s%s", qPrintable(info.baseName()), qPrintable(text[at].mid(3)),
                              both ? qPrintable(u", "_s + alg) : "")
                    << own << at + 2;
            }
        }
    }
}

void TestScenarios::play()
{
    QFETCH(QStringList, lines);
    QFETCH(int, number);
    if (QSysInfo::productType() == "windows"_L1 &&
        QByteArrayView(QTest::currentDataTag()).contains("[unix]")) {
        QSKIP("of systems with links and a shell");
    }
    Scene scene;
    for (const QString& line : lines) {
        const QString command = line.section(u" ->"_s, 0, 0).trimmed();
        const QString expected = line.section(u" ->"_s, 1).trimmed();
        if (!command.isEmpty() && !command.startsWith(u'#')) {
            const QString seen = scene.run(command);
            const QString wrong = scene.violation();
            if (seen.trimmed() != expected || !wrong.isEmpty()) {
                QFAIL(qUtf8Printable(
                    u"line %1: %2\n  expected: %3\n  seen:     %4\n  %5"_s.arg(number).arg(
                        command, expected, seen, wrong)));
            }
        }
        ++number;
    }
}

int main(int argc, char* argv[])
{
    int shown = 1;
    const QApplication application(shown, argv);
    TestScenarios test;
    test.folder = QDir(QString::fromLocal8Bit(argv[1])).absolutePath();
    return QTest::qExec(&test, argc - 1, argv + 1);
}
#include "test_scenarios.moc"
