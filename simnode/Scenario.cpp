// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "simnode/Scenario.h"

#include "platform/files/Files.h"
#include "platform/text/NumberText.h"
#include "simnode/MaintenanceCourse.h"

#include <QRegularExpression>
#include <QStringList>

#include <algorithm>
#include <array>

namespace tidewick::sim {

namespace {

/// Describes the value that a key needs instead of the one it got.
class BadValue : public std::runtime_error
{
    using std::runtime_error::runtime_error;
};

qint64 integerOf(const QString &value, qint64 least, qint64 most)
{
    const auto number = NumberText::integer(value);
    if (!number || *number < least || *number > most) {
        throw BadValue("a whole number from " + std::to_string(least) + " to "
                       + std::to_string(most));
    }
    return *number;
}

double realOf(const QString &value, double least, double most)
{
    const auto number = NumberText::real(value);
    if (!number || *number < least || *number > most) {
        throw BadValue("a number from " + NumberText::shortest(least) + " to "
                       + NumberText::shortest(most));
    }
    return *number;
}

/// At most eleven days, which still fit into a timer's milliseconds.
Seconds secondsOf(const QString &value)
{
    return Seconds(realOf(value, 0, 1'000'000));
}

/// Returns true if the value is this word, else throws.
bool isWord(const QString &value, const char *word)
{
    if (value == QLatin1String(word))
        return true;
    throw BadValue(std::string("the word ") + word);
}

Scenario::Range rangeOf(const QString &value)
{
    const QStringList parts = value.split(u'-');
    if (parts.size() == 2) {
        const auto least = NumberText::integer(parts[0]);
        const auto most = NumberText::integer(parts[1]);
        if (least && most && *least >= 0 && *least <= *most && *most <= 10'000)
            return {static_cast<int>(*least), static_cast<int>(*most)};
    }
    throw BadValue("two numbers as in 20-200, at most 10000");
}

QString maintenanceOf(const QString &value)
{
    if (MaintenanceCourse::knows(value))
        return value;
    throw BadValue("a stage of the maintenance such as building");
}

Ending signalOf(const QString &value)
{
    if (const auto number = signalNamed(value))
        return {*number, true};
    throw BadValue("the name of a signal that ends a process, such as SEGV");
}

Scenario::Cue cueOf(const QString &value)
{
    if (value == u"usr1")
        return Scenario::Cue::User;
    if (value == u"stop")
        return Scenario::Cue::Stop;
    throw BadValue("usr1 or stop");
}

RpcFault faultOf(const QString &value)
{
    if (const auto fault = rpcFaultNamed(value))
        return *fault;
    throw BadValue("a kind of answer such as garbage");
}

QList<StreamFault> streamFaultsOf(const QString &value)
{
    QList<StreamFault> faults;
    for (const QString &name : value.split(u'+')) {
        const auto fault = streamFaultNamed(name);
        if (!fault)
            throw BadValue("kinds of misbehaviour such as drop+close-1001+ok");
        faults += *fault;
    }
    return faults;
}

ListState listsOf(const QString &value)
{
    if (const auto state = listStateNamed(value))
        return *state;
    throw BadValue("active, none, expired or expiring");
}

std::set<ServerWarning> warningsOf(const QString &value)
{
    std::set<ServerWarning> warnings;
    for (const QString &name : value.split(u'+')) {
        const auto warning = serverWarningNamed(name);
        if (!warning)
            throw BadValue("warnings such as amendment-majority+other");
        warnings.insert(*warning);
    }
    return warnings;
}

StoreFault storeFaultOf(const QString &value)
{
    if (const auto fault = storeFaultNamed(value))
        return *fault;
    throw BadValue("damaged, damaged-index or stock");
}

void omitExtras(Scenario &scenario)
{
    scenario.countsBootstrap = scenario.countsMaintenance = scenario.countsProcess = false;
}

struct Key
{
    const char *name;
    void (*set)(Scenario &scenario, const QString &value);
};

constexpr auto keys = std::to_array<Key>({
    {"speed", [](auto &s, auto &v) { s.speed = realOf(v, 0.01, 1000); }},
    {"state", [](auto &s, auto &v) { s.state = v; }},
    {"peers", [](auto &s, auto &v) { s.peers = static_cast<int>(integerOf(v, 0, 10'000)); }},
    {"amendment-blocked", [](auto &s, auto &v) { s.amendmentBlocked = isWord(v, "yes"); }},
    {"lists", [](auto &s, auto &v) { s.lists = listsOf(v); }},
    {"warnings", [](auto &s, auto &v) { s.warnings = warningsOf(v); }},
    {"clock-offset",
     [](auto &s, auto &v) {
         s.clockOffset = std::chrono::seconds(integerOf(v, -100'000'000, 100'000'000));
     }},
    {"io-latency",
     [](auto &s, auto &v) { s.ioLatency = std::chrono::milliseconds(integerOf(v, 0, 1'000'000)); }},
    {"load", [](auto &s, auto &v) { s.load = realOf(v, 1, 1'000'000); }},
    {"heal", [](auto &s, auto &v) { s.heals = isWord(v, "usr1"); }},
    {"maintenance", [](auto &s, auto &v) { s.maintenance = maintenanceOf(v); }},
    {"txns", [](auto &s, auto &v) { s.transactions = rangeOf(v); }},
    {"ledger-interval", [](auto &s, auto &v) { s.ledgerInterval = Seconds(realOf(v, 0.1, 10'000)); }},
    {"exit", [](auto &s, auto &v) { s.ending = {static_cast<int>(integerOf(v, 0, 255)), false}; }},
    {"signal", [](auto &s, auto &v) { s.ending = signalOf(v); }},
    {"after", [](auto &s, auto &v) { s.endingAfter = secondsOf(v); }},
    {"when", [](auto &s, auto &v) { s.endingCue = cueOf(v); }},
    {"listen", [](auto &s, auto &v) { s.listens = !isWord(v, "no"); }},
    {"start-delay", [](auto &s, auto &v) { s.startDelay = secondsOf(v); }},
    {"stop-delay", [](auto &s, auto &v) { s.stopDelay = secondsOf(v); }},
    {"stop", [](auto &s, auto &v) { s.stopHangs = isWord(v, "hang"); }},
    {"sigterm", [](auto &s, auto &v) { s.ignoresSigterm = isWord(v, "ignore"); }},
    {"grandchild", [](auto &s, auto &v) { s.grandchild = secondsOf(v); }},
    {"store", [](auto &s, auto &v) { s.storeFault = storeFaultOf(v); }},
    {"streams", [](auto &s, auto &v) { s.closesStreams = isWord(v, "close"); }},
    {"output", [](auto &s, auto &v) { s.outputBytes = integerOf(v, 0, 1LL << 40); }},
    {"lines", [](auto &s, auto &v) { s.outputLines = integerOf(v, 0, 1LL << 40); }},
    {"flood", [](auto &s, auto &v) { s.floodBytes = integerOf(v, 0, 1LL << 40); }},
    {"rpc", [](auto &s, auto &v) { s.faults.all = faultOf(v); }},
    {"rpc.server_info",
     [](auto &s, auto &v) { s.faults.ofMethod[QStringLiteral("server_info")] = faultOf(v); }},
    {"rpc.get_counts",
     [](auto &s, auto &v) { s.faults.ofMethod[QStringLiteral("get_counts")] = faultOf(v); }},
    {"rpc.stop", [](auto &s, auto &v) { s.faults.ofMethod[QStringLiteral("stop")] = faultOf(v); }},
    {"rpc-after",
     [](auto &s, auto &v) {
         s.faults.onCue = v == u"usr1";
         s.faults.after = s.faults.onCue ? Seconds(0) : secondsOf(v);
     }},
    {"redirect-port",
     [](auto &s, auto &v) {
         s.faults.redirectPort = static_cast<quint16>(integerOf(v, 1, 65535));
     }},
    {"stream", [](auto &s, auto &v) { s.streamFaults.sequence = streamFaultsOf(v); }},
    {"stream-after", [](auto &s, auto &v) { s.streamFaults.after = secondsOf(v); }},
    {"stream-for", [](auto &s, auto &v) { s.streamFaults.duration = secondsOf(v); }},
    {"counts",
     [](auto &s, auto &v) {
         isWord(v, "plain");
         omitExtras(s);
     }},
    {"process", [](auto &s, auto &v) { s.countsProcess = !isWord(v, "no"); }},
    {"bootstrap", [](auto &s, auto &v) { s.countsBootstrap = !isWord(v, "no"); }},
});

void apply(Scenario &scenario, const QString &pair)
{
    const qsizetype equals = pair.indexOf(u'=');
    const QString name = pair.left(equals);
    const auto *key = std::find_if(keys.begin(), keys.end(), [&name](const Key &known) {
        return name == QLatin1String(known.name);
    });
    if (equals <= 0 || equals + 1 == pair.size() || key == keys.end())
        throw ScenarioError('\'' + pair.toStdString() + "' is not a known key with a value");
    try {
        key->set(scenario, pair.mid(equals + 1));
    } catch (const BadValue &bad) {
        throw ScenarioError('\'' + pair.toStdString() + "': the value must be " + bad.what());
    }
}

bool redirects(const RpcFaults &faults)
{
    return faults.all == RpcFault::Redirect
           || std::find(faults.ofMethod.begin(), faults.ofMethod.end(), RpcFault::Redirect)
                  != faults.ofMethod.end();
}

} // namespace

Scenario Scenario::parse(const QString &text)
{
    static const QRegularExpression comment(QStringLiteral("#[^\n]*"));
    static const QRegularExpression separators(QStringLiteral("[\\s,]+"));
    Scenario scenario;
    QString rest = text;
    rest.remove(comment);
    for (const QString &pair : rest.split(separators, Qt::SkipEmptyParts))
        apply(scenario, pair);
    if (redirects(scenario.faults) && scenario.faults.redirectPort == 0)
        throw ScenarioError("a redirect needs redirect-port");
    return scenario;
}

std::optional<QString> Scenario::pinnedState() const
{
    if (state || permitsValidation(lists))
        return state;
    return QStringLiteral("connected");
}

Scenario Scenario::healed() const
{
    const Scenario well;
    Scenario healed = *this;
    healed.state = well.state;
    healed.peers = well.peers;
    healed.amendmentBlocked = well.amendmentBlocked;
    healed.lists = well.lists;
    healed.warnings = well.warnings;
    healed.clockOffset = well.clockOffset;
    healed.ioLatency = well.ioLatency;
    healed.load = well.load;
    return healed;
}

Scenario Scenario::fromEnvironment()
{
    const QByteArray value = qgetenv("TIDEWICK_SIMNODE");
    if (!value.startsWith('@'))
        return parse(QString::fromUtf8(value));
    try {
        return parse(Files::readText(value.mid(1).toStdString()));
    } catch (const FileError &error) {
        throw ScenarioError(error.what());
    }
}

} // namespace tidewick::sim
