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

SampleNames SampleNames::french()
{
    return {u"Photos"_s,
            u"Sauvegarde"_s,
            {u"Côte d'Azur.jpg"_s, u"Forêt.jpg"_s, u"Hiver à Québec.jpg"_s, u"Montagnes.jpg"_s,
             u"Village.jpg"_s},
            u"Lac.jpg"_s,
            u"Seulement ici.txt"_s,
            u"Nouveau.txt"_s,
            u"Plage.jpg"_s,
            u"Zone protégée.dat"_s};
}

SampleNames SampleNames::english()
{
    return {u"Photos"_s,
            u"Backup"_s,
            {u"Café on the pier.jpg"_s, u"Forest.jpg"_s, u"Harbour.jpg"_s, u"Mountains.jpg"_s,
             u"Village.jpg"_s},
            u"Lake.jpg"_s,
            u"Only here.txt"_s,
            u"New.txt"_s,
            u"Beach.jpg"_s,
            u"Protected.dat"_s};
}

SampleDirectories::SampleDirectories(const SampleNames& names) : names_(names)
{
    // The path stands in the pictures, and a short one is calmer.
    root_ = QDir::temp().filePath(u"tavrel"_s);
    if (!QDir().mkdir(root_)) {
        random_root_ = std::make_unique<QTemporaryDir>();
        root_ = random_root_->path();
    }

    quint32 seed = 0;
    for (const QString& name : names_.same) {
        const qsizetype size = 180'000 + qsizetype{421'000} * seed;
        write(original() + u'/' + name, noise(seed, size));
        write(copy() + u'/' + name, noise(seed, size));
        ++seed;
    }
    write(original() + u'/' + names_.changed, noise(98, 1'443'000));
    write(copy() + u'/' + names_.changed, noise(99, 1'443'000));
    write(original() + u'/' + names_.only_original, "a");
    write(copy() + u'/' + names_.only_copy, "b");
    for (const QString& side : {original(), copy()}) {
        write(side + u"/2024/"_s + names_.namesake, noise(40, 300'000));
        write(side + u"/2025/"_s + names_.namesake, noise(50, 310'000));
    }
    write_unreadable(original() + u'/' + names_.unreadable);
    write(copy() + u'/' + names_.unreadable, noise(60, 4000));
}

SampleDirectories::~SampleDirectories()
{
    if (!random_root_) {
        QDir(root_).removeRecursively();
    }
}

QString SampleDirectories::original() const
{
    return root_ + u'/' + names_.original;
}

QString SampleDirectories::copy() const
{
    return root_ + u'/' + names_.copy;
}

void SampleDirectories::damage_original() const
{
    write(original() + u'/' + names_.changed, noise(97, 1'443'000));
    QFile::remove(original() + u'/' + names_.same.last());
}
