#include "app/toolkit_texts.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QPointer>
#include <QTranslator>

using namespace Qt::StringLiterals;

namespace {

bool load_french(QTranslator& translator)
{
    const QString name = u"qtbase_fr"_s;
    const QString beside_program = QCoreApplication::applicationDirPath() + u"/translations"_s;
    return translator.load(name, beside_program) ||
           translator.load(name, QLibraryInfo::path(QLibraryInfo::TranslationsPath));
}

} // namespace

void use_toolkit_texts(const QString& language)
{
    static QPointer<QTranslator> french;
    if (language == "en"_L1) {
        delete french;
        return;
    }
    if (french) {
        return;
    }
    french = new QTranslator(QCoreApplication::instance());
    if (load_french(*french)) {
        QCoreApplication::installTranslator(french);
    }
}
