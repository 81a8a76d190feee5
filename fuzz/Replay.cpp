// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "Checks.h"
#include "platform/files/Files.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <vector>

namespace fs = std::filesystem;

namespace {

std::vector<fs::path> filesIn(const fs::path &folder)
{
    std::vector<fs::path> files;
    for (const fs::directory_entry &entry : fs::directory_iterator(folder))
        files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    return files;
}

void replay(const QByteArray &input)
{
    // A copy of exactly this length, so that a sanitizer detects reads past its end.
    const std::vector<std::uint8_t> bytes(input.begin(), input.end());
    LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
}

} // namespace

/// Runs a target on its stored inputs instead of fuzzing it. It needs no fuzzer from the compiler,
/// and checks that earlier findings stay fixed.
int main(int argc, char *argv[])
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s FOLDER\n", argv[0]);
        return EXIT_FAILURE;
    }
    try {
        const std::vector<fs::path> files = filesIn(argv[1]);
        if (files.empty()) {
            std::fprintf(stderr, "%s: no inputs\n", argv[1]);
            return EXIT_FAILURE;
        }
        replay({});
        for (const fs::path &file : files) {
            // So that the last line before an abort names the input.
            std::printf("%s\n", file.filename().c_str());
            std::fflush(stdout);
            replay(tidewick::Files::read(file));
        }
    } catch (const std::exception &error) {
        std::fprintf(stderr, "%s\n", error.what());
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
