#include "tests/catalogue_source.h"

#include <QFile>
#include <QXmlStreamReader>

using namespace Qt::StringLiterals;

namespace {

Message read_message(QXmlStreamReader& xml, const QString& context)
{
    Message message;
    message.context = context;
    message.plural = xml.attributes().value("numerus"_L1) == "yes"_L1;
    while (xml.readNextStartElement()) {
        if (xml.name() == "source"_L1) {
            message.source = xml.readElementText();
        } else if (xml.name() == "translation"_L1 && !message.plural) {
            message.forms.append(xml.readElementText());
        } else if (xml.name() == "translation"_L1) {
            while (xml.readNextStartElement()) {
                message.forms.append(xml.readElementText());
            }
        } else {
            message.commented = message.commented || xml.name() == "comment"_L1;
            xml.skipCurrentElement();
        }
    }
    return message;
}

} // namespace

QList<Message> read_messages(const QString& path)
{
    QList<Message> messages;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return messages;
    }
    QXmlStreamReader xml(&file);
    QString context;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement) {
            continue;
        }
        if (xml.name() == "name"_L1) {
            context = xml.readElementText();
        } else if (xml.name() == "message"_L1) {
            messages.append(read_message(xml, context));
        }
    }
    return messages;
}
