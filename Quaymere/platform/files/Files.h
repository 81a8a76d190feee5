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

// File names are bytes on this system, so paths travel as std::filesystem::path: a data folder
// whose name is not UTF-8 works like any other. They become QString where a person reads them, and
// where Qt itself keeps a file: the settings and the lock of the application need a folder in
// UTF-8.

namespace tidewick {

/// A failed operation on a file, with a text for the person who has to mend it: "<path>: <reason>".
class FileError : public std::runtime_error
{
public:
    FileError(const std::filesystem::path &path, const std::string &reason);
    FileError(const std::filesystem::path &path, std::error_code code);

    /// The error that errno holds now.
    static FileError fromErrno(const std::filesystem::path &path);
};

/// An open file descriptor; closes it.
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
    /// Leaves the closing to the caller.
    int release() { return std::exchange(m_descriptor, -1); }
    explicit operator bool() const { return m_descriptor >= 0; }
    void reset();

private:
    int m_descriptor = -1;
};

namespace Files {

/// The path as a person reads it. Bytes that are not UTF-8 show as U+FFFD.
QString display(const std::filesystem::path &path);

/// The whole file. Throws FileError.
QByteArray read(const std::filesystem::path &path);

/// The whole file, which must be UTF-8 throughout. Throws FileError.
QString readText(const std::filesystem::path &path);

/// Writes beside `path` and renames over it, so that a reader sees the old content or the new one,
/// whole. A failure leaves the old content and no other trace. Mode 0644 before the umask.
/// Throws FileError.
void writeAtomically(const std::filesystem::path &path, const QByteArray &content);

/// Makes the folder and those above it that are missing, closed to other users. One that is there
/// stays as it is, a link to one too. Throws FileError.
void createFolders(const std::filesystem::path &folder);

/// The same for a folder that nobody else may have a hand in: one that belongs to another user is
/// refused, and so is a link that does.
void createOwnFolder(const std::filesystem::path &folder);

/// Writes all of it, however many calls that takes, waiting where a descriptor that does not block
/// has no room. False with errno set on failure.
bool writeAll(int descriptor, const char *data, std::size_t size);

/// Waits for one of these events of poll(2), whatever signals come between. 0 when none has come in
/// time, negative with errno set on failure.
int waitForEvents(int descriptor, short events, std::chrono::milliseconds limit);

} // namespace Files

} // namespace tidewick
