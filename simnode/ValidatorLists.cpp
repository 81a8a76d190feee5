// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "simnode/ValidatorLists.h"

#include "simnode/DateText.h"
#include "simnode/Recordings.h"

#include <QJsonArray>

#include <array>
#include <limits>

namespace tidewick::sim {

namespace {

using std::chrono::days;

constexpr auto siteUris =
    std::to_array<const char *>({"https://vl.ripple.com", "https://unl.xrplf.org"});
/// The number of the site that fails, if one does.
constexpr qsizetype failing = 1;

constexpr days usualLead{60};
constexpr days shortLead{5};
constexpr days sinceExpiry{3};

/// 80% of 35 validators.
constexpr qint64 usualQuorum = 28;
/// A quorum that no number of validators reaches.
constexpr qint64 unreachableQuorum = std::numeric_limits<quint32>::max();

QString dateText(WallTime time)
{
    return DateText::human(time, 9);
}

QString uriOf(qsizetype number)
{
    return QString::fromLatin1(siteUris.at(static_cast<std::size_t>(number)));
}

/// Without a list, the node does not know the date.
QString expiryText(ListState state, WallTime begin)
{
    switch (state) {
    case ListState::Active:
        return dateText(begin + usualLead);
    case ListState::Expiring:
        return dateText(begin + shortLead);
    case ListState::Expired:
        return dateText(begin - sinceExpiry);
    case ListState::None:
        return QStringLiteral("unknown");
    }
    Q_UNREACHABLE();
}

QString statusText(ListState state)
{
    switch (state) {
    case ListState::Active:
    case ListState::Expiring:
        return QStringLiteral("active");
    case ListState::Expired:
        return QStringLiteral("expired");
    case ListState::None:
        return QStringLiteral("unknown");
    }
    Q_UNREACHABLE();
}

} // namespace

std::optional<ListState> listStateNamed(QStringView name)
{
    if (name == u"active")
        return ListState::Active;
    if (name == u"none")
        return ListState::None;
    if (name == u"expired")
        return ListState::Expired;
    if (name == u"expiring")
        return ListState::Expiring;
    return std::nullopt;
}

bool permitsValidation(ListState state)
{
    return state == ListState::Active || state == ListState::Expiring;
}

qint64 ValidatorLists::quorum() const
{
    return permitsValidation(m_state) ? usualQuorum : unreachableQuorum;
}

QJsonObject ValidatorLists::summary() const
{
    return {{QStringLiteral("count"), static_cast<qint64>(siteUris.size())},
            {QStringLiteral("expiration"), expiryText(m_state, m_begin)},
            {QStringLiteral("status"), statusText(m_state)}};
}

QJsonObject ValidatorLists::sites(WallTime now) const
{
    // In the recording, the first site was reached and the second was not.
    QJsonObject result = Recordings::result(QStringLiteral("validator_list_sites.json"));
    const QJsonArray recorded = result[u"validator_sites"].toArray();
    QJsonArray array;
    for (qsizetype number = 0; number < std::ssize(siteUris); ++number) {
        QJsonObject site = recorded[lacks(number) ? failing : 0].toObject();
        const std::chrono::minutes interval(site[u"refresh_interval_min"].toInteger());
        site[u"uri"] = uriOf(number);
        site[u"last_refresh_time"] = dateText(now);
        site[u"next_refresh_time"] = dateText(now + interval);
        array.append(site);
    }
    result[u"validator_sites"] = array;
    return result;
}

QJsonObject ValidatorLists::validators() const
{
    QJsonObject result = Recordings::result(QStringLiteral("validators.json"));
    const QJsonArray recorded = result[u"publisher_lists"].toArray();
    QJsonArray publishers;
    for (qsizetype number = 0; number < std::ssize(siteUris); ++number)
        publishers.append(publisher(recorded[number].toObject(), number));
    result[u"publisher_lists"] = publishers;
    result[u"validation_quorum"] = quorum();
    result[u"validator_list"] = summary();
    return result;
}

QJsonObject ValidatorLists::publisher(const QJsonObject &recorded, qsizetype number) const
{
    const bool lacking = lacks(number);
    // The summary shows the list that expires first; a site that can be reached has a valid one.
    const bool fresh = !lacking && !permitsValidation(m_state);
    QJsonObject publisher = recorded;
    publisher[u"available"] = !lacking;
    publisher[u"expiration"] = expiryText(fresh ? ListState::Active : m_state, m_begin);
    publisher[u"uri"] = uriOf(number);
    if (lacking)
        publisher[u"list"] = QJsonArray();
    return publisher;
}

bool ValidatorLists::lacks(qsizetype number) const
{
    return number == failing && !permitsValidation(m_state);
}

} // namespace tidewick::sim
