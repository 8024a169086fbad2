#pragma once

#include <QMap>
#include <QString>
#include <QStringList>

#include <stop_token>

class DigestRecorder;
class HashJobController;
class MyTreeWidget;

/// Writes checksum files: one beside each selected file, or one for the directory shown.
///
/// Each command has two halves. The first arms the recorder and launches a job; the second, when
/// the job is over, writes what the job left there. It writes in the background and keeps other
/// work off the pane meanwhile. GUI thread only.
class ChecksumFileWriter final
{
  public:
    ChecksumFileWriter(MyTreeWidget& pane, DigestRecorder& recorder, HashJobController& jobs)
        : pane_(pane), recorder_(recorder), jobs_(jobs)
    {}

    void begin_files();
    void finish_files();
    void begin_directory();
    void finish_directory();

    /// Writes no further file.
    void stop();

  private:
    /// What came of writing a file for each of several.
    struct Outcome
    {
        QString last_name;       ///< of the last checksum file that there is or should be
        QStringList not_created; ///< names
    };

    static Outcome write_files(const QMap<QString, QString>& digests, const QString& extension,
                               const QString& header, const std::stop_token& stop);
    void end_files(const Outcome& outcome);
    void write_directory(const QString& directory, const QString& name);
    void end_directory(const QString& name, bool written);
    void report_not_created(const QString& name);

    MyTreeWidget& pane_;
    DigestRecorder& recorder_;
    HashJobController& jobs_;
    std::stop_source stop_; ///< of what is being written
};
