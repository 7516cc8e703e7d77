#include "editing/pictureeditor.h"

#include "editing/rendering.h"

#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QPainterPath>
#include <QTextEdit>
#include <QWidget>

using namespace Qt::StringLiterals;

TPictureEditor::TPictureEditor(QWidget *widget, QWidget *parent)
    : QObject(parent), m_pWidget(widget)
{
    widget->installEventFilter(this);
    widget->setFocusPolicy(Qt::ClickFocus);
    createTextField();
}

TPictureEditor::TPictureEditor(QObject *parent) : QObject(parent) {}

TPictureEditor::~TPictureEditor()
{
    if (m_pTextEdit)
        m_pTextEdit->close();
}

void TPictureEditor::createTextField()
{
    m_pTextEdit = new QTextEdit(m_pWidget);
    m_pTextEdit->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_pTextEdit->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_pTextEdit->setStyleSheet(u"background-color: rgba(0,0,0,0);border: 1px groove gray;"_s);
    m_pTextEdit->installEventFilter(this);
    m_pTextEdit->hide();
}

void TPictureEditor::notify(Change change)
{
    if (m_Callback)
        m_Callback(change, 0);
}

void TPictureEditor::updateWidget()
{
    if (m_pWidget)
        m_pWidget->update();
}

void TPictureEditor::setState(stateEnum state)
{
    EndEdit();
    m_State = state;
    if (m_pWidget)
        m_pWidget->setCursor(state == stateMove ? Qt::OpenHandCursor : Qt::CrossCursor);
}

void TPictureEditor::setPixmap(const QPixmap &pixmap)
{
    m_Pixmap = pixmap;
    m_Rendered = false;
    m_Scale = 1.0F;
    notify(SizeChange);
    updateWidget();
}

void TPictureEditor::setPixmapScaled(float scale)
{
    m_Scale = scale;
    notify(SizeChange);
    updateWidget();
}

void TPictureEditor::setVecUnDo(const EditHistory *history)
{
    m_VecUnDo.clear();
    m_VecUnDo = *history;
    m_Rendered = false;
    updateWidget();
}

void TPictureEditor::setVecReDo(const EditHistory *history)
{
    m_VecReDo.clear();
    m_VecReDo = *history;
}

void TPictureEditor::clearShape()
{
    m_VecUnDo.clear();
    m_VecReDo.clear();
    m_Rendered = false;
    updateWidget();
}

bool TPictureEditor::isTyping() const
{
    return m_State == stateText && m_pTextEdit && m_pTextEdit->isVisible();
}

void TPictureEditor::EndEdit()
{
    if (isTyping())
        saveEditText();
}

// Typed text is recorded whatever it is, an empty one too: it takes one undo.
void TPictureEditor::saveEditText()
{
    if (!m_pTextEdit)
        return;
    record(
        TextShape{m_TextPos},
        {.type = m_State, .color = m_PenColor, .text = m_pTextEdit->toPlainText(), .font = m_Font});
    m_pTextEdit->clear();
    m_pTextEdit->hide();
}

void TPictureEditor::FinishEditText() { saveEditText(); }

// The shapes that were undone stay where they are: they can still come back on top of the new one.
void TPictureEditor::record(Geometry geometry, EditMsg style)
{
    notify(HistoryChange);
    m_VecUnDo.prepend(
        std::make_shared<const EditEntry>(EditEntry{std::move(geometry), std::move(style)}));
    m_Rendered = false;
}

void TPictureEditor::moveNewest(EditHistory &from, EditHistory &to)
{
    EndEdit();
    if (from.isEmpty())
        return;
    notify(HistoryChange);
    to.prepend(from.takeFirst());
    m_Rendered = false;
    updateWidget();
}

void TPictureEditor::Undo() { moveNewest(m_VecUnDo, m_VecReDo); }

void TPictureEditor::Redo() { moveNewest(m_VecReDo, m_VecUnDo); }

QPixmap TPictureEditor::sendPixmap(const QColor &background)
{
    m_Image = replayed(m_Pixmap.toImage(), m_VecUnDo, background);
    m_Rendered = false;
    return QPixmap::fromImage(m_Image);
}

const QImage &TPictureEditor::united()
{
    if (!m_Rendered) {
        m_Image = replayed(m_Pixmap.toImage(), m_VecUnDo, QColor(0, 0, 0, 0));
        m_Shown = {};
        m_Rendered = true;
    }
    return m_Image;
}

ViewMapping TPictureEditor::mapping() const
{
    return {.widget = m_pWidget->size() * m_pWidget->devicePixelRatioF(),
            .picture = m_Pixmap.size(),
            .scale = m_Scale};
}

void TPictureEditor::paint(const QPaintEvent &event)
{
    const QImage &image = united();
    if (image.isNull())
        return;
    const ViewMapping view = mapping();
    if (m_Shown.isNull() || m_ShownScale != m_Scale) {
        const QPixmap pixmap = QPixmap::fromImage(image);
        m_Shown = m_Scale == 1.0F ? pixmap
                                  : pixmap.scaled(view.shownSize(), Qt::KeepAspectRatio,
                                                  Qt::SmoothTransformation);
        m_ShownScale = m_Scale;
    }
    QPainter painter(m_pWidget);
    painter.setClipRect(event.rect());
    const qreal unit = 1 / m_pWidget->devicePixelRatioF();
    painter.scale(unit, unit);
    painter.drawPixmap(view.margins(), m_Shown);
}

bool TPictureEditor::eventFilter(QObject *watched, QEvent *event)
{
    if (watched != m_pWidget)
        return QObject::eventFilter(watched, event);
    switch (event->type()) {
    case QEvent::Paint:
        paint(*static_cast<QPaintEvent *>(event));
        return true;
    case QEvent::MouseButtonPress:
        m_DragOrigin = static_cast<QMouseEvent *>(event)->position().toPoint();
        if (m_State == stateMove)
            m_pWidget->setCursor(Qt::ClosedHandCursor);
        return true;
    case QEvent::MouseMove:
        if (m_State == stateMove) {
            // The picture moves under the pointer with the scroll bars, so the origin stays where
            // it is.
            const QPoint moved =
                static_cast<QMouseEvent *>(event)->position().toPoint() - m_DragOrigin;
            emit movealue(moved.x(), moved.y());
        }
        return true;
    case QEvent::MouseButtonRelease:
        if (m_State == stateMove)
            m_pWidget->setCursor(Qt::OpenHandCursor);
        return true;
    default:
        return QObject::eventFilter(watched, event);
    }
}

void TPictureEditor::EditPolyPixmap(QPixmap &picture, QPixmap & /*flag*/, bool /*registered*/,
                                    const QPainterPath *path, const QPolygonF *polygon)
{
    if (!path == !polygon)
        return;
    QPainterPath shape;
    if (path)
        shape = *path;
    else
        shape.addPolygon(*polygon);
    QImage image = picture.toImage().convertToFormat(QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < image.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            if (!shape.contains(QPointF(x, y)))
                line[x] = 0;
        }
    }
    picture = QPixmap::fromImage(image);
}
