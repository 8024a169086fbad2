#include "tests/stress/judge.h"

#include "rows/pane_row.h"

#include <QAction>
#include <QComboBox>
#include <QCryptographicHash>
#include <QDateTime>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSet>
#include <QStatusBar>
#include <QThreadPool>
#include <QTreeWidgetItemIterator>

#include <algorithm>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

// The clock that stamps files is coarser than ours.
constexpr qint64 clock_slack_ms = 100;

// Nothing larger is ever hashed to its end here.
constexpr qint64 largest_judged = 16'000'000;

// In which a job that nobody waits for sees that it was stopped; a busy machine is given more than
// it takes. The huge files take hours to hash.
constexpr int pool_patience_ms = 10'000;

bool is_digest(const QString& text)
{
    return (text.size() == 32 || text.size() == 40) &&
           std::all_of(text.begin(), text.end(), [](QChar c) {
               return (c >= u'0' && c <= u'9') || (c >= u'a' && c <= u'f') ||
                      (c >= u'A' && c <= u'F');
           });
}

bool has_mark(const QTreeWidgetItem& row, Qt::GlobalColor color)
{
    return row.background(ColSize) == QBrush(color, Qt::SolidPattern);
}

/// When a file was last changed in any way, in ms; the largest number if there is no file.
qint64 changed_at(const QString& path)
{
    struct stat status = {};
    if (::stat(QFile::encodeName(path).constData(), &status) != 0) {
        return std::numeric_limits<qint64>::max();
    }
    return static_cast<qint64>(status.st_ctim.tv_sec) * 1000 + status.st_ctim.tv_nsec / 1'000'000;
}

QByteArray content_of(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// What stands in places where a path that lost its directory would lead to.
QStringList names_outside()
{
    const QDir::Filters all = QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;
    return QDir::root().entryList(all);
}

} // namespace

Judge::Judge(User& user, World& world) : user_(user), world_(world), outside_(names_outside())
{
    last_quiet_ = {world_.tick(), QDateTime::currentMSecsSinceEpoch()};
    connect(&user, &User::window_changed, this, &Judge::watch_window);
    watch_window();
}

// The message of a comparison comes when the marks are set and the lists still say what was paired.
void Judge::watch_window()
{
    said_.clear();
    painted_.clear();
    connect(user_.window().statusBar(), &QStatusBar::messageChanged, this,
            &Judge::judge_comparison);
}

void Judge::judge_comparison(const QString& message)
{
    if (!message.startsWith(MainFen::tr("Temps total : "))) {
        return;
    }
    ++comparisons_;
    const QList<QTreeWidgetItem*> first = user_.window().first_pane()->job_items;
    QList<QTreeWidgetItem*> left_over = user_.window().second_pane()->job_items;
    for (const QTreeWidgetItem* a : first) {
        const auto b =
            std::find_if(left_over.begin(), left_over.end(),
                         [&](const QTreeWidgetItem* row) { return name_of(*row) == name_of(*a); });
        if (b == left_over.end()) {
            judge_lone(*a);
        } else {
            judge_pair(*a, **b);
            left_over.erase(b);
        }
    }
    for (const QTreeWidgetItem* b : std::as_const(left_over)) {
        judge_lone(*b);
    }
}

void Judge::judge_lone(const QTreeWidgetItem& row)
{
    if (!checksum_of(row).isEmpty() && !has_mark(row, Qt::yellow)) {
        report(u"has no partner and is not yellow: "_s + path_of(row));
    }
}

void Judge::judge_pair(const QTreeWidgetItem& first, const QTreeWidgetItem& second)
{
    const QString pair = path_of(first) + u" and "_s + path_of(second);
    const bool green = has_mark(first, Qt::green) && has_mark(second, Qt::green);
    const bool same = checksum_of(first).toLower() == checksum_of(second).toLower();
    if (same != green) {
        report((green ? u"green with other checksums: "_s : u"same checksum, not green: "_s) +
               pair);
    }
    if (!green) {
        reds_ += has_mark(first, Qt::red) ? 1 : 0;
        return;
    }
    ++greens_;
    painted_.insert(&first, path_of(first));
    painted_.insert(&second, path_of(second));
    if (path_of(first) == path_of(second)) {
        return;
    }
    if (!is_digest(checksum_of(first))) {
        report(u"green without a digest (\"%1\"): "_s.arg(checksum_of(first)) + pair);
        return;
    }
    if (same_since(path_of(first), moment_of(first)) &&
        same_since(path_of(second), moment_of(second)) &&
        QFileInfo(path_of(first)).size() < largest_judged) {
        ++greens_by_byte_;
        if (content_of(path_of(first)) != content_of(path_of(second))) {
            report(u"green and not alike: "_s + pair);
        }
    }
}

void Judge::judge_work()
{
    for (const MyTreeWidget* pane : user_.panes()) {
        if (pane->job_running() && (pane->drive_combo->isEnabled() || pane->acceptDrops())) {
            report(u"a pane works and would take another directory or a drop"_s);
        }
    }
}

void Judge::judge_quiet_moment()
{
    ++quiet_moments_;
    judge_pool();
    QHash<const QTreeWidgetItem*, Statement> said;
    for (const MyTreeWidget* pane : user_.panes()) {
        judge_rows(*pane, said);
    }
    said_ = said;
    judge_controls();
    judge_outside();
    last_quiet_ = {world_.tick(), QDateTime::currentMSecsSinceEpoch()};
}

// A running job does not count as an active thread of the pool, but the pool waits for its end.
void Judge::judge_pool()
{
    QElapsedTimer timer;
    timer.start();
    if (!QThreadPool::globalInstance()->waitForDone() || timer.hasExpired(pool_patience_ms)) {
        report(u"the panes are idle, the pool is not"_s);
    }
}

void Judge::judge_rows(const MyTreeWidget& pane, QHash<const QTreeWidgetItem*, Statement>& said)
{
    QSet<const QTreeWidgetItem*> living;
    for (QTreeWidgetItemIterator it(const_cast<MyTreeWidget*>(&pane)); *it; ++it) {
        const QTreeWidgetItem& row = **it;
        living.insert(&row);
        if (has_mark(row, Qt::green) && painted_.value(&row) != path_of(row)) {
            report(u"green without a comparison: "_s + path_of(row));
        }
        if (checksum_of(row).isEmpty()) {
            continue;
        }
        const Moment since = moment_of(row);
        said.insert(&row, {path_of(row), checksum_of(row), since});
        if (is_digest(checksum_of(row))) {
            judge_digest(path_of(row), checksum_of(row), since);
        }
    }
    for (const QTreeWidgetItem* item : pane.job_items) {
        if (!living.contains(item)) {
            report(u"a list holds a dead row"_s);
        }
    }
}

void Judge::judge_digest(const QString& path, const QString& checksum, const Moment& since)
{
    if (checksum != checksum.toLower() && checksum != checksum.toUpper()) {
        report(u"neither capitals nor small letters: "_s + checksum);
    }
    if (QFileInfo(path).size() >= largest_judged || !same_since(path, since)) {
        return;
    }
    ++digests_judged_;
    const QByteArray computed = digest_of(path, static_cast<int>(checksum.size()));
    if (checksum.toLower().toLatin1() != computed) {
        report(u"%1 shows %2, is %3"_s.arg(path, checksum, QString::fromLatin1(computed)));
    }
}

void Judge::judge_controls()
{
    for (const MyTreeWidget* pane : user_.panes()) {
        const bool ready = pane->drive_combo->isEnabled() && pane->acceptDrops() &&
                           pane->path_edit->isEnabled() && pane->stop_button->isEnabled() &&
                           pane->reset_button->isEnabled();
        if (!ready) {
            report(u"a pane is idle and its controls are disabled"_s);
        }
    }
    for (const QRadioButton* radio : user_.window().findChildren<QRadioButton*>()) {
        if (!radio->isEnabled()) {
            report(u"the panes are idle and the algorithm cannot be chosen"_s);
        }
    }
    int disabled = 0;
    const auto actions =
        user_.window().findChildren<QAction*>(QString(), Qt::FindDirectChildrenOnly);
    for (const QAction* action : actions) {
        disabled += action->isEnabled() ? 0 : 1;
    }
    // That of the two layouts which is in force.
    if (disabled != 1) {
        report(u"the panes are idle and %1 commands are disabled"_s.arg(disabled));
    }
}

void Judge::judge_outside()
{
    const QStringList now = names_outside();
    for (const QString& name : now) {
        if (!outside_.contains(name) &&
            (name.endsWith(".md5"_L1) || name.endsWith(".sha1"_L1) || name.endsWith(".ini"_L1))) {
            report(u"written outside: /"_s + name);
        }
    }
    outside_ = now;
}

/// A row that says what it said at an earlier quiet moment may have said so since long.
Judge::Moment Judge::moment_of(const QTreeWidgetItem& row) const
{
    const auto earlier = said_.constFind(&row);
    const bool same = earlier != said_.constEnd() && earlier->path == path_of(row) &&
                      earlier->checksum == checksum_of(row);
    return same ? earlier->since : last_quiet_;
}

bool Judge::same_since(const QString& path, const Moment& since) const
{
    const QString canonical = QFileInfo(path).canonicalFilePath();
    return canonical.startsWith(world_.root() + u'/') && QFileInfo(canonical).isFile() &&
           !world_.changed_since(path, since.tick) &&
           !world_.changed_since(canonical, since.tick) &&
           changed_at(canonical) < since.time_ms - clock_slack_ms;
}

QByteArray Judge::digest_of(const QString& path, int digits)
{
    const QString key = u"%1 %2 %3"_s.arg(digits).arg(changed_at(path)).arg(path);
    if (const QByteArray* known = digests_.object(key)) {
        return *known;
    }
    const auto algorithm = digits == 32 ? QCryptographicHash::Md5 : QCryptographicHash::Sha1;
    auto* computed = new QByteArray(QCryptographicHash::hash(content_of(path), algorithm).toHex());
    const QByteArray answer = *computed;
    digests_.insert(key, computed);
    return answer;
}

QStringList Judge::take_findings()
{
    return std::exchange(findings_, {});
}

QString Judge::summary() const
{
    return u"%1 quiet moments, %2 comparisons, %3 green pairs (%4 compared byte by byte), %5 red, "
           "%6 digests recomputed"_s.arg(quiet_moments_)
               .arg(comparisons_)
               .arg(greens_)
               .arg(greens_by_byte_)
               .arg(reds_)
               .arg(digests_judged_);
}
