// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "platform/files/Files.h"
#include "support/Surroundings.h"
#include "ui/AccessTree.h"
#include "ui/FormRig.h"
#include "ui/about/AboutWindow.h"
#include "ui/dialogs/AlertRig.h"
#include "ui/ledger/LedgerRig.h"
#include "ui/panel/PanelRig.h"

#include <QApplication>

using namespace tidewick;

/// Compares each window, as screen readers see it, with a text file in tests/data/access.
///
/// If a difference is intended, QTEST_RENEW_ACCESS=1 build/tests/ui/tests_ui tst_accesstree writes
/// the files anew.
class TestAccessTree : public QObject
{
    Q_OBJECT

private slots:
    void panel();
    void panelWithAdvice();
    void settings();
    void ledger();
    void emptyLedger();
    void about();
    void question();
    void error();
    void copying();
};

namespace {

/// Returns what is wrong with a tree; nothing if it is the expected one.
QByteArray difference(const char *name, const QString &tree)
{
    const std::filesystem::path file =
        std::filesystem::path(TIDEWICK_TEST_DATA) / "access" / (std::string(name) + ".txt");
    const QByteArray seen = tree.toUtf8();
    if (qEnvironmentVariableIsSet("QTEST_RENEW_ACCESS"))
        writeFile(file, seen);
    const QByteArray expected = contentOf(file);
    if (seen == expected)
        return {};
    const auto lines = [](const QByteArray &text) { return text.split('\n'); };
    const QByteArrayList before = lines(expected);
    const QByteArrayList now = lines(seen);
    qsizetype same = 0;
    while (same < std::min(before.size(), now.size()) && before.at(same) == now.at(same))
        ++same;
    return QByteArray(name) + ".txt, line " + QByteArray::number(same + 1) + ": \""
           + now.value(same) + "\" instead of \"" + before.value(same) + '"';
}

} // namespace

void TestAccessTree::panel()
{
    PanelRig rig;
    QCOMPARE(difference("panel", accessTree(rig.panel)), QByteArray());
}

void TestAccessTree::panelWithAdvice()
{
    NodeStatus status = withAdvice(Advice::Cause::NodeMissing);
    status.phase = Phase::Stopped;
    status.hasProcess = false;
    status.hasServerInfo = false;
    status.ledgerSeq.reset();
    PanelRig rig(status);
    rig.panel.setHint(QStringLiteral("To see Tidewick in the tray, install a tray."));
    QCOMPARE(difference("panel-advice", accessTree(rig.panel)), QByteArray());
}

void TestAccessTree::settings()
{
    const SettingsRig rig;
    QString tree = accessTree(*rig.window);
    tree.replace(Files::display(rig.node.data()), QLatin1String("/DATA"));
    QCOMPARE(difference("settings", tree), QByteArray());
}

void TestAccessTree::ledger()
{
    LedgerRig rig;
    rig.close({120, 0, 77});
    rig.transact(QStringLiteral("A"), QStringLiteral("Payment"));
    rig.transact(QStringLiteral("B"), QStringLiteral("OfferCreate"), QStringLiteral("tecPATH_DRY"));
    rig.transact(QStringLiteral("C"), QStringLiteral("Payment"));
    rig.close(33);
    QCOMPARE(difference("ledger", accessTree(rig.window)), QByteArray());
}

void TestAccessTree::emptyLedger()
{
    LedgerRig rig;
    QCOMPARE(difference("ledger-empty", accessTree(rig.window)), QByteArray());
}

void TestAccessTree::about()
{
    NodeRig node;
    writeFile(node.bundle().resource("build-info"), "compiler=GNU 12\nxrpld_version=2.4.0\n");
    AboutWindow window(node.node(), QStringLiteral("1.0.0"));
    showActive(window);
    QCOMPARE(difference("about", accessTree(window)), QByteArray());
    button(window, "Build details")->click();
    QCOMPARE(difference("about-details", accessTree(window)), QByteArray());
}

void TestAccessTree::question()
{
    AlertRig rig;
    rig.ask();
    QCOMPARE(difference("question", accessTree(*shownAlert())), QByteArray());
}

void TestAccessTree::error()
{
    AlertRig rig;
    rig.alerts.showError(
        QStringLiteral("The node exited with status 1.\n\nfirst line\nsecond line"),
        QStringLiteral("Its store is damaged."));
    showActive(*shownAlert());
    QCOMPARE(difference("error", accessTree(*shownAlert())), QByteArray());
}

void TestAccessTree::copying()
{
    AlertRig rig;
    rig.alerts.offerCopy(QStringLiteral("Copy server_info JSON"), QStringLiteral("{\n}"));
    showActive(*shownAlert());
    QCOMPARE(difference("copying", accessTree(*shownAlert())), QByteArray());
}

TIDEWICK_GUI_TEST_MAIN(TestAccessTree)
#include "tst_accesstree.moc"
