#pragma once

#include <QPushButton>

/// A button that is its picture and nothing else: no frame, no plate of the style's, in no state.
/// The skin has a picture for each; without an icon it shows a frame with the last word of
/// its accessible name. (A style sheet that says so costs every start far more.)
class SkinButton : public QPushButton
{
    Q_OBJECT

public:
    using QPushButton::QPushButton;

protected:
    void paintEvent(QPaintEvent *event) override;
};
