#pragma once

#include "engine/pairing.h"

#include <QTimer>
#include <QTreeWidgetItemIterator>
#include <QWidget>

#include <array>
#include <functional>
#include <optional>

class QLabel;
class QPushButton;
class QTreeWidget;

/// How far a run is and what it found, for the right end of the status bar.
///
/// While a pane is busy it shows how many files are done and, where that is known, of how many; the
/// rest of the time, what the last comparison marked: identical (=), different (≠), only in the
/// first pane (→), only in the second (←). Each count is a button that makes the next such row
/// the current one of its pane. It never asks the window for more room than there is.
///
/// Lives in the GUI thread.
class RunOverview final : public QWidget
{
    Q_OBJECT

  public:
    struct Progress
    {
        bool busy = false;
        int done = 0;
        int total = -1; ///< -1 while unknown
    };

    struct Pane
    {
        QTreeWidget* rows;                  ///< PaneRows; outlives this widget's events
        std::function<Progress()> progress; ///< asked a few times a second while a job runs
    };

    RunOverview(const Pane& first, const Pane& second, QWidget* parent);

    QSize minimumSizeHint() const override;

  public slots:
    /// A job begins: shows its progress, until no pane is busy any more, instead of the counts.
    void follow_jobs();

    /// Counts the marks anew: a comparison has ended, or marks were taken away.
    void count_marks();

    /// Shows no counts: rows have gone.
    void forget_marks();

  private:
    struct Count
    {
        engine::Mark mark = engine::Mark::None;
        std::size_t pane = 0; ///< whose rows it counts and goes through
        QString sign;
        QString meaning;
        QString colour;
        QPushButton* button = nullptr;
        int rows = 0;
    };

    void create_button(Count& count);
    void show_progress();
    void count_slice();
    void count_row(engine::Mark mark);
    void stop_counting();
    void show_counts();
    void show_count(const Count& count);
    void go_to_next(const Count& count);

    std::array<Pane, 2> panes_;
    std::array<QLabel*, 2> labels_{};
    std::array<Count, 4> counts_;
    QTimer pace_;
    std::size_t pane_counted_ = 0;
    std::optional<QTreeWidgetItemIterator> next_row_; ///< while rows are being counted
    QTimer next_slice_;
};
