// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QWidget>

class QScrollArea;

namespace tidewick {

/// A window as large as its content, which scrolls where the screen is too low for it. The content
/// says its height by heightForWidth(). Main thread only.
class FittedWindow : public QWidget
{
    Q_OBJECT

public:
    /// As it is at first, the window is no larger than its screen. A picture of it may be.
    void setBoundByScreen(bool bound);

protected:
    /// Whoever derives from it calls fit() when the content is there.
    FittedWindow(QWidget *content, QWidget *parent);

    /// To be called when the size of the content may have changed.
    void fit();

    /// Scrolls to where this part of the content can be seen.
    void ensureVisible(QWidget *part);

    /// The width in which the content is shown, where the screen is that wide.
    virtual int wantedWidth() const = 0;

    /// Gives the content that width, and the height that it takes in it.
    virtual void fitContent(int width);

    void showEvent(QShowEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void followScreen();
    void fillWindow();

    QScrollArea *m_area;
    QWidget *m_content;
    bool m_isBoundByScreen = true;
    QMetaObject::Connection m_screenChange;
};

} // namespace tidewick
