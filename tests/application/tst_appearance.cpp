// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "application/Desktop.h"
#include "support/Surroundings.h"
#include "ui/Appearance.h"

#include <QApplication>
#include <QDBusContext>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QPalette>
#include <QSignalSpy>

using namespace tidewick;

namespace {

constexpr const char *group = "org.freedesktop.appearance";
constexpr const char *key = "color-scheme";

} // namespace

/// The desktop's settings portal, with the one setting that counts here.
class Portal final : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    Portal(const QDBusConnection &bus, uint scheme) : m_bus(bus), m_scheme(scheme)
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

    bool isAsked() const { return m_isAsked; }

    void change(const QString &itsGroup, const QString &itsKey, const QVariant &value)
    {
        emit SettingChanged(itsGroup, itsKey, QDBusVariant(value));
    }

signals:
    void SettingChanged(const QString &, const QString &, const QDBusVariant &);

public slots:
    QDBusVariant Read(const QString &itsGroup, const QString &itsKey)
    {
        m_isAsked = true;
        if (itsGroup != QLatin1String(group) || itsKey != QLatin1String(key))
            sendErrorReply(QDBusError::InvalidArgs);
        return QDBusVariant(QVariant::fromValue(QDBusVariant(m_scheme)));
    }

private:
    QDBusConnection m_bus;
    uint m_scheme;
    bool m_isAsked = false;
};

/// Light or dark, as the desktop says.
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
    QTest::newRow("a value to come") << 7U << false << false;
}

void TestAppearance::startsAsThePortalSays()
{
    QFETCH(uint, scheme);
    QFETCH(bool, darkPalette);
    QFETCH(bool, expected);
    QApplication::setPalette(QPalette(darkPalette ? Qt::black : Qt::white));
    Portal portal(m_bus.connection(), scheme);
    const Appearance appearance;
    QVERIFY(waitUntil([&] { return appearance.isDark() == expected && portal.isAsked(); }));
}

void TestAppearance::followsThePortal()
{
    Portal portal(m_bus.connection(), 2);
    const Appearance appearance;
    QSignalSpy changes(&appearance, &Appearance::changed);
    QVERIFY(
        waitUntil([&] { return portal.isAsked(); })); // what it says next comes after the answer
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

int main(int argc, char *argv[])
{
    const TestHome home;
    SessionBus bus;
    drawOffscreen();
    const QApplication application(argc, argv);
    TestAppearance test(bus);
    return QTest::qExec(&test, argc, argv);
}
#include "tst_appearance.moc"
