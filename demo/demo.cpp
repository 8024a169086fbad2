// Shows the main window at work on sample directories and leaves pictures of it.

#include "app/mainfen.h"
#include "app/nofocusproxystyle.h"
#include "demo/sample_directories.h"
#include "dialogs/fenres.h"
#include "tree/mytreewidget.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QEventLoop>
#include <QPalette>
#include <QTextStream>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace {

QPalette dark_palette()
{
    QPalette palette(QColor(53, 53, 53));
    palette.setColor(QPalette::Base, QColor(35, 35, 35));
    palette.setColor(QPalette::AlternateBase, QColor(45, 45, 45));
    palette.setColor(QPalette::Highlight, QColor(42, 130, 218));
    palette.setColor(QPalette::Link, QColor(86, 170, 255));
    return palette;
}

/// Runs the event loop until a condition holds; gives up after half a minute.
template<class Condition>
bool wait_until(Condition condition)
{
    QEventLoop loop;
    QTimer poll;
    bool held = false;
    QObject::connect(&poll, &QTimer::timeout, &loop, [&] {
        held = condition();
        if (held) {
            loop.quit();
        }
    });
    poll.start(20);
    QTimer::singleShot(30000, &loop, &QEventLoop::quit);
    loop.exec();
    return held;
}

class Demonstration
{
  public:
    Demonstration(const QString& folder, const QString& prefix) : folder_(folder), prefix_(prefix)
    {}

    bool run()
    {
        MainFen window;
        window.resize(1180, 640);
        window.move(20, 20);
        window.show();
        window.first_pane()->changeModel(samples_.original());
        window.second_pane()->changeModel(samples_.copy());

        bool compared = false;
        QObject::connect(&window, &MainFen::alldone, [&] { compared = true; });
        trigger(window, u"Comparer Tout"_s);
        if (!wait_until([&] { return compared; })) {
            return false;
        }
        auto* results = window.findChild<FenRes*>();
        return save(window, u"main.png"_s) && results && save(*results, u"results.png"_s);
    }

  private:
    static void trigger(const MainFen& window, const QString& text)
    {
        const auto actions = window.findChildren<QAction*>();
        for (QAction* action : actions) {
            if (action->text() == text) {
                action->trigger();
                return;
            }
        }
    }

    bool save(QWidget& widget, const QString& name) const
    {
        const QString path = QDir(folder_).absoluteFilePath(prefix_ + name);
        const bool saved = widget.grab().save(path);
        QTextStream(stdout) << path << (saved ? "" : " (cannot be written)") << Qt::endl;
        return saved;
    }

    SampleDirectories samples_;
    QString folder_;
    QString prefix_;
};

} // namespace

int main(int argc, char* argv[])
{
    QApplication application(argc, argv);
    QCommandLineParser options;
    options.addHelpOption();
    options.addOption({u"output"_s, u"Folder that the pictures go to."_s, u"folder"_s, u"."_s});
    options.addOption({u"dark"_s, u"Use a dark palette."_s});
    options.process(application);

    const QString folder = QDir::current().absoluteFilePath(options.value(u"output"_s));
    QDir().mkpath(folder);
    const bool dark = options.isSet(u"dark"_s);
    QApplication::setStyle(new NoFocusProxyStyle);
    if (dark) {
        QApplication::setPalette(dark_palette());
    }
    // The window reads and writes its settings in the working directory.
    const QTemporaryDir scratch;
    QDir::setCurrent(scratch.path());
    return Demonstration(folder, dark ? u"dark-"_s : QString()).run() ? 0 : 1;
}
