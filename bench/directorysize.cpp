// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

// Determining the size of a store of many files, compared with du.

#include "bench/Measure.h"
#include "bench/StoreOfFiles.h"
#include "node/Probe.h"

using namespace tidewick;
using namespace tidewick::bench;

int main()
{
    constexpr int files = 100'000;
    const StoreOfFiles store(files);
    ChildSpec du;
    du.executable = "/usr/bin/du";
    du.arguments = {"-s", store.path().string()};
    qint64 size = 0;
    const Pair pair = measure(
        15, [&] { size = Probe::directorySize(store.path()); }, [&] { processorTime(du); });
    if (size < files)
        qFatal("The size is wrong");
    print("directorySize / du -s, 100,000 files in 1,000 folders", pair, "<= 1");
    return 0;
}
