// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/FormRig.h"
#include "ui/SpeechLog.h"
#include "ui/controls/Disclosure.h"

#include <QApplication>

using namespace tidewick;

class TestDisclosureAccess : public QObject
{
    Q_OBJECT

private slots:
    void saysWhetherItIsOpen();
};

void TestDisclosureAccess::saysWhetherItIsOpen()
{
    QWidget window;
    Disclosure disclosure(QStringLiteral("More"), &window);
    showActive(window);
    disclosure.setFocus();
    SpeechLog log;
    QTest::keyClick(&disclosure, Qt::Key_Return);
    QCOMPARE(log.spoken(), QStringList(QStringLiteral("notice expanded")));
    QTest::keyClick(&disclosure, Qt::Key_Right);
    QCOMPARE(log.spoken(), QStringList());
    QTest::keyClick(&disclosure, Qt::Key_Left);
    QCOMPARE(log.spoken(), QStringList(QStringLiteral("notice collapsed")));
}

TIDEWICK_SPEECH_TEST_MAIN(TestDisclosureAccess)
#include "tst_disclosure_access.moc"
