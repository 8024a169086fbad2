// Files dragged by the mouse from another program's window onto a pane.

#include "tests/pane_fixture.h"

#include <QDragEnterEvent>
#include <QFile>
#include <QProcess>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

bool xdotool(const QString& command, QPoint point = {})
{
    QStringList arguments(command);
    if (command == "mousemove"_L1) {
        arguments << QString::number(point.x()) << QString::number(point.y());
    } else {
        arguments << u"1"_s;
    }
    return QProcess::execute(u"xdotool"_s, arguments) == 0;
}

/// The program that offers files, as a process of its own.
class Source : public QProcess
{
  public:
    explicit Source(const QStringList& paths)
    {
        setProcessChannelMode(QProcess::ForwardedErrorChannel);
        start(QString::fromLocal8Bit(TAVREL_DRAG_SOURCE), paths);
    }
    ~Source() override
    {
        kill();
        waitForFinished();
    }

    bool said(const QByteArray& word)
    {
        return QTest::qWaitFor(
            [&] {
                said_ += readAll();
                return said_.contains(word + '\n');
            },
            30000);
    }

  private:
    QByteArray said_;
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

} // namespace

class TestRealDrag : public QObject
{
    Q_OBJECT

  private slots:
    void onto_the_pane_data();
    void onto_the_pane();
};

void TestRealDrag::onto_the_pane_data()
{
    QTest::addColumn<QStringList>("dragged");
    QTest::addColumn<bool>("busy");
    QTest::addColumn<bool>("custom");
    QTest::addColumn<QStringList>("green");

    QTest::newRow("file") << QStringList{u"left/é b.txt"_s} << false << true
                          << QStringList{u"é b.txt"_s};
    QTest::newRow("files") << QStringList{u"left/é b.txt"_s, u"left/a.txt"_s} << false << true
                           << QStringList{u"a.txt"_s, u"é b.txt"_s};
    QTest::newRow("directory") << QStringList{u"left"_s} << false << false << QStringList{};
    QTest::newRow("during a job") << QStringList{u"left/a.txt"_s} << true << false << QStringList{};
}

void TestRealDrag::onto_the_pane()
{
    QFETCH(QStringList, dragged);
    QFETCH(bool, busy);
    QFETCH(bool, custom);
    QFETCH(QStringList, green);

    WindowFixture fixture;
    TestDir& dir = fixture.working_dir;
    for (const auto* name : {"left/a.txt", "left/é b.txt", "right/a.txt", "right/é b.txt"}) {
        dir.createFile(QString::fromUtf8(name), "same");
    }
    QFile huge(dir.createFile(u"busy/huge.bin"_s));
    QVERIFY(huge.open(QIODevice::ReadWrite) && huge.resize(qint64(64) << 30));
    MyTreeWidget& pane = *fixture.first;
    pane.changeModel(dir.at(u"busy"_s));
    fixture.second->changeModel(dir.at(u"right"_s));
    fixture.window->setGeometry(0, 0, 900, 600);
    fixture.window->show();
    QVERIFY(QTest::qWaitForWindowExposed(fixture.window.get()));

    for (QString& path : dragged) {
        path = dir.at(path);
    }
    Source source(dragged);
    QVERIFY(source.said("shown"));
    const DragWatch watch(*pane.viewport());
    const QPoint target = pane.viewport()->mapToGlobal(pane.viewport()->rect().center());
    QVERIFY(xdotool(u"mousemove"_s, {1100, 200}) && xdotool(u"mousedown"_s));
    QVERIFY(source.said("dragging"));
    QVERIFY(xdotool(u"mousemove"_s, {950, 300}) && xdotool(u"mousemove"_s, target));
    QTRY_VERIFY(watch.entered);
    if (busy) {
        select_names(pane, {u"huge.bin"_s});
        pane.HashThis();
    }
    QVERIFY(xdotool(u"mouseup"_s));
    QTRY_VERIFY(watch.dropped);
    if (busy) {
        QVERIFY(pane.job_running());
        QVERIFY(find_row(pane, u"huge.bin"_s));
        pane.stop_thread();
    }
    QVERIFY(fixture.wait_idle());

    QCOMPARE(pane.in_custom_mode(), custom);
    if (custom) {
        QCOMPARE(pane.topLevelItemCount(), green.size());
    } else if (!busy) {
        QCOMPARE(checksum_at(pane, u"é b.txt"_s), reference_digest("same"));
    }
    for (const QString& name : green) {
        QCOMPARE(mark_at(pane, name), u"green"_s);
        QCOMPARE(mark_at(*fixture.second, name), u"green"_s);
    }
}

QTEST_MAIN(TestRealDrag)
#include "test_real_drag.moc"
