// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "simnode/ServerWarning.h"

#include "simnode/DateText.h"
#include "simnode/Recordings.h"

#include <QLatin1String>

namespace tidewick::sim {

namespace {

/// The time from the beginning of the run to the activation of amendments that the node does not
/// know.
constexpr std::chrono::days majorityLead{9};

QJsonObject plainWarning(int id, const char *message)
{
    return {{QStringLiteral("id"), id}, {QStringLiteral("message"), QString::fromLatin1(message)}};
}

QJsonObject majorityWarning(WallTime expected)
{
    QJsonObject warning = plainWarning(
        1001, "One or more unsupported amendments have reached majority. Upgrade to the latest "
              "version before they are activated to avoid being amendment blocked.");
    warning[u"details"] =
        QJsonObject{{QStringLiteral("expected_date"), DateText::ledgerTime(expected)},
                    {QStringLiteral("expected_date_UTC"), DateText::human(expected, 7)}};
    return warning;
}

} // namespace

std::optional<ServerWarning> serverWarningNamed(QStringView name)
{
    if (name == u"amendment-majority")
        return ServerWarning::AmendmentMajority;
    if (name == u"amendment-blocked")
        return ServerWarning::AmendmentBlocked;
    if (name == u"other")
        return ServerWarning::Other;
    return std::nullopt;
}

QJsonObject warningObject(ServerWarning warning, WallTime begin)
{
    switch (warning) {
    case ServerWarning::AmendmentBlocked:
        return plainWarning(1002, "This server is amendment blocked, and must be updated to be "
                                  "able to stay in sync with the network.");
    case ServerWarning::NoValidLists:
        return Recordings::result(
                   QStringLiteral("server_info_no_list.json"))[u"info"][u"warnings"][0]
            .toObject();
    case ServerWarning::AmendmentMajority:
        return majorityWarning(begin + majorityLead);
    case ServerWarning::Other:
        return plainWarning(1999, "This server is <b>unusual</b>.");
    }
    Q_UNREACHABLE();
}

} // namespace tidewick::sim
