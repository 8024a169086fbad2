#pragma once

#include "tests/stress/user.h"
#include "tests/stress/world.h"

#include <QCache>
#include <QHash>
#include <QObject>
#include <QString>
#include <QStringList>

/// Says what is wrong with what the window shows.
///
/// It knows the files and recomputes what the program says of them, by Qt's own digests and by
/// comparing bytes. A statement about a file is judged only if the file is certain to be the one
/// that was hashed: neither the world nor anybody else changed it since before the hashing.
class Judge final : public QObject
{
    Q_OBJECT

  public:
    Judge(User& user, World& world);

    /// Judges what must hold at any moment: a pane at work takes nothing else on.
    void judge_work();

    /// Judges a quiet moment: nothing works and no dialog is open.
    void judge_quiet_moment();

    /// Everything that was found wrong since the last call.
    QStringList take_findings();

    /// How much was judged, so that nobody takes silence for soundness.
    QString summary() const;

  private:
    /// Before which moment nothing that is said now can have been hashed.
    struct Moment
    {
        quint64 tick = 0;
        qint64 time_ms = 0;
    };

    /// What a row said at the last quiet moment, and since when at the latest.
    struct Statement
    {
        QString path;
        QString checksum;
        Moment since;
    };

    void watch_window();
    void judge_comparison(const QString& message);
    void judge_pair(const QTreeWidgetItem& first, const QTreeWidgetItem& second);
    void judge_lone(const QTreeWidgetItem& row);
    void judge_pool();
    void judge_rows(const MyTreeWidget& pane, QHash<const QTreeWidgetItem*, Statement>& said);
    void judge_digest(const QString& path, const QString& checksum, const Moment& since);
    void judge_controls();
    void judge_outside();

    Moment moment_of(const QTreeWidgetItem& row) const;
    bool same_since(const QString& path, const Moment& since) const;
    QByteArray digest_of(const QString& path, int digits);
    void report(const QString& finding) { findings_.append(finding); }

    User& user_;
    World& world_;
    Moment last_quiet_;
    QHash<const QTreeWidgetItem*, Statement> said_;
    QHash<const QTreeWidgetItem*, QString> painted_; ///< the rows that a comparison left green
    QCache<QString, QByteArray> digests_;
    QStringList outside_;
    QStringList findings_;
    int quiet_moments_ = 0;
    int comparisons_ = 0;
    int greens_ = 0;
    int greens_by_byte_ = 0;
    int reds_ = 0;
    int digests_judged_ = 0;
};
