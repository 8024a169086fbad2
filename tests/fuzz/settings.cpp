// The settings file, read by the real main window.

#include "app/mainfen.h"
#include "tests/fuzz/fuzzer.h"
#include "tests/test_dir.h"
#include "tree/mytreewidget.h"

#include <QApplication>
#include <QDir>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

TestDir& working_dir()
{
    static TestDir dir;
    return dir;
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
    QDir::setCurrent(working_dir().path());
    return 0;
}

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    working_dir().createFile(u"Tavrel.ini"_s, QByteArray(reinterpret_cast<const char*>(data),
                                                         static_cast<qsizetype>(size)));
    MainFen window;
    window.show();
    QCoreApplication::processEvents();
    FUZZ_VERIFY(window.width() > 0 && window.height() > 0);
    for (const MyTreeWidget* pane : {window.first_pane(), window.second_pane()}) {
        FUZZ_VERIFY(!pane->job_running());
        FUZZ_VERIFY(pane->current_dir().exists());
    }
    window.writeSettings();
    return 0;
}
