#pragma once

#include "editing/shapes.h"

#include <QByteArray>
#include <QImage>
#include <QRegion>

#include <deque>
#include <optional>

/// The pixels that the editor shows: the picture with its recorded shapes, and the shape that is
/// being drawn. The result equals a replay of the history, but is updated step by step: a new shape
/// is drawn over the existing pixels, and the newest shapes can be taken back because the pixels
/// below them are kept. All coordinates are picture coordinates.
class Canvas
{
public:
    /// Starts again with another picture.
    void setPicture(const QImage &picture);
    /// The history has been replaced.
    void reset() { m_isDrawn = false; }
    /// `entry` has been added as the newest of the history. Returns the area that changed.
    QRegion add(const EditEntry &entry);
    /// `entry` was the newest of the history and has been removed. Returns the area that changed.
    QRegion takeBack(const EditEntry &entry);
    /// Sets or removes the shape that is being drawn. Returns the area that changed.
    QRegion setPreview(const std::optional<Geometry> &geometry, const EditMsg &style);

    bool hasPreview() const { return m_preview.has_value(); }
    /// Outside of this area the preview equals the recorded picture.
    const QRegion &previewArea() const { return m_previewArea; }
    /// The picture with all shapes of `history`, which must be the history that add() and
    /// takeBack() were told about.
    const QImage &recorded(const EditHistory &history);
    /// The same, including the shape that is being drawn.
    const QImage &preview(const EditHistory &history);

private:
    /// The pixels below one of the newest shapes, before it was drawn.
    struct Below {
        QRegion area{};
        QByteArray pixels{};
    };

    qsizetype bytesOf(const QRegion &area) const;
    qsizetype budget() const;
    void replay(const EditHistory &history);
    void push(const EditEntry &entry, const QRegion &area);

    QImage m_picture;
    QImage m_image;  ///< with all recorded shapes; valid while m_isDrawn
    bool m_isDrawn = false;
    std::deque<Below> m_below{};  ///< for the newest shapes, oldest first
    qsizetype m_belowBytes = 0;
    std::optional<Geometry> m_preview{};
    EditMsg m_previewStyle{};
    QRegion m_previewArea{};
    QImage m_previewImage;
    QRegion m_stale{};  ///< where m_previewImage is out of date
};
