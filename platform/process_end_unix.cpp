#include "platform/process_end.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <array>
#include <csignal>
#include <cstdlib>

#include <fcntl.h>
#include <unistd.h>

namespace platform {

namespace {

// A signal handler may do little more than write a byte; the event loop hears of it by the pipe.
std::array<int, 2> signal_pipe = {-1, -1};

void on_signal(int /*number*/)
{
    const char byte = 1;
    [[maybe_unused]] const auto written = ::write(signal_pipe[1], &byte, 1);
}

} // namespace

void end_process(int exit_code)
{
    std::_Exit(exit_code);
}

void quit_on_system_request(std::function<void()> quit)
{
    if (::pipe(signal_pipe.data()) != 0) {
        return;
    }
    for (const int end : signal_pipe) {
        ::fcntl(end, F_SETFD, FD_CLOEXEC);
        ::fcntl(end, F_SETFL, O_NONBLOCK);
    }
    auto* notifier =
        new QSocketNotifier(signal_pipe[0], QSocketNotifier::Read, QCoreApplication::instance());
    QObject::connect(notifier, &QSocketNotifier::activated, notifier, [quit = std::move(quit)] {
        char byte = 0;
        [[maybe_unused]] const auto got = ::read(signal_pipe[0], &byte, 1);
        quit();
    });
    struct sigaction action = {};
    action.sa_handler = on_signal;
    action.sa_flags = SA_RESTART;
    for (const int number : {SIGTERM, SIGINT, SIGHUP}) {
        ::sigaction(number, &action, nullptr);
    }
}

} // namespace platform
