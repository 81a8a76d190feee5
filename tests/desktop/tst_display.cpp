// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "desktop/Display.h"
#include "support/Surroundings.h"
#include "support/TestFiles.h"

#include <QLocalServer>
#include <QTcpServer>

using namespace tidewick;

/// Tests which window systems count as usable, with a socket in place of a Wayland compositor.
class TestDisplay : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void none();
    void waylandWithAPlugin();
    void waylandLeavesX11Alone();
    void waylandWithoutAPlugin();
    void waylandWithoutACompositor();
    void platformOfTheEnvironment();

private:
    std::filesystem::path socket() const { return m_folder->path() / "wayland-0"; }
    std::filesystem::path plugins() const { return m_folder->path() / "platforms"; }
    void installPlugin() const { writeFile(plugins() / "libqwayland-generic.so", ""); }
    bool listen();

    std::unique_ptr<TemporaryFolder> m_folder;
    QLocalServer m_compositor;
};

void TestDisplay::init()
{
    m_compositor.close();
    m_folder = std::make_unique<TemporaryFolder>();
    std::filesystem::create_directories(plugins());
    for (const char *variable : {"DISPLAY", "QT_QPA_PLATFORM", "WAYLAND_SOCKET"})
        qunsetenv(variable);
    qputenv("WAYLAND_DISPLAY", QByteArray::fromStdString(socket().string()));
}

bool TestDisplay::listen()
{
    return m_compositor.listen(QString::fromStdString(socket().string()));
}

void TestDisplay::none()
{
    qunsetenv("WAYLAND_DISPLAY");
    installPlugin();
    QVERIFY(!tidewick::Display::isThere(plugins()));
}

void TestDisplay::waylandWithAPlugin()
{
    QVERIFY(listen());
    installPlugin();
    QVERIFY(tidewick::Display::isThere(plugins()));
}

/// Connecting would start Xwayland.
void TestDisplay::waylandLeavesX11Alone()
{
    constexpr quint16 firstPort = 6000; // of display 0 over TCP
    QTcpServer xServer;
    int display = 100;
    while (!xServer.listen(QHostAddress::LocalHost, quint16(firstPort + display)))
        ++display;
    qputenv("DISPLAY", "127.0.0.1:" + QByteArray::number(display));
    QVERIFY(listen());
    installPlugin();
    QVERIFY(tidewick::Display::isThere(plugins()));
    QVERIFY(!xServer.waitForNewConnection(0));
}

void TestDisplay::waylandWithoutAPlugin()
{
    QVERIFY(listen());
    QVERIFY(!tidewick::Display::isThere(plugins()));
    std::filesystem::remove_all(plugins());
    QVERIFY(!tidewick::Display::isThere(plugins()));
}

void TestDisplay::waylandWithoutACompositor()
{
    installPlugin();
    QVERIFY(!tidewick::Display::isThere(plugins()));
}

void TestDisplay::platformOfTheEnvironment()
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QVERIFY(tidewick::Display::isThere(plugins()));
}

TIDEWICK_TEST_MAIN(TestDisplay)
#include "tst_display.moc"
