#pragma once

#include <QColor>
#include <QPushButton>

/// The dark plates that lie over the picture area and tell the user something.
inline constexpr QColor PlateText(215, 222, 228);

/// Paints a widget's ground, as large as it is.
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
