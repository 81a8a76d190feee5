// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "application/TrayReader.h"

#include "application/Desktop.h"

#include <QDBusArgument>
#include <QDBusPendingCall>
#include <QDBusVariant>
#include <QtEndian>

namespace tidewick {

namespace {

constexpr QLatin1String watcher("org.kde.StatusNotifierWatcher");
constexpr QLatin1String itemInterface("org.kde.StatusNotifierItem");
constexpr QLatin1String itemPath("/StatusNotifierItem");
constexpr QLatin1String menuInterface("com.canonical.dbusmenu");
constexpr QLatin1String menuPath("/MenuBar");
constexpr QLatin1String propertiesInterface("org.freedesktop.DBus.Properties");

/// The text of a label as drawn: two underscores stand for one, and a single one marks the next
/// character as the mnemonic and is not drawn.
QString drawn(const QString &label)
{
    QString text;
    for (qsizetype at = 0; at < label.size(); ++at) {
        if (label[at] == u'_' && ++at == label.size())
            break;
        text += label[at];
    }
    return text;
}

/// Reads each image's width, height and pixels, the latter as ARGB in network byte order.
QList<QImage> readImages(const QDBusArgument &argument)
{
    QList<QImage> images;
    argument.beginArray();
    while (!argument.atEnd()) {
        int width = 0;
        int height = 0;
        QByteArray pixels;
        argument.beginStructure();
        argument >> width >> height >> pixels;
        argument.endStructure();
        QImage image(width, height, QImage::Format_ARGB32);
        if (pixels.size() != image.sizeInBytes())
            return {};
        qFromBigEndian<quint32>(pixels.constData(), qsizetype{width} * height, image.bits());
        images.append(image);
    }
    argument.endArray();
    return images;
}

MenuEntry readEntry(const QDBusArgument &layout, QList<MenuEntry> &children)
{
    MenuEntry entry;
    QVariantMap properties;
    layout.beginStructure();
    layout >> entry.id >> properties;
    layout.beginArray();
    while (!layout.atEnd()) {
        QDBusVariant child;
        layout >> child;
        QList<MenuEntry> none;
        children.append(readEntry(child.variant().value<QDBusArgument>(), none));
    }
    layout.endArray();
    layout.endStructure();

    entry.text = drawn(properties.value(QStringLiteral("label")).toString());
    entry.separator = properties.value(QStringLiteral("type")) == QLatin1String("separator");
    entry.enabled = properties.value(QStringLiteral("enabled"), true).toBool();
    if (!properties.value(QStringLiteral("visible"), true).toBool())
        entry.id = -1;
    return entry;
}

} // namespace

TrayReader::TrayReader(const QDBusConnection &bus) : m_bus(bus)
{
    m_bus.connect(QString(), menuPath, menuInterface, QStringLiteral("LayoutUpdated"), this,
                  SLOT(countLayoutUpdate()));
    m_bus.connect(QString(), menuPath, menuInterface, QStringLiteral("ItemsPropertiesUpdated"),
                  this, SLOT(countPropertyUpdate()));
}

QDBusMessage TrayReader::ask(const QString &service, const QString &path, const QString &interface,
                             const QString &method, const QVariantList &arguments)
{
    QDBusMessage call = QDBusMessage::createMethodCall(service, path, interface, method);
    call.setArguments(arguments);
    call.setAutoStartService(false);
    const QDBusPendingCall answer = m_bus.asyncCall(call);
    return waitUntil([&] { return answer.isFinished(); }) ? answer.reply() : QDBusMessage();
}

bool TrayReader::findItem()
{
    const QDBusMessage answer = ask(
        watcher, QStringLiteral("/StatusNotifierWatcher"), propertiesInterface,
        QStringLiteral("Get"), {QString(watcher), QStringLiteral("RegisteredStatusNotifierItems")});
    if (answer.type() != QDBusMessage::ReplyMessage)
        return false;
    const QStringList items =
        answer.arguments().constFirst().value<QDBusVariant>().variant().toStringList();
    if (items.size() != 1)
        return false;
    // The service's name, possibly followed by the object path.
    m_service = items.constFirst().section(u'/', 0, 0);
    return true;
}

QVariant TrayReader::property(const char *name)
{
    const QDBusMessage answer = ask(m_service, itemPath, propertiesInterface, QStringLiteral("Get"),
                                    {QString(itemInterface), QString::fromLatin1(name)});
    if (answer.type() != QDBusMessage::ReplyMessage)
        return {};
    return answer.arguments().constFirst().value<QDBusVariant>().variant();
}

QString TrayReader::toolTip()
{
    QString icon;
    QString title;
    const auto argument = property("ToolTip").value<QDBusArgument>();
    argument.beginStructure();
    argument >> icon;
    readImages(argument);
    argument >> title;
    return title;
}

QList<QImage> TrayReader::icon()
{
    return readImages(property("IconPixmap").value<QDBusArgument>());
}

QList<MenuEntry> TrayReader::menu()
{
    const QDBusMessage answer = ask(m_service, menuPath, menuInterface, QStringLiteral("GetLayout"),
                                    {0, -1, QStringList()});
    if (answer.type() != QDBusMessage::ReplyMessage)
        return {};
    QList<MenuEntry> entries;
    readEntry(answer.arguments().at(1).value<QDBusArgument>(), entries);
    entries.removeIf([](const MenuEntry &entry) { return entry.id < 0; });
    return entries;
}

bool TrayReader::click(const QString &text)
{
    for (const MenuEntry &entry : menu()) {
        if (entry.text == text) {
            const QDBusMessage answer = ask(
                m_service, menuPath, menuInterface, QStringLiteral("Event"),
                {entry.id, QStringLiteral("clicked"), QVariant::fromValue(QDBusVariant(0)), 0U});
            return answer.type() == QDBusMessage::ReplyMessage;
        }
    }
    return false;
}

bool TrayReader::activate()
{
    const QDBusMessage answer =
        ask(m_service, itemPath, itemInterface, QStringLiteral("Activate"), {0, 0});
    return answer.type() == QDBusMessage::ReplyMessage;
}

QList<MenuEntry> entriesOf(const QList<MenuRow> &rows)
{
    QList<MenuEntry> entries;
    for (const MenuRow &row : rows) {
        const bool separator = row.kind == MenuRow::Kind::Separator;
        const bool enabled = separator || (row.kind == MenuRow::Kind::Command && row.enabled);
        entries.append({0, row.text, separator, enabled});
    }
    return entries;
}

QList<MenuEntry> withoutIds(QList<MenuEntry> entries)
{
    for (MenuEntry &entry : entries)
        entry.id = 0;
    return entries;
}

} // namespace tidewick
