#include "bench/peers.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <vector>

using namespace Qt::StringLiterals;

namespace bench {

namespace {

/// Unlike a fork, this does not copy the page tables of a process that may hold a large window.
pid_t spawn(const QStringList& command)
{
    std::vector<QByteArray> words;
    for (const QString& word : command) {
        words.push_back(QFile::encodeName(word));
    }
    std::vector<char*> arguments;
    arguments.reserve(words.size() + 1);
    for (QByteArray& word : words) {
        arguments.push_back(word.data());
    }
    arguments.push_back(nullptr);

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    pid_t pid = 0;
    const int error =
        posix_spawnp(&pid, arguments.front(), &actions, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    return error == 0 ? pid : 0;
}

} // namespace

double run_timed(const QStringList& command)
{
    QElapsedTimer clock;
    clock.start();
    const pid_t pid = spawn(command);
    int status = -1;
    const bool ended = pid > 0 && ::waitpid(pid, &status, 0) == pid;
    const auto nanoseconds = clock.nsecsElapsed();
    if (!ended || !WIFEXITED(status) || WEXITSTATUS(status) != 0) {
        qFatal("this program failed: %s", qPrintable(command.join(u' ')));
    }
    return static_cast<double>(nanoseconds) / 1e9;
}

QStringList command_over(const QStringList& program, const QStringList& files,
                         const QString& list_file)
{
    QFile list(list_file);
    if (!list.open(QIODevice::WriteOnly)) {
        qFatal("cannot write %s", qPrintable(list_file));
    }
    for (const QString& file : files) {
        list.write(QFile::encodeName(file) + '\0');
    }
    return QStringList{u"xargs"_s, u"-0"_s, u"-a"_s, list_file, u"-s"_s, u"2000000"_s} + program;
}

Peer md5sum(const QStringList& files, std::optional<double> aim)
{
    const QString list_file = QDir::current().filePath(u"files.list"_s);
    const QStringList command = command_over({u"md5sum"_s}, files, list_file);
    return {u"`md5sum`"_s, [command] { return run_timed(command); }, aim};
}

Peer hashdeep(const QStringList& directories)
{
    const QStringList command = QStringList{u"hashdeep"_s, u"-c"_s, u"md5"_s, u"-r"_s}
                                << directories;
    return {u"`hashdeep -c md5 -r`"_s, [command] { return run_timed(command); }, {}};
}

} // namespace bench
