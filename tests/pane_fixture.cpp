#include "tests/pane_fixture.h"

#include "engine/product.h"

#include <QDir>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QSignalSpy>
#include <QStatusBar>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

template<class Wanted>
QString names_if(const MyTreeWidget& pane, Wanted wanted)
{
    QStringList found;
    for (int i = 0; i < pane.topLevelItemCount(); ++i) {
        if (wanted(*pane.topLevelItem(i))) {
            found.append(pane.topLevelItem(i)->text(ColName));
        }
    }
    return found.join(u", "_s);
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
    const auto actions = window->findChildren<QAction*>(QString(), Qt::FindDirectChildrenOnly);
    for (QAction* action : actions) {
        if (action->text() == text) {
            return action;
        }
    }
    qFatal("no action %s", qPrintable(text));
}

QRadioButton* WindowFixture::radio(const QString& text) const
{
    const auto buttons = window->findChildren<QRadioButton*>();
    for (QRadioButton* button : buttons) {
        if (button->text() == text) {
            return button;
        }
    }
    qFatal("no button %s", qPrintable(text));
}

bool WindowFixture::wait_idle(const MyTreeWidget& a, const MyTreeWidget& b)
{
    const auto busy = [](const MyTreeWidget& pane) {
        return pane.job_running() || pane.is_listing();
    };
    bool idle = true;
    for (int i = 0; i < 3; ++i) {
        idle = QTest::qWaitFor([&] { return !busy(a) && !busy(b); }, 60000);
        QCoreApplication::processEvents();
    }
    return idle;
}

bool WindowFixture::compare_all()
{
    clear_message();
    QSignalSpy done(window.get(), &MainFen::alldone);
    action(u"Comparer Tout"_s)->trigger();
    return wait_idle() && done.count() == 1;
}

void WindowFixture::clear_message()
{
    window->statusBar()->clearMessage();
}

QTreeWidgetItem* find_row(const MyTreeWidget& pane, const QString& name)
{
    QTreeWidgetItem* row = nullptr;
    for (const QString& part : name.split(u'/')) {
        const int count = row ? row->childCount() : pane.topLevelItemCount();
        QTreeWidgetItem* next = nullptr;
        for (int i = 0; i < count && !next; ++i) {
            QTreeWidgetItem* candidate = row ? row->child(i) : pane.topLevelItem(i);
            next = candidate->text(ColName) == part ? candidate : nullptr;
        }
        if (!next) {
            return nullptr;
        }
        row = next;
    }
    return row;
}

QString shown_in(const MyTreeWidget& pane)
{
    return names_if(pane, [](const QTreeWidgetItem&) { return true; });
}

QString hashed_in(const MyTreeWidget& pane)
{
    return names_if(pane, [](const QTreeWidgetItem& row) { return !row.text(ColHash).isEmpty(); });
}

QString selected_in(const MyTreeWidget& pane)
{
    QStringList found;
    for (const QTreeWidgetItem* row : pane.selectedItems()) {
        found.append(row->text(ColName));
    }
    return found.join(u", "_s);
}

QString checksum_at(const MyTreeWidget& pane, const QString& name)
{
    const QTreeWidgetItem* row = find_row(pane, name);
    return row ? row->text(ColHash) : u"?"_s;
}

QString mark_at(const MyTreeWidget& pane, const QString& name)
{
    const QTreeWidgetItem* row = find_row(pane, name);
    if (!row) {
        return u"?"_s;
    }
    const QBrush brush = row->background(ColSize);
    if (row->background(ColName) != brush || row->background(ColHash) != brush ||
        row->background(ColPath) != QBrush()) {
        return u"mixed"_s;
    }
    const QList<std::pair<Qt::GlobalColor, QString>> names = {{Qt::green, u"green"_s},
                                                              {Qt::red, u"red"_s},
                                                              {Qt::yellow, u"yellow"_s},
                                                              {Qt::white, u"white"_s}};
    for (const auto& [color, text] : names) {
        if (brush == QBrush(color, Qt::SolidPattern)) {
            return text;
        }
    }
    return brush == QBrush() ? QString() : u"other"_s;
}

QString reference_digest(const QByteArray& bytes, QCryptographicHash::Algorithm algorithm)
{
    return QString::fromLatin1(QCryptographicHash::hash(bytes, algorithm).toHex());
}

void select_names(MyTreeWidget& pane, const QStringList& names)
{
    pane.clearSelection();
    for (const QString& name : names) {
        find_row(pane, name)->setSelected(true);
    }
}

void expand(MyTreeWidget& pane, const QString& name)
{
    find_row(pane, name)->setExpanded(true);
}

void activate(MyTreeWidget& pane, const QString& name)
{
    emit pane.itemActivated(find_row(pane, name), 0);
}

bool drag_in(MyTreeWidget& pane, const QMimeData& data)
{
    QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    enter.ignore();
    QCoreApplication::sendEvent(pane.viewport(), &enter);
    return enter.isAccepted();
}

bool let_go(MyTreeWidget& pane, const QMimeData& data)
{
    QDropEvent drop(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    drop.ignore();
    QCoreApplication::sendEvent(pane.viewport(), &drop);
    return drop.isAccepted();
}

bool drop_urls(MyTreeWidget& pane, const QList<QUrl>& urls)
{
    QMimeData data;
    data.setUrls(urls);
    return drag_in(pane, data) && let_go(pane, data);
}

bool drop_files(MyTreeWidget& pane, const QStringList& paths)
{
    QList<QUrl> urls;
    for (const QString& path : paths) {
        urls.append(QUrl::fromLocalFile(path));
    }
    return drop_urls(pane, urls);
}

QString own_methods(const QMetaObject& meta, QMetaMethod::MethodType kind)
{
    QStringList signatures;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        if (meta.method(i).methodType() == kind) {
            signatures.append(QString::fromLatin1(meta.method(i).methodSignature()));
        }
    }
    return signatures.join(u' ');
}
