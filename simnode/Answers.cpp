// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "simnode/Answers.h"

#include "simnode/DateText.h"
#include "simnode/Recordings.h"
#include "simnode/Version.h"

namespace tidewick::sim {

namespace {

/// The number of ledgers from before the run that the node has.
constexpr quint32 history = 256;
/// A node does not report smaller offsets.
constexpr std::chrono::seconds leastClockOffset(60);

QString microseconds(Seconds seconds)
{
    return QString::number(std::chrono::duration_cast<std::chrono::microseconds>(seconds).count());
}

QJsonArray portsArray(const std::vector<PortConfiguration> &ports)
{
    QJsonArray array;
    for (const PortConfiguration &port : ports) {
        const bool http = port.protocol == PortConfiguration::Protocol::Http;
        const QString protocol = http ? QStringLiteral("http") : QStringLiteral("ws");
        array.append(QJsonObject{{QStringLiteral("port"), QString::number(port.number)},
                                 {QStringLiteral("protocol"), QJsonArray{protocol}}});
    }
    return array;
}

QJsonObject accountingObject(const std::map<QString, StateAccount> &accounts)
{
    QJsonObject object;
    for (const auto &[state, account] : accounts) {
        object[state] =
            QJsonObject{{QStringLiteral("duration_us"), microseconds(account.duration)},
                        {QStringLiteral("transitions"), QString::number(account.transitions)}};
    }
    return object;
}

} // namespace

Answers::Answers(NodeConfiguration configuration, Scenario scenario, LedgerSchedule schedule)
    : m_configuration(std::move(configuration)), m_scenario(std::move(scenario)),
      m_course(makeCourse()), m_maintenance(m_scenario.maintenance),
      m_ledgers(LedgerSource(m_scenario.transactions.least, m_scenario.transactions.most),
                schedule),
      m_lists(m_scenario.lists, begin())
{
}

Course Answers::makeCourse() const
{
    return Course(m_scenario.pinnedState(), m_scenario.peers,
                  m_configuration.isStock() ? Course::Kind::Stock : Course::Kind::Streaming);
}

void Answers::heal()
{
    m_scenario = m_scenario.healed();
    m_course = makeCourse();
    m_lists = ValidatorLists(m_scenario.lists, begin());
}

std::optional<LedgerRange> Answers::validated(const NodeTime &time) const
{
    if (!m_course.at(time.elapsed).validates)
        return std::nullopt;
    return LedgerRange{m_ledgers.schedule().firstIndex() - history + 1, time.newestLedger};
}

Reply Answers::answer(const QString &command, const QJsonObject &request,
                      const NodeTime &time) const
{
    if (command == u"server_info")
        return serverInfo(time);
    if (command == u"get_counts")
        return counts(time);
    if (command == u"validator_list_sites")
        return m_lists.sites(time.now);
    if (command == u"validators")
        return m_lists.validators();
    if (command == u"ledger")
        return m_ledgers.answer(request, validated(time));
    if (command == u"stop")
        return Recordings::result(QStringLiteral("stop.json"));
    if (command == u"ping")
        return QJsonObject();
    return RpcErrors::unknownCommand;
}

/// The member "validated_ledger", or "closed_ledger" of a node that has none.
QJsonObject Answers::ledgerSummary(const NodeTime &time) const
{
    static const QJsonObject recorded =
        Recordings::result(QStringLiteral("server_info.json"))[u"info"][u"validated_ledger"]
            .toObject();
    const Seconds age =
        (time.now - m_ledgers.schedule().closeOf(time.newestLedger)) * m_scenario.speed;
    QJsonObject summary = recorded;
    summary[u"age"] = std::max<qint64>(std::chrono::floor<std::chrono::seconds>(age).count(), 0);
    summary[u"hash"] = m_ledgers.ledger(time.newestLedger).hash;
    summary[u"seq"] = static_cast<qint64>(time.newestLedger);
    // Unsigned, as in a real node: a negative offset wraps round.
    if (std::chrono::abs(m_scenario.clockOffset) >= leastClockOffset)
        summary[u"close_time_offset"] =
            static_cast<qint64>(static_cast<quint32>(m_scenario.clockOffset.count()));
    return summary;
}

QJsonArray Answers::warnings() const
{
    std::set<ServerWarning> all = m_scenario.warnings;
    if (m_scenario.amendmentBlocked)
        all.insert(ServerWarning::AmendmentBlocked);
    if (!permitsValidation(m_scenario.lists))
        all.insert(ServerWarning::NoValidLists);
    QJsonArray array;
    for (const ServerWarning warning : all)
        array.append(warningObject(warning, begin()));
    return array;
}

/// The beginning of the run in whole seconds, taken as the close of the last ledger before it,
/// which may be a few seconds earlier.
WallTime Answers::begin() const
{
    const LedgerSchedule &schedule = m_ledgers.schedule();
    return std::chrono::floor<std::chrono::seconds>(schedule.closeOf(schedule.firstIndex()));
}

QJsonObject Answers::serverInfo(const NodeTime &time) const
{
    static const QJsonObject recorded =
        Recordings::result(QStringLiteral("server_info_later.json"))[u"info"].toObject();
    const Moment moment = m_course.at(time.elapsed);
    const std::optional<LedgerRange> range = validated(time);
    const Seconds syncing = moment.full ? time.elapsed - *moment.full : time.elapsed;

    QJsonObject info = recorded;
    info[u"build_version"] = QString::fromLatin1(version);
    info[u"complete_ledgers"] = range ? range->text() : QStringLiteral("empty");
    info[u"hostid"] = QStringLiteral("simulated");
    info[u"initial_sync_duration_us"] = microseconds(syncing);
    info[u"last_close"] = QJsonObject{{QStringLiteral("converge_time_s"), 3.004},
                                      {QStringLiteral("proposers"), range ? 35 : 0}};
    info[u"node_size"] = m_configuration.nodeSize;
    info[u"peers"] = moment.peers;
    info[u"ports"] = portsArray(m_configuration.ports);
    info[u"server_state"] = moment.state;
    info[u"server_state_duration_us"] = microseconds(moment.inState);
    info[u"state_accounting"] = accountingObject(m_course.accounts(time.elapsed));
    info[u"time"] = DateText::human(time.now, 6);
    info[u"uptime"] = static_cast<qint64>(time.elapsed.count());
    info[u"validation_quorum"] = m_lists.quorum();
    info[u"validator_list"] = m_lists.summary();

    info.remove(u"validated_ledger");
    info[range ? u"validated_ledger" : u"closed_ledger"] = ledgerSummary(time);
    if (moment.waitsForNetwork)
        info[u"network_ledger"] = QStringLiteral("waiting");
    if (m_scenario.amendmentBlocked)
        info[u"amendment_blocked"] = true;
    if (const QJsonArray all = warnings(); !all.isEmpty())
        info[u"warnings"] = all;
    if (m_scenario.ioLatency)
        info[u"io_latency_ms"] = static_cast<qint64>(m_scenario.ioLatency->count());
    if (m_scenario.load) {
        info[u"load_factor"] = *m_scenario.load;
        info[u"load_factor_local"] = *m_scenario.load;
    }
    return {{QStringLiteral("info"), info}};
}

} // namespace tidewick::sim
