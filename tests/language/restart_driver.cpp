// A plugin that sits in the program as its user, for the test of the restart in another language.
//
// In the first program it chooses English in the options dialog and answers that the restart may
// happen. In the second it tells what it finds and quits. What it sees goes to files in the working
// directory.

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QFile>
#include <QGenericPlugin>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenuBar>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace {

void write(const QString& name, const QStringList& lines)
{
    QFile file(name);
    if (file.open(QIODevice::WriteOnly)) {
        file.write(lines.join(u'\n').toUtf8());
    }
}

/// A button, box or action of a window.
template<class Thing>
Thing* with_text(const QWidget& window, const QString& text)
{
    for (Thing* thing : window.findChildren<Thing*>()) {
        if (thing->text() == text) {
            return thing;
        }
    }
    qFatal("no \"%s\"", qUtf8Printable(text));
}

/// Clicks from the event loop: the slot may open a dialog and come back late or never.
void click(QAbstractButton* button)
{
    QTimer::singleShot(0, button, &QAbstractButton::click);
}

class User : public QObject
{
  public:
    User()
    {
        connect(&poll_, &QTimer::timeout, this, &User::act);
        poll_.start(10);
        connect(qApp, &QCoreApplication::aboutToQuit, this,
                [second = second_] { write(second ? u"second quits"_s : u"first quits"_s, {}); });
    }

  private:
    void act()
    {
        const auto windows = QApplication::topLevelWidgets();
        for (QWidget* widget : windows) {
            auto* window = qobject_cast<QMainWindow*>(widget);
            if (window && window->isVisible()) {
                second_ ? report(*window) : change_language(*window);
            }
        }
    }

    void change_language(QMainWindow& window)
    {
        auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        if (auto* box = qobject_cast<QMessageBox*>(dialog)) {
            if (step(2)) {
                write(u"question"_s, {box->text()});
                click(with_text<QPushButton>(*box, u"Yes"_s));
            }
        } else if (dialog && step(1)) {
            dialog->findChild<QComboBox*>()->setCurrentIndex(1);
            dialog->findChild<QLineEdit*>()->setText(u"*.new"_s);
            with_text<QCheckBox>(*dialog, u"Chemin"_s)->setChecked(true);
            click(with_text<QPushButton>(*dialog, u"Sauver"_s));
        } else if (!dialog && step(0)) {
            QTimer::singleShot(0, with_text<QAction>(window, u"Options..."_s), &QAction::trigger);
        }
    }

    void report(QMainWindow& window)
    {
        if (step(0)) {
            QFile::copy(u"Tavrel.ini"_s, u"settings found"_s);
            write(u"second"_s, {QCoreApplication::arguments().mid(1).join(u' '),
                                window.menuBar()->actions().first()->text()});
            qAddPostRoutine([] { write(u"second ended"_s, {}); });
            QTimer::singleShot(0, &window, &QWidget::close);
        }
    }

    /// Whether this step's turn has come; each comes once.
    bool step(int number)
    {
        const bool turn = steps_ == number;
        steps_ += turn ? 1 : 0;
        return turn;
    }

    const bool second_ = QFile::exists(u"question"_s);
    QTimer poll_;
    int steps_ = 0;
};

} // namespace

class RestartDriver : public QGenericPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "restart_driver.json")

  public:
    QObject* create(const QString& /*key*/, const QString&) override { return new User; }
};

#include "restart_driver.moc"
