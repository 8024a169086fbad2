// A person's way through the real window, by mouse and keys below a window manager.
//
// Started with "--source PATH...", this is another program, from whose window these are dragged.

#include "dialogs/fenres.h"
#include "tests/support/scene.h"

#include <QApplication>
#include <QCheckBox>
#include <QDrag>
#include <QDragEnterEvent>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QProcess>
#include <QStatusBar>
#include <QTest>
#include <QToolBar>

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

/// Where a person points: a part of a widget; no widget while there is nothing to point at.
using Place = std::pair<QWidget*, QRect>;

/// Somebody in front of the window, who takes each step once what it waits for is to be seen.
class Person : public Scene
{
  public:
    Person()
    {
        uses_dialogs = false;
        window->setGeometry(0, 30, 900, 600);
        window->show();
        sees(u"the window"_s, [this] { return window->isActiveWindow(); });
    }

    /// Takes the steps; answers which one waited in vain.
    QString walk()
    {
        QTimer legs; // menus and dialogs wait in event loops of their own
        QDeadlineTimer patience(20'000);
        legs.callOnTimeout([&] {
            if (auto* results = qobject_cast<FenRes*>(QApplication::activeModalWidget())) {
                results->close(); // it comes when it likes
            } else if (!steps_.isEmpty() && steps_.first().second()) {
                steps_.removeFirst();
                patience.setRemainingTime(20'000);
            } else if (patience.hasExpired()) {
                for (QWidget* open : QApplication::topLevelWidgets()) {
                    open == window.get() || open->close(); // or nothing would end
                }
            }
        });
        legs.start(20);
        const auto over = [&] { return steps_.isEmpty() || patience.hasExpired(); };
        return !QTest::qWaitFor(over, INT_MAX) ? u"the end"_s
               : steps_.isEmpty()              ? QString()
                                               : steps_.first().first;
    }

    void sees(const QString& what, std::function<bool()> seen) { steps_ << Step(what, seen); }

    /// What xdotool calls `acts`.
    static bool hand(const QString& acts)
    {
        return QProcess::execute(u"xdotool"_s, acts.split(u' ')) == 0;
    }

    /// Goes to a place when it is there, and does something there.
    void at(const QString& what, const std::function<Place()>& place, const QString& acts)
    {
        sees(what, [place, acts] {
            const auto [widget, part] = place();
            const QPoint to = widget ? widget->mapToGlobal(part.center()) : QPoint();
            return widget && widget->isVisible() &&
                   hand(u"mousemove %1 %2 %3"_s.arg(to.x()).arg(to.y()).arg(acts));
        });
    }

    void row(const QString& name, const QString& acts)
    {
        const auto place = [this, name] { return first->visualItemRect(find_row(*first, name)); };
        at(
            name, [this, place] { return Place(first->viewport(), place()); }, acts);
    }

    /// An entry of the menu that is open, or of the menu bar.
    void entry(const QString& text)
    {
        const auto place = [this, text] {
            auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            auto* bar = window->menuBar();
            for (QAction* action : menu ? menu->actions() : bar->actions()) {
                if (action->text() == text) {
                    return menu ? Place(menu, menu->actionGeometry(action))
                                : Place(bar, bar->actionGeometry(action));
                }
            }
            return Place();
        };
        at(text, place, u"click 1"_s);
    }

    /// A row, with this digest, comes to be shown.
    void shows(const QString& name, const QString& digest = {})
    {
        sees(name + u' ' + digest, [this, name, digest] {
            const QTreeWidgetItem* row = find_row(*first, name);
            return row && checksum_of(*row) == digest;
        });
    }

  private:
    using Step = std::pair<QString, std::function<bool()>>;
    QList<Step> steps_;
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

  protected:
    bool eventFilter(QObject*, QEvent* event) override
    {
        dragged_ << event->type();
        return false;
    }

  private:
    QList<QEvent::Type> dragged_;
};

// The pointer stays on the button, whose status tip comes and goes.
void TestMouse::tool_bar()
{
    Person person;
    person.run(u"put l/a r/a"_s);
    QElapsedTimer since;
    QList<qint64> stayed;
    connect(person.window->statusBar(), &QStatusBar::messageChanged, this, [&](const QString& now) {
        if (now.startsWith("Temps total"_L1)) {
            since.start();
        } else if (since.isValid()) {
            stayed << since.elapsed();
            since.invalidate();
        }
    });
    QWidget* button = person.window->findChild<QToolBar*>()->widgetForAction(
        person.named<QAction>(*person.window, u"Comparer Tout"_s));
    for (int run = 1; run <= 3; ++run) {
        person.at(
            u"the button"_s, [=] { return Place(button, button->rect()); }, u"click 1"_s);
        person.sees(u"the end of the message"_s, [&, run] { return stayed.size() >= run; });
    }
    QCOMPARE(person.walk(), QString());
    QVERIFY(*std::min_element(stayed.begin(), stayed.end()) > 1800);
    QCOMPARE(stayed.size(), 3);
    QCOMPARE(person.window->findChildren<FenRes*>().size(), 2);
}

void TestMouse::rows_menus_and_dialogs()
{
    Person person;
    person.run(u"put l/a l/d/b"_s);
    person.run(u"call L Reset"_s);
    person.row(u"a"_s, u"click --repeat 2 --delay 50 1"_s);
    person.shows(u"a"_s, reference_digest("a"));
    person.row(u"a"_s, u"click 3"_s);
    person.entry(u"SHA1"_s);
    person.entry(u"SHA1..."_s);
    person.shows(u"a"_s, reference_digest("a", QCryptographicHash::Sha1));
    person.entry(u"&Edition"_s);
    person.entry(u"Options..."_s);
    const auto option = [&] {
        QWidget* dialog = QApplication::activeModalWidget();
        auto* box = dialog && dialog->isActiveWindow() ? person.named<QCheckBox>(*dialog, u"Nom"_s)
                                                       : nullptr;
        return Place(box, QRect(0, 0, 20, 20));
    };
    person.at(u"an option"_s, option, u"click 1 key Return"_s);
    person.sees(u"the option"_s, [&] { return person.first->ccname; });
    person.row(u"d"_s, u"click --repeat 2 --delay 50 1"_s);
    person.shows(u"b"_s);
    person.row(u"b"_s, u"click 1 key BackSpace"_s);
    person.shows(u"a"_s);
    QCOMPARE(person.walk(), QString());
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
    person.run(u"put l/huge=huge \"from/é b=x\" \"r/é b\""_s);
    person.run(u"call L Reset"_s);
    QProcess source;
    source.start(QCoreApplication::applicationFilePath(),
                 {u"--source"_s, person.working_dir.at(u"from/é b"_s)});
    QWidget* pane = person.first->viewport();
    pane->installEventFilter(this);
    dragged_.clear();
    person.sees(u"the source"_s, [] {
        return Person::hand(u"search --onlyvisible --name source mousemove --window %1 50 50 "
                            "mousedown 1"_s);
    });
    person.at(
        u"the pane"_s, [=] { return Place(pane, pane->rect()); },
        u"sleep 0.2 mousemove_relative 5 5"_s);
    person.sees(u"the drag"_s, [&] { return dragged_.contains(QEvent::DragEnter); });
    person.sees(u"the job"_s, [&] {
        busy ? person.first->HashAll() : void();
        return person.first->job_running() == busy && Person::hand(u"mouseup 1"_s);
    });
    person.sees(u"the drop"_s, [&] { return dragged_.contains(QEvent::Drop); });
    person.shows(busy ? u"huge"_s : u"é b"_s, busy ? QString() : reference_digest("x"));
    QCOMPARE(person.walk(), QString());
    QCOMPARE(person.first->job_running(), busy);
    person.run(u"stop L"_s);
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
