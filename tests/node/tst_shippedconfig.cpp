// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "node/NodeConfig.h"
#include "node/ValidatorsFile.h"
#include "support/Surroundings.h"
#include "support/TestBundle.h"

#include <QRegularExpression>
#include <QUrl>

using namespace tidewick;

/// Tests the node configuration that a bundle ships.
class TestShippedConfig : public QObject
{
    Q_OBJECT

private slots:
    void validatorsAreUsable();
    void templateIsComplete_data();
    void templateIsComplete();
};

namespace {

/// The lines of a section of the shipped list, without comments.
QByteArrayList shippedLines(const QByteArray &section)
{
    const QByteArrayList lines = contentOf(TIDEWICK_RESOURCES "/validators.txt").split('\n');
    QByteArrayList found;
    const qsizetype begin = lines.indexOf('[' + section + ']');
    for (qsizetype at = begin + 1; begin >= 0 && at < lines.size(); ++at) {
        if (lines[at].startsWith('['))
            break;
        if (!lines[at].isEmpty() && !lines[at].startsWith('#'))
            found += lines[at];
    }
    return found;
}

} // namespace

/// A real node refuses to start with an invalid publisher key, and never validates if keys and
/// sites do not belong together.
void TestShippedConfig::validatorsAreUsable()
{
    QCOMPARE(ValidatorsFile::flaw(contentOf(TIDEWICK_RESOURCES "/validators.txt")), std::nullopt);
    const QByteArrayList keys = shippedLines("validator_list_keys");
    const QByteArrayList sites = shippedLines("validator_list_sites");
    QCOMPARE(keys.size(), 2);
    QCOMPARE(sites.size(), 2);
    static const QRegularExpression key(QStringLiteral("^ED[0-9A-F]{64}$"));
    for (const QByteArray &line : keys)
        QVERIFY2(key.match(QString::fromLatin1(line)).hasMatch(), line.constData());
    for (const QByteArray &line : sites) {
        const QUrl url(QString::fromLatin1(line), QUrl::StrictMode);
        QVERIFY2(url.isValid() && url.scheme() == u"https" && !url.host().isEmpty(),
                 line.constData());
    }
    QVERIFY(keys[0] != keys[1] && sites[0] != sites[1]);
    QCOMPARE(shippedLines("validator_list_threshold"), QByteArrayList{"0"});
}

void TestShippedConfig::templateIsComplete_data()
{
    QTest::addColumn<QByteArray>("store");
    QTest::newRow("Mossgrid") << QByteArray("Mossgrid");
    QTest::newRow("NuDB") << QByteArray("NuDB");
}

void TestShippedConfig::templateIsComplete()
{
    QFETCH(QByteArray, store);
    const TestBundle bundle;
    const TemporaryFolder folder;
    bundle.setStore(store.toStdString());
    const NodeConfig config(bundle.bundle(), Defaults(folder.path() / "settings.ini"));
    const QByteArray rendered = contentOf(config.render(folder.path()));

    for (const char *section :
         {"[server]", "[port_rpc_admin_local]", "[port_ws_admin_local]", "[node_db]",
          "[database_path]", "[debug_logfile]", "[validators_file]", "[ssl_verify]"})
        QVERIFY2(rendered.contains('\n' + QByteArray(section) + '\n'), section);
    const QByteArray data = QByteArray::fromStdString(folder.path().string());
    for (const QByteArray &line :
         {QByteArray("type = " + store), QByteArray("port = 15005"), QByteArray("port = 16006"),
          QByteArray("path = " + data + "/db" + (store == "NuDB" ? "/nudb" : "")),
          QByteArray(data + "/debug.log"), QByteArray(data + "/validators.txt")})
        QVERIFY2(rendered.contains('\n' + line + '\n'), line.constData());
    QCOMPARE(rendered.contains("round_growth_mib = 2048"), store == "Mossgrid");
    QCOMPARE(rendered.contains("online_delete"), store == "NuDB");
    QVERIFY(!rendered.contains('@'));
}

TIDEWICK_TEST_MAIN(TestShippedConfig)
#include "tst_shippedconfig.moc"
