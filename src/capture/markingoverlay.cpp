#include "capture/markingoverlay.h"

#include "capture/lastmark.h"
#include "capture/magnifierpanel.h"
#include "capture/overlayplate.h"
#include "capture/takebuttons.h"
#include "platform/desktoppictures.h"
#include "platform/services.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QPainterPath>
#include <QWheelEvent>

#include <algorithm>
#include <array>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int s_wordTime = 1500;    // ms
constexpr int s_wordDistance = 20;  // logical pixels from the pointer
constexpr int s_hintDistance = 24;  // to the screen's edge, and to the pointer
constexpr int s_darkWidth = 3;      // device pixels
constexpr int s_lightWidth = 1;

struct GoalKey {
    int key = 0;
    Qt::KeyboardModifiers modifiers{};
    GrabGoal goal = GrabGoal::Copy;
    const char *name = nullptr;
};

constexpr std::array<GoalKey, 4> s_goalKeys{{
    {Qt::Key_C, Qt::ControlModifier, GrabGoal::Copy, QT_TRANSLATE_NOOP("MarkingOverlay", "Copy")},
    {Qt::Key_S, Qt::ControlModifier, GrabGoal::Save, QT_TRANSLATE_NOOP("MarkingOverlay", "Save")},
    {Qt::Key_P, Qt::NoModifier, GrabGoal::Pin, QT_TRANSLATE_NOOP("MarkingOverlay", "Pin")},
    {Qt::Key_T, Qt::NoModifier, GrabGoal::Text,
     QT_TRANSLATE_NOOP("MarkingOverlay", "Read the text")},
}};

}  // namespace

MarkingOverlay::MarkingOverlay(QWidget *parent, qreal sheetOpacity, const MarkingHabits &habits,
                               QString kind)
    : CaptureOverlay(parent, sheetOpacity, habits.clearSelection ? Sheet::Around : Sheet::Whole),
      m_habits(habits), m_kind(std::move(kind)), m_buttons(new TakeButtons(this)),
      m_hint(new OverlayPlate(this)), m_word(new OverlayPlate(this))
{
    m_hint->setObjectName(u"hint"_s);
    m_word->setObjectName(u"word"_s);
    connect(m_buttons, &TakeButtons::chosen, this,
            [this](const std::optional<GrabGoals> &goals) { takeFor(goals); });
    connect(m_buttons, &TakeButtons::explained, this, &MarkingOverlay::tell);
}

void MarkingOverlay::accept()
{
    if (canBeTaken())
        keepLastMark(m_kind, markedPoints().translated(area().topLeft()));
    CaptureOverlay::accept();
}

bool MarkingOverlay::hears(const Pane & /*pane*/, const QEvent &event)
{
    switch (event.type()) {
    case QEvent::Show:
        follow();
        return false;
    case QEvent::KeyPress:
        return isVisible() && hearsKey(static_cast<const QKeyEvent &>(event));
    case QEvent::Wheel:
        turnWheel(static_cast<const QWheelEvent &>(event));
        return true;
    case QEvent::MouseButtonPress:
        m_habits.showsHint = false;
        m_hint->hide();
        return false;
    default:
        return false;
    }
}

bool MarkingOverlay::hearsKey(const QKeyEvent &event)
{
    const Qt::KeyboardModifiers modifiers = event.modifiers() & ~Qt::KeypadModifier;
    if (event.isAutoRepeat())
        return false;
    for (const GoalKey &goal : s_goalKeys) {
        if (event.key() == goal.key && modifiers == goal.modifiers) {
            takeFor(goal.goal);
            return true;
        }
    }
    if (event.key() == Qt::Key_Enter)
        takeFor({});
    else if (event.key() == Qt::Key_D && modifiers == Qt::NoModifier)
        takeFor({}, true);
    else if (event.key() == Qt::Key_R && modifiers == Qt::NoModifier)
        markAgain();
    else if (event.key() == Qt::Key_C && modifiers == Qt::NoModifier)
        copyColour(colourBelow());
    else
        return false;
    return true;
}

// While a button is down nothing is marked yet that could be taken.
void MarkingOverlay::takeFor(const std::optional<GrabGoals> &goals, bool delayed)
{
    if (goals && goals->testFlag(GrabGoal::Pin)) {
        if (const QString lack = services().abilities.lackOf(Ability::Pins); !lack.isEmpty())
            return tell(lack);
    }
    if (isPressed() || !complete())
        return;
    m_goals = goals;
    m_isDelayed = delayed;
    accept();
}

QList<CaptureOverlay::MenuEntry> MarkingOverlay::takeEntries()
{
    QList<MenuEntry> result;
    const bool canPin = services().abilities.lackOf(Ability::Pins).isEmpty();
    for (const GoalKey &goal : s_goalKeys)
        result.append({tr(goal.name),
                       QKeySequence(QKeyCombination(goal.modifiers, Qt::Key(goal.key))),
                       canComplete() && (goal.goal != GrabGoal::Pin || canPin),
                       [this, goal] { takeFor(goal.goal); }});
    result.append(
        {tr("Take after a countdown"), Qt::Key_D, canComplete(), [this] { takeFor({}, true); }});
    result.append(
        {tr("Last area again"), Qt::Key_R, !lastPoints().isEmpty(), [this] { markAgain(); }});
    // The pointer is on the menu by the time that the entry is chosen.
    const QString colour = colourBelow();
    result.append({tr("Copy the colour %1").arg(colour), Qt::Key_C, !colour.isEmpty(),
                   [this, colour] { copyColour(colour); }});
    return result;
}

QPolygonF MarkingOverlay::lastPoints() const
{
    return lastMark(m_kind, area()).translated(-area().topLeft());
}

void MarkingOverlay::markAgain()
{
    if (isPressed())
        return;
    const QPolygonF points = lastPoints();
    if (points.isEmpty()) {
        tell(tr("Nothing has been marked here before"));
        return;
    }
    m_habits.showsHint = false;
    markPoints(points);
    follow();
}

// As "#rrggbb"; empty where nothing can be read.
QString MarkingOverlay::colourBelow() const
{
    const QImage pixel = pictureBehind({pointer(), QSize(1, 1)}, *this);
    return pixel.isNull() ? QString() : pixel.pixelColor(0, 0).name();
}

void MarkingOverlay::copyColour(const QString &colour)
{
    if (colour.isEmpty())
        return;
    QGuiApplication::clipboard()->setText(colour);
    tell(tr("%1 is copied").arg(colour));
}

void MarkingOverlay::turnWheel(const QWheelEvent &event)
{
    m_turned += event.angleDelta().y();
    if (const int steps = m_turned / QWheelEvent::DefaultDeltasPerStep; steps != 0) {
        m_turned -= steps * QWheelEvent::DefaultDeltasPerStep;
        ShowDetailWindow(eMagMultiple, steps, 0);
    }
}

void MarkingOverlay::tell(const QString &text)
{
    m_word->tell(text);
    const int word = ++m_words;
    services().clock->after(s_wordTime, m_word, [this, word] {
        if (word == m_words)
            m_word->hide();
    });
    placeWord();
    m_word->raise();
}

void MarkingOverlay::follow()
{
    followMark();
    followPointer();
}

void MarkingOverlay::followMark()
{
    if (!canComplete() || isPressed() || !isVisible()) {
        m_buttons->hide();
        return;
    }
    const Pane &pane = paneAt(nearButtons());
    put(*m_buttons, pane, placeButtons(pane.toPixels(m_buttons->size())));
}

void MarkingOverlay::followPointer()
{
    const QPoint pixel = pointerInOverlay();
    const Pane &pane = paneAt(pixel);
    const QRect home = homeOf(pixel);
    if (m_habits.showsHint) {
        if (m_hint->text().isEmpty())
            m_hint->tell(hint());
        const int distance = pane.toPixels(QSize(s_hintDistance, 0)).width();
        put(*m_hint, pane, hintPlace(pane.toPixels(m_hint->size()), home, pixel, distance));
    } else {
        m_hint->hide();
    }
    if (!m_word->isHidden())
        placeWord();
}

// It makes room for the pointer, and for the magnifier.
QPoint MarkingOverlay::hintPlace(QSize size, const QRect &home, QPoint pointer, int distance) const
{
    const QRect room = home.adjusted(distance, distance, -distance, -distance);
    const int right = room.x() + room.width() - size.width();
    const int middle = (room.x() + right) / 2;
    for (const int top : {room.y(), room.y() + room.height() - size.height()}) {
        for (const int left : {middle, right, room.x()}) {
            const QRect box({left, top}, size);
            if (!box.intersects(magnifier()) &&
                !box.adjusted(-distance, -distance, distance, distance).contains(pointer))
                return box.topLeft();
        }
    }
    return {middle, room.y()};
}

void MarkingOverlay::placeWord()
{
    const QPoint pixel = pointerInOverlay();
    const Pane &pane = paneAt(pixel);
    const QRect home = homeOf(pixel);
    const QSize size = pane.toPixels(m_word->size());
    const int distance = pane.toPixels(QSize(s_wordDistance, 0)).width();
    // On the side of the nearer edges, if there is room: the magnifier is in the corner opposite.
    const auto beside = [distance](int at, int length, int from, int room) {
        const bool isBefore = at - from < room / 2 ? at - distance - length >= from
                                                   : at + distance + length > from + room;
        return isBefore ? at - distance - length : at + distance;
    };
    put(*m_word, pane,
        {beside(pixel.x(), size.width(), home.x(), home.width()),
         beside(pixel.y(), size.height(), home.y(), home.height())});
}

void MarkingOverlay::put(QWidget &child, const Pane &pane, QPoint corner)
{
    if (child.parentWidget() != &pane.surface())
        child.setParent(&pane.surface());
    child.move(pane.toLogical(corner));
    child.show();
}

QRect MarkingOverlay::homeOf(QPoint pixel) const
{
    const QRect shown = paneAt(pixel).pixels();
    for (const QRect &screen : services().screens->areas()) {
        const QRect part = screen.translated(-area().topLeft()) & shown;
        if (part.contains(pixel))
            return part;
    }
    return shown;
}

QRect MarkingOverlay::magnifier() const
{
    const auto *panel = findChild<DigDetail *>();
    return panel && panel->isVisible() ? panel->area().translated(-area().topLeft()) : QRect();
}

void MarkingOverlay::drawOutline(QPainter &painter, const QPainterPath &path)
{
    painter.strokePath(path, QPen(Qt::black, s_darkWidth));
    painter.strokePath(path, QPen(Qt::white, s_lightWidth));
}
