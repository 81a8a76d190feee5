// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QString>

#include <chrono>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <system_error>
#include <utility>

// File names are bytes on this system, so paths are passed as std::filesystem::path: a data folder
// whose name is not UTF-8 works like any other. Paths are converted to QString for display and
// where Qt itself manages the file: the application's settings and lock file need a folder whose
// path is UTF-8.

namespace tidewick {

/// A failed file operation, with a text for the user who has to fix it: "<path>: <reason>".
class FileError : public std::runtime_error
{
public:
    FileError(const std::filesystem::path &path, const std::string &reason);
    FileError(const std::filesystem::path &path, std::error_code code);

    /// The error currently in errno.
    static FileError fromErrno(const std::filesystem::path &path);
};

/// Owns a file descriptor and closes it.
class UniqueDescriptor
{
public:
    UniqueDescriptor() = default;
    explicit UniqueDescriptor(int descriptor) : m_descriptor(descriptor) {}
    UniqueDescriptor(UniqueDescriptor &&other) noexcept
        : m_descriptor(std::exchange(other.m_descriptor, -1))
    {
    }
    UniqueDescriptor &operator=(UniqueDescriptor &&other) noexcept;
    UniqueDescriptor(const UniqueDescriptor &) = delete;
    UniqueDescriptor &operator=(const UniqueDescriptor &) = delete;
    ~UniqueDescriptor() { reset(); }

    int get() const { return m_descriptor; }
    /// Passes ownership to the caller.
    int release() { return std::exchange(m_descriptor, -1); }
    explicit operator bool() const { return m_descriptor >= 0; }
    void reset();

private:
    int m_descriptor = -1;
};

namespace Files {

/// The path for display. Bytes that are not UTF-8 appear as U+FFFD.
QString display(const std::filesystem::path &path);

/// Reads the whole file. Throws FileError.
QByteArray read(const std::filesystem::path &path);

/// Reads the whole file, which must be valid UTF-8. Throws FileError.
QString readText(const std::filesystem::path &path);

/// Writes a temporary file beside `path` and renames it to `path`, so that readers see either the
/// complete old content or the complete new content. On failure, the old content stays and the
/// temporary file is removed. The new file has mode 0644 before the umask. Throws FileError.
void writeAtomically(const std::filesystem::path &path, const QByteArray &content);

/// Who may do what with a file.
struct Access
{
    gid_t group;
    mode_t mode;
};

/// Like writeAtomically(), but gives the new file this access, and returns the reason of a failure
/// instead of throwing it.
std::error_code replace(const std::filesystem::path &path, const QByteArray &content,
                        const Access &access);

/// Creates the folder and any missing parents, inaccessible to other users. A folder that already
/// exists is left unchanged, as is a link to one. Throws FileError.
void createFolders(const std::filesystem::path &folder);

/// Like createFolders(), for a folder that no other user may control: refuses a folder that belongs
/// to another user, and a link that does.
void createOwnFolder(const std::filesystem::path &folder);

/// Writes all the data, in as many calls as necessary. Waits if a non-blocking descriptor has no
/// room. Returns false with errno set on failure.
bool writeAll(int descriptor, const char *data, std::size_t size);

/// Waits for one of these poll(2) events and continues to wait after interrupting signals. Returns
/// 0 if none occurs in time, or a negative value with errno set on failure.
int waitForEvents(int descriptor, short events, std::chrono::milliseconds limit);

} // namespace Files

} // namespace tidewick
