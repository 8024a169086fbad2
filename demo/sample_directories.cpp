#include "demo/sample_directories.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>

using namespace Qt::StringLiterals;

namespace {

QByteArray noise(quint32 seed, qsizetype size)
{
    QByteArray bytes(size, '\0');
    QRandomGenerator random(seed);
    for (char& byte : bytes) {
        byte = static_cast<char>(random.bounded(256));
    }
    return bytes;
}

void write(const QString& path, const QByteArray& content)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    if (file.open(QIODevice::WriteOnly)) {
        file.write(content);
    }
}

/// To root every file is readable but those that the system itself keeps closed.
void write_unreadable(const QString& path)
{
    write(path, "secret");
    QFile::setPermissions(path, {});
    QFile file(path);
    if (file.open(QIODevice::ReadOnly)) {
        file.remove();
        QFile::link(u"/proc/sys/vm/compact_memory"_s, path);
    }
}

} // namespace

SampleDirectories::SampleDirectories()
{
    constexpr quint32 changed = 3;
    const QStringList names = {u"Côte d'Azur.jpg"_s, u"Forêt.jpg"_s,     u"Hiver à Québec.jpg"_s,
                               u"Lac.jpg"_s,         u"Montagnes.jpg"_s, u"Village.jpg"_s};
    for (quint32 i = 0; i < static_cast<quint32>(names.size()); ++i) {
        const auto size = static_cast<qsizetype>(180'000 + 421'000 * i);
        write(original() + u'/' + names[i], noise(i, size));
        write(copy() + u'/' + names[i], noise(i == changed ? 99 : i, size));
    }
    write(original() + u"/Seulement ici.txt"_s, "a");
    write(copy() + u"/Nouveau.txt"_s, "b");
    for (const QString& side : {original(), copy()}) {
        write(side + u"/2024/Plage.jpg"_s, noise(40, 300'000));
        write(side + u"/2025/Plage.jpg"_s, noise(50, 310'000));
    }
    write_unreadable(original() + u"/Zone protégée.dat"_s);
    write(copy() + u"/Zone protégée.dat"_s, noise(60, 4000));
}
