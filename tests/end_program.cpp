// The program with both panes at work, and one of its ends. Started by test_end, which says by the
// environment how it is to end:
//     TAVREL_END     quit, close, check, options, language, or anything else: waits for a signal
//     TAVREL_LEFT, TAVREL_RIGHT     the directories that the panes hash
// It says "ready" when both panes are reading. Started anew by itself, it says "started anew" in a
// file of that name and ends.

#include "app/nofocusproxystyle.h"
#include "app/settings_file.h"
#include "dialogs/fencheck.h"
#include "dialogs/fenopt.h"
#include "platform/process_end.h"
#include "tests/modal_driver.h"
#include "tests/pane_fixture.h"

#include <QApplication>
#include <QComboBox>
#include <QFile>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QSettings>
#include <QTest>
#include <QTranslator>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

QAction* action_of(const MainFen& window, const QString& text)
{
    for (QAction* action : window.findChildren<QAction*>(QString(), Qt::FindDirectChildrenOnly)) {
        if (action->text() == text) {
            return action;
        }
    }
    qFatal("no action %s", qPrintable(text));
}

void start_hashing(MyTreeWidget& pane, const char* directory)
{
    pane.changeModel(qEnvironmentVariable(directory));
    pane.HashAll();
    QObject::connect(&pane, &MyTreeWidget::processing, &pane,
                     [&pane](const QString&) { pane.setProperty("reading", true); });
}

/// Enters a digest, presses "Vérifier" and, as soon as the file is being read, closes the dialog.
void use_check_dialog(MainFen& window)
{
    MyTreeWidget& pane = *window.first_pane();
    pane.stop_button->click();
    if (!QTest::qWaitFor([&] { return !pane.job_running(); }, 60'000)) {
        qFatal("the job does not stop");
    }
    pane.clear_stop_flag();
    pane.setCurrentItem(pane.topLevelItem(pane.topLevelItemCount() - 1));
    ModalDriver<FenCheck> driver([](FenCheck& dialog) {
        QTest::keyClicks(dialog.findChild<QLineEdit*>(), QString(32, u'0'));
        dialog.findChildren<QPushButton*>().constFirst()->click();
        QTest::qWait(50);
        dialog.reject();
    });
    pane.act_check->trigger();
    QApplication::quit();
}

/// Chooses English and answers "Yes".
void switch_language(MainFen& window)
{
    ModalDriver<FenOpt> driver([](FenOpt& dialog) {
        const ModalDriver<QMessageBox> question([](QMessageBox& box) {
            for (QAbstractButton* button : box.buttons()) {
                if (box.buttonRole(button) == QMessageBox::YesRole) {
                    button->click();
                    return;
                }
            }
        });
        dialog.findChild<QComboBox*>()->setCurrentIndex(1);
        for (auto* button : dialog.findChildren<QPushButton*>()) {
            if (button->isDefault()) {
                button->click();
                return;
            }
        }
    });
    action_of(window, u"Options..."_s)->trigger();
}

void end(MainFen& window, const QString& how)
{
    if (how == "quit"_L1) {
        action_of(window, u"Quitter"_s)->trigger();
    } else if (how == "close"_L1) {
        window.close();
    } else if (how == "check"_L1) {
        use_check_dialog(window);
    } else if (how == "language"_L1) {
        switch_language(window);
    } else if (how == "options"_L1) {
        // A modal dialog is open when the signal comes.
        action_of(window, u"Options..."_s)->trigger();
    }
}

} // namespace

int main(int argc, char* argv[])
{
    QApplication application(argc, argv);
    QFile anew(u"started anew"_s);
    if (QFile::exists(u"first start"_s)) {
        return anew.open(QIODevice::WriteOnly) ? 0 : 1;
    }
    QFile first(u"first start"_s);
    if (!first.open(QIODevice::WriteOnly)) {
        return 1;
    }
    QApplication::setStyle(new NoFocusProxyStyle);
    platform::quit_on_system_request([] { QCoreApplication::exit(); });
    QTranslator translator;
    MainFen window;
    window.translator = &translator;
    window.show();
    start_hashing(*window.first_pane(), "TAVREL_LEFT");
    start_hashing(*window.second_pane(), "TAVREL_RIGHT");
    QTimer::singleShot(0, &window, [&] {
        const bool reading = QTest::qWaitFor(
            [&] {
                return window.first_pane()->property("reading").toBool() &&
                       window.second_pane()->property("reading").toBool();
            },
            60'000);
        std::puts(reading ? "ready" : "never ready");
        std::fflush(stdout);
        end(window, qEnvironmentVariable("TAVREL_END"));
    });
    return QApplication::exec();
}
