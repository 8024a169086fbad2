#pragma once

#include "tests/stress/dice.h"

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

/// The changing tree of real files that the panes look at: two sides, `left` and `right`, with much
/// the same names in both.
///
/// Everything happens below one temporary directory; nothing outside is written, whatever links the
/// tree holds. What changes is noted with a tick, so that a judge can tell whether a file is still
/// the one that was hashed.
class World final
{
  public:
    explicit World(Dice& dice);

    /// Canonical path of the directory that holds everything.
    const QString& root() const { return root_; }

    QString left() const { return root_ + QLatin1String("/left"); }
    QString right() const { return root_ + QLatin1String("/right"); }

    /// Changes something, anything; answers what, for the report.
    QString change();

    /// Sees to it that both sides exist.
    void keep_sides() const;

    /// A path of something in the tree, or of nothing at all now and then.
    QString any_path();
    QString any_directory();
    QString any_file();

    /// What leads from either side to a directory that it has, mostly one that both have.
    QString any_place();

    quint64 tick() const { return tick_; }

    /// Whether the world changed what a path leads to after a tick. What the program itself wrote
    /// is not counted.
    bool changed_since(const QString& path, quint64 tick) const;

  private:
    using Change = QString (World::*)();

    QString write_beside_and_rename();
    QString write_in_place();
    QString append();
    QString truncate();
    QString remove_file();
    QString make_directory();
    QString remove_tree();
    QString file_becomes_directory();
    QString directory_becomes_file();
    QString link_somewhere();
    QString link_to_unreadable();
    QString put_fifo();
    QString forbid();
    QString allow();
    QString rename();
    QString write_checksum_file();
    QString put_huge_file();
    QString remove_huge_files();
    QString put_many_files();
    QString thin_out();
    QString copy_left_to_right();

    void note(const QString& path);
    void refresh();
    bool write(const QString& path, const QByteArray& content);
    bool is_ours(const QString& path) const;
    QString new_path();
    QByteArray any_content();

    Dice& dice_;
    QTemporaryDir directory_;
    QString root_;
    QList<QByteArray> contents_;
    QStringList files_;
    QStringList directories_;
    QHash<QString, quint64> changed_;
    quint64 tick_ = 0;
    int spooled_ = 0;
};
