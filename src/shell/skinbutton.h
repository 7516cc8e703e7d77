#pragma once

#include <QPushButton>

/// A button that is its picture and nothing else: no frame, no plate of the style's, in no state.
/// The skin has a picture for each; without an icon it shows a frame with the last word of
/// its accessible name. It takes the focus by Tab alone, and shows that it has it. (A style sheet
/// that says so costs every start far more.)
class SkinButton : public QPushButton
{
    Q_OBJECT

public:
    explicit SkinButton(QWidget *parent = nullptr);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void paintName(QPainter &painter);
};
