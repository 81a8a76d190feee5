// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "platform/json/JsonWrite.h"

#include "platform/text/NumberText.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QJsonValue>

namespace tidewick::JsonWrite {

namespace {

class Writer
{
public:
    void write(const QJsonValue &value);
    QString take() { return std::move(m_text); }

private:
    void writeObject(const QJsonObject &object);
    void writeArray(const QJsonArray &array);
    void writeString(const QString &string);
    void writeNumber(const QJsonValue &number);

    void open(QChar bracket);
    void separate(bool first);
    void close(QChar bracket, bool empty);
    void breakLine();

    QString m_text;
    int m_level = 0;
};

void Writer::write(const QJsonValue &value)
{
    switch (value.type()) {
    case QJsonValue::Object:
        return writeObject(value.toObject());
    case QJsonValue::Array:
        return writeArray(value.toArray());
    case QJsonValue::String:
        return writeString(value.toString());
    case QJsonValue::Double:
        return writeNumber(value);
    case QJsonValue::Bool:
        m_text += value.toBool() ? QLatin1String("true") : QLatin1String("false");
        return;
    case QJsonValue::Null:
    case QJsonValue::Undefined:
        m_text += QLatin1String("null");
    }
}

/// QJsonObject iterates over its members in the order of their names.
void Writer::writeObject(const QJsonObject &object)
{
    open(u'{');
    for (auto member = object.begin(); member != object.end(); ++member) {
        separate(member == object.begin());
        writeString(member.key());
        m_text += QLatin1String(" : ");
        write(member.value());
    }
    close(u'}', object.isEmpty());
}

void Writer::writeArray(const QJsonArray &array)
{
    open(u'[');
    for (auto element = array.begin(); element != array.end(); ++element) {
        separate(element == array.begin());
        write(*element);
    }
    close(u']', array.isEmpty());
}

void Writer::writeString(const QString &string)
{
    static constexpr QLatin1String shortForms("\"\\/\b\f\n\r\t");
    static constexpr QLatin1String letters("\"\\/bfnrt");

    m_text += u'"';
    for (const QChar unit : string) {
        if (const qsizetype at = shortForms.indexOf(unit); at >= 0)
            m_text += u'\\' + QChar(letters[at]);
        else if (unit < u' ')
            m_text += QStringLiteral("\\u%1").arg(unit.unicode(), 4, 16, QChar(u'0'));
        else
            m_text += unit;
    }
    m_text += u'"';
}

void Writer::writeNumber(const QJsonValue &number)
{
    const QVariant variant = number.toVariant();
    if (variant.typeId() == QMetaType::LongLong)
        m_text += QString::number(variant.toLongLong());
    else
        m_text += QString::fromStdString(NumberText::shortest(number.toDouble()));
}

void Writer::open(QChar bracket)
{
    m_text += bracket;
    ++m_level;
}

void Writer::separate(bool first)
{
    if (!first)
        m_text += u',';
    breakLine();
}

/// An empty object or array has an empty line between its brackets.
void Writer::close(QChar bracket, bool empty)
{
    if (empty)
        m_text += u'\n';
    --m_level;
    breakLine();
    m_text += bracket;
}

void Writer::breakLine()
{
    m_text += u'\n';
    m_text.append(QString(qsizetype{2} * m_level, u' '));
}

} // namespace

QString pretty(const QJsonObject &object)
{
    Writer writer;
    writer.write(object);
    return writer.take();
}

} // namespace tidewick::JsonWrite
