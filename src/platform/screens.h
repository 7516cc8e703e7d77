#pragma once

#include <QList>
#include <QRect>
#include <QString>

/// The screens of the desktop, as the window system reports them now.
class Screens
{
public:
    struct Screen {
        QRect area{};     ///< in global device pixels
        qreal scale = 1;  ///< device pixels per logical pixel of the toolkit
        QString name{};   ///< as the window system calls it; may be empty
    };

    virtual ~Screens() = default;

    /// All screens, the primary one first; never empty.
    virtual QList<Screen> all() = 0;

    /// The rectangles of all screens, in the same order.
    QList<QRect> areas()
    {
        QList<QRect> result;
        for (const Screen &screen : all())
            result.append(screen.area);
        return result;
    }
};
