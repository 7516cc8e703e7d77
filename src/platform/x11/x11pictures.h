#pragma once

#include "platform/pictures.h"
#include "platform/x11/x11changewatch.h"
#include "platform/x11/x11pixelreader.h"
#include "platform/x11/x11toplevel.h"

#include <QRegion>

class QPainter;

class X11Pictures : public Pictures
{
public:
    /// `display` outlives this object.
    explicit X11Pictures(X11Display &display);

    /// Windows, and the list of them, stay live, even where it is to stand still.
    void freeze(Freeze how, Answer answer) override;
    void thaw() override;
    bool isFrozen() const override { return !m_frozen.isNull(); }
    QImage ofDesktop(const QRect &area) override;
    QImage ofWindows(std::optional<QRectF> area, const QList<int> &numbers) override;
    QImage withoutWindows(const QRect &area, const QList<int> &numbers) override;
    std::optional<Pointer> pointer() override;
    std::unique_ptr<ChangeWatch> watchChanges(int number) override;

private:
    struct Shaped {
        X11TopLevel top{};
        QRegion shape{};  ///< the part of its bounds that the window fills
    };

    std::optional<Pointer> shownPointer();
    QImage rootPicture(const QRect &area);
    QImage windowPicture(xcb_window_t frame);
    QImage storedPicture(const X11TopLevel &window, const QRect &area);
    QImage composed(const QRect &area, const QList<X11TopLevel> &shown,
                    const QList<X11TopLevel> &leftOut);
    /// The windows with their shapes, as far as these touch `area`.
    QList<Shaped> shaped(const QList<X11TopLevel> &windows, const QRect &area);
    void paintWallpaper(QPainter &painter, const QRegion &region);
    void paintWindows(QPainter &painter, QRegion region, const QList<Shaped> &windows);

    X11Display &m_display;
    X11PixelReader m_reader;
    X11ChangeWatches m_watches;
    bool m_hasShape;
    bool m_hasComposite;
    QImage m_frozen{};                         ///< the root window; null where nothing is frozen
    std::optional<Pointer> m_frozenPointer{};  ///< as it was then
    std::unique_ptr<QObject> m_question{};     ///< while an answer is owed
};
