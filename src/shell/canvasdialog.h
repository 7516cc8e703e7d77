#pragma once

#include "shell/sizedialog.h"

#include <QColor>
#include <QRect>

class QButtonGroup;
class QPushButton;
class QSpinBox;

/// Asks how much room a picture is to have, and at which side: what it lacks then is cut off, what
/// is new gets a ground.
class CanvasDialog : public SizeDialog
{
    Q_OBJECT

public:
    CanvasDialog(QSize picture, QWidget *parent);

    QSize wanted() const override;
    /// The same in the picture's coordinates.
    QRect frame() const;
    QColor ground() const { return m_ground; }

private:
    void addAnchors();
    void setGround(const QColor &color);

    QSize m_picture;
    QColor m_ground{Qt::white};
    QSpinBox *m_width;
    QSpinBox *m_height;
    QButtonGroup *m_anchors;  ///< row by row
    QPushButton *m_button;
};
