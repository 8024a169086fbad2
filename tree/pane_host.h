#pragma once

#include <QCryptographicHash>
#include <QString>

#include <memory>

class FenCheck;
class MyTreeWidget;

/// What a pane asks of the window that it stands in. GUI thread only.
class PaneHost
{
  public:
    PaneHost() = default;
    virtual ~PaneHost();
    Q_DISABLE_COPY_MOVE(PaneHost)

    /// Connects a pane that is being made: its ends, its drops, and the actions that choose an
    /// algorithm. Called before the pane makes these connections of its own.
    virtual void attach(MyTreeWidget& pane) = 0;

    /// Connects a verify dialog that is about to open, so that it locks the window's controls.
    virtual void attach(FenCheck& dialog) = 0;

    /// Switches both panes to an algorithm and locks the choice until a job ends.
    virtual void choose_algorithm(QCryptographicHash::Algorithm algorithm) = 0;

    /// Unlocks the choice when no job will: none runs.
    virtual void release_algorithm() = 0;

    /// A job starts, and with it the measurement of the total time.
    virtual void restart_timer() = 0;

    /// Shows a text in the status bar until another takes its place.
    virtual void show_status(const QString& text) = 0;

    /// Whether a job runs in any pane of the window.
    virtual bool is_hashing() const = 0;

    /// A pane that was busy without a job is so no more; a comparison may have waited for it.
    virtual void pane_released() = 0;

    /// The pane takes checksums back: a comparison that is still marking rows by them is to be done
    /// first.
    virtual void finish_marking() = 0;
};

/// The host of a pane that stands alone: the pane's algorithm is all there is to choose.
std::unique_ptr<PaneHost> make_lone_host();
