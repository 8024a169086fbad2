// Tells ThreadSanitizer what hands values from one thread to another.
//
// The toolkit is not built with that sanitizer, so it sees neither a task given to a pool nor a
// call queued for another thread, and would take every value that travels by them for a race. To
// pass over such findings would pass over our own as well. So the functions that we hand over by
// stand here in front of the toolkit's. Its mutexes say what happens before what themselves.

#include <QMetaObject>
#include <QObject>
#include <QThreadPool>

#include <functional>

#include <dlfcn.h>
#include <sanitizer/tsan_interface.h>

namespace {

/// The function of that name which ours hides.
template<class Function>
Function* hidden(const char* name)
{
    return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}

class HandedTask final : public QRunnable
{
  public:
    explicit HandedTask(QRunnable* task) : task_(task) { __tsan_release(this); }

    void run() override
    {
        __tsan_acquire(this);
        const std::unique_ptr<QRunnable> owned(task_->autoDelete() ? task_ : nullptr);
        task_->run();
    }

  private:
    QRunnable* task_;
};

class HandedCall final : public QtPrivate::QSlotObjectBase
{
  public:
    explicit HandedCall(QSlotObjectBase* call) : QSlotObjectBase(&act), call_(call)
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
    hidden<void(QThreadPool*, QRunnable*, int)>("_ZN11QThreadPool5startEP9QRunnablei")(
        this, new HandedTask(task), priority);
}

void QThreadPool::start(std::function<void()> task, int priority)
{
    start(QRunnable::create(std::move(task)), priority);
}

bool QMetaObject::invokeMethodImpl(QObject* receiver, QtPrivate::QSlotObjectBase* call,
                                   Qt::ConnectionType type, void* result)
{
    using Invoke = bool(QObject*, QtPrivate::QSlotObjectBase*, Qt::ConnectionType, void*);
    return hidden<Invoke>(
        "_ZN11QMetaObject16invokeMethodImplEP7QObjectPN9QtPrivate15QSlotObjectBaseE"
        "N2Qt14ConnectionTypeEPv")(receiver, new HandedCall(call), type, result);
}
