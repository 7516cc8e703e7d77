#include "base/palette.h"
#include "editing/coverage.h"
#include "editing/marks.h"
#include "editing/pictureeditor.h"

#include <QTextEdit>
#include <QWidget>

#include <algorithm>
#include <utility>

// What the editor does with shapes that are chosen, with the crop frame, the pipette and the frame
// around text that is to be read, and how it shows that over the picture.

using namespace Qt::StringLiterals;

namespace {

constexpr int s_smallestPart = 4;     // picture pixels
constexpr int s_markedAlpha = 50;     // of 255
constexpr int s_besideOriginal = 10;  // picture pixels
// Beyond as many chosen shapes no frame is drawn around each.
constexpr qsizetype s_mostFrames = 500;

QRectF inWidget(const ViewMapping &view, const QRectF &part)
{
    return {view.toWidget(part.topLeft()), view.toWidget(part.bottomRight())};
}

// With the width of its lines, if it is known by its ends.
QRectF seenBox(const EditEntry &shape)
{
    const qreal width = endsOf(shape.geometry).isEmpty() ? 0 : shape.style.width / 2.;
    return QRectF(boxOf(shape)).adjusted(-width, -width, width, width);
}

}  // namespace

const EditMsg &TPictureEditor::style() const
{
    if (m_Edited)
        return m_EditedStyle;
    const QList<EntryPtr> shapes = chosen();
    // The entry outlives the list: the scene holds it.
    return shapes.isEmpty() ? m_Styles.of(m_State) : shapes.first()->style;
}

// A slider that is dragged changes it again and again, which is one step for the user.
void TPictureEditor::setLineWidth(int width)
{
    changeStyle([width](EditMsg &style) { style.width = width; }, Growth::Width);
}

void TPictureEditor::setPenColor(const QColor &color)
{
    changeStyle([&color](EditMsg &style) { style.color = color; });
}

void TPictureEditor::set_m_Font(const QFont &font)
{
    const auto change = [&font](EditMsg &style) {
        if (style.type == stateText || toolOf(style.type).hasLabel)
            style.font = font;
    };
    if (m_Edited)
        m_EditedStyle.font = font;
    else if (hasSelection())
        recordChange(restyling(chosen(), change));
    else
        m_Font = font;
    if (isTyping())
        fitTextField();
}

void TPictureEditor::changeStyle(const std::function<void(EditMsg &)> &change)
{
    changeStyle(change, Growth::None);
}

void TPictureEditor::changeStyle(const std::function<void(EditMsg &)> &change, Growth growth)
{
    if (m_Edited) {
        change(m_EditedStyle);
    } else if (hasSelection()) {
        recordChange(restyling(chosen(), change), growth);
    } else {
        EditMsg changed = style();
        change(changed);
        m_Styles.set(m_State, std::move(changed));
    }
    refreshPreview();
    if (isTyping())
        fitTextField();
}

void TPictureEditor::selectAll()
{
    EndEdit();
    QList<ShapeId> ids;
    for (const EntryPtr &shape : m_Canvas.shapes()) {
        if (!boxOf(*shape).isNull())
            ids.append(shape->id);
    }
    m_Selection.set(ids);
    selectionMoved();
}

void TPictureEditor::removeSelected()
{
    EndEdit();
    recordChange(removing(chosen(), m_Canvas.scene()));
}

void TPictureEditor::duplicateSelected()
{
    EndEdit();
    QList<OperationPtr> steps;
    QList<ShapeId> copies;
    const PictureMap beside = PictureMap::moving({s_besideOriginal, s_besideOriginal});
    for (const EntryPtr &shape : chosen()) {
        EditEntry copy = mapped(*shape, beside);
        copy.id = nextShapeId();
        // A copy of a marker counts on.
        if (auto *marker = std::get_if<MarkerShape>(&copy.geometry))
            marker->start = 0;
        copies.append(copy.id);
        steps.append(adding(std::move(copy)));
    }
    recordChange(asOne(std::move(steps)));
    m_Selection.set(copies);
    m_Selection.keepOnly(m_Canvas.shapes());
    selectionMoved();
}

void TPictureEditor::raiseSelected()
{
    EndEdit();
    recordChange(ordering(chosen(), m_Canvas.shapes(), true));
}

void TPictureEditor::lowerSelected()
{
    EndEdit();
    recordChange(ordering(chosen(), m_Canvas.shapes(), false));
}

void TPictureEditor::nudge(QPoint by, bool goesOn)
{
    // What a key that is held down moves on and on is one step.
    if (!goesOn)
        m_Growing.reset();
    recordChange(moving(chosen(), PictureMap::moving(by)), Growth::Nudge);
}

// Nothing is brought to where it would not be seen any more.
void TPictureEditor::recordChange(const OperationPtr &step, Growth growth)
{
    if (!step)
        return;
    const QList<EntryPtr> shapes = shapesOf(*step);
    if (std::any_of(shapes.begin(), shapes.end(), [this](const EntryPtr &shape) {
            return liesOutside(shape->geometry, shape->style, m_Canvas.size());
        })) {
        notify(Refusal);
        return;
    }
    const QList<EntryPtr> now = chosen();
    QList<ShapeId> ids;
    for (const EntryPtr &shape : now)
        ids.append(shape->id);
    const bool grows = growth != Growth::None && growth == m_Growth && m_Growing &&
                       m_VecUnDo.value(0) == m_Growing && ids == m_GrowingIds;
    if (grows) {
        m_VecUnDo.removeFirst();
        followHistory();
    }
    record(step);
    m_Growing = m_VecUnDo.value(0);
    m_Growth = growth;
    m_GrowingIds = ids;
}

void TPictureEditor::selectionMoved()
{
    showMarks();
    emit selectionChanged();
}

bool TPictureEditor::choosesText() const
{
    const QList<EntryPtr> shapes = chosen();
    return shapes.size() == 1 && std::holds_alternative<TextShape>(shapes.first()->geometry);
}

void TPictureEditor::editSelectedText()
{
    EndEdit();
    if (!choosesText() || !m_pWidget)
        return;
    m_Edited = chosen().first();
    const auto *text = &std::get<TextShape>(m_Edited->geometry);
    m_EditedStyle = m_Edited->style;
    m_ToolBefore = m_State;
    // A text that was turned with the picture is typed upright where it lies.
    m_TextPos = text->direction.isIdentity() ? text->position : boxOf(*m_Edited).topLeft();
    m_pTextEdit->setPlainText(m_Edited->style.text);
    getUserText();
    placeTextField();
    m_pTextEdit->moveCursor(QTextCursor::End);
    m_TextOpen = true;
    refreshPreview();
    showMarks();
    notify(ToolChange);
}

// Leaves the text as it was recorded; what was typed has been recorded before, or is given up.
void TPictureEditor::endEditing()
{
    m_Edited.reset();
    m_TextOpen = false;
    m_pTextEdit->clear();
    m_pTextEdit->hide();
    m_State = m_ToolBefore;
    m_pWidget->setCursor(toolOf(m_State).cursor);
    m_pWidget->setFocus(Qt::OtherFocusReason);
    refreshPreview();
    selectionMoved();
    notify(ToolChange);
}

// The frame is around all of the picture as it is now.
void TPictureEditor::startCropping()
{
    m_Crop.emplace(m_Canvas.size(), static_cast<float>(pixels(s_handleReach) / m_Scale));
}

void TPictureEditor::applyCrop()
{
    const QRect frame = m_Crop->frame();
    const bool isWhole = m_Crop->isWhole();
    setState(m_ToolBefore);
    notify(ToolChange);
    if (!isWhole && !frame.isEmpty())
        record(operation(CropPicture{frame}));
}

// The colour as it is seen, of shapes, too. It is that of the tool with which the user goes on.
void TPictureEditor::takeColor(QPoint at)
{
    const QPoint place = mapping().toPicture(at);
    const QImage &shown = m_Canvas.recorded();
    if (!shown.rect().contains(place) || at.x() < mapping().margins().x() ||
        at.y() < mapping().margins().y()) {
        notify(Refusal);
        return;
    }
    QColor color = shown.pixelColor(place);
    color.setAlpha(255);
    setState(m_ToolBefore);
    notify(ToolChange);
    emit colorTaken(color);
}

// What the tool that reads text marks just now; null for nothing.
QRect TPictureEditor::markedPart() const
{
    return m_State == stateReadText ? m_Gesture.area(mapping()) : QRect();
}

// A click that slipped marks nothing.
void TPictureEditor::takePart()
{
    const QRect part = markedPart();
    m_Gesture.drop();
    showMarks();
    if (part.width() >= s_smallestPart && part.height() >= s_smallestPart)
        emit textWanted(part);
}

void TPictureEditor::wantMenu()
{
    if (m_Pixmap.isNull())
        return;
    EndEdit();
    m_TextOpen = false;
    const QList<EntryPtr> shapes = chosen();
    const QPoint place = shapes.isEmpty() ? m_pWidget->visibleRegion().boundingRect().center()
                                          : logicalPlace(boxOf(*shapes.first())).center();
    emit menuWanted(m_pWidget->mapToGlobal(place));
}

QRect TPictureEditor::logicalPlace(const QRect &part) const
{
    const QRectF place = inWidget(mapping(), QRectF(part));
    const qreal ratio = m_pWidget->devicePixelRatioF();
    return QRectF(place.topLeft() / ratio, place.size() / ratio).toAlignedRect();
}

// Paints the marks anew where they were and where they are.
void TPictureEditor::showMarks()
{
    if (!m_pWidget)
        return;
    const QRect before = std::exchange(m_MarksPlace, placeOfMarks());
    const qreal ratio = m_pWidget->devicePixelRatioF();
    for (const QRect &place : {before, m_MarksPlace}) {
        if (!place.isEmpty()) {
            m_pWidget->update(QRectF(QPointF(place.topLeft()) / ratio, QSizeF(place.size()) / ratio)
                                  .toAlignedRect()
                                  .adjusted(-1, -1, 1, 1));
        }
    }
}

// The shapes as they would be if what is under way ended now.
QList<EntryPtr> TPictureEditor::chosenNow() const
{
    const OperationPtr step = m_Selection.step();
    return step ? shapesOf(*step) : chosen();
}

QRect TPictureEditor::placeOfMarks() const
{
    if (m_Pixmap.isNull())
        return {};
    // The frame's veil is everywhere, and the plate of the pipette may be on any side of it.
    if (m_Crop || m_Hovered)
        return {QPoint(), mapping().widget};
    const ViewMapping view = mapping();
    const qreal reach = Marks::reach(m_pWidget->devicePixelRatioF());
    QRectF place;
    const auto add = [&](const QRectF &part) {
        place |= inWidget(view, part).adjusted(-reach, -reach, reach, reach);
    };
    for (const EntryPtr &shape : chosenNow())
        add(seenBox(*shape));
    if (const std::optional<QRectF> band = m_Selection.band())
        add(*band);
    if (const QRect part = markedPart(); !part.isEmpty())
        add(part);
    if (m_KeyPlace)
        add({QPointF(*m_KeyPlace) - QPointF(10, 10) / m_Scale, QSizeF(21, 21) / m_Scale});
    return place.toAlignedRect() & QRect(QPoint(), view.widget);
}

void TPictureEditor::paintMarks(QPainter &painter, const ViewMapping &view)
{
    const qreal ratio = m_pWidget->devicePixelRatioF();
    if (m_Crop) {
        const QRect frame = m_Crop->frame();
        if (!frame.isEmpty()) {
            const QRectF shown = inWidget(view, QRectF(frame));
            Marks::cropFrame(painter, view.shown(), shown, ratio);
            Marks::plate(painter, shown.bottomRight(),
                         u"%1 \u00d7 %2"_s.arg(frame.width()).arg(frame.height()), {}, view.shown(),
                         ratio);
        }
        return;
    }
    const QList<EntryPtr> shapes = m_Edited ? QList<EntryPtr>() : chosenNow();
    if (shapes.size() <= s_mostFrames) {
        const qreal gap = 2 * ratio;
        for (const EntryPtr &shape : shapes) {
            if (endsOf(shape->geometry).isEmpty() || shapes.size() > 1) {
                Marks::frame(painter,
                             inWidget(view, seenBox(*shape)).adjusted(-gap, -gap, gap, gap), ratio);
            }
        }
    }
    if (shapes.size() == 1) {
        for (const Selection::Handle &handle : Selection::handlesOf(*shapes.first())) {
            Marks::handle(painter, view.toWidget(handle.at), handle.grip == Selection::Grip::End,
                          ratio);
        }
    }
    if (const std::optional<QRectF> band = m_Selection.band())
        Marks::frame(painter, inWidget(view, *band), ratio);
    // A frame alone is lost among the lines of a text.
    if (const QRectF part = inWidget(view, QRectF(markedPart())); !part.isEmpty()) {
        painter.fillRect(part, Palette::translucent(Palette::accent, s_markedAlpha));
        Marks::frame(painter, part, ratio);
    }
    if (m_KeyPlace)
        Marks::crosshair(painter, view.toWidget(QPointF(*m_KeyPlace) + QPointF(0.5, 0.5)), ratio);
    if (m_Hovered && view.shown().contains(*m_Hovered)) {
        const QColor color = m_Canvas.recorded().pixelColor(view.toPicture(*m_Hovered));
        Marks::plate(painter, *m_Hovered, color.name(), color, view.shown(), ratio);
    }
}
