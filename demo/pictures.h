#pragma once

#include <QPixmap>
#include <QString>
#include <QWidget>

/// A folder that pictures of windows go to. Every picture's path is printed as it is written.
class Pictures
{
  public:
    /// The folder is made when it is missing. Every file name begins with `prefix`.
    Pictures(const QString& folder, const QString& prefix);

    /// Writes a picture as "<prefix><name>.png"; false when that is not possible.
    bool save(const QPixmap& picture, const QString& name) const;

    /// Writes what a window shows at this moment.
    bool save_content(QWidget& window, const QString& name) const;

    /// Writes a window with a frame and a title, as people see it on their desktop.
    bool save_window(QWidget& window, const QString& name) const;

  private:
    QString folder_;
    QString prefix_;
};
