#include "tree/background.h"

namespace {

// As many drives without an answer may be asked before others have to wait.
constexpr int most_threads = 32;

} // namespace

QThreadPool& background_pool()
{
    static QThreadPool* const pool = [] {
        auto* made = new QThreadPool;
        made->setMaxThreadCount(most_threads);
        return made;
    }();
    return *pool;
}
