// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "platform/files/Files.h"
#include "ui/FormRig.h"
#include "ui/SpeechLog.h"

#include <QApplication>

using namespace tidewick;

/// What a screen reader says about the Settings window as a whole.
class TestSettingsWindowAccess : public QObject
{
    Q_OBJECT

private slots:
    void saysTroubleOnce();
    void saysThatNothingCanBeStored();
};

void TestSettingsWindowAccess::saysTroubleOnce()
{
    SettingsRig rig;
    rig.opens = false;
    SpeechLog log;
    button(*rig.window, "View")->click();
    QCOMPARE(log.spoken(), QStringList(QStringLiteral("notice No program on this desktop opens %1.")
                                           .arg(Files::display(rig.node.data() / "xrpld.cfg"))));
    rig.opens = true;
    button(*rig.window, "View")->click();
    QCOMPARE(log.spoken(), QStringList());
}

void TestSettingsWindowAccess::saysThatNothingCanBeStored()
{
    const SettingsRig rig;
    // A folder in place of the file stops even root from writing.
    std::filesystem::create_directories(rig.defaults.file());
    const QString file = Files::display(rig.defaults.file());
    rig.picker(SettingsRig::DiskGuard)->setFocus();
    SpeechLog log;
    QTest::ignoreMessage(QtWarningMsg,
                         (file + QLatin1String(" cannot be written")).toUtf8().constData());
    rig.key(Qt::Key_Down);
    const QStringList spoken = log.spoken();
    QVERIFY(spoken.contains(
        QStringLiteral("notice The settings cannot be stored in %1. Your choices apply until "
                       "Tidewick quits.")
            .arg(file)));
    QVERIFY(spoken.contains(QStringLiteral("focus ListItem 20 GB")));
}

TIDEWICK_SPEECH_TEST_MAIN(TestSettingsWindowAccess)
#include "tst_settingswindow_access.moc"
