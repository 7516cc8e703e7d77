#pragma once

#include "editing/backdrop.h"
#include "shell/sizedialog.h"

#include <QImage>

#include <optional>

class QCheckBox;
class QComboBox;
class QFormLayout;
class QLabel;
class QLayout;
class QPushButton;
class QSpinBox;
class QToolButton;

/// Asks for the ground on which a picture is to lie, and shows what comes of it.
class BackdropDialog : public SizeDialog
{
    Q_OBJECT

public:
    /// `picture` is the one with all shapes, and without the ground on which it lies now, if that
    /// is `current`.
    BackdropDialog(QImage picture, const std::optional<Backdrop> &current, QWidget *parent);

    QSize wanted() const override;
    /// None if the picture is to lie on nothing.
    std::optional<Backdrop> backdrop() const;

private:
    QLayout *presets();
    QLayout *fields(bool isOnOne);
    void set(const Backdrop &backdrop);
    void refresh();

    QSize m_size;     ///< of the picture
    QImage m_sample;  ///< the picture, small
    QList<QRgb> m_blots;
    QColor m_first;
    QColor m_second;
    QLabel *m_preview;
    QList<QToolButton *> m_presets{};
    QComboBox *m_ground;
    QPushButton *m_firstButton;
    QPushButton *m_secondButton;
    QSpinBox *m_padding;
    QSpinBox *m_radius;
    QCheckBox *m_shadow;
    QComboBox *m_ratio;
    QFormLayout *m_fields;
};
