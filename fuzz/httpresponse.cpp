// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "Checks.h"
#include "node/HttpResponseReader.h"

#include <algorithm>
#include <optional>

using namespace tidewick;
using Fuzzing::require;
using State = HttpResponseReader::State;

namespace {

/// Small, so that inputs exceed it.
constexpr quint64 largestBody = 256;

/// The body of the response in these bytes if they arrive in pieces of `atATime` and the connection
/// is then closed.
std::optional<std::string> bodyOf(const QByteArray &bytes, qsizetype atATime)
{
    HttpResponseReader reader(largestBody);
    State state = State::Incomplete;
    for (qsizetype at = 0; at < bytes.size(); at += atATime) {
        const State next =
            reader.take(QByteArrayView(bytes).sliced(at, std::min(atATime, bytes.size() - at)));
        require(state == State::Incomplete || next == state, "a final state does not change");
        state = next;
    }
    const State last = reader.end();
    require(last != State::Incomplete, "the end of the connection is final");
    require(state == State::Incomplete || last == state, "a final state does not change");
    if (last != State::Complete)
        return std::nullopt;
    std::string body = reader.takeBody();
    require(body.size() <= largestBody, "the body is within its limit");
    return body;
}

} // namespace

/// Fuzzes the bytes received from the node's port. The first byte sets the length of the pieces.
int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    if (size == 0)
        return 0;
    const QByteArray bytes = Fuzzing::bytesOf(data + 1, size - 1);
    const std::optional<std::string> whole = bodyOf(bytes, std::max<qsizetype>(bytes.size(), 1));
    require(bodyOf(bytes, 1 + data[0]) == whole, "the pieces do not matter");
    return 0;
}
