#include "capture/regionoverlay.h"

#include "base/palette.h"
#include "capture/overlayplate.h"
#include "capture/takebuttons.h"
#include "platform/desktoppictures.h"
#include "platform/services.h"
#include "ui_rectangleoverlay.h"

#include <QApplication>
#include <QBitmap>
#include <QContextMenuEvent>
#include <QFontMetrics>
#include <QPainter>
#include <QPainterPath>

#include <array>
#include <cmath>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr qreal s_sheetOpacity = 0.6;

// The distance from a handle's centre to its circle's left and top edge, and the circle's diameter.
constexpr int s_handleRadius = 5;
constexpr int s_handleDiameter = 10;

constexpr int s_captionFont = 12;  // pixels, if the texts fit
constexpr int s_smallestFont = 8;
constexpr int s_buttonMargin = 8;  // logical pixels beside the button's text

QPixmap maskedIcon(const QString &path)
{
    QPixmap icon(path);
    if (!icon.isNull())
        icon.setMask(icon.createHeuristicMask(true));
    return icon;
}

// Rectangles inside the shape, clear of its outline.
QRegion inner(const QRect &shape, bool ellipse)
{
    if (!ellipse)
        return shape.adjusted(2, 2, -2, -2);
    constexpr int s_bands = 16;
    const double halfWidth = shape.width() / 2.0;
    QRegion result;
    for (int band = 0; band < s_bands; ++band) {
        // Of the band's two edges, takes the one further from the middle, where the ellipse is
        // narrower.
        const double top = 2.0 * band / s_bands - 1;
        const double bottom = top + 2.0 / s_bands;
        const double narrow = std::max(std::abs(top), std::abs(bottom));
        const double reach = halfWidth * std::sqrt(1 - narrow * narrow);
        const double y = shape.y() + shape.height() * (top + 1) / 2;
        const QRectF exact(shape.x() + halfWidth - reach, y, 2 * reach,
                           shape.height() / 1.0 / s_bands);
        const QRect whole = exact.toAlignedRect();
        // Adjacent bands share the row in which they meet.
        result += whole.adjusted(3, band == 0 ? 3 : 0, -3, band == s_bands - 1 ? -3 : 0);
    }
    return result;
}

}  // namespace

RegionOverlay::RegionOverlay(QWidget *parent, const RegionPolicy &policy,
                             const MarkingHabits &habits)
    : MarkingOverlay(parent, s_sheetOpacity, habits,
                     policy.ellipse ? u"Ellipse"_s : u"Rectangle"_s),
      m_policy(policy), m_ui(std::make_unique<Ui::Dialog>()), m_selection(policy)
{
    m_ui->setupUi(this);
    setSurface(m_ui->widget);
    m_captionPane = &panes().first();
    fitCaption();
    setExtent();
    m_ui->widget_2->hide();
    m_ui->pushButton->hide();
    m_ui->widget_2->installEventFilter(this);
    m_ui->pushButton->installEventFilter(this);
}

RegionOverlay::~RegionOverlay() = default;

// Sets one font size for both texts, in which the longest text for this desktop is not cut, and
// makes room for the button's text.
void RegionOverlay::fitCaption()
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
    // The frame becomes wider if the button's word is longer in the user's language.
    const int text = QFontMetrics(captionFont).horizontalAdvance(m_ui->pushButton->text());
    const int missing = text + 2 * s_buttonMargin - m_ui->pushButton->width();
    if (missing > 0) {
        m_ui->pushButton->resize(m_ui->pushButton->size() + QSize(missing, 0));
        m_ui->widget_2->resize(m_ui->widget_2->size() + QSize(missing, 0));
    }
}

void RegionOverlay::SetPictureWidth(QString path)
{
    m_pictureWidthFile = std::move(path);
    m_ui->label_5->setPixmap(maskedIcon(m_pictureWidthFile));
}

void RegionOverlay::SetPictureHeight(QString path)
{
    m_pictureHeightFile = std::move(path);
    m_ui->label_7->setPixmap(maskedIcon(m_pictureHeightFile));
}

bool RegionOverlay::hasArea() const
{
    return m_selection.region().width() != 0 && m_selection.region().height() != 0;
}

QPixmap RegionOverlay::getPixmap()
{
    const QRect global = m_selection.region().translated(area().topLeft());
    if (hasArea())
        m_grabbed = desktopPicture(global);
    return m_grabbed;
}

void RegionOverlay::on_pushButton_clicked() { accept(); }

void RegionOverlay::dialog_clear()
{
    m_selection.clear();
    m_ui->widget_2->hide();
    refresh();
    follow();
}

void RegionOverlay::drawHandles(QPainter &painter, const QRect &region,
                                std::initializer_list<int> zones)
{
    painter.setBrush(Palette::overlayHandle);
    // A handle is drawn as a stamp, because an antialiased circle gets slightly different pixels
    // depending on position and clipping, so parts that are painted at different times would not
    // match.
    QImage stamp(s_handleDiameter + 2, s_handleDiameter + 2, QImage::Format_ARGB32_Premultiplied);
    stamp.fill(Qt::transparent);
    QPainter stampPainter(&stamp);
    stampPainter.setRenderHints(painter.renderHints());
    stampPainter.setPen(painter.pen());
    stampPainter.setBrush(painter.brush());
    stampPainter.drawEllipse(1, 1, s_handleDiameter, s_handleDiameter);
    stampPainter.end();
    for (const int zone : zones) {
        const QPoint centre = RegionSelection::handleCentre(region, zone);
        painter.drawImage(centre - QPoint(s_handleRadius + 1, s_handleRadius + 1), stamp);
    }
}

bool RegionOverlay::isCommandHeld()
{
    // Asks for the present modifiers, because the toolkit notices a change only with the next
    // event.
    return QGuiApplication::queryKeyboardModifiers() == Qt::ControlModifier;
}

void RegionOverlay::ChangeCursor(QPoint pos)
{
    const RegionSelection::Cursor cursor = m_selection.cursor(input(pos), frame());
    const auto show = [&cursor](QWidget &target) {
        target.setMouseTracking(true);
        if (target.cursor().shape() != cursor.shape)
            target.setCursor(cursor.shape);
    };
    if (cursor.onFrame)
        show(*m_ui->widget_2);
    else
        for (const Pane &pane : panes())
            show(pane.surface());
}

// The caption's frame, in pixels.
QRect RegionOverlay::frame() const
{
    const QWidget &frame = *m_ui->widget_2;
    return {m_captionPane->toPixels(frame.pos()), m_captionPane->toPixels(frame.size())};
}

RegionOverlay::Look RegionOverlay::look() const
{
    return {m_selection.shapes(), m_policy.cornersNeedCommand && isCommandHeld()};
}

// The pixels that differ between two looks, and slightly more: the antialiased outline touches one
// more pixel on each side, and handles are compared as a whole.
QRegion RegionOverlay::damage(const Look &before, const Look &after) const
{
    if (before == after)
        return {};
    QRegion outlines;
    QRegion handles;
    std::array<QRegion, 2> fills;
    size_t side = 0;
    for (const Look *look : {&before, &after}) {
        for (const QRect &shape : look->shapes) {
            outlines += shape.normalized().adjusted(-2, -2, 2, 2);
            fills.at(side) += inner(shape, m_policy.ellipse);
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

RegionSelection::Input RegionOverlay::input(QPoint pos) const
{
    return {pos, pointer(), QApplication::keyboardModifiers()};
}

void RegionOverlay::setExtent()
{
    QList<QRect> screens = services().screens->areas();
    for (QRect &screen : screens)
        screen.translate(-area().topLeft());
    m_selection.setExtent(
        {area().size(), area().size(), frame().size(), screens, [this](const QRect &marked) {
             return services().pictures->sizeOf(marked.translated(area().topLeft()));
         }});
}

bool RegionOverlay::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_ui->widget_2 && event->type() == QEvent::Paint)
        paintOverlayFrame(*m_ui->widget_2);
    if (watched == m_ui->pushButton && event->type() == QEvent::MouseButtonRelease) {
        m_ui->pushButton->click();
        return true;
    }
    return MarkingOverlay::eventFilter(watched, event);
}

bool RegionOverlay::paneEvent(const Pane &pane, QEvent *event)
{
    if (hears(pane, *event))
        return true;
    switch (event->type()) {
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseButtonPress:
    case QEvent::MouseMove:
    case QEvent::MouseButtonRelease: {
        const auto &mouse = *static_cast<QMouseEvent *>(event);
        mouseEvent(placeOf(pane, mouse), mouse);
        return true;
    }
    case QEvent::KeyPress:
        // A key event that was pending when the overlay closed is ignored.
        if (isVisible())
            key(*static_cast<QKeyEvent *>(event));
        return false;
    case QEvent::Paint:
        paintSurface(pane, static_cast<QPaintEvent *>(event)->region());
        return false;
    default:
        return false;
    }
}

void RegionOverlay::mouseEvent(QPoint pos, const QMouseEvent &event)
{
    const bool isPress =
        event.type() == QEvent::MouseButtonPress || event.type() == QEvent::MouseButtonDblClick;
    bool takes = false;
    if (event.type() == QEvent::MouseMove)
        move(pos);
    else if (event.type() == QEvent::MouseButtonRelease)
        takes = release(pos) && habits().takesOnRelease;
    else if (event.type() == QEvent::MouseButtonDblClick && habits().takesOnDoubleClick)
        takes = event.buttons() == Qt::LeftButton && region().contains(pos);
    if (takes)
        accept();
    else if (isPress)
        press(pos, event.buttons());
}

void RegionOverlay::press(QPoint pos, Qt::MouseButtons buttons)
{
    if (!m_policy.ticksWhilePressed)
        stopTicks();
    m_selection.press(input(pos), buttons);
    refresh();
    ChangeCursor(pos);
    follow();
}

void RegionOverlay::move(QPoint pos)
{
    ShowDetailWindow(eMagUpdate, area().x() + pos.x(), area().y() + pos.y());
    if (!m_selection.isPressed())
        ChangeCursor(pos);
    if (m_selection.move(input(pos))) {
        placeCaption(&RegionSelection::bandCaption);
        m_ui->widget_2->show();
        m_ui->pushButton->show();
    }
    refresh();
    follow();
}

// True if a drag has marked something.
bool RegionOverlay::release(QPoint pos)
{
    if (!m_policy.ticksWhilePressed)
        startTicks();
    const bool marks = m_selection.release(input(pos));
    if (m_policy.releaseShowsButton)
        m_ui->pushButton->show();
    refresh();
    follow();
    return marks;
}

void RegionOverlay::key(const QKeyEvent &event)
{
    const RegionSelection::Request request = m_selection.key(event.key(), event.modifiers());
    placeCaption(&RegionSelection::regionCaption);
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
    follow();
}

// Without a drag the pointer may rest or move over another application; the magnifier, the cursor
// and the picture are updated in any case.
void RegionOverlay::tick()
{
    if (!m_selection.isPressed())
        move(pointerInOverlay());
}

void RegionOverlay::contextMenu(const Pane &pane, const QContextMenuEvent &event)
{
    // The menu opens at the press and gets the releases, including the one that would end a drag.
    if (m_selection.isPressed() || event.reason() == QContextMenuEvent::Mouse)
        release(pointerInOverlay());
    runMenu(pane, event, {tr("Finish(Enter)"), Qt::Key_Return, hasArea(), [this] { accept(); }},
            {{tr("Clear"), u"Shift+Backspace"_s, hasArea(), [this] { dialog_clear(); }}},
            takeEntries());
}

// The caption is shown whole, in the one pane that shows its middle. Its size in pixels, and with
// it its place, depends on that pane's scale.
void RegionOverlay::placeCaption(RegionSelection::Caption (RegionSelection::*caption)() const)
{
    RegionSelection::Caption told = (m_selection.*caption)();
    const Pane &pane = paneAt(QRect(told.place, frame().size()).center());
    if (m_captionPane != &pane) {
        m_captionPane = &pane;
        const bool isShown = !m_ui->widget_2->isHidden();
        m_ui->widget_2->setParent(&pane.surface());
        m_ui->widget_2->setVisible(isShown);
        setExtent();
        told = (m_selection.*caption)();
    }
    if (panes().size() > 1) {
        const QRect room(pane.pixels().topLeft(), pane.pixels().size() - frame().size());
        told.place.rx() = std::clamp(told.place.x(), room.x(), std::max(room.x(), room.right()));
        told.place.ry() = std::clamp(told.place.y(), room.y(), std::max(room.y(), room.bottom()));
    }
    m_ui->label_6->setText(told.width);
    m_ui->label_8->setText(told.height);
    m_ui->widget_2->move(pane.toLogical(told.place));
}

// Repaints only what has changed on the surface: a desktop of 3840 x 2160 has eight million pixels,
// which would be painted with each move of the pointer.
void RegionOverlay::refresh()
{
    const Look now = look();
    updatePixels(damage(m_shown, now));
    m_shown = now;
}

void RegionOverlay::paintSurface(const Pane &pane, const QRegion &exposed)
{
    const Look now = look();
    // Keys change the region without calling refresh(). If a part is painted before that, the rest
    // must be painted, too.
    if (now != m_shown) {
        m_shown = now;
        updateAll();
    }
    const QRect drawn = damage({}, now).boundingRect();
    paintSheet(pane, exposed, drawn, [this, &now](QPainter &painter) {
        if (habits().clearSelection)
            drawOutline(painter, marked());
        for (const QRect &shape : now.shapes) {
            painter.setPen(Qt::white);
            painter.setBrush(habits().clearSelection ? Qt::NoBrush : QBrush(Qt::white));
            draw(painter, shape);
        }
    });
    m_selection.painted();
}

QPainterPath RegionOverlay::marked() const
{
    QPainterPath path;
    for (const QRect &shape : m_selection.shapes()) {
        if (m_policy.ellipse)
            path.addEllipse(shape.normalized());
        else
            path.addRect(shape.normalized());
    }
    return path;
}

QPolygonF RegionOverlay::markedPoints() const
{
    const QRectF marked(region().normalized());
    return {{marked.topLeft(), marked.bottomRight()}};
}

void RegionOverlay::markPoints(const QPolygonF &points)
{
    m_selection.mark(QRectF(points.first(), points.last()).toRect());
    placeCaption(&RegionSelection::bandCaption);
    m_ui->widget_2->show();
    m_ui->pushButton->show();
    refresh();
}

QPoint RegionOverlay::placeButtons(QSize size) const
{
    QList<QRect> clear{magnifier()};
    for (int zone = 1; zone <= RegionSelection::s_handleCount; ++zone) {
        QRect box(0, 0, s_handleDiameter + 4, s_handleDiameter + 4);
        box.moveCenter(RegionSelection::handleCentre(region(), zone));
        clear.append(box);
    }
    return TakeButtons::place(size, frame(), homeOf(frame().center()), clear);
}

QString RegionOverlay::hint() const
{
    return tr("Drag: mark an area\n"
              "Return: take it\n"
              "Ctrl+C: copy it     Ctrl+S: save it     T: read its text\n"
              "R: the last area again     C: copy the colour at the pointer\n"
              "Esc: give up");
}
