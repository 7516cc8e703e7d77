#pragma once

#include "shell/sizedialog.h"

class QCheckBox;
class QComboBox;
class QDoubleSpinBox;

/// Asks how large a picture is to be made, in pixels or as a share of what it is.
class ResizeDialog : public SizeDialog
{
    Q_OBJECT

public:
    ResizeDialog(QSize picture, QWidget *parent);

    QSize wanted() const override;

private:
    enum Unit { Pixels, PerCent };

    /// A field was changed, and the other one goes along if the proportions are kept.
    void follow(QDoubleSpinBox &changed, int own, QDoubleSpinBox &other, int otherOwn);
    void changeUnit();
    void show(QSize size);

    QSize m_picture;
    Unit m_shown = Pixels;  ///< what the fields hold
    QDoubleSpinBox *m_width;
    QDoubleSpinBox *m_height;
    QComboBox *m_unit;
    QCheckBox *m_keep;
};
