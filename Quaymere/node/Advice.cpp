// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "node/Advice.h"

#include "node/NodeDate.h"
#include "platform/files/Files.h"
#include "platform/json/JsonRead.h"
#include "platform/text/DisplayText.h"
#include "platform/text/NumberText.h"

#include <QJsonArray>
#include <QUrl>

#include <algorithm>
#include <array>
#include <cmath>

namespace tidewick {

namespace {

using namespace std::chrono_literals;
using Cause = Advice::Cause;

constexpr std::chrono::seconds patience = 30s;
constexpr std::chrono::minutes lonelyAfter = 5min;
constexpr std::chrono::hours slowAfter = 1h;
constexpr std::chrono::days expirySoon{14};
/// The node reports an offset from the network's time from this value on; smaller offsets do no
/// harm.
constexpr std::chrono::seconds leastClockOffset = 60s;
/// The node fetches the lists after its start and warns until it has them.
constexpr std::chrono::seconds fetchesLists = 30s;
/// The quorum that cannot be reached: the largest 32-bit number.
constexpr qint64 noQuorum = 4294967295;
constexpr qsizetype longestForeignText = 300;

/// The IDs of the node's own warnings.
enum Warning : qint64 {
    AmendmentMajority = 1001,
    AmendmentBlocked = 1002,
    NoValidatorLists = 1003
};

QString foreign(const QString &text)
{
    return DisplayText::singleLine(DisplayText::elided(text.trimmed(), longestForeignText));
}

QString counted(qint64 count, const char *unit)
{
    return QString::number(count) + u' ' + QLatin1String(unit)
           + (count == 1 ? QString() : QStringLiteral("s"));
}

/// Uses coarse steps, so that there is time to read the text before it changes.
QString length(std::chrono::seconds time)
{
    if (time >= 1h)
        return counted(time / 1h, "hour");
    if (time >= 1min)
        return counted(time / 1min, "minute");
    return counted(time / 10s * 10, "second");
}

/// The warning with this ID, if the node gives it.
std::optional<QJsonObject> warning(const QJsonObject &info, qint64 number)
{
    for (const QJsonValue value : info[u"warnings"].toArray()) {
        if (JsonRead::integer(value[u"id"]) == number)
            return value.toObject();
    }
    return std::nullopt;
}

QString version(const QJsonObject &info)
{
    const QString version = foreign(info[u"build_version"].toString());
    return version.isEmpty() ? QStringLiteral("This node")
                             : QStringLiteral("This node (version %1)").arg(version);
}

std::optional<Advice> onSilence(const RunningNode &node)
{
    if (node.unanswered < patience)
        return std::nullopt;
    if (node.info) {
        return Advice{Cause::NoAnswer,
                      QStringLiteral("The node has not answered for %1; the figures are that old.")
                          .arg(length(node.unanswered))};
    }
    return Advice{Cause::NoAnswer,
                  QStringLiteral("The node has not answered in the %1 since its start. A large "
                                 "store takes a while to open; “Open Log” shows what the node is "
                                 "doing.")
                      .arg(length(node.unanswered))};
}

std::optional<Advice> onBlockedAmendment(const QJsonObject &info)
{
    if (!warning(info, AmendmentBlocked) && JsonRead::boolean(info[u"amendment_blocked"]) != true)
        return std::nullopt;
    return Advice{
        Cause::AmendmentBlocked,
        version(info)
            + QStringLiteral(" is too old: the network has moved on to rules that it does "
                             "not know. Install a newer xrpld, then start it.")};
}

/// The difference between the node's clock and the network's. The node reports it with the latest
/// ledger, as a signed value in an unsigned 32-bit number.
std::chrono::seconds clockOffset(const QJsonObject &info)
{
    for (const char16_t *ledger : {u"validated_ledger", u"closed_ledger"}) {
        const auto offset = JsonRead::integer(info[ledger].toObject()[u"close_time_offset"]);
        if (offset)
            return std::chrono::seconds(std::abs(qint64(static_cast<qint32>(*offset))));
    }
    return 0s;
}

std::optional<Advice> onClock(const QJsonObject &info)
{
    const std::chrono::seconds offset = clockOffset(info);
    if (offset < leastClockOffset)
        return std::nullopt;
    return Advice{Cause::WrongClock,
                  QStringLiteral("This computer's clock is wrong by %1. Have the system set it "
                                 "over the network: a node with a wrong clock cannot follow it.")
                      .arg(length(offset))};
}

std::optional<Advice> onPeers(const RunningNode &node)
{
    if (node.withoutPeers < lonelyAfter)
        return std::nullopt;
    return Advice{
        Cause::NoPeers,
        QStringLiteral("The node has reached no other node for %1. Check this computer's network "
                       "connection, and whether a firewall blocks outgoing connections of xrpld.")
            .arg(length(node.withoutPeers))};
}

/// The first site that failed to provide a list, named by its host as in a browser. A site that
/// provided a list the node already had, or a list last time, is not to blame.
std::optional<QString> failedSite(const std::optional<QJsonObject> &answer)
{
    if (!answer)
        return std::nullopt;
    for (const QJsonValue site : (*answer)[u"validator_sites"].toArray()) {
        if (!site[u"last_refresh_message"].isString())
            continue;
        const QString uri = site[u"uri"].toString();
        const QString host = QUrl(uri).host();
        return foreign(host.isEmpty() ? uri : host);
    }
    return std::nullopt;
}

std::optional<WallClock::time_point> listExpiry(const QJsonObject &info)
{
    return NodeDate::parse(info[u"validator_list"].toObject()[u"expiration"].toString());
}

std::optional<Advice> onMissingLists(const RunningNode &node, const QJsonObject &info)
{
    if (!lacksValidatorLists(info))
        return std::nullopt;
    QString text = QStringLiteral("No valid list of validators");
    const auto expiry = listExpiry(info);
    if (expiry && *expiry <= node.now)
        text += QStringLiteral(" since %1").arg(NodeDate::day(*expiry, node.now));
    if (const auto site = failedSite(node.listSites))
        text += QStringLiteral(". %1 cannot be reached; check").arg(*site);
    else
        text += QStringLiteral(". Its publisher cannot be reached, or the list is outdated; check");
    text += QStringLiteral(" your network or validators.txt.");
    return Advice{Cause::NoValidatorList, text};
}

std::optional<Advice> onCompany(const RunningNode &node)
{
    if (!node.hasCompany)
        return std::nullopt;
    return Advice{Cause::OtherNode,
                  QStringLiteral("Another node runs on this computer, most likely the system "
                                 "service that comes with xrpld. Two take twice the memory, disk "
                                 "and traffic; “sudo systemctl disable --now xrpld” ends it.")};
}

std::optional<Advice> onSlowness(const RunningNode &node, const QJsonObject &info)
{
    const QString remedy =
        QStringLiteral(" A node needs at least a solid-state disk, 4 cores and 16 GB of memory.");
    if (node.slowDisk >= slowAfter) {
        const qint64 latency = JsonRead::integer(info[u"io_latency_ms"]).value_or(0);
        return Advice{Cause::TooSlow,
                      QStringLiteral("This computer or its disk is too slow: the node has to wait "
                                     "%1 ms for input and output, and has done so for %2.")
                              .arg(QString::number(latency), length(node.slowDisk))
                          + remedy};
    }
    if (node.overloaded >= slowAfter) {
        const double load = nodeLoad(info);
        return Advice{Cause::TooSlow,
                      QStringLiteral("This computer is too slow: the node's load is %1 times the "
                                     "usual, and has been high for %2.")
                              .arg(NumberText::fixed(load, 0), length(node.overloaded))
                          + remedy};
    }
    if (node.outOfSync >= slowAfter) {
        return Advice{Cause::TooSlow,
                      QStringLiteral("The node has tried to catch up with the network for %1: this "
                                     "computer, its disk or its connection is too slow.")
                              .arg(length(node.outOfSync))
                          + remedy};
    }
    return std::nullopt;
}

std::optional<Advice> onUpgrade(const RunningNode &node, const QJsonObject &info)
{
    const auto majority = warning(info, AmendmentMajority);
    if (!majority)
        return std::nullopt;
    const auto date =
        NodeDate::parse((*majority)[u"details"].toObject()[u"expected_date_UTC"].toString());
    const QString when =
        date ? QStringLiteral("on %1").arg(NodeDate::day(*date, node.now)) : QStringLiteral("soon");
    return Advice{Cause::UpgradeNeeded,
                  QStringLiteral("The network changes its rules %1. %2 does not know the new ones: "
                                 "install a newer xrpld before then.")
                      .arg(when, version(info))};
}

std::optional<Advice> onExpiry(const RunningNode &node, const QJsonObject &info)
{
    const auto expiry = listExpiry(info);
    if (!expiry || *expiry > node.now + expirySoon)
        return std::nullopt;
    return Advice{
        Cause::ListExpires,
        QStringLiteral("The list of validators expires on %1. If its publisher renews it by then, "
                       "there is nothing to do; otherwise check your network or validators.txt.")
            .arg(NodeDate::day(*expiry, node.now))};
}

std::optional<Advice> onOtherWarnings(const QJsonObject &info)
{
    constexpr std::array known{AmendmentMajority, AmendmentBlocked, NoValidatorLists};
    for (const QJsonValue value : info[u"warnings"].toArray()) {
        const auto number = JsonRead::integer(value[u"id"]);
        if (number && std::find(known.begin(), known.end(), *number) != known.end())
            continue;
        const QString message = foreign(value[u"message"].toString());
        if (!message.isEmpty())
            return Advice{Cause::OtherWarning, QStringLiteral("The node warns: ") + message};
    }
    return std::nullopt;
}

bool saysAnyOf(const QString &words, std::initializer_list<const char *> signs)
{
    return std::any_of(signs.begin(), signs.end(), [&words](const char *sign) {
        return words.contains(QLatin1String(sign), Qt::CaseInsensitive);
    });
}

} // namespace

double nodeLoad(const QJsonObject &info)
{
    if (const auto local = JsonRead::number(info[u"load_factor_local"]))
        return *local;
    // If any of these is present, the sum includes the network's load, for which no computer is to
    // blame.
    for (const char16_t *others : {u"load_factor_net", u"load_factor_cluster",
                                   u"load_factor_fee_escalation", u"load_factor_fee_queue"}) {
        if (info.contains(QStringView(others)))
            return 1;
    }
    return JsonRead::number(info[u"load_factor"]).value_or(1);
}

bool lacksValidatorLists(const QJsonObject &info)
{
    const bool warned = warning(info, NoValidatorLists).has_value();
    const bool stuck = JsonRead::integer(info[u"validation_quorum"]) == noQuorum;
    if (!warned && !stuck)
        return false;
    if (info[u"validator_list"].toObject()[u"status"].toString() == u"expired")
        return true;
    // Without peers, the missing network is the first thing to report.
    return JsonRead::integer(info[u"peers"]).value_or(0) > 0
           && JsonRead::integer(info[u"uptime"]).value_or(0) >= fetchesLists.count();
}

std::optional<Advice> adviceOn(const RunningNode &node)
{
    const QJsonObject info = node.info.value_or(QJsonObject());
    for (const auto &advice :
         {onSilence(node), onBlockedAmendment(info), onClock(info), onPeers(node),
          onMissingLists(node, info), onCompany(node), onSlowness(node, info),
          onUpgrade(node, info), onExpiry(node, info), onOtherWarnings(info)}) {
        if (advice)
            return advice;
    }
    return std::nullopt;
}

std::optional<Advice> adviceOn(const EndedNode &node)
{
    if (!node.executableExists) {
        return Advice{Cause::NodeMissing,
                      QStringLiteral("There is no node at %1. Install the package “xrpld” from its "
                                     "publisher (see “man quaymere”), then start the node.")
                          .arg(foreign(Files::display(node.executable)))};
    }
    if (node.hasAnswered)
        return std::nullopt;
    if (saysAnyOf(node.lastWords, {"short read", "[nudb:", "state db error", "nudb.dat", "nudb.key",
                                   "database disk image is malformed", "file is not a database"})) {
        return Advice{Cause::StoreDamaged,
                      QStringLiteral("The node's store is damaged. “Clear Storage…”, then “Start "
                                     "Node”, repairs it: the node downloads the ledger again.")};
    }
    if (node.hasMossgrid && saysAnyOf(node.lastWords, {"[node_db]"})) {
        return Advice{
            Cause::OtherStore,
            QStringLiteral("This node does not know the Mossgrid store, which Tidewick was built "
                           "for. Rebuild or repackage Tidewick with TIDEWICK_STORE=NuDB.")};
    }
    return std::nullopt;
}

} // namespace tidewick
