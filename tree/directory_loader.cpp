#include "tree/directory_loader.h"

#include "platform/volumes.h"
#include "tree/background.h"

#include <QPointer>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <utility>

namespace {

// Asked for a longer path, a system may cut it off and answer for another one.
constexpr qsizetype longest_path = 32'000;

bool is_directory(const QString& path)
{
    return !path.isEmpty() && path.size() <= longest_path && QDir(path).exists();
}

/// Takes a path, a saved path whose drive is gone, or the text of a selector entry.
QString nearest_directory(const QString& path)
{
    if (is_directory(path)) {
        return path;
    }
    const QStringList roots = platform::fallback_roots(path);
    for (const QString& root : roots) {
        if (is_directory(root)) {
            return root;
        }
    }
    return QDir::rootPath();
}

} // namespace

/// Shared by both threads, so that neither outlives it.
struct DirectoryLoader::Exchange
{
    struct Resolved
    {
        QString path;
        QString canonical;
    };

    template<class T>
    void put(std::optional<T>& into, T news)
    {
        const std::lock_guard lock(mutex);
        into = std::move(news);
        came.notify_all();
        if (receiver) {
            QMetaObject::invokeMethod(receiver, &DirectoryLoader::deliver, Qt::QueuedConnection);
        }
    }

    std::stop_source stop;
    std::mutex mutex; ///< guards what follows
    std::condition_variable came;
    DirectoryLoader* receiver = nullptr;
    std::optional<Resolved> resolved;
    std::optional<QList<engine::Entry>> entries;
};

DirectoryLoader::DirectoryLoader(const DirectoryRequest& request)
    : exchange_(std::make_shared<Exchange>())
{
    exchange_->receiver = this;
    background_pool().start([request, exchange = exchange_] { load(request, exchange); });
}

DirectoryLoader::~DirectoryLoader()
{
    exchange_->stop.request_stop();
    const std::lock_guard lock(exchange_->mutex);
    exchange_->receiver = nullptr;
}

void DirectoryLoader::load(const DirectoryRequest& request,
                           const std::shared_ptr<Exchange>& exchange)
{
    const QString path = request.falls_back ? nearest_directory(request.path) : request.path;
    exchange->put(exchange->resolved,
                  Exchange::Resolved{path, QFileInfo(path).canonicalFilePath()});
    exchange->put(exchange->entries,
                  engine::list_directory(path, request.filters, exchange->stop.get_token()));
}

void DirectoryLoader::wait(int milliseconds)
{
    {
        std::unique_lock lock(exchange_->mutex);
        exchange_->came.wait_for(lock, std::chrono::milliseconds(milliseconds),
                                 [this] { return exchange_->entries.has_value(); });
    }
    deliver();
}

void DirectoryLoader::deliver()
{
    std::optional<Exchange::Resolved> resolved_now;
    std::optional<QList<engine::Entry>> entries_now;
    {
        const std::lock_guard lock(exchange_->mutex);
        if (!exchange_->receiver) {
            return;
        }
        resolved_now = std::exchange(exchange_->resolved, std::nullopt);
        entries_now = std::exchange(exchange_->entries, std::nullopt);
    }
    const QPointer<DirectoryLoader> alive(this);
    if (resolved_now) {
        emit resolved(resolved_now->path, resolved_now->canonical);
    }
    if (entries_now && alive) {
        emit loaded(*entries_now);
    }
}

void DirectoryLoader::abandon()
{
    disconnect();
    exchange_->stop.request_stop();
    {
        const std::lock_guard lock(exchange_->mutex);
        exchange_->receiver = nullptr;
    }
    deleteLater();
}
