// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "Checks.h"
#include "node/EnvironmentFile.h"
#include "platform/text/Lines.h"
#include "platform/text/Utf8.h"

using namespace tidewick;
using Fuzzing::require;

namespace {

const ProcessEnvironment inherited{{"HOME", "/home/somebody"}, {"LANG", "C"}};

ProcessEnvironment laidOver(const ProcessEnvironment &environment, const QString &text)
{
    ProcessEnvironment result = environment;
    EnvironmentFile::layOver(result, text);
    return result;
}

/// QString's own conversion would drop a byte order mark.
QString textOf(const std::string &bytes)
{
    return Utf8::decodeLossy(QByteArray::fromStdString(bytes));
}

/// A process receives its environment as strings that end at a NUL, in which the first "=" ends the
/// name.
void requireSound(const std::string &name, const std::string &value)
{
    require(!name.starts_with('#'), "a comment is not a name");
    require(name.find('=') == std::string::npos, "a name ends at the equals sign");
    for (const std::string &text : {name, value}) {
        require(text.find('\0') == std::string::npos, "strings have no NUL");
        const QString line = textOf(text);
        require(text.empty() || Lines::of(line) == QList<QStringView>{line},
                "strings are single lines");
    }
}

/// A file that describes the same environment.
QString fileOf(const ProcessEnvironment &environment)
{
    std::string file;
    for (const auto &[name, value] : environment)
        file.append(name).append("=").append(value).append("\n");
    return textOf(file);
}

/// The text of these bytes, if both decoders agree on it.
std::optional<QString> decoded(const QByteArray &bytes)
{
    auto text = Utf8::decode(bytes);
    const QString lossy = Utf8::decodeLossy(bytes);
    if (text) {
        require(*text == lossy, "both decoders agree");
        require(text->toUtf8() == bytes, "a text encodes to its bytes");
    } else {
        require(lossy.contains(QChar::ReplacementCharacter), "invalid bytes are replaced");
    }
    return text;
}

} // namespace

/// Fuzzes the file that overrides the node's environment.
int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const auto text = decoded(Fuzzing::bytesOf(data, size));
    if (!text)
        return 0;
    const ProcessEnvironment added = laidOver({}, *text);
    std::size_t bytes = 0;
    for (const auto &[name, value] : added) {
        requireSound(name, value);
        bytes += name.size() + value.size();
    }
    require(bytes <= size, "nothing is made up");
    require(laidOver({}, fileOf(added)) == added, "the result can be written and read again");

    const ProcessEnvironment over = laidOver(inherited, *text);
    require(laidOver(over, *text) == over, "a second time changes nothing");
    ProcessEnvironment expected = added;
    expected.insert(inherited.begin(), inherited.end());
    require(over == expected, "the file overrides inherited variables and keeps the others");
    return 0;
}
