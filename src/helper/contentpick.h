#pragma once

#include "capture/windowpick.h"

class HintPlate;
class QMouseEvent;

/// The window pick with a choice: the window as it is, or its scrolling content. If other programs
/// report their structure, the scrolling area under the pointer is outlined. The user can mark
/// another area by dragging.
///
/// Where no windows are known each screen stands for one, and there is nothing but its content,
/// which the user scrolls.
class ContentPick : public mouseShot
{
    Q_OBJECT
public:
    ContentPick();
    ~ContentPick() override;

    enum class Way {
        Window,   ///< the window as it is
        Content,  ///< its scrolling content, scrolled by turning the wheel
        Hands     ///< its scrolling content, scrolled by the user
    };
    struct Choice {
        WindowCatalogue::Entry window{};
        Way way = Way::Window;
        QRect area{};         ///< the outlined area in global device pixels; empty if there is none
        bool marked = false;  ///< the user has marked `area`, which must be used exactly
        bool across = false;  ///< for Content: captures also what is beside the view
        QPoint pointer{};     ///< the pointer's position at the choice, in global device pixels
    };
    /// The accepted choice; none if no window was picked.
    std::optional<Choice> choice() const;

protected:
    bool paneEvent(const Pane &pane, QEvent *event) override;
    bool canBeTaken() const override;
    void looked() override;
    std::optional<WindowCatalogue::Entry> shown() const override;
    void draw(QPainter &painter, const Pane &pane) override;

private:
    void followWindows();
    void ask(const WindowCatalogue::Entry &window, QPoint at);
    void setScrollingArea(const QRect &global);
    void choose(Way way, Qt::KeyboardModifiers modifiers);
    bool pressed(const Pane &pane, const QMouseEvent &event);
    void dragged(const Pane &pane, const QMouseEvent &event);
    void released(const Pane &pane, const QMouseEvent &event);
    void unmark();
    void tellKeys();
    void tellKeysOfWindows();
    void tellKeysOfScreens();
    void tellMark();
    void placeHint();

    HintPlate *m_hint;
    const bool m_knowsWindows;
    const bool m_asks;  // whether other programs can be asked for their areas
    Choice m_chosen;
    // The state of a press of the left button.
    bool m_isPressed = false;
    bool m_isDragged = false;
    QPoint m_pressedAt;  // global
    Qt::KeyboardModifiers m_pressedKeys;
    std::optional<WindowCatalogue::Entry> m_pressedWindow;
    std::optional<WindowCatalogue::Entry> m_markedWindow;  // the window that contains the mark
    QRect m_marked;                                        // global
    QRect m_scrollingArea;                                 // global
    int m_askedWindow = 0;
    QPoint m_askedAt;
};
