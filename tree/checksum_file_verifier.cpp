#include "tree/checksum_file_verifier.h"

#include "dialogs/report_box.h"
#include "engine/checksum_file.h"
#include "engine/exclusions.h"
#include "platform/sequential_file.h"
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

std::optional<QMap<QString, QString>> read_expected(const QString& path)
{
    QFile file;
    if (!platform::open_regular(file, path)) {
        return std::nullopt;
    }
    return engine::read_checksum_file(file, QFileInfo(path).path());
}

QCryptographicHash::Algorithm algorithm_of(const QString& path)
{
    return QFileInfo(path).suffix().toLower() == "md5"_L1 ? QCryptographicHash::Md5
                                                          : QCryptographicHash::Sha1;
}

/// The path with its extension named by the algorithm; the two dots are how it is told.
QString unreadable_text(const QString& path, QCryptographicHash::Algorithm algorithm)
{
    static const QRegularExpression last_extension(u"\\.[^\\.]+$"_s);
    const QString extension = algorithm == QCryptographicHash::Md5 ? u".md5"_s : u".sha1"_s;
    return MyTreeWidget::tr("Impossible d'ouvrir le fichier %1.%2")
        .arg(QString(path).remove(last_extension), extension);
}

QList<ReportLine> find_errors(const QMap<QString, QString>& expected,
                              const QMap<QString, QString>& computed)
{
    QList<ReportLine> errors;
    for (const auto& [file, digest] : expected.asKeyValueRange()) {
        const QString found = computed.value(file);
        if (found != digest) {
            errors.append({found.isEmpty() ? MyTreeWidget::tr("Manquant  => %1")
                                           : MyTreeWidget::tr("Différent => %1"),
                           file});
        }
    }
    return errors;
}

} // namespace

void ChecksumFileVerifier::begin(QTreeWidgetItem* row)
{
    if (pane_.navigator().is_listing() || stop_) {
        return; // the rows to be hashed are not there yet, or another file is being read
    }
    const QString path = path_of(*row);
    pane_.job_items.clear();
    engine::exclude_checksum_files(pane_.exclusions);
    recorder_.clear();
    recorder_.set_checksum_file(path);
    row->setSelected(false);
    pane_.host().choose_algorithm(algorithm_of(path));
    jobs_.occupy();
    stop_ = engine::make_stop_flag();
    run_in_background(
        &pane_, [path] { return read_expected(path); },
        [this, path](const Expected& expected) { take_expected(path, expected); });
}

void ChecksumFileVerifier::take_expected(const QString& path, const Expected& expected)
{
    const bool stopped = engine::stop_requested(std::exchange(stop_, {}));
    jobs_.release();
    if (stopped) {
        give_up();
    } else if (!expected) {
        report_unreadable(unreadable_text(path, pane_.algorithm()));
        pane_.host().release_algorithm();
    } else if (expected->isEmpty()) {
        report_nothing();
        recorder_.clear();
        pane_.host().release_algorithm();
    } else {
        pane_.navigator().when_listed(
            [this, path, listed = *expected] { hash_listed(path, listed); });
    }
}

void ChecksumFileVerifier::give_up()
{
    recorder_.clear();
    engine::include_checksum_files(pane_.exclusions);
    pane_.host().release_algorithm();
}

void ChecksumFileVerifier::hash_listed(const QString& path, const QMap<QString, QString>& expected)
{
    const QString directory = pane_.shown_directory();
    QList<QTreeWidgetItem*> listed;
    const QList<QTreeWidgetItem*> rows = content_rows(pane_);
    for (QTreeWidgetItem* row : rows) {
        const QString place = place_of(*row, directory);
        if (row->type() == TypeFile && path_of(*row) != path && expected.contains(place)) {
            recorder_.expect(place);
            listed.append(row);
        }
    }
    select_rows(pane_, listed);
    QObject::connect(&pane_.job_watcher, &QFutureWatcherBase::finished, &pane_,
                     &MyTreeWidget::compute_compare2);
    jobs_.hash_selection();
}

void ChecksumFileVerifier::finish()
{
    QObject::disconnect(&pane_.job_watcher, &QFutureWatcherBase::finished, &pane_,
                        &MyTreeWidget::compute_compare2);
    const QString path = recorder_.checksum_file();
    jobs_.occupy();
    stop_ = engine::make_stop_flag();
    run_in_background(
        &pane_, [path] { return read_expected(path); },
        [this, path](const Expected& expected) { end(path, expected); });
}

void ChecksumFileVerifier::end(const QString& path, const Expected& expected)
{
    const bool stopped = engine::stop_requested(std::exchange(stop_, {}));
    jobs_.release();
    if (stopped) {
        give_up();
        return;
    }
    if (!expected) {
        report_unreadable(MyTreeWidget::tr("Impossible d'ouvrir le fichier %1").arg(path));
        return;
    }
    const QList<ReportLine> errors = find_errors(*expected, recorder_.digested());
    recorder_.clear();
    report(errors);
    engine::include_checksum_files(pane_.exclusions);
    pane_.list_anew_and_select(QFileInfo(path).fileName());
}

void ChecksumFileVerifier::report_unreadable(const QString& text)
{
    QMessageBox::critical(&pane_, MyTreeWidget::tr("Impossible d'ouvrir le fichier"), text,
                          QMessageBox::Ok);
}

void ChecksumFileVerifier::report_nothing()
{
    show_report({QMessageBox::Critical,
                 MyTreeWidget::tr("Rien"),
                 MyTreeWidget::tr("<strong><u>Rien à vérifier !<u/></strong><br />"),
                 {},
                 {}});
}

void ChecksumFileVerifier::report(const QList<ReportLine>& errors)
{
    if (errors.isEmpty()) {
        show_report({QMessageBox::Information,
                     MyTreeWidget::tr("Ok"),
                     MyTreeWidget::tr("Aucune erreur trouvée !"),
                     {},
                     QPixmap(u":/res/ok.png"_s)});
        return;
    }
    show_report({QMessageBox::Critical,
                 MyTreeWidget::tr("Ko"),
                 MyTreeWidget::tr(
                     "<strong><u>Erreurs avec les fichiers suivants :<u/></strong><br /><br />%1"),
                 errors,
                 {}});
}

void ChecksumFileVerifier::stop()
{
    if (stop_) {
        stop_->store(true, std::memory_order_relaxed);
    }
}
