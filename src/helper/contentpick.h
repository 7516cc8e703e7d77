#pragma once

#include "capture/windowpick.h"

class HintPlate;
class QMouseEvent;

/// The window pick with a choice: the window as it is, or all of its scrolling content. Where other
/// programs tell about themselves it outlines the area that scrolls under the pointer; dragging
/// marks it by hand.
class ContentPick : public mouseShot
{
    Q_OBJECT
public:
    ContentPick();
    ~ContentPick() override;

    enum class Way {
        Window,   ///< the window as it is
        Content,  ///< what scrolls in it, by the wheel
        Hands     ///< the same, scrolled by the user
    };
    struct Choice {
        WindowServer::Entry window{};
        Way way = Way::Window;
        QRect area{};         ///< the outlined area, global device pixels; empty for none
        bool marked = false;  ///< the user has drawn it, and means just that
        bool across = false;  ///< Content: also what lies beside the view
        QPoint pointer{};     ///< where it was chosen, global device pixels
    };
    /// What was accepted; none where nothing was picked.
    std::optional<Choice> choice() const;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    bool canBeTaken() const override;
    void looked() override;
    std::optional<WindowServer::Entry> shown() const override;
    void draw(QPainter &painter) override;

private:
    void followWindows();
    void ask(const WindowServer::Entry &window, QPoint at);
    void setScrollingArea(const QRect &global);
    void choose(Way way, Qt::KeyboardModifiers modifiers);
    bool pressed(const QMouseEvent &event);
    /// Where it happened, global.
    QPoint placeOf(const QMouseEvent &event) const;
    void dragged(const QMouseEvent &event);
    void released(const QMouseEvent &event);
    void unmark();
    void tellKeys();
    void tellMark();
    void placeHint();

    HintPlate *m_hint;
    const bool m_asks;  // whether other programs can be asked
    Choice m_chosen;
    // The left button, from its press on.
    bool m_isPressed = false;
    bool m_isDragged = false;
    QPoint m_pressedAt;  // global
    Qt::KeyboardModifiers m_pressedKeys;
    std::optional<WindowServer::Entry> m_pressedWindow;
    std::optional<WindowServer::Entry> m_markedWindow;  // the one that the mark lies in
    QRect m_marked;                                     // global
    QRect m_scrollingArea;                              // global
    int m_askedWindow = 0;
    QPoint m_askedAt;
};
