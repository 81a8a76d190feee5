// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "platform/files/PropertyList.h"
#include "support/Surroundings.h"

using namespace tidewick;

class TestPropertyList : public QObject
{
    Q_OBJECT

private slots:
    void readsTexts_data();
    void readsTexts();
};

namespace {

QByteArray list(const QByteArray &entries)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
           "<!DOCTYPE plist PUBLIC \"-//EXAMPLE//DTD PLIST 1.0//EN\" \"http://localhost/x.dtd\">\n"
           "<plist version=\"1.0\">\n<dict>\n"
           + entries + "</dict>\n</plist>\n";
}

} // namespace

void TestPropertyList::readsTexts_data()
{
    QTest::addColumn<QByteArray>("xml");
    QTest::addColumn<QString>("text");
    const auto row = [](const char *name, const QByteArray &xml, const QString &text) {
        QTest::newRow(name) << xml << text;
    };
    const QByteArray version = "<key>version</key> <string>1.2</string>";
    const QString found = QStringLiteral("1.2");
    const QString none;
    row("alone", list(version), found);
    row("after others", list("<key>a</key><string>b</string><key>c</key><true/>" + version), found);
    row("before others", list(version + "<key>c</key><array><string>x</string></array>"), found);
    row("empty", list("<key>version</key><string></string>"), QStringLiteral(""));
    row("escaped", list("<key>version</key><string>1&amp;2</string>"), QStringLiteral("1&2"));
    row("another key", list("<key>Version</key><string>1.2</string>"), none);
    row("another type", list("<key>version</key><integer>1</integer>"), none);
    row("another type, then a text", list("<key>version</key><true/><string>x</string>"), none);
    row("a text that is the key", list("<key>a</key><string>version</string>"), none);
    row("deeper", list("<key>a</key><dict>" + version + "</dict>"), none);
    row("no entries", list({}), none);
    row("no dictionary", "<plist><array/></plist>", none);
    row("no property list", "<html><dict>" + version + "</dict></html>", none);
    row("truncated", list(version).chopped(12), none);
    row("markup within", list("<key>version</key><string>1<b/>2</string>"), none);
    row("declared entity",
        "<!DOCTYPE plist [<!ENTITY e \"1.2\">]><plist><dict>"
        "<key>version</key><string>&e;</string></dict></plist>",
        found);
    row("large", list(version + QByteArray(65536, ' ')), found);
    row("not XML", "version=1.2", none);
    row("no input", {}, none);
}

void TestPropertyList::readsTexts()
{
    QFETCH(QByteArray, xml);
    QFETCH(QString, text);
    const auto result = PropertyList::text(xml, u"version");
    QCOMPARE(result.has_value(), !text.isNull());
    QCOMPARE(result.value_or(QString()), text);
}

TIDEWICK_TEST_MAIN(TestPropertyList)
#include "tst_propertylist.moc"
