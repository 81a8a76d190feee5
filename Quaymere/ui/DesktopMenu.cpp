// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/DesktopMenu.h"

#include "ui/dialogs/Alerts.h"

#include <QClipboard>
#include <QGuiApplication>

namespace tidewick {

MenuHost desktopMenuHost(Windows &windows, Alerts &alerts, Windows::OpenUrl openUrl)
{
    return {
        .openUrl = std::move(openUrl),
        .openWindow = [&windows](const QString &identifier) { windows.open(identifier); },
        .showError = [&alerts](const QString &text) { alerts.showError(text); },
        .bringQuestionForward = [&alerts] { alerts.bringQuestionForward(); },
        .copy = [](const QString &text) { QGuiApplication::clipboard()->setText(text); },
    };
}

} // namespace tidewick
