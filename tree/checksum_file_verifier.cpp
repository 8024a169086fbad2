#include "tree/checksum_file_verifier.h"

#include "dialogs/report_box.h"
#include "engine/checksum_file.h"
#include "engine/exclusions.h"
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

#include <utility>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

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

/// The lines of a checksum file that the computed digests do not agree with.
ReportLines find_errors(engine::ExpectedDigests expected, const DigestRecorder::Digests& computed)
{
    struct Errors
    {
        engine::ExpectedDigests expected;
        std::vector<std::pair<qsizetype, bool>> lines; ///< of the file, and whether it was computed
    };
    auto errors = std::make_shared<Errors>(Errors{std::move(expected), {}});
    ReportLines lines;
    qsizetype longest_size = -1;
    for (qsizetype i = 0; i < errors->expected.size(); ++i) {
        const QString path = errors->expected.path(i);
        const QString found = computed.value(path);
        if (found == errors->expected.digest(i)) {
            continue;
        }
        if (path.size() > longest_size) {
            longest_size = path.size();
            lines.longest = lines.count;
        }
        errors->lines.emplace_back(i, !found.isEmpty());
        ++lines.count;
    }
    lines.at = [errors](qsizetype index) {
        const auto [line, computed_too] = errors->lines[static_cast<size_t>(index)];
        return ReportLine{computed_too ? MyTreeWidget::tr("Différent => %1")
                                       : MyTreeWidget::tr("Manquant  => %1"),
                          errors->expected.path(line)};
    };
    return lines;
}

} // namespace

void ChecksumFileVerifier::begin(QTreeWidgetItem* row)
{
    if (pane_.navigator().is_listing() || reading_) {
        return; // the rows to be hashed are not there yet, or another file is being read
    }
    const QString path = path_of(*row);
    pane_.job_items.clear();
    engine::exclude_checksum_files(pane_.exclusions);
    recorder_.clear();
    recorder_.set_checksum_file(path);
    row->setSelected(false);
    pane_.host().choose_algorithm(algorithm_of(path));
    start_reading();
    run_in_background(
        &pane_,
        [path, stop = stop_.get_token()] {
            return std::make_shared<const Expected>(engine::read_checksum_file(path, stop));
        },
        [this, path](const std::shared_ptr<const Expected>& expected) {
            take_expected(path, expected);
        });
}

void ChecksumFileVerifier::start_reading()
{
    jobs_.occupy();
    stop_ = std::stop_source();
    reading_ = true;
}

/// Answers whether it was stopped.
bool ChecksumFileVerifier::end_reading()
{
    reading_ = false;
    jobs_.release();
    return stop_.stop_requested();
}

void ChecksumFileVerifier::take_expected(const QString& path,
                                         const std::shared_ptr<const Expected>& expected)
{
    const bool stopped = end_reading();
    if (stopped) {
        give_up();
    } else if (!*expected) {
        report_unreadable(unreadable_text(path, pane_.algorithm()));
        pane_.host().release_algorithm();
    } else if ((*expected)->is_empty()) {
        report_nothing();
        recorder_.clear();
        pane_.host().release_algorithm();
    } else {
        pane_.navigator().when_listed([this, path, expected] { hash_listed(path, **expected); });
    }
}

void ChecksumFileVerifier::give_up()
{
    recorder_.clear();
    engine::include_checksum_files(pane_.exclusions);
    pane_.host().release_algorithm();
}

void ChecksumFileVerifier::hash_listed(const QString& path, const engine::ExpectedDigests& expected)
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
    start_reading();
    run_in_background(
        &pane_,
        [path, stop = stop_.get_token(),
         computed = recorder_.digests()]() -> std::optional<ReportLines> {
            Expected expected = engine::read_checksum_file(path, stop);
            if (!expected) {
                return std::nullopt;
            }
            return find_errors(*std::move(expected), computed);
        },
        [this, path](const std::optional<ReportLines>& errors) { end(path, errors); });
}

void ChecksumFileVerifier::end(const QString& path, const std::optional<ReportLines>& errors)
{
    const bool stopped = end_reading();
    pane_.host().release_algorithm();
    if (stopped) {
        give_up();
        return;
    }
    if (!errors) {
        report_unreadable(MyTreeWidget::tr("Impossible d'ouvrir le fichier %1").arg(path));
        return;
    }
    recorder_.clear();
    report(*errors);
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
                 ReportLines(),
                 {}});
}

void ChecksumFileVerifier::report(const ReportLines& errors)
{
    if (errors.count == 0) {
        show_report({QMessageBox::Information, MyTreeWidget::tr("Ok"),
                     MyTreeWidget::tr("Aucune erreur trouvée !"), ReportLines(),
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
    stop_.request_stop();
}
