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

/// A per-user store of settings that tells an absent key from a stored 0. One INI file a suite, in
/// the folder "Tidewick" of the user's configuration folder. A handle: copies share the store, and
/// handles on one suite see each other's writes at once. A write is on disk when it returns; one
/// that fails counts in this process all the same, and is tried again with the next. Main thread
/// only.
class Defaults
{
public:
    /// The application's own settings.
    static Defaults standard();

    /// Another suite; nothing when its name cannot be a file's or its file cannot be read.
    static std::optional<Defaults> suite(const QString &name);

    /// The store in this file.
    explicit Defaults(std::filesystem::path file);

    /// Where the store is, whether it exists yet or not.
    const std::filesystem::path &file() const { return m_file; }

    bool contains(const QString &key) const;

    /// The stored value as an integer. 0 when absent; text gives the integer it begins with, held
    /// to the limits of the type.
    qint64 integer(const QString &key) const;

    /// The stored value as a number. 0 when absent; text gives the number it begins with.
    double real(const QString &key) const;

    /// False when it cannot be stored, as with the two below.
    bool setInteger(const QString &key, qint64 value);
    bool setReal(const QString &key, double value);
    bool remove(const QString &key);

    /// Takes up what other programs have written since.
    void refresh();

private:
    QString text(const QString &key) const;
    bool set(const QString &key, const QString &text);
    bool change(const std::function<void(QSettings &)> &change);

    std::filesystem::path m_file;
    std::shared_ptr<QSettings> m_settings;
};

} // namespace tidewick
