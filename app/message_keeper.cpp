#include "app/message_keeper.h"

#include <QEvent>
#include <QMainWindow>
#include <QStatusBar>

MessageKeeper::MessageKeeper(QMainWindow& window) : QObject(&window), window_(window)
{
    window.installEventFilter(this);
}

void MessageKeeper::show(const QString& message, int milliseconds)
{
    kept_ = message;
    window_.statusBar()->showMessage(message, milliseconds);
}

bool MessageKeeper::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::StatusTip && !kept_.isEmpty()) {
        if (window_.statusBar()->currentMessage() == kept_) {
            return true;
        }
        kept_.clear();
    }
    return QObject::eventFilter(watched, event);
}
