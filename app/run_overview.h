#pragma once

#include "engine/pairing.h"

#include <QTimer>
#include <QWidget>

#include <array>
#include <functional>

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
        int pane = 0; ///< whose rows it counts and goes through
        QString sign;
        QString meaning;
        QString colour;
        QPushButton* button = nullptr;
    };

    void create_button(Count& count);
    void show_progress();
    void show_count(const Count& count, int rows);
    void go_to_next(const Count& count);

    std::array<Pane, 2> panes_;
    std::array<QLabel*, 2> labels_{};
    std::array<Count, 4> counts_;
    QTimer pace_;
};
