// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/dialogs/ErrorAlert.h"

#include "ui/controls/TextScale.h"

#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>
#include <QStyle>
#include <QVBoxLayout>

namespace tidewick {

namespace {

// In characters of the text: narrower looks cramped, wider is hard to read.
constexpr int leastColumns = 44;
constexpr qsizetype mostColumns = 110;
constexpr int leastLines = 3;
/// The fraction of the screen that the text may occupy.
constexpr double mostOfScreen = 0.6;
/// Longer texts are cut off here. An error's text is far shorter unless something is broken.
constexpr qsizetype mostCharacters = 200'000;

} // namespace

ErrorAlert::ErrorAlert(QWidget *parent) : QDialog(parent), m_text(new QPlainTextEdit(this))
{
    setWindowTitle(QStringLiteral("Tidewick"));
    setAttribute(Qt::WA_DeleteOnClose);

    auto *icon = new QLabel(this);
    const int iconSize = style()->pixelMetric(QStyle::PM_MessageBoxIconSize);
    icon->setPixmap(style()->standardIcon(QStyle::SP_MessageBoxCritical).pixmap(iconSize));

    auto *title = new QLabel(QStringLiteral("Node error"), this);
    title->setTextFormat(Qt::PlainText);
    QFont titleFont = title->font();
    titleFont.setBold(true);
    titleFont.setPointSizeF(titleFont.pointSizeF() * 1.15);
    title->setFont(titleFont);
    const int overhang = TextScale::overhang(titleFont);
    title->setContentsMargins(0, overhang, 0, overhang);

    m_text->setReadOnly(true);
    m_text->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    m_text->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    m_text->setAccessibleName(title->text());
    m_text->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored); // fitToText() sets the size

    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);

    auto *header = new QHBoxLayout;
    header->addWidget(icon);
    header->addSpacing(4);
    header->addWidget(title, 1);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(20, 20, 20, 16);
    layout->setSpacing(14);
    layout->addLayout(header);
    layout->addWidget(m_text, 1);
    layout->addWidget(buttons);
    buttons->button(QDialogButtonBox::Ok)->setFocus();
}

void ErrorAlert::setText(const QString &text)
{
    const QString shown = text.left(mostCharacters);
    m_text->setPlainText(shown);
    fitToText(shown);
}

void ErrorAlert::fitToText(const QString &text)
{
    qsizetype columns = leastColumns;
    qsizetype lines = 0;
    for (const QStringView line : QStringTokenizer(text, u'\n')) {
        columns = std::max(columns, line.size());
        lines += 1 + line.size() / mostColumns;
    }
    // A little more than needed, so that no scroll bar appears and takes up room itself.
    columns += 2;
    lines += 1;
    const QFontMetrics metrics(m_text->font());
    const int frame = 2 * (m_text->frameWidth() + int(m_text->document()->documentMargin()))
                      + style()->pixelMetric(QStyle::PM_ScrollBarExtent);
    const QSize whole(metrics.horizontalAdvance(QString(std::min(columns, mostColumns), u'x')),
                      metrics.lineSpacing() * int(std::clamp<qsizetype>(lines, leastLines, 1000)));
    const QSize most = screen()->availableSize() * mostOfScreen;
    m_text->setMinimumSize((whole + QSize(frame, frame)).boundedTo(most));
    adjustSize();
    m_text->setMinimumSize(metrics.averageCharWidth() * leastColumns / 2,
                           metrics.lineSpacing() * 3);
}

} // namespace tidewick
