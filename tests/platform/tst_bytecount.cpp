// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "platform/text/ByteCount.h"
#include "support/Surroundings.h"

#include <limits>

using namespace tidewick;

class TestByteCount : public QObject
{
    Q_OBJECT

private slots:
    void text_data();
    void text();
    void ignoresTheLocale();
};

void TestByteCount::text_data()
{
    QTest::addColumn<qint64>("bytes");
    QTest::addColumn<QString>("expected");
    const auto row = [](qint64 bytes, const char *expected) {
        QTest::addRow("%lld", bytes) << bytes << QString::fromLatin1(expected);
    };

    row(0, "Zero KB");
    row(1, "1 byte");
    row(2, "2 bytes");
    row(13, "13 bytes");
    row(499, "499 bytes");
    row(900, "900 bytes");
    row(999, "999 bytes");
    row(1'000, "1 KB");
    row(1'023, "1 KB");
    row(1'024, "1 KB");
    row(1'300, "1 KB");
    row(1'499, "1 KB");
    row(1'501, "2 KB");
    row(1'600, "2 KB");
    row(5'500, "6 KB");
    row(11'999, "12 KB");
    row(55'000, "55 KB");
    row(722'842, "723 KB");
    row(900'000, "900 KB");
    row(999'499, "999 KB");
    row(999'500, "1 MB");
    row(999'950, "1 MB");
    row(999'999, "1 MB");
    row(1'000'000, "1 MB");
    row(1'049'999, "1 MB");
    row(1'100'000, "1.1 MB");
    row(1'300'000, "1.3 MB");
    row(1'500'000, "1.5 MB");
    row(3'100'000, "3.1 MB");
    row(5'500'000, "5.5 MB");
    row(12'345'678, "12.3 MB");
    row(55'000'000, "55 MB");
    row(67'108'864, "67.1 MB");
    row(123'456'789, "123.5 MB");
    row(550'000'000, "550 MB");
    row(999'900'000, "999.9 MB");
    row(999'949'999, "999.9 MB");
    row(999'950'000, "1 GB");
    row(999'999'999, "1 GB");
    row(1'000'000'000, "1 GB");
    row(1'004'999'999, "1 GB");
    row(1'073'741'824, "1.07 GB");
    row(1'100'000'000, "1.1 GB");
    row(1'190'000'000, "1.19 GB");
    row(1'200'000'000, "1.2 GB");
    row(1'234'567'898, "1.23 GB");
    row(1'300'000'000, "1.3 GB");
    row(1'500'000'000, "1.5 GB");
    row(1'999'999'999, "2 GB");
    row(4'200'000'000, "4.2 GB");
    row(5'500'000'000, "5.5 GB");
    row(12'345'678'987, "12.35 GB");
    row(55'000'000'000, "55 GB");
    row(550'000'000'000, "550 GB");
    row(999'994'999'999, "999.99 GB");
    row(999'995'000'000, "1 TB");
    row(1'000'000'000'000, "1 TB");
    row(1'300'000'000'000, "1.3 TB");
    row(999'994'999'999'999, "999.99 TB");
    row(999'995'000'000'000, "1 PB");
    row(1'300'000'000'000'000, "1.3 PB");
    row(10'000'000'000'000'000, "10 PB");
    row(999'994'999'999'999'999, "999.99 PB");
    row(999'995'000'000'000'000, "1 EB");
    row(1'300'000'000'000'000'000, "1.3 EB");
    row(std::numeric_limits<qint64>::max(), "9.22 EB");
    row(-1, "-1 byte");
    row(-2, "-2 bytes");
    row(-13, "-13 bytes");
    row(-1'023, "-1 KB");
    row(-1'234'567'898, "-1.23 GB");
    row(-12'345'678'987, "-12.35 GB");
    row(std::numeric_limits<qint64>::min(), "-9.22 EB");

    // Ties round away from zero.
    row(2'500, "3 KB");
    row(1'150'000, "1.2 MB");
    row(1'250'000, "1.3 MB");
    row(99'950'000, "100 MB");
    row(1'005'000'000, "1.01 GB");
    row(-2'500, "-3 KB");
}

void TestByteCount::text()
{
    QFETCH(qint64, bytes);
    QFETCH(QString, expected);
    QCOMPARE(ByteCount::text(bytes), expected);
}

void TestByteCount::ignoresTheLocale()
{
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::German));
    QCOMPARE(ByteCount::text(12'345'678), QStringLiteral("12.3 MB"));
    QLocale::setDefault(before);
}

TIDEWICK_TEST_MAIN(TestByteCount)
#include "tst_bytecount.moc"
