// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "support/Surroundings.h"
#include "ui/settings/SettingsChoices.h"

using namespace tidewick;
using namespace tidewick::SettingsChoices;

class TestSettingsChoices : public QObject
{
    Q_OBJECT

private slots:
    void offersTheCurrentValue_data();
    void offersTheCurrentValue();
    void durations_data();
    void durations();
    void sizes_data();
    void sizes();
};

namespace {

/// Formatted as "value label, value label".
QString told(const QList<Choice> &choices)
{
    QStringList told;
    for (const Choice &choice : choices)
        told.append(QString::number(choice.value) + u' ' + choice.label);
    return told.join(QLatin1String(", "));
}

} // namespace

void TestSettingsChoices::offersTheCurrentValue_data()
{
    QTest::addColumn<QString>("offered");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *name, const QList<qint64> &values, qint64 current,
                        const Label &label, const char *expected) {
        QTest::newRow(name) << told(choices(values, current, label)) << QString::fromUtf8(expected);
    };
    row("in sync", afterFullMinutes, 0, afterFullLabel,
        "0 Never, 30 30 minutes, 60 1 hour, 240 4 hours, 1440 1 day");
    row("in sync for 90 minutes", afterFullMinutes, 90, afterFullLabel,
        "0 Never, 30 30 minutes, 60 1 hour, 90 90 minutes, 240 4 hours, 1440 1 day");
    row("in sync, negative", afterFullMinutes, -5, afterFullLabel,
        "-5 -5 minutes, 0 Never, 30 30 minutes, 60 1 hour, 240 4 hours, 1440 1 day");
    row("running", hardCapMinutes, 720, hardCapLabel,
        "0 No limit, 60 1 hour, 240 4 hours, 720 12 hours, 1440 1 day, 10080 1 week");
    row("running for two days", hardCapMinutes, 2880, hardCapLabel,
        "0 No limit, 60 1 hour, 240 4 hours, 720 12 hours, 1440 1 day, 2880 2 days, 10080 1 week");
    row("running for two weeks", hardCapMinutes, 20160, hardCapLabel,
        "0 No limit, 60 1 hour, 240 4 hours, 720 12 hours, 1440 1 day, 10080 1 week, "
        "20160 2 weeks");
    row("free space", diskGuardGB, 10, diskGuardLabel, "5 5 GB, 10 10 GB, 20 20 GB, 50 50 GB");
    row("free space of 15", diskGuardGB, 15, diskGuardLabel,
        "5 5 GB, 10 10 GB, 15 15 GB, 20 20 GB, 50 50 GB");
    row("growth", roundGrowthMiB, 2048, roundGrowthLabel,
        "512 0.5 GB, 1024 1 GB, 2048 2 GB (recommended), 4096 4 GB, 8192 8 GB, 16384 16 GB");
    row("growth of 3 GB", roundGrowthMiB, 3072, roundGrowthLabel,
        "512 0.5 GB, 1024 1 GB, 2048 2 GB (recommended), 3072 3 GB, 4096 4 GB, 8192 8 GB, "
        "16384 16 GB");
    row("growth of 1.5 GB", roundGrowthMiB, 1536, roundGrowthLabel,
        "512 0.5 GB, 1024 1 GB, 1536 1.5 GB, 2048 2 GB (recommended), 4096 4 GB, 8192 8 GB, "
        "16384 16 GB");
}

void TestSettingsChoices::offersTheCurrentValue()
{
    QFETCH(QString, offered);
    QTEST(offered, "expected");
}

void TestSettingsChoices::durations_data()
{
    QTest::addColumn<qint64>("minutes");
    QTest::addColumn<QString>("label");
    const auto row = [](qint64 minutes, const char *label) {
        QTest::addRow("%lld", minutes) << minutes << QString::fromUtf8(label);
    };
    row(1, "1 minute");
    row(2, "2 minutes");
    row(30, "30 minutes");
    row(59, "59 minutes");
    row(60, "1 hour");
    row(61, "61 minutes");
    row(90, "90 minutes");
    row(120, "2 hours");
    row(240, "4 hours");
    row(720, "12 hours");
    row(1380, "23 hours");
    row(1440, "1 day");
    row(1500, "25 hours");
    row(2880, "2 days");
    row(10080, "1 week");
    row(11520, "8 days");
    row(20160, "2 weeks");
    row(9223372036854775807, "9223372036854775807 minutes");
}

void TestSettingsChoices::durations()
{
    QFETCH(qint64, minutes);
    QTEST(durationLabel(minutes), "label");
    QTEST(afterFullLabel(minutes), "label");
    QTEST(hardCapLabel(minutes), "label");
}

void TestSettingsChoices::sizes_data()
{
    QTest::addColumn<qint64>("mib");
    QTest::addColumn<QString>("label");
    const auto row = [](qint64 mib, const char *label) {
        QTest::addRow("%lld", mib) << mib << QString::fromUtf8(label);
    };
    row(0, "0 GB");
    row(100, "0.1 GB");
    row(256, "0.2 GB"); // a tie, rounded to even
    row(512, "0.5 GB");
    row(768, "0.8 GB");
    row(1023, "1.0 GB");
    row(1024, "1 GB");
    row(1536, "1.5 GB");
    row(3072, "3 GB");
    row(16384, "16 GB");
    row(-512, "-0.5 GB");
}

void TestSettingsChoices::sizes()
{
    QFETCH(qint64, mib);
    QTEST(gigabytes(mib), "label");
}

TIDEWICK_TEST_MAIN(TestSettingsChoices)
#include "tst_settingschoices.moc"
