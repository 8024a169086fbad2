#pragma once

#include "app/mainfen.h"

#include <QString>

#include <functional>

class MyTreeWidget;

namespace bench {

/// A main window of its own, shown, with the clocks that its work is measured by.
///
/// Its settings come from the working directory. Every measurement takes a new window: the second
/// work of a window differs from the first (the results are shown on every other comparison).
class BenchWindow
{
  public:
    BenchWindow();

    /// Shows these directories in the panes and waits until the window has come to rest.
    void open(const QString& first, const QString& second = {});

    /// Lets the window compute SHA1, not MD5.
    void use_sha1() { window_.setSHA1(); }

    MyTreeWidget& first() const { return *window_.first_pane(); }
    MyTreeWidget& second() const { return *window_.second_pane(); }

    /// Seconds from HashThis() or HashAll() of the first pane until the watcher of its job says
    /// that it is finished.
    double hash_selection();
    double hash_all();

    /// Seconds from the trigger of "Comparer Tout" until alldone().
    double compare_all();

    /// Seconds from `start`, which starts work in the first pane, until that pane is at rest again,
    /// or until it reports in a message box, which is closed. A report of a fault ends the program.
    double until_idle(const std::function<void()>& start);
    double until_report(const std::function<void()>& start);

    /// Ends the program unless so many files of the first pane carry a checksum, or of both panes
    /// the mark of identical files: the time of work that was not done means nothing.
    void expect_hashed(int files) const;
    void expect_identical(int files) const;

  private:
    double time_job(void (MyTreeWidget::*job)());

    MainFen window_;
};

/// Runs the event loop for a moment, so that what waits in it is done.
void settle();

} // namespace bench
