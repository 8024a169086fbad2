// Random use of the real main window over a changing tree of real files.
//
//     stress [--seed N] [--steps N]
//
// A run that finds something prints its seed, the step and the last acts, and fails. Threads and
// clocks have their say in a run, so the same seed leads to much the same run, not to the very
// same.

#include "app/nofocusproxystyle.h"
#include "tests/stress/judge.h"
#include "tests/stress/user.h"
#include "tests/stress/world.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTest>

#include <atomic>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <thread>

using namespace Qt::StringLiterals;

// Present when the program is built with a sanitizer.
extern "C" __attribute__((weak)) void __sanitizer_set_death_callback(void (*callback)());

namespace {

constexpr int default_seed = 1;
constexpr int default_steps = 1500;

// Between two quiet moments.
constexpr int longest_bustle = 16;

// Much more than anything here takes, even on a machine that has other things to do.
constexpr int patience_ms = 120'000;

int seed = default_seed;
std::atomic_int step = 0;

void print_place()
{
    std::fprintf(stderr, "stress: seed %d, step %d\n", seed, step.load());
}

/// A home, a working directory and a search path that hold nothing but ours, so that whatever the
/// program writes or starts stays in here.
class Surroundings
{
  public:
    Surroundings()
    {
        const QString home = directory_.filePath(u"home"_s);
        const QString tools = directory_.filePath(u"tools"_s);
        QDir().mkpath(home);
        QDir().mkpath(tools);
        for (const QString& tool : {u"dbus-send"_s, u"xdg-open"_s}) {
            QFile file(tools + u'/' + tool);
            if (file.open(QIODevice::WriteOnly)) {
                file.write("#!/bin/sh\nexit 0\n");
                file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
            }
        }
        qputenv("HOME", QFile::encodeName(home));
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(home + u"/.config"_s));
        qputenv("XDG_DATA_HOME", QFile::encodeName(home + u"/.local/share"_s));
        qputenv("XDG_CACHE_HOME", QFile::encodeName(home + u"/.cache"_s));
        qputenv("PATH", QFile::encodeName(tools));
        qputenv("QT_QPA_PLATFORM", "offscreen");
        QDir::setCurrent(home);
    }

  private:
    QTemporaryDir directory_;
};

/// Ends the program, with a trace of it if a sanitizer or debugger is there, when no step is made
/// for a long time.
class Watchdog
{
  public:
    ~Watchdog()
    {
        {
            const std::lock_guard lock(mutex_);
            over_ = true;
        }
        wake_.notify_one();
        thread_.join();
    }

  private:
    void watch()
    {
        std::unique_lock lock(mutex_);
        int seen = -1;
        while (
            !wake_.wait_for(lock, std::chrono::milliseconds(patience_ms), [&] { return over_; })) {
            if (seen == step.load()) {
                print_place();
                std::fputs("stress: hangs\n", stderr);
                std::abort();
            }
            seen = step.load();
        }
    }

    std::mutex mutex_;
    std::condition_variable wake_;
    bool over_ = false;
    std::thread thread_{[this] { watch(); }};
};

class Run
{
  public:
    Run()
        : dice_(static_cast<quint32>(seed)), world_(dice_), user_(dice_, world_),
          judge_(user_, world_)
    {}

    bool play(int steps)
    {
        int bustle = longest_bustle;
        for (step = 1; step <= steps; ++step) {
            remember(dice_.chance(35) ? world_.change() : user_.act());
            QTest::qWait(dice_.chance(20) ? dice_.below(20) : 0);
            judge_.judge_work();
            const bool quiet = --bustle <= 0 || step == steps;
            if (quiet) {
                bustle = 1 + dice_.below(longest_bustle);
            }
            if ((quiet && !judge_quiet_moment()) || !report(judge_.take_findings())) {
                return false;
            }
        }
        std::printf("stress: seed %d, %d steps: %s\n", seed, steps, qPrintable(judge_.summary()));
        return true;
    }

  private:
    bool judge_quiet_moment()
    {
        QElapsedTimer waited;
        waited.start();
        const bool rest = QTest::qWaitFor(
            [&] {
                if (dice_.chance(3) || waited.hasExpired(2000)) {
                    user_.calm_down();
                }
                return user_.at_rest();
            },
            patience_ms);
        // What the ends of jobs and dialogs sent on their way arrives, and may start something.
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents();
        if (!rest) {
            return report({u"does not come to rest"_s});
        }
        if (user_.at_rest()) {
            judge_.judge_quiet_moment();
        }
        user_.let_announcement_pass();
        return true;
    }

    void remember(const QString& act)
    {
        acts_.append(act);
        if (acts_.size() > 40) {
            acts_.removeFirst();
        }
        if (qEnvironmentVariableIsSet("STRESS_VERBOSE")) {
            std::fprintf(stderr, "%d: %s\n", step.load(), qPrintable(act));
        }
    }

    bool report(const QStringList& findings)
    {
        if (findings.isEmpty()) {
            return true;
        }
        print_place();
        std::fprintf(stderr, "stress: %s\nstress: before that:\n    %s\n",
                     qPrintable(findings.join(u"\nstress: "_s)),
                     qPrintable(acts_.join(u"\n    "_s)));
        return false;
    }

    Dice dice_;
    World world_;
    User user_;
    Judge judge_;
    QStringList acts_;
};

} // namespace

int main(int argc, char* argv[])
{
    const Surroundings surroundings;
    // The window would take arguments for paths.
    int shown_argc = 1;
    const QStringList arguments = [&] {
        QStringList list;
        for (int i = 0; i < argc; ++i) {
            list.append(QString::fromLocal8Bit(argv[i]));
        }
        return list;
    }();
    QApplication application(shown_argc, argv);
    QApplication::setStyle(new NoFocusProxyStyle);
    // Windows come and go.
    QApplication::setQuitOnLastWindowClosed(false);

    QCommandLineParser parser;
    parser.addHelpOption();
    parser.addOption({u"seed"_s, u"Which run"_s, u"N"_s, QString::number(default_seed)});
    parser.addOption({u"steps"_s, u"How long"_s, u"N"_s, QString::number(default_steps)});
    parser.process(arguments);
    seed = parser.value(u"seed"_s).toInt();
    if (__sanitizer_set_death_callback) {
        __sanitizer_set_death_callback(print_place);
    }

    const Watchdog watchdog;
    return Run().play(parser.value(u"steps"_s).toInt()) ? EXIT_SUCCESS : EXIT_FAILURE;
}
