// Writes checksum files: one beside each selected file, or one for the directory shown.
//
// Both commands run twice. The first run, from one of the pane's actions, arms the digest map and
// launches a job; the second, when the job is over, writes what the job left in the map.

#include "app/product.h"
#include "engine/checksum_file.h"
#include "tree/mytreewidget.h"
#include "tree/pane_row.h"
#include "tree/selection.h"

#include <QMessageBox>
#include <QRegularExpression>

#include <iterator>

using namespace Qt::StringLiterals;

namespace {

/// Carries the directory from the first run to the second; no file has such a path.
const QString& directory_key()
{
    static const QString key = u"MyTreeWidget_PATH"_s;
    return key;
}

/// Whether an entry of the map stands for a file. A command given while a job runs may find the
/// map armed by another.
bool is_file_key(const QString& key)
{
    return !key.startsWith("MyTreeWidget_"_L1);
}

/// Present in the map, not yet digested.
const QString& not_digested()
{
    static const QString text = u""_s;
    return text;
}

QString extension(QCryptographicHash::Algorithm algorithm)
{
    return algorithm == QCryptographicHash::Md5 ? u".md5"_s : u".sha1"_s;
}

/// Whether a line can be made of an entry of the map. The job that was running when the command was
/// given may compute by the other algorithm; its digests would call good files damaged.
bool is_writable(const QString& path, const QString& digest,
                 QCryptographicHash::Algorithm algorithm)
{
    return is_file_key(path) && digest.size() == 2 * QCryptographicHash::hashLength(algorithm);
}

QString header_lines()
{
    return MyTreeWidget::tr("# Fichier créé avec Tavrel\n") +
           MyTreeWidget::tr(product::checksum_header);
}

QString with_slash(const QString& directory)
{
    return directory.endsWith(u'/') ? directory : directory + u'/';
}

/// Name of a directory's checksum file, without extension. A drive root has no name of its own.
QString directory_file_stem(const QString& directory)
{
    static const QRegularExpression root_characters(u":|/"_s);
    const QString name = QDir(directory).dirName();
    return name.isEmpty() ? QString(directory).remove(root_characters) : name;
}

} // namespace

void MyTreeWidget::cc_file()
{
    if (sender() == act_md5_file || sender() == act_sha1_file) {
        arm_file_writer();
    } else {
        write_file_checksums();
    }
}

void MyTreeWidget::arm_file_writer()
{
    if (refused_while_listing()) {
        return;
    }
    digests.clear();
    for (const QTreeWidgetItem* row : selected_rows(*this)) {
        if (row->type() == TypeFile) {
            digests.insert(path_of(*row), not_digested());
        }
    }
    connect(&job_watcher, &QFutureWatcherBase::finished, this, &MyTreeWidget::cc_file);
    HashThis();
}

void MyTreeWidget::write_file_checksums()
{
    const QMap<QString, QString> digested = digests;
    QString name;
    for (const auto& [path, digest] : digested.asKeyValueRange()) {
        if (!is_writable(path, digest, algo)) {
            continue;
        }
        const QFileInfo file(path);
        name = file.fileName() + extension(algo);
        const QString directory = QFileInfo(file.path()).canonicalFilePath();
        if (directory.isEmpty()) {
            report_not_created(name); // gone meanwhile; without it this would be a file of the root
            continue;
        }
        const QString target = with_slash(directory) + name;
        if (QFileInfo::exists(target)) {
            continue;
        }
        const QString text = header_lines() + engine::checksum_line(digest, file.fileName());
        if (!engine::write_checksum_file(target, text, engine::Replace::No)) {
            report_not_created(name);
        }
    }
    digests.clear();
    disconnect(&job_watcher, &QFutureWatcherBase::finished, this, &MyTreeWidget::cc_file);
    update_view(name);
}

void MyTreeWidget::cc_all_file()
{
    if (sender() == act_md5_dir_file || sender() == act_sha1_dir_file) {
        arm_directory_writer();
    } else {
        write_directory_checksums();
    }
}

void MyTreeWidget::arm_directory_writer()
{
    if (refused_while_listing()) {
        return;
    }
    add_checksum_suffixes();
    digests.clear();
    // These only arm the map; the job adds the files under their full paths.
    for (auto i = static_cast<int>(first_content_row()); i < topLevelItemCount(); ++i) {
        if (topLevelItem(i)->type() == TypeFile) {
            digests.insert(name_of(*topLevelItem(i)), not_digested());
        }
    }
    digests.insert(directory_key(), dir.canonicalPath());
    connect(&job_watcher, &QFutureWatcherBase::finished, this, &MyTreeWidget::cc_all_file);
    job_items.clear();
    HashDir();
}

void MyTreeWidget::write_directory_checksums()
{
    if (!digests.contains(directory_key())) {
        return; // left connected by a run that failed: the map is not ours
    }
    QString body;
    const QMap<QString, QString> digested = digests;
    for (const auto& [path, digest] : digested.asKeyValueRange()) {
        if (is_writable(path, digest, algo)) {
            body += engine::checksum_line(digest, QFileInfo(path).fileName());
        }
    }
    const QString directory = digests.take(directory_key());
    if (digests.isEmpty()) {
        return;
    }
    const QString name = directory_file_stem(directory) + extension(algo);
    // A directory that was gone when the command was given has no path.
    if (directory.isEmpty() ||
        !engine::write_checksum_file(with_slash(directory) + name, header_lines() + body,
                                     engine::Replace::Yes)) {
        report_not_created(name);
        return;
    }
    digests.clear();
    disconnect(&job_watcher, &QFutureWatcherBase::finished, this, &MyTreeWidget::cc_all_file);
    remove_checksum_suffixes();
    update_view(name);
}

void MyTreeWidget::report_not_created(const QString& name)
{
    QMessageBox::critical(this, tr("Impossible de créer le fichier"),
                          tr("Impossible de créer le fichier %1").arg(name), QMessageBox::Ok);
}

// Checksum files are never taken as data while checksum files are written or verified.
void MyTreeWidget::add_checksum_suffixes()
{
    exclusions << u"sha1"_s << u"md5"_s;
}

void MyTreeWidget::remove_checksum_suffixes()
{
    exclusions.removeOne(u"sha1"_s);
    exclusions.removeOne(u"md5"_s);
}
