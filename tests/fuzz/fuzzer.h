#pragma once

#include <cstddef>
#include <cstdint>

// The two functions that libFuzzer calls, and replay.cpp in its place.
extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv);
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

/// Ends the program with a report when a property does not hold; libFuzzer keeps the input.
#define FUZZ_VERIFY(condition)                                                                     \
    do {                                                                                           \
        if (!(condition)) {                                                                        \
            qFatal("does not hold: %s", #condition);                                               \
        }                                                                                          \
    } while (false)
