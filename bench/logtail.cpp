// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

// Reading the tail of a run that printed 2 GB, compared with tail(1), and the memory it takes.

#include "bench/Measure.h"
#include "node/NodeLog.h"
#include "platform/process/ProcessMemory.h"

#include <QTemporaryDir>

#include <cstdio>

#include <unistd.h>

using namespace tidewick;
using namespace tidewick::bench;

int main()
{
    const QTemporaryDir folder;
    const NodeLog log(folder.path().toStdString());
    {
        std::string block;
        while (block.size() < 1'000'000)
            block += "2026-Nov-20 19:54:21.061809196 UTC NetworkOPs:NFO a line of the usual kind\n";
        const UniqueDescriptor file = log.open();
        for (qint64 written = 0; written < 2'000'000'000; written += std::ssize(block)) {
            if (!Files::writeAll(file.get(), block.data(), block.size()))
                qFatal("The log cannot be written");
        }
    }

    ChildSpec tail;
    tail.executable = "/usr/bin/tail";
    tail.arguments = {"-n", "20", log.path().string()};
    QString text = log.tail(0);
    const auto before = ProcessMemory::of(::getpid());
    const Pair pair = measure(
        51, [&] { text = log.tail(0); }, [&] { processorTime(tail); });
    const auto after = ProcessMemory::of(::getpid());
    if (text.count(u'\n') != 19)
        qFatal("The tail is wrong");
    print("tail of a 2 GB run / tail -n 20 as a process", pair, "<= 2");
    std::printf("%-58s %10.3f MiB %35s\n", "  memory it grew by",
                static_cast<double>(after->peakFootprint - before->footprint) / 1048576, "< 1 MiB");
    return 0;
}
