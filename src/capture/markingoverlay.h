#pragma once

#include "capture/captureoverlay.h"

#include <QPolygonF>
#include <QString>

#include <optional>

class OverlayPlate;
class QKeyEvent;
class QWheelEvent;
class TakeButtons;

/// How overlays behave in which something is marked, as the user has it.
struct MarkingHabits {
    bool takesOnRelease = false;      ///< a drag that has marked a region takes it when it ends
    bool takesOnDoubleClick = false;  ///< so does a double click in the region
    bool clearSelection = false;      ///< what is marked is not dimmed
    bool showsHint = false;           ///< what to do is told until the first press
};

/// What the overlays of the rectangle, the ellipse and the polygon have in common: the keys, the
/// buttons and the menu entries that say what becomes of the marked part, the part that was marked
/// last, the colour below the pointer, and what is told on the overlay.
class MarkingOverlay : public CaptureOverlay
{
    Q_OBJECT
public:
    /// What the user has asked for; none: the preferences decide.
    const std::optional<GrabGoals> &goals() const { return m_goals; }
    /// Whether the picture is to be taken after a countdown only.
    bool isDelayed() const { return m_isDelayed; }

public slots:
    void accept() override;

protected:
    /// `kind` is what lastMark() is asked for.
    MarkingOverlay(QWidget *parent, qreal sheetOpacity, const MarkingHabits &habits, QString kind);

    const MarkingHabits &habits() const { return m_habits; }

    /// An event of a pane's surface, before the overlay itself looks at it. True if that is not to.
    bool hears(const Pane &pane, const QEvent &event);
    /// Lets the buttons, the hint and the short word follow what is marked and the pointer.
    void follow();
    /// Shows something for a moment, beside the pointer.
    void tell(const QString &text);
    /// The menu's entries for what the keys do.
    QList<MenuEntry> takeEntries();
    /// The part of the screen with a pixel that its pane shows.
    QRect homeOf(QPoint pixel) const;
    /// What the magnifier covers, in overlay coordinates; empty where none is shown.
    QRect magnifier() const;
    static void drawOutline(QPainter &painter, const QPainterPath &path);

    /// Whether what is marked can be completed, and that; false if there is nothing to take.
    virtual bool canComplete() const = 0;
    virtual bool complete() = 0;
    virtual bool isPressed() const = 0;
    /// The outline of what is marked, as lastMark() gives it, and the way back.
    virtual QPolygonF markedPoints() const = 0;
    virtual void markPoints(const QPolygonF &points) = 0;
    /// Near what the buttons are wanted, and where a frame of that size is to have its corner.
    /// Overlay coordinates.
    virtual QPoint nearButtons() const = 0;
    virtual QPoint placeButtons(QSize size) const = 0;
    virtual QString hint() const = 0;

private:
    bool hearsKey(const QKeyEvent &event);
    void takeFor(const std::optional<GrabGoals> &goals, bool delayed = false);
    void markAgain();
    QPolygonF lastPoints() const;
    QString colourBelow() const;
    void copyColour(const QString &colour);
    void turnWheel(const QWheelEvent &event);
    void followMark();
    void followPointer();
    QPoint hintPlace(QSize size, const QRect &home, QPoint pointer, int distance) const;
    void placeWord();
    /// Shows a child on that pane, with its corner at a pixel.
    static void put(QWidget &child, const Pane &pane, QPoint corner);

    MarkingHabits m_habits;
    QString m_kind;
    std::optional<GrabGoals> m_goals;
    bool m_isDelayed = false;
    TakeButtons *m_buttons = nullptr;
    OverlayPlate *m_hint = nullptr;
    OverlayPlate *m_word = nullptr;
    int m_words = 0;   // how many there were: each is hidden by its own time
    int m_turned = 0;  // of a step of the wheel, in the toolkit's eighths of a degree
};
