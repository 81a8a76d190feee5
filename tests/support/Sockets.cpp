// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "support/Sockets.h"

#include "support/TestFiles.h"

#include <QHostAddress>
#include <QNetworkInterface>
#include <QtEndian>

#include <algorithm>
#include <filesystem>
#include <map>

namespace tidewick {

namespace fs = std::filesystem;

namespace {

constexpr const char *listening = "0A";          // the state of a TCP socket
constexpr const char *unconnected = "07";        // the state of a UDP socket
constexpr unsigned acceptsConnections = 1 << 16; // a flag of a Unix socket

std::set<QByteArray> socketsOf(pid_t process)
{
    std::set<QByteArray> numbers;
    std::error_code error;
    for (const auto &entry :
         fs::directory_iterator("/proc/" + std::to_string(process) + "/fd", error)) {
        const QByteArray target =
            QByteArray::fromStdString(fs::read_symlink(entry.path(), error).string());
        if (target.startsWith("socket:["))
            numbers.insert(target.mid(8).chopped(1));
    }
    return numbers;
}

QList<QByteArrayList> rowsOf(const QByteArray &table)
{
    QList<QByteArrayList> rows;
    for (const QByteArray &line : contentOf("/proc/self/net/" + table.toStdString()).split('\n'))
        rows += line.simplified().split(' ');
    rows.removeFirst(); // the column headers
    return rows;
}

/// Converts "0100007F:3A9D" to "127.0.0.1:15005". The address consists of words in memory byte
/// order.
QByteArray addressOf(const QByteArray &text)
{
    const QByteArray bytes = QByteArray::fromHex(text.split(':').at(0));
    const QByteArray port = QByteArray::number(text.split(':').at(1).toUInt(nullptr, 16));
    if (bytes.size() != 4)
        return '[' + bytes.toHex() + "]:" + port;
    return QHostAddress(qFromLittleEndian<quint32>(bytes.constData())).toString().toLatin1() + ':'
           + port;
}

void addIpSockets(const QByteArray &table, const std::set<QByteArray> &numbers, Sockets &sockets)
{
    for (const QByteArrayList &row : rowsOf(table)) {
        if (row.size() < 10 || !numbers.contains(row[9]))
            continue;
        if (row[3] == listening || (table.startsWith("udp") && row[3] == unconnected)) {
            sockets.open += table + ' ' + addressOf(row[1]);
        } else {
            sockets.peers.insert(addressOf(row[2]));
            ++sockets.connections;
        }
    }
}

void addLocalSockets(const std::set<QByteArray> &numbers, Sockets &sockets)
{
    for (const QByteArrayList &row : rowsOf("unix")) {
        if (row.size() < 7 || !numbers.contains(row[6]))
            continue;
        const bool accepts = (row[3].toUInt(nullptr, 16) & acceptsConnections) != 0;
        if (accepts || row.size() > 7)
            sockets.open += "unix " + row.value(7);
    }
}

} // namespace

Sockets Sockets::of(pid_t process)
{
    const std::set<QByteArray> numbers = socketsOf(process);
    Sockets sockets;
    for (const char *table : {"tcp", "tcp6", "udp", "udp6"})
        addIpSockets(table, numbers, sockets);
    addLocalSockets(numbers, sockets);
    return sockets;
}

std::vector<pid_t> familyOf(pid_t process, pid_t without)
{
    std::vector<pid_t> family{process};
    const std::string number = std::to_string(process);
    for (const QByteArray &child :
         contentOf(std::filesystem::path("/proc") / number / "task" / number / "children")
             .simplified()
             .split(' ')) {
        if (child.isEmpty() || child.toInt() == without)
            continue;
        for (const pid_t member : familyOf(child.toInt(), without))
            family.push_back(member);
    }
    return family;
}

qint64 networkCounter(const char *name)
{
    // The first table has one counter per line; the second has lines of names above lines of
    // values.
    std::map<QByteArray, qint64> counters;
    for (const QByteArray &line : contentOf("/proc/self/net/snmp6").split('\n'))
        counters[line.simplified().split(' ').constFirst()] =
            line.simplified().split(' ').constLast().toLongLong();
    QByteArrayList names;
    for (const QByteArray &line : contentOf("/proc/self/net/snmp").split('\n')) {
        const QByteArrayList words = line.split(' ');
        if (!names.isEmpty() && names.constFirst() == words.constFirst()) {
            for (qsizetype at = 1; at < words.size(); ++at)
                counters[words[0].chopped(1) + names.at(at)] = words[at].toLongLong();
        }
        names = words;
    }
    if (!counters.contains(name))
        qFatal("There is no network counter %s", name);
    return counters[name];
}

bool isAloneOnLoopback()
{
    const QList<QNetworkInterface> interfaces = QNetworkInterface::allInterfaces();
    return std::all_of(interfaces.begin(), interfaces.end(), [](const QNetworkInterface &one) {
        return one.flags().testFlag(QNetworkInterface::IsLoopBack)
               || !one.flags().testFlag(QNetworkInterface::IsUp);
    });
}

} // namespace tidewick
