// The reader of checksum files.

#include "engine/checksum_file.h"
#include "tests/fuzz/fuzzer.h"

#include <QBuffer>

using namespace Qt::StringLiterals;

int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/)
{
    return 0;
}

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    QBuffer device(&bytes);
    FUZZ_VERIFY(device.open(QIODevice::ReadOnly));
    const QMap<QString, QString> digests = engine::read_checksum_file(device, u"/tmp"_s);
    for (const auto& [path, digest] : digests.asKeyValueRange()) {
        FUZZ_VERIFY(path.startsWith(u'/'));
        FUZZ_VERIFY(!path.contains(u'\n'));
        FUZZ_VERIFY(digest.size() >= 32);
        // What the writer makes of it, the reader takes.
        QString line = engine::checksum_line(digest, u"name"_s);
        line.chop(1);
        engine::ChecksumEntry entry;
        FUZZ_VERIFY(engine::parse_checksum_line(line, entry));
        FUZZ_VERIFY(entry.digest == digest.toLower() && entry.name == "name"_L1);
    }
    return 0;
}
