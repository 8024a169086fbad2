// The argument list, given to the real main window over a small tree of files.
//
// An input holds the arguments, one a line; they are taken below the tree, so that no search leads
// to files of others.

#include "app/mainfen.h"
#include "tests/fuzz/fuzzer.h"
#include "tests/test_dir.h"
#include "tree/mytreewidget.h"

#include <QApplication>
#include <QComboBox>
#include <QDeadlineTimer>
#include <QDir>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace {

TestDir& tree()
{
    static TestDir dir;
    return dir;
}

/// Closes whatever dialog comes.
void close_dialogs()
{
    QTimer::singleShot(1, qApp, &close_dialogs);
    if (QWidget* dialog = QApplication::activeModalWidget()) {
        dialog->close();
    }
}

} // namespace

// The signature is the fuzzer's.
// NOLINTNEXTLINE(readability-non-const-parameter)
int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static int shown_argc = 1;
    Q_UNUSED(argc);
    // Never destroyed: at the exit of the process the toolkit has gone before it.
    static auto* const application = new QApplication(shown_argc, *argv);
    Q_UNUSED(application);
    tree().createFiles({u"a"_s, u"b.txt"_s, u"c d"_s, u"d/a"_s, u"d/e/f"_s, u".h"_s, u"é"_s});
    tree().createFile(u"l.md5"_s, "0cc175b9c0f1b6a831c399e269772661  a\n");
    tree().createFile(u"n.sha1"_s, "nothing\n");
    tree().createDir(u"x.md5"_s);
    QDir::setCurrent(tree().createDir(u"cwd"_s));
    close_dialogs();
    return 0;
}

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QString text =
        QString::fromUtf8(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    QStringList arguments = text.split(u'\n').first(qMin<qsizetype>(text.count(u'\n') + 1, 5));
    for (QString& argument : arguments) {
        argument.prepend(tree().path() + u'/');
    }
    MainFen window;
    emit window.send_args(arguments);
    MyTreeWidget& pane = *window.first_pane();
    const QDeadlineTimer deadline(20'000);
    while (pane.job_running() && !deadline.hasExpired()) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 10);
    }
    FUZZ_VERIFY(!pane.job_running());
    QCoreApplication::processEvents();
    FUZZ_VERIFY(pane.drive_combo->isEnabled());
    return 0;
}
