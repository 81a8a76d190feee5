// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/DesktopMenu.h"

#include "desktop/WaylandClipboard.h"
#include "ui/dialogs/Alerts.h"
#include "ui/panel/NodePanel.h"

#include <QApplication>
#include <QClipboard>

namespace tidewick {

namespace {

/// Elsewhere than on Wayland, any program may set the clipboard. There, a program may after an
/// action in a window of its own.
bool maySetClipboard()
{
    return !QGuiApplication::platformName().startsWith(QLatin1String("wayland"))
           || qobject_cast<NodePanel *>(QApplication::activeWindow());
}

} // namespace

MenuHost desktopMenuHost(Windows &windows, Alerts &alerts, Windows::OpenUrl openUrl)
{
    const auto copy = [&windows, &alerts](const QString &text) {
        if (maySetClipboard())
            return QGuiApplication::clipboard()->setText(text);
        WaylandClipboard::copy(text, &windows, [&alerts, text](bool copied) {
            if (!copied)
                alerts.offerCopy(QStringLiteral("server_info"), text);
        });
    };
    return {
        .openUrl = std::move(openUrl),
        .openWindow = [&windows](const QString &identifier) { windows.open(identifier); },
        .showError = [&alerts](const QString &text,
                               const QString &advice) { alerts.showError(text, advice); },
        .bringQuestionForward = [&alerts] { alerts.bringQuestionForward(); },
        .copy = copy,
    };
}

} // namespace tidewick
