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

/// Keys may hold text from the node. A slash would make a group of it and a backslash a warning, so
/// all but the plain characters are written as percent codes.
QString storedKey(const QString &key)
{
    return QString::fromLatin1(QUrl::toPercentEncoding(key));
}

/// Brings the names in a folder to disk, a file's new one among them. Where that cannot be done
/// they come there a little later by themselves.
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

/// A hand may have edited the file: QSettings takes what has a comma for a list, and there are no
/// booleans but those somebody wrote.
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

/// Numbers are kept as text: QSettings would round 12.9 to 13 when read back as an integer before
/// it is saved, and to 0 afterwards.
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
        // The store then says that it cannot be written.
    }
    // The status of one object stays bad after a failure; objects on one file share what it holds.
    QSettings store(m_settings->fileName(), QSettings::IniFormat);
    change(store);
    store.sync();
    if (store.status() == QSettings::AccessError) {
        qCWarning(lcDefaults, "%s cannot be written", m_file.c_str());
        return false;
    }
    // QSettings has brought the file's content to disk, but not yet its name.
    syncFolder(m_file.parent_path());
    return true;
}

void Defaults::refresh()
{
    m_settings->sync();
}

} // namespace tidewick
