// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "node/ValidatorsFile.h"

#include "platform/files/Files.h"
#include "platform/files/Folders.h"

#include <QByteArrayList>

#include <algorithm>
#include <cctype>
#include <map>

namespace tidewick::ValidatorsFile {

namespace fs = std::filesystem;

namespace {

/// Far more than any such file needs.
constexpr std::uintmax_t largestFile = std::uintmax_t{1024} * 1024;

/// The lines of each section, without comments and blanks.
std::map<QByteArray, QByteArrayList> sectionsOf(const QByteArray &content)
{
    std::map<QByteArray, QByteArrayList> sections;
    QByteArray name;
    for (const QByteArray &line : content.split('\n')) {
        const QByteArray text = line.split('#').constFirst().trimmed();
        if (text.startsWith('[') && text.endsWith(']'))
            name = text.sliced(1, text.size() - 2);
        else if (!text.isEmpty())
            sections[name].append(text);
    }
    return sections;
}

/// Whether the text is 33 bytes in hexadecimal digits, the first of which indicates the key type.
bool isPublisherKey(const QByteArray &text)
{
    constexpr qsizetype digits = 66;
    const QByteArray kind = text.first(std::min<qsizetype>(2, text.size())).toUpper();
    return text.size() == digits && (kind == "ED" || kind == "02" || kind == "03")
           && std::all_of(text.begin(), text.end(), [](char digit) {
                  return std::isxdigit(static_cast<unsigned char>(digit)) != 0;
              });
}

} // namespace

fs::path path()
{
    return Folders::settings() / "validators.txt";
}

std::optional<QByteArray> read()
{
    const fs::path file = path();
    std::error_code error;
    const fs::file_status status = fs::status(file, error);
    // A dangling link is a file that cannot be read, not a missing file.
    if (status.type() == fs::file_type::not_found && !fs::is_symlink(file, error))
        return std::nullopt;
    // Reading a pipe could block forever.
    if (fs::exists(status) && !fs::is_regular_file(status))
        throw FileError(file, "not a file");
    if (fs::exists(status) && fs::file_size(file, error) > largestFile)
        throw FileError(file, "larger than 1 MiB, too large for a list of validators");
    QByteArray content = Files::read(file);
    if (const auto reason = flaw(content))
        throw FileError(file, *reason);
    return content;
}

std::optional<std::string> flaw(const QByteArray &content)
{
    std::map<QByteArray, QByteArrayList> sections = sectionsOf(content);
    const QByteArrayList keys = sections["validator_list_keys"];
    for (const QByteArray &key : keys) {
        if (!isPublisherKey(key))
            return '"' + key.left(80).toStdString()
                   + "\" in [validator_list_keys] is not a publisher's key";
    }
    if (!keys.isEmpty() || !sections["validators"].isEmpty()
        || !sections["validator_keys"].isEmpty())
        return std::nullopt;
    return sections["validator_list_sites"].isEmpty()
               ? "it names no publisher's site and key, so no node can use it"
               : "it names sites in [validator_list_sites] and no key in [validator_list_keys], so "
                 "no node can use it";
}

} // namespace tidewick::ValidatorsFile
