// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ui/controls/PushButton.h"

namespace tidewick {

class Announcer;

/// A line of text that expands and collapses the content below it; checked while expanded.
class Disclosure final : public PushButton
{
    Q_OBJECT

public:
    Disclosure(const QString &text, QWidget *parent);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    Announcer *m_announcer;
};

} // namespace tidewick
