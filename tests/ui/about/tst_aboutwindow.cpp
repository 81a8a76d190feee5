// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "node/ValidatorsFile.h"
#include "platform/files/Files.h"
#include "support/Surroundings.h"
#include "ui/FormRig.h"
#include "ui/about/AboutWindow.h"
#include "ui/about/AppIcon.h"
#include "ui/controls/VerbatimText.h"
#include "ui/icon/SvgIconEngine.h"

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QPainter>

using namespace tidewick;

class TestAboutWindow : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { QApplication::setWindowIcon({}); }
    void showsItsTexts();
    void describesAnotherStore();
    void namesTheUsersValidatorsFile();
    void showsTheVersions();
    void followsTheNode();
    void showsTheIcon();
    void iconIsWhole_data();
    void iconIsWhole();
    void worksWithoutAnIcon();
    void opensAndClosesTheDetails();
    void togglesTheDetailsByKeyboard();
    void selectsByMouse();
    void selectsByKeyboard();
    void showsTheDescriptionVerbatim();
    void showsAnEmptyDescription();
    void escapeCloses();
};

namespace {

/// A node that has not been started, and an active About window on the screen.
class AboutRig
{
public:
    explicit AboutRig(const QByteArray &buildInfo = "compiler=GNU 12\nxrpld_version=2.4.0\n")
    {
        writeFile(node.bundle().resource("build-info"), buildInfo);
        open();
    }

    void open()
    {
        window = std::make_unique<AboutWindow>(node.node(), node.bundle().bundle().version());
        showActive(*window);
    }

    QAbstractButton *disclosure() const { return button(*window, "Build details"); }
    VerbatimText *details() const { return window->findChild<VerbatimText *>(); }
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) const
    {
        QTest::keyClick(window->windowHandle(), key, modifiers);
    }

    NodeRig node;
    std::unique_ptr<AboutWindow> window;
};

} // namespace

void TestAboutWindow::showsItsTexts()
{
    AboutRig rig;
    QCOMPARE(rig.window->windowTitle(), QStringLiteral("About Tidewick"));
    QCOMPARE(rig.window->width(), 480);
    QCOMPARE(
        shownTexts(*rig.window),
        QStringList(
            {QStringLiteral("Tidewick"), QStringLiteral("Version development build · node 2.4.0"),
             QStringLiteral("A full XRP Ledger node in your menu bar. It follows the ledger as it "
                            "closes, checks each one against the network's trusted validators, "
                            "and keeps the whole current ledger on your Mac."),
             QStringLiteral("How it stays small"),
             QStringLiteral("Every storage engine trades between three things: how fast it reads, "
                            "how much RAM it needs, and how much disk it takes. Make two of them "
                            "cheap and the third usually pays."),
             QStringLiteral("Tidewick runs on Mossgrid, an experimental storage engine built for "
                            "it. Mossgrid picks fast reads and low RAM, and spends a little extra "
                            "disk: new ledger data goes on the end of the store, and the node "
                            "trims it back in the background, without stopping."),
             QStringLiteral("This node now"), QStringLiteral("Memory"), QStringLiteral("–"),
             QStringLiteral("Store"), QStringLiteral("– · –")}));
    QVERIFY(!rig.details()->isVisible());
    QVERIFY(!rig.disclosure()->isChecked());
}

void TestAboutWindow::describesAnotherStore()
{
    const AboutRig rig("compiler=GNU 12\nstore=NuDB\n");
    const QString texts = shownTexts(*rig.window).join(u'\n');
    QVERIFY2(texts.contains(QLatin1String("trimmed by age")), qPrintable(texts));
    QVERIFY2(!texts.contains(QLatin1String("Mossgrid")), qPrintable(texts));
}

void TestAboutWindow::namesTheUsersValidatorsFile()
{
    const std::filesystem::path file = ValidatorsFile::path();
    std::filesystem::create_directories(file.parent_path());
    writeFile(file, "");
    const AboutRig rig("compiler=GNU 12\n");
    std::filesystem::remove(file);
    QCOMPARE(rig.details()->toPlainText(),
             QStringLiteral("compiler=GNU 12\nvalidators=%1").arg(Files::display(file)));
}

void TestAboutWindow::showsTheVersions()
{
    AboutRig rig;
    writeFile(rig.node.bundle().path() / "Contents" / "Info.plist",
              "<plist><dict><key>CFBundleShortVersionString</key>"
              "<string>1.0.0</string></dict></plist>");
    rig.open();
    QCOMPARE(shownTexts(*rig.window).at(1), QStringLiteral("Version 1.0.0 · node 2.4.0"));
    writeFile(rig.node.bundle().resource("build-info"), "compiler=GNU 12\n");
    rig.open();
    QCOMPARE(shownTexts(*rig.window).at(1), QStringLiteral("Version 1.0.0"));
}

void TestAboutWindow::followsTheNode()
{
    AboutRig rig;
    QVERIFY(rig.node.startUntil(Phase::Full));
    const NodeStatus &status = rig.node.status();
    QVERIFY(status.memory != NodeStatus::unknown());
    QVERIFY(status.freeSpace != NodeStatus::unknown());
    const QStringList texts = shownTexts(*rig.window);
    QCOMPARE(texts.at(texts.indexOf(QStringLiteral("Memory")) + 1), status.memory);
    QCOMPARE(texts.at(texts.indexOf(QStringLiteral("Store")) + 1),
             status.storeSize + QStringLiteral(" · ") + status.freeSpace);
}

void TestAboutWindow::showsTheIcon()
{
    // Surrounded by empty space, as icons usually are.
    QPixmap picture(256, 256);
    picture.fill(Qt::transparent);
    QPainter(&picture).fillRect(32, 32, 192, 192, Qt::red);
    QApplication::setWindowIcon(picture);
    AboutRig rig;
    auto *icon = rig.window->findChild<AppIcon *>();
    QVERIFY(icon);
    QCOMPARE(icon->size(), QSize(64, 64));
    const QImage drawn = icon->grab().toImage();
    QCOMPARE(drawn.pixelColor(1, 1), QColor(Qt::red));
    QCOMPARE(drawn.pixelColor(62, 62), QColor(Qt::red));
}

void TestAboutWindow::iconIsWhole_data()
{
    QTest::addColumn<double>("ratio");
    QTest::addColumn<int>("margin");
    for (const double ratio : {1.0, 1.25, 1.5, 1.75, 2.0})
        for (const int margin : {0, 19, 32})
            QTest::addRow("%g, %d", ratio, margin) << ratio << margin;
}

/// At every device pixel ratio, its frame is equally thick at all four sides.
void TestAboutWindow::iconIsWhole()
{
    QFETCH(double, ratio);
    QFETCH(int, margin);
    const QString drawing =
        QStringLiteral("<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 256 256'>"
                       "<rect x='%1' y='%1' width='%2' height='%2' fill='blue'/>"
                       "<rect x='%3' y='%3' width='%4' height='%4' fill='red'/></svg>")
            .arg(margin)
            .arg(256 - 2 * margin)
            .arg(margin + 16)
            .arg(256 - 2 * margin - 32);
    const TemporaryFolder folder;
    writeFile(folder.path() / "icon.svg", drawing.toUtf8());
    auto *engine = new SvgIconEngine;
    engine->addFile(Files::display(folder.path() / "icon.svg"), {}, QIcon::Normal, QIcon::Off);
    QApplication::setWindowIcon(QIcon(engine));
    AboutRig rig;
    auto *icon = rig.window->findChild<AppIcon *>();
    QVERIFY(icon);
    QImage drawn((QSizeF(icon->size()) * ratio).toSize(), QImage::Format_ARGB32);
    drawn.setDevicePixelRatio(ratio);
    drawn.fill(Qt::white);
    icon->render(&drawn);
    const int last = drawn.width() - 1;
    const int middle = drawn.width() / 2;
    const auto thickness = [&](const QPoint &start, const QPoint &step) {
        int pixels = 0;
        for (QPoint at = start; drawn.pixelColor(at).blue() > 127; at += step)
            ++pixels;
        return pixels;
    };
    const QList<int> sides{thickness({0, middle}, {1, 0}), thickness({last, middle}, {-1, 0}),
                           thickness({middle, 0}, {0, 1}), thickness({middle, last}, {0, -1})};
    const auto [least, most] = std::minmax_element(sides.begin(), sides.end());
    QVERIFY2(*most - *least <= 1, qPrintable(QStringLiteral("%1 to %2").arg(*least).arg(*most)));
    QVERIFY(*least >= int(64 * ratio * 16 / 256));
}

void TestAboutWindow::worksWithoutAnIcon()
{
    AboutRig rig;
    QVERIFY(!rig.window->findChild<AppIcon *>());
    QCOMPARE(shownTexts(*rig.window).constFirst(), QStringLiteral("Tidewick"));
}

void TestAboutWindow::opensAndClosesTheDetails()
{
    AboutRig rig;
    const int height = rig.window->height();
    QTest::mouseClick(rig.disclosure(), Qt::LeftButton);
    QVERIFY(rig.details()->isVisible());
    QVERIFY(rig.window->height() > height + 20);
    // The window shows them completely.
    const QRect place(rig.details()->mapTo(rig.window.get(), QPoint()), rig.details()->size());
    QVERIFY(rig.window->rect().contains(place));
    QCOMPARE(rig.details()->height(), rig.details()->heightForWidth(rig.details()->width()));
    QTest::mouseClick(rig.disclosure(), Qt::LeftButton);
    QVERIFY(!rig.details()->isVisible());
    QCOMPARE(rig.window->height(), height);
}

void TestAboutWindow::togglesTheDetailsByKeyboard()
{
    AboutRig rig;
    rig.key(Qt::Key_Tab);
    QCOMPARE(rig.window->focusWidget(), rig.disclosure());
    rig.key(Qt::Key_Right);
    QVERIFY(rig.details()->isVisible());
    rig.key(Qt::Key_Left);
    QVERIFY(!rig.details()->isVisible());
    rig.key(Qt::Key_Space);
    QVERIFY(rig.details()->isVisible());
    rig.key(Qt::Key_Return);
    QVERIFY(!rig.details()->isVisible());
    auto *accessible = QAccessible::queryAccessibleInterface(rig.disclosure());
    QCOMPARE(accessible->text(QAccessible::Name), QStringLiteral("Build details"));
    QCOMPARE(accessible->role(), QAccessible::Button);
    QVERIFY(accessible->state().expandable && accessible->state().collapsed);
    accessible->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    QVERIFY(rig.details()->isVisible());
    QVERIFY(accessible->state().expanded && !accessible->state().collapsed);
}

void TestAboutWindow::selectsByMouse()
{
    AboutRig rig;
    rig.disclosure()->click();
    QWidget *text = rig.details()->viewport();
    const QPoint start = rig.details()->cursorRect().center();
    QTest::mousePress(text, Qt::LeftButton, {}, start);
    QTest::mouseMove(text, QPoint(text->width() - 20, start.y()));
    QTest::mouseRelease(text, Qt::LeftButton, {}, QPoint(text->width() - 20, start.y()));
    QCOMPARE(rig.details()->textCursor().selectedText(), QStringLiteral("compiler=GNU 12"));
    rig.key(Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(QApplication::clipboard()->text(), QStringLiteral("compiler=GNU 12"));
}

void TestAboutWindow::selectsByKeyboard()
{
    AboutRig rig;
    rig.key(Qt::Key_Tab);
    rig.key(Qt::Key_Space);
    rig.key(Qt::Key_Tab);
    QCOMPARE(rig.window->focusWidget(), rig.details());
    rig.key(Qt::Key_End, Qt::ShiftModifier);
    QCOMPARE(rig.details()->textCursor().selectedText(), QStringLiteral("compiler=GNU 12"));
    rig.key(Qt::Key_A, Qt::ControlModifier);
    rig.key(Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(QApplication::clipboard()->text(),
             QStringLiteral("compiler=GNU 12\nxrpld_version=2.4.0"));
    // The text is read-only, and Tab moves the focus out of it.
    rig.key(Qt::Key_X);
    QCOMPARE(rig.details()->toPlainText(), QStringLiteral("compiler=GNU 12\nxrpld_version=2.4.0"));
    rig.key(Qt::Key_Tab);
    QCOMPARE(rig.window->focusWidget(), rig.disclosure());
}

void TestAboutWindow::showsTheDescriptionVerbatim()
{
    const QByteArray text = "<b>not bold</b>\n\n  a = b  \n" + QByteArray(200, 'w');
    AboutRig rig(text + '\n');
    rig.disclosure()->click();
    QCOMPARE(rig.details()->toPlainText().toUtf8(), text);
    // Lines wider than the window are wrapped.
    QCOMPARE(rig.window->width(), 480);
    QCOMPARE(rig.details()->height(), rig.details()->heightForWidth(rig.details()->width()));
    QVERIFY(rig.details()->height() > 6 * rig.details()->fontMetrics().height());
}

void TestAboutWindow::showsAnEmptyDescription()
{
    AboutRig rig("");
    QCOMPARE(shownTexts(*rig.window).at(1), QStringLiteral("Version development build"));
    rig.disclosure()->click();
    QCOMPARE(rig.details()->toPlainText(), QString());
}

void TestAboutWindow::escapeCloses()
{
    AboutRig rig;
    rig.disclosure()->click();
    for (QWidget *widget :
         std::initializer_list<QWidget *>{rig.window.get(), rig.disclosure(), rig.details()}) {
        showActive(*rig.window);
        widget->setFocus();
        rig.key(Qt::Key_Escape);
        QVERIFY(!rig.window->isVisible());
    }
}

TIDEWICK_LOOPBACK_GUI_TEST_MAIN(TestAboutWindow)
#include "tst_aboutwindow.moc"
