#pragma once

#include "config/settings.h"

#include <QIcon>
#include <QPixmap>
#include <QString>

#include <map>
#include <optional>
#include <utility>

class QAbstractButton;
class QEvent;
class QPainter;
class QWidget;

/// The pictures of the user's skin. They are drawn in widget coordinates, in logical pixels.
class Skin
{
public:
    /// A ground that is put together from pictures: which attribute of its section is which piece.
    struct Ground {
        QString section{};
        SkinAttribute topLeft = SkinNormal;
        SkinAttribute topRight = SkinDown;
        SkinAttribute bottomLeft = SkinOver;
        SkinAttribute bottomRight = SkinDisabled;
    };
    static const Ground &body();   ///< of the window
    static const Ground &table();  ///< the area of pictures, with the edit strip

    /// Sections are those of `owner`'s object name. It outlives this object.
    explicit Skin(const QObject &owner) : m_owner(owner) {}

    /// A picture that stays; null where the skin has none. One whose file is missing is asked for
    /// again each time.
    const QPixmap &picture(const QString &section, SkinAttribute attribute);
    /// Loads it anew; `pixmap` stays as it is where the skin has none.
    void load(QPixmap &pixmap, const QString &section, SkinAttribute attribute) const;
    /// The path of a picture, which may not exist.
    QString path(const QString &section, SkinAttribute attribute) const;
    /// The glyph that a button's section shows where the skin has no picture that can be read, and
    /// the program ships none of the section's name.
    void setGlyph(const QString &section, const QString &glyph) { m_glyphs[section] = glyph; }
    /// The hint of a button, in the user's language.
    QString hint(const QString &section) const;
    /// The program's own; the shipped one where the skin's can't be read.
    QIcon programIcon() const;

    /// What a button looks like. `fill` is shown in the colour button's field. Nothing where the
    /// skin has no such picture.
    std::optional<QIcon> look(const QString &section, SkinAttribute state, qreal scale,
                              const std::optional<QColor> &fill) const;
    /// The same for one that can't be pressed: the skin's picture for that, or else its normal one,
    /// paler.
    std::optional<QIcon> greyedLook(const QString &section, qreal scale) const;
    /// What the tabs' close buttons look like, as rules of a style sheet.
    QString tabCloseRules() const;

    /// The capture strip: a tile over all of it, with a picture at either end.
    void paintCaptureStrip(QWidget &strip);
    /// The table and the bands over it.
    void paintTable(QWidget &area);

private:
    QString shippedPath(const QString &section, SkinAttribute state) const;

    const QObject &m_owner;
    std::map<std::pair<QString, int>, QPixmap> m_pictures;
    std::map<QString, QString> m_glyphs{};
};

/// The picture that a button shows after an event; nothing where the event changes none.
std::optional<SkinAttribute> stateAfter(const QAbstractButton &button, const QEvent &event);

/// Draws a picture of the skin where there is one.
void drawIfThere(QPainter &painter, const QPoint &position, const QPixmap &pixmap);
