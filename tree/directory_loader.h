#pragma once

#include "engine/listing.h"

#include <QDir>
#include <QObject>

#include <memory>

/// What to list.
struct DirectoryRequest
{
    QString path;
    QDir::Filters filters;
    bool falls_back = false; ///< where the path is no directory, open the nearest that is meant
};

/// One listing of a directory in the background. Belongs to the GUI thread; drop it by abandon().
class DirectoryLoader final : public QObject
{
    Q_OBJECT

  public:
    explicit DirectoryLoader(const DirectoryRequest& request);
    ~DirectoryLoader() override;

    /// Blocks for at most so many milliseconds, and emits what came meanwhile.
    void wait(int milliseconds);

    /// Nobody wants the result any more: nothing is emitted, and the loader deletes itself.
    void abandon();

  signals:
    /// Which directory is listed, as it was named and as a canonical path (empty when it is gone).
    void resolved(const QString& path, const QString& canonical);

    /// The directory's entries, which the receiver may take. Comes last, once.
    void loaded(QList<engine::Entry>& entries);

  private:
    struct Exchange;
    static void load(const DirectoryRequest& request, const std::shared_ptr<Exchange>& exchange);
    void deliver();

    std::shared_ptr<Exchange> exchange_;
};

/// Abandons what a pointer still holds.
struct AbandonLoader
{
    void operator()(DirectoryLoader* loader) const { loader->abandon(); }
};
using DirectoryLoaderPointer = std::unique_ptr<DirectoryLoader, AbandonLoader>;
