#pragma once

#include "editing/canvas.h"
#include "editing/gesture.h"
#include "editing/shapes.h"
#include "editing/viewmapping.h"

#include <QImage>
#include <QObject>
#include <QPixmap>
#include <QPointer>

class QMouseEvent;
class QPaintEvent;
class QPainterPath;
class QPolygonF;
class QTextEdit;
class QWidget;

/// The annotation engine of the current document. It takes over the painting and the mouse of a
/// plain widget, and shows the picture with its shapes there. Everything that it stores is in
/// picture coordinates, whatever the zoom.
class TPictureEditor : public QObject
{
    Q_OBJECT

public:
    /// What happened, as told to the callback; its second argument is always 0 and its result
    /// ignored. A refusal is of a text or shape outside of the picture, which is not recorded.
    enum Change { HistoryChange = 1, SizeChange = 2, ToolChange = 3, Refusal = 4 };
    using Callback = long (*)(long, long);

    /// An editor over `widget`, which outlives it.
    TPictureEditor(QWidget *widget, QWidget *parent);
    /// An editor for one rendering: setPixmap, setVecUnDo, setVecReDo and sendPixmap only.
    explicit TPictureEditor(QObject *parent);
    ~TPictureEditor() override;

    void setcallback(Callback callback) { m_Callback = callback; }
    Callback getcallback() const { return m_Callback; }

    /// Changes the tool; an open text is committed first.
    void setState(stateEnum state);
    stateEnum getState() const { return m_State; }
    void setLineWidth(int width);  ///< of shapes drawn from now on, in picture pixels
    int getLineWidth() const { return m_LineWidth; }
    void setPenColor(const QColor &color);  ///< of shapes drawn from now on
    QColor getPenColor() const { return m_PenColor; }
    /// The font of texts committed from now on; a text that is being typed takes it at once.
    void set_m_Font(const QFont &font);
    /// The same font, to change in place; an open field shows it when it next paints.
    QFont &EditFont() { return m_Font; }

    /// Shows another picture, at zoom 1; the history stays. A shape that is being dragged was meant
    /// for the one before, and is dropped.
    void setPixmap(const QPixmap &pixmap);
    QPixmap &getPixmap() { return m_Pixmap; }
    /// Sets the zoom, in device pixels per picture pixel; must not be 0.
    void setPixmapScaled(float scale);
    float getPixmapScaled() const { return m_Scale; }

    const EditHistory &getVecUnDo() const { return m_VecUnDo; }
    const EditHistory &getVecReDo() const { return m_VecReDo; }
    /// Takes a document's history. Given the editor's own, it ends up empty.
    void setVecUnDo(const EditHistory *history);
    void setVecReDo(const EditHistory *history);
    void clearShape();

    /// Opens the field for a text at the place of the last click, and gives what it holds.
    QString getUserText();
    bool isTyping() const;
    /// The text that is being typed, as it would be recorded now; null where there is none.
    EntryPtr typedText() const;
    /// Gives the keyboard back to a text that is being typed, with the caret where it was. False
    /// where there is none.
    bool goOnTyping();
    /// Commits a text that is being typed.
    void EndEdit();
    void Undo();
    void Redo();
    /// The picture with all its shapes; pixels outside the outline of a cut picture become
    /// `background`.
    QPixmap sendPixmap(const QColor &background);

    /// Cuts a fresh grab to the marked shape, in picture coordinates: what lies outside becomes
    /// transparent. Without a shape, or with both, nothing is cut. `registered` and `flag` belong
    /// to the registration, which leaves a registered user's pictures alone.
    static void EditPolyPixmap(QPixmap &picture, QPixmap &flag, bool registered,
                               const QPainterPath *path, const QPolygonF *polygon);

    bool eventFilter(QObject *watched, QEvent *event) override;

signals:
    /// The hand moved the picture by that much, in the widget's pixels, as scroll bars count.
    void movealue(int dx, int dy);
    /// The text that is being typed has changed.
    void typed();

public slots:
    /// Records the typed text, and hides the field.
    void saveEditText();
    void FinishEditText();

private:
    void notify(Change change);
    void updateWidget();
    void updateArea(const QRegion &pictureArea);
    void refreshPreview();
    void createTextField();
    void fitTextField();
    void placeTextField();
    EditEntry textEntry() const;
    void record(Geometry geometry, EditMsg style);
    void moveNewest(EditHistory &from, EditHistory &to);
    ViewMapping mapping() const;
    QPoint toPixels(const QMouseEvent &event) const;
    void press(const QMouseEvent &event);
    void takeHold(const QMouseEvent &event);
    void move(const QMouseEvent &event);
    void release(const QMouseEvent &event);
    bool escape();
    void paint(const QPaintEvent &event);
    const QImage &shrunk(QSize size);

    Callback m_Callback = nullptr;
    stateEnum m_State = stateMove;
    QWidget *m_pWidget = nullptr;
    QPixmap m_Pixmap;
    Canvas m_Canvas;
    QImage m_Shrunk;        ///< the recorded picture at a zoom below 1; null when not made yet
    QRegion m_ShrunkStale;  ///< where it is not what it has to be, in picture coordinates
    QPointer<QTextEdit> m_pTextEdit;  ///< owned by the drawing widget
    QPoint m_TextPos{-1, -1};         ///< of the text being typed, in picture coordinates
    QPoint m_TextAnchor;              ///< of the same in the widget, in logical pixels
    bool m_TextOpen = false;  ///< from the click that opened the field to the click that closes it
    QFont m_Font;
    QColor m_PenColor = Qt::black;
    float m_Scale = 1.0F;
    int m_LineWidth = 1;
    DrawingGesture m_Gesture;
    EditHistory m_VecUnDo;
    EditHistory m_VecReDo;
    bool m_EscapeSeen = false;
    Qt::MouseButton m_DragButton = Qt::NoButton;  ///< that began what is going on
    QPoint m_DragOrigin;  ///< where the hand took hold, in the widget's logical pixels
};
