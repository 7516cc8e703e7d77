#include "editing/pictureeditor.h"

#include "base/palette.h"
#include "editing/covering.h"
#include "editing/cutting.h"
#include "editing/rendering.h"
#include "editing/scaling.h"

#include <QMenu>
#include <QPaintEvent>
#include <QPainter>
#include <QPainterPath>
#include <QRandomGenerator>
#include <QTextCursor>
#include <QTextEdit>
#include <QWidget>

#include <algorithm>
#include <cmath>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

// The distance from the field's corner to its text: frame and margin.
constexpr QPoint s_textInset(5, 5);
// Space for the next letters.
constexpr QSize s_textRoom(50, 20);
// The text is measured outside of the field, in a rectangle that is too small for it.
constexpr QRect s_measure(-1000, -1000, 10, 10);

// The side of a field of the chequer below what is transparent, in logical pixels.
constexpr qreal s_chequer = 8;

// What is being drawn is one shape as long as that goes on. No recorded one has this id.
constexpr ShapeId s_draft = 0;

// A recorded text has one direction for all lines and draws a tab as a space, so the field does the
// same.
void layOutAsRecorded(QTextDocument &document, bool toTheLeft, qreal space)
{
    const Qt::LayoutDirection direction = toTheLeft ? Qt::RightToLeft : Qt::LeftToRight;
    QTextOption option = document.defaultTextOption();
    if (option.textDirection() == direction && option.tabStopDistance() == space)
        return;
    option.setTextDirection(direction);
    option.setTabStopDistance(space);
    document.setDefaultTextOption(option);
}

// A part of a widget in device pixels, with one more around it: it may begin between two of them.
QRegion inPixels(const QRegion &logical, qreal ratio)
{
    QRegion result;
    for (const QRect &rect : logical) {
        result += QRectF(QPointF(rect.topLeft()) * ratio, QSizeF(rect.size()) * ratio)
                      .toAlignedRect()
                      .adjusted(-1, -1, 1, 1);
    }
    return result;
}

}  // namespace

TPictureEditor::TPictureEditor(QWidget *widget, QWidget *parent)
    : QObject(parent), m_pWidget(widget)
{
    widget->installEventFilter(this);
    widget->setFocusPolicy(Qt::StrongFocus);
    // The pipette and the handles of shapes tell what a press would do.
    widget->setMouseTracking(true);
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
    // Pasted text is drawn with the only font and colour there is.
    m_pTextEdit->setAcceptRichText(false);
    m_pTextEdit->installEventFilter(this);
    m_pTextEdit->viewport()->installEventFilter(this);
    m_pTextEdit->hide();
    m_pTextEdit->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(m_pTextEdit, &QTextEdit::customContextMenuRequested, this, [this](QPoint at) {
        QMenu *menu = m_pTextEdit->createStandardContextMenu();
        // As the field's child it would be as transparent.
        menu->setParent(m_pWidget->window(), menu->windowFlags());
        menu->setAttribute(Qt::WA_DeleteOnClose);
        menu->popup(m_pTextEdit->mapToGlobal(at));
    });
    connect(m_pTextEdit, &QTextEdit::textChanged, this, &TPictureEditor::fitTextField);
    connect(m_pTextEdit, &QTextEdit::textChanged, this, &TPictureEditor::typed);
}

void TPictureEditor::notify(Change change)
{
    if (m_Callback)
        m_Callback(change, 0);
}

// Labels that shapes draw themselves are in the font of texts.
EditMsg TPictureEditor::styleOfShape() const
{
    EditMsg result = m_Styles.of(m_State);
    result.type = m_State;
    if (toolOf(m_State).hasLabel)
        result.font = m_Font;
    return result;
}

// Nobody can guess it.
int TPictureEditor::newSeed()
{
    return QRandomGenerator::system()->bounded(CoverBlocks::s_highestSeed);
}

// A number that was set goes to the next marker.
Geometry TPictureEditor::numbered(Geometry geometry) const
{
    if (auto *marker = std::get_if<MarkerShape>(&geometry))
        marker->start = m_NextNumber;
    return geometry;
}

void TPictureEditor::setNextNumber(int number)
{
    const int within = std::clamp(number, 1, MarkerShape::s_highest);
    if (const EntryPtr marker = chosenMarker()) {
        EditEntry changed = *marker;
        std::get<MarkerShape>(changed.geometry).start = within;
        recordChange(operation(ReplaceShape{std::make_shared<const EditEntry>(changed)}));
        return;
    }
    m_NextNumber = within;
    refreshPreview();
}

// The marker that is chosen alone; null for none.
EntryPtr TPictureEditor::chosenMarker() const
{
    const QList<EntryPtr> shapes = chosen();
    const bool isMarker =
        shapes.size() == 1 && std::holds_alternative<MarkerShape>(shapes.first()->geometry);
    return isMarker ? shapes.first() : nullptr;
}

int TPictureEditor::nextNumber() const
{
    if (const EntryPtr marker = chosenMarker())
        return std::get<MarkerShape>(marker->geometry).number;
    const OperationPtr step = adding({numbered(MarkerShape{}), {}, s_draft});
    return std::get<MarkerShape>(m_Canvas.after(step).shapes.last()->geometry).number;
}

void TPictureEditor::updateWidget()
{
    if (m_pWidget)
        m_pWidget->update();
}

void TPictureEditor::updateArea(const QRegion &pictureArea)
{
    if (!m_pWidget)
        return;
    const ViewMapping view = mapping();
    const qreal ratio = m_pWidget->devicePixelRatioF();
    QRegion area;
    for (const QRect &rect : pictureArea) {
        const QRectF shown = view.toScaled(rect).translated(view.margins());
        // One more pixel, because the widget may begin between two device pixels.
        area += QRectF(shown.topLeft() / ratio, shown.size() / ratio)
                    .toAlignedRect()
                    .adjusted(-1, -1, 1, 1);
    }
    m_pWidget->update(area);
}

// The step that would be recorded if what is under way ended now.
OperationPtr TPictureEditor::stepInHand() const
{
    if (m_Edited)
        return operation(RemoveShape{m_Edited->id});
    if (OperationPtr step = m_Selection.step())
        return step;
    std::optional<Geometry> shape =
        m_Gesture.preview(m_State, mapping(), m_Styles.of(m_State).width);
    return shape ? adding({numbered(std::move(*shape)), styleOfShape(), s_draft}) : nullptr;
}

// Where the picture is transparent, both the recorded picture and the preview over it are visible.
void TPictureEditor::refreshPreview()
{
    if (!m_pWidget)
        return;
    const OperationPtr step = withColors(stepInHand(), m_Canvas.shapes(), m_Canvas.bare(), m_Seed);
    const bool had = m_Canvas.hasPreview();
    if (!step && !had)
        return;
    const QRegion changed = m_Canvas.setPreview(step);
    if (m_Pixmap.hasAlpha() && had != (step != nullptr))
        updateWidget();
    else
        updateArea(changed);
}

void TPictureEditor::setState(stateEnum state)
{
    EndEdit();
    // A drag of the tool before ends with it.
    m_Selection.drop();
    m_Hold = Hold::Nothing;
    if (state != m_State)
        m_ToolBefore = m_State;
    m_State = state;
    if (state != stateSelect)
        m_Selection.clear();
    m_Crop.reset();
    m_Hovered.reset();
    m_KeyPlace.reset();
    if (state == stateCrop && !m_Pixmap.isNull() && m_pWidget)
        startCropping();
    if (m_pWidget)
        m_pWidget->setCursor(toolOf(state).cursor);
    refreshPreview();
    selectionMoved();
}

void TPictureEditor::setPixmap(const QPixmap &pixmap)
{
    m_Pixmap = pixmap;
    m_Canvas.start(pixmap.toImage(), m_VecUnDo);
    m_Gesture.drop();
    m_Selection.drop();
    m_NextNumber = 0;
    // The typed text belonged to the previous picture, so the next click begins a text in this one.
    m_TextOpen = false;
    m_Edited.reset();
    setPixmapScaled(1.0F);
}

void TPictureEditor::setPixmapScaled(float scale)
{
    m_Scale = scale;
    m_Shrunk = {};
    notify(SizeChange);
    if (m_Crop)
        startCropping();
    refreshPreview();
    showMarks();
    placeTextField();
    updateWidget();
}

void TPictureEditor::setSharp(bool isSharp)
{
    m_IsSharp = isSharp;
    updateWidget();
}

void TPictureEditor::setVecUnDo(const EditHistory *history)
{
    m_VecUnDo.clear();
    m_VecUnDo = *history;
    restartCanvas();
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
    restartCanvas();
}

void TPictureEditor::restartCanvas()
{
    const QSize before = m_Canvas.size();
    m_Selection.clear();
    selectionMoved();
    m_Canvas.start(m_VecUnDo);
    m_Shrunk = {};
    if (m_Canvas.size() != before)
        notify(SizeChange);
    updateWidget();
}

// A field counts as open while the page or window around it is hidden, because a tab's page is
// hidden before the change of tabs is signalled.
bool TPictureEditor::isTyping() const
{
    return m_State == stateText && m_pTextEdit && !m_pTextEdit->isHidden();
}

bool TPictureEditor::goOnTyping()
{
    if (isTyping())
        m_pTextEdit->setFocus(Qt::OtherFocusReason);
    return isTyping();
}

void TPictureEditor::EndEdit()
{
    if (isTyping())
        saveEditText();
}

// A text that is committed in another tool, for example by a right click, becomes an entry that
// draws nothing.
EditEntry TPictureEditor::textEntry() const
{
    Geometry geometry;
    if (m_State == stateText)
        geometry = TextShape{m_TextPos};
    EditMsg written = m_Styles.of(m_State);
    written.type = m_State;
    written.width = EditMsg().width;
    written.text = m_pTextEdit->toPlainText();
    written.font = m_Font;
    return {geometry, std::move(written)};
}

EditMsg &TPictureEditor::styleOfText()
{
    if (!m_Edited) {
        m_EditedStyle = m_Styles.of(stateText);
        m_EditedStyle.font = m_Font;
    }
    return m_EditedStyle;
}

OperationPtr TPictureEditor::typedText() const
{
    if (!isTyping())
        return nullptr;
    if (m_Edited)
        return retyped();
    return m_pTextEdit->document()->isEmpty() ? nullptr : adding(textEntry());
}

// A text that is typed again and left empty is gone.
OperationPtr TPictureEditor::retyped() const
{
    EditMsg style = m_EditedStyle;
    style.text = m_pTextEdit->toPlainText();
    if (style == m_Edited->style)
        return nullptr;
    if (style.text.isEmpty())
        return operation(RemoveShape{m_Edited->id});
    return operation(ReplaceShape{std::make_shared<const EditEntry>(
        EditEntry{m_Edited->geometry, std::move(style), m_Edited->id})});
}

// A reader would expect an empty text to be dropped, but it is recorded, on purpose: it takes one
// undo step.
void TPictureEditor::saveEditText()
{
    if (!m_pTextEdit)
        return;
    if (m_Edited) {
        const OperationPtr step = retyped();
        endEditing();
        if (step)
            record(step);
        return;
    }
    record(adding(textEntry()));
    m_pTextEdit->clear();
    m_pTextEdit->hide();
}

void TPictureEditor::FinishEditText() { saveEditText(); }

QString TPictureEditor::getUserText()
{
    m_State = stateText;
    m_pTextEdit->setLineWrapMode(QTextEdit::NoWrap);
    m_pTextEdit->setOverwriteMode(true);
    m_pTextEdit->setFocus(Qt::OtherFocusReason);
    fitTextField();
    m_pTextEdit->show();
    return m_pTextEdit->toPlainText();
}

// The field shows the text as it will look on the zoomed picture. If the zoom leaves nothing of the
// font, the field keeps the font's own size.
void TPictureEditor::fitTextField()
{
    const EditMsg &style = styleOfText();
    QFont font = style.font;
    const int points = static_cast<int>(static_cast<float>(font.pointSize()) * m_Scale);
    if (font.pointSize() > 0) {
        font.setPointSizeF((points > 0 ? points : font.pointSize()) /
                           m_pTextEdit->devicePixelRatioF());
    }
    if (m_pTextEdit->document()->defaultFont() != font)
        m_pTextEdit->document()->setDefaultFont(font);
    QPalette palette = m_pTextEdit->palette();
    if (palette.color(QPalette::Text) != style.color) {
        palette.setBrush(QPalette::Text, style.color);
        m_pTextEdit->setPalette(palette);
    }
    const QString text = m_pTextEdit->toPlainText();
    const QFontMetrics metrics(font, m_pTextEdit);
    const bool toTheLeft = text.isRightToLeft();
    layOutAsRecorded(*m_pTextEdit->document(), toTheLeft,
                     QFontMetricsF(font, m_pTextEdit).horizontalAdvance(u' '));
    const QRect bounds = metrics.boundingRect(s_measure, Qt::AlignLeft | Qt::AlignTop,
                                              text.isEmpty() ? u"a"_s : text);
    // New letters are added at the end, so there must be space for them.
    const QPoint room(toTheLeft ? s_textRoom.width() - 2 * s_textInset.x() : 0, 0);
    m_pTextEdit->setGeometry(QRect(m_TextAnchor - s_textInset - room, bounds.size() + s_textRoom));
}

// Keeps an open field at its position in the picture.
void TPictureEditor::placeTextField()
{
    if (!isTyping())
        return;
    const QPointF place = mapping().toWidget(m_TextPos) / m_pWidget->devicePixelRatioF();
    m_TextAnchor = place.toPoint();
    fitTextField();
}

void TPictureEditor::record(OperationPtr step)
{
    // A document without a picture can't be saved.
    if (m_Pixmap.isNull())
        return;
    notify(HistoryChange);
    const EntryPtr added = addedBy(*step);
    if (!added)
        m_VecReDo.clear();
    else if (std::holds_alternative<MarkerShape>(added->geometry))
        m_NextNumber = 0;
    step = withColors(step, m_Canvas.shapes(), m_Canvas.bare(), m_Seed);
    m_VecUnDo.prepend(withGround(step, m_Canvas.scene(), m_Canvas.bare()));
    m_Seed = newSeed();
    m_Growing.reset();
    followHistory();
}

void TPictureEditor::moveNewest(EditHistory &from, EditHistory &to)
{
    EndEdit();
    if (from.isEmpty())
        return;
    notify(HistoryChange);
    to.prepend(from.takeFirst());
    m_Growing.reset();
    followHistory();
}

void TPictureEditor::followHistory()
{
    // What is being dragged or typed again may not be there any more.
    if (m_Selection.drop())
        m_Hold = Hold::Nothing;
    if (const std::optional<QRegion> changed = m_Canvas.follow(m_VecUnDo)) {
        m_ShrunkStale += *changed;
        updateArea(*changed);
        m_Selection.keepOnly(m_Canvas.shapes());
        selectionMoved();
        return;
    }
    // A drag or a text that was meant for a place in the frame before has none in this one.
    m_Gesture.drop();
    m_Selection.keepOnly(m_Canvas.shapes());
    setPixmapScaled(m_Scale);
    selectionMoved();
}

// The ground has the colours of what can be seen.
void TPictureEditor::putOn(std::optional<Backdrop> backdrop)
{
    if (backdrop && backdrop->ground == Backdrop::Ground::Blurred)
        backdrop->blots = Backdrop::blotsOf(withoutBackdrop());
    record(operation(BackdropPicture{std::move(backdrop)}));
}

std::optional<Backdrop> TPictureEditor::backdrop() const { return backdropOf(m_Canvas.scene()); }

QImage TPictureEditor::withoutBackdrop()
{
    if (m_Canvas.scene().onBackdrop.isNull())
        return m_Canvas.recorded();
    // Its corners are not round there.
    const Scene without = m_Canvas.after(operation(BackdropPicture{}));
    return drawn(changed(m_Pixmap.toImage(), without), without.shapes);
}

void TPictureEditor::Undo() { moveNewest(m_VecUnDo, m_VecReDo); }

void TPictureEditor::Redo() { moveNewest(m_VecReDo, m_VecUnDo); }

QPixmap TPictureEditor::sendPixmap(const QColor &background)
{
    return QPixmap::fromImage(replayed(m_Pixmap.toImage(), m_VecUnDo, background));
}

ViewMapping TPictureEditor::mapping() const
{
    return {.widget = m_pWidget->size() * m_pWidget->devicePixelRatioF(),
            .picture = m_Canvas.size(),
            .scale = m_Scale};
}

const QImage &TPictureEditor::shrunk(QSize size)
{
    const QImage &image = m_Canvas.recorded();
    if (m_Shrunk.isNull()) {
        m_Shrunk = image.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    } else if (!m_ShrunkStale.isEmpty()) {
        const ViewMapping view = mapping();
        QPainter painter(&m_Shrunk);
        painter.setCompositionMode(QPainter::CompositionMode_Source);
        for (const QRect &rect : m_ShrunkStale) {
            const QRect part = view.toScaled(rect);
            painter.drawImage(part.topLeft(), scaledPart(image, size, part));
        }
    }
    m_ShrunkStale = {};
    return m_Shrunk;
}

void TPictureEditor::paint(const QPaintEvent &event)
{
    const ViewMapping view = mapping();
    const QRect shown = view.shown();
    if (shown.isEmpty())
        return;
    const QSize size = shown.size();
    QPainter painter(m_pWidget);
    const QTransform toDevice = painter.deviceTransform();
    const QPoint origin = wholePixel({toDevice.dx(), toDevice.dy()});
    painter.setWorldTransform(QTransform::fromTranslate(origin.x(), origin.y()) *
                              toDevice.inverted());

    // The line is beside the picture, so that it covers none of its pixels.
    for (const QRect &line : QRegion(shown.adjusted(-1, -1, 1, 1)) - shown)
        painter.fillRect(line, Palette::pictureEdge);

    const QPoint margins = shown.topLeft();
    QRegion region = inPixels(event.region(), m_pWidget->devicePixelRatioF()).translated(-margins);
    region &= QRect(QPoint(), size);

    if (m_Canvas.recorded().hasAlphaChannel())
        paintChequers(painter, region, margins);
    const bool isSharp = m_IsSharp && size.width() > m_Canvas.size().width();
    const auto draw = [&](const QRegion &area, const QImage &image) {
        for (const QRect &part : area) {
            if (image.size() == size)
                painter.drawImage(part.topLeft() + margins, image, part);
            else if (isSharp)
                painter.drawImage(part.topLeft() + margins, sharpPart(image, size, part));
            else
                painter.drawImage(part.topLeft() + margins, scaledPart(image, size, part));
        }
    };
    QRegion previewed;
    if (m_Canvas.hasPreview() && m_Pixmap.hasAlpha()) {
        previewed = region;
    } else if (m_Canvas.hasPreview()) {
        for (const QRect &rect : m_Canvas.previewArea())
            previewed += view.toScaled(rect);
        previewed &= region;
        region -= previewed;
    }
    if (!region.isEmpty()) {
        const bool shrinks = size.width() < m_Canvas.size().width();
        draw(region, shrinks ? shrunk(size) : m_Canvas.recorded());
    }
    if (!previewed.isEmpty())
        draw(previewed, m_Canvas.preview(view.fromScaled(previewed)));
    paintMarks(painter, view);
}

// They lie still on the picture, and are as large at any zoom. Device pixels.
void TPictureEditor::paintChequers(QPainter &painter, const QRegion &area, QPoint margins) const
{
    const int field = qRound(pixels(s_chequer));
    QPixmap fields(2 * field, 2 * field);
    fields.fill(Palette::clearBright);
    QPainter pattern(&fields);
    pattern.fillRect(field, 0, field, field, Palette::clearDark);
    pattern.fillRect(0, field, field, field, Palette::clearDark);
    pattern.end();
    for (const QRect &part : area)
        painter.drawTiledPixmap(part.translated(margins), fields, part.topLeft());
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
    cutToShape(image, shape);
    picture = QPixmap::fromImage(image);
}
