// Measures one line of the table of aims and prints its rows. A process per line, started by
// bench/run, so that no line meets the memory that another one left.

#include "app/nofocusproxystyle.h"
#include "bench/lines.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QSettings>
#include <QTemporaryDir>
#include <QTextStream>

#include <algorithm>
#include <iterator>

using namespace Qt::StringLiterals;
using namespace bench;

namespace {

using Line = std::vector<Result> (*)(const Data&, const Scale&);

constexpr Line table[] = {
    hash_large_file,
    compare_large_files,
    hash_directory,
    compare_directories,
    keep_answering,
    list_directory,
    hash_nested_directory,
    grow_directory,
    hold_rows,
    start,
    hash_cold_directory,
    compare_cold_directories,
    hash_cold_large_file,
    compare_cold_large_files,
    hash_cold_nested_directory,
    write_checksum_files,
    verify_checksum_file,
    keep_answering_at_any_size,
};

Scale quick_scale()
{
    Scale scale;
    scale.rounds = 2;
    scale.large_bytes = qint64(32) << 20;
    scale.files = 2'000;
    scale.directories = 20;
    scale.listed_files = 4'000;
    scale.few_files = 100;
    scale.many_files = 4'000;
    scale.most_files = 8'000;
    scale.cold_files = 2'000;
    scale.cold_directories = 20;
    scale.cold_bytes = scale.large_bytes;
    return scale;
}

/// Windows that open here show these directories.
void write_settings(const QString& first, const QString& second)
{
    QSettings settings(u"Tavrel.ini"_s, QSettings::IniFormat);
    settings.setValue(u"App/rem_dir"_s, true);
    settings.setValue(u"App/tree1"_s, first);
    settings.setValue(u"App/tree2"_s, second);
}

int run_line(int number, const Data& data, const Scale& scale)
{
    if (number < 1 || number > static_cast<int>(std::size(table))) {
        QTextStream(stderr) << "there is no line " << number << Qt::endl;
        return 1;
    }
    const QTemporaryDir scratch;
    QDir::setCurrent(scratch.path());
    write_settings(data.empty(u'a'), data.empty(u'b'));
    QTextStream rows(stdout);
    for (const Result& result : table[number - 1](data, scale)) {
        rows << table_row(result) << Qt::endl;
    }
    return 0;
}

} // namespace

int main(int argc, char* argv[])
{
    QStringList words;
    for (int i = 0; i < argc; ++i) {
        words.append(QString::fromLocal8Bit(argv[i]));
    }
    // The window would take the application's arguments for paths.
    int no_arguments = 1;
    const QApplication application(no_arguments, argv);
    QApplication::setStyle(new NoFocusProxyStyle);

    QCommandLineParser options;
    options.addHelpOption();
    options.addPositionalArgument(u"line"_s, u"Number of the line to measure."_s);
    options.addOption({u"data"_s, u"Folder of the files that are measured."_s, u"folder"_s});
    options.addOption({u"quick"_s, u"Work with small sizes, 2 rounds."_s});
    options.addOption({u"rounds"_s, u"Rounds after the warm-up."_s, u"n"_s});
    options.addOption(
        {u"peak-memory"_s, u"Write the peak memory of comparing two directories."_s, u"file"_s});
    options.process(words);

    const QStringList arguments = options.positionalArguments();
    if (options.isSet(u"peak-memory"_s)) {
        write_peak_memory(arguments.value(0), arguments.value(1), options.value(u"peak-memory"_s));
        return 0;
    }
    Scale scale = options.isSet(u"quick"_s) ? quick_scale() : Scale();
    if (options.isSet(u"rounds"_s)) {
        scale.rounds = std::max(1, options.value(u"rounds"_s).toInt());
    }
    return run_line(arguments.value(0).toInt(), Data(options.value(u"data"_s)), scale);
}
