// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "support/RpcCall.h"

#include <QElapsedTimer>
#include <QtTest>

namespace tidewick {

QCoro::Task<> RpcCall::run(NodeRPC &rpc, QString method)
{
    QElapsedTimer timer;
    timer.start();
    m_result = co_await rpc.call(method);
    m_elapsed = std::chrono::milliseconds(timer.elapsed());
    m_finished = true;
}

std::optional<QJsonObject> rpcResult(quint16 port, const QString &method)
{
    NodeRPC rpc(port);
    const RpcCall call(rpc, method);
    [&] {
        QVERIFY(QTest::qWaitFor([&] { return call.finished(); },
                                static_cast<int>(RpcCall::patience.count())));
    }();
    return call.result();
}

} // namespace tidewick
