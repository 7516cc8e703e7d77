#pragma once

#include <QPushButton>

/// Paints the ground of a dark plate that lies over the picture area and tells the user something,
/// as large as the widget.
void paintPlate(QWidget &widget);

/// A button on a plate: its text with a frame, or a cross where it has none.
class PlateButton : public QPushButton
{
public:
    explicit PlateButton(const QString &text);

    QSize sizeHint() const override;

protected:
    void hideEvent(QHideEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
};
