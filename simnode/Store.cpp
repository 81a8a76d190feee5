// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "simnode/Store.h"

#include "platform/text/NumberText.h"

#include <QByteArray>

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tidewick::sim {

namespace fs = std::filesystem;

namespace {

constexpr qint64 recordBytes = 512LL * 1024;
constexpr qint64 mostRecords = 64;
constexpr const char *prefix = "simulated-ledgers-";
constexpr const char *storeExtension = ".store";
constexpr const char *copyExtension = ".copy";
/// The beginning of a record, before the ledger's index and a line feed.
constexpr const char *recordTitle = "simulated ledger ";
constexpr std::size_t titleBytes = 40;

/// The number in "simulated-ledgers-<number>.store", or nothing for any other name.
std::optional<int> generationOf(const fs::path &path)
{
    const std::string name = path.stem().string();
    if (path.extension() != storeExtension || !name.starts_with(prefix))
        return std::nullopt;
    const auto number =
        NumberText::integer(QString::fromLatin1(name.c_str() + std::strlen(prefix)));
    if (!number || *number < 1 || *number > 1'000'000'000)
        return std::nullopt;
    return static_cast<int>(*number);
}

bool isCopy(const fs::path &path)
{
    return path.extension() == copyExtension && path.stem().string().starts_with(prefix);
}

void removeFile(const fs::path &path)
{
    std::error_code error;
    fs::remove(path, error);
    if (error)
        throw FileError(path, error);
}

qint64 lengthOf(const UniqueDescriptor &descriptor)
{
    struct stat status
    {
    };
    return ::fstat(descriptor.get(), &status) == 0 ? status.st_size : 0;
}

/// The index of the ledger in a record, or nothing if the record is damaged.
std::optional<quint32> ledgerOf(const UniqueDescriptor &descriptor, qint64 record)
{
    std::array<char, titleBytes> title{};
    if (::pread(descriptor.get(), title.data(), title.size(), record * recordBytes)
        != static_cast<ssize_t>(title.size()))
        return std::nullopt;
    const QString text = QString::fromLatin1(title.data(), title.size());
    if (!text.startsWith(QLatin1String(recordTitle)))
        return std::nullopt;
    const qint64 index = NumberText::leadingInteger(
        QStringView(text).mid(static_cast<qsizetype>(std::strlen(recordTitle))));
    if (index <= 0 || index > std::numeric_limits<quint32>::max())
        return std::nullopt;
    return static_cast<quint32>(index);
}

} // namespace

Store::Store(fs::path folder) : m_folder(std::move(folder))
{
    std::error_code error;
    fs::create_directories(m_folder, error);
    if (error)
        throw FileError(m_folder, error);

    std::vector<fs::path> leftovers;
    std::optional<int> newest;
    for (auto entry = fs::directory_iterator(m_folder, error); !error && entry != fs::end(entry);
         entry.increment(error)) {
        const auto generation = generationOf(*entry);
        if (generation || isCopy(*entry))
            leftovers.push_back(*entry);
        if (generation > newest)
            newest = generation;
    }
    if (error)
        throw FileError(m_folder, error);

    m_generation = newest.value_or(1);
    m_current = open(pathOf(m_generation, storeExtension));
    for (const fs::path &leftover : leftovers) {
        if (leftover != m_current.path)
            removeFile(leftover);
    }
}

fs::path Store::pathOf(int generation, const char *extension) const
{
    return m_folder / (prefix + std::to_string(generation) + extension);
}

Store::File Store::open(const fs::path &path) const
{
    File file{path, UniqueDescriptor(::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0644)), 0};
    if (!file.descriptor)
        throw FileError::fromErrno(path);
    // Overwrites an incomplete record at the end of a killed run's file.
    file.records = lengthOf(file.descriptor) / recordBytes;
    return file;
}

std::optional<quint32> Store::newestLedger() const
{
    std::optional<quint32> newest;
    for (qint64 record = 0; record < std::min(m_current.records, mostRecords); ++record)
        newest = std::max(newest, ledgerOf(m_current.descriptor, record));
    return newest;
}

qint64 Store::bytes() const
{
    qint64 sum = lengthOf(m_current.descriptor);
    for (const std::optional<File> *file : {&m_copy, &m_replaced})
        sum += *file ? lengthOf((*file)->descriptor) : 0;
    return sum;
}

void Store::write(File &file, quint32 ledger)
{
    QByteArray record = recordTitle + QByteArray::number(ledger) + '\n';
    record.append(recordBytes - record.size(), '.');
    const off_t place = (file.records % mostRecords) * recordBytes;
    if (::lseek(file.descriptor.get(), place, SEEK_SET) != place
        || !Files::writeAll(file.descriptor.get(), record.constData(),
                            static_cast<std::size_t>(record.size())))
        throw FileError::fromErrno(file.path);
    ++file.records;
}

void Store::append(quint32 ledger)
{
    write(m_current, ledger);
    if (m_copy)
        write(*m_copy, ledger);
}

void Store::beginCopy()
{
    tidy();
    m_copy = open(pathOf(m_generation + 1, copyExtension));
}

void Store::switchToCopy()
{
    if (!m_copy)
        return;
    ++m_generation;
    const fs::path path = pathOf(m_generation, storeExtension);
    std::error_code error;
    fs::rename(m_copy->path, path, error);
    if (error)
        throw FileError(path, error);
    m_replaced = std::exchange(m_current, std::move(*m_copy));
    m_current.path = path;
    m_copy.reset();
}

void Store::tidy()
{
    for (std::optional<File> *file : {&m_copy, &m_replaced}) {
        if (*file)
            removeFile((*file)->path);
        file->reset();
    }
}

} // namespace tidewick::sim
