// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

// The smallest possible tray program that polls a node: an icon, a menu and a tooltip.

#include <QApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMenu>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QPainter>
#include <QSystemTrayIcon>
#include <QTimer>

namespace {

QIcon plainIcon()
{
    QPixmap pixmap(22, 22);
    pixmap.fill(Qt::transparent);
    QPainter(&pixmap).drawEllipse(4, 4, 14, 14);
    return pixmap;
}

} // namespace

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    QMenu menu;
    menu.addAction(QStringLiteral("Quit"), &application, &QCoreApplication::quit);
    QSystemTrayIcon tray(plainIcon());
    tray.setContextMenu(&menu);
    tray.show();

    QNetworkAccessManager network;
    const auto ask = [&](const char *method) {
        QNetworkRequest request(QUrl(QStringLiteral("http://127.0.0.1:15005/")));
        request.setHeader(QNetworkRequest::ContentTypeHeader, QStringLiteral("application/json"));
        QNetworkReply *reply =
            network.post(request, QByteArray("{\"method\":\"") + method + R"(","params":[{}]})");
        QObject::connect(reply, &QNetworkReply::finished, &tray, [reply, &tray] {
            const QJsonObject answer = QJsonDocument::fromJson(reply->readAll()).object();
            const QJsonObject info = answer[u"result"].toObject()[u"info"].toObject();
            if (!info.isEmpty())
                tray.setToolTip(info[u"server_state"].toString());
            reply->deleteLater();
        });
    };
    QTimer timer;
    int cycle = 0;
    QObject::connect(&timer, &QTimer::timeout, &tray, [&] {
        ask("server_info");
        if (cycle++ % 5 == 0)
            ask("get_counts");
    });
    timer.start(2000);
    return QApplication::exec();
}
