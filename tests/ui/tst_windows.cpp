// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "support/Surroundings.h"
#include "ui/FormRig.h"
#include "ui/Windows.h"
#include "ui/controls/Appearance.h"

#include <QApplication>
#include <QScreen>
#include <QSignalSpy>

using namespace tidewick;

class TestWindows : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void openOnce_data();
    void openOnce();
    void comeBackFromMinimised();
    void showTheRunningVersion();
    void openAgainAfterClosing();
    void closeByTheStandardKey();
    void escapeClosesTheLedger();
    void ledgerOpensWithinItsScreen();
    void followLightAndDark();
    void closingTheLastDoesNotQuit();

private:
    std::unique_ptr<NodeRig> m_rig;
    std::unique_ptr<Appearance> m_appearance;
    std::unique_ptr<Windows> m_windows;
};

void TestWindows::init()
{
    m_rig = std::make_unique<NodeRig>();
    m_appearance = std::make_unique<Appearance>();
    m_windows =
        std::make_unique<Windows>(m_rig->node(), *m_appearance, [](const QUrl &) { return true; });
}

void TestWindows::cleanup()
{
    m_windows.reset();
    m_appearance.reset();
    m_rig.reset();
}

namespace {

qsizetype visibleWindows()
{
    const QWidgetList windows = QApplication::topLevelWidgets();
    return std::count_if(windows.begin(), windows.end(),
                         [](const QWidget *window) { return window->isVisible(); });
}

} // namespace

void TestWindows::openOnce_data()
{
    QTest::addColumn<QString>("identifier");
    QTest::addColumn<QString>("title");
    QTest::newRow("settings") << QStringLiteral("settings") << QStringLiteral("Tidewick Settings");
    QTest::newRow("ledger") << QStringLiteral("ledger") << QStringLiteral("Live Ledger");
    QTest::newRow("about") << QStringLiteral("about") << QStringLiteral("About Tidewick");
}

void TestWindows::openOnce()
{
    QFETCH(QString, identifier);
    QFETCH(QString, title);
    QVERIFY(!m_windows->window(identifier));
    m_windows->open(identifier);
    QWidget *window = m_windows->window(identifier);
    QVERIFY(window && window->isVisible());
    QCOMPARE(window->windowTitle(), title);
    m_windows->open(identifier);
    QCOMPARE(m_windows->window(identifier), window);
    QCOMPARE(visibleWindows(), 1);
    QVERIFY(QTest::qWaitForWindowActive(window));
}

void TestWindows::comeBackFromMinimised()
{
    m_windows->open(QStringLiteral("about"));
    QWidget *window = m_windows->window(QStringLiteral("about"));
    window->showMinimized();
    m_windows->open(QStringLiteral("about"));
    QVERIFY(!window->isMinimized());
}

void TestWindows::showTheRunningVersion()
{
    const std::filesystem::path contents = Bundle::main().path() / "Contents";
    std::filesystem::create_directories(contents);
    writeFile(contents / "Info.plist", "<plist><dict><key>CFBundleShortVersionString</key>"
                                       "<string>99.0.0</string></dict></plist>");
    m_windows->open(QStringLiteral("about"));
    const QStringList texts = shownTexts(*m_windows->window(QStringLiteral("about")));
    std::filesystem::remove_all(contents);
    QVERIFY(!texts.isEmpty());
    QVERIFY2(!texts.join(u'\n').contains(QLatin1String("99.0.0")), qPrintable(texts.join(u'\n')));
}

void TestWindows::openAgainAfterClosing()
{
    m_windows->open(QStringLiteral("about"));
    const QPointer<QWidget> window = m_windows->window(QStringLiteral("about"));
    window->close();
    QTRY_VERIFY(!window);
    QVERIFY(!m_windows->window(QStringLiteral("about")));
    m_windows->open(QStringLiteral("about"));
    QVERIFY(m_windows->window(QStringLiteral("about"))->isVisible());
}

void TestWindows::closeByTheStandardKey()
{
    for (const char *name : {"settings", "ledger", "about"}) {
        const QString identifier = QString::fromLatin1(name);
        m_windows->open(identifier);
        QVERIFY(QTest::qWaitForWindowActive(m_windows->window(identifier)));
        QTest::keySequence(m_windows->window(identifier), QKeySequence::Close);
        QTRY_VERIFY(!m_windows->window(identifier));
    }
}

void TestWindows::escapeClosesTheLedger()
{
    m_windows->open(QStringLiteral("ledger"));
    QWidget *window = m_windows->window(QStringLiteral("ledger"));
    QVERIFY(QTest::qWaitForWindowActive(window));
    QTest::keyClick(window, Qt::Key_Escape);
    QTRY_VERIFY(!m_windows->window(QStringLiteral("ledger")));
}

/// 800 by 780, unless the screen has less room for it below a title bar.
void TestWindows::ledgerOpensWithinItsScreen()
{
    m_windows->open(QStringLiteral("ledger"));
    const QWidget *window = m_windows->window(QStringLiteral("ledger"));
    const QSize screen = window->screen()->availableSize();
    QVERIFY(screen.height() < 780 + 40);
    QCOMPARE(window->size(), QSize(800, screen.height() - 40));
    QVERIFY(window->minimumHeight() < window->height());
}

void TestWindows::followLightAndDark()
{
    const auto setLightness = [this](int lightness) {
        QApplication::setPalette(QColor(lightness, lightness, lightness));
        m_appearance->paletteChanged();
    };
    const auto isDark = [this](const QString &identifier) {
        const QImage picture = m_windows->window(identifier)->grab().toImage();
        return picture.pixelColor(1, 1).lightness() < 128;
    };
    const QPalette before = QApplication::palette();
    setLightness(20);
    for (const char *name : {"settings", "ledger", "about"}) {
        const QString identifier = QString::fromLatin1(name);
        m_windows->open(identifier);
        QVERIFY(isDark(identifier));
        setLightness(240);
        QVERIFY(!isDark(identifier));
        setLightness(20);
        QVERIFY(isDark(identifier));
    }
    QApplication::setPalette(before);
}

void TestWindows::closingTheLastDoesNotQuit()
{
    QApplication::setQuitOnLastWindowClosed(false);
    const QSignalSpy ends(qApp, &QCoreApplication::aboutToQuit);
    m_windows->open(QStringLiteral("settings"));
    m_windows->window(QStringLiteral("settings"))->close();
    QTRY_VERIFY(!m_windows->window(QStringLiteral("settings")));
    QCOMPARE(ends.size(), 0);
}

TIDEWICK_LOOPBACK_GUI_TEST_MAIN(TestWindows)
#include "tst_windows.moc"
