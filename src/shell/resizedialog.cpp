#include "shell/resizedialog.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QSignalBlocker>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr double s_mostPerCent = 10'000;
constexpr double s_leastPerCent = 0.01;

int scaled(int length, double perCent) { return std::max(1, qRound(length * perCent / 100)); }

}  // namespace

ResizeDialog::ResizeDialog(QSize picture, QWidget *parent)
    : SizeDialog(tr("Resize"), parent), m_picture(picture), m_width(new QDoubleSpinBox),
      m_height(new QDoubleSpinBox), m_unit(new QComboBox),
      m_keep(new QCheckBox(tr("&Keep proportions")))
{
    m_width->setObjectName(u"SpinWidth"_s);
    m_height->setObjectName(u"SpinHeight"_s);
    m_unit->setObjectName(u"CmbUnit"_s);
    m_unit->addItems({tr("pixels"), tr("per cent")});
    m_keep->setChecked(true);
    form().addRow(tr("&Width"), m_width);
    form().addRow(tr("&Height"), m_height);
    form().addRow(tr("&Unit"), m_unit);
    form().addRow(m_keep);
    show(picture);
    connect(m_width, &QDoubleSpinBox::valueChanged, this,
            [this] { follow(*m_width, m_picture.width(), *m_height, m_picture.height()); });
    connect(m_height, &QDoubleSpinBox::valueChanged, this,
            [this] { follow(*m_height, m_picture.height(), *m_width, m_picture.width()); });
    connect(m_keep, &QCheckBox::toggled, this,
            [this] { follow(*m_width, m_picture.width(), *m_height, m_picture.height()); });
    connect(m_unit, &QComboBox::currentIndexChanged, this, &ResizeDialog::changeUnit);
    m_width->setFocus();
    m_width->selectAll();
}

QSize ResizeDialog::wanted() const
{
    if (m_shown == Pixels)
        return {qRound(m_width->value()), qRound(m_height->value())};
    return {scaled(m_picture.width(), m_width->value()),
            scaled(m_picture.height(), m_height->value())};
}

void ResizeDialog::follow(QDoubleSpinBox &changed, int own, QDoubleSpinBox &other, int otherOwn)
{
    if (m_keep->isChecked()) {
        const QSignalBlocker blocker(other);
        other.setValue(m_shown == PerCent ? changed.value()
                                          : scaled(otherOwn, 100 * changed.value() / own));
    }
    check();
}

void ResizeDialog::changeUnit()
{
    const QSize size = wanted();
    m_shown = static_cast<Unit>(m_unit->currentIndex());
    show(size);
}

void ResizeDialog::show(QSize size)
{
    const bool isShare = m_shown == PerCent;
    const auto fill = [isShare](QDoubleSpinBox &field, int length, int own) {
        const QSignalBlocker blocker(field);
        field.setDecimals(isShare ? 2 : 0);
        field.setRange(isShare ? s_leastPerCent : 1, isShare ? s_mostPerCent : s_mostPixels);
        field.setValue(isShare ? 100. * length / own : length);
    };
    fill(*m_width, size.width(), m_picture.width());
    fill(*m_height, size.height(), m_picture.height());
    check();
}
