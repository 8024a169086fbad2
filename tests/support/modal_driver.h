#pragma once

#include <QApplication>
#include <QPointer>
#include <QTimer>

#include <functional>

/// Waits, inside whatever event loop runs next, for a modal dialog of that type, hands it to `use`
/// and then closes it if it is still open, so that no test hangs in it.
template<class Dialog>
class ModalDriver
{
  public:
    explicit ModalDriver(std::function<void(Dialog&)> use) : use_(std::move(use))
    {
        QObject::connect(&poll_, &QTimer::timeout, [this] { look(); });
        poll_.start(1);
    }

    /// Whether the dialog came; lets events pass first, so that "no" means that none will come.
    bool met() const
    {
        for (int i = 0; i < 5; ++i) {
            QCoreApplication::processEvents();
        }
        return met_;
    }

  private:
    void look()
    {
        const QPointer<Dialog> dialog = qobject_cast<Dialog*>(QApplication::activeModalWidget());
        if (!dialog) {
            return;
        }
        poll_.stop();
        met_ = true;
        use_(*dialog);
        if (dialog) {
            dialog->reject();
        }
    }

    std::function<void(Dialog&)> use_;
    QTimer poll_;
    bool met_ = false;
};
