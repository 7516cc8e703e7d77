#pragma once

#include <QComboBox>

/// A box that shows a zoom as a percentage. The user chooses another one, types it, or steps it
/// with the arrow keys.
class ZoomBox : public QComboBox
{
    Q_OBJECT

public:
    explicit ZoomBox(QWidget *parent = nullptr);

    /// Shows a zoom in device pixels per pixel of the picture; 0 for none.
    void showZoom(float zoom);

    // Room for the largest zoom there is, and no more.
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

signals:
    void zoomWanted(float zoom);
    void fitWanted();
    /// So many notches, as the wheel makes.
    void stepWanted(int notches);
    /// The user is done here.
    void left();

protected:
    void focusOutEvent(QFocusEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;

private:
    static QString textOf(float zoom);
    void take();

    float m_zoom = 0;
};
