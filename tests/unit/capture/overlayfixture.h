#pragma once

#include "capture/captureoverlay.h"
#include "config/applicationrecord.h"
#include "fakedesktop.h"
#include "testmain.h"

#include <QBackingStore>
#include <QContextMenuEvent>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QMenu>
#include <QMouseEvent>
#include <QTemporaryDir>
#include <QTimer>

#include <functional>
#include <memory>

/// An overlay over a fake desktop of two windows. Everything is told in device pixels of the
/// overlay, so the same rows hold at every scale and in however many panes.
class OverlayTest : public QObject
{
protected:
    void begin(const QList<QRect> &screens)
    {
        m_overlay.reset();
        m_desktop = std::make_unique<FakeDesktop>();
        m_desktop->screens->list = screens;
        m_desktop->ownWindows->paneEach = hasPanes();
        m_desktop->windows->list = {
            {.entry = {.number = 2, .bounds = {-50, 60, 301, 151}}, .color = QColor(0, 160, 255)},
            {.entry = {.number = 1, .bounds = {-600, 0, 1200, 450}}, .color = QColor(200, 40, 7)}};
    }
    /// Settings of its own, which are empty.
    void beginSettings()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        g_ResourceFileName = m_folder->filePath(QStringLiteral("SnapWorkbench.xml"));
        QFile file(g_ResourceFileName);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("<Galeway ver=\"1\"/>");
    }
    static bool hasPanes() { return QGuiApplication::screens().size() > 1; }
    template<typename Overlay, typename... Arguments> Overlay &open(const Arguments &...arguments)
    {
        auto overlay = std::make_unique<Overlay>(arguments...);
        Overlay &result = *overlay;
        m_overlay = std::move(overlay);
        m_overlay->show();
        [[maybe_unused]] const bool exposed = QTest::qWaitForWindowExposed(m_overlay.get());
        return result;
    }
    QWidget *surface() const { return m_overlay->findChild<QWidget *>(QStringLiteral("widget")); }
    QString text(const QString &label) const
    {
        return m_overlay->findChild<QLabel *>(label)->text();
    }
    /// Moves the pointer there and sends the event, while a button is down to the pane that heard
    /// the press, as window systems do.
    void mouse(QEvent::Type type, QPoint pixel, Qt::MouseButtons buttons,
               Qt::MouseButton button = Qt::LeftButton)
    {
        m_desktop->hands->pointerPos = m_overlay->area().topLeft() + pixel;
        const Pane &at = m_overlay->paneAt(pixel);
        const QPointF there =
            at.onDesktop().topLeft() + QPointF(pixel - at.pixels().topLeft()) / at.scale();
        const bool isDragged = type == QEvent::MouseMove && buttons != Qt::NoButton;
        if (!isDragged && type != QEvent::MouseButtonRelease)
            m_pressed = &at - m_overlay->panes().constData();
        const Pane &heard = m_overlay->panes().at(m_pressed);
        const QPointF pos = there - heard.onDesktop().topLeft();
        QMouseEvent event(type, pos, pos, button, buttons, Qt::NoModifier);
        QApplication::sendEvent(&heard.surface(), &event);
    }
    void click(QPoint pixel)
    {
        mouse(QEvent::MouseMove, pixel, Qt::NoButton);
        mouse(QEvent::MouseButtonPress, pixel, Qt::LeftButton);
        mouse(QEvent::MouseButtonRelease, pixel, Qt::NoButton);
    }
    void drag(QPoint from, QPoint to)
    {
        mouse(QEvent::MouseButtonPress, from, Qt::LeftButton);
        mouse(QEvent::MouseMove, to, Qt::LeftButton);
        QApplication::processEvents();  // a band counts once it has been painted
        mouse(QEvent::MouseButtonRelease, to, Qt::NoButton);
        QApplication::processEvents();
    }
    /// Opens the context menu, runs something while it is open, and gives what was disabled.
    QStringList contextMenu(const std::function<void()> &meanwhile = {})
    {
        QStringList disabled;
        const Pane &pane = m_overlay->panes().constLast();
        QTimer::singleShot(0, this, [&] {
            auto *menu = m_overlay->findChild<QMenu *>();
            QCOMPARE(menu->parentWidget(), &pane.window());
            for (const QAction *action : menu->actions()) {
                if (!action->isEnabled())
                    disabled.append(action->text());
            }
            if (meanwhile)
                meanwhile();
            menu->close();
        });
        QContextMenuEvent event(QContextMenuEvent::Mouse, {9, 9}, {9, 9});
        QApplication::sendEvent(&pane.surface(), &event);  // returns when the menu does
        return disabled;
    }
    /// What all panes show, as one picture.
    QImage onScreen() const
    {
        QImage result(m_overlay->area().size(), QImage::Format_ARGB32_Premultiplied);
        result.fill(Qt::transparent);
        QPainter painter(&result);
        for (const Pane &pane : m_overlay->panes()) {
            auto copy = dynamic_cast<QImage *>(pane.window().backingStore()->paintDevice())->copy();
            copy.setDevicePixelRatio(1);
            painter.drawImage(pane.pixels().topLeft(), copy.copy({{}, pane.pixels().size()}));
        }
        return result;
    }
    /// Whether a child of a pane is shown, and whole.
    static bool isWhole(const QWidget *child)
    {
        return child->isVisible() && child->parentWidget()->rect().contains(child->geometry());
    }
    /// What can be done with what is marked, which is painted when the toolkit finds the time, and
    /// as large as the scale.
    void hideButtons()
    {
        if (auto *buttons = m_overlay->findChild<QWidget *>(QStringLiteral("takeButtons")))
            buttons->hide();
        QApplication::processEvents();
    }
    /// Only what changes is painted: after any step the panes must look as if all of them had been,
    /// but for so many shades: an outline that is cut is rounded otherwise.
    void compareWithFullRepaint(int shades = hasPanes() ? 1 : 0)
    {
        hideButtons();
        const QImage partial = onScreen();
        for (const Pane &pane : m_overlay->panes())
            pane.surface().repaint();
        compare(onScreen(), partial, shades);
    }
    /// Whatever the panes, what they show is what the first run showed in one.
    void compareWithFirstRun(int shades)
    {
        static QHash<QByteArray, QImage> shown;
        QImage &first = shown[metaObject()->className() + QByteArray(QTest::currentTestFunction())];
        if (first.isNull())
            first = onScreen();
        compare(onScreen(), first, shades);
    }
    static void compare(const QImage &one, const QImage &other, int shades)
    {
        QCOMPARE(one.size(), other.size());
        int worst = 0;
        for (int y = 0; y < one.height() && one != other; ++y) {
            for (int x = 0; x < one.width(); ++x) {
                const QRgb a = one.pixel(x, y);
                const QRgb b = other.pixel(x, y);
                worst = std::max({worst, qAbs(qRed(a) - qRed(b)), qAbs(qGreen(a) - qGreen(b)),
                                  qAbs(qBlue(a) - qBlue(b)), qAbs(qAlpha(a) - qAlpha(b))});
            }
        }
        QVERIFY2(worst <= shades, qPrintable(QString::number(worst)));
    }

    std::unique_ptr<QTemporaryDir> m_folder{};
    std::unique_ptr<FakeDesktop> m_desktop;
    std::unique_ptr<CaptureOverlay> m_overlay;

private:
    qsizetype m_pressed = 0;  // the pane that gets the events of a drag
};

/// The main function of a test of overlays: in one pane at several scales, and in two whose scales
/// differ, each on a screen of its own. The toolkit has as many screens as there are panes.
template<typename Test> int runInPanes(int argc, char **argv)
{
    const QTemporaryDir folder;
    int failures = 0;
    for (const QList<double> &scales : {QList<double>{1}, {1.5}, {2}, {1, 2}, {2, 1.5}}) {
        QJsonArray screens;
        for (const double scale : scales)
            screens.append(QJsonObject{{QStringLiteral("name"), QString::number(screens.size())},
                                       {QStringLiteral("x"), screens.size() * 4000},
                                       {QStringLiteral("width"), 4000},
                                       {QStringLiteral("height"), 3000},
                                       {QStringLiteral("logicalDpi"), 96 * scale},
                                       {QStringLiteral("logicalBaseDpi"), 96},
                                       {QStringLiteral("dpr"), 1}});
        const QJsonObject configuration{{QStringLiteral("screens"), screens}};
        QFile file(folder.filePath(QStringLiteral("screens.json")));
        if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
            return 1;
        file.write(QJsonDocument(configuration).toJson());
        file.close();
        qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + file.fileName().toUtf8());
        const QApplication application(argc, argv);
        Test test;
        failures += QTest::qExec(&test, argc, argv);
    }
    return failures;
}
