#include "capture/dialog.h"

#include "platform/windowlist.h"
#include "ui_dialog.h"

#include <QApplication>
#include <QBitmap>
#include <QContextMenuEvent>
#include <QFontMetrics>
#include <QMenu>
#include <QPainter>
#include <QPainterPath>

#include <array>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr qreal s_sheetOpacity = 0.6;

// From a handle's centre to its circle's left and top, and the circle's diameter.
constexpr int s_handleRadius = 5;
constexpr int s_handleDiameter = 10;

constexpr QColor s_markColor(255, 255, 255);
constexpr QColor s_handleColor(90, 90, 90);
constexpr QColor s_frameColor(89, 90, 92);

constexpr int s_captionFont = 12;  // pixels, if the texts fit
constexpr int s_smallestFont = 8;

QPixmap maskedIcon(const QString &path)
{
    QPixmap icon(path);
    if (!icon.isNull())
        icon.setMask(icon.createHeuristicMask(true));
    return icon;
}

// The pixels that differ between two drawings of myDrawRect, and a few more: the antialiased
// outline reaches one pixel to each side, and handles are compared as wholes.
QRegion damage(const QList<QRect> &before, const QList<QRect> &after)
{
    if (before == after)
        return {};
    QRegion outlines;
    QRegion handles;
    std::array<QRegion, 2> fills;
    size_t side = 0;
    for (const QList<QRect> *shapes : {&before, &after}) {
        for (const QRect &shape : *shapes) {
            outlines += shape.normalized().adjusted(-2, -2, 2, 2);
            fills.at(side) += shape.adjusted(2, 2, -2, -2);
            for (int zone = 1; zone <= RegionSelection::s_handleCount; ++zone) {
                QRect box(0, 0, s_handleDiameter + 4, s_handleDiameter + 4);
                box.moveCenter(RegionSelection::handleCentre(shape, zone));
                handles += box;
            }
        }
        ++side;
    }
    return (outlines - (fills[0] & fills[1])) + handles;
}

}  // namespace

Dialog::Dialog(QWidget *parent)
    : CaptureOverlay(parent, s_sheetOpacity), m_ui(std::make_unique<Ui::Dialog>())
{
    m_ui->setupUi(this);
    setSurface(m_ui->widget);
    fitCaptionFont();
    m_ui->widget_2->hide();
    m_ui->pushButton->hide();
    m_ui->widget_2->installEventFilter(this);
    m_ui->pushButton->installEventFilter(this);
}

Dialog::~Dialog() = default;

// One size for both texts, in which the longest one of this desktop is not cut.
void Dialog::fitCaptionFont()
{
    const QString longest = u":%1 px"_s.arg(std::max(area().width(), area().height()));
    QFont captionFont = font();
    int size = s_captionFont;
    captionFont.setPixelSize(size);
    while (size > s_smallestFont &&
           QFontMetrics(captionFont).horizontalAdvance(longest) > m_ui->label_6->width())
        captionFont.setPixelSize(--size);
    m_ui->label_6->setFont(captionFont);
    m_ui->label_8->setFont(captionFont);
    captionFont.setPixelSize(s_captionFont);
    m_ui->pushButton->setFont(captionFont);
}

void Dialog::SetPictureWidth(QString path)
{
    m_pictureWidthFile = std::move(path);
    m_ui->label_5->setPixmap(maskedIcon(m_pictureWidthFile));
}

void Dialog::SetPictureHeight(QString path)
{
    m_pictureHeightFile = std::move(path);
    m_ui->label_7->setPixmap(maskedIcon(m_pictureHeightFile));
}

bool Dialog::hasArea() const
{
    return m_selection.region().width() != 0 && m_selection.region().height() != 0;
}

QPixmap Dialog::getPixmap()
{
    const QRect global = m_selection.region().translated(area().topLeft());
    if (hasArea())
        m_grabbed =
            screenWindow(global.x(), global.y(), global.width(), global.height(), true, nullptr);
    return m_grabbed;
}

QPainterPath *Dialog::getPolygonF() const
{
    if (!hasArea())
        return nullptr;
    auto path = std::make_unique<QPainterPath>();
    path->addRect(m_selection.region());
    return path.release();
}

void Dialog::on_pushButton_clicked()
{
    if (hasArea())
        accept();
}

void Dialog::dialog_clear()
{
    m_selection.clear();
    m_ui->widget_2->hide();
    refresh();
}

void Dialog::myDrawRect(QPainter &p, int x, int y, int w, int h)
{
    p.drawRect(x, y, w, h);
    p.setBrush(s_handleColor);
    // A stamp, because a circle that is rasterised anew comes out a shade different wherever it is
    // drawn and clipped: parts of one that are painted at different times would not fit together.
    QImage stamp(s_handleDiameter + 2, s_handleDiameter + 2, QImage::Format_ARGB32_Premultiplied);
    stamp.fill(Qt::transparent);
    QPainter stampPainter(&stamp);
    stampPainter.setRenderHints(p.renderHints());
    stampPainter.setPen(p.pen());
    stampPainter.setBrush(p.brush());
    stampPainter.drawEllipse(1, 1, s_handleDiameter, s_handleDiameter);
    stampPainter.end();
    for (const int zone : {1, 5, 7, 3, 2, 6, 8, 4}) {
        const QPoint centre = RegionSelection::handleCentre({x, y, w, h}, zone);
        p.drawImage(centre - QPoint(s_handleRadius + 1, s_handleRadius + 1), stamp);
    }
}

void Dialog::ChangeCursor(QPoint pos)
{
    const QWidget *frame = m_ui->widget_2;
    const RegionSelection::Cursor cursor =
        m_selection.cursor(input(pos), {toPixels(frame->pos()), toPixels(frame->size())});
    QWidget *target = cursor.onFrame ? m_ui->widget_2 : m_ui->widget;
    target->setMouseTracking(true);
    if (target->cursor().shape() != cursor.shape)
        target->setCursor(cursor.shape);
}

RegionSelection::Input Dialog::input(QPoint pos) const
{
    return {pos, pointer(), QApplication::keyboardModifiers()};
}

void Dialog::setExtent()
{
    m_selection.setExtent({surfaceSize(), area().size(), toPixels(m_ui->widget_2->size())});
}

bool Dialog::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_ui->widget && surfaceEvent(event))
        return true;
    if (watched == m_ui->widget_2 && event->type() == QEvent::Paint)
        paintFrame();
    if (watched == m_ui->pushButton && event->type() == QEvent::MouseButtonRelease) {
        m_ui->pushButton->click();
        return true;
    }
    return CaptureOverlay::eventFilter(watched, event);
}

// True for an event that goes no further.
bool Dialog::surfaceEvent(QEvent *event)
{
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::MouseButtonRelease:
        mouseEvent(*static_cast<QMouseEvent *>(event));
        return true;
    case QEvent::KeyPress:
        key(*static_cast<QKeyEvent *>(event));
        return false;
    case QEvent::Paint:
        paintSurface(static_cast<QPaintEvent *>(event)->region());
        return false;
    case QEvent::Show:
    case QEvent::Resize:
        setExtent();
        return false;
    default:
        return false;
    }
}

void Dialog::mouseEvent(const QMouseEvent &event)
{
    // The position in the window, which the surface fills: the one in the surface itself has been
    // cut to whole logical pixels.
    const QPoint pos = toPixels(event.scenePosition());
    // A press soon after a click comes as a double click, and begins a drag like any other.
    if (event.type() == QEvent::MouseMove)
        move(pos);
    else if (event.type() == QEvent::MouseButtonRelease)
        release(pos);
    else
        press(pos, event.buttons());
}

void Dialog::press(QPoint pos, Qt::MouseButtons buttons)
{
    m_selection.press(input(pos), buttons);
    refresh();
    ChangeCursor(pos);
}

void Dialog::move(QPoint pos)
{
    ShowDetailWindow(eMagUpdate, area().x() + pos.x(), area().y() + pos.y());
    if (!m_selection.isPressed())
        ChangeCursor(pos);
    if (const auto caption = m_selection.move(input(pos))) {
        placeCaption(*caption);
        m_ui->widget_2->show();
        m_ui->pushButton->show();
    }
    refresh();
}

void Dialog::release(QPoint pos)
{
    m_selection.release(input(pos));
    m_ui->pushButton->show();
    refresh();
}

void Dialog::key(const QKeyEvent &event)
{
    const RegionSelection::Request request = m_selection.key(event.key(), event.modifiers());
    placeCaption(m_selection.regionCaption());
    switch (request) {
    case RegionSelection::Request::None:
        break;
    case RegionSelection::Request::ChangeViewMode:
        changeviewmode();
        break;
    case RegionSelection::Request::Accept:
        accept();
        break;
    case RegionSelection::Request::Close:
        close();
        break;
    case RegionSelection::Request::Clear:
        dialog_clear();
        break;
    }
}

// Between drags the pointer rests, or another application has it: the magnifier, the cursor and the
// picture of the region follow all the same.
void Dialog::tick()
{
    if (!m_selection.isPressed())
        move(pointerInOverlay());
}

void Dialog::contextMenuEvent(QContextMenuEvent *event)
{
    // The menu opens at the press and takes the releases, the one of a drag too.
    if (m_selection.isPressed() || event->reason() == QContextMenuEvent::Mouse)
        release(pointerInOverlay());
    QMenu menu(this);
    const auto add = [&](const QString &text, const QKeySequence &shortcut, bool enabled) {
        QAction *action = menu.addAction(text);
        action->setShortcut(shortcut);
        action->setShortcutVisibleInContextMenu(true);
        action->setEnabled(enabled);
        return action;
    };
    connect(add(tr("Dismiss this menu "), {}, true), &QAction::triggered, &menu, &QMenu::close);
    menu.addSeparator();
    connect(add(tr("Finish(Enter)"), Qt::Key_Return, hasArea()), &QAction::triggered, this,
            &Dialog::accept);
    connect(add(tr("Abort(Esc)"), u"ESC"_s, true), &QAction::triggered, this, &Dialog::reject);
    connect(add(tr("Clear"), u"Shift+Backspace"_s, hasArea()), &QAction::triggered, this,
            &Dialog::dialog_clear);
    menu.addSeparator();
    connect(add(tr("Change magnifier view mode"), u"Ctrl+E"_s, true), &QAction::triggered, this,
            &Dialog::changeviewmode);
    runMenu(menu, event->globalPos());
}

void Dialog::placeCaption(const RegionSelection::Caption &caption)
{
    m_ui->label_6->setText(caption.width);
    m_ui->label_8->setText(caption.height);
    m_ui->widget_2->move(toLogical(caption.place));
}

// Repaints what differs from the surface, and not all of it: a desktop of 3840 x 2160 is eight
// million pixels at every move of the pointer.
void Dialog::refresh()
{
    const QList<QRect> shapes = m_selection.shapes();
    updatePixels(damage(m_shown, shapes));
    m_shown = shapes;
}

void Dialog::paintSurface(const QRegion &exposed)
{
    const QList<QRect> shapes = m_selection.shapes();
    // A key changes the region without a refresh. If a part of it is painted early, the rest must
    // follow.
    if (shapes != m_shown) {
        m_shown = shapes;
        m_ui->widget->update();
    }
    paintSheet(exposed, [&shapes](QPainter &painter) {
        for (const QRect &shape : shapes) {
            painter.setPen(s_markColor);
            painter.setBrush(s_markColor);
            myDrawRect(painter, shape.x(), shape.y(), shape.width(), shape.height());
        }
    });
    m_selection.painted();
}

void Dialog::paintFrame()
{
    QPainter painter(m_ui->widget_2);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(s_frameColor);
    painter.setBrush(Qt::black);
    painter.drawRoundedRect(QRectF(m_ui->widget_2->rect()).adjusted(2.0, 2.0, -2.0, -2.0), 10.0,
                            10.0, Qt::AbsoluteSize);
}
