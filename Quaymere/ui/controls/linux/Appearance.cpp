// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/controls/Appearance.h"

#include "desktop/BusSignal.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QGuiApplication>
#include <QPalette>

#include <algorithm>
#include <array>

namespace tidewick {

namespace {

constexpr QLatin1String portal("org.freedesktop.portal.Desktop");
constexpr QLatin1String portalPath("/org/freedesktop/portal/desktop");
constexpr QLatin1String portalSettings("org.freedesktop.portal.Settings");

/// Dark or light, for all desktops: 0 no preference, 1 dark, 2 light.
constexpr QLatin1String schemeKey("color-scheme");
constexpr uint preferDark = 1;
constexpr uint preferLight = 2;

/// Less motion. The keys are the one for all desktops (1 requests it), GNOME's (false requests it)
/// and KDE's (a factor; 0 requests it).
constexpr QLatin1String motionKey("reduced-motion");
constexpr QLatin1String gnomeAnimationsKey("enable-animations");
constexpr QLatin1String kdeDurationKey("AnimationDurationFactor");

/// High contrast. The keys are the one for all desktops (1 requests it), GNOME's, and the theme
/// that desktops with GTK select for it, which has a light and a dark form.
constexpr QLatin1String contrastKey("contrast");
constexpr QLatin1String gnomeContrastKey("high-contrast");
constexpr QLatin1String gtkThemeKey("gtk-theme");
constexpr QLatin1String gtkContrastThemes("HighContrast");

struct Setting
{
    QLatin1String group;
    QLatin1String key;
};

constexpr std::array<Setting, 7> settings{{
    {QLatin1String("org.freedesktop.appearance"), schemeKey},
    {QLatin1String("org.freedesktop.appearance"), motionKey},
    {QLatin1String("org.gnome.desktop.interface"), gnomeAnimationsKey},
    {QLatin1String("org.kde.kdeglobals.KDE"), kdeDurationKey},
    {QLatin1String("org.freedesktop.appearance"), contrastKey},
    {QLatin1String("org.gnome.desktop.a11y.interface"), gnomeContrastKey},
    {QLatin1String("org.gnome.desktop.interface"), gtkThemeKey},
}};

/// The reply to "Read" has one more layer of variants around the value than the signal.
QVariant unwrapped(QVariant value)
{
    while (value.userType() == qMetaTypeId<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value;
}

} // namespace

Appearance::Appearance(QObject *parent) : QObject(parent)
{
    const BusSignal settingChanged{portal, portalPath, portalSettings,
                                   QStringLiteral("SettingChanged")};
    settingChanged.connect(QDBusConnection::sessionBus(), this,
                           SLOT(takeSetting(QString, QString, QDBusVariant)));
    decide();
    for (const Setting &setting : settings)
        ask(setting.group, setting.key);
}

void Appearance::ask(const QString &group, const QString &key)
{
    QDBusMessage call =
        QDBusMessage::createMethodCall(portal, portalPath, portalSettings, QStringLiteral("Read"));
    call.setArguments({group, key});
    auto *answer = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(call), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer, group, key] {
        answer->deleteLater();
        const QDBusPendingReply<QDBusVariant> reply = *answer;
        if (!reply.isError())
            takeSetting(group, key, reply.value());
    });
}

void Appearance::takeSetting(const QString &group, const QString &key, const QDBusVariant &value)
{
    const bool counts = std::any_of(settings.begin(), settings.end(), [&](const Setting &setting) {
        return group == setting.group && key == setting.key;
    });
    if (!counts)
        return;
    m_settings[key] = unwrapped(value.variant());
    decide();
}

void Appearance::decide()
{
    const uint scheme = m_settings.value(schemeKey).toUInt();
    const bool stated = scheme == preferDark || scheme == preferLight;
    const QColor ground = QGuiApplication::palette().color(QPalette::Window);
    Scheme wanted;
    wanted.dark = stated ? scheme == preferDark : ground.lightness() < 128;
    wanted.highContrast = m_settings.value(contrastKey).toUInt() == 1
                          || m_settings.value(gnomeContrastKey).toBool()
                          || m_settings.value(gtkThemeKey).toString().startsWith(gtkContrastThemes);
    bool isNumber = false;
    const double duration = m_settings.value(kdeDurationKey).toDouble(&isNumber);
    const bool still = m_settings.value(motionKey).toUInt() == 1
                       || !m_settings.value(gnomeAnimationsKey, true).toBool()
                       || (isNumber && duration == 0);

    const bool same = wanted == m_scheme && stated == m_stated && still == m_still;
    m_scheme = wanted;
    m_stated = stated;
    m_still = still;
    if (!same)
        emit changed();
}

} // namespace tidewick
