#pragma once

#include "editing/tools/tool.h"

#include <QImage>
#include <QList>
#include <QTransform>

class QJsonObject;
class QPainter;
class ShapeParts;
class Tiles;

/// What all tools have in common that cover an area: nobody gets back what was below from a picture
/// that is handed on. What they draw is opaque and ends with whole pixels.
struct CoverArea {
    QRect bounds{};

    void cover(Tiles &tiles, const EditMsg &style) const;
    QPolygon drawnPoints() const;
    bool hit(QPointF point, qreal grace, const EditMsg &style) const;
    QRect box(const EditMsg & /*style*/) const { return bounds; }
    /// The area where a change of the picture brings it, with all pixels into which it mixed those
    /// below.
    CoverArea mapped(const PictureMap &map) const { return {map.covering(bounds)}; }
    void write(QJsonObject &to) const;
    static CoverArea read(ShapeParts &parts);
    bool operator==(const CoverArea &) const = default;
};

/// Squares in colours that are found in the area. Which square has which colour is chance: nothing
/// depends on where in the area a pixel stood, and the colours tell only roughly which ones there
/// are, not how many.
struct CoverBlocks : CoverArea {
    static constexpr int s_mostColors = 6;
    static constexpr int s_highestSeed = (1 << 24) - 1;

    int seed = 0;            ///< what chance depends on; 0 until it is recorded
    QList<QRgb> colors{};    ///< of the area, opaque
    QTransform direction{};  ///< how the squares lie after the picture was turned or mirrored

    /// The colours that `colors` takes from an area of a picture.
    static QList<QRgb> colorsOf(const QImage &picture, const QRect &area);
    /// Draws the squares, blurred if wanted.
    void drawBlocks(QPainter &painter, bool isBlurred) const;
    /// The side of a square, in picture pixels; the last ones are longer by what is left over.
    int side() const;
    CoverBlocks mapped(const PictureMap &map) const;
    void write(QJsonObject &to) const;
    static CoverBlocks read(ShapeParts &parts);
    bool operator==(const CoverBlocks &) const = default;

private:
    QRgb colorOf(int column, int row) const;
};

/// What the tips of tools say that leave something of the colours.
constexpr const char *s_coverAdvice = QT_TRANSLATE_NOOP(
    "MainWindow", "Blurring well-known text protects it less than covering it does.");

/// The area of a drag; none if it has none.
std::optional<QRect> areaOf(const Drag &drag);
