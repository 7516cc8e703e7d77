// Pictures of the screen and of windows.

#include "platform/x11/x11windowserver.h"

#include "base/log.h"

#include <QPainter>

#include <algorithm>

#include <xcb/composite.h>
#include <xcb/shape.h>

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

QRect X11WindowServer::rootArea()
{
    xcb_connection_t *connection = m_display.connection();
    const auto geometry =
        XCB_REPLY(connection, get_geometry, xcb_get_geometry(connection, m_display.root()));
    return geometry ? QRect(0, 0, geometry->width, geometry->height) : QRect();
}

// The caller must have grabbed the server, because the root's size may change and the picture is
// read in bands.
QImage X11WindowServer::rootPicture(const QRect &area)
{
    const QRect inside = area & rootArea();
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

QImage X11WindowServer::screenPicture(const QRect &area)
{
    if (area.isEmpty())
        return {};
    const ServerGrab grab(m_display.connection());
    return rootPicture(area);
}

// Sets the shapes of all windows, and asks the server for the shapes of those that touch `area`.
void X11WindowServer::readShapes(QList<Window> &windows, const QRect &area)
{
    xcb_connection_t *connection = m_display.connection();
    QList<std::pair<Window *, xcb_shape_query_extents_cookie_t>> extents;
    for (Window &window : windows) {
        window.shape = window.bounds;
        if (m_hasShape && window.bounds.intersects(area))
            extents.append({&window, xcb_shape_query_extents(connection, window.frame)});
    }
    QList<std::pair<Window *, xcb_shape_get_rectangles_cookie_t>> shaped;
    for (const auto &[window, cookie] : std::as_const(extents)) {
        const auto reply = XCB_REPLY(connection, shape_query_extents, cookie);
        if (reply && reply->bounding_shaped)
            shaped.append({window, xcb_shape_get_rectangles(connection, window->frame,
                                                            XCB_SHAPE_SK_BOUNDING)});
    }
    for (const auto &[window, cookie] : std::as_const(shaped)) {
        const auto reply = XCB_REPLY(connection, shape_get_rectangles, cookie);
        if (!reply)
            continue;
        window->shape = {};
        // The rectangles are relative to the inside of the border.
        const QPoint origin = window->bounds.topLeft() + QPoint(window->border, window->border);
        const xcb_rectangle_t *rects = xcb_shape_get_rectangles_rectangles(reply.get());
        for (int i = 0; i < xcb_shape_get_rectangles_rectangles_length(reply.get()); ++i)
            window->shape +=
                QRect(rects[i].x, rects[i].y, rects[i].width, rects[i].height).translated(origin);
        window->shape &= window->bounds;
    }
}

// Reads a part of the window's backing pixmap, which includes pixels that other windows cover.
QImage X11WindowServer::storedPicture(const Window &window, const QRect &area)
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

QImage X11WindowServer::windowPicture(xcb_window_t frame)
{
    xcb_connection_t *connection = m_display.connection();
    const ServerGrab grab(connection);
    const auto geometry = XCB_REPLY(connection, get_geometry, xcb_get_geometry(connection, frame));
    if (!geometry)
        return {};
    const int border = 2 * geometry->border_width;
    QList<Window> one{{.frame = frame,
                       .bounds = {0, 0, geometry->width + border, geometry->height + border},
                       .border = geometry->border_width,
                       .depth = geometry->depth}};
    const QRect bounds = one.first().bounds;
    readShapes(one, bounds);
    QImage picture = storedPicture(one.first(), bounds);
    const QRegion outside = QRegion(bounds) - one.first().shape;
    if (picture.isNull() || outside.isEmpty())
        return picture;
    picture = picture.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&picture);
    painter.setCompositionMode(QPainter::CompositionMode_Clear);
    for (const QRect &rect : outside)
        painter.fillRect(rect, Qt::black);
    return picture;
}

void X11WindowServer::paintWallpaper(QPainter &painter, const QRegion &region)
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
void X11WindowServer::paintWindows(QPainter &painter, QRegion region, const QList<Window> &windows)
{
    struct Piece {
        const Window *window = nullptr;
        QRegion visible{};
        qreal opacity = 1;
    };
    // Goes through the windows from the front, so that pixels behind opaque windows are not read.
    const bool composited = isComposited();
    QList<Piece> pieces;
    for (const Window &window : windows) {
        Piece piece{.window = &window, .visible = window.shape & region};
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

QImage X11WindowServer::picture(std::optional<QRectF> area, const QList<int> &numbers)
{
    if (!area && numbers.size() == 1)
        return windowPicture(static_cast<xcb_window_t>(numbers.first()));
    if (area && area->toRect().isEmpty())
        return {};
    const ServerGrab grab(m_display.connection());
    QList<Window> all = topLevels();
    all.removeIf([](const Window &window) { return !window.onScreen; });
    QList<Window> chosen;
    for (const int number : numbers) {
        const auto found = std::find_if(all.cbegin(), all.cend(), [&](const Window &window) {
            return static_cast<int>(window.frame) == number;
        });
        if (found != all.cend())
            chosen.append(*found);
    }
    QRect pixels = area ? area->toRect() : QRect();
    if (!area) {
        for (const Window &window : std::as_const(chosen))
            pixels |= window.bounds;
    }
    if (pixels.isEmpty())
        return {};

    all.removeIf(
        [&](const Window &window) { return numbers.contains(static_cast<int>(window.frame)); });
    return composed(pixels, chosen, all);
}

QImage X11WindowServer::pictureWithout(const QRect &area, const QList<int> &numbers)
{
    if (area.isEmpty())
        return {};
    const ServerGrab grab(m_display.connection());
    QList<Window> shown;
    QList<Window> leftOut;
    for (const Window &window : topLevels()) {
        if (window.onScreen && window.bounds.intersects(area))
            (numbers.contains(static_cast<int>(window.frame)) ? leftOut : shown).append(window);
    }
    return composed(area, shown, leftOut);
}

// Only the pixels behind the windows that are left out have to be composed. Elsewhere the screen's
// pixels are used, including a compositor's shadows.
QImage X11WindowServer::composed(const QRect &area, QList<Window> shown, QList<Window> leftOut)
{
    readShapes(leftOut, area);
    QRegion hidden;
    for (const Window &window : std::as_const(leftOut))
        hidden += window.shape & area;
    QImage result = rootPicture(area);
    if (hidden.isEmpty() || !m_hasComposite || result.isNull())
        return result;
    hidden &= rootArea();
    readShapes(shown, hidden.boundingRect());
    QPainter painter(&result);
    painter.translate(-area.topLeft());
    paintWindows(painter, hidden, shown);
    return result;
}
