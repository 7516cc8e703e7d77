#include "shell/secretsview.h"

#include "base/palette.h"
#include "editing/marks.h"

#include <QMouseEvent>
#include <QPainter>

#include <algorithm>
#include <utility>

namespace {

constexpr QSize s_least(200, 120);  // logical pixels
constexpr QSize s_usual(520, 360);
constexpr qreal s_enlarged = 2;  // logical pixels per pixel of the picture, at most
constexpr qreal s_share = 0.9;   // of the view that a secret fills at most

// The corner from which a length is shown so that `middle` is in the middle, without leaving the
// picture; a picture that is shorter than that is in the middle itself.
qreal cornerFor(qreal middle, qreal shown, qreal all)
{
    return shown >= all ? (all - shown) / 2 : std::clamp(middle - shown / 2, 0., all - shown);
}

}  // namespace

SecretsView::SecretsView(QImage picture, const QList<Secret> &secrets, QWidget *parent)
    : QWidget(parent), m_picture(std::move(picture))
{
    setMinimumSize(s_least);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    for (const Secret &secret : secrets)
        m_places.append({secret.areas});
}

void SecretsView::lookAt(qsizetype index)
{
    m_current = index;
    update();
}

void SecretsView::setHiding(qsizetype index, bool isHiding)
{
    m_places[index].isHiding = isHiding;
    update();
}

QSize SecretsView::sizeHint() const { return s_usual; }

QRect SecretsView::boxOfCurrent() const
{
    QRect box;
    for (const QRect &area : m_places[m_current].areas)
        box |= area;
    return box;
}

// From pixels of the picture to device pixels of the widget.
QTransform SecretsView::toDevice() const
{
    const QRect box = boxOfCurrent();
    const QSizeF size = QSizeF(this->size()) * devicePixelRatioF();
    const qreal scale = std::min({s_enlarged * devicePixelRatioF(),
                                  s_share * size.width() / std::max(1, box.width()),
                                  s_share * size.height() / std::max(1, box.height())});
    const QPointF middle = QRectF(box).center();
    const QPointF corner(cornerFor(middle.x(), size.width() / scale, m_picture.width()),
                         cornerFor(middle.y(), size.height() / scale, m_picture.height()));
    return QTransform().scale(scale, scale).translate(-corner.x(), -corner.y());
}

void SecretsView::mousePressEvent(QMouseEvent *event)
{
    const QPointF at = toDevice().inverted().map(event->position() * devicePixelRatioF());
    for (qsizetype i = 0; i < m_places.size(); ++i) {
        for (const QRect &area : std::as_const(m_places[i].areas)) {
            if (QRectF(area).contains(at)) {
                emit pressed(i);
                return;
            }
        }
    }
}

void SecretsView::paintEvent(QPaintEvent * /*event*/)
{
    const qreal ratio = devicePixelRatioF();
    const QTransform view = toDevice();
    QPainter painter(this);
    painter.fillRect(rect(), Palette::table);
    painter.scale(1 / ratio, 1 / ratio);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    const QRectF all(QPointF(), QSizeF(size()) * ratio);
    const QRectF shown = view.inverted().mapRect(all) & QRectF(m_picture.rect());
    painter.drawImage(view.mapRect(shown), m_picture, shown);
    for (const Place &place : std::as_const(m_places)) {
        for (const QRect &area : place.areas)
            Marks::proposal(painter, view.mapRect(QRectF(area)), place.isHiding, ratio);
    }
    Marks::outline(painter, view.mapRect(QRectF(boxOfCurrent())), ratio);
    painter.setPen(QPen(Palette::brightEdge, ratio));
    painter.drawRect(all.adjusted(ratio / 2, ratio / 2, -ratio / 2, -ratio / 2));
}
