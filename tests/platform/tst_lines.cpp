// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "platform/text/Lines.h"
#include "support/Surroundings.h"

using namespace tidewick;

class TestLines : public QObject
{
    Q_OBJECT

private slots:
    void splits_data();
    void splits();
};

void TestLines::splits_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("lines");
    const auto row = [](const char *name, const QString &text, const QStringList &lines) {
        QTest::newRow(name) << text << lines;
    };
    const QStringList three{QStringLiteral("a"), QStringLiteral("b c"), QStringLiteral("d")};
    row("empty", {}, {});
    row("empty lines only", QStringLiteral("\n\r\n\n"), {});
    row("no end", QStringLiteral("a"), {QStringLiteral("a")});
    row("line feeds", QStringLiteral("a\nb c\n\nd\n"), three);
    row("carriage returns", QStringLiteral("a\r\nb c\rd\r\n"), three);
    row("tabs and form feeds", QStringLiteral("a\vb c\fd"), three);
    row("Unicode line ends", QStringLiteral("a\u0085b c\u2028\u2029d"), three);
    row("whitespace is kept", QStringLiteral(" a\t\n"), {QStringLiteral(" a\t")});
}

void TestLines::splits()
{
    QFETCH(QString, text);
    QStringList lines;
    for (const QStringView line : Lines::of(text))
        lines.append(line.toString());
    QTEST(lines, "lines");
}

TIDEWICK_TEST_MAIN(TestLines)
#include "tst_lines.moc"
