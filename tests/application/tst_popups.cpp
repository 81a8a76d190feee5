// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "application/Desktop.h"
#include "application/LaunchedApplication.h"
#include "application/TrayReader.h"
#include "application/XWindows.h"
#include "support/Surroundings.h"
#include "support/TestBundle.h"
#include "ui/Colors.h"

#include <QDBusVariant>

#include <csignal>

using namespace tidewick;

namespace {

const QString appearance = QStringLiteral("org.freedesktop.appearance");
const QString scheme = QStringLiteral("color-scheme");

/// The background of a popup.
QColor groundOf(const QImage &popup)
{
    return popup.isNull() ? QColor() : popup.pixelColor(popup.width() / 2, 3);
}

/// The contrast of each line of text with the background, from top to bottom.
QList<double> contrastOfLines(const QImage &popup)
{
    constexpr int border = 3;
    constexpr int separator = 2;
    const QColor ground = groundOf(popup);
    QList<double> lines;
    double most = 1;
    int height = 0;
    for (int y = border; y < popup.height() - border; ++y) {
        double inRow = 1;
        for (int x = border; x < popup.width() - border; ++x)
            inRow = std::max(inRow, contrast(popup.pixelColor(x, y), ground));
        if (inRow > 1.1) {
            ++height;
            most = std::max(most, inRow);
        } else {
            if (height > separator)
                lines.append(most);
            most = 1;
            height = 0;
        }
    }
    return lines;
}

} // namespace

/// A stand-in for the desktop's settings portal, which knows only the color scheme.
class SchemePortal final : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    SchemePortal(QDBusConnection bus, bool dark) : m_dark(dark)
    {
        bus.registerObject(QStringLiteral("/org/freedesktop/portal/desktop"), this,
                           QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals);
        bus.registerService(QStringLiteral("org.freedesktop.portal.Desktop"));
    }

    void set(bool dark)
    {
        m_dark = dark;
        emit SettingChanged(appearance, scheme, QDBusVariant(value()));
    }

signals:
    void SettingChanged(const QString &, const QString &, const QDBusVariant &);

public slots:
    QDBusVariant Read(const QString &group, const QString &key)
    {
        const bool isScheme = group == appearance && key == scheme;
        return QDBusVariant(
            QVariant::fromValue(QDBusVariant(isScheme ? QVariant(value()) : QVariant(QString()))));
    }

private:
    uint value() const { return m_dark ? 1 : 2; }

    bool m_dark;
};

/// Tests the popups of the running application as they appear on an X11 screen.
class TestPopups : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void clickOnANotifierItem_data();
    void clickOnANotifierItem();
    void clickWithoutAPortal();
    void clickOnAnEmbeddedIcon_data();
    void clickOnAnEmbeddedIcon();

private:
    void launch();
    /// Whether the menu appears, in dark or in light, with every line readable.
    bool isReadable(bool dark);

    const TestBundle m_bundle;
    std::unique_ptr<SessionBus> m_bus;
    std::unique_ptr<XServer> m_display;
    std::unique_ptr<SchemePortal> m_portal;
    std::unique_ptr<LaunchedApplication> m_application;
};

void TestPopups::init()
{
    m_bus = std::make_unique<SessionBus>();
    m_display = std::make_unique<XServer>();
}

void TestPopups::cleanup()
{
    m_application.reset();
    m_portal.reset();
    m_display.reset();
    m_bus.reset();
    std::filesystem::remove_all(applicationData());
}

void TestPopups::launch()
{
    m_application = std::make_unique<LaunchedApplication>(
        m_bundle, "speed=20 state=full", ProcessEnvironment{{"QT_QPA_PLATFORM", ""}});
}

bool TestPopups::isReadable(bool dark)
{
    const auto isInLook = [dark] {
        const QColor ground = groundOf(popupPicture());
        return ground.isValid() && (ground.lightness() < 128) == dark;
    };
    // Every row can be chosen or is a text, once the node is in sync.
    const auto isEveryLineReadable = [] {
        const QList<double> lines = contrastOfLines(popupPicture());
        return lines.size() >= 16 && *std::min_element(lines.begin(), lines.end()) >= 4.5;
    };
    if (waitUntil(isInLook) && waitUntil(isEveryLineReadable))
        return true;
    qWarning() << groundOf(popupPicture()) << contrastOfLines(popupPicture());
    return false;
}

void TestPopups::clickOnANotifierItem_data()
{
    QTest::addColumn<bool>("isComposited");
    QTest::addColumn<bool>("dark");
    QTest::newRow("dark") << false << true;
    QTest::newRow("light, with a compositing manager") << true << false;
}

/// Where transparent pixels would be black, the corners are square.
void TestPopups::clickOnANotifierItem()
{
    QFETCH(bool, isComposited);
    QFETCH(bool, dark);
    const DesktopPanel panel;
    std::optional<CompositingPlace> manager;
    if (isComposited)
        manager.emplace();
    QVERIFY(DesktopPanel::waitForHost(*m_bus));
    TrayReader reader(m_bus->connection());
    m_portal = std::make_unique<SchemePortal>(m_bus->connection(), dark);
    launch();
    QVERIFY(waitUntil(
        [&] { return reader.findItem() && reader.menu().value(0).text == QLatin1String("Full"); }));
    QVERIFY(reader.activate());
    QVERIFY(isReadable(dark));
    m_portal->set(!dark);
    QVERIFY(isReadable(!dark));
    const QImage popup = popupPicture();
    for (const int x : {0, popup.width() - 1}) {
        for (const int y : {0, popup.height() - 1}) {
            if (isComposited)
                QCOMPARE(popup.pixelColor(x, y).alpha(), 0);
            else
                QVERIFY(distance(popup.pixelColor(x, y), popup.pixelColor(popup.width() / 2, 0))
                        < 12);
        }
    }
    QVERIFY(m_application->endsWell(SIGTERM));
}

/// In the colours of Qt's own palette.
void TestPopups::clickWithoutAPortal()
{
    XEmbedSlot slot;
    launch();
    QVERIFY(waitUntil([&] { return slot.hasIcon(); }));
    slot.click(1);
    QVERIFY(isReadable(false));
    QVERIFY(m_application->endsWell(SIGTERM));
}

void TestPopups::clickOnAnEmbeddedIcon_data()
{
    QTest::addColumn<int>("button");
    QTest::newRow("primary") << 1;
    QTest::newRow("secondary") << 3;
}

/// Both buttons open the same menu.
void TestPopups::clickOnAnEmbeddedIcon()
{
    QFETCH(int, button);
    XEmbedSlot slot;
    m_portal = std::make_unique<SchemePortal>(m_bus->connection(), true);
    launch();
    QVERIFY(waitUntil([&] { return slot.hasIcon(); }));
    QVERIFY(popupPicture().isNull());
    slot.click(button);
    QVERIFY(isReadable(true));
    m_portal->set(false);
    QVERIFY(isReadable(false));
    QVERIFY(m_application->endsWell(SIGTERM));
}

TIDEWICK_LOOPBACK_TEST_MAIN(TestPopups)
#include "tst_popups.moc"
