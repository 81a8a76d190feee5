// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/terminal/TerminalFace.h"

#include "platform/text/DisplayText.h"
#include "ui/menu/MenuRows.h"
#include "ui/terminal/TerminalText.h"

#include <QStringTokenizer>

#include <sys/ioctl.h>
#include <unistd.h>

namespace tidewick {

namespace {

constexpr qsizetype longestLine = 1000;
constexpr qsizetype mostErrorLines = 500;
// The capacity of an empty pipe.
constexpr qsizetype largestError = 65536;

QString lineOf(const QString &text)
{
    return DisplayText::singleLine(DisplayText::elided(text, longestLine));
}

QList<QString> errorLines(const QString &text)
{
    QList<QString> lines;
    qsizetype size = 0;
    for (QStringView part : QStringTokenizer{QStringView(text).trimmed(), u'\n'}) {
        if (part.endsWith(u'\r'))
            part.chop(1);
        const QString line = lineOf(part.toString());
        size += line.toUtf8().size() + 2;
        if (lines.size() == mostErrorLines || size > largestError) {
            lines.append(QStringLiteral("…"));
            break;
        }
        lines.append(line);
    }
    return lines;
}

/// Title, detail, advice and figures, without the commands that follow them in a menu. Advice wraps
/// over as many lines as it needs, whereas figures are cut.
QList<LiveRow> liveRows(const NodeStatus &status, int columns)
{
    QList<LiveRow> rows;
    for (const MenuRow &row : rowsWithAdvice(status)) {
        if (row.place > MenuPlace::AfterFigures || row.place == MenuPlace::InstallNode)
            continue;
        if (row.place != MenuPlace::Advice) {
            rows.append({lineOf(row.text)});
            continue;
        }
        for (const QString &line : TerminalText::wrapped(lineOf(row.text), columns))
            rows.append({line});
    }
    rows.append({QStringLiteral("Ctrl-C quits"), true});
    return rows;
}

/// A line for a journal, and the part of it that makes it worth a new line. Advice counts only by
/// its cause: the figures in its text may change every few seconds.
struct JournalLine
{
    explicit JournalLine(const NodeStatus &status)
        : text(lineOf(summary(status))), occasion(phaseTitle(status.phase) + u'\n' + status.detail)
    {
        if (status.storage) {
            text += QStringLiteral(" · ") + lineOf(*status.storage);
            occasion += u'\n' + *status.storage;
        }
        if (status.advice)
            occasion += u'\n' + QString::number(int(status.advice->cause));
    }

    QString text;
    QString occasion;
};

bool movesCursor(int descriptor)
{
    const QByteArray kind = qgetenv("TERM");
    return ::isatty(descriptor) && !kind.isEmpty() && kind != "dumb";
}

} // namespace

TerminalFace::TerminalFace(int descriptor, QObject *parent)
    : QObject(parent), m_descriptor(descriptor), m_movesCursor(movesCursor(descriptor)),
      m_output(descriptor)
{
    connect(&m_output, &LossyOutput::ready, this, &TerminalFace::showAgain);
}

TerminalFace::~TerminalFace()
{
    if (isLive())
        m_output.write(m_rows.finish());
}

void TerminalFace::show(const NodeStatus &status)
{
    m_status = status;
    if (m_output.isClosed())
        return;
    if (m_toldError != status.errorText)
        m_toldError.reset();
    const QList<QString> error =
        status.errorText && !m_toldError ? errorLines(*status.errorText) : QList<QString>();
    if (isLive())
        showRows(error);
    else
        showLine(error);
    if (!m_missed)
        m_toldError = status.errorText;
}

/// In the background, this program leaves the terminal to the foreground program and its user.
bool TerminalFace::isLive() const
{
    if (!m_movesCursor)
        return false;
    const pid_t inFront = ::tcgetpgrp(m_descriptor);
    return inFront < 0 || inFront == ::getpgrp();
}

TerminalSize TerminalFace::size() const
{
    winsize size{};
    // Serial lines have no size and report 0.
    if (::ioctl(m_descriptor, TIOCGWINSZ, &size) != 0 || size.ws_col == 0 || size.ws_row == 0)
        return {80, 24};
    return {size.ws_col, size.ws_row};
}

void TerminalFace::showRows(const QList<QString> &error)
{
    LiveRows next = m_rows;
    const TerminalSize room = size();
    m_missed = !m_output.write(next.redraw(liveRows(m_status, room.columns), error, room));
    if (!m_missed)
        m_rows = next;
}

void TerminalFace::showLine(const QList<QString> &error)
{
    m_rows = {};
    const JournalLine line(m_status);
    QByteArray text;
    if (line.occasion != m_toldOccasion)
        text += line.text.toUtf8() + '\n';
    for (const QString &errorLine : error)
        text += errorLine.toUtf8() + '\n';
    m_missed = !m_output.write(text);
    if (!m_missed)
        m_toldOccasion = line.occasion;
}

void TerminalFace::showAgain()
{
    if (m_missed)
        show(m_status);
}

} // namespace tidewick
