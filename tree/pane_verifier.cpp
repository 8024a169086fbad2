// Verifies the directory shown against a checksum file in it.

#include "engine/checksum_file.h"
#include "platform/sequential_file.h"
#include "tree/mytreewidget.h"
#include "tree/pane_row.h"
#include "dialogs/report_box.h"
#include "tree/selection.h"

#include <QMessageBox>
#include <QRegularExpression>

#include <optional>

using namespace Qt::StringLiterals;

namespace {

/// Carries the checksum file's path to the end of the job; no file has such a path.
const QString& checksum_file_key()
{
    static const QString key = u"MyTreeWidget_HASH"_s;
    return key;
}

/// The digests that a checksum file expects, by full path; nothing when it cannot be opened.
std::optional<QMap<QString, QString>> read_expected(const QString& path)
{
    QFile file;
    if (!platform::open_regular(file, path)) {
        return std::nullopt;
    }
    return engine::read_checksum_file(file, QFileInfo(path).path());
}

} // namespace

void MyTreeWidget::compute_compare(QTreeWidgetItem* item)
{
    if (refused_while_listing()) {
        return;
    }
    const QString path = path_of(*item);
    job_items.clear();
    add_checksum_suffixes();
    digests.clear();
    digests.insert(checksum_file_key(), path);
    item->setSelected(false);
    switch_algorithm(QFileInfo(path).suffix().toLower() == "md5"_L1 ? QCryptographicHash::Md5
                                                                    : QCryptographicHash::Sha1);
    const auto expected = read_expected(path);
    if (!expected) {
        static const QRegularExpression last_extension(u"\\.[^\\.]+$"_s);
        const QString stem = QString(path).remove(last_extension);
        const QString extension = algo == QCryptographicHash::Md5 ? u".md5"_s : u".sha1"_s;
        QMessageBox::critical(this, tr("Impossible d'ouvrir le fichier"),
                              tr("Impossible d'ouvrir le fichier %1.%2").arg(stem, extension),
                              QMessageBox::Ok);
        enable_main_window();
        return;
    }
    if (expected->isEmpty()) {
        show_report({QMessageBox::Critical,
                     tr("Rien"),
                     tr("<strong><u>Rien à vérifier !<u/></strong><br />"),
                     {},
                     {}});
        digests.clear();
        enable_main_window();
        return;
    }
    arm_verifier(path, *expected);
}

void MyTreeWidget::arm_verifier(const QString& path, const QMap<QString, QString>& expected)
{
    QList<QTreeWidgetItem*> listed;
    for (auto i = static_cast<int>(first_content_row()); i < topLevelItemCount(); ++i) {
        QTreeWidgetItem* row = topLevelItem(i);
        const QString row_path = path_of(*row);
        if (row->type() == TypeFile && row_path != path && expected.contains(row_path)) {
            digests.insert(row_path, u""_s);
            listed.append(row);
        }
    }
    select_rows(*this, listed);
    connect(&job_watcher, &QFutureWatcherBase::finished, this, &MyTreeWidget::compute_compare2);
    HashThis();
}

void MyTreeWidget::compute_compare2()
{
    const QString path = digests.value(checksum_file_key());
    const auto expected = read_expected(path);
    if (!expected) {
        QMessageBox::critical(this, tr("Impossible d'ouvrir le fichier"),
                              tr("Impossible d'ouvrir le fichier %1").arg(path), QMessageBox::Ok);
        disconnect(&job_watcher, &QFutureWatcherBase::finished, this,
                   &MyTreeWidget::compute_compare2);
        return;
    }
    QList<ReportLine> errors;
    for (const auto& [file, digest] : expected->asKeyValueRange()) {
        const QString computed = digests.value(file);
        if (computed != digest) {
            errors.append(
                {computed.isEmpty() ? tr("Manquant  => %1") : tr("Différent => %1"), file});
        }
    }
    digests.clear();
    report_verification(errors);
    disconnect(&job_watcher, &QFutureWatcherBase::finished, this, &MyTreeWidget::compute_compare2);
    remove_checksum_suffixes();
    update_view(QFileInfo(path).fileName());
}

void MyTreeWidget::report_verification(const QList<ReportLine>& errors)
{
    if (errors.isEmpty()) {
        show_report({QMessageBox::Information,
                     tr("Ok"),
                     tr("Aucune erreur trouvée !"),
                     {},
                     QIcon(u":/res/ok.png"_s).pixmap(32)});
        return;
    }
    show_report({QMessageBox::Critical,
                 tr("Ko"),
                 tr("<strong><u>Erreurs avec les fichiers suivants :<u/></strong><br /><br />%1"),
                 errors,
                 {}});
}
