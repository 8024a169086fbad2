#include "tests/stress/world.h"

#include <QCryptographicHash>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>

#include <cstdio>

#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

// Few names and few contents, so that files of both sides meet and are often alike.
const QStringList& file_names()
{
    static const QStringList names = {
        u"one.txt"_s,     u"two.txt"_s,  u"Two.TXT"_s,    u"three.jpg"_s,    u"four.dat"_s,
        u"no suffix"_s,   u"é à.txt"_s,  u"five.md5"_s,   u"six.sha1"_s,     u".hidden"_s,
        u"<b>bold.htm"_s, u"a.md5bak"_s, u"100%1 %n.x"_s, u"new\nline.txt"_s};
    return names;
}

const QStringList& directory_names()
{
    static const QStringList names = {u"alpha"_s, u"beta"_s, u"Gamma"_s, u"dir.md5"_s};
    return names;
}

// More would only make every step slower.
constexpr qsizetype most_files = 500;
constexpr int many_files = 1500;

constexpr qint64 huge_size = qint64(1) << 40;

bool same_content(const QString& a, const QString& b)
{
    QFile first(a);
    QFile second(b);
    return QFileInfo(b).isFile() && first.size() == second.size() &&
           first.open(QIODevice::ReadOnly) && second.open(QIODevice::ReadOnly) &&
           first.readAll() == second.readAll();
}

QByteArray native(const QString& path)
{
    return QFile::encodeName(path);
}

} // namespace

World::World(Dice& dice) : dice_(dice), root_(QFileInfo(directory_.path()).canonicalFilePath())
{
    for (const int size : {0, 1, 37, 4096, 0x40000, 0x40001, 900'000}) {
        for (const char fill : {'a', 'b', 'c'}) {
            contents_.append(QByteArray(size, fill));
        }
    }
    keep_sides();
    QDir().mkpath(root_ + u"/spool"_s);
    refresh();
    for (int i = 0; i < 60; ++i) {
        change();
    }
    copy_left_to_right();
}

QString World::change()
{
    static const QList<std::pair<int, Change>> changes = {
        {20, &World::write_beside_and_rename},
        {8, &World::write_in_place},
        {4, &World::append},
        {3, &World::truncate},
        {6, &World::remove_file},
        {8, &World::make_directory},
        {3, &World::remove_tree},
        {3, &World::file_becomes_directory},
        {3, &World::directory_becomes_file},
        {4, &World::link_somewhere},
        {2, &World::link_to_unreadable},
        {3, &World::put_fifo},
        {2, &World::forbid},
        {4, &World::allow},
        {6, &World::rename},
        {8, &World::write_checksum_file},
        {2, &World::put_huge_file},
        {3, &World::remove_huge_files},
        {1, &World::put_many_files},
        {10, &World::copy_left_to_right},
    };
    if (dice_.chance(30)) {
        keep_sides();
    }
    const bool crowded = files_.size() > most_files && dice_.chance(10);
    const Change next = crowded ? &World::thin_out : dice_.weigh(changes);
    const QString done = (this->*next)();
    refresh();
    return done;
}

void World::keep_sides() const
{
    QDir().mkpath(left());
    QDir().mkpath(right());
}

QString World::any_path()
{
    switch (dice_.below(10)) {
    case 0:
        return root_ + u"/nothing/at/all"_s;
    case 1:
    case 2:
    case 3:
        return any_directory();
    default:
        return any_file();
    }
}

QString World::any_directory()
{
    return dice_.pick(directories_);
}

QString World::any_file()
{
    return files_.isEmpty() ? new_path() : dice_.pick(files_);
}

QString World::any_place()
{
    QString below;
    for (int i = 0; i < 10; ++i) {
        const QString directory = any_directory();
        below = directory.mid(directory.startsWith(left()) ? left().size() : right().size());
        if (QFileInfo(left() + below).isDir() && QFileInfo(right() + below).isDir()) {
            break;
        }
    }
    return below;
}

bool World::changed_since(const QString& path, quint64 tick) const
{
    for (QString at = path; at.size() > root_.size(); at = at.left(at.lastIndexOf(u'/'))) {
        if (changed_.value(at) > tick) {
            return true;
        }
    }
    return false;
}

/// Notes that a path, and all below it, leads to something else from now on.
void World::note(const QString& path)
{
    changed_[path] = ++tick_;
    const QString canonical = QFileInfo(path).canonicalFilePath();
    if (!canonical.isEmpty() && canonical != path) {
        changed_[canonical] = tick_;
    }
}

void World::refresh()
{
    files_.clear();
    directories_ = {left(), right()};
    for (const QString& side : {left(), right()}) {
        QDirIterator it(side, QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden | QDir::System,
                        QDirIterator::Subdirectories);
        while (it.hasNext()) {
            it.next();
            const bool directory = it.fileInfo().isDir() && !it.fileInfo().isSymLink();
            (directory ? directories_ : files_).append(it.filePath());
        }
    }
}

/// Whether writing to a path stays below the root, links included.
bool World::is_ours(const QString& path) const
{
    const QFileInfo info(path);
    const QString canonical =
        info.exists() ? info.canonicalFilePath() : QFileInfo(info.path()).canonicalFilePath();
    return canonical.startsWith(root_ + u'/');
}

bool World::write(const QString& path, const QByteArray& content)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

QString World::new_path()
{
    return any_directory() + u'/' + dice_.pick(file_names());
}

QByteArray World::any_content()
{
    return dice_.pick(contents_);
}

QString World::write_beside_and_rename()
{
    const QString spool = root_ + u"/spool/"_s + QString::number(++spooled_);
    const QString path = dice_.chance(60) ? any_file() : new_path();
    note(path);
    if (!write(spool, any_content()) ||
        std::rename(native(spool).constData(), native(path).constData()) != 0) {
        QFile::remove(spool);
    }
    note(path);
    return u"written anew: "_s + path;
}

QString World::write_in_place()
{
    const QString path = any_file();
    if (QFileInfo(path).isFile() && is_ours(path)) {
        note(path);
        write(path, any_content());
    }
    return u"written in place: "_s + path;
}

QString World::append()
{
    const QString path = any_file();
    QFile file(path);
    if (QFileInfo(path).isFile() && is_ours(path) && file.size() < 10'000'000) {
        note(path);
        if (file.open(QIODevice::Append)) {
            file.write("more");
        }
    }
    return u"appended: "_s + path;
}

QString World::truncate()
{
    const QString path = any_file();
    if (QFileInfo(path).isFile() && is_ours(path)) {
        note(path);
        QFile::resize(path, QFileInfo(path).size() / 2);
    }
    return u"truncated: "_s + path;
}

QString World::remove_file()
{
    const QString path = any_file();
    note(path);
    ::unlink(native(path).constData());
    return u"removed: "_s + path;
}

QString World::make_directory()
{
    const QString path = any_directory() + u'/' + dice_.pick(directory_names());
    if (path.count(u'/') < root_.count(u'/') + 8) {
        QDir().mkdir(path);
    }
    return u"directory: "_s + path;
}

QString World::remove_tree()
{
    const QString path = any_directory();
    if (path != left() && path != right()) {
        note(path);
        QDir(path).removeRecursively();
    } else if (dice_.chance(10)) {
        // The directory that a pane shows may go, too.
        note(path);
        QDir(path).removeRecursively();
        if (dice_.chance(80)) {
            QDir().mkpath(path);
        }
    }
    return u"tree removed: "_s + path;
}

QString World::file_becomes_directory()
{
    const QString path = any_file();
    note(path);
    if (::unlink(native(path).constData()) == 0) {
        QDir().mkdir(path);
    }
    return u"now a directory: "_s + path;
}

QString World::directory_becomes_file()
{
    const QString path = any_directory();
    if (path != left() && path != right()) {
        note(path);
        QDir(path).removeRecursively();
        write(path, any_content());
    }
    return u"now a file: "_s + path;
}

QString World::link_somewhere()
{
    const QString path = new_path();
    const QString target = dice_.chance(50) ? any_directory() : any_path();
    note(path);
    ::unlink(native(path).constData());
    [[maybe_unused]] const int made =
        ::symlink(native(target).constData(), native(path).constData());
    note(path);
    return u"link: "_s + path + u" to "_s + target;
}

// To whom permissions mean nothing, this is a file that exists and cannot be opened.
QString World::link_to_unreadable()
{
    const QString path = new_path();
    note(path);
    ::unlink(native(path).constData());
    [[maybe_unused]] const int made =
        ::symlink("/proc/sys/vm/compact_memory", native(path).constData());
    return u"unreadable: "_s + path;
}

QString World::put_fifo()
{
    const QString path = any_file();
    note(path);
    if (::unlink(native(path).constData()) == 0) {
        ::mkfifo(native(path).constData(), 0600);
    }
    return u"pipe: "_s + path;
}

QString World::forbid()
{
    const QString path = dice_.chance(70) ? any_file() : any_directory();
    if (!QFileInfo(path).isSymLink()) {
        note(path);
        ::chmod(native(path).constData(), 0);
    }
    return u"forbidden: "_s + path;
}

QString World::allow()
{
    for (const QString& path : directories_ + files_) {
        if (!QFileInfo(path).isSymLink() && !QFileInfo(path).isReadable()) {
            note(path);
            ::chmod(native(path).constData(), 0700);
        }
    }
    return u"everything allowed"_s;
}

QString World::rename()
{
    const QString from = dice_.chance(60) ? any_file() : any_directory();
    const QString to = new_path();
    if (from != left() && from != right()) {
        note(from);
        note(to);
        std::rename(native(from).constData(), native(to).constData());
        note(to);
    }
    return u"renamed: "_s + from + u" to "_s + to;
}

/// A checksum file for the files beside it, right for most of them.
QString World::write_checksum_file()
{
    const QDir directory(any_directory());
    const bool md5 = dice_.chance(50);
    const QString path = directory.filePath(md5 ? u"five.md5"_s : u"six.sha1"_s);
    QByteArray text = "# a comment\n\n";
    for (const QFileInfo& info : directory.entryInfoList(QDir::Files)) {
        QFile file(info.filePath());
        if (!info.isFile() || info.size() > 2'000'000 || !file.open(QIODevice::ReadOnly)) {
            continue;
        }
        QByteArray content = file.readAll();
        if (dice_.chance(10)) {
            content += '!';
        }
        const auto algorithm = md5 ? QCryptographicHash::Md5 : QCryptographicHash::Sha1;
        text += QCryptographicHash::hash(content, algorithm).toHex() + "  " +
                info.fileName().toUtf8() + '\n';
    }
    const QFileInfo target(path);
    if ((!target.exists() || target.isFile()) && is_ours(path)) {
        note(path);
        write(path, text);
    }
    return u"checksum file: "_s + path;
}

QString World::put_huge_file()
{
    const QString path = any_directory() + u"/huge.dat"_s;
    if (!QFileInfo(path).exists() && is_ours(path) && write(path, {})) {
        note(path);
        QFile::resize(path, huge_size);
    }
    return u"huge: "_s + path;
}

QString World::remove_huge_files()
{
    for (const QString& path : std::as_const(files_)) {
        if (path.endsWith("/huge.dat"_L1)) {
            note(path);
            QFile::remove(path);
        }
    }
    return u"huge files removed"_s;
}

/// So many that listing them takes the time in which a person does something else.
QString World::put_many_files()
{
    const QString directory = any_directory();
    const QString spool = root_ + u"/spool/many"_s;
    if (is_ours(directory + u"/n"_s) && write(spool, contents_[3])) {
        for (int i = 0; i < many_files; ++i) {
            const QString path = directory + u"/n%1.bin"_s.arg(i);
            note(path);
            ::link(native(spool).constData(), native(path).constData());
        }
    }
    return u"many files: "_s + directory;
}

QString World::thin_out()
{
    for (const QString& path : std::as_const(files_)) {
        if (path.endsWith(".bin"_L1)) {
            note(path);
            QFile::remove(path);
        }
    }
    if (dice_.chance(30)) {
        remove_tree();
    }
    return u"thinned out"_s;
}

/// Makes the sides alike, so that there is something to be green.
QString World::copy_left_to_right()
{
    refresh();
    for (const QString& path : std::as_const(files_)) {
        const QFileInfo info(path);
        if (!path.startsWith(left() + u'/') || !info.isFile() || info.isSymLink() ||
            info.size() > 2'000'000) {
            continue;
        }
        const QString copy = right() + path.mid(left().size());
        QDir().mkpath(QFileInfo(copy).path());
        if (is_ours(copy) && !QFileInfo(copy).isDir() && !same_content(path, copy)) {
            note(copy);
            QFile::remove(copy);
            QFile::copy(path, copy);
            note(copy);
        }
    }
    return u"left copied to right"_s;
}
