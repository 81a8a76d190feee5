// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "simnode/StreamFault.h"

#include "platform/text/NumberText.h"

#include <algorithm>
#include <array>
#include <limits>

namespace tidewick::sim {

namespace {

using Kind = StreamFault::Kind;

struct NamedKind
{
    const char *name;
    Kind kind;
};

constexpr auto kinds = std::to_array<NamedKind>({
    {"ok", Kind::None},
    {"silent", Kind::Silent},
    {"403", Kind::Refused},
    {"hang-up", Kind::HangUp},
    {"not-http", Kind::NotHttp},
    {"drop", Kind::Drop},
    {"reset", Kind::Reset},
    {"pieces", Kind::Pieces},
    {"endless", Kind::Endless},
    {"large", Kind::Large},
    {"pings", Kind::Pings},
    {"unread-pings", Kind::UnreadPings},
    {"flood", Kind::Flood},
    {"half", Kind::Half},
    {"mute", Kind::Mute},
    {"garbage", Kind::Garbage},
    {"binary", Kind::Binary},
    {"not-utf8", Kind::NotUtf8},
});

const QString closePrefix = QStringLiteral("close-");

} // namespace

QString StreamFault::name() const
{
    if (kind == Kind::Close)
        return closePrefix + QString::number(closeCode);
    const auto *known = std::find_if(kinds.begin(), kinds.end(),
                                     [this](const NamedKind &entry) { return entry.kind == kind; });
    return QLatin1String(known->name);
}

std::optional<StreamFault> streamFaultNamed(QStringView name)
{
    if (name.startsWith(closePrefix)) {
        const auto code = NumberText::integer(name.mid(closePrefix.size()).toString());
        if (!code || *code < 0 || *code > std::numeric_limits<quint16>::max())
            return std::nullopt;
        return StreamFault{Kind::Close, static_cast<quint16>(*code)};
    }
    const auto *known = std::find_if(kinds.begin(), kinds.end(), [name](const NamedKind &entry) {
        return name == QLatin1String(entry.name);
    });
    return known == kinds.end() ? std::nullopt : std::optional(StreamFault{known->kind, 0});
}

StreamFault StreamFaults::of(qsizetype connection) const
{
    return sequence.isEmpty() ? StreamFault() : sequence[std::min(connection, sequence.size() - 1)];
}

} // namespace tidewick::sim
