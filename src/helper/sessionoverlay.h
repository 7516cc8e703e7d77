#pragma once

#include "capture/mouseshot.h"

class HintPlate;

/// The window pick with a choice: the window as it is, or all of its scrolling content. Where other
/// programs tell about themselves it outlines the area that scrolls under the pointer.
class SessionOverlay : public mouseShot
{
    Q_OBJECT
public:
    SessionOverlay();
    ~SessionOverlay() override;

    struct Choice {
        WindowServer::Entry window{};
        bool content = false;  ///< what scrolls, and not the window
        QRect area{};          ///< the outlined area, global device pixels; empty for none
        QPoint pointer{};      ///< where it was chosen, global device pixels
    };
    /// What was accepted; none where nothing was picked.
    std::optional<Choice> choice() const;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void looked() override;
    void draw(QPainter &painter) override;

private:
    void followWindows();
    void ask(const WindowServer::Entry &window, QPoint at);
    void setScrollingArea(const QRect &global);
    void placeHint();

    HintPlate *m_hint;
    const bool m_asks;  // whether other programs can be asked
    bool m_content = false;
    QPoint m_chosenAt;
    QRect m_scrollingArea;  // global
    int m_askedWindow = 0;
    QPoint m_askedAt;
};
