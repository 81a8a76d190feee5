// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "Messages.h"
#include "feed/PlainReading.h"
#include "support/Surroundings.h"

using namespace tidewick;

namespace {

/// The same object with a number added that makes the reader fall back to Qt's parser.
QString beyondSimdjson(const QString &object)
{
    return json("{'large':18446744073709551616%1%2")
        .arg(object == u"{}" ? QLatin1String() : QLatin1String(","), object.mid(1));
}

} // namespace

class TestStreamReader : public QObject
{
    Q_OBJECT

private slots:
    void messages_data();
    void messages();
    void integers_data();
    void integers();
    void pastIndexes_data();
    void pastIndexes();
    void times_data();
    void times();
    void membersHaveExactlyTheirNames();
    void recordings_data();
    void recordings();
};

namespace {

template <typename Row>
void addAnswers(const Row &row)
{
    row("subscribed", "{'id':1,'result':{'ledger_index':7}}", "subscribed: 7");
    row("subscribed, nothing validated", "{'id':1,'result':{}}", "subscribed: none");
    row("subscribed, index a text", "{'id':1,'result':{'ledger_index':'7'}}", "subscribed: none");
    row("id true is 1", "{'id':true,'result':{'ledger_index':7}}", "subscribed: 7");
    row("id a text", "{'id':'1','result':{'ledger_index':7}}");
    row("unknown id", "{'id':500,'result':{'ledger_index':7,'ledger':{}}}");
    row("unknown id, with a type",
        "{'id':2,'result':{},'type':'ledgerClosed','ledger_index':7,'ledger_time':1}");
    row("result not an object", "{'id':1,'result':[]}");
    row("result not an object, with a type",
        "{'id':1,'result':3,'type':'ledgerClosed','ledger_index':7,'ledger_time':1}",
        "closed: 7, 0 transactions, at 946684801");
    row("no id", "{'result':{'ledger_index':7}}");
    row("past",
        "{'id':1000,'result':{'ledger':{'ledger_index':'7','close_time':1,"
        "'transactions':['A',null,{}]}}}",
        "past: 7, 3 transactions, at 946684801");
    row("past, id beyond the requests",
        "{'id':9e18,'result':{'ledger':{'ledger_index':'7',"
        "'close_time':1,'transactions':[]}}}",
        "past: 7, 0 transactions, at 946684801");
    row("id below the range", "{'id':999,'result':{'ledger':{'ledger_index':'7','close_time':1,"
                              "'transactions':[]}}}");
    row("past, still open", "{'id':1001,'result':{'ledger':{'ledger_index':'7',"
                            "'transactions':[]}}}");
    row("past, no transactions", "{'id':1001,'result':{'ledger':{'ledger_index':'7',"
                                 "'close_time':1}}}");
    row("past, transactions not an array", "{'id':1001,'result':{'ledger':{'ledger_index':'7',"
                                           "'close_time':1,'transactions':{}}}}");
    row("past, ledger a text", "{'id':1001,'result':{'ledger':'7'}}");
}

template <typename Row>
void addStreamMessages(const Row &row)
{
    row("closed", "{'type':'ledgerClosed','ledger_index':7,'txn_count':2,'ledger_time':1}",
        "closed: 7, 2 transactions, at 946684801");
    row("closed, no count", "{'type':'ledgerClosed','ledger_index':7,'ledger_time':1}",
        "closed: 7, 0 transactions, at 946684801");
    row("closed, count negative",
        "{'type':'ledgerClosed','ledger_index':7,'txn_count':-2,'ledger_time':1}",
        "closed: 7, 0 transactions, at 946684801");
    row("closed, no index", "{'type':'ledgerClosed','txn_count':2,'ledger_time':1}");
    row("closed, no time", "{'type':'ledgerClosed','ledger_index':7,'txn_count':2}");
    row("other type", "{'type':'serverStatus','ledger_index':7,'ledger_time':1,'hash':'A'}");
    row("type in different case", "{'type':'LedgerClosed','ledger_index':7,'ledger_time':1}");
    row("type not a text", "{'type':['transaction'],'hash':'A'}");
    row("no type", "{'hash':'A','ledger_index':7,'ledger_time':1}");

    row("newer form",
        "{'type':'transaction','hash':'A','ledger_index':7,'engine_result':'tesSUCCESS',"
        "'meta':{'TransactionResult':'tecPATH_DRY'},"
        "'tx_json':{'hash':'B','TransactionType':'Payment','Account':'r1'}}",
        "transaction|A|Payment|r1|tecPATH_DRY|7");
    row("older form",
        "{'type':'transaction','ledger_index':7,'engine_result':'tesSUCCESS',"
        "'transaction':{'hash':'B','TransactionType':'Payment','Account':'r1'}}",
        "transaction|B|Payment|r1|tesSUCCESS|7");
    row("hash inside the newer form", "{'type':'transaction','tx_json':{'hash':'B'}}",
        "transaction|B|Unknown|||0");
    row("both forms", "{'type':'transaction','tx_json':{'hash':'B'},'transaction':{'hash':'C'}}",
        "transaction|B|Unknown|||0");
    row("newer form null", "{'type':'transaction','tx_json':null,'transaction':{'hash':'C'}}",
        "transaction|C|Unknown|||0");
    row("newer form an array", "{'type':'transaction','tx_json':[],'transaction':{'hash':'C'}}",
        "transaction|C|Unknown|||0");
    row("neither form", "{'type':'transaction','hash':'A'}", "transaction|A|Unknown|||0");
    row("no hash", "{'type':'transaction','tx_json':{'TransactionType':'Payment'}}");
    row("hash a number", "{'type':'transaction','hash':12,'tx_json':{}}");
    row("outer hash a number", "{'type':'transaction','hash':12,'tx_json':{'hash':'B'}}",
        "transaction|B|Unknown|||0");
    row("hash empty", "{'type':'transaction','hash':''}", "transaction||Unknown|||0");
    row("values of wrong types",
        "{'type':'transaction','hash':'A','ledger_index':'7','engine_result':0,'meta':'binary',"
        "'tx_json':{'TransactionType':1,'Account':null}}",
        "transaction|A|Unknown|||0");
    row("meta without a result",
        "{'type':'transaction','hash':'A','meta':{'TransactionResult':1},'engine_result':'terRETRY'"
        "}",
        "transaction|A|Unknown||terRETRY|0");
    row("the last of two members counts", "{'type':'x','type':'transaction','hash':'A','hash':'B'}",
        "transaction|B|Unknown|||0");
    row("the last of two members counts, even if invalid",
        "{'type':'transaction','hash':'A','hash':1}");
    row("member names may be escaped", "{'\\u0074ype':'transaction','ha\\u0073h':'A'}",
        "transaction|A|Unknown|||0");
    row("empty object", "{}");
}

} // namespace

void TestStreamReader::messages_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("says");
    const auto row = [](const char *name, const char *text, const char *says = "nothing") {
        QTest::newRow(name) << json(text) << QString::fromUtf8(says);
    };
    addAnswers(row);
    addStreamMessages(row);
}

void TestStreamReader::messages()
{
    QFETCH(QString, text);
    QFETCH(QString, says);
    QCOMPARE(said(text), says);
    QCOMPARE(said(beyondSimdjson(text)), says);
    QCOMPARE(PlainReading::of(text).says, says);
}

void TestStreamReader::integers_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<std::optional<qint64>>("integer");
    const auto row = [](const char *value, std::optional<qint64> integer) {
        QTest::newRow(value) << json(value) << integer;
    };
    row("12", 12);
    row("12.0", 12);
    row("1e3", 1000);
    row("1E+3", 1000);
    row("-0", 0);
    row("-1", -1);
    row("true", 1);
    row("false", 0);
    row("12.5", {});
    row("1e-3", {});
    row("9223372036854775807", 9223372036854775807);
    row("-9223372036854775808", std::numeric_limits<qint64>::min());
    row("9223372036854775808", {});
    row("18446744073709551615", {});
    row("18446744073709551616", {});
    row("12345678901234567890123", {});
    row("9007199254740993", 9007199254740993);
    row("1e300", {});
    row("'12'", {});
    row("null", {});
    row("{}", {});
    row("[1]", {});
}

void TestStreamReader::integers()
{
    QFETCH(QString, value);
    QFETCH(std::optional<qint64>, integer);
    const QString shown = integer ? QString::number(*integer) : QStringLiteral("none");
    const QString shownOrZero = QString::number(integer.value_or(0));

    QCOMPARE(said(json("{'id':1,'result':{'ledger_index':%1}}").arg(value)),
             QStringLiteral("subscribed: ") + shown);
    QCOMPARE(said(json("{'type':'transaction','hash':'A','ledger_index':%1}").arg(value)),
             QStringLiteral("transaction|A|Unknown|||") + shownOrZero);
    QCOMPARE(said(json("{'type':'ledgerClosed','ledger_index':%1,'ledger_time':0}").arg(value)),
             integer ? QStringLiteral("closed: %1, 0 transactions, at 946684800").arg(shown)
                     : QStringLiteral("nothing"));
    QCOMPARE(said(json("{'type':'ledgerClosed','ledger_index':1,'txn_count':%1,'ledger_time':0}")
                      .arg(value)),
             QStringLiteral("closed: 1, %1 transactions, at 946684800")
                 .arg(std::max<qint64>(0, integer.value_or(0))));
    QCOMPARE(said(json("{'id':%1,'result':{}}").arg(value)),
             integer == 1 ? QStringLiteral("subscribed: none") : QStringLiteral("nothing"));
}

void TestStreamReader::pastIndexes_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<std::optional<qint64>>("index");
    const auto row = [](const char *value, std::optional<qint64> index) {
        QTest::newRow(value) << json(value) << index;
    };
    row("'5'", 5);
    row("'+5'", 5);
    row("'-5'", -5);
    row("'005'", 5);
    row("5", 5);
    row("5.0", 5);
    row("true", 1);
    row("'9223372036854775807'", 9223372036854775807);
    row("'9223372036854775808'", {});
    row("9223372036854775808", {});
    row("' 5'", {});
    row("'5 '", {});
    row("'5.0'", {});
    row("'1e3'", {});
    row("'0x5'", {});
    row("''", {});
    row("'+'", {});
    row("'--5'", {});
    row("'5\\u0000'", {});
    row("'\\u0665'", {});
    row("5.5", {});
    row("1e21", {});
    row("null", {});
    row("['5']", {});
    row("{}", {});
}

void TestStreamReader::pastIndexes()
{
    QFETCH(QString, value);
    QFETCH(std::optional<qint64>, index);
    const QString text = json("{'id':1001,'result':{'ledger':{'ledger_index':%1,'close_time':0,"
                              "'transactions':[]}}}")
                             .arg(value);
    QCOMPARE(said(text), index
                             ? QStringLiteral("past: %1, 0 transactions, at 946684800").arg(*index)
                             : QStringLiteral("nothing"));
    QCOMPARE(said(beyondSimdjson(text)), said(text));
    QCOMPARE(PlainReading::of(text).says, said(text));
}

void TestStreamReader::times_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("time");
    const auto row = [](const char *value, const char *time = "") {
        QTest::newRow(value) << json(value) << QString::fromUtf8(time);
    };
    row("848519260", "1795204060");
    row("0", "946684800");
    row("-946684800", "0");
    row("0.5", "946684800.5");
    row("true", "946684801");
    row("9223372036854775808", "9.2233720378014597e+18");
    row("12345678901234567890123", "1.2345678901235514e+22");
    row("1.7976931348623157e308", "1.7976931348623157e+308");
    row("1e999");
    row("'848519260'");
    row("null");
    row("[0]");
    row("{}");
}

void TestStreamReader::times()
{
    QFETCH(QString, value);
    QFETCH(QString, time);
    const QString rest = QStringLiteral(": 1, 0 transactions, at ") + time;
    const bool none = time.isEmpty();
    QCOMPARE(said(json("{'type':'ledgerClosed','ledger_index':1,'ledger_time':%1}").arg(value)),
             none ? QStringLiteral("nothing") : QStringLiteral("closed") + rest);
    QCOMPARE(said(json("{'id':1001,'result':{'ledger':{'ledger_index':1,'transactions':[],"
                       "'close_time':%1}}}")
                      .arg(value)),
             none ? QStringLiteral("nothing") : QStringLiteral("past") + rest);
}

void TestStreamReader::membersHaveExactlyTheirNames()
{
    const QString text = json(
        "{'type':'transaction','hash':'A','ledger_index\\u0000':7,'engine_result\\u0000':'x'}");
    QCOMPARE(said(text), QStringLiteral("transaction|A|Unknown|||0"));
    QCOMPARE(said(beyondSimdjson(text)), said(text));
}

void TestStreamReader::recordings_data()
{
    QTest::addColumn<QString>("text");
    for (const char *file : {"stream.jsonl", "stream-tx_json.jsonl"}) {
        int line = 0;
        for (const QString &text : recordedTexts(file))
            QTest::addRow("%s, %d", file, ++line) << text;
    }
}

void TestStreamReader::recordings()
{
    QFETCH(QString, text);
    const PlainReading plain = PlainReading::of(text);
    QVERIFY(plain.accepted);
    QCOMPARE(said(text), plain.says);
}

TIDEWICK_TEST_MAIN(TestStreamReader)
#include "tst_streamreader.moc"
