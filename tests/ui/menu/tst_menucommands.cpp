// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "support/NodeRig.h"
#include "support/Surroundings.h"
#include "ui/DesktopMenu.h"
#include "ui/controls/Appearance.h"
#include "ui/dialogs/AlertRig.h"

#include <QApplication>
#include <QClipboard>
#include <QJsonDocument>
#include <QSignalSpy>

using namespace tidewick;

/// The effect of the menu's commands on a node process, the desktop and the clipboard.
class TestMenuCommands : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void startsAndStops();
    void opensFolderAndLog();
    void opensAFolderWithoutAUtf8Name();
    void opensTheLedgerWhileItIsKnown();
    void copiesTheLastAnswer();
    void copiesNothingBeforeAnAnswer();
    void showsTheErrorWhileThereIsOne();
    void showsTheErrorsAdvice();
    void opensWindows();
    void clearsStorage();
    void quits();
    void survivesADesktopThatOpensNothing();

private:
    MenuHost host();

    std::unique_ptr<NodeRig> m_rig;
    std::unique_ptr<Appearance> m_appearance;
    std::unique_ptr<Windows> m_windows;
    std::unique_ptr<Alerts> m_alerts;
    std::unique_ptr<MenuCommands> m_commands;
    QList<QUrl> m_opened;
    bool m_opens = true;
};

void TestMenuCommands::init()
{
    m_opened.clear();
    m_opens = true;
    m_rig = std::make_unique<NodeRig>();
    m_appearance = std::make_unique<Appearance>();
    m_windows =
        std::make_unique<Windows>(m_rig->node(), *m_appearance, [](const QUrl &) { return true; });
    m_alerts = std::make_unique<Alerts>();
    m_commands = std::make_unique<MenuCommands>(m_rig->node(), host());
}

void TestMenuCommands::cleanup()
{
    m_commands.reset();
    m_alerts.reset();
    m_windows.reset();
    m_appearance.reset();
    m_rig.reset();
}

MenuHost TestMenuCommands::host()
{
    return desktopMenuHost(*m_windows, *m_alerts, [this](const QUrl &url) {
        m_opened.append(url);
        return m_opens;
    });
}

void TestMenuCommands::startsAndStops()
{
    m_commands->run(MenuCommand::StartNode);
    QVERIFY(m_rig->waitForPhase(Phase::Full));
    m_commands->run(MenuCommand::StopNode);
    QCOMPARE(m_rig->status().phase, Phase::Stopping);
    QCOMPARE(m_rig->status().detail, QStringLiteral("Stopping"));
    QVERIFY(m_rig->waitForPhase(Phase::Stopped));
}

void TestMenuCommands::opensFolderAndLog()
{
    m_commands->run(MenuCommand::OpenDataFolder);
    m_commands->run(MenuCommand::OpenLog);
    const QString data = QString::fromStdString(m_rig->data().string());
    QCOMPARE(m_opened.size(), 2);
    QCOMPARE(m_opened[0].toLocalFile(), data);
    QCOMPARE(m_opened[1].toLocalFile(), data + QLatin1String("/debug.log"));
}

void TestMenuCommands::opensAFolderWithoutAUtf8Name()
{
    const TemporaryFolder folder;
    NodeController node(folder.path() / "raw \xFF");
    MenuCommands commands(node, host());
    commands.run(MenuCommand::OpenDataFolder);
    QCOMPARE(m_opened.size(), 1);
    QVERIFY2(m_opened[0].toEncoded().endsWith("/raw%20%FF"), m_opened[0].toEncoded());
}

void TestMenuCommands::opensTheLedgerWhileItIsKnown()
{
    m_commands->run(MenuCommand::OpenLedger);
    QVERIFY(m_opened.isEmpty());
    m_rig->node().start();
    QVERIFY(m_rig->waitForPhase(Phase::Full));
    m_commands->run(MenuCommand::OpenLedger);
    QCOMPARE(m_opened.size(), 1);
    QCOMPARE(m_opened[0].toString(), QLatin1String("https://xrpscan.com/ledger/")
                                         + QString::number(*m_rig->status().ledgerSeq));
}

void TestMenuCommands::copiesTheLastAnswer()
{
    m_rig->node().start();
    QVERIFY(m_rig->waitForPhase(Phase::Full));
    m_commands->run(MenuCommand::CopyServerInfo);
    const QString text = QApplication::clipboard()->text();
    QVERIFY(text.startsWith(QLatin1String("{\n  \"")));
    QVERIFY(text.contains(QLatin1String("\n  \"server_state\" : \"full\"")));
    QCOMPARE(QJsonDocument::fromJson(text.toUtf8()).object(), *m_rig->node().lastServerInfo());
}

void TestMenuCommands::copiesNothingBeforeAnAnswer()
{
    QApplication::clipboard()->setText(QStringLiteral("the user's own"));
    m_commands->run(MenuCommand::CopyServerInfo);
    QCOMPARE(QApplication::clipboard()->text(), QStringLiteral("the user's own"));
}

void TestMenuCommands::showsTheErrorWhileThereIsOne()
{
    m_commands->run(MenuCommand::ShowError);
    QVERIFY(!shownAlert());
    m_rig->setFreeGB(1);
    m_rig->node().start();
    m_commands->run(MenuCommand::ShowError);
    QCOMPARE(alertTexts(), QStringList({QStringLiteral("Node error"), *m_rig->status().errorText}));
}

void TestMenuCommands::showsTheErrorsAdvice()
{
    std::filesystem::remove(m_rig->bundle().node());
    m_rig->node().start();
    m_commands->run(MenuCommand::ShowError);
    QVERIFY(m_rig->status().advice);
    QCOMPARE(alertTexts().value(2), m_rig->status().advice->text);
}

void TestMenuCommands::opensWindows()
{
    m_commands->run(MenuCommand::LiveLedger);
    m_commands->run(MenuCommand::Settings);
    m_commands->run(MenuCommand::About);
    for (const char *identifier : {"ledger", "settings", "about"})
        QVERIFY(m_windows->window(QLatin1String(identifier)));
}

void TestMenuCommands::clearsStorage()
{
    m_rig->node().setConfirm([](Confirmation) -> QCoro::Task<bool> { co_return true; });
    std::filesystem::create_directories(m_rig->data() / "db");
    m_commands->run(MenuCommand::ClearStorage);
    QCOMPARE(m_rig->status().detail, QStringLiteral("Storage cleared"));
    QVERIFY(!std::filesystem::exists(m_rig->data() / "db"));
}

void TestMenuCommands::quits()
{
    const QSignalSpy quits(m_commands.get(), &MenuCommands::quitRequested);
    m_commands->run(MenuCommand::Quit);
    QCOMPARE(quits.size(), 1);
}

void TestMenuCommands::survivesADesktopThatOpensNothing()
{
    m_opens = false;
    QTest::ignoreMessage(QtWarningMsg,
                         QRegularExpression(QStringLiteral("nothing on this desktop")));
    m_commands->run(MenuCommand::OpenDataFolder);
    QCOMPARE(m_opened.size(), 1);
}

TIDEWICK_LOOPBACK_GUI_TEST_MAIN(TestMenuCommands)
#include "tst_menucommands.moc"
