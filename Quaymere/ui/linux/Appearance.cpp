// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/Appearance.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QGuiApplication>
#include <QPalette>

namespace tidewick {

namespace {

constexpr QLatin1String portal("org.freedesktop.portal.Desktop");
constexpr QLatin1String portalPath("/org/freedesktop/portal/desktop");
constexpr QLatin1String portalSettings("org.freedesktop.portal.Settings");
constexpr QLatin1String appearanceGroup("org.freedesktop.appearance");
constexpr QLatin1String schemeKey("color-scheme");

constexpr uint preferDark = 1;
constexpr uint preferLight = 2;

/// The portal's answer to "Read" is wrapped once more than its signal.
QVariant unwrapped(QVariant value)
{
    while (value.userType() == qMetaTypeId<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value;
}

} // namespace

Appearance::Appearance(QObject *parent) : QObject(parent)
{
    QDBusConnection::sessionBus().connect(portal, portalPath, portalSettings,
                                          QStringLiteral("SettingChanged"), this,
                                          SLOT(takeSetting(QString, QString, QDBusVariant)));
    decide();
    askPortal();
}

void Appearance::askPortal()
{
    QDBusMessage call =
        QDBusMessage::createMethodCall(portal, portalPath, portalSettings, QStringLiteral("Read"));
    call.setArguments({QString(appearanceGroup), QString(schemeKey)});
    auto *answer = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(call), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
        answer->deleteLater();
        const QDBusPendingReply<QDBusVariant> reply = *answer;
        if (!reply.isError())
            takeSetting(appearanceGroup, schemeKey, reply.value());
    });
}

void Appearance::takeSetting(const QString &group, const QString &key, const QDBusVariant &value)
{
    if (group != appearanceGroup || key != schemeKey)
        return;
    m_portalScheme = unwrapped(value.variant()).toUInt();
    decide();
}

void Appearance::decide()
{
    bool dark = QGuiApplication::palette().color(QPalette::Window).lightness() < 128;
    if (m_portalScheme == preferDark)
        dark = true;
    else if (m_portalScheme == preferLight)
        dark = false;
    if (std::exchange(m_dark, dark) != dark)
        emit changed();
}

} // namespace tidewick
