// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "desktop/FileBrowser.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

namespace tidewick::FileBrowser {

QUrl url(const std::filesystem::path &path)
{
    const QByteArray bytes = QByteArray::fromStdString(path.string());
    return QUrl::fromEncoded("file://" + bytes.toPercentEncoding("/"), QUrl::StrictMode);
}

void reveal(const QDBusConnection &bus, const std::filesystem::path &path, QObject *context,
            const std::function<void()> &otherwise)
{
    // Qt never finishes a call on a bus that was not connected from the start.
    if (!bus.isConnected())
        return otherwise();
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.FileManager1"),
        QStringLiteral("/org/freedesktop/FileManager1"),
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("ShowItems"));
    const QString noStartupId;
    call.setArguments({QStringList(url(path).toString(QUrl::FullyEncoded)), noStartupId});
    auto *answer = new QDBusPendingCallWatcher(bus.asyncCall(call), context);
    QObject::connect(answer, &QDBusPendingCallWatcher::finished, context, [answer, otherwise] {
        answer->deleteLater();
        if (QDBusPendingReply<>(*answer).isError())
            otherwise();
    });
}

} // namespace tidewick::FileBrowser
