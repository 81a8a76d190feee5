// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "node/Settings.h"
#include "support/Surroundings.h"
#include "support/TestFiles.h"

using namespace tidewick;

class TestSettings : public QObject
{
    Q_OBJECT

private slots:
    void absentKeysHaveDefaults();
    void read_data();
    void read();
};

void TestSettings::absentKeysHaveDefaults()
{
    const TemporaryFolder folder;
    const Defaults defaults(folder.path() / "settings.ini");
    QCOMPARE(Settings::autoStopAfterFullMinutes.read(defaults), 0);
    QCOMPARE(Settings::autoStopHardCapMinutes.read(defaults), 0);
    QCOMPARE(Settings::roundGrowthMiB.read(defaults), 2048);
    QCOMPARE(Settings::diskGuardFreeGB.read(defaults), 10);
}

void TestSettings::read_data()
{
    QTest::addColumn<const Setting *>("setting");
    QTest::addColumn<QByteArray>("stored");
    QTest::addColumn<qint64>("value");
    const auto row = [](const Setting &setting, const char *stored, qint64 value) {
        QTest::addRow("%s=%s", setting.key.data(), stored)
            << &setting << QByteArray(stored) << value;
    };
    for (const Setting *minutes :
         {&Settings::autoStopAfterFullMinutes, &Settings::autoStopHardCapMinutes}) {
        row(*minutes, "0", 0);
        row(*minutes, "-5", 0);
        row(*minutes, "1", 1);
        row(*minutes, "90", 90);
        row(*minutes, "abc", 0);
    }
    row(Settings::roundGrowthMiB, "100", 512);
    row(Settings::roundGrowthMiB, "511", 512);
    row(Settings::roundGrowthMiB, "512", 512);
    row(Settings::roundGrowthMiB, "4096", 4096);
    row(Settings::roundGrowthMiB, "16384", 16384);
    row(Settings::roundGrowthMiB, "16385", 16384);
    row(Settings::roundGrowthMiB, "20000", 16384);
    row(Settings::roundGrowthMiB, "0", 512);
    row(Settings::roundGrowthMiB, "-1", 512);
    row(Settings::roundGrowthMiB, "abc", 512);
    row(Settings::roundGrowthMiB, "4096 MiB", 4096);
    row(Settings::diskGuardFreeGB, "0", 0);
    row(Settings::diskGuardFreeGB, "-3", -3);
    row(Settings::diskGuardFreeGB, "50", 50);
    row(Settings::diskGuardFreeGB, "12.9", 12);
}

void TestSettings::read()
{
    QFETCH(const Setting *, setting);
    QFETCH(QByteArray, stored);
    QFETCH(qint64, value);
    const TemporaryFolder folder;
    writeFile(folder.path() / "settings.ini",
              "[General]\n" + QByteArray(setting->key.data()) + '=' + stored + '\n');
    QCOMPARE(setting->read(Defaults(folder.path() / "settings.ini")), value);
}

TIDEWICK_TEST_MAIN(TestSettings)
#include "tst_settings.moc"
