// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

// The size of a store of many files against du.

#include "bench/Measure.h"
#include "node/Probe.h"

#include <QTemporaryDir>

#include <cstdio>

#include <fcntl.h>
#include <unistd.h>

using namespace tidewick;
using namespace tidewick::bench;

namespace {

constexpr int folders = 1'000;
constexpr int filesPerFolder = 100;

void fill(const std::filesystem::path &root)
{
    for (int folder = 0; folder < folders; ++folder) {
        const std::filesystem::path path = root / std::to_string(folder);
        std::filesystem::create_directory(path);
        for (int file = 0; file < filesPerFolder; ++file) {
            const std::string name = (path / std::to_string(file)).string();
            const UniqueDescriptor descriptor(::open(name.c_str(), O_WRONLY | O_CREAT, 0600));
            if (!Files::writeAll(descriptor.get(), "x", 1))
                qFatal("%s cannot be written", name.c_str());
        }
    }
}

} // namespace

int main()
{
    const QTemporaryDir folder;
    const std::filesystem::path root = folder.path().toStdString();
    fill(root);
    ::sync(); // no writing back in the background

    ChildSpec du;
    du.executable = "/usr/bin/du";
    du.arguments = {"-s", root.string()};
    qint64 size = 0;
    const Pair pair = measure(
        15, [&] { size = Probe::directorySize(root); }, [&] { processorTime(du); });
    if (size < qint64{folders} * filesPerFolder)
        qFatal("The size is wrong");
    print("directorySize / du -s, 100,000 files in 1,000 folders", pair, "<= 1");
    return 0;
}
