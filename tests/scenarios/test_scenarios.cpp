// Plays the scenarios of the files in the folder that the first argument names.
//
// In a file a scenario begins with "== title". "-> text" after a command is what must be seen. One
// with "$alg" is played for both algorithms, one whose title ends in "[unix]" not on Windows.

#include "tests/support/scene.h"

class TestScenarios : public QObject
{
    Q_OBJECT

  public:
    QDir folder;

  private slots:
    void play_data();
    void play();
};

void TestScenarios::play_data()
{
    QTest::addColumn<QStringList>("lines");
    QTest::addColumn<int>("number");
    for (const QFileInfo& info : folder.entryInfoList({u"*.txt"_s}, QDir::Files)) {
        QFile file(info.filePath());
        QVERIFY(file.open(QIODevice::ReadOnly));
        int number = 1;
        for (const QString& text : QString::fromUtf8('\n' + file.readAll()).split(u"\n== "_s)) {
            QStringList lines = text.split(u'\n');
            const QString title = lines.takeFirst();
            const bool both = text.contains("$alg"_L1, Qt::CaseInsensitive);
            const bool here = !title.endsWith("[unix]"_L1) || QDir::separator() == u'/';
            for (const QString& alg : QStringList{u"md5"_s, u"sha1"_s}.mid(both ? 0 : 1)) {
                QStringList own = lines;
                own.replaceInStrings(u"$alg"_s, alg).replaceInStrings(u"$ALG"_s, alg.toUpper());
                const QString name = info.baseName() + u": "_s + title + (both ? alg : QString());
                if (here && !title.isEmpty()) { QTest::newRow(qPrintable(name)) << own << number; }
            }
            number += static_cast<int>(lines.size()) + 1;
        }
    }
}

void TestScenarios::play()
{
    QFETCH(QStringList, lines);
    QFETCH(int, number);
    Scene scene;
    for (const QString& line : lines) {
        const QString command = line.section(u" ->"_s, 0, 0).trimmed();
        const QString expected = line.section(u" ->"_s, 1).trimmed();
        if (!command.isEmpty() && !command.startsWith(u'#')) {
            const QString seen = scene.run(command);
            const QString wrong = scene.violation();
            const QString report = u"line %1: %2\n  expected: %3\n  seen:     %4\n  %5"_s.arg(
                QString::number(number), command, expected, seen, wrong);
            QVERIFY2(seen == expected && wrong.isEmpty(), qUtf8Printable(report));
        }
        ++number;
    }
}

int main(int argc, char* argv[])
{
    int only_the_program = 1; // the window would open the folder that is named after it
    const QApplication application(only_the_program, argv);
    TestScenarios test;
    test.folder.setPath(QDir(QString::fromLocal8Bit(argv[1])).absolutePath());
    return QTest::qExec(&test, argc - 1, argv + 1);
}
#include "test_scenarios.moc"
