#pragma once

#include <QLabel>

/// The dark frame with round corners that everything has which lies on an overlay. It is black and
/// its text is white, because an overlay may be seen through, and what lies below then takes some
/// of the contrast.
void paintOverlayFrame(QWidget &widget);

/// A few words on an overlay, which get no clicks.
class OverlayPlate : public QLabel
{
    Q_OBJECT
public:
    explicit OverlayPlate(QWidget *parent);

    /// Sets the text, and the size that it needs.
    void tell(const QString &text);

protected:
    void paintEvent(QPaintEvent *event) override;
};
