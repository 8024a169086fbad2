// The text of the exclusion list.

#include "engine/exclusions.h"
#include "tests/fuzz/fuzzer.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/)
{
    return 0;
}

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QString text =
        QString::fromUtf8(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const QStringList suffixes = engine::parse_exclusions(text);
    FUZZ_VERIFY(suffixes.size() <= text.count(u';') + 1);
    for (const QString& suffix : suffixes) {
        FUZZ_VERIFY(!suffix.contains(u';'));
        const QString path = u"/d/name."_s + suffix;
        if (QFileInfo(path).suffix() == suffix) {
            FUZZ_VERIFY(engine::is_excluded(suffixes, path));
            FUZZ_VERIFY(engine::is_excluded(suffixes, path.toUpper()) ||
                        suffix.compare(suffix.toUpper(), Qt::CaseInsensitive) != 0);
        }
    }
    const QStringList again = engine::parse_exclusions(engine::format_exclusions(suffixes));
    FUZZ_VERIFY(again.size() == suffixes.size());
    return 0;
}
