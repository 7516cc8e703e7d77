#pragma once

#include "editing/history.h"
#include "editing/sparseimage.h"

#include <QByteArray>
#include <QImage>
#include <QRegion>

#include <deque>
#include <optional>
#include <unordered_map>

/// What a canvas keeps while a step changes some shapes and leaves all others where they are: most
/// of what it shows stays the same from frame to frame.
struct ChangingLayers {
    QList<qsizetype> places{};  ///< of the shapes that change, in the scene
    QRegion before{};           ///< where these are recorded
    QList<EntryPtr> below{};    ///< the shapes below all of these
    QList<EntryPtr> others{};   ///< all but these
    SparseImage drawnBelow{};
    SparseImage drawnOthers{};
    std::unordered_map<EntryPtr, QRegion> areas{};  ///< what shapes cover, finely
};

/// The pixels that the editor shows: what a history makes of the picture, with its shapes, and the
/// step that the user is about to make. The result equals a replay of the history, but is updated
/// step by step: a new shape is drawn over the existing pixels, the newest shapes can be taken back
/// because the pixels below them are kept, and after other changes only the area that differs is
/// drawn again. All coordinates are those of the picture as it is now.
class Canvas
{
public:
    /// Starts again with another picture and history.
    void start(const QImage &picture, const EditHistory &history);
    /// Starts again with another history.
    void start(const EditHistory &history);
    /// The history has one newest operation more than before, or one less. Returns the area that
    /// changed; no value if the picture has another frame now.
    std::optional<QRegion> follow(const EditHistory &history);
    /// Sets or removes the step that would be recorded next, one that leaves the picture itself
    /// alone. Returns the area that changed.
    QRegion setPreview(const OperationPtr &step);

    bool hasPreview() const { return m_preview != nullptr; }
    /// Outside of this area the preview equals the recorded picture.
    const QRegion &previewArea() const { return m_previewArea; }
    QSize size() const { return m_base.size(); }
    /// The picture as it is now, without shapes.
    const QImage &bare() const { return m_base; }
    /// What the history comes to, without the preview.
    const Scene &scene() const { return m_scene; }
    /// All shapes, bottom to top.
    const QList<EntryPtr> &shapes() const { return m_scene.shapes; }
    /// The picture with all shapes.
    const QImage &recorded();
    /// The same after the step of the preview. Only the pixels of `part` are sure to be there.
    const QImage &preview(const QRegion &part);
    /// The topmost shape that is drawn at a point or at most `grace` beside it; null for none.
    EntryPtr shapeAt(QPointF point, qreal grace);
    /// The scene as it would be after a further step.
    Scene after(const OperationPtr &step) const { return applied(m_scene, {step}); }

private:
    /// The pixels below one of the newest shapes, before it was drawn.
    struct Below {
        QRegion area{};
        QByteArray pixels{};
    };

    qsizetype bytesOf(const QRegion &area) const;
    qsizetype budget() const;
    QRegion coverageOf(const EditEntry &shape) const;
    const QRegion &areaOf(const EntryPtr &shape);
    const QRegion &fineAreaOf(const EntryPtr &shape);
    void keepLayers();
    void forget(const QRegion &area);
    void remember(const EditHistory &history);
    Scene sceneFor(const EditHistory &history);
    void setScene(Scene scene);
    QRegion difference(const QList<EntryPtr> &before, const QList<EntryPtr> &after) const;
    void replay();
    void push(const EditEntry &shape, const QRegion &area);
    void pop();
    void redraw(const QRegion &area);
    /// Those of the shapes that are drawn in an area.
    QList<EntryPtr> touching(const QRegion &area, const QList<EntryPtr> &shapes);
    /// Draws shapes over what is in an area of the image, which they are cut to.
    void drawShapes(QImage &image, const QRegion &area, const QList<EntryPtr> &shapes);
    void redraw(QImage &image, const QRegion &area, const QImage &picture,
                const QList<EntryPtr> &shapes);
    void drawLayers(const QRegion &area);
    void complete(SparseImage &layer, const QRegion &area, const QList<EntryPtr> &shapes);

    QImage m_picture;  ///< the whole one, without shapes
    QImage m_base;     ///< what has become of it
    Scene m_scene;
    // The history up to the newest change of the picture itself. Its shapes are kept, since they
    // would not be the same ones if they were brought there again.
    EditHistory m_older{};
    Scene m_sceneOfOlder;
    // The history that was shown last, as far as a step from it has to be known.
    qsizetype m_steps = 0;
    OperationPtr m_newest{};

    QImage m_image;  ///< with all recorded shapes; valid while m_isDrawn
    bool m_isDrawn = false;
    std::deque<Below> m_below{};  ///< for the newest shapes, oldest first
    qsizetype m_belowBytes = 0;
    std::unordered_map<EntryPtr, QRegion> m_areas{};  ///< the coverage of shapes
    OperationPtr m_preview{};
    std::optional<QList<EntryPtr>> m_previewShapes{};  ///< none if the step just adds a shape
    QRegion m_previewArea{};
    SparseImage m_previewImage{};

    std::optional<ChangingLayers> m_layers{};
};
