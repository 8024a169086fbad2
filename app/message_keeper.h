#pragma once

#include <QObject>
#include <QString>

class QMainWindow;

/// Keeps a message of the status bar in sight for its time: a status tip that the mouse brings up,
/// or takes away, does not replace it. Installs itself on the window and is its child.
class MessageKeeper final : public QObject
{
    Q_OBJECT

  public:
    explicit MessageKeeper(QMainWindow& window);

    /// Shows a message for so many milliseconds.
    void show(const QString& message, int milliseconds);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    QMainWindow& window_;
    QString kept_;
};
