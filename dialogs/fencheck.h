#pragma once

#include <QDialog>
#include <QFutureWatcher>

class ElidedLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;

/// Checks one file against an MD5 or SHA1 digest that the user types or pastes.
///
/// The dialog validates the entry and shows progress and verdict; its pane hashes. They talk by
/// signals: calcul() asks for the digest, progress() and handle_res() answer, and finalise() says
/// that nobody waits for it any more. Lives in the GUI thread.
class FenCheck : public QDialog
{
    Q_OBJECT

  public:
    /// `path` is the full path of the file, shown as it is.
    FenCheck(const QString& path, QWidget* parent);

    /// Bound by the pane to the task that hashes the file.
    QFutureWatcher<void> watcher;

    /// The digest as it stands in the entry line.
    QString entry_text() const;

    void set_check_enabled(bool enabled);
    void set_progress_visible(bool visible);

    /// Closes the dialog, as the title bar does.
    void reject() override;

  signals:
    void entry_ok(bool ok); ///< whether the entry can be a digest
    void calcul();          ///< the file is to be hashed now
    void finalise();        ///< the dialog goes; sent twice by the cancel button

  public slots:
    /// Shows how much of the file is hashed, in percent.
    void progress(int value);

    /// Shows the file's digest, or what went wrong instead of it, and whether it is the one
    /// entered.
    void handle_res(QString resultat);

  protected slots:
    void check_clicked();
    void cc();
    void check_entry(QString entry);
    void wait_close();

  protected:
    void closeEvent(QCloseEvent* event) override;

  private:
    void create_widgets(const QString& path);
    void make_connections();
    void show_verdict(bool same);

    QPushButton* check_button = nullptr;
    QPushButton* cancel_button = nullptr;
    QLineEdit* line_edit = nullptr;
    ElidedLabel* result_label = nullptr;
    QProgressBar* progress_bar = nullptr;
};
