// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "platform/ProcessMemory.h"
#include "support/Surroundings.h"

#include <cstring>

#include <sys/mman.h>
#include <unistd.h>

using namespace tidewick;

class TestProcessMemory : public QObject
{
    Q_OBJECT

private slots:
    void seesMemoryComeAndGo();
    void absentProcess();
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

    // The kernel keeps these figures in portions for each processor.
    constexpr qint64 slack = size / 8;
    QVERIFY(during->footprint >= before->footprint + size - slack);
    QVERIFY(after->footprint <= during->footprint - size + slack);
    QVERIFY(after->peakFootprint >= during->footprint - slack);
}

void TestProcessMemory::absentProcess()
{
    QVERIFY(!ProcessMemory::of(0x7FFFFFFF));
}

TIDEWICK_TEST_MAIN(TestProcessMemory)
#include "tst_processmemory.moc"
