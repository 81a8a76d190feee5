// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "simnode/Reply.h"

namespace tidewick::sim {

namespace {

QJsonObject errorMembers(const RpcError &error, const QJsonObject &request)
{
    return {{QStringLiteral("error"), QString::fromLatin1(error.name)},
            {QStringLiteral("error_code"), error.code},
            {QStringLiteral("error_message"), QString::fromLatin1(error.message)},
            {QStringLiteral("request"), request},
            {QStringLiteral("status"), QStringLiteral("error")}};
}

} // namespace

QJsonObject httpEnvelope(const Reply &reply, const QString &method, const QJsonObject &parameters)
{
    QJsonObject result;
    if (const auto *error = std::get_if<RpcError>(&reply)) {
        QJsonObject request = parameters;
        request[u"command"] = method;
        result = errorMembers(*error, request);
    } else {
        result = std::get<QJsonObject>(reply);
        result[u"status"] = QStringLiteral("success");
    }
    return {{QStringLiteral("result"), result}};
}

QJsonObject webSocketEnvelope(const Reply &reply, const QJsonObject &request)
{
    QJsonObject answer;
    if (const auto *error = std::get_if<RpcError>(&reply)) {
        answer = errorMembers(*error, request);
    } else {
        answer[u"result"] = std::get<QJsonObject>(reply);
        answer[u"status"] = QStringLiteral("success");
    }
    answer[u"type"] = QStringLiteral("response");
    if (request.contains(u"id"))
        answer[u"id"] = request[u"id"];
    return answer;
}

} // namespace tidewick::sim
