// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "application/Desktop.h"
#include "application/DesktopFaces.h"
#include "support/NodeRig.h"
#include "support/Surroundings.h"
#include "ui/ledger/LedgerHeader.h"
#include "ui/ledger/LedgerHistogram.h"

#include <QAbstractButton>
#include <QApplication>
#include <QElapsedTimer>
#include <QLabel>

using namespace tidewick;

/// Tests the panel on a desktop without a tray.
class TestPanelFace : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void opensByItselfAfterAWhile();
    void comesForwardAtOnce();
    void followsTheNode();
    void opensTheLiveLedger();
    void advisesOnceOnGnome();
    void noAdviceOnOtherDesktops();

private:
    static NodePanel *panel();
    static bool shows(const QString &text);

    std::unique_ptr<NodeRig> m_rig;
    std::unique_ptr<DesktopFaces> m_faces;
};

void TestPanelFace::init()
{
    qunsetenv("XDG_CURRENT_DESKTOP");
    m_rig = std::make_unique<NodeRig>();
    m_faces = std::make_unique<DesktopFaces>(m_rig->node());
}

void TestPanelFace::cleanup()
{
    m_faces.reset();
    m_rig.reset();
    Defaults::standard().remove(QStringLiteral("trayAdviceGiven"));
}

NodePanel *TestPanelFace::panel()
{
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        if (auto *panel = qobject_cast<NodePanel *>(widget); panel && panel->isVisible())
            return panel;
    }
    return nullptr;
}

bool TestPanelFace::shows(const QString &text)
{
    const QList<QLabel *> labels = panel()->findChildren<QLabel *>();
    return std::any_of(labels.begin(), labels.end(), [&](const QLabel *label) {
        return label->isVisible() && label->accessibleName().contains(text);
    });
}

void TestPanelFace::opensByItselfAfterAWhile()
{
    QElapsedTimer timer;
    timer.start();
    QVERIFY(!panel());
    QVERIFY(waitUntil([] { return panel() != nullptr; }));
    QVERIFY(timer.elapsed() > 4'000); // a tray host may be late
}

void TestPanelFace::comesForwardAtOnce()
{
    m_faces->comeForward();
    QVERIFY(panel());
    panel()->showMinimized();
    m_faces->comeForward();
    QVERIFY(!panel()->isMinimized());
}

void TestPanelFace::followsTheNode()
{
    m_faces->comeForward();
    QVERIFY(shows(QStringLiteral("Stopped")));
    m_rig->node().start();
    QVERIFY(m_rig->waitForPhase(Phase::Full));
    QVERIFY(shows(QStringLiteral("Full")));
    QVERIFY(shows(QStringLiteral("Following mainnet")));
}

/// Uses the node's real stream.
void TestPanelFace::opensTheLiveLedger()
{
    m_faces->comeForward();
    m_rig->node().start();
    QVERIFY(m_rig->waitForPhase(Phase::Full));
    for (QAbstractButton *command : panel()->findChildren<QAbstractButton *>())
        if (command->accessibleName() == QStringLiteral("Live Ledger…"))
            command->click();
    const auto ledger = [] {
        const QWidgetList windows = QApplication::topLevelWidgets();
        const auto found = std::find_if(windows.begin(), windows.end(), [](const QWidget *window) {
            return window->isVisible() && window->windowTitle() == u"Live Ledger";
        });
        return found == windows.end() ? nullptr : *found;
    };
    QVERIFY(ledger());
    const auto *head = ledger()->findChild<LedgerHeader *>();
    const auto *bars = ledger()->findChild<LedgerHistogram *>();
    QVERIFY(waitUntil([&] {
        return head->accessibleName().endsWith(QStringLiteral(", Live"))
               && bars->ledgers().size() >= 59;
    }));
}

void TestPanelFace::advisesOnceOnGnome()
{
    const QString advice = QStringLiteral("AppIndicator and KStatusNotifierItem Support");
    const QString enabling =
        QStringLiteral("“gnome-extensions enable ubuntu-appindicators@ubuntu.com”");
    qputenv("XDG_CURRENT_DESKTOP", "ubuntu:GNOME");
    m_faces->comeForward();
    QVERIFY(shows(advice));
    QVERIFY(shows(enabling));
    m_faces = std::make_unique<DesktopFaces>(m_rig->node());
    m_faces->comeForward();
    QVERIFY(!shows(advice));
}

void TestPanelFace::noAdviceOnOtherDesktops()
{
    qputenv("XDG_CURRENT_DESKTOP", "XFCE");
    m_faces->comeForward();
    QVERIFY(!shows(QStringLiteral("install")));
}

TIDEWICK_TEST_PROGRAM
{
    enterPrivateLoopback();
    const TestHome home;
    const SessionBus bus;
    drawOffscreen();
    const QApplication application(argc, argv);
    TestPanelFace test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_panelface.moc"
