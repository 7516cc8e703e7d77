#pragma once

#include "helper/mosaic.h"
#include "helper/scrollcapture.h"

#include <QImage>
#include <QObject>
#include <QRect>
#include <QString>
#include <QStringList>

/// Takes what the user scrolls by, with the wheel, a bar, keys or by dragging: it looks at the
/// window, many times a second, and touches nothing.
///
/// What happens on the way - the window closes or changes its size - ends the picture there.
class HandCapture : public QObject
{
    Q_OBJECT
public:
    explicit HandCapture(const ScrollCapture::Target &target);

    /// Runs it, with events running, until it is told to stop or nothing has moved for a minute.
    ScrollCapture::Result run();
    /// Ends run() with what there is.
    void keep() { m_stop = m_stop == Stop::None ? Stop::Keep : m_stop; }
    /// Ends run() without a picture.
    void discard() { m_stop = m_stop == Stop::None ? Stop::Discard : m_stop; }
    void abandon() { m_stop = Stop::Discard; }

    /// For a look, no larger than a box: what there is so far, or, while the place is lost, the
    /// part of the last known view that comes into sight first on the way back, and has something
    /// on it.
    QImage overview(QSize box) const;
    bool isLost() const { return m_isLost; }
    /// Whether the content is being taken: something has moved, and the place is known.
    bool isTaking() const { return m_mosaic.hasMoved() && !m_isLost; }
    /// What is looked at, and the window, global, as it lies now.
    QRect area() const { return m_area.translated(m_bounds.topLeft()); }
    QRect window() const { return m_bounds; }
    /// What progressed() may tell at its longest, so that room can be kept for it.
    static QStringList longestTexts();

signals:
    /// What is going on, for the user.
    void progressed(const QString &text);
    /// The window, and the area with it, lies elsewhere.
    void moved();

private:
    enum class Stop { None, Keep, Discard };

    bool look();
    void follow();
    void tell();
    static QString beginText();
    static QString lostText();
    static QString sizeText(QSize size, bool isFull);
    QString note() const;
    QString lossNote() const;
    QImage wayBack(QSize size) const;

    Clock &m_clock;
    const ScrollCapture::Target m_target;
    QRect m_bounds;  // the window's, global
    QRect m_area;    // in the window's picture
    Mosaic m_mosaic;
    QImage m_unclear;  // the last view that had no place
    bool m_isUnclear = false;
    bool m_isLost = false;
    bool m_isNew = true;  // something is to be told
    Stop m_stop = Stop::None;
    QString m_ended;
    Stopwatch m_sinceMovement;
    Stopwatch m_sinceKnown;
    Stopwatch m_sinceTold;
};
