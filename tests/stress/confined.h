#pragma once

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <grp.h>
#include <sys/prctl.h>
#include <unistd.h>

/// A place for a program that acts by chance, made before anything else: from then on its home, its
/// temporary and working directories are in there, it finds no program to start, and whoever
/// started it as root, it has no right to anything else.
class Confined final
{
  public:
    Confined()
    {
        constexpr uid_t nobody = 65534;
        if (::geteuid() == 0 &&
            (::chown(QFile::encodeName(place_.path()).constData(), nobody, nobody) != 0 ||
             ::setgroups(0, nullptr) != 0 || ::setresgid(nobody, nobody, nobody) != 0 ||
             ::setresuid(nobody, nobody, nobody) != 0 || ::setuid(0) == 0)) {
            qFatal("cannot give up the rights of root");
        }
        ::prctl(PR_SET_DUMPABLE, 1); // or it could not look at its own open files
        for (const char* name : {"HOME", "TMPDIR", "XDG_CONFIG_HOME", "XDG_DATA_HOME",
                                 "XDG_CACHE_HOME", "XDG_RUNTIME_DIR", "PATH"}) {
            qputenv(name, QFile::encodeName(place_.path()));
        }
        qputenv("QT_QPA_PLATFORM", "offscreen");
        QDir::setCurrent(place_.path());
    }

    /// Whether a path, with all its links, leads to something in the place.
    bool holds(const QString& path) const
    {
        const QString real = QFileInfo(path).canonicalFilePath();
        const QString above = QFileInfo(QFileInfo(path).path()).canonicalFilePath() + u'/';
        const QString place = QFileInfo(place_.path()).canonicalFilePath() + u'/';
        return (real.isEmpty() ? above : real).startsWith(place);
    }

  private:
    QTemporaryDir place_;
};
