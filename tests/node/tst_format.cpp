// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "node/Format.h"
#include "support/Surroundings.h"

#include <limits>

using namespace tidewick;

class TestFormat : public QObject
{
    Q_OBJECT

private slots:
    void duration_data();
    void duration();
};

void TestFormat::duration_data()
{
    QTest::addColumn<qint64>("seconds");
    QTest::addColumn<QString>("expected");
    const auto row = [](qint64 seconds, const char *expected) {
        QTest::addRow("%lld", seconds) << seconds << QString::fromLatin1(expected);
    };
    row(0, "0m");
    row(59, "0m");
    row(60, "1m");
    row(3599, "59m");
    row(3600, "1h 0m");
    row(7500, "2h 5m");
    row(90000, "25h 0m");
    row(97380, "27h 3m");
    row(-1, "0m");
    row(-90000, "0m");
    row(std::numeric_limits<qint64>::min(), "0m");
    row(std::numeric_limits<qint64>::max(), "2562047788015215h 30m");
}

void TestFormat::duration()
{
    QFETCH(qint64, seconds);
    QFETCH(QString, expected);
    QCOMPARE(Format::duration(std::chrono::seconds(seconds)), expected);
}

TIDEWICK_TEST_MAIN(TestFormat)
#include "tst_format.moc"
