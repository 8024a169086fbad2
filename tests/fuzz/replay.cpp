// Gives every file of a saved corpus to a fuzzer once.

#include "tests/fuzz/fuzzer.h"

#include <QDirIterator>
#include <QFile>

#include <cstdio>

int main(int argc, char* argv[])
{
    // The first argument is ours, the rest nobody's.
    const QString corpus = argc > 1 ? QFile::decodeName(argv[1]) : QString();
    int shown_argc = 1;
    LLVMFuzzerInitialize(&shown_argc, &argv);
    int inputs = 0;
    for (QDirIterator it(corpus, QDir::Files); it.hasNext(); ++inputs) {
        QFile file(it.next());
        if (!file.open(QIODevice::ReadOnly)) {
            return 1;
        }
        const QByteArray bytes = file.readAll();
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.constData()),
                               static_cast<std::size_t>(bytes.size()));
    }
    std::printf("%d inputs\n", inputs);
    return inputs > 0 ? 0 : 1;
}
