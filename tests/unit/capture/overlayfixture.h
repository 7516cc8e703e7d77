#pragma once

#include "capture/captureoverlay.h"
#include "fakedesktop.h"
#include "testmain.h"

#include <QBackingStore>
#include <QContextMenuEvent>
#include <QLabel>
#include <QMenu>
#include <QMouseEvent>
#include <QTimer>

#include <functional>
#include <memory>

/// An overlay over a fake desktop of two windows. Everything is told in device pixels, so the same
/// rows hold at every scale.
class OverlayTest : public QObject
{
protected:
    void begin(const QList<QRect> &screens)
    {
        m_overlay.reset();
        m_desktop = std::make_unique<FakeDesktop>();
        m_desktop->windows->screenList = screens;
        m_desktop->windows->list = {
            {.entry = {.number = 2, .bounds = {-50, 60, 301, 151}}, .color = QColor(0, 160, 255)},
            {.entry = {.number = 1, .bounds = {-600, 0, 1200, 450}}, .color = QColor(200, 40, 7)}};
    }
    template<typename Overlay> Overlay &open()
    {
        auto overlay = std::make_unique<Overlay>();
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
    /// Moves the pointer there and sends the event. `pixel` is in overlay coordinates.
    void mouse(QEvent::Type type, QPoint pixel, Qt::MouseButtons buttons)
    {
        m_desktop->windows->pointerPos = m_desktop->windows->covered.constLast().topLeft() + pixel;
        const QPointF pos = QPointF(pixel) / m_overlay->devicePixelRatioF();
        QMouseEvent event(type, pos, pos, Qt::LeftButton, buttons, Qt::NoModifier);
        QApplication::sendEvent(surface(), &event);
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
        QTimer::singleShot(0, this, [&] {
            auto *menu = m_overlay->findChild<QMenu *>();
            for (const QAction *action : menu->actions()) {
                if (!action->isEnabled())
                    disabled.append(action->text());
            }
            if (meanwhile)
                meanwhile();
            menu->close();
        });
        QContextMenuEvent event(QContextMenuEvent::Mouse, {9, 9}, {9, 9});
        QApplication::sendEvent(surface(), &event);  // returns when the menu does
        return disabled;
    }
    QImage onScreen() const
    {
        const auto *image = dynamic_cast<QImage *>(m_overlay->backingStore()->paintDevice());
        QImage copy = image->convertToFormat(QImage::Format_RGB32);
        copy.setDevicePixelRatio(1);
        return copy;
    }
    /// Only what changes is painted: after any step the window must look as if all of it had been,
    /// but for so many shades.
    void compareWithFullRepaint(int shades = 0)
    {
        QApplication::processEvents();
        const QImage partial = onScreen();
        surface()->repaint();
        const QImage full = onScreen();
        int worst = 0;
        for (int y = 0; y < full.height() && partial != full; ++y) {
            for (int x = 0; x < full.width(); ++x) {
                const QRgb a = full.pixel(x, y);
                const QRgb b = partial.pixel(x, y);
                worst = std::max({worst, qAbs(qRed(a) - qRed(b)), qAbs(qGreen(a) - qGreen(b)),
                                  qAbs(qBlue(a) - qBlue(b))});
            }
        }
        QVERIFY2(worst <= shades, qPrintable(QString::number(worst)));
    }

    std::unique_ptr<FakeDesktop> m_desktop;
    std::unique_ptr<CaptureOverlay> m_overlay;
};
