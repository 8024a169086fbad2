#pragma once

#include <QString>

#include <memory>
#include <optional>
#include <stop_token>

class DigestRecorder;
class HashJobController;
class MyTreeWidget;
class QTreeWidgetItem;
struct ReportLines;

namespace engine {
class ExpectedDigests;
}

/// Verifies the directory shown against a checksum file in it.
///
/// The first half reads the file and launches a job over the files that it lists; the second, when
/// the job is over, reads it again and reports. Both read in the background and keep other work off
/// the pane meanwhile. GUI thread only.
class ChecksumFileVerifier final
{
  public:
    ChecksumFileVerifier(MyTreeWidget& pane, DigestRecorder& recorder, HashJobController& jobs)
        : pane_(pane), recorder_(recorder), jobs_(jobs)
    {}

    void begin(QTreeWidgetItem* row);
    void finish();

    /// Reads no further: what was to be verified is not.
    void stop();

  private:
    /// Nothing when the file cannot be read.
    using Expected = std::optional<engine::ExpectedDigests>;

    void start_reading();
    bool end_reading();
    void take_expected(const QString& path, const std::shared_ptr<const Expected>& expected);
    void hash_listed(const QString& path, const engine::ExpectedDigests& expected);
    void end(const QString& path, const std::optional<ReportLines>& errors);
    void give_up();
    void report_unreadable(const QString& text);
    void report_nothing();
    void report(const ReportLines& errors);

    MyTreeWidget& pane_;
    DigestRecorder& recorder_;
    HashJobController& jobs_;
    std::stop_source stop_; ///< of what is being read
    bool reading_ = false;
};
