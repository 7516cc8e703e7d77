#pragma once

#include "helper/mosaic.h"
#include "helper/scrollcapture.h"

#include <QImage>
#include <QObject>
#include <QRect>
#include <QString>
#include <QStringList>

/// Captures content while the user scrolls it, with the wheel, a scroll bar, keys or by dragging.
/// It only looks at the window, many times a second.
///
/// If the window closes or changes its size, the picture ends there.
class HandCapture : public QObject
{
    Q_OBJECT
public:
    explicit HandCapture(const ScrollCapture::Target &target);

    /// Runs, with events running, until it is stopped or nothing has moved for a minute.
    ScrollCapture::Result run();
    /// Ends run() with the picture taken so far.
    void keep() { m_stop = m_stop == Stop::None ? Stop::Keep : m_stop; }
    /// Ends run() without a picture.
    void discard() { m_stop = m_stop == Stop::None ? Stop::Discard : m_stop; }
    void abandon() { m_stop = Stop::Discard; }

    /// A preview, no larger than `box`: the picture so far, or, while the position is lost, the
    /// part of the last known view that becomes visible first on the way back and is not blank.
    QImage overview(QSize box) const;
    bool isLost() const { return m_isLost; }
    /// Whether content is being captured: something has moved and the position is known.
    bool isTaking() const { return m_mosaic.hasMoved() && !m_isLost; }
    /// The captured area and its window as they are now, in global device pixels.
    QRect area() const { return m_area.translated(m_bounds.topLeft()); }
    QRect window() const { return m_bounds; }
    /// The longest texts of progressed(), so that space can be reserved for them.
    static QStringList longestTexts();

signals:
    /// The state as a text for the user.
    void progressed(const QString &text);
    /// The window has moved, and the area with it.
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
    QRect m_bounds;  // of the window, global
    QRect m_area;    // in the window
    QRect m_part;    // the same in its picture, which a screen with larger pixels makes smaller
    QSize m_size;    // of that picture
    Mosaic m_mosaic;
    QImage m_unclear;  // the last view without a known position
    bool m_isUnclear = false;
    bool m_isLost = false;
    bool m_isNew = true;  // a change has to be reported
    Stop m_stop = Stop::None;
    QString m_ended;
    Stopwatch m_sinceMovement;
    Stopwatch m_sinceKnown;
    Stopwatch m_sinceTold;
};
