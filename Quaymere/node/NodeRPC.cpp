// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "node/NodeRPC.h"

#include "platform/JsonRead.h"
#include "platform/Task.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QNetworkProxy>
#include <QNetworkReply>
#include <QPointer>
#include <QTimer>

#include <chrono>

namespace tidewick {

namespace {

using namespace std::chrono_literals;

constexpr std::chrono::milliseconds idleLimit = 3s;
constexpr std::chrono::milliseconds totalLimit = 5s;
constexpr qint64 readBufferSize = qint64{256} * 1024;

QNetworkRequest requestTo(quint16 port)
{
    QNetworkRequest request(QUrl(QStringLiteral("http://127.0.0.1:%1/").arg(port)));
    request.setHeader(QNetworkRequest::ContentTypeHeader, QStringLiteral("application/json"));
    // Asking for it plain keeps a small compressed answer from becoming a large one.
    request.setRawHeader("Accept-Encoding", "identity");
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                         QNetworkRequest::ManualRedirectPolicy);
    request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::AuthenticationReuseAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CacheLoadControlAttribute,
                         QNetworkRequest::AlwaysNetwork);
    request.setAttribute(QNetworkRequest::CacheSaveControlAttribute, false);
    request.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
    return request;
}

QByteArray envelope(const QString &method)
{
    const QJsonObject object{{QStringLiteral("method"), method},
                             {QStringLiteral("params"), QJsonArray{QJsonObject()}}};
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

/// Whether the whole body arrived. HTTP's own errors (4xx, 5xx) count: their bodies are answers,
/// too.
bool isComplete(QNetworkReply::NetworkError error)
{
    switch (error) {
    case QNetworkReply::NoError:
    case QNetworkReply::ContentAccessDenied:
    case QNetworkReply::ContentOperationNotPermittedError:
    case QNetworkReply::ContentNotFoundError:
    case QNetworkReply::AuthenticationRequiredError:
    case QNetworkReply::ProxyAuthenticationRequiredError:
    case QNetworkReply::ContentConflictError:
    case QNetworkReply::ContentGoneError:
    case QNetworkReply::UnknownContentError:
    case QNetworkReply::ProtocolInvalidOperationError:
    case QNetworkReply::InternalServerError:
    case QNetworkReply::OperationNotImplementedError:
    case QNetworkReply::ServiceUnavailableError:
    case QNetworkReply::UnknownServerError:
        return true;
    default:
        return false;
    }
}

/// One question under way: gathers the body and ends it on whichever comes first of the answer, the
/// limits, and the session's end. Owned by the coroutine that asks.
class Exchange
{
public:
    explicit Exchange(QNetworkReply *reply) : m_reply(reply)
    {
        QObject::connect(reply, &QNetworkReply::metaDataChanged, reply, [this] { checkLength(); });
        QObject::connect(reply, &QNetworkReply::readyRead, reply, [this] { takeBytes(); });
        QObject::connect(reply, &QNetworkReply::finished, reply, [this] { finish(); });
        // The session deletes its replies with it, without a word from them.
        QObject::connect(reply, &QObject::destroyed, &m_context, [this] { m_body.resolve({}); });

        for (QTimer *timer : {&m_idle, &m_total}) {
            timer->setSingleShot(true);
            timer->setTimerType(Qt::PreciseTimer);
            QObject::connect(timer, &QTimer::timeout, reply, &QNetworkReply::abort);
        }
        m_idle.start(idleLimit);
        m_total.start(totalLimit);
    }
    Exchange(const Exchange &) = delete;
    Exchange &operator=(const Exchange &) = delete;
    ~Exchange()
    {
        if (m_reply)
            m_reply->disconnect();
    }

    /// Resolved with the whole body, or with nothing.
    OneShot<std::optional<QByteArray>> &body() { return m_body; }

private:
    void checkLength()
    {
        m_idle.start();
        const QVariant length = m_reply->header(QNetworkRequest::ContentLengthHeader);
        if (length.toLongLong() > NodeRPC::largestAnswer)
            m_reply->abort();
    }

    void takeBytes()
    {
        m_idle.start();
        m_bytes += m_reply->readAll();
        if (m_bytes.size() > NodeRPC::largestAnswer)
            m_reply->abort();
    }

    void finish()
    {
        const bool complete = isComplete(m_reply->error());
        if (complete)
            m_bytes += m_reply->readAll();
        m_reply->deleteLater();
        m_body.resolve(complete ? std::optional(std::move(m_bytes)) : std::nullopt);
    }

    QObject m_context;
    QPointer<QNetworkReply> m_reply;
    QTimer m_idle;
    QTimer m_total;
    QByteArray m_bytes;
    OneShot<std::optional<QByteArray>> m_body;
};

} // namespace

NodeRPC::NodeRPC(quint16 port) : m_port(port) {}

NodeRPC::~NodeRPC() = default;

std::optional<QJsonObject> NodeRPC::resultOf(const QByteArray &body)
{
    const auto answer = JsonRead::parseObject(body);
    return answer ? JsonRead::object((*answer)[u"result"]) : std::nullopt;
}

QCoro::Task<std::optional<QJsonObject>> NodeRPC::call(QString method)
{
    if (!m_session) {
        m_session = std::make_unique<QNetworkAccessManager>();
        m_session->setProxy(QNetworkProxy::NoProxy);
    }
    QNetworkReply *reply = m_session->post(requestTo(m_port), envelope(method));
    // So that no more of a large answer piles up behind what has been looked at. Before the request
    // is under way, which the session has queued, the limit would be lost.
    QMetaObject::invokeMethod(
        reply, [reply] { reply->setReadBufferSize(readBufferSize); }, Qt::QueuedConnection);

    Exchange exchange(reply);
    // No member from here on: the session may be gone when the answer is in.
    const std::optional<QByteArray> body = co_await exchange.body();
    if (!body)
        co_return std::nullopt;
    co_return resultOf(*body);
}

} // namespace tidewick
