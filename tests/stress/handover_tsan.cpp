// Tells ThreadSanitizer what hands values from one thread to another.
//
// The toolkit is not built with that sanitizer, so it sees neither a task given to a pool nor a
// call queued for another thread, and would take every value that travels by them for a race. To
// pass over such findings would pass over our own as well. So the functions that we hand over by
// stand here in front of the toolkit's, and say what happens before what. Its mutexes say so
// themselves.

#include <QMetaObject>
#include <QObject>
#include <QRunnable>
#include <QThreadPool>

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>

#include <dlfcn.h>
#include <sanitizer/tsan_interface.h>

namespace {

/// The function of that name which ours hides.
template<class Function>
Function* hidden(const char* name)
{
    void* const function = ::dlsym(RTLD_NEXT, name);
    if (!function) {
        std::fprintf(stderr, "not found in the toolkit: %s\n", name);
        std::abort();
    }
    return reinterpret_cast<Function*>(function);
}

class HandedTask final : public QRunnable
{
  public:
    explicit HandedTask(QRunnable* task) : task_(task) { __tsan_release(this); }

    void run() override
    {
        __tsan_acquire(this);
        const bool owned = task_->autoDelete();
        task_->run();
        if (owned) {
            delete task_;
        }
    }

  private:
    QRunnable* task_;
};

class HandedCall final : public QtPrivate::QSlotObjectBase
{
  public:
    explicit HandedCall(QtPrivate::QSlotObjectBase* call) : QSlotObjectBase(&act), call_(call)
    {
        __tsan_release(this);
    }

  private:
    static void act(int what, QSlotObjectBase* self, QObject* receiver, void** arguments, bool*)
    {
        __tsan_acquire(self);
        auto* handed = static_cast<HandedCall*>(self);
        if (what == Call) {
            handed->call_->call(receiver, arguments);
        } else if (what == Destroy) {
            handed->call_->destroyIfLastRef();
            delete handed;
        }
    }

    QSlotObjectBase* call_;
};

} // namespace

void QThreadPool::start(QRunnable* task, int priority)
{
    static auto* const start =
        hidden<void(QThreadPool*, QRunnable*, int)>("_ZN11QThreadPool5startEP9QRunnablei");
    start(this, new HandedTask(task), priority);
}

void QThreadPool::start(std::function<void()> task, int priority)
{
    start(QRunnable::create(std::move(task)), priority);
}

bool QMetaObject::invokeMethodImpl(QObject* receiver, QtPrivate::QSlotObjectBase* call,
                                   Qt::ConnectionType type, void* result)
{
    static auto* const invoke =
        hidden<bool(QObject*, QtPrivate::QSlotObjectBase*, Qt::ConnectionType, void*)>(
            "_ZN11QMetaObject16invokeMethodImplEP7QObjectPN9QtPrivate15QSlotObjectBaseE"
            "N2Qt14ConnectionTypeEPv");
    return invoke(receiver, new HandedCall(call), type, result);
}
