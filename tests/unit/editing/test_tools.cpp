#include "editing/coverage.h"
#include "editing/rendering.h"
#include "rows.h"

#include <QSet>

using namespace Qt::StringLiterals;

namespace {

constexpr QSize s_size(160, 120);

EditMsg styleOf(const Tool &tool)
{
    EditMsg style{.type = tool.state, .width = 6, .color = Qt::black, .text = u"Hg"_s};
    style.font.setPixelSize(40);
    return style;
}

// None for a tool that does not draw.
std::optional<Geometry> shapeOf(const Tool &tool)
{
    const Drag drag{.start = {30, 40},
                    .end = {120, 90},
                    .box = QRect(QPoint(30, 40), QSize(90, 50)),
                    .line = QPolygon(QList<QPoint>{{30, 40}, {70, 20}, {90, 100}, {120, 90}}),
                    .width = 6};
    return tool.state == stateText ? TextShape{{30, 40}} : shapeFrom(tool.state, drag);
}

QImage drawn(const Geometry &geometry, const EditMsg &style)
{
    QImage image(s_size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    drawShape(painter, geometry, style);
    return image;
}

}  // namespace

/// What every tool of the table has to keep, also those that are still to come.
class TestTools : public QObject
{
    Q_OBJECT

private slots:
    void rowsDiffer()
    {
        QSet<QString> seen;
        for (const Tool *tool : allTools()) {
            for (const char *own : {tool->id, tool->button, tool->keys}) {
                const QString text = QString::fromLatin1(own);
                QVERIFY2(!text.isEmpty() && !seen.contains(text), own);
                seen.insert(text);
            }
            QCOMPARE(&toolOf(tool->state), tool);
        }
    }

    void shapesKeepTheirWord()
    {
        for (const Tool *tool : allTools()) {
            const std::optional<Geometry> drawnShape = shapeOf(*tool);
            if (!drawnShape)
                continue;
            const EditMsg style = styleOf(*tool);
            const Geometry &shape = *drawnShape;
            const QImage image = drawn(shape, style);
            // What is drawn is hit, and what is far from it is not; a text is hit in all of its
            // box. Only the tiles that it tells of are drawn on.
            const QRegion covered = coverage(shape, style, s_size);
            QRegion solid;
            for (int y = 0; y < s_size.height(); ++y) {
                for (int x = 0; x < s_size.width(); ++x) {
                    const int alpha = qAlpha(image.pixel(x, y));
                    QVERIFY2(alpha == 0 || covered.contains(QPoint(x, y)), tool->id);
                    if (alpha == 255)
                        solid += QRect(x, y, 1, 1);
                    QVERIFY2(alpha < 255 || hit(shape, style, {x + 0.5, y + 0.5}, 1), tool->id);
                }
            }
            QVERIFY2(!solid.isEmpty(), tool->id);
            const int reach = tool->state == stateText ? style.font.pixelSize() : 4;
            for (int y = 0; y < s_size.height(); y += 3) {
                for (int x = 0; x < s_size.width(); x += 3) {
                    const QRect around(x - reach, y - reach, 2 * reach, 2 * reach);
                    QVERIFY2(solid.intersects(around) || !hit(shape, style, QPointF(x, y), 1),
                             tool->id);
                }
            }
            // Moved, it is the same at another place.
            const QImage elsewhere =
                drawn(mapped(shape, style, PictureMap::moving({7, -5})), style);
            expect(tool->id, elsewhere.copy(QRect(QPoint(7, 0), s_size)),
                   image.copy(QRect(QPoint(0, 5), s_size)));
        }
    }
};

QTEST_MAIN(TestTools)
#include "test_tools.moc"
