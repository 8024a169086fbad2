#include "bench/data.h"

#include <QCryptographicHash>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QRandomGenerator>

#include <unistd.h>

#include <algorithm>
#include <vector>

using namespace Qt::StringLiterals;

namespace bench {

namespace {

constexpr qsizetype small_size = 4096;
constexpr qsizetype block_size = 0x100000;

QByteArray noise(quint32 seed, qsizetype size)
{
    std::vector<quint32> words(static_cast<size_t>(size) / sizeof(quint32));
    QRandomGenerator random(seed);
    random.fillRange(words.data(), static_cast<qsizetype>(words.size()));
    return {reinterpret_cast<const char*>(words.data()), size};
}

void write(QFile& file, const QByteArray& bytes)
{
    if (file.write(bytes) != bytes.size()) {
        qFatal("cannot write %s: %s", qPrintable(file.fileName()), qPrintable(file.errorString()));
    }
}

void create(QFile& file)
{
    if (!file.open(QIODevice::WriteOnly)) {
        qFatal("cannot create %s", qPrintable(file.fileName()));
    }
}

QString small_file_name(int number)
{
    return u"photo-%1.jpg"_s.arg(number, 6, 10, QChar(u'0'));
}

void write_small_file(const QString& directory, int number)
{
    QFile file(directory + u'/' + small_file_name(number));
    create(file);
    write(file, noise(static_cast<quint32>(number), small_size));
}

void write_large_file(const QString& path, qint64 bytes)
{
    QFile file(path);
    create(file);
    QByteArray block = noise(1, block_size);
    for (qint64 at = 0; at < bytes; at += block_size) {
        // no block like another
        std::copy_n(reinterpret_cast<const char*>(&at), sizeof(at), block.begin());
        write(file, block.left(std::min<qint64>(block_size, bytes - at)));
    }
}

} // namespace

Data::Data(const QString& folder) : folder_(QDir(folder).absolutePath())
{}

QString Data::nested_name()
{
    return u"album"_s;
}

QString Data::list_name()
{
    return u"photos.md5"_s;
}

template<class Fill>
QString Data::make_once(const QString& name, Fill fill) const
{
    const QString directory = folder_ + u'/' + name;
    QFile complete(directory + u".complete"_s);
    if (!complete.exists()) {
        QDir(directory).removeRecursively();
        QDir().mkpath(directory);
        fill(directory);
        // Nothing may still be on its way to the disk while the clock runs.
        ::sync();
        create(complete);
    }
    return directory;
}

QString Data::large(qint64 bytes, QChar copy) const
{
    return make_once(u"large-%1-%2"_s.arg(bytes).arg(copy), [&](const QString& directory) {
        write_large_file(directory + u"/film.mkv"_s, bytes);
    });
}

QString Data::flat(int files, QChar copy) const
{
    return make_once(u"flat-%1-%2"_s.arg(files).arg(copy), [&](const QString& directory) {
        for (int i = 0; i < files; ++i) {
            write_small_file(directory, i);
        }
    });
}

QString Data::nested(int files, int directories) const
{
    return make_once(u"nested-%1-%2"_s.arg(files).arg(directories), [&](const QString& directory) {
        for (int i = 0; i < files; ++i) {
            const QString day = u"%1/%2/day-%3"_s.arg(directory, nested_name())
                                    .arg(i % directories, 4, 10, QChar(u'0'));
            if (i < directories) {
                QDir().mkpath(day);
            }
            write_small_file(day, i);
        }
    });
}

QString Data::listed(int files) const
{
    return make_once(u"listed-%1"_s.arg(files), [&](const QString& directory) {
        QFile list(directory + u'/' + list_name());
        create(list);
        for (int i = 0; i < files; ++i) {
            const QByteArray bytes = noise(static_cast<quint32>(i), small_size);
            const QByteArray digest = QCryptographicHash::hash(bytes, QCryptographicHash::Md5);
            write_small_file(directory, i);
            write(list, digest.toHex() + "  " + small_file_name(i).toUtf8() + '\n');
        }
    });
}

QString Data::empty(QChar copy) const
{
    return make_once(u"empty-%1"_s.arg(copy), [](const QString&) {});
}

QStringList files_below(const QString& directory)
{
    QStringList files;
    QDirIterator it(directory, QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        files.append(it.next());
    }
    files.sort();
    return files;
}

} // namespace bench
