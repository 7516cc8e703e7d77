#pragma once

#include <QGridLayout>
#include <QWidget>

class QLabel;

/// A dark plate with a headline and lines that tell which key does what. It takes no click and no
/// key. With a parent it lies on it; without one it is a window of its own, above all others.
class HintPlate : public QWidget
{
    Q_OBJECT
public:
    explicit HintPlate(QWidget *parent);

    void setHeadline(const QString &text);
    void addLine(const QString &key, const QString &meaning);
    void clearLines();

    /// Shows a plate without a parent near a rectangle, on its screen, where it covers least of it.
    /// Global device pixels.
    void showBeside(const QRect &area);
    /// The same at the foot of the screen that holds a point.
    void showAtFoot(QPoint at);

    /// The place for a box of `size` beside `area`: outside of it where a screen has room, else in
    /// its top right corner. Global device pixels.
    static QPoint place(QSize size, const QRect &area, const QList<QRect> &screens);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QSize fitted();
    void showAt(QPoint corner);

    QGridLayout *m_grid;
    QLabel *m_headline;
};
