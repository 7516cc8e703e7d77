// Draws the pictures of the skin at build time.
//
// makeskin <skin.list> <resource file> <output folder>
//
// Glyphs are templates: each "currentColor" in them is replaced by the colour of a state, so one
// drawing results in the normal, over, down and disabled pictures of a button. Pictures without a
// glyph (corners, tiles, marks) are drawn here. Finally the resource file is compared to the
// pictures: a path without a picture, or a picture that is not used, fails the build.

#include "base/palette.h"

#include <QColor>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QSet>
#include <QSvgRenderer>
#include <QTextStream>
#include <QXmlStreamReader>

#include <array>
#include <cstdio>
#include <functional>
#include <stdexcept>

using namespace Qt::StringLiterals;

namespace {

constexpr qreal s_disabledOpacity = 0.4;

constexpr int s_frameRadius = 8;
constexpr int s_cardRadius = 6;  // tool strip and picture area
constexpr int s_stripHeight = 64;

class Failure : public std::runtime_error
{
public:
    explicit Failure(const QString &text) : std::runtime_error(text.toStdString()) {}
};

// The look of a button in one state. Without a plate if the plate's alpha is 0.
struct Look {
    QString state{};
    QColor glyph{};
    QColor plate{};
    qreal opacity = 1.0;
};
using Looks = std::array<Look, 4>;

Looks looksOn(const QString &surface)
{
    const QColor none(0, 0, 0, 0);
    if (surface == u"dark") {
        return {Look{u"normal"_s, Palette::glyphOnDark, none},
                Look{u"over"_s, Palette::accent, QColor(255, 255, 255, 24)},
                Look{u"down"_s, Palette::accentDown, QColor(0, 0, 0, 72)},
                Look{u"disabled"_s, Palette::glyphOnDark, none, s_disabledOpacity}};
    }
    if (surface == u"light") {
        return {Look{u"normal"_s, Palette::glyphOnBright, none},
                Look{u"over"_s, Palette::accent, QColor(255, 255, 255, 210)},
                Look{u"down"_s, Palette::accentDown, Palette::translucent(Palette::accentDown, 40)},
                Look{u"disabled"_s, Palette::glyphOnBright, none, s_disabledOpacity}};
    }
    if (surface == u"selected") {
        return {Look{u"normal"_s, Qt::white, Palette::accentDown},
                Look{u"over"_s, Qt::white, Palette::accentDown.lighter(112)},
                Look{u"down"_s, Qt::white, Palette::accentDown.darker(116)},
                Look{u"disabled"_s, Qt::white, Palette::accentDown, s_disabledOpacity}};
    }
    throw Failure(u"no such surface: "_s + surface);
}

// Buttons of one kind share everything except for their glyph.
struct Kind {
    QSize size{};
    int glyph = 0;  // side of the square into which the 24 x 24 grid is drawn
    int plateRadius = 0;
    QString surface{};
};

class Skin
{
public:
    Skin(const QString &sourceFolder, const QString &outputFolder)
        : m_source(sourceFolder), m_output(outputFolder)
    {
        if (!m_output.mkpath(u"."_s))
            throw Failure(u"cannot make "_s + outputFolder);
    }

    void drawList(const QString &path);
    void drawPieces();
    void check(const QString &resourceFile) const;

private:
    using Draw = std::function<void(QPainter &)>;

    void write(const QString &name, QSize size, const Draw &draw, bool dense = false);
    void drawButton(const QString &section, const QString &glyph, const Kind &kind);
    void drawGlyph(QPainter &painter, const QString &file, const QColor &colour,
                   const QRectF &area);
    void drawLine(const QStringList &words);
    void drawRest(const Kind &kind, const QString &suffix);

    QDir m_source;
    QDir m_output;
    QHash<QString, Kind> m_kinds{};
    QSet<QString> m_written{};
    QSet<QString> m_listed{};   // glyphs that a line of the list names
    QSet<QString> m_unnamed{};  // pictures of the others
};

QSize sizeFrom(const QString &text)
{
    const QStringList sides = text.split(u'x');
    const QSize size(sides.first().toInt(), sides.last().toInt());
    if (size.isEmpty())
        throw Failure(u"not a size: "_s + text);
    return size;
}

QColor colourFrom(const QString &text)
{
    const QStringList parts = text.split(u',');
    if (parts.size() != 3)
        throw Failure(u"not a colour: "_s + text);
    return {parts[0].toInt(), parts[1].toInt(), parts[2].toInt()};
}

QRectF centred(QSizeF size, qreal side)
{
    return {(size.width() - side) / 2, (size.height() - side) / 2, side, side};
}

// Fades the drawing as a whole, because crossing strokes would be visible in a glyph that is drawn
// translucent.
void fade(QPainter &painter, QSize size, qreal opacity)
{
    painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    painter.fillRect(QRect(QPoint(), size), QColor(0, 0, 0, qRound(255 * opacity)));
}

// Writes a picture. With `dense` also writes one of twice the size, under the name that the
// toolkit's icons use on a scaled desktop; pictures that are placed by their own width must not
// have one.
void Skin::write(const QString &name, QSize size, const Draw &draw, bool dense)
{
    if (m_written.contains(name))
        throw Failure(u"drawn twice: "_s + name);
    for (const int scale : {1, 2}) {
        if (scale == 2 && !dense)
            break;
        QImage image(size * scale, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.scale(scale, scale);
        draw(painter);
        painter.end();
        const QString file = name + (scale == 2 ? u"@2x.png"_s : u".png"_s);
        if (!image.save(m_output.filePath(file), "PNG"))
            throw Failure(u"cannot write "_s + file);
    }
    m_written.insert(name);
}

void Skin::drawGlyph(QPainter &painter, const QString &file, const QColor &colour,
                     const QRectF &area)
{
    QFile source(m_source.filePath(file));
    if (!source.open(QIODevice::ReadOnly))
        throw Failure(u"cannot read "_s + source.fileName());
    QSvgRenderer renderer(source.readAll().replace("currentColor", colour.name().toLatin1()));
    if (!renderer.isValid())
        throw Failure(u"not a picture: "_s + source.fileName());
    renderer.render(&painter, area);
}

void Skin::drawButton(const QString &section, const QString &glyph, const Kind &kind)
{
    for (const Look &look : looksOn(kind.surface)) {
        const auto draw = [&](QPainter &painter) {
            if (look.plate.alpha() > 0) {
                painter.setBrush(look.plate);
                painter.drawRoundedRect(QRect(QPoint(), kind.size), kind.plateRadius,
                                        kind.plateRadius);
            }
            drawGlyph(painter, u"glyphs/%1.svg"_s.arg(glyph), look.glyph,
                      centred(kind.size, kind.glyph));
            fade(painter, kind.size, look.opacity);
        };
        write(section + u'_' + look.state, kind.size, draw, true);
    }
}

void Skin::drawLine(const QStringList &words)
{
    const QString &verb = words.first();
    if (verb == u"kind" && words.size() == 6) {
        m_kinds[words[1]] = {sizeFrom(words[2]), words[3].toInt(), words[4].toInt(), words[5]};
    } else if (verb == u"button" && words.size() == 4) {
        if (!m_kinds.contains(words[3]))
            throw Failure(u"no such kind: "_s + words[3]);
        m_listed.insert(words[2]);
        drawButton(words[1], words[2], m_kinds[words[3]]);
    } else if (verb == u"rest" && words.size() >= 2 && words.size() <= 3) {
        drawRest(m_kinds.value(words[1]), words.value(2));
    } else if (verb == u"mark" && words.size() == 6) {
        const QSize size = sizeFrom(words[3]);
        m_listed.insert(words[2]);
        write(words[1], size, [&](QPainter &painter) {
            drawGlyph(painter, u"glyphs/%1.svg"_s.arg(words[2]), colourFrom(words[5]),
                      centred(size, words[4].toInt()));
        });
    } else if (verb == u"icon" && words.size() == 4) {
        const QSize size = sizeFrom(words[3]);
        write(words[1], size, [&](QPainter &painter) {
            drawGlyph(painter, words[2], Qt::black, QRectF(QPointF(), size));
        });
    } else {
        throw Failure(u"not understood: "_s + words.join(u' '));
    }
}

// These pictures need no place in the resource file.
void Skin::drawRest(const Kind &kind, const QString &suffix)
{
    const QStringList glyphs = QDir(m_source.filePath(u"glyphs"_s)).entryList({u"*.svg"_s});
    for (const QString &file : glyphs) {
        const QString glyph = file.chopped(4);
        if (m_listed.contains(glyph))
            continue;
        drawButton(glyph + suffix, glyph, kind);
        for (const Look &look : looksOn(kind.surface))
            m_unnamed.insert(glyph + suffix + u'_' + look.state);
    }
}

void Skin::drawList(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        throw Failure(u"cannot read "_s + path);
    QTextStream stream(&file);
    for (QString line; stream.readLineInto(&line);) {
        const QString text = line.section(u'#', 0, 0).simplified();
        if (!text.isEmpty())
            drawLine(text.split(u' '));
    }
}

// Fills the part between a corner and its arc; `arc` is the arc's centre.
void fillOutside(QPainter &painter, QRectF area, QPointF arc, qreal radius)
{
    QPainterPath corner;
    corner.addRect(area);
    QPainterPath inside;
    inside.addEllipse(arc, radius, radius);
    painter.fillPath(corner.subtracted(inside), Palette::dark);
}

void fillStrip(QPainter &painter, QRectF area)
{
    QLinearGradient gradient(0, 0, 0, s_stripHeight);
    gradient.setColorAt(0, Palette::darkRaised);
    gradient.setColorAt(1, Palette::darkSunken);
    painter.fillRect(area, gradient);
}

void strokeMark(QPainter &painter, QSizeF size, qreal width)
{
    constexpr qreal reach = 13;  // includes the line caps, so that both marks have the same length
    painter.setPen(QPen(Palette::glyphOnBright, width, Qt::SolidLine, Qt::RoundCap));
    const qreal left = (size.width() - reach + width) / 2;
    painter.drawLine(QPointF(left, size.height() / 2),
                     QPointF(size.width() - left, size.height() / 2));
}

void Skin::drawPieces()
{
    // The window's rounded corners: quarters of a disc, whose centre is towards the inside of the
    // window.
    constexpr int r = s_frameRadius;
    const auto disc = [](QPointF centre) {
        return [centre](QPainter &painter) {
            painter.setBrush(Palette::dark);
            painter.drawEllipse(centre, s_frameRadius, s_frameRadius);
        };
    };
    write(u"BtnBackground_topleft"_s, {r, r}, disc({r, r}));
    write(u"BtnBackground_topright"_s, {r, r}, disc({0, r}));
    write(u"BtnBackground_bottomleft"_s, {r, r}, disc({r, 0}));
    write(u"BtnBackground_bottomright"_s, {r, r}, disc({0, 0}));

    // The ends are drawn over the tiles, so the parts outside of their arcs have the frame's
    // colour.
    constexpr int c = s_cardRadius;
    write(u"BtnToolBackground_tile"_s, {16, s_stripHeight},
          [](QPainter &painter) { fillStrip(painter, QRectF(0, 0, 16, s_stripHeight)); });
    const auto end = [](qreal outer, qreal arc) {
        return [outer, arc](QPainter &painter) {
            fillStrip(painter, QRectF(0, 0, c, s_stripHeight));
            fillOutside(painter, QRectF(outer, 0, c, c), {arc, c}, c);
            fillOutside(painter, QRectF(outer, s_stripHeight - c, c, c), {arc, s_stripHeight - c},
                        c);
        };
    };
    write(u"BtnToolBackground_left"_s, {c, s_stripHeight}, end(0, c));
    write(u"BtnToolBackground_right"_s, {c, s_stripHeight}, end(0, 0));

    // The picture area draws these pictures so that they extend 2 pixels beyond its left edge, 4
    // beyond its right edge and 3 beyond its bottom edge.
    constexpr int left = 2;
    constexpr int right = 4;
    constexpr int bottom = 3;
    write(u"BtnPictureBackground_topleft"_s, {left + c, c}, [](QPainter &painter) {
        fillOutside(painter, QRectF(0, 0, left + c, c), {left + c, c}, c);
    });
    write(u"BtnPictureBackground_topright"_s, {c + right, c}, [](QPainter &painter) {
        fillOutside(painter, QRectF(0, 0, c + right, c), {0, c}, c);
    });
    write(u"BtnPictureBackground_bottomleft"_s, {left + c, c + bottom}, [](QPainter &painter) {
        fillOutside(painter, QRectF(0, 0, left + c, c + bottom), {left + c, 0}, c);
    });
    constexpr int grip = 16;  // this corner also shows that the window can be resized there
    write(u"BtnPictureBackground_bottomright"_s, {grip + right, grip + bottom},
          [](QPainter &painter) {
              constexpr int arc = grip - c;
              fillOutside(painter, QRectF(arc, arc, c + right, c + bottom), {arc, arc}, c);
              painter.setPen(QPen(Palette::brightEdge, 1.25, Qt::SolidLine, Qt::RoundCap));
              painter.drawLine(QPointF(5.5, 12.5), QPointF(12.5, 5.5));
              painter.drawLine(QPointF(9.5, 12.5), QPointF(12.5, 9.5));
          });

    write(u"BtnCommBackground_normal"_s, {146, 40}, [](QPainter &painter) {
        painter.setBrush(QColor(0, 0, 0, 44));
        painter.drawRoundedRect(QRectF(0, 0, 146, 40), 8, 8);
    });
    write(u"BtnSep_normal"_s, {1, 20},
          [](QPainter &painter) { painter.fillRect(QRectF(0, 0, 1, 20), Palette::stripLine); });
    write(u"BtnLineWidth_thin"_s, {16, 16}, [](QPainter &painter) {
        strokeMark(painter, {16, 16}, 1.5);
    });
    write(u"BtnLineWidth_thick"_s, {16, 16}, [](QPainter &painter) {
        strokeMark(painter, {16, 16}, 6);
    });

    // The window fills the pixels 5 to 19 across and 4 to 18 down with the pen's colour. Around
    // them is a thin white line and then the border.
    for (const Look &look : looksOn(u"light"_s)) {
        const QColor border =
            look.state == u"over" || look.state == u"down" ? look.glyph : Palette::brightEdge;
        write(u"BtnColor_"_s + look.state, {24, 22}, [&](QPainter &painter) {
            painter.setBrush(Qt::white);
            painter.setPen(QPen(border, 1));
            painter.drawRoundedRect(QRectF(3.5, 2.5, 18, 18), 3, 3);
            painter.fillRect(QRect(QPoint(5, 4), QPoint(19, 18)), Qt::red);
            fade(painter, {24, 22}, look.opacity);
        });
    }
}

void Skin::check(const QString &resourceFile) const
{
    QFile file(resourceFile);
    if (!file.open(QIODevice::ReadOnly))
        throw Failure(u"cannot read "_s + resourceFile);
    QSet<QString> named;
    QXmlStreamReader reader(&file);
    while (!reader.atEnd()) {
        reader.readNext();
        for (const QXmlStreamAttribute &attribute : reader.attributes()) {
            if (attribute.name().endsWith("Img"_L1))
                named.insert(attribute.value().toString());
        }
    }
    if (reader.hasError())
        throw Failure(u"%1, line %2: %3"_s.arg(resourceFile)
                          .arg(reader.lineNumber())
                          .arg(reader.errorString()));

    QSet<QString> drawn;
    for (const QString &name : m_written - m_unnamed)
        drawn.insert(u"skin/%1.png"_s.arg(name));
    const auto report = [](const QSet<QString> &paths, const QString &what) {
        if (!paths.isEmpty())
            throw Failure(what + QStringList(paths.values()).join(u", "_s));
    };
    report(named - drawn, u"named but not drawn: "_s);
    report(drawn - named, u"drawn but not named: "_s);
}

}  // namespace

int main(int argc, char **argv)
{
    if (argc != 4) {
        std::fputs("usage: makeskin <skin.list> <resource file> <output folder>\n", stderr);
        return 2;
    }
    try {
        const QString list = QString::fromLocal8Bit(argv[1]);
        Skin skin(QFileInfo(list).absolutePath(), QString::fromLocal8Bit(argv[3]));
        skin.drawList(list);
        skin.drawPieces();
        skin.check(QString::fromLocal8Bit(argv[2]));
    } catch (const Failure &failure) {
        std::fprintf(stderr, "makeskin: %s\n", failure.what());
        return 1;
    }
    return 0;
}
