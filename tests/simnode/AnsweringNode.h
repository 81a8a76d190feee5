// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "RawClient.h"
#include "SimulatedNode.h"
#include "platform/json/JsonRead.h"
#include "platform/process/ProcessMemory.h"

namespace tidewick {

/// Whether this is the body of a normal answer to server_info.
inline bool isUsual(const QByteArray &body)
{
    const auto answer = JsonRead::parseObject(body);
    return answer && (*answer)[u"result"][u"info"][u"uptime"].isDouble();
}

/// A running node that answers as its scenario says.
class AnsweringNode : public SimulatedNode
{
public:
    explicit AnsweringNode(const QByteArray &scenario, quint16 number = 0) : SimulatedNode(number)
    {
        start("start-delay=0 stop-delay=0 redirect-port=4711 " + scenario);
        if (!waitUntilOpen())
            qFatal("The node did not open its port");
    }

    /// Asks the node with a new client and returns the response.
    HttpAnswer ask(const QByteArray &method = "server_info") const
    {
        RawClient client(rpcPort());
        client.call(method);
        return client.readAnswer();
    }

    /// The peak memory use of the node in bytes, or -1 if it is unknown.
    qint64 peakMemory() const
    {
        const auto memory = ProcessMemory::of(id());
        return memory ? memory->peakFootprint : -1;
    }
};

} // namespace tidewick
