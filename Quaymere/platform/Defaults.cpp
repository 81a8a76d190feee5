// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "platform/Defaults.h"

#include "platform/Files.h"
#include "platform/Folders.h"
#include "platform/NumberText.h"

#include <QSettings>
#include <QUrl>

namespace tidewick {

namespace {

std::filesystem::path fileOf(const std::string &suite)
{
    return Folders::configuration() / "Tidewick" / (suite + ".ini");
}

/// Keys may hold text from the node. A slash would make a group of it and a backslash a warning, so
/// all but the plain characters are written as percent codes.
QString storedKey(const QString &key)
{
    return QString::fromLatin1(QUrl::toPercentEncoding(key));
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

Defaults::Defaults(const std::filesystem::path &file)
    : m_settings(std::make_shared<QSettings>(Files::display(file), QSettings::IniFormat))
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

void Defaults::setInteger(const QString &key, qint64 value)
{
    set(key, QString::number(value));
}

void Defaults::setReal(const QString &key, double value)
{
    set(key, QString::fromStdString(NumberText::shortest(value)));
}

/// Numbers are kept as text: QSettings would round 12.9 to 13 when read back as an integer before
/// it is saved, and to 0 afterwards.
void Defaults::set(const QString &key, const QString &text)
{
    m_settings->setValue(storedKey(key), text);
    m_settings->sync();
}

void Defaults::remove(const QString &key)
{
    m_settings->remove(storedKey(key));
    m_settings->sync();
}

void Defaults::refresh()
{
    m_settings->sync();
}

} // namespace tidewick
