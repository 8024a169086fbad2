#include "app/mainfen.h"
#include "app/nofocusproxystyle.h"
#include "app/setting_keys.h"
#include "app/settings_file.h"
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
    if (settings.value(setting::language).toString() == "en"_L1) {
        // Without the catalogue the texts stay French.
        [[maybe_unused]] const bool loaded =
            translator.load(QString::fromLatin1(product::english_catalogue));
    }
    QCoreApplication::installTranslator(&translator);
    QApplication::setStyle(new NoFocusProxyStyle);
    QApplication::setWindowIcon(QIcon(u":/res/logo.png"_s));
    QGuiApplication::setDesktopFileName(u"tavrel"_s);
    platform::quit_on_system_request([] { QCoreApplication::exit(); });

    MainFen window;
    window.translator = &translator;
    window.show();
    return QApplication::exec();
}
