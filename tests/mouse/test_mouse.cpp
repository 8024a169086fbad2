// A person's way through the real window, by mouse and keys below a window manager.
//
// Started with "--source PATH...", this is another program, from whose window these are dragged.

#include "dialogs/fenres.h"
#include "tests/support/scene.h"

namespace {

class Source : public QWidget
{
  protected:
    void mousePressEvent(QMouseEvent*) override
    {
        auto* files = new QMimeData;
        files->setUrls({QUrl::fromLocalFile(QCoreApplication::arguments().last())});
        // Not on the stack: the target asks for the data when exec() has returned.
        auto* drag = new QDrag(this);
        drag->setMimeData(files);
        drag->exec(Qt::CopyAction);
    }
};

/// Somebody in front of the window, who takes each step as soon as it can be taken.
class Person : public Scene
{
  public:
    Person()
    {
        uses_dialogs = false;
        window->setGeometry(0, 30, 900, 600);
        window->show();
    }

    /// Takes steps; answers the one that waited in vain. A step is what to point at, by kind and
    /// name, and what xdotool calls the act; or "shows", a row and its digest.
    QString walk(QStringList steps)
    {
        QTimer legs; // menus and dialogs wait in event loops of their own
        QDeadlineTimer patience(20'000);
        const auto over = [&] { return steps.isEmpty() || patience.hasExpired(); };
        legs.callOnTimeout([&] {
            if (auto* results = qobject_cast<FenRes*>(QApplication::activeModalWidget())) {
                results->close(); // it comes when it likes
            } else if (patience.hasExpired()) {
                QApplication::closeAllWindows(); // or nothing would end
            } else if (!steps.isEmpty() && take(steps.first().split(u", "_s))) {
                steps.removeFirst();
                patience.setRemainingTime(20'000);
            }
        });
        legs.start(20);
        return QTest::qWaitFor(over, INT_MAX) ? steps.value(0) : u"the end"_s;
    }

    std::function<bool()> moment = [] { return true; }; ///< what the step "moment" waits for

    static bool hand(const QString& acts)
    {
        return QProcess::execute(u"xdotool"_s, acts.split(u' ')) == 0;
    }

  private:
    bool take(const QStringList& step)
    {
        const QTreeWidgetItem* row = find_row(*first, step.value(1));
        if (step[0] == "hand"_L1) { return hand(step[1]); }
        if (step[0] == "moment"_L1) { return moment(); }
        if (step[0] == "shows"_L1) { return row && checksum_of(*row) == step.value(2); }
        const auto [widget, part] = place(step[0], step[1]);
        const QPoint to = widget ? widget->mapToGlobal(part.center()) : QPoint();
        return widget && widget->isVisible() &&
               hand(u"mousemove %1 %2 %3"_s.arg(to.x()).arg(to.y()).arg(step[2]));
    }

    std::pair<QWidget*, QRect> place(const QString& kind, const QString& name) const
    {
        QWidget* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        QWidget* bar = menu ? menu : window->menuBar();
        QWidget* dialog = QApplication::activeModalWidget();
        QWidget* rows = first->viewport();
        if (kind == "pane"_L1) { return {rows, rows->rect()}; }
        if (kind == "row"_L1) { return {rows, first->visualItemRect(find_row(*first, name))}; }
        if (kind == "button"_L1) {
            auto* tools = window->findChild<QToolBar*>();
            auto* button = tools->widgetForAction(named<QAction>(*window, name));
            return {button, button->rect()};
        }
        if (kind == "tick"_L1 && dialog && dialog->isActiveWindow()) {
            return {named<QCheckBox>(*dialog, name), QRect(0, 0, 20, 20)};
        }
        for (QAction* action : bar->actions()) {
            if (kind == "entry"_L1 && action->text() == name) {
                return {bar, menu ? static_cast<QMenu*>(menu)->actionGeometry(action)
                                  : window->menuBar()->actionGeometry(action)};
            }
        }
        return {nullptr, QRect()};
    }
};

} // namespace

class TestMouse : public QObject
{
    Q_OBJECT

  private slots:
    void tool_bar();
    void rows_menus_and_dialogs();
    void drag();

  private:
    void drop_files(bool busy);
};

// The pointer stays on the button, whose status tip comes and goes.
void TestMouse::tool_bar()
{
    Person person;
    person.run(u"lay l/a r/a"_s);
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
    for (int run = 1; run <= 3; ++run) {
        person.moment = [&] { return stayed.size() == run; };
        QCOMPARE(person.walk({u"button, Comparer Tout, click 1"_s, u"moment"_s}), QString());
    }
    QVERIFY(*std::min_element(stayed.begin(), stayed.end()) > 1800);
    QCOMPARE(person.window->findChildren<FenRes*>().size(), 2);
}

void TestMouse::rows_menus_and_dialogs()
{
    Person person;
    person.run(u"lay l/a l/d/b"_s);
    person.moment = [&] { return person.first->ccname; };
    const QString twice = u"click --repeat 2 --delay 50 1"_s;
    const QString missed =
        person.walk({u"row, a, "_s + twice, u"shows, a, "_s + reference_digest("a"),
                     u"row, a, click 3"_s, u"entry, SHA1, click 1"_s, u"entry, SHA1..., click 1"_s,
                     u"shows, a, "_s + reference_digest("a", QCryptographicHash::Sha1),
                     u"entry, &Edition, click 1"_s, u"entry, Options..., click 1"_s,
                     u"tick, Nom, click 1 key Return"_s, u"moment"_s, u"row, d, "_s + twice,
                     u"shows, b"_s, u"row, b, click 1 key BackSpace"_s, u"shows, a"_s});
    QCOMPARE(missed, QString());
}

void TestMouse::drag()
{
    drop_files(false);
    drop_files(true); // a job began on the way
}

void TestMouse::drop_files(bool busy)
{
    Person person;
    person.run(u"lay l/huge=huge \"from/é b=x\" \"r/é b\""_s);
    QProcess source;
    source.start(QCoreApplication::applicationFilePath(),
                 {u"--source"_s, person.working_dir.at(u"from/é b"_s)});
    person.moment = [&] {
        busy ? person.first->HashAll() : void();
        return person.first->job_running() == busy;
    };
    const QString missed = person.walk(
        {u"hand, search --onlyvisible --name source mousemove --window %1 50 50 mousedown 1"_s,
         u"pane, , sleep 0.2 mousemove_relative 5 5 sleep 0.2"_s, u"moment"_s, u"hand, mouseup 1"_s,
         u"pane, , sleep 0.3"_s,
         busy ? u"shows, huge"_s : u"shows, é b, "_s + reference_digest("x")});
    QCOMPARE(missed, QString());
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
