#pragma once

#include "bench/data.h"
#include "bench/report.h"

#include <vector>

namespace bench {

/// How much work there is.
struct Scale
{
    int rounds = 5;
    qint64 large_bytes = qint64(2) << 30;
    int files = 50'000;    ///< of a directory that is hashed or compared
    int directories = 500; ///< that as many files lie in when they are nested
    int listed_files = 100'000;
    int few_files = 1'000;    ///< of a directory that grows,
    int many_files = 100'000; ///< to this size,
    int most_files = 500'000; ///< and to this one
    int cold_files = 20'000;
    int cold_directories = 200;
    qint64 cold_bytes = qint64(1) << 30;
};

/// The lines of the table of aims, one function each. A line needs a QApplication, a working
/// directory of its own and, for the windows that it starts, the settings in it.
///
/// large_files.cpp
std::vector<Result> hash_large_file(const Data& data, const Scale& scale);
std::vector<Result> compare_large_files(const Data& data, const Scale& scale);

/// many_files.cpp
std::vector<Result> hash_directory(const Data& data, const Scale& scale);
std::vector<Result> compare_directories(const Data& data, const Scale& scale);
std::vector<Result> hash_nested_directory(const Data& data, const Scale& scale);
std::vector<Result> grow_directory(const Data& data, const Scale& scale);

/// cold_files.cpp
std::vector<Result> hash_cold_directory(const Data& data, const Scale& scale);
std::vector<Result> compare_cold_directories(const Data& data, const Scale& scale);
std::vector<Result> hash_cold_large_file(const Data& data, const Scale& scale);
std::vector<Result> compare_cold_large_files(const Data& data, const Scale& scale);
std::vector<Result> hash_cold_nested_directory(const Data& data, const Scale& scale);

/// checksum_files.cpp
std::vector<Result> write_checksum_files(const Data& data, const Scale& scale);
std::vector<Result> verify_checksum_file(const Data& data, const Scale& scale);

/// window_life.cpp
std::vector<Result> keep_answering(const Data& data, const Scale& scale);
std::vector<Result> keep_answering_at_any_size(const Data& data, const Scale& scale);
std::vector<Result> list_directory(const Data& data, const Scale& scale);
std::vector<Result> hold_rows(const Data& data, const Scale& scale);
std::vector<Result> start(const Data& data, const Scale& scale);

/// Shows a window on two directories, compares them unless they are empty, and writes the largest
/// memory that this process has held, in bytes, to a file. Serves hold_rows() in a process of its
/// own.
void write_peak_memory(const QString& first, const QString& second, const QString& output);

} // namespace bench
