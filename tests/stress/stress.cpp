// Random use of the main window (SEED=1 STEPS=1500 stress): scenario lines, written by chance and
// played without waiting, and what no line can say: the mouse on the tool bar, menus, dialogs.
// Files whose names begin with "s" never change, so what is said of them can be judged at any time.

#include "tests/stress/confined.h"
#include "tests/support/scene.h"

#include <cstdio>

// Present when the program is built with a sanitizer.
extern "C" __attribute__((weak)) void __sanitizer_set_death_callback(void (*callback)());

namespace {

/// How often a line comes, and the line. One of the words that "|" parts is taken; S is a row of
/// the pane, A a command of it, W one of the window.
constexpr const char* const templates[] = {
    "9 tool \"Comparer Tout\"",
    "5 tool W",
    "5 command W",
    "6 radio MD5|SHA1",
    "9 type L l|l/d",
    "9 type R r|r/d",
    "6 type L|R l|r|l/d|r/d|l/big|none|l/m1",
    "9 select L|R S S S",
    "9 activate|expand L|R S",
    "9 call L|R HashThis|HashAll|Reset",
    "4 stop L|R",
    "8 do L|R A",
    "9 key L|R Up|Down|Left|Right|*|+|-|Home|PgDown|Return|Backspace|Space|Esc|Tab|X|F5|F2|F3",
    "5 key L|R Shift+End|Ctrl+A|Ctrl+D|Ctrl+S|Ctrl+F|Ctrl+C|Ctrl+Shift+F|Ctrl+Shift+D",
    "4 menu L|R S",
    "7 drop L|R l/same|l/s.x|l/sums.md5|r/d|l/big|none r/same|l/d/same|r/d/m2|l/sother",
    "2 drop L|R l/d|r/same|l/m1",
    "4 args l|l/d|l/same|r/d/m2|l/sums.md5|none",
    "2 args l/same|l/m1 l/s.x|none",
    "1 window",
    "9 put l/m1|l/d/m2|r/m1|r/d/m2|r/d/m3.md5",
    "9 put l/m1=|l/d/m2=|r/m1=|r/d/m2=|r/d/m3.md5=",
    "9 put l/m1=changed|l/d/m2=changed|r/m1=changed|r/d/m2=changed|l/m1=huge",
    "9 rm|lock l/m1|l/d/m2|r/m1|r/d/m2|r/d/m3.md5",
    "2 put r/d/m3.md5=huge",
    "2 link l/d/mup l",
};

const Confined confined; // before the toolkit looks around
int step = 0;
QStringList played;

void print_place()
{
    std::fprintf(stderr, "stress: step %d, after\n%s\n", step,
                 qPrintable(played.mid(qMax(0, played.size() - 40)).join(u'\n')));
}

class User : public QObject
{
  public:
    explicit User(quint32 seed) : chance_(seed)
    {
        for (const char* line : templates) {
            const QString text = QString::fromLatin1(line);
            lines_ += QStringList(text.section(u' ', 0, 0).toInt(), text.section(u' ', 1));
        }
        for (const QString& side : {u"l"_s, u"r"_s}) {
            scene_.run(
                u"put %1/same %1/s.x %1/sé %1/d/same %1/d/e/sub %1/m1 %1/d/m2 %1/sother=%1 "
                "\"%1/sums.md5=%2  same\\n%2  s.x\\n\""_s.arg(side, reference_digest("same")));
        }
        for (int i = 0; i < 300; ++i) { scene_.working_dir.createFile(u"l/big/s%1"_s.arg(i), "x"); }
        qApp->installEventFilter(this);
        show_window();
    }

    bool play(int steps)
    {
        for (step = 1; step <= steps && findings_.isEmpty(); ++step) {
            ::alarm(300); // a window that is silent for so long is dead
            if (stay_inside()) { act(any_line()); }
            QTest::qWait(below(5) == 0 ? below(20) : 0);
            if (below(8) == 0 || step == steps) { judge_quiet_moment(); }
        }
        std::printf("%d steps: %d quiet moments, %d comparisons, %d green pairs judged\n", step - 1,
                    quiet_, comparisons_, greens_);
        if (!findings_.isEmpty()) {
            print_place();
            std::fprintf(stderr, "stress: %s\n", qPrintable(findings_.join(u"\nstress: "_s)));
        }
        return findings_.isEmpty();
    }

  protected:
    /// Uses menus and dialogs when they come up; the scene closes what is left of them.
    bool eventFilter(QObject* object, QEvent* event) override
    {
        const bool used = qobject_cast<QMenu*>(object) || qobject_cast<QDialog*>(object);
        if (event->type() == QEvent::Show && used && !qobject_cast<QMessageBox*>(object)) {
            QTimer::singleShot(below(3), object, [this, object] { use(*object); });
        }
        return false;
    }

  private:
    int below(qsizetype n) { return chance_.bounded(static_cast<int>(n)); }

    QString any(const QStringList& texts) { return texts[below(texts.size())]; }

    MyTreeWidget& pane(const QString& name) const
    {
        return name == "L"_L1 ? *scene_.first : *scene_.second;
    }

    void show_window()
    {
        scene_.window->show();
        QApplication::setActiveWindow(scene_.window.get());
        connect(scene_.window->statusBar(), &QStatusBar::messageChanged, this, &User::judge_marks);
    }

    /// Brings back a pane that left the scene: nothing may ever be done elsewhere.
    bool stay_inside()
    {
        bool inside = true;
        for (MyTreeWidget* pane : {scene_.first, scene_.second}) {
            if (!confined.holds(pane->current_dir().path())) {
                pane->stop_button->click();
                pane->changeModel(scene_.working_dir.at(pane == scene_.first ? u"l"_s : u"r"_s));
            }
            inside = inside && confined.holds(pane->current_dir().path());
        }
        return inside;
    }

    QString any_line()
    {
        QStringList words = any(lines_).split(u' ');
        for (QString& word : words) {
            word = any(word.split(u'|'));
            QStringList texts;
            MyTreeWidget& own = pane(words.value(1));
            for (int i = 0; word == "S"_L1 && i < own.topLevelItemCount(); ++i) {
                texts << name_of(*own.topLevelItem(i));
            }
            const QObject* owner = word == "A"_L1 ? &own : static_cast<QObject*>(&*scene_.window);
            for (auto* action : owner->findChildren<QAction*>(Qt::FindDirectChildrenOnly)) {
                const bool serves = action->isEnabled() && action->text() != "Quitter"_L1;
                texts << (serves && (word == "A"_L1 || word == "W"_L1) ? action->text() : u""_s);
            }
            texts.removeAll(QString());
            word = texts.isEmpty() ? word : u'"' + any(texts) + u'"';
        }
        return words.join(u' ');
    }

    void act(const QString& line)
    {
        played << line;
        const QStringList words = QProcess::splitCommand(line);
        const QString& what = words[0];
        const QString file = words.value(1).section(u'=', 0, 0);
        const QFileInfo info(scene_.working_dir.at(file));
        MyTreeWidget& own = pane(file);
        if (QStringList{u"put"_s, u"rm"_s, u"lock"_s, u"link"_s}.contains(what)) {
            if (!confined.holds(info.filePath())) {
                findings_ << u"leads out of the scene: "_s + line;
                return;
            }
            scene_.run(info.exists() && !info.isWritable() ? u"rm %1&"_s.arg(file) : line + u'&');
        } else if (what == "tool"_L1) {
            auto* action = scene_.named<QAction>(*scene_.window, words[1]);
            if (QWidget* on = scene_.window->findChild<QToolBar*>()->widgetForAction(action)) {
                QTest::mouseMove(on);
                QTest::mouseClick(on, Qt::LeftButton);
            }
        } else if (what == "menu"_L1) {
            QTreeWidgetItem* row = find_row(own, words[2]);
            const QPoint at = row ? own.visualItemRect(row).center() : QPoint(5, 5);
            QTest::mouseClick(own.viewport(), Qt::LeftButton, {}, at);
            QContextMenuEvent event(QContextMenuEvent::Mouse, at, own.viewport()->mapToGlobal(at));
            QApplication::sendEvent(own.viewport(), &event);
        } else if (what == "window"_L1) {
            scene_.rebuild();
            show_window();
        } else {
            scene_.run(line + u'&');
        }
    }

    void use(QObject& object)
    {
        if (auto* menu = qobject_cast<QMenu*>(&object)) {
            menu->setActiveAction(menu->actions().value(below(menu->actions().size() + 1)));
            QTest::keyClick(menu, below(4) == 0 ? Qt::Key_Escape : Qt::Key_Return);
            menu->close();
            return;
        }
        QTimer::singleShot(below(50), &object,
                           [&object] { static_cast<QDialog&>(object).reject(); });
        for (QLineEdit* entry : object.findChildren<QLineEdit*>()) {
            entry->setText(any({QString(32, u'0'), u"*.x;é;;*.*"_s}));
        }
        auto buttons = object.findChildren<QAbstractButton*>();
        for (int presses = below(4); presses > 0 && !buttons.isEmpty(); --presses) {
            buttons.takeAt(below(buttons.size()))->click();
        }
    }

    /// The end of a comparison is told when the marks are set and the lists still say of what.
    void judge_marks(const QString& message)
    {
        if (!message.startsWith("Temps total : "_L1)) { return; }
        ++comparisons_;
        QStringList greens[2];
        for (const int side : {0, 1}) {
            for (const auto* row : (side == 0 ? scene_.first : scene_.second)->job_items) {
                if (row->background(ColSize) == QBrush(Qt::green, Qt::SolidPattern)) {
                    greens[side] << name_of(*row) + u' ' + checksum_of(*row).toLower();
                }
            }
            greens[side].sort();
        }
        greens_ += static_cast<int>(greens[0].size());
        if (greens[0] != greens[1]) { findings_ << u"not alike"_s << greens[0] << greens[1]; }
    }

    void judge_quiet_moment()
    {
        ++quiet_;
        scene_.run(u"stop L&"_s);
        scene_.run(u"stop R&"_s);
        if (!scene_.wait_idle() || !QThreadPool::globalInstance()->waitForDone(10'000)) {
            findings_ << u"does not come to rest"_s;
        }
        findings_ << scene_.violation();
        static const QRegularExpression wrong(u"[( ]s[^ ()]*=\\?"_s);
        for (const char* look : {"see L", "see R"}) {
            const QString rows = u' ' + scene_.run(QString::fromLatin1(look));
            findings_ << (wrong.match(rows).hasMatch() ? u"a false digest: "_s + rows : QString());
        }
        findings_.removeAll(QString());
        scene_.window->statusBar()->clearMessage();
    }

    Scene scene_;
    QRandomGenerator chance_;
    QStringList lines_;
    QStringList findings_;
    int quiet_ = 0;
    int comparisons_ = 0;
    int greens_ = 0;
};

} // namespace

int main(int argc, char* argv[])
{
    const QApplication application(argc, argv);
    if (__sanitizer_set_death_callback) { __sanitizer_set_death_callback(print_place); }
    User user(qEnvironmentVariable("SEED", u"1"_s).toUInt());
    return user.play(qEnvironmentVariable("STEPS", u"1500"_s).toInt()) ? 0 : 1;
}
