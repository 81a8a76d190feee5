// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "support/Surroundings.h"
#include "ui/ledger/TypeColor.h"

using namespace tidewick;

class TestTypeColor : public QObject
{
    Q_OBJECT

private slots:
    void colors_data();
    void colors();
};

namespace {

using Color = std::array<double, 3>;

constexpr Color payment{0.27, 0.47, 0.95};
constexpr Color settings{0.55, 0.55, 0.60};
constexpr Color token{0.88, 0.36, 0.62};
constexpr Color pool{0.36, 0.40, 0.86};
constexpr Color check{0.24, 0.66, 0.36};
constexpr Color escrow{0.70, 0.48, 0.30};
constexpr Color other{0.55, 0.57, 0.64};

} // namespace

void TestTypeColor::colors_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<Color>("expected");
    const auto row = [](const char *type, const Color &color) {
        QTest::addRow("'%s'", type) << QString::fromUtf8(type) << color;
    };
    row("Payment", payment);
    row("OfferCreate", {0.16, 0.66, 0.62});
    row("OfferCancel", {0.45, 0.55, 0.62});
    row("Batch", {0.55, 0.42, 0.92});
    row("TrustSet", {0.83, 0.55, 0.20});
    for (const char *type : {"AccountSet", "SetRegularKey", "SignerListSet"})
        row(type, settings);
    for (const char *type : {"NFToken", "NFTokenMint", "NFTokenCreateOffer"})
        row(type, token);
    for (const char *type : {"AMM", "AMMDeposit", "AMMClawback"})
        row(type, pool);
    for (const char *type : {"Check", "CheckCash", "Checkmate"})
        row(type, check);
    for (const char *type : {"Escrow", "EscrowFinish", "PaymentChannel", "PaymentChannelCreate",
                             "PaymentChannelClaim"})
        row(type, escrow);
    // Full names must match in full, prefixes at the start, and case matters.
    for (const char *type : {"Unknown",
                             "",
                             "Payments",
                             "payment",
                             "PAYMENT",
                             " Payment",
                             "Payment ",
                             "PaymentChanne",
                             "OfferCreateX",
                             "Offer",
                             "BatchX",
                             "TrustSetX",
                             "AccountSetX",
                             "AccountDelete",
                             "nftokenMint",
                             "NFToke",
                             "XNFTokenMint",
                             "AMm",
                             "amm",
                             "Chec",
                             "MyCheck",
                             "Escro",
                             "MPTokenIssuanceCreate",
                             "OracleSet",
                             "Пэймент"})
        row(type, other);
}

void TestTypeColor::colors()
{
    QFETCH(QString, type);
    QFETCH(Color, expected);
    const QColor color = colorFor(type);
    const Color seen{color.redF(), color.greenF(), color.blueF()};
    for (std::size_t i = 0; i < seen.size(); ++i)
        QVERIFY(std::abs(seen.at(i) - expected.at(i)) <= 1.0 / 65535);
    QCOMPARE(color.spec(), QColor::Rgb);
    QCOMPARE(color.alpha(), 255);
}

TIDEWICK_TEST_MAIN(TestTypeColor)
#include "tst_typecolor.moc"
