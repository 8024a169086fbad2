// The switch between French and English, and the About box.

#include "app/mainfen.h"
#include "app/toolkit_texts.h"
#include "engine/product.h"
#include "platform/process_end.h"

#include <QCoreApplication>
#include <QMessageBox>
#include <QProcess>
#include <QPushButton>
#include <QTranslator>

using namespace Qt::StringLiterals;

void MainFen::setLang(QString code)
{
    // All that is not English is French, the empty code of a first start too.
    const bool english = code == "en"_L1;
    if (english == (lang == "en"_L1)) {
        return;
    }
    lang = code;
    use_toolkit_texts(code);
    if (translator && english) {
        [[maybe_unused]] const bool loaded =
            translator->load(QString::fromLatin1(product::english_catalogue));
        QCoreApplication::installTranslator(translator);
    } else if (translator) {
        QCoreApplication::removeTranslator(translator);
    }
    if (ask_for_restart()) {
        restart();
    }
}

// Windows that are open keep their texts; the question already speaks the new language.
bool MainFen::ask_for_restart()
{
    QMessageBox box(
        QMessageBox::Question, tr("Redémarrage"),
        tr("Un Redémarrage est nécessaire pour appliquer les changements de langues.\nVoulez-vous "
           "redémarrer maintenant ?"),
        QMessageBox::NoButton);
    const QPushButton* yes = box.addButton(tr("Oui"), QMessageBox::YesRole);
    box.addButton(tr("Non"), QMessageBox::NoRole);
    box.exec();
    return box.clickedButton() == yes;
}

void MainFen::restart()
{
    writeSettings();
    QProcess::startDetached(QCoreApplication::applicationFilePath(), {});
    platform::end_process(0);
}

void MainFen::Apropos()
{
    QMessageBox box(QMessageBox::Information, tr("A Propos de Tavrel"), tr(product::about_text),
                    QMessageBox::Ok);
    const QIcon logo(u":/res/logo.png"_s);
    constexpr int logo_size = 128;
    box.setIconPixmap(logo.pixmap(logo_size));
    box.setWindowIcon(logo);
    box.exec();
}
