// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "application/Desktop.h"
#include "application/LaunchedApplication.h"
#include "application/XWindows.h"
#include "support/Surroundings.h"
#include "support/TestBundle.h"
#include "ui/controls/Appearance.h"

#include <QApplication>
#include <QDBusContext>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QPalette>
#include <QSignalSpy>

#include <csignal>
#include <optional>

using namespace tidewick;

namespace {

constexpr const char *group = "org.freedesktop.appearance";
constexpr const char *key = "color-scheme";

/// The settings by group and key.
using Settings = QMap<std::pair<QString, QString>, QVariant>;

Settings schemeOf(uint scheme)
{
    return {{{QString::fromLatin1(group), QString::fromLatin1(key)}, scheme}};
}

} // namespace

/// A stand-in for the desktop's settings portal.
class Portal final : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    Portal(const QDBusConnection &bus, const Settings &settings) : m_bus(bus), m_settings(settings)
    {
        m_bus.registerObject(QStringLiteral("/org/freedesktop/portal/desktop"), this,
                             QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals);
        m_bus.registerService(QStringLiteral("org.freedesktop.portal.Desktop"));
    }
    ~Portal() override
    {
        m_bus.unregisterService(QStringLiteral("org.freedesktop.portal.Desktop"));
        m_bus.unregisterObject(QStringLiteral("/org/freedesktop/portal/desktop"));
    }

    /// Whether all relevant settings have been requested.
    bool isAsked() const { return m_asked.size() == 7; }

    void change(const QString &itsGroup, const QString &itsKey, const QVariant &value)
    {
        emit SettingChanged(itsGroup, itsKey, QDBusVariant(value));
    }

signals:
    void SettingChanged(const QString &, const QString &, const QDBusVariant &);

public slots:
    QDBusVariant Read(const QString &itsGroup, const QString &itsKey)
    {
        m_asked += {itsGroup, itsKey};
        const QVariant value = m_settings.value({itsGroup, itsKey});
        if (!value.isValid())
            sendErrorReply(QDBusError::InvalidArgs);
        return QDBusVariant(QVariant::fromValue(QDBusVariant(value)));
    }

private:
    QDBusConnection m_bus;
    Settings m_settings;
    QSet<std::pair<QString, QString>> m_asked;
};

/// Tests that colours and motion follow the desktop's settings.
class TestAppearance : public QObject
{
    Q_OBJECT

public:
    explicit TestAppearance(SessionBus &bus) : m_bus(bus) {}

private slots:
    void cleanup() { QApplication::setPalette(QPalette(Qt::white)); }

    void startsAsThePortalSays_data();
    void startsAsThePortalSays();
    void followsThePortal();
    void followsThePaletteWithoutAPortal();
    void runningProgramFollowsThePortal();

    void highContrastFollowsThePortal_data();
    void highContrastFollowsThePortal();

    void startsWithReducedMotionAsThePortalSays_data();
    void startsWithReducedMotionAsThePortalSays();
    void reducedMotionFollowsThePortal_data();
    void reducedMotionFollowsThePortal();
    void animatesWithoutAPortal();

private:
    SessionBus &m_bus;
};

void TestAppearance::startsAsThePortalSays_data()
{
    QTest::addColumn<uint>("scheme");
    QTest::addColumn<bool>("darkPalette");
    QTest::addColumn<bool>("expected");
    QTest::newRow("dark") << 1U << false << true;
    QTest::newRow("light") << 2U << true << false;
    QTest::newRow("no preference, light palette") << 0U << false << false;
    QTest::newRow("no preference, dark palette") << 0U << true << true;
    QTest::newRow("unknown value") << 7U << false << false;
}

void TestAppearance::startsAsThePortalSays()
{
    QFETCH(uint, scheme);
    QFETCH(bool, darkPalette);
    QFETCH(bool, expected);
    QApplication::setPalette(QPalette(darkPalette ? Qt::black : Qt::white));
    Portal portal(m_bus.connection(), schemeOf(scheme));
    const Appearance appearance;
    QVERIFY(waitUntil([&] { return appearance.isDark() == expected && portal.isAsked(); }));
    QCOMPARE(appearance.isStated(), scheme == 1 || scheme == 2);
}

void TestAppearance::followsThePortal()
{
    Portal portal(m_bus.connection(), schemeOf(2));
    const Appearance appearance;
    QVERIFY(waitUntil([&] { return appearance.isStated() && portal.isAsked(); }));
    QSignalSpy changes(&appearance, &Appearance::changed);
    portal.change(QString::fromLatin1(group), QString::fromLatin1(key), 1U);
    QVERIFY(waitUntil([&] { return appearance.isDark(); }));
    portal.change(QString::fromLatin1(group), QStringLiteral("accent-color"), 0U);
    portal.change(QStringLiteral("org.gnome.desktop"), QString::fromLatin1(key), 2U);
    portal.change(QString::fromLatin1(group), QString::fromLatin1(key), 2U);
    QVERIFY(waitUntil([&] { return !appearance.isDark(); }));
    QCOMPARE(changes.size(), 2);
}

void TestAppearance::followsThePaletteWithoutAPortal()
{
    Appearance appearance;
    QVERIFY(!appearance.isDark());
    QApplication::setPalette(QPalette(Qt::black));
    appearance.paletteChanged();
    QVERIFY(appearance.isDark());
}

/// In the program itself, where no stand-in of a portal has made D-Bus types known.
void TestAppearance::runningProgramFollowsThePortal()
{
    const XServer display;
    Portal portal(m_bus.connection(), schemeOf(2));
    const TestBundle bundle;
    LaunchedApplication application(bundle, "listen=no", {{"QT_QPA_PLATFORM", ""}});
    const auto lightness = []() -> std::optional<int> {
        const QImage panel = windowPicture(QStringLiteral("Tidewick"));
        if (panel.isNull())
            return std::nullopt;
        return panel.pixelColor(panel.width() / 2, 2).lightness();
    };
    const auto isLight = [&] { return lightness().value_or(0) > 200; };
    const auto isDark = [&] { return lightness().value_or(255) < 60; };
    QVERIFY(waitUntil([&] { return isLight() && portal.isAsked(); }));
    portal.change(QString::fromLatin1(group), QString::fromLatin1(key), 1U);
    QVERIFY(waitUntil(isDark));
    portal.change(QString::fromLatin1(group), QString::fromLatin1(key), 2U);
    QVERIFY(waitUntil(isLight));
    QVERIFY(lightness() != 255);
    portal.change(QString::fromLatin1(group), QStringLiteral("contrast"), 1U);
    QVERIFY(waitUntil([&] { return lightness() == 255; }));
    portal.change(QString::fromLatin1(group), QString::fromLatin1(key), 1U);
    QVERIFY(waitUntil([&] { return lightness() == 0; }));
    QVERIFY(application.endsWell(SIGTERM));
}

void TestAppearance::highContrastFollowsThePortal_data()
{
    QTest::addColumn<QString>("itsGroup");
    QTest::addColumn<QString>("itsKey");
    QTest::addColumn<QVariant>("high");
    QTest::addColumn<QVariant>("usual");
    const auto row = [](const char *name, const char *itsGroup, const char *itsKey,
                        const QVariant &high, const QVariant &usual) {
        QTest::newRow(name) << QString::fromLatin1(itsGroup) << QString::fromLatin1(itsKey) << high
                            << usual;
    };
    row("all desktops", group, "contrast", 1U, 0U);
    row("all desktops, unknown value", group, "contrast", 1U, 7U);
    row("GNOME", "org.gnome.desktop.a11y.interface", "high-contrast", true, false);
    const char *gtk = "org.gnome.desktop.interface";
    row("GTK, light", gtk, "gtk-theme", QStringLiteral("HighContrast"), QStringLiteral("Adwaita"));
    row("GTK, dark", gtk, "gtk-theme", QStringLiteral("HighContrastInverse"), QString());
}

void TestAppearance::highContrastFollowsThePortal()
{
    QFETCH(QString, itsGroup);
    QFETCH(QString, itsKey);
    QFETCH(QVariant, high);
    QFETCH(QVariant, usual);
    Settings settings = schemeOf(1);
    settings[{itsGroup, itsKey}] = high;
    Portal portal(m_bus.connection(), settings);
    const Appearance appearance;
    QVERIFY(waitUntil([&] { return appearance.scheme() == Scheme{true, true}; }));
    QSignalSpy changes(&appearance, &Appearance::changed);
    portal.change(itsGroup, itsKey, usual);
    QVERIFY(waitUntil([&] { return appearance.scheme() == Scheme{true, false}; }));
    portal.change(QStringLiteral("org.example"), itsKey, high);
    portal.change(itsGroup, itsKey, high);
    QVERIFY(waitUntil([&] { return appearance.scheme() == Scheme{true, true}; }));
    QCOMPARE(changes.size(), 2);
}

void TestAppearance::startsWithReducedMotionAsThePortalSays_data()
{
    QTest::addColumn<QString>("itsGroup");
    QTest::addColumn<QString>("itsKey");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<bool>("expected");
    const auto row = [](const char *name, const char *itsGroup, const char *itsKey,
                        const QVariant &value, bool expected) {
        QTest::newRow(name) << QString::fromLatin1(itsGroup) << QString::fromLatin1(itsKey) << value
                            << expected;
    };
    const char *motion = "reduced-motion";
    row("less motion", group, motion, 1U, true);
    row("no preference", group, motion, 0U, false);
    row("unknown value", group, motion, 7U, false);
    const char *gnome = "org.gnome.desktop.interface";
    row("GNOME, no animations", gnome, "enable-animations", false, true);
    row("GNOME, animations", gnome, "enable-animations", true, false);
    const char *kde = "org.kde.kdeglobals.KDE";
    const char *factor = "AnimationDurationFactor";
    row("KDE, instantly", kde, factor, QStringLiteral("0"), true);
    row("KDE, instantly, with a fraction", kde, factor, QStringLiteral("0.0"), true);
    row("KDE, instantly, as a number", kde, factor, 0.0, true);
    row("KDE, half as long", kde, factor, QStringLiteral("0.5"), false);
    row("KDE, as usual", kde, factor, 1.0, false);
    row("KDE, not a number", kde, factor, QStringLiteral("slow"), false);
    row("KDE, empty", kde, factor, QString(), false);
    row("another group", "org.gnome.desktop.sound", "enable-animations", false, false);
}

void TestAppearance::startsWithReducedMotionAsThePortalSays()
{
    QFETCH(QString, itsGroup);
    QFETCH(QString, itsKey);
    QFETCH(QVariant, value);
    QFETCH(bool, expected);
    // The reply for the color scheme comes first, the others right after it.
    Settings settings = schemeOf(1);
    settings[{itsGroup, itsKey}] = value;
    Portal portal(m_bus.connection(), settings);
    const Appearance appearance;
    QVERIFY(waitUntil([&] { return appearance.isDark() && portal.isAsked(); }));
    QVERIFY(waitUntil([&] { return appearance.isStill() == expected; }));
    // The next signal comes after the replies.
    portal.change(QString::fromLatin1(group), QString::fromLatin1(key), 2U);
    QVERIFY(waitUntil([&] { return !appearance.isDark(); }));
    QCOMPARE(appearance.isStill(), expected);
}

void TestAppearance::reducedMotionFollowsThePortal_data()
{
    QTest::addColumn<QString>("itsGroup");
    QTest::addColumn<QString>("itsKey");
    QTest::addColumn<QVariant>("still");
    QTest::addColumn<QVariant>("moving");
    const auto row = [](const char *itsGroup, const char *itsKey, const QVariant &still,
                        const QVariant &moving) {
        QTest::newRow(itsGroup) << QString::fromLatin1(itsGroup) << QString::fromLatin1(itsKey)
                                << still << moving;
    };
    row(group, "reduced-motion", 1U, 0U);
    row("org.gnome.desktop.interface", "enable-animations", false, true);
    row("org.kde.kdeglobals.KDE", "AnimationDurationFactor", QStringLiteral("0"),
        QStringLiteral("1"));
}

void TestAppearance::reducedMotionFollowsThePortal()
{
    QFETCH(QString, itsGroup);
    QFETCH(QString, itsKey);
    QFETCH(QVariant, still);
    QFETCH(QVariant, moving);
    Portal portal(m_bus.connection(), schemeOf(2));
    const Appearance appearance;
    QVERIFY(waitUntil([&] { return appearance.isStated() && portal.isAsked(); }));
    QSignalSpy changes(&appearance, &Appearance::changed);
    QVERIFY(!appearance.isStill());
    portal.change(itsGroup, itsKey, still);
    QVERIFY(waitUntil([&] { return appearance.isStill(); }));
    portal.change(itsGroup, itsKey, still);
    portal.change(QStringLiteral("org.example"), itsKey, moving);
    portal.change(itsGroup, itsKey, moving);
    QVERIFY(waitUntil([&] { return !appearance.isStill(); }));
    QCOMPARE(changes.size(), 2);
    QVERIFY(!appearance.isDark());
}

void TestAppearance::animatesWithoutAPortal()
{
    Appearance appearance;
    appearance.paletteChanged();
    QVERIFY(!appearance.isStill());
}

TIDEWICK_TEST_PROGRAM
{
    enterPrivateLoopback();
    const TestHome home;
    SessionBus bus;
    drawOffscreen();
    const QApplication application(argc, argv);
    TestAppearance test(bus);
    return QTest::qExec(&test, argc, argv);
}
#include "tst_appearance.moc"
