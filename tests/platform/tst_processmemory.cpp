// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "platform/ProcessMemory.h"
#include "support/Surroundings.h"

#include <vector>

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
    auto block = std::make_unique<std::vector<char>>(size, 'x');
    const auto during = ProcessMemory::of(::getpid());
    block.reset();
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
