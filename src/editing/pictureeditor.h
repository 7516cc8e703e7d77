#pragma once

#include "editing/canvas.h"
#include "editing/cropping.h"
#include "editing/gesture.h"
#include "editing/history.h"
#include "editing/selection.h"
#include "editing/toolstyles.h"
#include "editing/viewmapping.h"

#include <QImage>
#include <QObject>
#include <QPixmap>
#include <QPointer>

#include <functional>
#include <optional>

class QKeyEvent;
class QMouseEvent;
class QPaintEvent;
class QPainterPath;
class QPolygonF;
class QTextEdit;
class QWheelEvent;
class QWidget;

/// The editor for the current document. It handles painting and mouse events of a plain widget, and
/// shows the picture with its shapes there. All stored coordinates are picture coordinates,
/// independent of the zoom.
class TPictureEditor : public QObject
{
    Q_OBJECT

public:
    /// The events that the callback gets as its first argument; its second argument is always 0,
    /// and its result is ignored. Refusal means that a text or shape outside of the picture was not
    /// recorded.
    enum Change { HistoryChange = 1, SizeChange = 2, ToolChange = 3, Refusal = 4 };
    using Callback = long (*)(long, long);

    /// An editor for `widget`, which must outlive it.
    TPictureEditor(QWidget *widget, QWidget *parent);
    /// An editor for rendering only: just setPixmap, setVecUnDo, setVecReDo and sendPixmap may be
    /// used.
    explicit TPictureEditor(QObject *parent);
    ~TPictureEditor() override;

    void setcallback(Callback callback) { m_Callback = callback; }
    Callback getcallback() const { return m_Callback; }

    /// Changes the tool. A text that is being typed is committed first.
    void setState(stateEnum state);
    stateEnum getState() const { return m_State; }
    /// The style of the shapes that are chosen, else what new shapes of the current tool are drawn
    /// with. The line width is in picture pixels.
    void setLineWidth(int width);
    int getLineWidth() const { return style().width; }
    void setPenColor(const QColor &color);
    QColor getPenColor() const { return style().color; }
    const EditMsg &style() const;
    /// Changes it by a function that gets the style.
    void changeStyle(const std::function<void(EditMsg &)> &change);
    /// The styles of all tools.
    ToolStyles &styles() { return m_Styles; }
    /// Sets what the next marker shows, or the one that is chosen alone; those after it count on
    /// from there.
    void setNextNumber(int number);
    /// What it shows, if it is recorded now.
    int nextNumber() const;
    /// Sets the font of the texts that are chosen, else of new ones. A text that is being typed
    /// changes at once.
    void set_m_Font(const QFont &font);
    /// The same font as a reference. An open text field shows a change when it is painted next.
    QFont &EditFont() { return m_Font; }

    /// Shows another picture at zoom 1 and keeps the history. A drag that was meant for the
    /// previous picture is dropped.
    void setPixmap(const QPixmap &pixmap);
    /// The whole picture, without shapes.
    QPixmap &getPixmap() { return m_Pixmap; }
    /// The size of what is left of it, which is what is shown.
    QSize pictureSize() const { return m_Canvas.size(); }
    /// Sets the zoom in device pixels per picture pixel; must not be 0.
    void setPixmapScaled(float scale);
    float getPixmapScaled() const { return m_Scale; }
    /// Whether the pixels of an enlarged picture are blocks, instead of being blended.
    void setSharp(bool isSharp);

    const EditHistory &getVecUnDo() const { return m_VecUnDo; }
    const EditHistory &getVecReDo() const { return m_VecReDo; }
    /// Takes over a document's history. If `history` is the editor's own, it ends up empty.
    void setVecUnDo(const EditHistory *history);
    void setVecReDo(const EditHistory *history);
    void clearShape();

    /// Opens the text field at the position of the last click, and returns the field's text.
    QString getUserText();
    bool isTyping() const;
    /// The operation that would be recorded for the text that is being typed; null if there is
    /// none.
    OperationPtr typedText() const;
    /// Gives the keyboard focus back to a text that is being typed, at the same caret position.
    /// Returns false if there is none.
    bool goOnTyping();
    /// Commits the text that is being typed.
    void EndEdit();
    /// Records one step and shows it. Does nothing without a picture. A reader would expect every
    /// new step to clear what was undone, but one that just adds a shape keeps it, on purpose:
    /// undone shapes can still be restored on top of the new one.
    void record(OperationPtr step);
    /// Puts the picture on a ground, in place of the one on which it lies; none takes it off.
    void putOn(std::optional<Backdrop> backdrop);
    /// What it lies on; none if there is nothing, or the picture was changed since.
    std::optional<Backdrop> backdrop() const;
    /// The picture with all its shapes, without what it lies on.
    QImage withoutBackdrop();
    void Undo();
    void Redo();
    /// The picture with all its shapes. Pixels outside the outline of a cut picture become
    /// `background`.
    QPixmap sendPixmap(const QColor &background);

    /// Makes the pixels of a new grab outside of the marked shape transparent. The shape is `path`
    /// or `polygon`, in picture coordinates; with none or both of them nothing is cut. `flag` and
    /// `registered` are not used, because a registered user's pictures are left alone.
    static void EditPolyPixmap(QPixmap &picture, QPixmap &flag, bool registered,
                               const QPainterPath *path, const QPolygonF *polygon);

    // What is chosen of the shapes. Each change is one step; without anything chosen nothing
    // happens.

    bool hasSelection() const { return !m_Selection.isEmpty(); }
    /// The shapes that are chosen, bottom to top.
    QList<EntryPtr> chosen() const { return m_Selection.of(m_Canvas.shapes()); }
    void selectAll();
    void removeSelected();
    /// Copies, beside their originals, which are chosen instead.
    void duplicateSelected();
    /// One place up or down among all shapes.
    void raiseSelected();
    void lowerSelected();
    /// Whether a text is chosen, alone.
    bool choosesText() const;
    /// Opens it in the field in which it was typed.
    void editSelectedText();
    /// Whether a key asks for a menu.
    static bool isMenuKey(const QKeyEvent &event);
    /// Asks for the menu of the picture, where there is no pointer.
    void wantMenu();

    bool eventFilter(QObject *watched, QEvent *event) override;

signals:
    /// The hand tool has moved the picture, in the widget's logical pixels; the signs are those of
    /// scroll bars.
    void movealue(int dx, int dy);
    /// The wheel zooms: by so many notches, with what is at a position in the widget, in logical
    /// pixels, staying there.
    void zoomWanted(double notches, QPointF position);
    /// The text that is being typed has changed.
    void typed();
    /// Other shapes are chosen than before, or their style has changed.
    void selectionChanged();
    /// The user wants the menu of the picture, at a global position in logical pixels.
    void menuWanted(QPoint position);
    /// The pipette was used.
    void colorTaken(const QColor &color);
    /// The text of a part of the picture is wanted, in picture coordinates.
    void textWanted(QRect part);
    /// The keys have moved to a place that should be in view, in the widget's logical pixels.
    void lookedAt(QRect place);

public slots:
    /// Records the typed text and hides the field.
    void saveEditText();
    void FinishEditText();

private:
    /// The pointer at a mouse event, or where a key stands for one.
    struct Pointer {
        QPoint at{};       ///< device pixels of the widget
        QPoint logical{};  ///< logical ones
        Qt::MouseButton button = Qt::NoButton;
        Qt::MouseButtons buttons{};
        Qt::KeyboardModifiers modifiers{};
    };
    /// What the current drag acts on.
    enum class Hold { Nothing, Gesture, Selection, Crop };

    /// What further changes of the same kind go on with.
    enum class Growth { None, Width, Nudge };

    static int newSeed();
    void notify(Change change);
    void updateWidget();
    void updateArea(const QRegion &pictureArea);
    void refreshPreview();
    void createTextField();
    void fitTextField();
    void placeTextField();
    EditMsg styleOfShape() const;
    EditMsg &styleOfText();
    OperationPtr stepInHand() const;
    EntryPtr chosenMarker() const;
    void showMarks();
    void paintMarks(QPainter &painter, const ViewMapping &view);
    QRect placeOfMarks() const;
    qreal pixels(qreal logical) const;
    void selectionMoved();
    void changeStyle(const std::function<void(EditMsg &)> &change, Growth growth);
    void recordChange(const OperationPtr &step, Growth growth = Growth::None);
    QList<EntryPtr> chosenNow() const;
    QRect logicalPlace(const QRect &part) const;
    void nudge(QPoint by, bool goesOn);
    void leaveTool();
    void startCropping();
    void applyCrop();
    void takeColor(QPoint at);
    void takePart();
    QRect markedPart() const;
    void openMenu(const Pointer &pointer);
    void endEditing();
    OperationPtr retyped() const;
    Pointer keyPointer(Qt::MouseButtons buttons, Qt::KeyboardModifiers modifiers) const;
    bool key(const QKeyEvent &event);
    bool keyOfSelection(const QKeyEvent &event);
    bool keyOfDrawing(const QKeyEvent &event);
    void hover(const Pointer &pointer);
    bool selects(Qt::KeyboardModifiers modifiers) const;
    void chooseAt(const Pointer &pointer);
    bool openTextAt(const Pointer &pointer);
    Geometry numbered(Geometry geometry) const;
    EditEntry textEntry() const;
    void restartCanvas();
    void followHistory();
    void moveNewest(EditHistory &from, EditHistory &to);
    ViewMapping mapping() const;
    Pointer pointerOf(const QMouseEvent &event) const;
    void press(const Pointer &pointer);
    bool pressText(const Pointer &pointer);
    void pressAgain(const Pointer &pointer);
    void takeHold(const Pointer &pointer);
    void enter();
    void leave();
    void loseKeys();
    void mouse(const QMouseEvent &event);
    void move(const Pointer &pointer);
    void release(const Pointer &pointer);
    bool escape();
    bool wheel(const QWheelEvent &event);
    void paint(const QPaintEvent &event);
    void paintChequers(QPainter &painter, const QRegion &area, QPoint margins) const;
    const QImage &shrunk(QSize size);

    /// How far from its middle a handle answers, in logical pixels.
    static constexpr qreal s_handleReach = 7;

    Callback m_Callback = nullptr;
    stateEnum m_State = stateMove;
    QWidget *m_pWidget = nullptr;
    QPixmap m_Pixmap;
    Canvas m_Canvas;
    QImage m_Shrunk;        ///< the recorded picture at a zoom below 1; null if not computed yet
    QRegion m_ShrunkStale;  ///< where m_Shrunk is out of date, in picture coordinates
    QPointer<QTextEdit> m_pTextEdit;  ///< owned by the drawing widget
    QPoint m_TextPos{-1, -1};         ///< position of the text being typed, in picture coordinates
    QPoint m_TextAnchor;              ///< the same position in the widget, in logical pixels
    bool m_TextOpen = false;  ///< from the click that opens the field to the click that closes it
    QFont m_Font;
    float m_Scale = 1.0F;
    bool m_IsSharp = false;
    ToolStyles m_Styles;
    int m_Seed = newSeed();  ///< of the next cover
    int m_NextNumber = 0;    ///< that was set for the next marker; 0: it counts on
    DrawingGesture m_Gesture;
    Hold m_Hold = Hold::Nothing;
    stateEnum m_ToolBefore = stateMove;  ///< the one to go back to from a tool that is used once
    Selection m_Selection;
    // The newest step, if a further change of the same shapes becomes part of it.
    OperationPtr m_Growing{};
    QList<ShapeId> m_GrowingIds{};
    Growth m_Growth = Growth::None;
    EntryPtr m_Edited{};  ///< the text that was recorded before and is being typed again
    EditMsg m_EditedStyle;
    std::optional<Cropping> m_Crop{};    ///< while the crop tool is chosen
    std::optional<QPoint> m_Hovered{};   ///< where the pipette is, in device pixels of the widget
    std::optional<QPoint> m_KeyPlace{};  ///< where keys draw, in picture coordinates
    QRect m_MarksPlace;                  ///< where marks were shown last, in device pixels
    EditHistory m_VecUnDo;
    EditHistory m_VecReDo;
    bool m_EscapeSeen = false;
    Qt::MouseButton m_DragButton = Qt::NoButton;  ///< the button that began the current drag
    QPoint m_DragOrigin;  ///< where the hand took hold, in the widget's logical pixels
};
