// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "support/TestFiles.h"

#include "platform/files/Files.h"

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tidewick {

namespace fs = std::filesystem;

TemporaryFolder::TemporaryFolder()
{
    std::string name = (fs::temp_directory_path() / "tidewick-test-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr)
        qFatal("Cannot create the temporary folder %s", name.c_str());
    m_path = name;
}

TemporaryFolder::~TemporaryFolder()
{
    std::error_code error;
    fs::remove_all(m_path, error);
    if (error)
        qWarning("Cannot remove %s: %s", m_path.c_str(), error.message().c_str());
}

void writeFile(const fs::path &path, const QByteArray &content)
{
    std::ofstream file(path, std::ios::binary);
    file.write(content.constData(), content.size());
    file.close();
    if (!file)
        qFatal("Cannot write %s", path.c_str());
}

namespace {

bool isSeparated(const fs::path &path)
{
    return path.string().find_first_of(" :") != std::string::npos;
}

} // namespace

fs::path preloadable(const fs::path &library, const fs::path &folder)
{
    if (!isSeparated(library))
        return library;
    fs::path link = folder / library.filename();
    if (isSeparated(link))
        qFatal("Cannot preload %s", link.c_str());
    if (!fs::is_symlink(link))
        fs::create_symlink(library, link);
    return link;
}

qint64 allocatedBytes(const fs::path &path)
{
    const UniqueDescriptor file(::open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC));
    struct stat status
    {
    };
    if (!file || ::fsync(file.get()) != 0 || ::fstat(file.get(), &status) != 0)
        qFatal("Cannot determine the size of %s", path.c_str());
    return status.st_blocks * 512;
}

QByteArray contentOf(const fs::path &path)
{
    std::ifstream file(path, std::ios::binary);
    if (!file)
        qFatal("Cannot read %s", path.c_str());
    return QByteArray::fromStdString({std::istreambuf_iterator(file), {}});
}

} // namespace tidewick
