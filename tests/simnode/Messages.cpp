// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "Messages.h"

#include "platform/json/JsonRead.h"
#include "support/TestFiles.h"

#include <QHash>
#include <QJsonArray>
#include <QSet>

namespace tidewick::sim {

namespace {

const WallTime launch{std::chrono::seconds(1'795'204'060)};

QByteArray recording(const char *file)
{
    return contentOf(std::filesystem::path(TIDEWICK_TEST_DATA) / "wire" / file);
}

/// Members whose presence depends on the current activity of the node.
bool isPassing(const QString &name)
{
    return name.contains(QLatin1String("::")) || name == u"local_txs" || name == u"job_types";
}

void addShape(const QString &path, const QJsonValue &value, QSet<QString> &shape)
{
    static const QHash<QJsonValue::Type, QString> names{
        {QJsonValue::Null, QStringLiteral("null")},
        {QJsonValue::Bool, QStringLiteral("bool")},
        {QJsonValue::Double, QStringLiteral("number")},
        {QJsonValue::String, QStringLiteral("text")},
        {QJsonValue::Array, QStringLiteral("array")},
        {QJsonValue::Object, QStringLiteral("object")},
    };
    shape.insert(path + u' ' + names.value(value.type()));
    if (value.isArray()) {
        for (const QJsonValue element : value.toArray())
            addShape(path + QLatin1String("[]"), element, shape);
    }
    const QJsonObject object = value.toObject();
    for (auto member = object.begin(); member != object.end(); ++member) {
        if (!isPassing(member.key()))
            addShape(path + u'.' + member.key(), member.value(), shape);
    }
}

NodeConfiguration configuration(NodeConfiguration::Store store)
{
    using Protocol = PortConfiguration::Protocol;
    NodeConfiguration configuration{};
    configuration.ports = {
        {QStringLiteral("a"), QHostAddress(QHostAddress::LocalHost), 15005, Protocol::Http},
        {QStringLiteral("b"), QHostAddress(QHostAddress::LocalHost), 16006, Protocol::WebSocket}};
    configuration.store = store;
    configuration.nodeSize = QStringLiteral("small");
    configuration.roundGrowthBytes = 1024;
    return configuration;
}

} // namespace

QJsonObject recorded(const char *file)
{
    return JsonRead::parseObject(recording(file)).value_or(QJsonObject());
}

std::vector<QJsonObject> session(const char *file, const char *from)
{
    std::vector<QJsonObject> messages;
    for (const QByteArray &line : recording(file).split('\n')) {
        const auto frame = JsonRead::parseObject(line);
        if (frame && (*frame)[u"from"] == QLatin1String(from))
            messages.push_back(
                JsonRead::parseObject((*frame)[u"text"].toString().toUtf8()).value());
    }
    return messages;
}

QStringList shapeOf(const QJsonValue &message)
{
    QSet<QString> shape;
    addShape({}, message, shape);
    QStringList lines(shape.begin(), shape.end());
    lines.sort();
    return lines;
}

Answers answersOf(const Scenario &scenario, NodeConfiguration::Store store)
{
    return {configuration(store), scenario,
            LedgerSchedule(launch, scenario.realLedgerInterval(), std::nullopt)};
}

NodeTime timeAt(const Answers &answers, Seconds elapsed)
{
    const auto closed = static_cast<quint32>(elapsed.count() / 4);
    return {elapsed, launch + wallSpan(elapsed), answers.ledgers().schedule().firstIndex() + closed,
            5'000'000};
}

} // namespace tidewick::sim
