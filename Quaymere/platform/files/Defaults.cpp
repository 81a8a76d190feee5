// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "platform/files/Defaults.h"

#include "platform/files/Files.h"
#include "platform/files/Folders.h"
#include "platform/text/NumberText.h"

#include <QLoggingCategory>
#include <QSettings>
#include <QUrl>

#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace tidewick {

namespace {

Q_LOGGING_CATEGORY(lcDefaults, "tidewick.defaults", QtWarningMsg)

std::filesystem::path fileOf(const std::string &suite)
{
    return Folders::settings() / (suite + ".ini");
}

/// Keys may contain text from the node. QSettings would treat a slash as a group separator and warn
/// about a backslash, so all but the plain characters are percent-encoded.
QString storedKey(const QString &key)
{
    return QString::fromLatin1(QUrl::toPercentEncoding(key));
}

/// Flushes a folder's entries to disk, including the new name of a file. If that fails, the system
/// writes them a little later anyway.
void syncFolder(const std::filesystem::path &folder)
{
    const UniqueDescriptor descriptor(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (descriptor)
        ::fsync(descriptor.get());
}

} // namespace

Defaults Defaults::standard()
{
    return Defaults(fileOf("settings"));
}

std::optional<Defaults> Defaults::suite(const QString &name)
{
    if (name.isEmpty() || name.contains(u'/') || name.contains(QChar::Null))
        return std::nullopt;
    Defaults defaults(fileOf(name.toStdString()));
    if (defaults.m_settings->status() != QSettings::NoError)
        return std::nullopt;
    return defaults;
}

Defaults::Defaults(std::filesystem::path file)
    : m_file(std::move(file)),
      m_settings(std::make_shared<QSettings>(Files::display(m_file), QSettings::IniFormat))
{
}

bool Defaults::contains(const QString &key) const
{
    return m_settings->contains(storedKey(key));
}

/// The file may have been edited by hand: QSettings parses a value with a comma as a list, and
/// booleans occur only if somebody wrote them.
QString Defaults::text(const QString &key) const
{
    const QVariant value = m_settings->value(storedKey(key));
    const QString text = value.typeId() == QMetaType::QStringList ? value.toStringList().join(u',')
                                                                  : value.toString();
    return text == QLatin1String("true") ? QStringLiteral("1") : text;
}

qint64 Defaults::integer(const QString &key) const
{
    return NumberText::leadingInteger(text(key));
}

double Defaults::real(const QString &key) const
{
    return NumberText::leadingReal(text(key));
}

bool Defaults::setInteger(const QString &key, qint64 value)
{
    return set(key, QString::number(value));
}

bool Defaults::setReal(const QString &key, double value)
{
    return set(key, QString::fromStdString(NumberText::shortest(value)));
}

/// Stores numbers as text: QSettings would round 12.9 to 13 when it is read back as an integer
/// before it is saved, and to 0 afterwards.
bool Defaults::set(const QString &key, const QString &text)
{
    return change([&](QSettings &store) { store.setValue(storedKey(key), text); });
}

bool Defaults::remove(const QString &key)
{
    return change([&](QSettings &store) { store.remove(storedKey(key)); });
}

bool Defaults::change(const std::function<void(QSettings &)> &change)
{
    try {
        Files::createFolders(m_file.parent_path());
    } catch (const FileError &) {
        // QSettings then reports that the file cannot be written.
    }
    // A QSettings object keeps its error status after a failure, so each change uses a new one.
    // Objects for the same file share their content.
    QSettings store(m_settings->fileName(), QSettings::IniFormat);
    change(store);
    store.sync();
    if (store.status() == QSettings::AccessError) {
        qCWarning(lcDefaults, "%s cannot be written", m_file.c_str());
        return false;
    }
    // QSettings has flushed the file's content to disk, but not yet its name.
    syncFolder(m_file.parent_path());
    return true;
}

void Defaults::refresh()
{
    m_settings->sync();
}

} // namespace tidewick
