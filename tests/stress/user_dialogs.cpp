// What the user does with dialogs and menus, from inside their event loops.

#include "dialogs/fencheck.h"
#include "dialogs/fenopt.h"
#include "tests/stress/user.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QCryptographicHash>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace {

constexpr int most_acts_open = 4;
constexpr int pace_ms = 3;

} // namespace

// One shot after the other: a repeating timer would be silent in the event loops that it opens.
void User::look_again()
{
    QTimer::singleShot(pace_ms, this, &User::look_at_dialogs);
}

void User::look_at_dialogs()
{
    look_again();
    // Dialogs are left open for a while, so that jobs go on and files change below them.
    if (!calming_ && dice_.chance(60)) {
        if (dice_.chance(20)) {
            world_.change();
        }
        return;
    }
    if (auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget())) {
        use_menu(*menu);
        return;
    }
    QWidget* dialog = QApplication::activeModalWidget();
    if (!dialog) {
        if (window_ && acts_open_ > 0 && acts_open_ < most_acts_open && !calming_) {
            act();
        }
        return;
    }
    if (auto* box = qobject_cast<QMessageBox*>(dialog)) {
        use_message(*box);
    } else if (auto* check = qobject_cast<FenCheck*>(dialog)) {
        use_check(*check);
    } else if (auto* options = qobject_cast<FenOpt*>(dialog)) {
        use_options(*options);
    } else {
        use_other(*dialog);
    }
}

void User::use_menu(QMenu& menu)
{
    QList<QAction*> actions;
    for (QAction* action : menu.actions()) {
        if (action->isEnabled() && !action->isSeparator()) {
            actions.append(action);
        }
    }
    if (actions.isEmpty() || dice_.chance(20)) {
        QTest::keyClick(&menu, Qt::Key_Escape);
        return;
    }
    menu.setActiveAction(dice_.pick(actions));
    QTest::keyClick(&menu, Qt::Key_Return);
}

void User::use_message(QMessageBox& box)
{
    for (QAbstractButton* button : box.buttons()) {
        if (box.buttonRole(button) == QMessageBox::NoRole) {
            button->click();
            return;
        }
    }
    if (box.buttons().isEmpty() || dice_.chance(20)) {
        box.close();
    } else {
        dice_.pick(box.buttons())->click();
    }
}

QString User::any_digest()
{
    switch (dice_.below(4)) {
    case 0:
        return QString(32, u'0');
    case 1:
        return QString(40, u'A');
    case 2:
        return u"  %1 "_s.arg(
            QString::fromLatin1(QCryptographicHash::hash({}, QCryptographicHash::Md5).toHex()));
    default:
        return u"no digest"_s;
    }
}

void User::use_check(FenCheck& dialog)
{
    auto* entry = dialog.findChild<QLineEdit*>();
    const auto buttons = dialog.findChildren<QPushButton*>();
    switch (dice_.below(6)) {
    case 0:
    case 1:
        if (entry->isEnabled()) {
            entry->clear();
            QTest::keyClicks(entry, any_digest());
        }
        break;
    case 2:
    case 3:
        dice_.pick(buttons)->click();
        break;
    case 4:
        QTest::keyClick(&dialog, Qt::Key_Return);
        break;
    default:
        dice_.chance(50) ? dialog.reject() : static_cast<void>(dialog.close());
        break;
    }
}

QString User::any_exclusions()
{
    static const QList<QString> texts = {QString(),         u"*.txt"_s,   u"*.jpg;dat"_s,
                                         u";;*.;*.*.txt"_s, u"md5"_s,     QString(300, u';'),
                                         u"*.TXT;*.TXT"_s,  u"a b;é;\\"_s};
    return dice_.pick(texts);
}

void User::use_options(FenOpt& dialog)
{
    for (QCheckBox* box : dialog.findChildren<QCheckBox*>()) {
        if (dice_.chance(30)) {
            box->click();
        }
    }
    if (dice_.chance(40)) {
        dialog.findChild<QLineEdit*>()->setText(any_exclusions());
    }
    if (dice_.chance(10)) {
        dialog.findChild<QComboBox*>()->setCurrentIndex(dice_.below(2));
    }
    switch (dice_.below(4)) {
    case 0:
        dialog.reject();
        break;
    case 1:
        dialog.close();
        break;
    default:
        dice_.pick(dialog.findChildren<QPushButton*>())->click();
        break;
    }
}

// The results dialog, and whatever else may come.
void User::use_other(QWidget& dialog)
{
    const auto buttons = dialog.findChildren<QPushButton*>();
    if (buttons.isEmpty() || dice_.chance(30)) {
        dialog.close();
    } else {
        dice_.pick(buttons)->click();
    }
}
