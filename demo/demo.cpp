// Shows the real windows at work on sample directories and leaves pictures of them.

#include "app/nofocusproxystyle.h"
#include "app/settings_file.h"
#include "app/toolkit_texts.h"
#include "demo/demo_window.h"
#include "demo/manual_pictures.h"
#include "demo/pictures.h"
#include "demo/sample_directories.h"
#include "dialogs/fenres.h"
#include "engine/product.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QPalette>
#include <QSettings>
#include <QTranslator>

using namespace Qt::StringLiterals;

namespace {

QPalette dark_palette()
{
    QPalette palette(QColor(53, 53, 53));
    palette.setColor(QPalette::Base, QColor(35, 35, 35));
    palette.setColor(QPalette::AlternateBase, QColor(45, 45, 45));
    palette.setColor(QPalette::Highlight, QColor(42, 130, 218));
    palette.setColor(QPalette::Link, QColor(86, 170, 255));
    return palette;
}

void declare_options(QCommandLineParser& options)
{
    options.addHelpOption();
    options.addOption({u"output"_s, u"Folder that the pictures go to."_s, u"folder"_s, u"."_s});
    options.addOption({u"dark"_s, u"Use a dark palette."_s});
    options.addOption({u"manual"_s, u"Take the pictures of the manual."_s});
    options.addOption({u"language"_s, u"Language of the windows."_s, u"en|fr"_s, u"fr"_s});
}

/// Settings as a person may have made them.
void write_settings(const QString& language)
{
    QSettings settings(settings_path_to_write(), QSettings::IniFormat);
    settings.setValue(u"MainWindow/lang"_s, language);
    settings.setValue(u"App/ccname"_s, true);
    settings.setValue(u"App/exclu"_s, u"*.tmp;*.bak"_s);
}

bool take_comparison_pictures(const SampleDirectories& samples, const Pictures& pictures)
{
    DemoWindow demo(samples, 1260, 640);
    if (!demo.compare_all()) {
        return false;
    }
    auto* results = demo.window().findChild<FenRes*>();
    return pictures.save_content(demo.window(), u"main"_s) && results &&
           pictures.save_content(*results, u"results"_s);
}

} // namespace

int main(int argc, char* argv[])
{
    QApplication application(argc, argv);
    QCommandLineParser options;
    declare_options(options);
    options.process(application);

    const QString folder = QDir::current().absoluteFilePath(options.value(u"output"_s));
    const QString language = options.value(u"language"_s);
    const bool english = language == "en"_L1;
    const bool dark = options.isSet(u"dark"_s);

    QTranslator translator;
    if (english && translator.load(QString::fromLatin1(product::english_catalogue))) {
        QCoreApplication::installTranslator(&translator);
    }
    use_toolkit_texts(language);
    QApplication::setStyle(new NoFocusProxyStyle);
    QApplication::setCursorFlashTime(0);
    if (dark) {
        QApplication::setPalette(dark_palette());
    }

    // The window reads and writes its settings in the working directory.
    const QTemporaryDir scratch;
    QDir::setCurrent(scratch.path());
    write_settings(language);

    const SampleDirectories samples(english ? SampleNames::english() : SampleNames::french());
    const bool taken =
        options.isSet(u"manual"_s)
            ? take_manual_pictures(samples, Pictures(folder, language + u'-'))
            : take_comparison_pictures(samples, Pictures(folder, dark ? u"dark-"_s : QString()));
    return taken ? 0 : 1;
}
