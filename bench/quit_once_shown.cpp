// Linked into a program with windows, ends it as soon as the first of them has been painted. The
// program's own main() stays as it is.

#include <QCoreApplication>
#include <QEvent>
#include <QTimer>

#include <cstdlib>

namespace {

class FirstPaint final : public QObject
{
  public:
    using QObject::QObject;

    bool eventFilter(QObject* /*watched*/, QEvent* event) override
    {
        if (event->type() == QEvent::Paint) {
            // The other widgets are painted before the event loop comes to this. The end of a
            // program is not part of its start: it is cut off.
            QTimer::singleShot(0, [] { std::_Exit(EXIT_SUCCESS); });
        }
        return false;
    }
};

void watch_for_first_paint()
{
    QCoreApplication::instance()->installEventFilter(new FirstPaint(qApp));
}

} // namespace

Q_COREAPP_STARTUP_FUNCTION(watch_for_first_paint)
