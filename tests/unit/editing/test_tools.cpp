#include "editing/coverage.h"
#include "editing/covering.h"
#include "editing/rendering.h"
#include "editing/selection.h"
#include "editing/shapefile.h"
#include "rows.h"

#include <QSet>

#include <cmath>

using namespace Qt::StringLiterals;

namespace {

constexpr QSize s_size(160, 120);

// Each choice once that makes a difference to the tool.
QList<EditMsg> stylesOf(const Tool &tool)
{
    EditMsg plain{.type = tool.state, .width = 6, .color = Qt::black, .text = u"Hg"_s};
    plain.font.setPixelSize(tool.state == stateText ? 40 : 12);
    QList<EditMsg> styles{plain};
    const auto add = [&](ToolUse use, const auto &change) {
        styles.append(plain);
        change(styles.last());
        if (!(tool.uses & use))
            styles.removeLast();
    };
    for (const int choice : {1, 2}) {
        add(UsesFill, [&](EditMsg &style) { style.fill = Fill(choice); });
        add(UsesDashes, [&](EditMsg &style) { style.dashes = Dashes(choice); });
        add(UsesHeads, [&](EditMsg &style) { style.heads = Heads(choice); });
        add(UsesGround, [&](EditMsg &style) { style.ground = TextGround(choice); });
    }
    add(UsesShadow, [](EditMsg &style) { style.hasShadow = true; });
    add(UsesRound, [](EditMsg &style) { style.isRound = true; });
    return styles;
}

// Alone in a picture. None for a tool that does not draw.
EntryPtr shapeOf(const Tool &tool, const EditMsg &style)
{
    const Drag drag{.start = {30, 40},
                    .end = {120, 90},
                    .pointer = {120, 90},
                    .box = QRect(QPoint(30, 40), QSize(90, 50)),
                    .line = QPolygon(QList<QPoint>{{30, 40}, {70, 20}, {90, 100}, {120, 90}}),
                    .width = 6};
    const auto shape = tool.state == stateText ? TextShape{{30, 40}} : shapeFrom(tool.state, drag);
    if (!shape)
        return nullptr;
    QImage below(s_size, QImage::Format_RGB32);
    below.fill(Qt::yellow);
    QPainter(&below).fillRect(60, 60, 20, 20, Qt::darkBlue);
    return sceneOf({withColors(adding({*shape, style}), {}, below, 1)}, s_size).shapes.first();
}

EntryPtr after(const EntryPtr &shape, const QList<PictureMap> &changes)
{
    EditEntry entry = *shape;
    for (const PictureMap &change : changes)
        entry = mapped(entry, change);
    return sceneOf({adding(entry)}, s_size).shapes.first();
}

QImage drawn(const EntryPtr &shape, QSize size = s_size)
{
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    drawShape(painter, shape->geometry, shape->style);
    return image;
}

// How much of what is drawn in either is not in the other.
double difference(const QImage &one, const QImage &other)
{
    double differing = 0;
    double all = 0;
    for (int y = 0; y < one.height(); ++y) {
        for (int x = 0; x < one.width(); ++x) {
            const QRgb mine = one.pixel(x, y);
            const QRgb its = other.pixel(x, y);
            differing +=
                std::max(std::abs(qAlpha(mine) - qAlpha(its)), std::abs(qBlue(mine) - qBlue(its)));
            all += qAlpha(mine);
        }
    }
    return differing / all;
}

QList<int> numbers(const EditHistory &history)
{
    QList<int> result;
    for (const EntryPtr &shape : sceneOf(history, s_size).shapes)
        result.append(std::get<MarkerShape>(shape->geometry).number);
    return result;
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
            const QList<EditMsg> styles = stylesOf(*tool);
            for (qsizetype i = 0; i < styles.size(); ++i) {
                if (const EntryPtr shape = shapeOf(*tool, styles.at(i)))
                    keepsItsWord(QByteArray(tool->id) + ' ' + QByteArray::number(i), shape);
            }
        }
    }

    // Markers count in the order in which they were added, from bottom to top here.
    void markersCountOn()
    {
        const auto marker = [](int start, ShapeId id = nextShapeId()) {
            return EditEntry{MarkerShape{.start = start}, {.type = stateMarker}, id};
        };
        const EditHistory three{adding(marker(0)), adding(marker(0)), adding(marker(0))};
        const ShapeId first = ::shapeOf(*three.last())->id;
        const auto check = [&](const char *row, const EditHistory &steps,
                               const QList<int> &expected) {
            expect(row, numbers(steps + three), expected);
        };
        const auto set = [&](int start) {
            return operation(ReplaceShape{std::make_shared<const EditEntry>(marker(start, first))});
        };
        check("added", {}, {1, 2, 3});
        check("removed", {operation(RemoveShape{first})}, {1, 2});
        check("raised", {operation(OrderShape{first, ::shapeOf(*three.first())->id})}, {2, 3, 1});
        check("set", {adding(marker(0)), adding(marker(7)), set(5)}, {5, 6, 7, 7, 8});
        check("set and removed", {operation(RemoveShape{first}), set(5)}, {1, 2});
        // The user's own removal leaves the number to the next one.
        const Scene scene = sceneOf(EditHistory{set(5)} + three, s_size);
        check("set and taken out", {removing({scene.shapes.first()}, scene), set(5)}, {5, 6});
    }

    void measures()
    {
        const auto check = [](const QByteArray &row, QPoint to, const QString &label) {
            expect(row, labelOf({QPolygon({QPoint(100, 100), to})}), label);
        };
        check("upward", {200, 0}, u"141 px  45.0°"_s);
        check("from the other end", {0, 200}, u"141 px  45.0°"_s);
        check("downward", {130, 140}, u"50 px  -53.1°"_s);
        check("to the left", {0, 100}, u"100 px  0.0°"_s);
        check("nearly half a turn", {10'100, 101}, u"10000 px  0.0°"_s);
    }

private:
    static void keepsItsWord(const QByteArray &row, const EntryPtr &shape)
    {
        const EditMsg &style = shape->style;
        const QImage image = drawn(shape);
        // What is drawn is hit, and what is far from it is not; a text is hit in all of its box, a
        // line between its dashes, too, and a spotlight draws where it is not hit. Only the tiles
        // that the shape tells of are drawn on.
        const bool isDark = style.type == stateSpotlight;
        const QRegion covered = coverage(shape->geometry, style, s_size);
        const int opaque = style.fill == Fill::Translucent ? 60 : 255;
        QRegion solid;
        for (int y = 0; y < s_size.height(); ++y) {
            for (int x = 0; x < s_size.width(); ++x) {
                const int alpha = qAlpha(image.pixel(x, y));
                QVERIFY2(alpha == 0 || covered.contains(QPoint(x, y)), row);
                if (alpha >= opaque)
                    solid += QRect(x, y, 1, 1);
                QVERIFY2(alpha < 255 || hit(shape->geometry, style, {x + 0.5, y + 0.5}, 1), row);
            }
        }
        QCOMPARE(solid.isEmpty(), isDark);
        const int dash = style.dashes == Dashes::None ? 0 : 2 * style.width;
        const int reach = style.type == stateText ? style.font.pixelSize() : 4 + dash;
        for (int y = 0; y < s_size.height() && !isDark; y += 3) {
            for (int x = 0; x < s_size.width(); x += 3) {
                const QRect around(x - reach, y - reach, 2 * reach, 2 * reach);
                QVERIFY2(solid.intersects(around) || !hit(shape->geometry, style, QPointF(x, y), 1),
                         row);
            }
        }
        // Moved, it is the same at another place, and turned all around, or mirrored and back, at
        // its own.
        const QSize both = s_size - QSize(7, 5);
        expect(row, drawn(after(shape, {PictureMap::moving({7, -5})})).copy({QPoint(7, 0), both}),
               image.copy({QPoint(0, 5), both}));
        const PictureMap turn = PictureMap::turning(1, s_size);
        const PictureMap turnOn = PictureMap::turning(1, s_size.transposed());
        const PictureMap mirror = PictureMap::mirroring(Qt::Vertical, s_size);
        const EntryPtr around = after(shape, {turn, turnOn, turn, turnOn, mirror, mirror});
        QVERIFY2(around->geometry == shape->geometry && around->style == style, row);
        // Turned, it is what is turned, but for some antialiasing; labels stay upright, and shadows
        // on their side.
        if (!toolOf(style.type).hasLabel && !style.hasShadow) {
            const QImage turned = drawn(after(shape, {turn}), s_size.transposed());
            QVERIFY2(difference(image.transformed(QTransform().rotate(90)), turned) < 0.1, row);
        }
        // And it comes back from a file.
        ShapeNumbers written;
        ShapeNumbers read;
        const auto back = historyFromJson(toJson({adding(*shape)}, written), read)
                              .history.value_or(EditHistory());
        QVERIFY2(!back.isEmpty(), row);
        const EntryPtr again = sceneOf(back, s_size).shapes.first();
        QVERIFY2(again->geometry == shape->geometry && again->style == style, row);
    }
};

QTEST_MAIN(TestTools)
#include "test_tools.moc"
