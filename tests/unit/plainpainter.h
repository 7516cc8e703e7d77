#pragma once

#include "editing/gesture.h"
#include "editing/rendering.h"

#include <QPaintEvent>
#include <QPainter>
#include <QPixmap>
#include <QWidget>

/// The plain way to show a picture that is being drawn on: everything anew at each paint, and each
/// pixel looked at one by one. The editor has to give the same pixels.
class PlainPainter : public QObject
{
public:
    explicit PlainPainter(QWidget *widget) : m_widget(widget) { widget->installEventFilter(this); }

    QPixmap united() const { return QPixmap::fromImage(replay()); }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() != QEvent::Paint)
            return QObject::eventFilter(watched, event);
        paint();
        return true;
    }

    QPixmap picture{};
    EditHistory history{};
    DrawingGesture gesture{};
    stateEnum state = stateMove;
    float scale = 1;
    int lineWidth = 1;
    QColor color = Qt::black;

private:
    static void clean(const QImage &base, QImage &target)
    {
        for (int x = 0; x < base.width(); ++x) {
            for (int y = 0; y < base.height(); ++y) {
                if (base.pixel(x, y) == 0)
                    target.setPixelColor(x, y, QColor(0, 0, 0, 0));
            }
        }
    }

    QImage replay() const
    {
        const QImage pristine = picture.toImage();
        QImage image = pristine;
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        for (auto entry = history.crbegin(); entry != history.crend(); ++entry)
            drawShape(painter, (*entry)->geometry, (*entry)->style);
        painter.end();
        clean(pristine, image);
        return image;
    }

    void paint() const
    {
        const ViewMapping view{
            .widget = m_widget->size(), .picture = picture.size(), .scale = scale};
        QPainter painter(m_widget);
        const QImage image = replay();
        painter.setPen(QColor(126, 136, 146));
        painter.drawRect(QRect(view.margins() - QPoint(1, 1), view.scaledSize() + QSize(1, 1)));
        const auto show = [&](const QImage &shown) {
            painter.drawPixmap(view.margins(), QPixmap::fromImage(shown).scaled(
                                                   view.shownSize(), Qt::KeepAspectRatio,
                                                   Qt::SmoothTransformation));
        };
        show(image);
        const std::optional<Geometry> shape = gesture.preview(state, view, lineWidth);
        if (!shape)
            return;
        QImage preview = image;
        QPainter over(&preview);
        over.setRenderHint(QPainter::Antialiasing);
        drawShape(over, *shape, {.type = state, .width = lineWidth, .color = color});
        over.end();
        clean(image, preview);
        show(preview);
    }

    QWidget *m_widget;
};
