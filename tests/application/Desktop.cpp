// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "application/Desktop.h"

#include <QDBusMessage>
#include <QDBusVariant>
#include <QStandardPaths>

#include <unistd.h>

namespace tidewick {

namespace {

constexpr const char *panelConfiguration = R"(<?xml version="1.0" encoding="UTF-8"?>
<channel name="xfce4-panel" version="1.0">
  <property name="configver" type="int" value="2"/>
  <property name="panels" type="array">
    <value type="int" value="1"/>
    <property name="panel-1" type="empty">
      <property name="position" type="string" value="p=6;x=0;y=0"/>
      <property name="length" type="uint" value="100"/>
      <property name="position-locked" type="bool" value="true"/>
      <property name="size" type="uint" value="28"/>
      <property name="plugin-ids" type="array">
        <value type="int" value="1"/>
      </property>
    </property>
  </property>
  <property name="plugins" type="empty">
    <property name="plugin-1" type="string" value="systray"/>
  </property>
</channel>
)";

/// The folder of services that the session bus starts on demand. It contains only what a test puts
/// there; with its usual configuration the bus would start the machine's services as well.
std::filesystem::path services()
{
    return std::filesystem::path(qgetenv("XDG_DATA_HOME").toStdString()) / "dbus-1/services";
}

constexpr const char *busConfiguration = R"(<busconfig>
  <type>session</type>
  <listen>unix:path=@BUS@</listen>
  <auth>EXTERNAL</auth>
  <servicedir>@SERVICES@</servicedir>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
)";

} // namespace

SessionBus::SessionBus()
{
    const std::string runtime = m_runtime.path().string();
    qputenv("XDG_RUNTIME_DIR", QByteArray::fromStdString(runtime));
    std::filesystem::create_directories(services());
    const std::filesystem::path configuration = m_runtime.path() / "bus.conf";
    writeFile(configuration,
              QByteArray(busConfiguration)
                  .replace("@BUS@", QByteArray::fromStdString(runtime + "/bus"))
                  .replace("@SERVICES@", QByteArray::fromStdString(services().string())));
    m_daemon = std::make_unique<Beside>(
        "dbus-daemon", std::vector<std::string>{"--config-file=" + configuration.string(),
                                                "--nofork", "--print-address"});
    m_address = m_daemon->readyLine();
    qputenv("DBUS_SESSION_BUS_ADDRESS", m_address);
}

SessionBus::~SessionBus()
{
    QDBusConnection::disconnectFromBus(QString::fromLatin1(m_address));
    qunsetenv("DBUS_SESSION_BUS_ADDRESS");
    qunsetenv("XDG_RUNTIME_DIR");
}

QDBusConnection SessionBus::connection() const
{
    const QString address = QString::fromLatin1(m_address);
    return QDBusConnection::connectToBus(address, address);
}

namespace {

/// A display number unique to this process. Servers on separate loopback networks would all find
/// the first number free and overwrite each other's files for that number.
std::string displayNumber()
{
    return std::to_string(::getpid());
}

} // namespace

XServer::XServer()
    : m_server("Xvfb", {':' + displayNumber(), "-displayfd", "1", "-screen", "0", "1280x800x24",
                        "-nolisten", "tcp", "-noreset"})
{
    const QByteArray number = QByteArray::fromStdString(displayNumber());
    // Its keymap compiler may print messages first.
    m_server.readyLine([&](const QByteArray &line) { return line == number; });
    qputenv("DISPLAY", ':' + number);
}

XServer::~XServer()
{
    qunsetenv("DISPLAY");
}

namespace {

/// The panel reads its configuration through a service started by the bus. The service, the plugins
/// and the icons are those of the machine.
ChildSpec configuredPanel()
{
    const std::filesystem::path machine = "/usr/share";
    const std::filesystem::path service = "org.xfce.Xfconf.service";
    std::filesystem::create_directories(services());
    if (!std::filesystem::exists(services() / service))
        std::filesystem::create_symlink(machine / "dbus-1/services" / service,
                                        services() / service);
    const std::filesystem::path folder =
        std::filesystem::path(qgetenv("XDG_CONFIG_HOME").toStdString())
        / "xfce4/xfconf/xfce-perchannel-xml";
    std::filesystem::create_directories(folder);
    writeFile(folder / "xfce4-panel.xml", panelConfiguration);
    ChildSpec spec;
    spec.executable = QStandardPaths::findExecutable(QStringLiteral("xfce4-panel")).toStdString();
    spec.arguments = {"--disable-wm-check"};
    spec.environment["XDG_DATA_DIRS"] = machine;
    return spec;
}

} // namespace

DesktopPanel::DesktopPanel() : m_panel(configuredPanel()) {}

bool DesktopPanel::waitForHost(const SessionBus &bus)
{
    QDBusMessage ask = QDBusMessage::createMethodCall(
        QStringLiteral("org.kde.StatusNotifierWatcher"), QStringLiteral("/StatusNotifierWatcher"),
        QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    ask.setArguments({QStringLiteral("org.kde.StatusNotifierWatcher"),
                      QStringLiteral("IsStatusNotifierHostRegistered")});
    ask.setAutoStartService(false);
    const QDBusConnection connection = bus.connection();
    return waitUntil([&] {
        const QDBusMessage answer = connection.call(ask);
        return answer.type() == QDBusMessage::ReplyMessage
               && answer.arguments().constFirst().value<QDBusVariant>().variant().toBool();
    });
}

} // namespace tidewick
