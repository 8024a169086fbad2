// A person's way through the real window, by mouse and keys below a window manager.
//
// Started with "--source PATH...", this is another program, from whose window these are dragged.

#include "dialogs/fenres.h"
#include "tests/support/window_fixture.h"

#include <QApplication>
#include <QCheckBox>
#include <QDrag>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QProcess>
#include <QSignalSpy>
#include <QStatusBar>
#include <QTest>
#include <QToolBar>

#include <thread>

using namespace Qt::StringLiterals;

namespace {

class Source : public QWidget
{
  protected:
    void mousePressEvent(QMouseEvent*) override
    {
        auto* files = new QMimeData;
        QList<QUrl> urls;
        for (const QString& path : QCoreApplication::arguments().mid(2)) {
            urls.append(QUrl::fromLocalFile(path));
        }
        files->setUrls(urls);
        // Not on the stack: the target asks for the data when exec() has returned.
        auto* drag = new QDrag(this);
        drag->setMimeData(files);
        drag->exec(Qt::CopyAction);
    }
};

/// Sees a drag come in and end.
class DragWatch : public QObject
{
  public:
    explicit DragWatch(QWidget& target) { target.installEventFilter(this); }

    bool entered = false;
    bool dropped = false;

  protected:
    bool eventFilter(QObject*, QEvent* event) override
    {
        entered = entered || event->type() == QEvent::DragEnter;
        dropped = dropped || event->type() == QEvent::Drop;
        return false;
    }
};

/// Where a person points: a part of a widget; no widget while there is nothing to point at.
using Place = std::pair<QWidget*, QRect>;

/// Somebody in front of the window, in a thread of their own: menus and dialogs wait in the
/// window's.
class Person : public WindowFixture
{
  public:
    void lay_out(const QStringList& files)
    {
        for (const QString& file : files) {
            working_dir.createFile(file, file.toUtf8());
        }
        first->changeModel(working_dir.at(u"l"_s));
        second->changeModel(working_dir.at(u"r"_s));
    }

    /// Lets the person act; answers what they waited for in vain.
    QString walk(const std::function<void()>& way)
    {
        window->setGeometry(0, 30, 900, 600);
        window->show();
        std::atomic_bool over = false;
        std::thread thread([&] {
            sees(u"the window"_s, [this] { return window->isActiveWindow(); });
            way();
            const QString missed = std::exchange(missed_, QString());
            sees(u"the window alone"_s, [] { // or its thread would wait in what is still open
                QWidget* popup = QApplication::activePopupWidget();
                QWidget* open = popup ? popup : QApplication::activeModalWidget();
                return !open || !open->close();
            });
            missed_ = missed.isEmpty() ? missed_ : missed;
            over = true;
        });
        while (!over) {
            QTest::qWait(10);
        }
        thread.join();
        return missed_;
    }

    void sees(const QString& what, const std::function<bool()>& seen)
    {
        bool is_seen = !missed_.isEmpty();
        const QDeadlineTimer patience(20'000);
        while (!is_seen && !patience.hasExpired()) {
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
            QMetaObject::invokeMethod(
                qApp, [&] { is_seen = seen(); }, Qt::BlockingQueuedConnection);
        }
        missed_ = is_seen ? missed_ : what;
    }

    /// Goes to a place when it is there, and does there what xdotool calls `acts`.
    void at(const QString& what, const std::function<Place()>& place, const QString& acts)
    {
        QPoint to;
        sees(what, [&] {
            if (auto* results = qobject_cast<FenRes*>(QApplication::activeModalWidget())) {
                return !results->close(); // it comes when it likes
            }
            const auto [widget, part] = place();
            to = widget ? widget->mapToGlobal(part.center()) : QPoint();
            return widget && widget->isVisible();
        });
        const QString command = u"mousemove %1 %2 %3"_s.arg(to.x()).arg(to.y()).arg(acts);
        hand(command);
    }

    void hand(const QString& acts)
    {
        if (missed_.isEmpty()) {
            QProcess::execute(u"xdotool"_s, acts.split(u' '));
        }
    }

    void row(const QString& name, const QString& acts)
    {
        at(
            name,
            [&] { return Place(first->viewport(), first->visualItemRect(find_row(*first, name))); },
            acts);
    }

    /// An entry of the menu that is open, or of the menu bar.
    void entry(const QString& text)
    {
        at(
            text,
            [&] {
                auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
                const QWidget* where = menu ? static_cast<QWidget*>(menu) : window->menuBar();
                for (QAction* action : where->actions()) {
                    if (action->text() == text) {
                        return menu ? Place(menu, menu->actionGeometry(action))
                                    : Place(window->menuBar(),
                                            window->menuBar()->actionGeometry(action));
                    }
                }
                return Place();
            },
            u"click 1"_s);
    }

    /// A row, with this digest, comes to be shown.
    void shows(const QString& name, const QString& digest = {})
    {
        sees(name + u' ' + digest, [&] {
            const QTreeWidgetItem* row = find_row(*first, name);
            return row && checksum_of(*row) == digest;
        });
    }

  private:
    QString missed_;
};

} // namespace

class TestMouse : public QObject
{
    Q_OBJECT

  private slots:
    void tool_bar();
    void rows_menus_and_dialogs();
    void drag_data();
    void drag();
};

// The pointer stays on the button, whose status tip comes and goes.
void TestMouse::tool_bar()
{
    Person person;
    person.lay_out({u"l/a"_s, u"r/a"_s});
    QWidget* button =
        person.window->findChild<QToolBar*>()->widgetForAction(person.action(u"Comparer Tout"_s));
    QElapsedTimer since;
    qint64 shortest = 2000;
    int over = 0;
    connect(person.window->statusBar(), &QStatusBar::messageChanged, this,
            [&](const QString& text) {
                if (text.startsWith("Temps total"_L1)) {
                    since.start();
                } else if (since.isValid()) {
                    ++over;
                    qInfo("the message stayed %lld ms, then \"%s\"",
                          static_cast<long long>(since.elapsed()), qPrintable(text));
                    shortest = std::min(shortest, since.elapsed());
                    since.invalidate();
                }
            });
    QSet<QWidget*> opened;
    QSignalSpy judged(person.window.get(), &MainFen::alldone);
    const QString missed = person.walk([&] {
        for (int run = 1; run <= 3; ++run) {
            person.at(
                u"the button"_s, [&] { return Place(button, button->rect()); }, u"click 1"_s);
            person.sees(u"the end of the message"_s, [&] {
                for (FenRes* results : person.window->findChildren<FenRes*>()) {
                    opened.insert(results);
                }
                return over >= run;
            });
        }
    });
    QCOMPARE(missed, QString());
    QVERIFY(shortest > 1800);
    QCOMPARE(judged.count(), 3);
    QCOMPARE(opened.size(), 2);
}

void TestMouse::rows_menus_and_dialogs()
{
    Person person;
    person.lay_out({u"l/a"_s, u"l/d/b"_s, u"r/c"_s});
    const QString sha1 = reference_digest("l/a", QCryptographicHash::Sha1);
    const QString missed = person.walk([&] {
        person.row(u"a"_s, u"click --repeat 2 --delay 50 1"_s);
        person.shows(u"a"_s, reference_digest("l/a"));
        person.row(u"a"_s, u"click 3"_s);
        person.entry(u"SHA1"_s);
        person.entry(u"SHA1..."_s);
        person.shows(u"a"_s, sha1);
        person.entry(u"&Edition"_s);
        person.entry(u"Options..."_s);
        person.at(
            u"an option"_s,
            [] {
                QWidget* dialog = QApplication::activeModalWidget();
                const bool ready = dialog && dialog->isActiveWindow();
                QCheckBox* box = nullptr;
                for (QCheckBox* named :
                     ready ? dialog->findChildren<QCheckBox*>() : QList<QCheckBox*>()) {
                    box = named->text() == "Nom"_L1 ? named : box;
                }
                return Place(box, box ? QRect(0, 0, 20, box->height()) : QRect());
            },
            u"click 1 key Return"_s);
        person.sees(u"the option"_s, [&] { return person.first->ccname; });
        person.hand(u"key Escape"_s); // whether to start anew: the language has never been chosen
        person.row(u"d"_s, u"click --repeat 2 --delay 50 1"_s);
        person.shows(u"b"_s);
        person.row(u"b"_s, u"click 1 key BackSpace"_s);
        person.shows(u"a"_s);
    });
    QCOMPARE(missed, QString());
}

void TestMouse::drag_data()
{
    QTest::addColumn<bool>("busy");
    QTest::newRow("files") << false;
    QTest::newRow("a job began on the way") << true;
}

void TestMouse::drag()
{
    QFETCH(bool, busy);
    Person person;
    if (person.working_dir.createHuge(u"l/huge"_s).isEmpty()) {
        QSKIP("no sparse files of 1 TiB here");
    }
    person.lay_out({u"from/é b"_s, u"r/é b"_s});
    QProcess source;
    source.start(QCoreApplication::applicationFilePath(),
                 {u"--source"_s, person.working_dir.at(u"from/é b"_s)});
    QWidget* pane = person.first->viewport();
    const DragWatch watch(*pane);
    const QString missed = person.walk([&] {
        person.hand(u"search --sync --onlyvisible --name source mousemove --window %1 50 50 "
                    "mousedown 1"_s);
        person.at(
            u"the pane"_s, [&] { return Place(pane, pane->rect()); },
            u"sleep 0.2 mousemove_relative 5 5"_s);
        person.sees(u"the drag"_s, [&] { return watch.entered; });
        person.sees(u"the job"_s, [&] {
            busy ? person.first->HashAll() : void();
            return person.first->job_running() == busy;
        });
        person.hand(u"mouseup 1"_s);
        person.sees(u"the drop"_s, [&] { return watch.dropped; });
        person.shows(busy ? u"huge"_s : u"é b"_s, busy ? QString() : reference_digest("from/é b"));
    });
    QCOMPARE(missed, QString());
    QCOMPARE(person.first->job_running(), busy);
    person.first->stop_thread();
    QVERIFY(person.wait_idle());
    source.kill();
    source.waitForFinished();
}

int main(int argc, char* argv[])
{
    const QApplication application(argc, argv);
    if (argc > 1 && qstrcmp(argv[1], "--source") == 0) {
        Source source;
        source.setWindowTitle(u"source"_s);
        source.setGeometry(1000, 100, 200, 200);
        source.show();
        return QApplication::exec();
    }
    TestMouse test;
    return QTest::qExec(&test, argc, argv);
}
#include "test_mouse.moc"
