#pragma once

#include <QApplication>
#include <QEventLoop>
#include <QPointer>
#include <QTimer>
#include <QWidget>

#include <functional>

/// Runs the event loop until a condition holds; gives up after half a minute. Answers whether the
/// condition held.
template<class Condition>
bool wait_until(Condition condition)
{
    QEventLoop loop;
    QTimer poll;
    bool held = false;
    QObject::connect(&poll, &QTimer::timeout, &loop, [&] {
        held = condition();
        if (held) {
            loop.quit();
        }
    });
    poll.start(20);
    QTimer::singleShot(30000, &loop, &QEventLoop::quit);
    loop.exec();
    return held;
}

/// Waits, inside whatever event loop runs next, until a window of that type is shown, hands it to
/// `use` and closes it afterwards. So a dialog that blocks its caller is worked on nevertheless.
template<class Window>
class WhenShown
{
  public:
    explicit WhenShown(std::function<void(Window&)> use) : use_(std::move(use))
    {
        QObject::connect(&poll_, &QTimer::timeout, [this] { look(); });
        poll_.start(20);
    }

    /// Whether the window came and `use` is through with it.
    bool met() const { return met_; }

  private:
    void look()
    {
        const QWidgetList windows = QApplication::topLevelWidgets();
        for (QWidget* widget : windows) {
            const QPointer<Window> window = qobject_cast<Window*>(widget);
            if (window && window->isVisible()) {
                poll_.stop();
                use_(*window);
                if (window) {
                    window->close();
                }
                met_ = true;
                return;
            }
        }
    }

    std::function<void(Window&)> use_;
    QTimer poll_;
    bool met_ = false;
};
