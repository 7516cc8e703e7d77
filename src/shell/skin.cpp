#include "shell/skin.h"

#include "base/palette.h"

#include <QAbstractButton>
#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QMouseEvent>
#include <QPainter>

#include <functional>
#include <utility>

#include <png.h>

using namespace Qt::StringLiterals;

namespace {

// Where the colour button's picture shows the pen colour.
constexpr QRect s_colorField(QPoint(5, 4), QPoint(19, 18));

constexpr qreal s_greyedOpacity = 0.4;  // as the shipped pictures are drawn with

constexpr png_uint_32 s_largestSide = 4096;  // pixels; larger ones are the toolkit's to refuse

// Pictures of more than 8 bits a channel, with colour tables or without an alpha channel come in
// the one form as well. Null for what is no PNG, or is damaged.
QImage readPng(const QString &path)
{
    png_image header{};
    header.version = PNG_IMAGE_VERSION;
    if (!png_image_begin_read_from_file(&header, QFile::encodeName(path).constData()))
        return {};
    header.format =
        QSysInfo::ByteOrder == QSysInfo::LittleEndian ? PNG_FORMAT_BGRA : PNG_FORMAT_ARGB;
    QImage picture;
    if (header.width <= s_largestSide && header.height <= s_largestSide)
        picture = QImage(static_cast<int>(header.width), static_cast<int>(header.height),
                         QImage::Format_ARGB32);
    const bool isRead =
        !picture.isNull() &&
        png_image_finish_read(&header, nullptr, picture.bits(),
                              static_cast<png_int_32>(picture.bytesPerLine()), nullptr) != 0;
    png_image_free(&header);
    return isRead ? picture : QImage();
}

// The toolkit loads all its picture plug-ins before it reads any picture, which costs a start a
// quarter of its time. A skin has PNG files, as a rule; the toolkit reads what else it may have.
bool loadPicture(QPixmap &pixmap, const QString &path)
{
    if (QImage picture = readPng(path); !picture.isNull()) {
        pixmap = QPixmap::fromImage(std::move(picture));
        return true;
    }
    return pixmap.load(path);
}

// The picture, changed by `change` if there is one; nothing where it can't be read.
std::optional<QIcon> iconOf(const QString &path, qreal scale, QIcon::Mode mode,
                            const std::function<void(QPixmap &)> &change)
{
    const QFileInfo file(path);
    QPixmap pixmap;
    QIcon icon;
    const auto add = [&] {
        if (change)
            change(pixmap);
        icon.addPixmap(pixmap, mode);
    };
    if (!file.exists() || !loadPicture(pixmap, file.filePath()))
        return {};
    add();
    // Twice as fine a picture, where the skin has one and the desktop is scaled.
    const QString fine = file.path() + u'/' + file.completeBaseName() + u"@2x."_s + file.suffix();
    if (scale > 1 && QFile::exists(fine) && loadPicture(pixmap, fine)) {
        pixmap.setDevicePixelRatio(2);
        add();
    }
    return icon;
}

}  // namespace

const Skin::Ground &Skin::body()
{
    static const Ground s_body{.section = u"BtnBackground"_s};
    return s_body;
}

const Skin::Ground &Skin::table()
{
    static const Ground s_table{.section = u"BtnPictureBackground"_s,
                                .topLeft = SkinOver,
                                .topRight = SkinNormal,
                                .bottomLeft = SkinDisabled,
                                .bottomRight = SkinDown};
    return s_table;
}

QString Skin::path(const QString &section, SkinAttribute attribute) const
{
    return GetBtnAttr(&m_owner, section, attribute);
}

void Skin::load(QPixmap &pixmap, const QString &section, SkinAttribute attribute) const
{
    if (const QString file = path(section, attribute); QFile::exists(file))
        loadPicture(pixmap, file);
}

const QPixmap &Skin::picture(const QString &section, SkinAttribute attribute)
{
    QPixmap &picture = m_pictures[{section, attribute}];
    if (picture.isNull())
        load(picture, section, attribute);
    return picture;
}

// The file's own texts are in English; what a user wrote there stays as it is.
QString Skin::hint(const QString &section) const
{
    const QString text = path(section, SkinHint);
    return text.isEmpty() ? text
                          : QCoreApplication::translate("MainWindow", text.toUtf8().constData());
}

// A skin without this picture, or with one that can't be read, must not leave a hole in the tray.
QIcon Skin::programIcon() const
{
    QPixmap pixmap;
    load(pixmap, u"BtnIcon"_s, SkinNormal);
    if (!pixmap.isNull())
        return pixmap;
    return QIcon::fromTheme(u"snapworkbench"_s, QIcon(QCoreApplication::applicationDirPath() +
                                                      u"/skin/BtnIcon_normal.png"_s));
}

QString Skin::shippedPath(const QString &section, SkinAttribute state) const
{
    const auto glyph = m_glyphs.find(section);
    if (glyph == m_glyphs.end())
        return {};
    const char *name = state == SkinOver       ? "over"
                       : state == SkinDown     ? "down"
                       : state == SkinDisabled ? "disabled"
                                               : "normal";
    const auto file = [&](const QString &picture) {
        return u"%1/skin/%2_%3.png"_s.arg(QCoreApplication::applicationDirPath(), picture,
                                          QLatin1StringView(name));
    };
    const QString own = file(section);
    return QFile::exists(own) ? own : file(glyph->second);
}

std::optional<QIcon> Skin::look(const QString &section, SkinAttribute state, qreal scale,
                                const std::optional<QColor> &fill) const
{
    const auto fillField = [&](QPixmap &pixmap) {
        if (fill)
            QPainter(&pixmap).fillRect(s_colorField, *fill);
    };
    if (auto own = iconOf(path(section, state), scale, QIcon::Normal, fillField))
        return own;
    return iconOf(shippedPath(section, state), scale, QIcon::Normal, fillField);
}

// Told to be the picture of what is greyed: the toolkit would grey it once more.
std::optional<QIcon> Skin::greyedLook(const QString &section, qreal scale) const
{
    if (auto own = iconOf(path(section, SkinDisabled), scale, QIcon::Disabled, {}))
        return own;
    const auto grey = [](QPixmap &pixmap) {
        QPixmap paler(pixmap.size());
        paler.setDevicePixelRatio(pixmap.devicePixelRatio());
        paler.fill(Qt::transparent);
        QPainter painter(&paler);
        painter.setOpacity(s_greyedOpacity);
        painter.drawPixmap(0, 0, pixmap);
        painter.end();
        pixmap = paler;
    };
    if (auto own = iconOf(path(section, SkinNormal), scale, QIcon::Disabled, grey))
        return own;
    return iconOf(shippedPath(section, SkinDisabled), scale, QIcon::Disabled, {});
}

// The tabs' close buttons are the style's; only a style sheet gives them pictures.
QString Skin::tabCloseRules() const
{
    const auto rule = [this](const QString &state, SkinAttribute attribute) {
        const QString file = path(u"BtnTabClose"_s, attribute);
        // One that can't be read would leave nothing to see; without the rule the style's own is.
        QPixmap pixmap;
        return QFile::exists(file) && loadPicture(pixmap, file)
                   ? u"QTabBar::close-button%1{image:url(\"%2\")} "_s.arg(state, file)
                   : QString();
    };
    return rule({}, SkinNormal) + rule(u":hover"_s, SkinOver) + rule(u":pressed"_s, SkinDown);
}

void Skin::paintCaptureStrip(QWidget &strip)
{
    const QString section = u"BtnToolBackground"_s;
    const QPixmap &rightEnd = picture(section, SkinDown);
    const QPixmap &tile = picture(section, SkinOver);
    const int w = strip.width();
    QPainter painter(&strip);
    if (const int t = tile.width(); t > 0) {
        for (int i = 0; i < w / t + 1; ++i)
            painter.drawPixmap(t * i, 0, tile);
    }
    drawIfThere(painter, {0, 0}, picture(section, SkinNormal));
    drawIfThere(painter, {w - rightEnd.width(), 0}, rightEnd);
}

void Skin::paintTable(QWidget &area)
{
    const Ground &ground = table();
    const QPixmap &topRight = picture(ground.section, ground.topRight);
    const QPixmap &bottomLeft = picture(ground.section, ground.bottomLeft);
    const QPixmap &bottomRight = picture(ground.section, ground.bottomRight);
    const int w = area.width();
    const int h = area.height();
    QPainter painter(&area);
    painter.fillRect(QRect(0, 0, w, h), Palette::table);
    painter.fillRect(QRect(0, 0, w, 12), Palette::topBand);
    painter.fillRect(QRect(0, 13, w, 14), Palette::strip);
    painter.setPen(Palette::brightEdge);
    painter.drawLine(0, 26, w, 26);
    // The corners reach beyond the widget, by as much as their pictures are drawn for.
    drawIfThere(painter, {-2, 0}, picture(ground.section, ground.topLeft));
    drawIfThere(painter, {w + 4 - topRight.width(), 0}, topRight);
    drawIfThere(painter, {-2, h + 3 - bottomLeft.height()}, bottomLeft);
    drawIfThere(painter, {w + 4 - bottomRight.width(), h + 3 - bottomRight.height()}, bottomRight);
}

std::optional<SkinAttribute> stateAfter(const QAbstractButton &button, const QEvent &event)
{
    switch (event.type()) {
    case QEvent::Leave:
        return SkinNormal;
    case QEvent::Enter:
        return SkinOver;
    case QEvent::MouseButtonPress:
        return SkinDown;
    case QEvent::MouseButtonRelease: {
        // Both far edges count as inside.
        const QPoint pos = static_cast<const QMouseEvent &>(event).position().toPoint();
        return QRect(QPoint(), button.size() + QSize(1, 1)).contains(pos) ? SkinOver : SkinNormal;
    }
    default:
        return {};
    }
}

void drawIfThere(QPainter &painter, const QPoint &position, const QPixmap &pixmap)
{
    if (!pixmap.isNull())
        painter.drawPixmap(position, pixmap);
}
