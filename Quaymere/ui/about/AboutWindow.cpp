// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/about/AboutWindow.h"

#include "node/BuildInfo.h"
#include "node/ValidatorsFile.h"
#include "platform/files/Files.h"
#include "ui/about/AppIcon.h"
#include "ui/about/VersionLine.h"
#include "ui/controls/Card.h"
#include "ui/controls/ControlMetrics.h"
#include "ui/controls/Disclosure.h"
#include "ui/controls/TextLabel.h"
#include "ui/controls/VerbatimText.h"

#include <QGridLayout>
#include <QVBoxLayout>

namespace tidewick {

namespace {

constexpr int windowWidth = 480;
constexpr int sideMargin = 26;
constexpr int topMargin = 24;
constexpr int iconGap = 16;
constexpr int belowHeader = 18;
constexpr int belowHeadline = 6;
constexpr int betweenParagraphs = 9;
constexpr int betweenBlocks = 15;
constexpr int aboveDetails = 12;
constexpr int cardMargin = 10;
constexpr int nameWidth = 79;

/// Returns a line in the format of the build description if the user has a validators file, so that
/// the node trusts other validators than those it was built for.
QString ownValidators()
{
    const std::filesystem::path file = ValidatorsFile::path();
    std::error_code error;
    if (!std::filesystem::exists(file, error))
        return {};
    return QStringLiteral("validators=%1\n").arg(Files::display(file));
}

} // namespace

AboutWindow::AboutWindow(NodeController &node, const std::optional<QString> &version,
                         QWidget *parent)
    : CardWindow(QStringLiteral("About Tidewick"), windowWidth, parent), m_node(node)
{
    const QString buildInfo = node.config().buildInfo();
    setMargins(sideMargin, topMargin, topMargin);
    makeHeader(versionLine(version, buildInfo));
    makeTexts(BuildInfo::hasMossgrid(buildInfo));
    makeFigures();
    makeBuildDetails(buildInfo + ownValidators());
    connect(&m_node, &NodeController::statusChanged, this, &AboutWindow::followNode);
    followNode();
    fit();
}

void AboutWindow::makeHeader(const QString &versionLine)
{
    auto *names = new QVBoxLayout;
    names->setSpacing(points(3));
    names->addStretch();
    names->addWidget(new TextLabel(TextLabel::Look::Title, QStringLiteral("Tidewick"), form()));
    names->addWidget(new TextLabel(TextLabel::Look::Subtitle, versionLine, form()));
    names->addStretch();
    auto *header = new QHBoxLayout;
    header->setSpacing(points(iconGap));
    if (AppIcon::isThere())
        header->addWidget(new AppIcon(form()), 0, Qt::AlignTop);
    header->addLayout(names, 1);
    column().addLayout(header);
}

void AboutWindow::makeTexts(bool hasMossgrid)
{
    using Look = TextLabel::Look;
    addText(Look::Paragraph,
            QStringLiteral("A full XRP Ledger node in your menu bar. It follows the ledger as it "
                           "closes, checks each one against the network's trusted validators, and "
                           "keeps the whole current ledger on your Mac."),
            belowHeader);
    addText(Look::Headline, QStringLiteral("How it stays small"), betweenBlocks);
    addText(Look::Paragraph,
            QStringLiteral("Every storage engine trades between three things: how fast it reads, "
                           "how much RAM it needs, and how much disk it takes. Make two of them "
                           "cheap and the third usually pays."),
            belowHeadline);
    const QString mossgrid =
        QStringLiteral("Tidewick runs on Mossgrid, an experimental storage engine built for "
                       "it. Mossgrid picks fast reads and low RAM, and spends a little extra "
                       "disk: new ledger data goes on the end of the store, and the node trims "
                       "it back in the background, without stopping.");
    const QString nudb =
        QStringLiteral("This node's storage engine is NuDB, which is trimmed by age: once there "
                       "are 1,024 ledgers more than it has to keep, the node deletes the oldest "
                       "in the background, without stopping.");
    addText(Look::Paragraph, hasMossgrid ? mossgrid : nudb, betweenParagraphs);
}

void AboutWindow::makeFigures()
{
    Card *card = addCard(QStringLiteral("This node now"), betweenBlocks);
    auto *figures = new QWidget(card);
    auto *grid = new QGridLayout(figures);
    grid->setContentsMargins(points(ControlMetrics::rowPadding), points(cardMargin),
                             points(ControlMetrics::rowPadding), points(cardMargin));
    grid->setVerticalSpacing(points(6));
    grid->setHorizontalSpacing(points(ControlMetrics::rowGap));
    grid->setColumnMinimumWidth(0, points(nameWidth));
    grid->setColumnStretch(1, 1);
    const auto add = [&](const QString &name) {
        auto *label = new TextLabel(TextLabel::Look::Name, name, figures);
        auto *figure = new TextLabel(TextLabel::Look::Figure, {}, figures);
        label->setBuddy(figure);
        const int row = grid->rowCount();
        grid->addWidget(label, row, 0, Qt::AlignTop);
        grid->addWidget(figure, row, 1, Qt::AlignTop);
        return figure;
    };
    m_memory = add(QStringLiteral("Memory"));
    m_store = add(QStringLiteral("Store"));
    card->add(figures);
}

void AboutWindow::makeBuildDetails(const QString &buildInfo)
{
    const QString title = QStringLiteral("Build details");
    m_disclosure = new Disclosure(title, form());
    m_details = new VerbatimText(title, buildInfo, form());
    m_details->hide();
    connect(m_disclosure, &Disclosure::toggled, this, &AboutWindow::openDetails);
    column().addSpacing(points(aboveDetails));
    column().addWidget(m_disclosure, 0, Qt::AlignLeft);
    column().addWidget(m_details);
}

void AboutWindow::followNode()
{
    const NodeStatus &status = m_node.status();
    m_memory->setWholeText(status.memory);
    m_store->setWholeText(status.storeSize + QStringLiteral(" · ") + status.freeSpace);
}

void AboutWindow::openDetails(bool open)
{
    m_details->setVisible(open);
    fit();
    if (open)
        ensureVisible(m_details);
}

} // namespace tidewick
