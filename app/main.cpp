#include "app/mainfen.h"
#include "app/nofocusproxystyle.h"
#include "app/screen_fit.h"
#include "app/setting_keys.h"
#include "app/settings_file.h"
#include "app/toolkit_texts.h"
#include "engine/product.h"
#include "platform/process_end.h"
#include "platform/volumes.h"

#include <QApplication>
#include <QSettings>
#include <QTranslator>

using namespace Qt::StringLiterals;

int main(int argc, char* argv[])
{
    platform::never_ask_for_media();
    QApplication application(argc, argv);
    const QSettings settings(settings_path_to_read(), QSettings::IniFormat);
    QTranslator translator;
    QCoreApplication::setOrganizationName(QString::fromLatin1(product::organization));
    QCoreApplication::setApplicationName(QString::fromLatin1(product::application));
    QCoreApplication::setApplicationVersion(QString::fromLatin1(product::version));
    QCoreApplication::setOrganizationDomain(QString::fromLatin1(product::organization_domain));
    const QString language = settings.value(setting::language).toString();
    if (language == "en"_L1) {
        // Without the catalogue the texts stay French.
        [[maybe_unused]] const bool loaded =
            translator.load(QString::fromLatin1(product::english_catalogue));
    }
    QCoreApplication::installTranslator(&translator);
    use_toolkit_texts(language);
    QApplication::setStyle(new NoFocusProxyStyle);
    QApplication::setWindowIcon(QIcon(u":/res/logo.png"_s));
    QGuiApplication::setDesktopFileName(u"tavrel"_s);
    platform::quit_on_system_request([] { QCoreApplication::exit(); });

    MainFen window;
    window.translator = &translator;
    if (!settings.contains(setting::size) && !settings.contains(setting::position)) {
        fit_first_window(window);
    }
    window.show();
    return QApplication::exec();
}
