#include "base/arrowkeys.h"
#include "editing/coverage.h"
#include "editing/pictureeditor.h"

#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QTextCursor>
#include <QTextEdit>
#include <QWidget>

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

// The editor's pointer and keys.

namespace {

// The toolkit compresses pending move events. A freehand line needs all of them; other tools need
// only the last one.
void takeEveryMove(bool every)
{
    static const bool s_usual = QGuiApplication::testAttribute(Qt::AA_CompressHighFrequencyEvents);
    QGuiApplication::setAttribute(Qt::AA_CompressHighFrequencyEvents, s_usual && !every);
}

// The menu key has an event of its own, before that of the key.
bool asksForMenu(const QEvent &event)
{
    if (event.type() == QEvent::ContextMenu)
        return static_cast<const QContextMenuEvent &>(event).reason() ==
               QContextMenuEvent::Keyboard;
    return event.type() == QEvent::KeyPress &&
           TPictureEditor::isMenuKey(static_cast<const QKeyEvent &>(event));
}

// A drag is controlled by the button that began it.
bool isFirstButton(const QMouseEvent &press) { return press.buttons() == press.button(); }

// How far beside a shape a click picks it, in logical pixels.
constexpr qreal s_grace = 4;

// How far an arrow key goes: alone, with Shift, and when drawing with Ctrl. Picture pixels.
constexpr int s_step = 1;
constexpr int s_wideStep = 10;
constexpr int s_widestStep = 100;

constexpr std::array<std::pair<Selection::Grip, Qt::CursorShape>, 10> s_cursors{
    {{Selection::Grip::Shape, Qt::SizeAllCursor},
     {Selection::Grip::End, Qt::CrossCursor},
     {Selection::Grip::TopLeft, Qt::SizeFDiagCursor},
     {Selection::Grip::BottomRight, Qt::SizeFDiagCursor},
     {Selection::Grip::TopRight, Qt::SizeBDiagCursor},
     {Selection::Grip::BottomLeft, Qt::SizeBDiagCursor},
     {Selection::Grip::Top, Qt::SizeVerCursor},
     {Selection::Grip::Bottom, Qt::SizeVerCursor},
     {Selection::Grip::Left, Qt::SizeHorCursor},
     {Selection::Grip::Right, Qt::SizeHorCursor}}};

Qt::CursorShape cursorOf(Selection::Grip grip)
{
    const auto found = std::find_if(s_cursors.begin(), s_cursors.end(),
                                    [grip](const auto &row) { return row.first == grip; });
    return found == s_cursors.end() ? SelectTool::tool.cursor : found->second;
}

// The way of an arrow key; null for all others.
QPoint wayOf(int key)
{
    for (const ArrowKey &arrow : s_arrows) {
        if (arrow.key == key)
            return arrow.axis == 0 ? QPoint(arrow.step, 0) : QPoint(0, arrow.step);
    }
    return {};
}

bool draws(stateEnum tool) { return tool != stateMove && tool != stateSelect && tool != stateCrop; }

}  // namespace

// The widget begins at a whole device pixel even if its logical position is between two. The
// position in the window is used, because the event's position in the widget is rounded.
bool TPictureEditor::isMenuKey(const QKeyEvent &event)
{
    return event.key() == Qt::Key_Menu ||
           (event.key() == Qt::Key_F10 && event.modifiers() == Qt::ShiftModifier);
}

TPictureEditor::Pointer TPictureEditor::pointerOf(const QMouseEvent &event) const
{
    const qreal ratio = m_pWidget->devicePixelRatioF();
    const QPointF origin = m_pWidget->mapTo(m_pWidget->window(), QPoint());
    return {.at = (event.scenePosition() * ratio).toPoint() - wholePixel(origin * ratio),
            .logical = event.position().toPoint(),
            .button = event.button(),
            .buttons = event.buttons(),
            .modifiers = event.modifiers()};
}

qreal TPictureEditor::pixels(qreal logical) const
{
    return logical * m_pWidget->devicePixelRatioF();
}

// Ctrl squares the crop frame, and picks shapes in all other tools.
bool TPictureEditor::selects(Qt::KeyboardModifiers modifiers) const
{
    return m_State == stateSelect ||
           (modifiers.testFlag(Qt::ControlModifier) && m_State != stateCrop);
}

void TPictureEditor::press(const Pointer &pointer)
{
    const bool isLeft = pointer.buttons == Qt::LeftButton;
    const bool isRight = pointer.buttons == Qt::RightButton;
    // Where a right click would leave no tool it opens the menu.
    if (isRight && (m_State == stateMove || m_State == stateSelect)) {
        openMenu(pointer);
        return;
    }
    m_DragButton = pointer.button;
    if (isLeft && selects(pointer.modifiers)) {
        EndEdit();
        chooseAt(pointer);
        return;
    }
    if (!m_Selection.isEmpty() && !m_Edited) {
        m_Selection.clear();
        selectionMoved();
    }
    if (isLeft && m_Crop) {
        m_Hold = Hold::Crop;
        m_Crop->press(mapping().toPicture(pointer.at), pointer.modifiers);
        showMarks();
        return;
    }
    if (isLeft && m_State == statePipette) {
        takeColor(pointer.at);
        return;
    }
    if (isLeft && m_State == stateText && !pressText(pointer))
        return;
    // The right button leaves any tool. It records an entry even if no text was typed.
    if (isRight && !m_pTextEdit->geometry().contains(pointer.logical)) {
        saveEditText();
        leaveTool();
    }
    takeHold(pointer);
}

// False if the press ended a text that was typed again, which it does nothing else for. A reader
// would expect a click to open a new text after a text was committed in another way, but it records
// an empty text first, on purpose.
bool TPictureEditor::pressText(const Pointer &pointer)
{
    if (m_TextOpen) {
        const bool wasEdited = m_Edited != nullptr;
        saveEditText();
        m_TextOpen = false;
        return !wasEdited;
    }
    if (mapping().shown().contains(pointer.at)) {
        m_TextPos = mapping().toPicture(pointer.at);
        m_TextAnchor = pointer.logical;
        getUserText();
        m_TextOpen = true;
    } else if (!m_Pixmap.isNull()) {
        notify(Refusal);
    }
    return true;
}

// Goes to the hand. The crop frame goes, and nothing else that is under way.
void TPictureEditor::leaveTool()
{
    m_ToolBefore = m_State;
    m_State = stateMove;
    m_Crop.reset();
    m_Hovered.reset();
    m_KeyPlace.reset();
    showMarks();
    notify(ToolChange);
}

void TPictureEditor::takeHold(const Pointer &pointer)
{
    m_Hold = Hold::Gesture;
    m_Gesture.press(pointer.at, mapping());
    m_Gesture.setEven(pointer.modifiers.testFlag(Qt::ShiftModifier));
    m_DragButton = pointer.button;
    if (m_State == stateMove)
        m_pWidget->setCursor(Qt::ClosedHandCursor);
    m_DragOrigin = pointer.logical;
    refreshPreview();
}

void TPictureEditor::move(const Pointer &pointer)
{
    if (pointer.buttons == Qt::NoButton) {
        hover(pointer);
        return;
    }
    const bool isEven = pointer.modifiers.testFlag(Qt::ShiftModifier);
    if (m_Hold == Hold::Selection) {
        m_Selection.move(mapping().toPictureExactly(pointer.at), isEven);
        refreshPreview();
        showMarks();
        return;
    }
    if (m_Hold == Hold::Crop) {
        m_Crop->move(mapping().toPicture(pointer.at), pointer.modifiers);
        showMarks();
        return;
    }
    if (m_State == statePipette || m_State == stateCrop || m_State == stateSelect)
        return;
    m_Gesture.moveTo(pointer.at);
    m_Gesture.setEven(isEven);
    if (toolOf(m_State).isFreehand)
        m_Gesture.extendLine(mapping().toPicture(pointer.at));
    if (m_State == stateMove) {
        // The scroll bars move the widget under the pointer, so the origin in the widget stays the
        // same.
        const QPoint moved = pointer.logical - m_DragOrigin;
        emit movealue(moved.x(), moved.y());
    } else {
        m_DragOrigin = pointer.logical;
    }
    refreshPreview();
    if (m_State == stateReadText)
        showMarks();
}

void TPictureEditor::release(const Pointer &pointer)
{
    const Hold hold = std::exchange(m_Hold, Hold::Nothing);
    if (hold == Hold::Selection) {
        // A press that moved nothing changes nothing, wherever the pointer has gone since.
        const OperationPtr step = m_Selection.release();
        refreshPreview();
        recordChange(step);
        selectionMoved();
    } else if (hold == Hold::Crop) {
        m_Crop->release(mapping().toPicture(pointer.at), pointer.modifiers);
        showMarks();
    } else if (m_State == stateMove) {
        m_Gesture.drop();
        m_pTextEdit->hide();
        m_pWidget->setCursor(EmptyShape::tool.cursor);
    } else if (m_State == stateReadText) {
        m_Gesture.moveTo(pointer.at);
        takePart();
    } else if (std::optional<Geometry> shape =
                   m_Gesture.release(m_State, pointer.at, mapping(), m_Styles.of(m_State).width)) {
        EditMsg drawnWith = styleOfShape();
        if (!liesOutside(*shape, drawnWith, m_Canvas.size()))
            record(adding({numbered(std::move(*shape)), std::move(drawnWith)}));
        else if (!m_Pixmap.isNull())
            notify(Refusal);
    }
    refreshPreview();
}

// What a press would do is shown before it.
void TPictureEditor::hover(const Pointer &pointer)
{
    if (m_State == statePipette) {
        m_Hovered = pointer.at;
        showMarks();
    }
    if (m_Crop) {
        m_pWidget->setCursor(m_Crop->cursor(mapping().toPicture(pointer.at)));
    } else if (selects(pointer.modifiers)) {
        const QPointF at = mapping().toPictureExactly(pointer.at);
        const EntryPtr under = m_Canvas.shapeAt(at, pixels(s_grace) / m_Scale);
        const Selection::Handle handle =
            m_Selection.handleAt(at, pixels(s_handleReach) / m_Scale, under, m_Canvas.shapes());
        m_pWidget->setCursor(cursorOf(handle.grip));
    } else if (m_pWidget->cursor().shape() != toolOf(m_State).cursor) {
        m_pWidget->setCursor(toolOf(m_State).cursor);
    }
}

void TPictureEditor::chooseAt(const Pointer &pointer)
{
    const QPointF at = mapping().toPictureExactly(pointer.at);
    m_Hold = Hold::Selection;
    m_Selection.press({.at = at,
                       .under = m_Canvas.shapeAt(at, pixels(s_grace) / m_Scale),
                       .adds = pointer.modifiers.testFlag(Qt::ShiftModifier),
                       .reach = pixels(s_handleReach) / m_Scale},
                      m_Canvas.shapes());
    selectionMoved();
}

// A double click on a text opens it again.
bool TPictureEditor::openTextAt(const Pointer &pointer)
{
    if (!selects(pointer.modifiers) || pointer.button != Qt::LeftButton)
        return false;
    const EntryPtr under =
        m_Canvas.shapeAt(mapping().toPictureExactly(pointer.at), pixels(s_grace) / m_Scale);
    if (!under || !std::holds_alternative<TextShape>(under->geometry))
        return false;
    m_Selection.drop();
    m_Hold = Hold::Nothing;
    m_Selection.set({under->id});
    editSelectedText();
    return true;
}

// The menu is about what is below the pointer.
void TPictureEditor::openMenu(const Pointer &pointer)
{
    EndEdit();
    if (m_State == stateSelect) {
        const EntryPtr under =
            m_Canvas.shapeAt(mapping().toPictureExactly(pointer.at), pixels(s_grace) / m_Scale);
        if (!under)
            m_Selection.clear();
        else if (!m_Selection.has(under->id))
            m_Selection.set({under->id});
        selectionMoved();
    }
    emit menuWanted(m_pWidget->mapToGlobal(pointer.logical));
}

// Escape always drops a drag. A reader would expect it to empty the text field each time, but it
// does so only once in the editor's life, on purpose; the field's own undo restores the text.
bool TPictureEditor::escape()
{
    const bool wasSelecting = m_Selection.drop();
    if (m_Gesture.drop() || wasSelecting) {
        m_Hold = Hold::Nothing;
        refreshPreview();
        showMarks();
        return true;
    }
    if (m_Edited) {
        endEditing();
        return true;
    }
    if (!m_Selection.isEmpty()) {
        m_Selection.clear();
        selectionMoved();
        return true;
    }
    if (m_KeyPlace) {
        m_KeyPlace.reset();
        showMarks();
        return true;
    }
    if (m_Crop || m_State == statePipette || m_State == stateReadText) {
        setState(m_ToolBefore);
        notify(ToolChange);
        return true;
    }
    if (std::exchange(m_EscapeSeen, true))
        return false;
    QTextCursor text(m_pTextEdit->document());
    text.select(QTextCursor::Document);
    text.removeSelectedText();
    return true;
}

bool TPictureEditor::key(const QKeyEvent &event)
{
    const int code = event.key();
    // What the text field leaves alone.
    if (isTyping())
        return code == Qt::Key_Escape && escape();
    if (isMenuKey(event)) {
        wantMenu();
        return true;
    }
    if (m_Crop) {
        const Cropping::Answer answer = m_Crop->key(code, event.modifiers());
        if (answer == Cropping::Answer::Take)
            applyCrop();
        showMarks();
        if (answer != Cropping::Answer::None || !wayOf(code).isNull())
            return answer != Cropping::Answer::GiveUp || escape();
    }
    if (code == Qt::Key_Escape)
        return escape();
    return keyOfSelection(event) || keyOfDrawing(event);
}

// The keys of what is chosen. In the tool that chooses, Tab goes from shape to shape.
bool TPictureEditor::keyOfSelection(const QKeyEvent &event)
{
    const int code = event.key();
    if (m_State == stateSelect && (code == Qt::Key_Tab || code == Qt::Key_Backtab)) {
        const bool isThere = m_Selection.walk(m_Canvas.shapes(), code == Qt::Key_Tab);
        selectionMoved();
        if (isThere)
            emit lookedAt(logicalPlace(boxOf(*chosen().first())));
        return isThere;
    }
    if (m_Selection.isEmpty())
        return false;
    const bool isWide = event.modifiers().testFlag(Qt::ShiftModifier);
    if (const QPoint way = wayOf(code); !way.isNull()) {
        nudge(way * (isWide ? s_wideStep : s_step), event.isAutoRepeat());
        return true;
    }
    if (code == Qt::Key_Return || code == Qt::Key_Enter)
        editSelectedText();
    return code == Qt::Key_Return || code == Qt::Key_Enter;
}

// Where there is no pointer, the arrow keys move a cross over the picture, and the space key or
// Return is the pointer's button: a press, and at the next time the release.
bool TPictureEditor::keyOfDrawing(const QKeyEvent &event)
{
    const int code = event.key();
    const QPoint way = wayOf(code);
    const bool isButton = code == Qt::Key_Space || code == Qt::Key_Return || code == Qt::Key_Enter;
    if (!draws(m_State) || m_Pixmap.isNull() || (way.isNull() && !isButton))
        return false;
    const bool isNew = !m_KeyPlace;
    if (isNew) {
        const QRect seen = m_pWidget->visibleRegion().boundingRect();
        const QPoint middle = (QPointF(seen.center()) * m_pWidget->devicePixelRatioF()).toPoint();
        m_KeyPlace = mapping().toPicture(middle);
    }
    const bool isDown = m_Gesture.isUnderWay();
    const Qt::KeyboardModifiers shift = event.modifiers() & Qt::ShiftModifier;
    if (!way.isNull() && !isNew) {
        const int step = event.modifiers().testFlag(Qt::ControlModifier) ? s_widestStep
                         : event.modifiers().testFlag(Qt::AltModifier)   ? s_step
                                                                         : s_wideStep;
        const QSize size = m_Canvas.size();
        const QPoint moved = *m_KeyPlace + way * step;
        m_KeyPlace = QPoint(std::clamp(moved.x(), 0, size.width() - 1),
                            std::clamp(moved.y(), 0, size.height() - 1));
        if (isDown)
            move(keyPointer(Qt::LeftButton, shift));
        else if (m_State == statePipette)
            hover(keyPointer(Qt::NoButton, {}));
    } else if (isButton && isDown) {
        release(keyPointer(Qt::NoButton, shift));
    } else if (isButton) {
        press(keyPointer(Qt::LeftButton, shift));
        if (toolOf(m_State).isPlaced)
            release(keyPointer(Qt::NoButton, shift));
    }
    showMarks();
    if (m_KeyPlace)
        emit lookedAt(logicalPlace({*m_KeyPlace, QSize(1, 1)}));
    return true;
}

// The middle of a picture's pixel, so that it is that one again when it is mapped back.
TPictureEditor::Pointer TPictureEditor::keyPointer(Qt::MouseButtons buttons,
                                                   Qt::KeyboardModifiers modifiers) const
{
    const QPointF at = mapping().toWidget(QPointF(*m_KeyPlace) + QPointF(0.5, 0.5));
    return {.at =
                QPoint(static_cast<int>(std::floor(at.x())), static_cast<int>(std::floor(at.y()))),
            .logical = (at / m_pWidget->devicePixelRatioF()).toPoint(),
            .button = Qt::LeftButton,
            .buttons = buttons,
            .modifiers = modifiers};
}

// The second press of a double click may begin a drag, but does not open or close a new text.
void TPictureEditor::pressAgain(const Pointer &pointer)
{
    if (openTextAt(pointer))
        return;
    if (m_State == stateMove || (draws(m_State) && !selects(pointer.modifiers)))
        takeHold(pointer);
    else
        press(pointer);
}

void TPictureEditor::enter()
{
    takeEveryMove(toolOf(m_State).isFreehand);
    // Another window, for example an overlay, may have grabbed the pointer during a drag and got
    // its release.
    if (QGuiApplication::mouseButtons() == Qt::NoButton && !m_KeyPlace &&
        (m_Gesture.drop() || m_Selection.drop())) {
        m_Hold = Hold::Nothing;
        refreshPreview();
        showMarks();
    }
}

void TPictureEditor::leave()
{
    takeEveryMove(false);
    m_Hovered.reset();
    showMarks();
}

// What keys were drawing can't go on without them.
void TPictureEditor::loseKeys()
{
    if (m_KeyPlace && m_Gesture.drop())
        refreshPreview();
    m_KeyPlace.reset();
    showMarks();
}

// Not during a drag, whose pixels are those of the widget.
bool TPictureEditor::wheel(const QWheelEvent &event)
{
    if (!event.modifiers().testFlag(Qt::ControlModifier))
        return false;
    const double notches =
        event.angleDelta().y() / static_cast<double>(QWheelEvent::DefaultDeltasPerStep);
    if (notches != 0 && event.buttons() == Qt::NoButton && !m_Gesture.isUnderWay())
        emit zoomWanted(notches, event.position());
    return true;
}

void TPictureEditor::mouse(const QMouseEvent &event)
{
    const Pointer pointer = pointerOf(event);
    if (event.type() == QEvent::MouseMove)
        move(pointer);
    else if (event.type() == QEvent::MouseButtonPress && isFirstButton(event))
        press(pointer);
    else if (event.type() == QEvent::MouseButtonDblClick && isFirstButton(event))
        pressAgain(pointer);
    else if (event.type() == QEvent::MouseButtonRelease && event.button() == m_DragButton)
        release(pointer);
}

bool TPictureEditor::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_pTextEdit && event->type() == QEvent::Paint)
        fitTextField();
    if (watched != m_pWidget && asksForMenu(*event)) {
        wantMenu();
        return true;
    }
    if (watched != m_pWidget)
        return QObject::eventFilter(watched, event);
    switch (event->type()) {
    case QEvent::Paint:
        paint(*static_cast<QPaintEvent *>(event));
        return true;
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::MouseButtonRelease:
        mouse(*static_cast<QMouseEvent *>(event));
        return true;
    case QEvent::Wheel:
        if (wheel(*static_cast<QWheelEvent *>(event)))
            return true;
        break;
    case QEvent::KeyPress:
        if (key(*static_cast<QKeyEvent *>(event)))
            return true;
        break;
    // The pointer's is answered at its press, and that of the keys when they are pressed.
    case QEvent::ContextMenu:
        return true;
    case QEvent::Enter:
        enter();
        break;
    case QEvent::Leave:
        leave();
        break;
    case QEvent::FocusOut:
        loseKeys();
        break;
    case QEvent::Resize:
        refreshPreview();
        placeTextField();
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}
