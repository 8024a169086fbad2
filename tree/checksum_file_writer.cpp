#include "tree/checksum_file_writer.h"

#include "engine/checksum_file.h"
#include "engine/exclusions.h"
#include "engine/product.h"
#include "rows/pane_row.h"
#include "rows/selection.h"
#include "tree/background.h"
#include "tree/digest_recorder.h"
#include "tree/directory_navigator.h"
#include "tree/hash_job_controller.h"
#include "tree/mytreewidget.h"
#include "tree/pane_host.h"

#include <QMessageBox>
#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace {

QString extension(QCryptographicHash::Algorithm algorithm)
{
    return algorithm == QCryptographicHash::Md5 ? u".md5"_s : u".sha1"_s;
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

QString body_lines(const QMap<QString, QString>& digests)
{
    QString body;
    for (const auto& [path, digest] : digests.asKeyValueRange()) {
        body += engine::checksum_line(digest, QFileInfo(path).fileName());
    }
    return body;
}

} // namespace

void ChecksumFileWriter::begin_files()
{
    if (pane_.navigator().is_listing()) {
        pane_.host().release_algorithm();
        return;
    }
    recorder_.clear();
    const QList<QTreeWidgetItem*> rows = selected_rows(pane_);
    for (const QTreeWidgetItem* row : rows) {
        if (row->type() == TypeFile) {
            recorder_.expect(place_of(*row, pane_.shown_directory()));
        }
    }
    QObject::connect(&pane_.job_watcher, &QFutureWatcherBase::finished, &pane_,
                     &MyTreeWidget::cc_file);
    jobs_.hash_selection();
}

void ChecksumFileWriter::finish_files()
{
    const DigestRecorder::Digests digests = recorder_.digests();
    const bool any_digest = recorder_.has_digests();
    recorder_.clear();
    QObject::disconnect(&pane_.job_watcher, &QFutureWatcherBase::finished, &pane_,
                        &MyTreeWidget::cc_file);
    if (!any_digest) {
        pane_.list_anew_and_select({});
        return;
    }
    jobs_.occupy();
    stop_ = std::stop_source();
    run_in_background(
        &pane_,
        [digests, suffix = extension(recorder_.algorithm()), header = header_lines(),
         stop = stop_.get_token()] {
            return write_files(DigestRecorder::in_path_order(digests), suffix, header, stop);
        },
        [this](const Outcome& outcome) { end_files(outcome); });
}

ChecksumFileWriter::Outcome ChecksumFileWriter::write_files(const QMap<QString, QString>& digests,
                                                            const QString& extension,
                                                            const QString& header,
                                                            const std::stop_token& stop)
{
    Outcome outcome;
    QString parent; // of the file before, most often of the next one too
    QString directory;
    for (const auto& [path, digest] : digests.asKeyValueRange()) {
        if (stop.stop_requested()) {
            break;
        }
        const QFileInfo file(path);
        const QString name = file.fileName() + extension;
        outcome.last_name = name;
        // Gone meanwhile; without its directory this would be a file of the root.
        if (file.path() != parent) {
            parent = file.path();
            directory = QFileInfo(parent).canonicalFilePath();
        }
        const QString target = with_slash(directory) + name;
        if (!directory.isEmpty() && QFileInfo::exists(target)) {
            continue;
        }
        const QString text = header + engine::checksum_line(digest, file.fileName());
        if (directory.isEmpty() ||
            !engine::write_checksum_file(target, text, engine::Replace::No)) {
            outcome.not_created.append(name);
        }
    }
    return outcome;
}

void ChecksumFileWriter::end_files(const Outcome& outcome)
{
    jobs_.release();
    pane_.host().release_algorithm();
    for (const QString& name : outcome.not_created) {
        report_not_created(name);
    }
    pane_.list_anew_and_select(outcome.last_name);
}

void ChecksumFileWriter::begin_directory()
{
    if (pane_.navigator().is_listing()) {
        pane_.host().release_algorithm();
        return;
    }
    engine::exclude_checksum_files(pane_.exclusions);
    recorder_.clear();
    // These only arm the recorder; the job adds the files under their full paths.
    const QList<QTreeWidgetItem*> rows = content_rows(pane_);
    for (const QTreeWidgetItem* row : rows) {
        if (row->type() == TypeFile) {
            recorder_.expect(name_of(*row));
        }
    }
    recorder_.set_directory(pane_.navigator().canonical_path());
    QObject::connect(&pane_.job_watcher, &QFutureWatcherBase::finished, &pane_,
                     &MyTreeWidget::cc_all_file);
    pane_.job_items.clear();
    jobs_.hash_directory();
}

void ChecksumFileWriter::finish_directory()
{
    const std::optional<QString> directory = recorder_.take_directory();
    if (!directory) {
        return; // left connected by a run that failed: what is recorded is not ours
    }
    if (!recorder_.is_armed()) {
        return;
    }
    const QString name = directory_file_stem(*directory) + extension(recorder_.algorithm());
    if (directory->isEmpty()) {
        report_not_created(name); // gone when the command was given
        return;
    }
    write_directory(*directory, name);
}

void ChecksumFileWriter::write_directory(const QString& directory, const QString& name)
{
    jobs_.occupy();
    run_in_background(
        &pane_,
        [recorded = recorder_.digests(), header = header_lines(),
         target = with_slash(directory) + name] {
            const QMap<QString, QString> digests = DigestRecorder::in_path_order(recorded);
            // An older list is worth more than one without a line.
            if (digests.isEmpty() && QFileInfo::exists(target)) {
                return true;
            }
            return engine::write_checksum_file(target, header + body_lines(digests),
                                               engine::Replace::Yes);
        },
        [this, name](bool written) { end_directory(name, written); });
}

void ChecksumFileWriter::end_directory(const QString& name, bool written)
{
    jobs_.release();
    pane_.host().release_algorithm();
    if (!written) {
        report_not_created(name);
        return;
    }
    recorder_.clear();
    QObject::disconnect(&pane_.job_watcher, &QFutureWatcherBase::finished, &pane_,
                        &MyTreeWidget::cc_all_file);
    engine::include_checksum_files(pane_.exclusions);
    pane_.list_anew_and_select(name);
}

void ChecksumFileWriter::report_not_created(const QString& name)
{
    QMessageBox::critical(&pane_, MyTreeWidget::tr("Impossible de créer le fichier"),
                          MyTreeWidget::tr("Impossible de créer le fichier %1").arg(name),
                          QMessageBox::Ok);
}

void ChecksumFileWriter::stop()
{
    stop_.request_stop();
}
