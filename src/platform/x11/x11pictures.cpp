#include "platform/x11/x11pictures.h"

#include "base/log.h"

#include <QPainter>
#include <QTimer>

#include <algorithm>

#include <xcb/composite.h>
#include <xcb/shape.h>
#include <xcb/xfixes.h>

namespace {

constexpr double s_fullOpacity = 0xffffffffU;

// Grabs the server: nobody else can draw or move windows meanwhile. Must not be nested.
class ServerGrab
{
public:
    explicit ServerGrab(xcb_connection_t *connection) : m_connection(connection)
    {
        xcb_grab_server(m_connection);
    }
    ServerGrab(const ServerGrab &) = delete;
    ServerGrab &operator=(const ServerGrab &) = delete;
    ~ServerGrab()
    {
        xcb_ungrab_server(m_connection);
        xcb_flush(m_connection);
    }

private:
    xcb_connection_t *m_connection;
};

void makeOpaque(QImage &image)
{
    image = image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < image.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x)
            line[x] |= 0xff000000U;
    }
}

}  // namespace

X11Pictures::X11Pictures(X11Display &display)
    : m_display(display), m_reader(display), m_watches(display),
      m_hasShape(display.hasExtension(xcb_shape_id)),
      m_hasComposite(display.hasExtension(xcb_composite_id))
{
    if (!m_hasComposite)
        return;
    // From now on the server keeps a window's pixels even where it is covered, also without a
    // compositor.
    xcb_connection_t *connection = m_display.connection();
    xcb_discard_reply(connection, xcb_composite_query_version(connection, 0, 4).sequence);
    xcb_composite_redirect_subwindows(connection, m_display.root(),
                                      XCB_COMPOSITE_REDIRECT_AUTOMATIC);
}

std::unique_ptr<ChangeWatch> X11Pictures::watchChanges(int number)
{
    return m_watches.watch(static_cast<xcb_window_t>(number));
}

void X11Pictures::freeze(Freeze how, Answer answer)
{
    thaw();
    if (how == Freeze::Still)
        m_frozen = ofDesktop(rootArea(m_display));
    // An overlay has a pointer of its own.
    m_frozenPointer = how == Freeze::Still && showsPointer() ? shownPointer() : std::nullopt;
    const bool areThere = how == Freeze::AsUsual || isFrozen();
    m_question = std::make_unique<QObject>();
    QTimer::singleShot(0, m_question.get(),
                       [answer = std::move(answer), areThere] { answer(areThere, {}); });
}

void X11Pictures::thaw()
{
    m_question.reset();
    m_frozen = {};
    m_frozenPointer.reset();
}

// The caller must have grabbed the server, because the root's size may change and the picture is
// read in bands.
QImage X11Pictures::rootPicture(const QRect &area)
{
    const QRect inside = area & rootArea(m_display);
    QImage picture = m_reader.read(m_display.root(), inside, m_display.screen().root_depth);
    if (inside == area)
        return picture;
    QImage result(area.size(), QImage::Format_RGB32);
    if (result.isNull())
        return {};
    result.fill(Qt::black);
    QPainter(&result).drawImage(inside.topLeft() - area.topLeft(), picture);
    return result;
}

QImage X11Pictures::ofDesktop(const QRect &area)
{
    if (area.isEmpty())
        return {};
    if (isFrozen())
        return m_frozen.copy(area);
    const ServerGrab grab(m_display.connection());
    return rootPicture(area);
}

std::optional<Pictures::Pointer> X11Pictures::pointer()
{
    return isFrozen() ? m_frozenPointer : shownPointer();
}

// The place that comes with the shape is that of its hot spot. While a program hides it, it has no
// pixels.
std::optional<Pictures::Pointer> X11Pictures::shownPointer()
{
    if (!m_display.hasExtension(xcb_xfixes_id))
        return std::nullopt;
    xcb_connection_t *connection = m_display.connection();
    // Who has not told a version may ask for nothing.
    xcb_discard_reply(connection, xcb_xfixes_query_version(connection, XCB_XFIXES_MAJOR_VERSION,
                                                           XCB_XFIXES_MINOR_VERSION)
                                      .sequence);
    const auto reply =
        XCB_REPLY(connection, xfixes_get_cursor_image, xcb_xfixes_get_cursor_image(connection));
    if (!reply || reply->width == 0 || reply->height == 0 ||
        xcb_xfixes_get_cursor_image_cursor_image_length(reply.get()) < reply->width * reply->height)
        return std::nullopt;
    const auto *pixels =
        reinterpret_cast<const uchar *>(xcb_xfixes_get_cursor_image_cursor_image(reply.get()));
    const QImage shape(pixels, reply->width, reply->height, QImage::Format_ARGB32_Premultiplied);
    return Pointer{.shape = shape.copy(),
                   .corner = QPoint(reply->x, reply->y) - QPoint(reply->xhot, reply->yhot)};
}

QList<X11Pictures::Shaped> X11Pictures::shaped(const QList<X11TopLevel> &windows, const QRect &area)
{
    xcb_connection_t *connection = m_display.connection();
    QList<Shaped> result;
    QList<std::pair<qsizetype, xcb_shape_query_extents_cookie_t>> extents;
    for (const X11TopLevel &window : windows) {
        if (m_hasShape && window.bounds.intersects(area))
            extents.append({result.size(), xcb_shape_query_extents(connection, window.frame)});
        result.append({.top = window, .shape = window.bounds});
    }
    QList<std::pair<qsizetype, xcb_shape_get_rectangles_cookie_t>> rectangles;
    for (const auto &[index, cookie] : std::as_const(extents)) {
        const auto reply = XCB_REPLY(connection, shape_query_extents, cookie);
        if (reply && reply->bounding_shaped)
            rectangles.append({index, xcb_shape_get_rectangles(connection, result[index].top.frame,
                                                               XCB_SHAPE_SK_BOUNDING)});
    }
    for (const auto &[index, cookie] : std::as_const(rectangles)) {
        const auto reply = XCB_REPLY(connection, shape_get_rectangles, cookie);
        if (!reply)
            continue;
        auto &[top, shape] = result[index];
        shape = {};
        // The rectangles are relative to the inside of the border.
        const QPoint origin = top.bounds.topLeft() + QPoint(top.border, top.border);
        const xcb_rectangle_t *rects = xcb_shape_get_rectangles_rectangles(reply.get());
        for (int i = 0; i < xcb_shape_get_rectangles_rectangles_length(reply.get()); ++i)
            shape +=
                QRect(rects[i].x, rects[i].y, rects[i].width, rects[i].height).translated(origin);
        shape &= top.bounds;
    }
    return result;
}

// Reads a part of the window's backing pixmap, which includes pixels that other windows cover.
QImage X11Pictures::storedPicture(const X11TopLevel &window, const QRect &area)
{
    if (!m_hasComposite)
        return {};
    xcb_connection_t *connection = m_display.connection();
    const xcb_pixmap_t pixmap = xcb_generate_id(connection);
    const Reply<xcb_generic_error_t> error(xcb_request_check(
        connection, xcb_composite_name_window_pixmap_checked(connection, window.frame, pixmap)));
    if (error) {
        logError(*error);
        return {};
    }
    QImage picture = m_reader.read(pixmap, area.translated(-window.bounds.topLeft()), window.depth);
    xcb_free_pixmap(connection, pixmap);
    return picture;
}

QImage X11Pictures::windowPicture(xcb_window_t frame)
{
    xcb_connection_t *connection = m_display.connection();
    const ServerGrab grab(connection);
    const auto geometry = XCB_REPLY(connection, get_geometry, xcb_get_geometry(connection, frame));
    if (!geometry)
        return {};
    const int border = 2 * geometry->border_width;
    const QRect bounds(0, 0, geometry->width + border, geometry->height + border);
    const X11TopLevel window{.frame = frame,
                             .bounds = bounds,
                             .border = geometry->border_width,
                             .depth = geometry->depth};
    QImage picture = storedPicture(window, bounds);
    const QRegion outside = QRegion(bounds) - shaped({window}, bounds).first().shape;
    if (picture.isNull() || outside.isEmpty())
        return picture;
    picture = picture.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&picture);
    painter.setCompositionMode(QPainter::CompositionMode_Clear);
    for (const QRect &rect : outside)
        painter.fillRect(rect, Qt::black);
    return picture;
}

void X11Pictures::paintWallpaper(QPainter &painter, const QRegion &region)
{
    painter.setClipRegion(region);
    painter.fillRect(region.boundingRect(), Qt::black);
    const xcb_pixmap_t pixmap =
        m_display.values(m_display.root(), m_display.atom("_XROOTPMAP_ID"), XCB_ATOM_PIXMAP)
            .value(0, XCB_NONE);
    if (pixmap == XCB_NONE)
        return;
    xcb_connection_t *connection = m_display.connection();
    const auto geometry = XCB_REPLY(connection, get_geometry, xcb_get_geometry(connection, pixmap));
    if (!geometry)
        return;
    // A small wallpaper is tiled from the desktop's corner.
    const QRect tile(0, 0, geometry->width, geometry->height);
    const QRect wanted = region.boundingRect();
    if (tile.contains(wanted))
        painter.drawImage(wanted.topLeft(), m_reader.read(pixmap, wanted, geometry->depth));
    else
        painter.fillRect(wanted, QBrush(m_reader.read(pixmap, tile, geometry->depth)));
}

// Paints `region` of the desktop with these windows only; the first one is in front.
void X11Pictures::paintWindows(QPainter &painter, QRegion region, const QList<Shaped> &windows)
{
    struct Piece {
        const X11TopLevel *window = nullptr;
        QRegion visible{};
        qreal opacity = 1;
    };
    // Goes through the windows from the front, so that pixels behind opaque windows are not read.
    const bool composited = m_display.isComposited();
    QList<Piece> pieces;
    for (const auto &[window, shape] : windows) {
        Piece piece{.window = &window, .visible = shape & region};
        if (piece.visible.isEmpty())
            continue;
        const QList<uint32_t> opacity =
            composited ? m_display.values(window.frame, m_display.atom("_NET_WM_WINDOW_OPACITY"),
                                          XCB_ATOM_CARDINAL)
                       : QList<uint32_t>{};
        if (!opacity.isEmpty())
            piece.opacity = opacity.first() / s_fullOpacity;
        if (!composited || (window.depth != 32 && piece.opacity == 1))
            region -= piece.visible;
        pieces.append(piece);
    }
    if (!region.isEmpty())
        paintWallpaper(painter, region);
    for (auto piece = pieces.crbegin(); piece != pieces.crend(); ++piece) {
        const QRect area = piece->visible.boundingRect();
        QImage image = storedPicture(*piece->window, area);
        // Without a compositor windows are not blended, even if they have alpha.
        if (!composited && image.hasAlphaChannel())
            makeOpaque(image);
        painter.setClipRegion(piece->visible);
        painter.setOpacity(piece->opacity);
        painter.drawImage(area.topLeft(), image);
    }
}

QImage X11Pictures::ofWindows(std::optional<QRectF> area, const QList<int> &numbers)
{
    if (!area && numbers.size() == 1)
        return windowPicture(static_cast<xcb_window_t>(numbers.first()));
    if (area && area->toRect().isEmpty())
        return {};
    const ServerGrab grab(m_display.connection());
    QList<X11TopLevel> all = topLevels(m_display);
    all.removeIf([](const X11TopLevel &window) { return !window.onScreen; });
    QList<X11TopLevel> chosen;
    for (const int number : numbers) {
        const auto found = std::find_if(all.cbegin(), all.cend(), [&](const X11TopLevel &window) {
            return static_cast<int>(window.frame) == number;
        });
        if (found != all.cend())
            chosen.append(*found);
    }
    QRect pixels = area ? area->toRect() : QRect();
    if (!area) {
        for (const X11TopLevel &window : std::as_const(chosen))
            pixels |= window.bounds;
    }
    if (pixels.isEmpty())
        return {};

    all.removeIf([&](const X11TopLevel &window) {
        return numbers.contains(static_cast<int>(window.frame));
    });
    return composed(pixels, chosen, all);
}

QImage X11Pictures::withoutWindows(const QRect &area, const QList<int> &numbers)
{
    if (area.isEmpty() || isFrozen())
        return ofDesktop(area);
    const ServerGrab grab(m_display.connection());
    QList<X11TopLevel> shown;
    QList<X11TopLevel> leftOut;
    for (const X11TopLevel &window : topLevels(m_display)) {
        if (window.onScreen && window.bounds.intersects(area))
            (numbers.contains(static_cast<int>(window.frame)) ? leftOut : shown).append(window);
    }
    return composed(area, shown, leftOut);
}

// Only the pixels behind the windows that are left out have to be composed. Elsewhere the screen's
// pixels are used, including a compositor's shadows.
QImage X11Pictures::composed(const QRect &area, const QList<X11TopLevel> &shown,
                             const QList<X11TopLevel> &leftOut)
{
    QRegion hidden;
    for (const Shaped &window : shaped(leftOut, area))
        hidden += window.shape & area;
    QImage result = rootPicture(area);
    if (hidden.isEmpty() || !m_hasComposite || result.isNull())
        return result;
    hidden &= rootArea(m_display);
    QPainter painter(&result);
    painter.translate(-area.topLeft());
    paintWindows(painter, hidden, shaped(shown, hidden.boundingRect()));
    return result;
}
