// Every call into the file system fails once, and nothing false may come of it.
//
// A session is repeated, and each time another call on the left pane's directory fails, with
// another error. All of them take minutes; EVERY names how many are passed over.

#include "tests/stress/confined.h"
#include "tests/support/scene.h"

#include <cerrno>

extern "C" int fail_call(const char* directory, int number, int error);
extern "C" const char* failed_call;

namespace {

constexpr std::array errors = {EIO, ENOSPC, EMFILE};

/// Two sides with files alike and not alike, an older checksum file, and a list that names a
/// damaged file so late that it takes several reads to come there.
void lay_out(Scene& scene)
{
    const QString right = reference_digest("same") + u"  same\\n"_s;
    scene.run(u"put l/same r/same l/other=1 r/other=2 l/none=x r/none= l/sub/in l/l.md5=old"_s);
    scene.run(u"put \"l/list.sha1=%1%2%3  other\\n\""_s.arg(right, u"# padding\\n"_s.repeated(8000),
                                                            QString(40, u'0')));
    scene.run(u"lay"_s);
}

/// What is wrong after a session in which a call failed; `boxes` came up in it.
QString finding(Scene& scene, const QString& boxes)
{
    static const QRegularExpression false_green(u"(other|none)=[^ ]*green|\\?,green"_s);
    static const QRegularExpression whole(u"^(old|# .* \\|( (\\?|md5)  [a-z]+ \\|)+)$"_s);
    const QString rows = scene.run(u"see L"_s) + u" # "_s + scene.run(u"see R"_s);
    const QString names = scene.run(u"ls l"_s);
    const QString list = scene.run(u"cat l/l.md5"_s);
    return rows.contains(false_green)           ? u"green and not alike: "_s + rows
           : boxes.contains("Aucune erreur"_L1) ? u"nothing wrong in a damaged list"_s
           : names != "l.md5, list.sha1, none, other, same, sub"_L1 ? u"left behind: "_s + names
           : !list.contains(whole) || list.count(u'?') > 1 ? u"neither old nor new: "_s + list
                                                           : scene.violation();
}

} // namespace

class TestFaults : public QObject
{
    Q_OBJECT

  private slots:
    void every_call_fails_once();
};

void TestFaults::every_call_fails_once()
{
    const QList<QStringList> sessions = {{u"lay"_s, u"expand L sub"_s},
                                         {u"command \"Comparer Tout\""_s},
                                         {u"select L sub other none"_s, u"command Comparer"_s},
                                         {u"do L \"Créer fichier MD5 du répertoire\""_s},
                                         {u"activate L list.sha1"_s}};
    const int every = qEnvironmentVariable("EVERY", u"11"_s).toInt();
    QStringList findings;
    int failed = 0;
    for (const QStringList& acts : sessions) {
        for (int at = 0;; at += every, ++failed) {
            const int number = at / 3 + 1;
            const int error = errors[static_cast<size_t>(at) % errors.size()];
            Scene scene;
            lay_out(scene);
            fail_call(qPrintable(scene.working_dir.at(u"l"_s)), number, error);
            QString seen;
            for (const QString& act : acts) { seen += scene.run(act); }
            if (fail_call("", 0, 0) < number) { break; }
            if (const QString wrong = finding(scene, seen); !wrong.isEmpty()) {
                findings << u"%1, %2 %3, %4: %5"_s.arg(acts.last(), QLatin1String(failed_call))
                                .arg(number)
                                .arg(QString::fromLocal8Bit(std::strerror(error)), wrong);
            }
        }
    }
    qInfo("%d calls failed", failed);
    QVERIFY2(findings.isEmpty(), qPrintable(findings.join(u'\n')));
}

int main(int argc, char* argv[])
{
    const Confined confined; // a call that fails may lead anywhere
    const QApplication application(argc, argv);
    TestFaults test;
    return QTest::qExec(&test, argc, argv);
}
#include "test_faults.moc"
