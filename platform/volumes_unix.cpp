#include "platform/volumes.h"

#include <QDir>
#include <QFileInfo>
#include <QSet>
#include <QStorageInfo>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace platform {

namespace {

/// Mount points that hold the system's own machinery and nothing that a person put there.
bool is_machinery(const QString& mount_point)
{
    static const QStringList trees = {u"/boot"_s, u"/dev"_s,  u"/etc"_s,  u"/proc"_s, u"/run"_s,
                                      u"/snap"_s, u"/sys"_s,  u"/usr"_s,  u"/var"_s,  u"/lib"_s,
                                      u"/bin"_s,  u"/sbin"_s, u"/lib64"_s};
    // Desktops mount what a person plugs in below /run/media.
    if (mount_point.startsWith("/run/media/"_L1)) {
        return false;
    }
    return std::any_of(trees.begin(), trees.end(), [&](const QString& tree) {
        return mount_point == tree || mount_point.startsWith(tree + u'/');
    });
}

/// File systems that keep nothing on a medium.
bool is_pseudo(const QStorageInfo& storage)
{
    static const QSet<QByteArray> types = {
        "autofs",     "binfmt_misc", "cgroup", "cgroup2", "devpts",  "devtmpfs",
        "efivarfs",   "hugetlbfs",   "mqueue", "nsfs",    "proc",    "ramfs",
        "securityfs", "squashfs",    "sysfs",  "tracefs", "overlay", "tmpfs"};
    return types.contains(storage.fileSystemType());
}

bool is_recognisable(const QStorageInfo& storage)
{
    const QString root = storage.rootPath();
    return storage.isValid() && QFileInfo(root).isDir() && !is_machinery(root) &&
           !is_pseudo(storage);
}

QString label_of(const QStorageInfo& storage)
{
    return QString::fromUtf8(storage.name().toUtf8()).trimmed();
}

/// The path itself, or its nearest ancestor that exists.
QString nearest_existing(QString path)
{
    while (!QFileInfo::exists(path) && path != "/"_L1) {
        path = QFileInfo(path).path();
    }
    return path;
}

} // namespace

void never_ask_for_media()
{}

QList<Volume> volumes()
{
    // The root directory counts whatever it lies on: without it nothing could be reached.
    QList<Volume> found{{u"/"_s, {}}};
    for (const QStorageInfo& storage : QStorageInfo::mountedVolumes()) {
        if (storage.rootPath() == "/"_L1) {
            found.first().label = label_of(storage);
        } else if (is_recognisable(storage)) {
            found.append({storage.rootPath(), label_of(storage)});
        }
    }
    std::sort(found.begin() + 1, found.end(),
              [](const Volume& a, const Volume& b) { return a.root < b.root; });
    const auto same_root = [](const Volume& a, const Volume& b) { return a.root == b.root; };
    found.erase(std::unique(found.begin(), found.end(), same_root), found.end());
    return found;
}

QString volume_label(const QString& root)
{
    const QStorageInfo storage(root);
    return storage.isValid() ? label_of(storage) : QString();
}

QString volume_entry(const Volume& volume)
{
    const QString root = u'(' + volume.root + u')';
    return volume.label.isEmpty() ? root : volume.label + u' ' + root;
}

QString root_of_entry(const QString& entry)
{
    // A label may hold anything, parentheses and paths included; the mount point comes last.
    const bool unlabelled = entry.startsWith("(/"_L1) && !entry.contains(") (/"_L1);
    const qsizetype open = unlabelled ? 0 : entry.lastIndexOf(" (/"_L1) + 1;
    const bool named = entry.sliced(open).startsWith("(/"_L1) && entry.endsWith(u')');
    return named ? entry.sliced(open + 1).chopped(1) : QString();
}

QString root_of_path(const QString& path)
{
    if (!QDir::isAbsolutePath(path)) {
        return {};
    }
    const QStorageInfo storage(nearest_existing(QDir::cleanPath(path)));
    return storage.isValid() ? storage.rootPath() : u"/"_s;
}

QStringList fallback_roots(const QString& text)
{
    // A label may look like a path.
    return {root_of_entry(text), root_of_path(text)};
}

qsizetype find_entry(const QStringList& entries, const QString& canonical_path)
{
    // By the path's own text: asking the system may take long on a drive that does not answer.
    qsizetype best = -1;
    qsizetype best_length = 0;
    for (qsizetype i = 0; i < entries.size(); ++i) {
        const QString root = root_of_entry(entries[i]);
        const QString prefix = root.endsWith(u'/') ? root : root + u'/';
        const bool holds = !root.isEmpty() && (canonical_path + u'/').startsWith(prefix);
        if (holds && root.size() > best_length) {
            best = i;
            best_length = root.size();
        }
    }
    return best;
}

} // namespace platform
