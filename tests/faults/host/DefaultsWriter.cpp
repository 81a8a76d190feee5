// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "faults/host/DefaultsWriter.h"

#include "platform/files/Defaults.h"

#include <QString>

#include <cstdio>
#include <string_view>

namespace tidewick::DefaultsWriter {

namespace {

constexpr std::string_view option = "--write-defaults";

} // namespace

ChildSpec spec(const std::string &key, int times)
{
    ChildSpec spec;
    spec.executable = std::filesystem::read_symlink("/proc/self/exe");
    spec.arguments = {std::string(option), key, std::to_string(times)};
    return spec;
}

std::optional<int> run(int argc, char **argv)
{
    if (argc != 4 || option != argv[1])
        return std::nullopt;
    const QString key = QString::fromLocal8Bit(argv[2]);
    const int times = std::stoi(argv[3]);
    Defaults defaults = Defaults::standard();
    for (int number = 1; number <= times; ++number) {
        const bool stored = defaults.setInteger(key, number);
        defaults.refresh();
        if (!stored || defaults.integer(key) != number) {
            std::fprintf(stderr, "%d was not stored\n", number);
            return EXIT_FAILURE;
        }
    }
    return EXIT_SUCCESS;
}

} // namespace tidewick::DefaultsWriter
