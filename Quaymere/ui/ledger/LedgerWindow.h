// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "feed/LedgerFeed.h"
#include "ui/controls/Scheme.h"
#include "ui/ledger/LedgerAge.h"
#include "ui/ledger/LedgerCard.h"

#include <QUrl>

class QLabel;

namespace tidewick {

class Announcer;
class LedgerHeader;
class LedgerHistogram;
class LedgerTile;
class LedgerTypes;
class TransactionCard;

/// Shows the node's ledgers and transactions live. It has its own feed, which runs while the window
/// is shown. When the stream is lost, the figures fade until the next ledger arrives, and the
/// header says how old they are. Main thread only.
class LedgerWindow final : public QWidget
{
    Q_OBJECT

public:
    using OpenUrl = std::function<bool(const QUrl &)>;

    /// Opens pages of the explorer through openUrl.
    explicit LedgerWindow(OpenUrl openUrl, LedgerFeedHost host = {}, QWidget *parent = nullptr);
    ~LedgerWindow() override;

    /// Sets the colours; light ones are the default.
    void setScheme(Scheme scheme);

    /// Sets whether nothing may move by itself.
    void setStill(bool still);

protected:
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void followLedgers();
    void followConnection();
    void followAge();
    void open(const char *folder, const QString &name) const;

    void fit();
    void arrange();
    void takeColors();

    OpenUrl m_openUrl;
    LedgerAge m_age;
    LedgerFeed m_feed;
    LedgerLook m_look;
    Scheme m_scheme;

    LedgerHeader *m_header;
    LedgerTile *m_latest;
    LedgerTile *m_rate;
    LedgerTile *m_busiest;
    LedgerHistogram *m_histogram;
    LedgerTypes *m_types;
    TransactionCard *m_transactions;
    QLabel *m_footnote;
    Announcer *m_announcer;
};

} // namespace tidewick
