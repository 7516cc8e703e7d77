#pragma once

#include "base/regionselection.h"

/// The frame that tells what of a picture is to stay, drawn by the same rules as a region of the
/// desktop. Picture coordinates.
class Cropping
{
public:
    enum class Answer { None, Take, GiveUp };

    /// Begins with a frame around all of the picture. `reach` is how far from its middle a handle
    /// answers.
    Cropping(QSize picture, float reach);

    void setReach(float reach);
    /// A press of the left button. A frame around everything can't be moved, so that a press in it
    /// begins another one.
    void press(QPoint at, Qt::KeyboardModifiers modifiers);
    void move(QPoint at, Qt::KeyboardModifiers modifiers);
    void release(QPoint at, Qt::KeyboardModifiers modifiers);
    bool isPressed() const { return m_region.isPressed(); }
    Answer key(int key, Qt::KeyboardModifiers modifiers);

    /// What stays; null where nothing is marked.
    QRect frame() const;
    bool isWhole() const { return frame() == QRect(QPoint(), m_picture); }
    Qt::CursorShape cursor(QPoint at) const;

private:
    QSize m_picture;
    RegionSelection m_region;
};
