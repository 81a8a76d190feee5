// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "application/Desktop.h"
#include "application/DesktopFaces.h"
#include "application/TrayReader.h"
#include "support/NodeRig.h"
#include "support/ScriptedNode.h"
#include "support/Surroundings.h"

#include <QApplication>
#include <QSignalSpy>

#include <csignal>

using namespace tidewick;
using namespace std::chrono_literals;

namespace {

/// Whether the outline is dark, which comes first from above. The icon is light then.
bool hasDarkOutline(const QImage &image)
{
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor color = image.pixelColor(x, y);
            if (color.alpha() > 200)
                return color.lightness() < 128;
        }
    }
    qFatal("The icon is empty");
}

bool contains(const QImage &image, const QColor &color)
{
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (image.pixelColor(x, y) == color)
                return true;
    return false;
}

} // namespace

/// Tests the tray item as a real tray host sees it over the bus.
class TestTray : public QObject
{
    Q_OBJECT

public:
    explicit TestTray(SessionBus &bus) : m_bus(bus) {}

private slots:
    void init();
    void cleanup();

    void registersWithAName();
    void menuFollowsThePhases();
    void clicksAreCommands();
    void textsAreShownVerbatim();
    void longRowsAreElided();
    void pollsDoNotUpdateTheLayout();
    void iconFollowsThePhase();
    void iconSuitsThePanel_data();
    void iconSuitsThePanel();
    void hostAppearsLater();

private:
    bool isShown();
    bool menuIsCurrent();

    SessionBus &m_bus;
    std::unique_ptr<DesktopPanel> m_panel;
    std::unique_ptr<NodeRig> m_rig;
    std::unique_ptr<DesktopFaces> m_faces;
    std::unique_ptr<TrayReader> m_reader;
};

void TestTray::init()
{
    qunsetenv("XDG_CURRENT_DESKTOP");
    m_panel = std::make_unique<DesktopPanel>();
    QVERIFY(DesktopPanel::waitForHost(m_bus));
    m_rig = std::make_unique<NodeRig>();
    m_reader = std::make_unique<TrayReader>(m_bus.connection());
    m_faces = std::make_unique<DesktopFaces>(m_rig->node());
    QVERIFY(isShown());
}

void TestTray::cleanup()
{
    m_faces.reset();
    m_reader.reset();
    m_rig.reset();
    m_panel.reset();
}

bool TestTray::isShown()
{
    return waitUntil([this] { return m_reader->findItem(); });
}

bool TestTray::menuIsCurrent()
{
    QList<MenuEntry> seen;
    const bool isCurrent = waitUntil([&] {
        seen = withoutIds(m_reader->menu());
        return seen == entriesOf(menuRows(m_rig->status()));
    });
    if (!isCurrent) {
        for (const MenuEntry &entry : seen)
            qInfo() << entry.text << entry.separator << entry.enabled;
    }
    return isCurrent;
}

void TestTray::registersWithAName()
{
    QVERIFY(menuIsCurrent());
    QCOMPARE(m_reader->toolTip(), QStringLiteral("Tidewick: Stopped"));
    QCOMPARE(m_reader->property("Title").toString(), QGuiApplication::applicationDisplayName());
    QCOMPARE(m_reader->property("Status").toString(), QStringLiteral("Active"));
}

void TestTray::menuFollowsThePhases()
{
    ScriptedNode script(*m_rig);
    script.setCounts(R"({"stream_bootstrap":{"enabled":true,"phase":"catching_up"}})");
    QList<Phase> phases;
    connect(&m_rig->node(), &NodeController::statusChanged, this, [&] {
        if (phases.isEmpty() || phases.constLast() != m_rig->status().phase)
            phases.append(m_rig->status().phase);
    });
    const auto answerWith = [&](const char *state) {
        script.setInfo(R"({"peers":4,"server_state":")" + QByteArray(state) + "\"}");
    };
    answerWith("catching_up");
    m_rig->node().start();
    for (const auto &[state, phase] :
         {std::pair("catching_up", Phase::Bootstrapping), std::pair("connected", Phase::Connecting),
          std::pair("syncing", Phase::Syncing), std::pair("full", Phase::Full)}) {
        answerWith(state);
        QVERIFY(m_rig->waitForPhase(phase));
        QVERIFY(menuIsCurrent());
    }
    m_rig->node().stop();
    QVERIFY(menuIsCurrent());
    ::kill(m_rig->lastChild(), SIGTERM); // the scripted node does not exit on its own
    QVERIFY(m_rig->waitForPhase(Phase::Stopped));
    QVERIFY(menuIsCurrent());
    QCOMPARE(phases, (QList<Phase>{Phase::Starting, Phase::Bootstrapping, Phase::Connecting,
                                   Phase::Syncing, Phase::Full, Phase::Stopping, Phase::Stopped}));
}

void TestTray::clicksAreCommands()
{
    QVERIFY(m_reader->click(QStringLiteral("Start Node")));
    QVERIFY(m_rig->waitForPhase(Phase::Full));
    QVERIFY(menuIsCurrent());
    QVERIFY(m_reader->click(QStringLiteral("Stop Node")));
    QVERIFY(m_rig->waitForPhase(Phase::Stopped));
    QVERIFY(menuIsCurrent());

    const QSignalSpy quits(m_faces.get(), &DesktopFaces::quitRequested);
    QVERIFY(m_reader->click(QStringLiteral("Quit")));
    QVERIFY(waitUntil([&] { return quits.size() == 1; }));
}

void TestTray::textsAreShownVerbatim()
{
    for (const char *text : {"R&D", "a & b & c", "a&", "&a", "a_b", "_a__b_", "a_&_b", "<b>x</b>",
                             "100 %1 %s", "&&", "__"}) {
        m_rig->node().setStartBlocked(QString::fromUtf8(text));
        m_rig->node().start();
        QVERIFY(menuIsCurrent());
    }
    // Line breaks and characters that change the text direction do not reach the menu.
    m_rig->node().setStartBlocked(QStringLiteral("one\ntwo\u202e"));
    m_rig->node().start();
    QVERIFY(waitUntil([&] { return m_reader->menu().at(1).text == QLatin1String("one two"); }));
}

void TestTray::longRowsAreElided()
{
    m_rig->node().setStartBlocked(QString(1 << 20, u'x'));
    m_rig->node().start();
    QVERIFY(waitUntil(
        [&] { return m_reader->menu().at(1).text == QString(119, u'x') + QStringLiteral("…"); }));
}

/// Values that change with every poll update rows, not the menu's layout.
void TestTray::pollsDoNotUpdateTheLayout()
{
    m_rig->setScenario("speed=50 state=full maintenance=waiting");
    m_rig->node().start();
    QVERIFY(m_rig->runUntil([&] { return m_rig->status().storage.has_value(); }));
    QVERIFY(m_rig->waitForPhase(Phase::Full));
    QVERIFY(menuIsCurrent());
    const QList<MenuEntry> before = m_reader->menu();
    const int updates = m_reader->layoutUpdates();
    const int news = m_reader->propertyUpdates();

    const QSignalSpy changes(&m_rig->node(), &NodeController::statusChanged);
    QVERIFY(m_rig->runUntil([&] { return changes.size() >= 10; }));
    QVERIFY(menuIsCurrent());
    QVERIFY(m_reader->propertyUpdates() > news);
    QCOMPARE(m_reader->layoutUpdates(), updates);
    const QList<MenuEntry> after = m_reader->menu();
    QCOMPARE(after.size(), before.size());
    for (qsizetype at = 0; at < after.size(); ++at)
        QCOMPARE(after[at].id, before[at].id);
    QVERIFY(after != before);
}

void TestTray::iconFollowsThePhase()
{
    const QList<QImage> stopped = m_reader->icon();
    QVERIFY(stopped.size() >= 3); // for panels of different heights
    for (const QImage &image : stopped)
        QVERIFY(image != QImage(image.size(), image.format()));
    m_rig->node().start();
    QVERIFY(m_rig->waitForPhase(Phase::Full));
    QVERIFY(waitUntil([&] { return m_reader->icon() != stopped; }));
    m_rig->node().stop();
    QVERIFY(m_rig->waitForPhase(Phase::Stopped));
    QVERIFY(waitUntil([&] { return m_reader->icon() == stopped; }));
}

void TestTray::iconSuitsThePanel_data()
{
    QTest::addColumn<QByteArray>("desktop");
    QTest::addColumn<bool>("isLight");
    QTest::newRow("unknown") << QByteArray() << false;
    QTest::newRow("KDE") << QByteArray("KDE") << false;
    QTest::newRow("GNOME") << QByteArray("GNOME") << true;
    QTest::newRow("GNOME of Ubuntu") << QByteArray("ubuntu:GNOME") << true;
    QTest::newRow("Xfce") << QByteArray("XFCE") << true;
}

/// All while windows are light.
void TestTray::iconSuitsThePanel()
{
    QFETCH(QByteArray, desktop);
    QFETCH(bool, isLight);
    m_faces.reset();
    QVERIFY(waitUntil([this] { return !m_reader->findItem(); }));
    qputenv("XDG_CURRENT_DESKTOP", desktop);
    m_faces = std::make_unique<DesktopFaces>(m_rig->node());
    QVERIFY(isShown());
    const QList<QImage> images = m_reader->icon();
    QVERIFY(!images.isEmpty());
    for (const QImage &image : images) {
        QCOMPARE(hasDarkOutline(image), isLight);
        QVERIFY(contains(image, isLight ? StatusIcon::onDarkPanel() : StatusIcon::onLightPanel()));
    }
}

void TestTray::hostAppearsLater()
{
    m_panel.reset();
    QVERIFY(waitUntil([this] { return !m_reader->findItem(); }));
    m_panel = std::make_unique<DesktopPanel>();
    QVERIFY(isShown());
    QVERIFY(menuIsCurrent());
    m_rig->node().start();
    QVERIFY(m_rig->waitForPhase(Phase::Full));
    QVERIFY(menuIsCurrent());
}

TIDEWICK_TEST_PROGRAM
{
    enterPrivateLoopback();
    const TestHome home;
    SessionBus bus;
    const XServer display;
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    TestTray test(bus);
    return QTest::qExec(&test, argc, argv);
}
#include "tst_tray.moc"
