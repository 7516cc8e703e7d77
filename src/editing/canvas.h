#pragma once

#include "editing/shapes.h"

#include <QByteArray>
#include <QImage>
#include <QRegion>

#include <deque>
#include <optional>

/// The pixels that the editor shows: the picture with its recorded shapes, and over them the shape
/// that is being drawn. It is what a replay of the history gives, kept up to date step by step: a
/// new shape is drawn over what is there, and the last ones can be taken back, since the pixels
/// below them are kept. Everything is in picture coordinates.
class Canvas
{
public:
    /// Starts over with another picture.
    void setPicture(const QImage &picture);
    /// The history is another one.
    void reset() { m_isDrawn = false; }
    /// `entry` has become the newest of the history. Gives the area that changed.
    QRegion add(const EditEntry &entry);
    /// `entry` was the newest of the history, and is no more. Gives the area that changed.
    QRegion takeBack(const EditEntry &entry);
    /// The shape that is being drawn, if any. Gives the area that changed.
    QRegion setPreview(const std::optional<Geometry> &geometry, const EditMsg &style);

    bool hasPreview() const { return m_preview.has_value(); }
    /// The area outside of which the preview equals the recorded picture.
    const QRegion &previewArea() const { return m_previewArea; }
    /// The picture with all shapes of `history`, which is the one that add and takeBack told of.
    const QImage &recorded(const EditHistory &history);
    /// The same with the preview.
    const QImage &preview(const EditHistory &history);

private:
    /// The pixels below one of the newest shapes.
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
    std::deque<Below> m_below{};  ///< of the newest shapes, oldest first
    qsizetype m_belowBytes = 0;
    std::optional<Geometry> m_preview{};
    EditMsg m_previewStyle{};
    QRegion m_previewArea{};
    QImage m_previewImage;
    QRegion m_stale{};  ///< where m_previewImage is not what it has to be
};
