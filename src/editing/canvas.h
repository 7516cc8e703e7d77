#pragma once

#include "editing/history.h"

#include <QByteArray>
#include <QImage>
#include <QRegion>

#include <deque>
#include <optional>
#include <unordered_map>

/// The pixels that the editor shows: what a history leaves of the picture, with its shapes, and the
/// shape that is being drawn. The result equals a replay of the history, but is updated step by
/// step: a new shape is drawn over the existing pixels, the newest shapes can be taken back because
/// the pixels below them are kept, and after other changes only the area that differs is drawn
/// again. All coordinates are those of what is left of the picture.
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
    /// Sets or removes the shape that is being drawn. Returns the area that changed.
    QRegion setPreview(const std::optional<Geometry> &geometry, const EditMsg &style);

    bool hasPreview() const { return m_preview.has_value(); }
    /// Outside of this area the preview equals the recorded picture.
    const QRegion &previewArea() const { return m_previewArea; }
    /// The size of what is left of the picture.
    QSize size() const { return m_base.size(); }
    /// What is left of the picture, with all shapes.
    const QImage &recorded();
    /// The same, including the shape that is being drawn.
    const QImage &preview();

private:
    /// The pixels below one of the newest shapes, before it was drawn.
    struct Below {
        QRegion area{};
        QByteArray pixels{};
    };

    qsizetype bytesOf(const QRegion &area) const;
    qsizetype budget() const;
    QRegion coverageOf(const EditEntry &shape) const;
    QRect boxOf(const EntryPtr &shape);
    void remember(const EditHistory &history);
    void setScene(Scene scene);
    QRegion difference(const QList<EntryPtr> &before, const QList<EntryPtr> &after) const;
    void replay();
    void push(const EditEntry &shape, const QRegion &area);
    void pop();
    void redraw(const QRegion &area);

    QImage m_picture;  ///< the whole one, without shapes
    QImage m_base;     ///< what is left of it
    Scene m_scene;
    // The history that was shown last, as far as a step from it has to be known.
    qsizetype m_steps = 0;
    OperationPtr m_newest{};

    QImage m_image;  ///< with all recorded shapes; valid while m_isDrawn
    bool m_isDrawn = false;
    std::deque<Below> m_below{};  ///< for the newest shapes, oldest first
    qsizetype m_belowBytes = 0;
    std::unordered_map<EntryPtr, QRect> m_boxes{};  ///< around the coverage of shapes
    std::optional<Geometry> m_preview{};
    EditMsg m_previewStyle{};
    QRegion m_previewArea{};
    QImage m_previewImage;
    QRegion m_stale{};  ///< where m_previewImage is out of date
};
