// What reads text from outside: searched by libFuzzer, or given every saved input once.
//
//     fuzz CORPUS                       replays CORPUS/READER/* for every reader
//     TAVREL_READER=NAME fuzz ...       libFuzzer's own arguments

#include "engine/checksum_file.h"
#include "engine/exclusions.h"
#include "tests/support/scene.h"

#include <map>

namespace {

/// Ends the program when a property does not hold; libFuzzer keeps the input.
void verify(bool holds, const char* property)
{
    if (!holds) { qFatal("does not hold: %s", property); }
}

Scene& scene()
{
    static auto* const scene = new Scene; // at the exit of the process the toolkit goes first
    return *scene;
}

void read_checksum_file(const QByteArray& bytes)
{
    const auto lines = engine::read_checksum_file(scene().working_dir.createFile(u"list"_s, bytes));
    verify(lines.has_value(), "a file that can be read is read");
    for (qsizetype i = 0; i < lines->size(); ++i) {
        engine::ChecksumEntry entry;
        const QString line = engine::checksum_line(lines->digest(i), u"name"_s).chopped(1);
        verify(lines->contains(lines->path(i)), "all have a path");
        verify(engine::parse_checksum_line(line, entry) &&
                   entry.digest == lines->digest(i).toLower(),
               "what the writer makes of it, the reader takes");
    }
}

void read_exclusions(const QByteArray& bytes)
{
    const QStringList suffixes = engine::parse_exclusions(QString::fromUtf8(bytes));
    for (const QString& suffix : suffixes) {
        const QString path = u"/d/name."_s + suffix;
        verify(QFileInfo(path).suffix() != suffix || engine::is_excluded(suffixes, path),
               "what is excluded is excluded");
    }
    verify(engine::parse_exclusions(engine::format_exclusions(suffixes)).size() == suffixes.size(),
           "the list survives being shown");
}

void read_settings(const QByteArray& bytes)
{
    scene().working_dir.createFile(u"Tavrel.ini"_s, bytes);
    scene().rebuild();
    scene().window->show();
    verify(scene().wait_idle() && scene().violation().isEmpty(), "the window comes to rest");
    verify(scene().first->current_dir().exists(), "its directory is there");
    scene().window->writeSettings();
}

/// One argument a line, below the scene, so that no search leads to files of others.
void read_arguments(const QByteArray& bytes)
{
    scene().run(u"put l/a l/b.txt l/d/a l/d/e/f l/.h l/é l/x.md5/ l/n.sha1 "
                "l/l.md5=0cc175b9c0f1b6a831c399e269772661"_s);
    QStringList arguments = QString::fromUtf8(bytes).split(u'\n').mid(0, 5);
    for (QString& argument : arguments) { argument.prepend(scene().working_dir.at(u"l/"_s)); }
    emit scene().window->send_args(arguments);
    verify(scene().wait_idle() && scene().violation().isEmpty(), "the pane comes to rest");
}

const std::map<QByteArray, void (*)(const QByteArray&)> readers = {
    {"checksum_file", read_checksum_file},
    {"exclusions", read_exclusions},
    {"settings", read_settings},
    {"arguments", read_arguments}};

} // namespace

// The signatures are the fuzzer's.
// NOLINTNEXTLINE(readability-non-const-parameter)
extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** argv)
{
    static int shown = 1;
    qputenv("QT_QPA_PLATFORM", "offscreen");
    new QApplication(shown, *argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const char* data, std::size_t size)
{
    readers.at(qgetenv("TAVREL_READER"))(QByteArray(data, static_cast<qsizetype>(size)));
    return 0;
}

#ifdef TAVREL_REPLAY
int main(int argc, char* argv[])
{
    const QString corpus = QFileInfo(QFile::decodeName(argv[argc - 1])).absoluteFilePath();
    LLVMFuzzerInitialize(&argc, &argv);
    for (const auto& [name, read] : readers) {
        const QDir inputs(corpus + u'/' + QString::fromLatin1(name));
        verify(!inputs.isEmpty(), "there is a corpus");
        for (const QFileInfo& input : inputs.entryInfoList(QDir::Files)) {
            QFile file(input.filePath());
            verify(file.open(QIODevice::ReadOnly), "the input can be read");
            read(file.readAll());
        }
    }
}
#endif
