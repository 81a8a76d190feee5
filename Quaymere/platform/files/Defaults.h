// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>

class QSettings;

namespace tidewick {

/// A per-user settings store that distinguishes an absent key from a stored 0. Each suite is an INI
/// file in the folder "Tidewick" of the user's configuration folder. This is a handle: copies share
/// the store, and handles to the same suite see each other's writes immediately. A write is on disk
/// when the call returns. A write that fails still takes effect in this process and is retried with
/// the next one. Main thread only.
class Defaults
{
public:
    /// The application's own settings.
    static Defaults standard();

    /// Another suite. Nothing if its name is not a valid file name or its file cannot be read.
    static std::optional<Defaults> suite(const QString &name);

    /// The store in this file.
    explicit Defaults(std::filesystem::path file);

    /// The path of the store's file, which need not exist yet.
    const std::filesystem::path &file() const { return m_file; }

    bool contains(const QString &key) const;

    /// The stored value as an integer; 0 if absent. Text yields the integer it begins with, clamped
    /// to the range of the type.
    qint64 integer(const QString &key) const;

    /// The stored value as a number; 0 if absent. Text yields the number it begins with.
    double real(const QString &key) const;

    /// Returns false if the change cannot be stored, as do the two functions below.
    bool setInteger(const QString &key, qint64 value);
    bool setReal(const QString &key, double value);
    bool remove(const QString &key);

    /// Picks up changes that other programs have written.
    void refresh();

private:
    QString text(const QString &key) const;
    bool set(const QString &key, const QString &text);
    bool change(const std::function<void(QSettings &)> &change);

    std::filesystem::path m_file;
    std::shared_ptr<QSettings> m_settings;
};

} // namespace tidewick
