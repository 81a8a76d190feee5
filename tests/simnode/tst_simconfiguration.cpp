// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "simnode/ConfigurationText.h"
#include "simnode/NodeConfiguration.h"
#include "support/Surroundings.h"
#include "support/TestFiles.h"

using namespace tidewick;
using namespace tidewick::sim;
namespace fs = std::filesystem;

namespace {

constexpr const char *plain = "[server]\n"
                              "port_rpc\n"
                              "port_ws\n"
                              "[port_rpc]\n"
                              "ip = 127.0.0.1\n"
                              "port = 15005\n"
                              "protocol = http\n"
                              "[port_ws]\n"
                              "ip=127.0.0.1\n"
                              "port=16006\n"
                              "protocol=ws\n"
                              "[node_db]\n"
                              "type = Mossgrid\n"
                              "path = db\n"
                              "round_growth_mib = 512\n"
                              "[debug_logfile]\n"
                              "debug.log\n"
                              "[validators_file]\n"
                              "validators.txt\n";

} // namespace

class TestSimConfiguration : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void sections_data();
    void sections();
    void readsThePlainOne();
    void readsTheShippedTemplate();
    void cutsPaths_data();
    void cutsPaths();
    void accepts_data();
    void accepts();
    void refuses_data();
    void refuses();
    void needsTheFile();
    void validators_data();
    void validators();

private:
    fs::path file() const { return m_folder.path() / "xrpld.cfg"; }
    NodeConfiguration read(const QByteArray &text) const;

    TemporaryFolder m_folder;
};

void TestSimConfiguration::init()
{
    writeFile(m_folder.path() / "validators.txt", "[validators]\n");
}

NodeConfiguration TestSimConfiguration::read(const QByteArray &text) const
{
    writeFile(file(), text);
    return NodeConfiguration::read(file());
}

void TestSimConfiguration::sections_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArrayList>("lines");

    const auto row = [](const char *name, const QByteArray &text, const QByteArrayList &lines) {
        QTest::newRow(name) << text << lines;
    };
    row("none", "", {});
    row("no heading", "one\n", {});
    row("another heading", "[other]\none\n", {});
    row("lines", "[a]\none\ntwo\n", {"one", "two"});
    row("no line feed at the end", "[a]\none", {"one"});
    row("CR LF", "[a]\r\none\r\ntwo\r\n", {"one", "two"});
    row("surrounding whitespace", " [a] \n\t one two \n", {"one two"});
    row("empty lines and comments", "# x\n[a]\n\n# y\n  # z\none\n", {"one"});
    row("comments at line ends", "[a] # x\none # y\ntwo#z\nthree ## = #\n",
        {"one", "two", "three"});
    row("backslash", "[a]\none\\# x\n\\#two\n", {"one\\", "\\"});
    row("heading cut by a comment", "[a]\none\n[b#]\ntwo\n", {"one", "[b", "two"});
    row("continued", "[a]\none\n[b]\nthree\n[a]\ntwo\n", {"one", "two"});
    row("empty section", "[a]\n[b]\none\n", {});
}

void TestSimConfiguration::sections()
{
    QFETCH(QByteArray, text);
    QFETCH(QByteArrayList, lines);
    ConfigurationText::Sections sections = ConfigurationText::sections(text);
    QCOMPARE(sections["a"], lines);
}

void TestSimConfiguration::readsThePlainOne()
{
    const NodeConfiguration configuration = read(plain);
    QCOMPARE(configuration.ports.size(), std::size_t{2});
    QCOMPARE(configuration.ports[0].name, QStringLiteral("port_rpc"));
    QCOMPARE(configuration.ports[0].address, QHostAddress(QHostAddress::LocalHost));
    QCOMPARE(configuration.ports[0].number, quint16{15005});
    QCOMPARE(configuration.ports[0].protocol, PortConfiguration::Protocol::Http);
    QCOMPARE(configuration.ports[1].number, quint16{16006});
    QCOMPARE(configuration.ports[1].protocol, PortConfiguration::Protocol::WebSocket);
    QCOMPARE(configuration.store, NodeConfiguration::Store::Mossgrid);
    QCOMPARE(configuration.storePath, m_folder.path() / "db");
    QCOMPARE(configuration.databasePath, fs::path());
    QCOMPARE(configuration.debugLog, m_folder.path() / "debug.log");
    QCOMPARE(configuration.roundGrowthBytes, 512LL * 1024 * 1024);
    QCOMPARE(configuration.nodeSize, QStringLiteral("tiny"));
}

void TestSimConfiguration::readsTheShippedTemplate()
{
    const fs::path resources(TIDEWICK_RESOURCES);
    QByteArray text = contentOf(resources / "xrpld.cfg.in");
    text.replace("@NODE_DB@", contentOf(resources / "node_db.NuDB.in"));
    text.replace("@ROUND_GROWTH_MIB@", "2048");
    text.replace("@DATA_DIR@", QByteArray::fromStdString(m_folder.path().string()));

    const NodeConfiguration configuration = read(text);
    QCOMPARE(configuration.ports.size(), std::size_t{2});
    QCOMPARE(configuration.store, NodeConfiguration::Store::NuDB);
    QCOMPARE(configuration.storePath, m_folder.path() / "db/nudb");
    QCOMPARE(configuration.databasePath, m_folder.path() / "db");
    QCOMPARE(configuration.nodeSize, QStringLiteral("small"));
}

void TestSimConfiguration::cutsPaths_data()
{
    QTest::addColumn<QByteArray>("written");
    QTest::addColumn<QString>("read");
    QTest::newRow("no comment") << QByteArray("data 1/db") << QStringLiteral("data 1/db");
    QTest::newRow("hash") << QByteArray("data#1/db") << QStringLiteral("data");
    QTest::newRow("hash after a space") << QByteArray("data #1/db") << QStringLiteral("data");
    QTest::newRow("backslash") << QByteArray("data\\#1/db") << QStringLiteral("data\\");
}

void TestSimConfiguration::cutsPaths()
{
    QFETCH(QByteArray, written);
    QFETCH(QString, read);
    QByteArray text = plain;
    text.replace("path = db", "path = " + written);
    text.replace("debug.log", written);
    const NodeConfiguration configuration = this->read(text);
    QCOMPARE(configuration.storePath, m_folder.path() / read.toStdString());
    QCOMPARE(configuration.debugLog, m_folder.path() / read.toStdString());
}

void TestSimConfiguration::accepts_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("after");

    QTest::newRow("unknown sections") << QByteArray("[server]") << QByteArray("[x]\n1\n[server]");
    QTest::newRow("CR LF") << QByteArray("\n") << QByteArray("\r\n");
    QTest::newRow("lower case") << QByteArray("Mossgrid") << QByteArray("mossgrid");
    QTest::newRow("IPv6 loopback") << QByteArray("127.0.0.1") << QByteArray("::1");
    QTest::newRow("no growth") << QByteArray("round_growth_mib = 512\n") << QByteArray();
    QTest::newRow("odd growth") << QByteArray("512") << QByteArray("much");
    QTest::newRow("no validators")
        << QByteArray("[validators_file]\nvalidators.txt\n") << QByteArray();
    QTest::newRow("no log") << QByteArray("[debug_logfile]\ndebug.log\n") << QByteArray();
}

void TestSimConfiguration::accepts()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, after);
    const NodeConfiguration configuration = read(QByteArray(plain).replace(before, after));
    QCOMPARE(configuration.ports.size(), std::size_t{2});
    QVERIFY(configuration.roundGrowthBytes > 0);
}

void TestSimConfiguration::refuses_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("after");
    QTest::addColumn<bool>("aborts");

    const auto row = [](const char *name, const char *before, const char *after, bool aborts) {
        QTest::newRow(name) << QByteArray(before) << QByteArray(after) << aborts;
    };
    row("no server", "[server]", "[sever]", false);
    row("empty server", "port_rpc\nport_ws\n", "", false);
    row("missing port section", "[port_ws]", "[port_web]", false);
    row("port 0", "15005", "0", false);
    row("port too high", "15005", "65536", false);
    row("port a word", "15005", "http", false);
    row("no port", "port = 15005\n", "", false);
    row("bad address", "ip = 127.0.0.1", "ip = here", false);
    row("no address", "ip = 127.0.0.1\n", "", false);
    row("all addresses", "ip = 127.0.0.1", "ip = 0.0.0.0", false);
    row("another address", "ip = 127.0.0.1", "ip = 192.168.1.1", false);
    row("unknown protocol", "protocol = http", "protocol = gopher", false);
    row("no protocol", "protocol = http\n", "", false);
    row("validators missing", "validators.txt", "nobody.txt", false);
    row("unknown store", "Mossgrid", "Rocks", true);
    row("no store type", "type = Mossgrid\n", "", true);
    row("no store", "[node_db]", "[node]", true);
    row("no store path", "path = db\n", "", true);
}

void TestSimConfiguration::refuses()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, after);
    QFETCH(bool, aborts);
    const QByteArray text = QByteArray(plain).replace(before, after);
    QVERIFY(text != plain);
    try {
        read(text);
        QFAIL("The configuration was accepted");
    } catch (const ConfigurationError &error) {
        QCOMPARE(error.reaction() == ConfigurationError::Reaction::Abort, aborts);
        QVERIFY(!QByteArray(error.what()).contains('\n'));
    }
}

void TestSimConfiguration::needsTheFile()
{
    for (const fs::path &missing : {m_folder.path() / "none.cfg", m_folder.path()}) {
        try {
            NodeConfiguration::read(missing);
            QFAIL("The configuration was accepted");
        } catch (const ConfigurationError &error) {
            QCOMPARE(error.reaction(), ConfigurationError::Reaction::Abort);
        }
    }
}

void TestSimConfiguration::validators_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<bool>("accepted");

    QTest::newRow("validators") << QByteArray("[validators]\n") << true;
    const QByteArray key = "ED" + QByteArray(64, '7');
    const auto keys = [](const char *name, const QByteArray &lines, bool accepted) {
        QTest::newRow(name) << "[validator_list_keys]\n" + lines + '\n' << accepted;
    };
    keys("list key", key, true);
    keys("list key in lower case", key.toLower(), true);
    keys("two list keys", key + '\n' + key, true);
    keys("second list key damaged", key + "\nED77", false);
    keys("list key too short", key.chopped(1), false);
    keys("list key too long", key + '7', false);
    keys("list key of another kind", "02" + key.mid(2), false);
    keys("list key with an invalid digit", key.chopped(1) + 'G', false);
    keys("list key with trailing text", key + " mine", false);
    keys("list key with a comment", key + " # mine", true);
    QTest::newRow("sites only") << QByteArray("[validator_list_sites]\nhttps://x\n") << false;
    QTest::newRow("empty") << QByteArray() << false;
}

void TestSimConfiguration::validators()
{
    QFETCH(QByteArray, text);
    QFETCH(bool, accepted);
    writeFile(m_folder.path() / "validators.txt", text);
    bool read = true;
    try {
        this->read(plain);
    } catch (const ConfigurationError &error) {
        QCOMPARE(error.reaction(), ConfigurationError::Reaction::Refusal);
        read = false;
    }
    QCOMPARE(read, accepted);
}

TIDEWICK_TEST_MAIN(TestSimConfiguration)
#include "tst_simconfiguration.moc"
