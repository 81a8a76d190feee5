// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

// The cost of one poll beyond parsing its answer: the storage line and the status.

#include "bench/Measure.h"
#include "node/ServerInfo.h"
#include "node/StorageStatus.h"
#include "platform/files/Files.h"
#include "platform/json/JsonRead.h"

#include <QTemporaryDir>

using namespace tidewick;
using namespace tidewick::bench;

namespace {

constexpr int times = 10'000;

/// The time of one call of each.
Pair perCall(const std::function<void()> &work, const QByteArray &json)
{
    const auto repeated = [](const std::function<void()> &once) {
        return [once] {
            for (int i = 0; i < times; ++i)
                once();
        };
    };
    Pair pair = measure(15, repeated(work), repeated([&] { JsonRead::parseObject(json); }));
    pair.first /= times;
    pair.second /= times;
    return pair;
}

void describe(const char *what, const QByteArray &json, StorageStatus &status)
{
    const QJsonObject object = *JsonRead::parseObject(json);
    const WallClock::time_point now = WallClock::now();
    print(what, perCall([&] { status.describe(object, now); }, json), "< 20 us");
}

} // namespace

int main()
{
    const QTemporaryDir folder;
    StorageStatus status(Defaults((folder.path() + QStringLiteral("/settings.ini")).toStdString()));
    describe("describe, building / parsing the same JSON",
             R"({"phase":"building","operation":"major","phase_seconds":300,
                 "progress":"{\"phase\":\"tail\",\"done\":42,\"total\":100}"})",
             status);
    describe("describe, next trim / parsing the same JSON",
             R"({"phase":"idle","last_outcome":"success","next":{"operation":"round",
                 "growth_bytes":4294967296,"grown_by_bytes":1288490188}})",
             status);

    const QByteArray answer = Files::read(RECORDED_SERVER_INFO);
    const QJsonObject info =
        (*JsonRead::parseObject(answer))[u"result"].toObject()[u"info"].toObject();
    NodeStatus nodeStatus;
    print("update / parsing the same server_info",
          perCall([&] { ServerInfo::update(nodeStatus, info, BootstrapProgress()); }, answer),
          "< 20 us");
    return 0;
}
