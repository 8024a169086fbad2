#pragma once

#include "app/mainfen.h"
#include "demo/sample_directories.h"

/// The real main window, opened on sample directories.
class DemoWindow
{
  public:
    /// `width` and `height` are those of the window, in pixels.
    DemoWindow(const SampleDirectories& samples, int width, int height);

    MainFen& window() { return window_; }

    /// Gives the command for comparing everything and waits for its end. False when none comes.
    bool compare_all();

    /// Triggers the window's command of that text.
    void trigger(const QString& text) const;

  private:
    MainFen window_;
};
