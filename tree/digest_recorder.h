#pragma once

#include <QCryptographicHash>
#include <QHash>
#include <QMap>
#include <QString>

#include <optional>

/// Keeps the digests that a job computes while somebody waits for them: full path, under the name
/// that the file has in its directory, to lowercase digest.
///
/// Who wants digests arms the recorder by an entry of his own. What is left when he is gone stays,
/// and so does the recording, until somebody starts over. GUI thread only.
class DigestRecorder final
{
  public:
    /// Starts over: nothing is kept, nothing recorded.
    void clear();

    /// Awaits the digest of a file.
    void expect(const QString& path);

    /// The directory that a checksum file is to be written for; take_directory() answers nothing
    /// when none was set.
    void set_directory(const QString& path);
    std::optional<QString> take_directory();

    /// The checksum file that is being verified; empty when none was set.
    void set_checksum_file(const QString& path);
    QString checksum_file() const;

    /// Notes which algorithm the digests to come are computed with.
    void set_algorithm(QCryptographicHash::Algorithm algorithm) { algorithm_ = algorithm; }
    QCryptographicHash::Algorithm algorithm() const { return algorithm_; }

    /// Keeps a digest, if anything is awaited.
    void record(const QString& path, const QString& digest);

    /// Whether anything is kept or awaited.
    bool is_armed() const;

    /// What is kept, by path: nothing yet for a file that is awaited.
    using Digests = QHash<QString, QString>;
    const Digests& digests() const { return digests_; }

    /// Whether any digest is there.
    bool has_digests() const;

    /// Those that are there, in the order of their paths. Safe in any thread.
    static QMap<QString, QString> in_path_order(const Digests& digests);

  private:
    Digests digests_;
    std::optional<QString> directory_;
    QString checksum_file_;
    QCryptographicHash::Algorithm algorithm_ = QCryptographicHash::Md5;
};
