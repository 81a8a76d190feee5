// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "platform/process/ProcessMemory.h"
#include "support/PeakMemory.h"
#include "support/Surroundings.h"

#include <cstring>
#include <vector>

#include <sys/mman.h>
#include <unistd.h>

using namespace tidewick;

class TestProcessMemory : public QObject
{
    Q_OBJECT

private slots:
    void seesMemoryComeAndGo();
    void absentProcess();
    void returnsFreedMemory();
};

void TestProcessMemory::seesMemoryComeAndGo()
{
    constexpr qint64 size = qint64{64} * 1024 * 1024;
    const auto before = ProcessMemory::of(::getpid());
    QVERIFY(before && before->footprint > 0);
    void *block = ::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    QVERIFY(block != MAP_FAILED);
    std::memset(block, 'x', size);
    const auto during = ProcessMemory::of(::getpid());
    ::munmap(block, size);
    const auto after = ProcessMemory::of(::getpid());

    // The kernel updates these figures in batches for each processor.
    constexpr qint64 slack = size / 8;
    QVERIFY(during->footprint >= before->footprint + size - slack);
    QVERIFY(after->footprint <= during->footprint - size + slack);
    QVERIFY(after->peakFootprint >= during->footprint - slack);
}

void TestProcessMemory::absentProcess()
{
    QVERIFY(!ProcessMemory::of(0x7FFFFFFF));
}

void TestProcessMemory::returnsFreedMemory()
{
    if (PeakMemory::hasSanitizer)
        QSKIP("A sanitizer uses its own allocator");
    constexpr qsizetype MiB = qsizetype{1024} * 1024;
    constexpr qsizetype block = MiB / 16;
    constexpr qsizetype held = 24 * MiB;
    ProcessMemory::giveBackFreed();
    QVERIFY(!QByteArray(16 * MiB, 'x').isEmpty());

    std::vector<QByteArray> blocks;
    blocks.reserve(held / block);
    const auto before = ProcessMemory::of(::getpid());
    while (blocks.size() < blocks.capacity())
        blocks.emplace_back(block, 'x');
    const auto during = ProcessMemory::of(::getpid());
    blocks.clear();
    const auto after = ProcessMemory::of(::getpid());

    constexpr qint64 slack = held / 8;
    QVERIFY(during->footprint >= before->footprint + held - slack);
    QVERIFY(after->footprint <= before->footprint + slack);
}

TIDEWICK_TEST_MAIN(TestProcessMemory)
#include "tst_processmemory.moc"
