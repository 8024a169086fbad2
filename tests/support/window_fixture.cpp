#include "tests/support/window_fixture.h"

#include <QDragEnterEvent>
#include <QDropEvent>
#include <QMimeData>
#include <QTest>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace {

/// The child of the window with this text.
template<class T>
T* child_named(const QWidget& window, const QString& text, Qt::FindChildOptions options)
{
    const auto children = window.findChildren<T*>(QString(), options);
    for (T* child : children) {
        if (child->text() == text) {
            return child;
        }
    }
    qFatal("nothing is called %s", qUtf8Printable(text));
}

} // namespace

WindowFixture::WindowFixture() : old_dir_(QDir::currentPath())
{
    QDir::setCurrent(working_dir.path());
    rebuild();
}

WindowFixture::~WindowFixture()
{
    window.reset();
    QDir::setCurrent(old_dir_);
}

void WindowFixture::rebuild()
{
    window.reset();
    window = std::make_unique<MainFen>();
    first = window->first_pane();
    second = window->second_pane();
    wait_idle();
}

QAction* WindowFixture::action(const QString& text) const
{
    return child_named<QAction>(*window, text, Qt::FindDirectChildrenOnly);
}

QRadioButton* WindowFixture::radio(const QString& text) const
{
    return child_named<QRadioButton>(*window, text, Qt::FindChildrenRecursively);
}

bool WindowFixture::is_busy() const
{
    return first->job_running() || second->job_running() || first->is_listing() ||
           second->is_listing();
}

bool WindowFixture::wait_idle() const
{
    // What ends may begin something else by a queued signal.
    for (int quiet = 0; quiet < 3; ++quiet) {
        if (!QTest::qWaitFor([this] { return !is_busy(); }, 60000)) {
            return false;
        }
        QCoreApplication::processEvents();
        quiet = is_busy() ? 0 : quiet;
    }
    return true;
}

QTreeWidgetItem* find_row(const MyTreeWidget& pane, const QString& name)
{
    QTreeWidgetItem* row = pane.invisibleRootItem();
    for (const QString& part : name.split(u'/')) {
        QTreeWidgetItem* next = nullptr;
        for (int i = 0; i < row->childCount() && !next; ++i) {
            next = row->child(i)->text(ColName) == part ? row->child(i) : nullptr;
        }
        if (!next) {
            return nullptr;
        }
        row = next;
    }
    return row;
}

QString reference_digest(const QByteArray& bytes, QCryptographicHash::Algorithm algorithm)
{
    return QString::fromLatin1(QCryptographicHash::hash(bytes, algorithm).toHex());
}

bool drop_files(MyTreeWidget& pane, const QStringList& paths)
{
    QMimeData data;
    QList<QUrl> urls;
    for (const QString& path : paths) {
        urls.append(QUrl::fromLocalFile(path));
    }
    data.setUrls(urls);
    QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    enter.ignore();
    QCoreApplication::sendEvent(pane.viewport(), &enter);
    QDropEvent drop(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    drop.ignore();
    if (enter.isAccepted()) {
        QCoreApplication::sendEvent(pane.viewport(), &drop);
    }
    return drop.isAccepted();
}
