#pragma once

#include <QList>
#include <QMargins>
#include <QRectF>
#include <QString>

/// The windows of all programs, as the window system reports them now. All coordinates are global
/// device pixels.
class WindowCatalogue
{
public:
    /// A window's purpose, as far as it is declared.
    enum class Kind {
        Other,
        Menu,     ///< an open menu, or the list of a combo box
        Unnamed,  ///< a window without a window manager that declares no purpose
        Panel,    ///< a bar of the desktop's at the edge of a screen
        Tray,     ///< where other programs have their icons, with the bar that it is part of
    };
    struct Entry {
        int number = 0;       ///< stable while the window lives
        int layer = 0;        ///< 0 for ordinary windows; a higher layer is nearer the front
        QRectF bounds{};      ///< including the window manager's frame
        QMargins frame{};     ///< widths of the frame in device pixels, as far as known
        QString name{};       ///< title; may be empty
        QString owner{};      ///< application; may be empty
        uint process = 0;     ///< 0 if unknown
        unsigned client = 0;  ///< the number that ApplicationWatch has for it
        Kind kind = Kind::Other;

        /// Whether it is the ground that the desktop paints, behind all other windows.
        bool isDesktop() const { return layer < 0; }

        /// The application as pictures are called after it: programs may tell a name of any length.
        QString shownOwner() const
        {
            constexpr qsizetype longest = 255;
            return owner.left(longest);
        }
    };
    enum class List { All, OnScreen, AtAndAbove };

    virtual ~WindowCatalogue() = default;

    /// The windows, front to back. `relativeTo` is a window's number and is used by AtAndAbove
    /// only, which lists that window and all windows in front of it.
    virtual QList<Entry> windows(List which, int relativeTo) = 0;

    /// Whether the desktop has a menu bar of its own, which has to be looked for and covered.
    virtual bool hasMenuBar() const { return false; }
};
