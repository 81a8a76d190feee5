// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "node/NodeDate.h"
#include "support/Surroundings.h"

#include <ctime>

using namespace tidewick;

class TestNodeDate : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { inUtc(); }
    void dates_data();
    void dates();
    void days();

private:
    static void inUtc()
    {
        qputenv("TZ", "UTC");
        ::tzset();
    }
};

namespace {

WallClock::time_point at(const char *date)
{
    return NodeDate::parse(QString::fromLatin1(date)).value();
}

} // namespace

void TestNodeDate::dates_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<qint64>("seconds"); // since 1970, or -1 if it is not a date
    const auto row = [](const char *text, qint64 seconds) {
        QTest::newRow(text) << QString::fromUtf8(text) << seconds;
    };
    row("2026-Dec-22 00:35:01.000000000 UTC", 1797899701);
    row("2026-Dec-22 00:35:01.999999999 UTC", 1797899701);
    row("2000-Jan-01 00:00:00 UTC", 946684800);
    row("2026-Feb-30 00:35:01.000000000 UTC", -1);
    row("2026-Dez-22 00:35:01.000000000 UTC", -1);
    row("2026-Dec-22 00:35:01.000000000", -1);
    row("9999-Dec-22 00:35:01.000000000 UTC", -1);
    row("unknown", -1);
    row("never", -1);
    row("", -1);
}

void TestNodeDate::dates()
{
    QFETCH(QString, text);
    QFETCH(qint64, seconds);
    const auto date = NodeDate::parse(text);
    const auto since = [](WallClock::time_point time) {
        return qint64(std::chrono::floor<std::chrono::seconds>(time.time_since_epoch()).count());
    };
    QCOMPARE(date ? since(*date) : -1, seconds);
}

void TestNodeDate::days()
{
    const auto now = at("2026-Nov-22 12:00:00 UTC");
    QCOMPARE(NodeDate::day(at("2026-Jan-18 00:00:00 UTC"), now), QStringLiteral("18 January"));
    QCOMPARE(NodeDate::day(at("2027-Jan-01 00:00:00 UTC"), now), QStringLiteral("1 January 2027"));
    qputenv("TZ", "Asia/Tokyo");
    ::tzset();
    QCOMPARE(NodeDate::day(at("2026-Dec-31 16:00:00 UTC"), now), QStringLiteral("1 January 2027"));
    inUtc();
}

TIDEWICK_TEST_MAIN(TestNodeDate)
#include "tst_nodedate.moc"
