#include "shell/backdropdialog.h"

#include "base/palette.h"
#include "shell/colorpopup.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QToolButton>

#include <algorithm>
#include <array>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

// Logical pixels.
constexpr QSize s_previewSize(360, 240);
constexpr QSize s_presetSize(48, 36);
constexpr int s_gap = 16;
constexpr int s_none = -1;  // in the box of grounds: the picture lies on nothing

struct Preset {
    const char *name = nullptr;
    Backdrop::Ground ground = Backdrop::Ground::Gradient;
    QRgb first = 0;
    QRgb second = 0;
};

using Ground = Backdrop::Ground;
constexpr std::array s_presets{
    Preset{QT_TRANSLATE_NOOP("BackdropDialog", "Sea"), Ground::Gradient, 0xff2b6f8f, 0xff8fc7d6},
    Preset{QT_TRANSLATE_NOOP("BackdropDialog", "Evening"), Ground::Gradient, 0xff5b3a8c,
           0xfff0936b},
    Preset{QT_TRANSLATE_NOOP("BackdropDialog", "Meadow"), Ground::Gradient, 0xff2f7d4f, 0xffc9dd7c},
    Preset{QT_TRANSLATE_NOOP("BackdropDialog", "Slate"), Ground::Gradient, 0xff23282d, 0xff5d6b78},
    Preset{QT_TRANSLATE_NOOP("BackdropDialog", "Paper"), Ground::Color, 0xfff3efe6, 0xffd9d2c3},
    Preset{QT_TRANSLATE_NOOP("BackdropDialog", "Blurred Picture"), Ground::Blurred, 0xff2b6f8f,
           0xff8fc7d6}};

// Each with the one that it becomes when the picture is turned.
constexpr std::array s_ratios{QSize(0, 0),  QSize(1, 1), QSize(4, 3), QSize(3, 2),
                              QSize(16, 9), QSize(3, 4), QSize(2, 3), QSize(9, 16)};

// What is typed beyond the limit becomes the limit. Without this the last digit would be refused,
// and a number that nobody meant be left.
class LengthBox : public QSpinBox
{
public:
    explicit LengthBox(int most) { setRange(0, most); }

protected:
    QValidator::State validate(QString &text, int &position) const override
    {
        return isBeyond(text) ? QValidator::Intermediate : QSpinBox::validate(text, position);
    }

    void fixup(QString &text) const override
    {
        if (isBeyond(text))
            text = textFromValue(maximum());
        else
            QSpinBox::fixup(text);
    }

private:
    static bool isNumber(const QString &digits)
    {
        constexpr int most = 9;  // digits that no int overflows with
        bool isOne = false;
        digits.toUInt(&isOne);
        return isOne && digits.size() <= most;
    }

    bool isBeyond(const QString &text) const
    {
        QString digits = text;
        digits = digits.remove(suffix()).trimmed();
        return isNumber(digits) && digits.toInt() > maximum();
    }
};

Backdrop backdropOf(const Preset &preset)
{
    Backdrop result;
    result.ground = preset.ground;
    result.first = QColor::fromRgb(preset.first);
    result.second = QColor::fromRgb(preset.second);
    return result;
}

bool hasLookOf(const Backdrop &backdrop, const Preset &preset)
{
    const Backdrop look = backdropOf(preset);
    return backdrop.ground == look.ground &&
           (look.ground == Ground::Blurred || backdrop.first == look.first) &&
           (look.ground != Ground::Gradient || backdrop.second == look.second);
}

}  // namespace

BackdropDialog::BackdropDialog(QImage picture, const std::optional<Backdrop> &current,
                               QWidget *parent)
    : SizeDialog(tr("Backdrop"), parent), m_size(picture.size()),
      m_blots(Backdrop::blotsOf(picture)), m_preview(new QLabel), m_ground(new QComboBox),
      m_firstButton(new QPushButton), m_secondButton(new QPushButton),
      m_padding(new LengthBox(Backdrop::s_widestPadding)),
      m_radius(new LengthBox(Backdrop::s_roundest)), m_shadow(new QCheckBox(tr("S&hadow"))),
      m_ratio(new QComboBox), m_fields(new QFormLayout)
{
    const QSize most = s_previewSize * devicePixelRatioF();
    m_sample = picture.width() > most.width() || picture.height() > most.height()
                   ? picture.scaled(most, Qt::KeepAspectRatio, Qt::SmoothTransformation)
                   : std::move(picture);
    m_preview->setObjectName(u"lblPreview"_s);
    m_preview->setFixedSize(s_previewSize);
    m_preview->setAlignment(Qt::AlignCenter);
    m_preview->setAccessibleName(tr("Preview"));
    // Beside each other they have room on a screen of 600 pixels, too.
    auto *looks = new QVBoxLayout;
    looks->addWidget(m_preview);
    looks->addLayout(presets());
    looks->addStretch();
    auto *beside = new QHBoxLayout;
    beside->setSpacing(s_gap);
    beside->addLayout(looks);
    beside->addLayout(fields(current.has_value()));
    form().addRow(beside);
    set(current.value_or(backdropOf(s_presets.front())));
    m_ground->setFocus();
}

QLayout *BackdropDialog::presets()
{
    auto *row = new QHBoxLayout;
    row->setSpacing(4);
    for (const Preset &preset : s_presets) {
        Backdrop small = backdropOf(preset);
        small.blots = m_blots;
        small.padding = 7;
        small.radius = 2;
        QImage card((s_presetSize - QSize(14, 14)) * devicePixelRatioF(), QImage::Format_RGB32);
        card.fill(Qt::white);
        QImage image = small.under(card, devicePixelRatioF());
        image.setDevicePixelRatio(devicePixelRatioF());
        auto *button = new QToolButton;
        button->setIcon(QPixmap::fromImage(std::move(image)));
        button->setIconSize(s_presetSize);
        button->setAccessibleName(tr(preset.name));
        button->setToolTip(button->accessibleName());
        button->setFocusPolicy(Qt::StrongFocus);
        button->setCheckable(true);
        button->setStyleSheet(
            u"QToolButton:checked { border: 2px solid %1; border-radius: 4px; }"_s.arg(
                Palette::accentDown.name()));
        m_presets.append(button);
        row->addWidget(button);
        // Only the look of the ground: what else was chosen stays.
        connect(button, &QToolButton::clicked, this, [this, &preset] {
            Backdrop next = backdrop().value_or(Backdrop());
            const Backdrop look = backdropOf(preset);
            next.ground = look.ground;
            next.first = look.first;
            next.second = look.second;
            set(next);
        });
    }
    row->addStretch();
    return row;
}

QLayout *BackdropDialog::fields(bool isOnOne)
{
    m_ground->setObjectName(u"CmbGround"_s);
    m_ground->addItem(tr("Colour"), int(Ground::Color));
    m_ground->addItem(tr("Gradient"), int(Ground::Gradient));
    m_ground->addItem(tr("Blurred picture"), int(Ground::Blurred));
    if (isOnOne)
        m_ground->addItem(tr("None"), s_none);
    m_fields->addRow(tr("&Ground"), m_ground);
    const auto addColor = [this](const QString &label, QPushButton &button, QColor &color) {
        m_fields->addRow(label, &button);
        connect(&button, &QPushButton::clicked, this, [this, &button, &color] {
            ColorPopup::open(button, color, [this, &color](const QColor &chosen) {
                color = chosen;
                refresh();
            });
        });
    };
    addColor(tr("&Colour"), *m_firstButton, m_first);
    addColor(tr("S&econd colour"), *m_secondButton, m_second);
    m_padding->setObjectName(u"SpinPadding"_s);
    m_padding->setSingleStep(8);
    m_fields->addRow(tr("&Padding"), m_padding);
    m_radius->setObjectName(u"SpinRadius"_s);
    m_radius->setSingleStep(2);
    m_fields->addRow(tr("&Rounded corners"), m_radius);
    for (QSpinBox *field : {m_padding, m_radius}) {
        field->setSuffix(tr(" px"));
        connect(field, &QSpinBox::valueChanged, this, &BackdropDialog::refresh);
    }
    m_shadow->setObjectName(u"ChkShadow"_s);
    m_fields->addRow(QString(), m_shadow);
    m_ratio->setObjectName(u"CmbRatio"_s);
    for (const QSize ratio : s_ratios)
        m_ratio->addItem(ratio.isEmpty() ? tr("As it comes")
                                         : tr("%1 : %2").arg(ratio.width()).arg(ratio.height()),
                         ratio);
    m_fields->addRow(tr("Ratio of &sides"), m_ratio);
    connect(m_shadow, &QCheckBox::toggled, this, &BackdropDialog::refresh);
    for (QComboBox *box : {m_ground, m_ratio})
        connect(box, &QComboBox::currentIndexChanged, this, &BackdropDialog::refresh);
    return m_fields;
}

void BackdropDialog::set(const Backdrop &backdrop)
{
    const QSignalBlocker blockers[]{QSignalBlocker(m_ground), QSignalBlocker(m_padding),
                                    QSignalBlocker(m_radius), QSignalBlocker(m_shadow),
                                    QSignalBlocker(m_ratio)};
    m_ground->setCurrentIndex(m_ground->findData(int(backdrop.ground)));
    m_first = backdrop.first;
    m_second = backdrop.second;
    m_padding->setValue(backdrop.padding);
    m_radius->setValue(backdrop.radius);
    m_shadow->setChecked(backdrop.hasShadow);
    const auto ratio = std::find(s_ratios.begin(), s_ratios.end(), backdrop.ratio);
    m_ratio->setCurrentIndex(ratio == s_ratios.end() ? 0 : int(ratio - s_ratios.begin()));
    refresh();
}

std::optional<Backdrop> BackdropDialog::backdrop() const
{
    const int ground = m_ground->currentData().toInt();
    if (ground == s_none)
        return {};
    return Backdrop{.ground = Ground(ground),
                    .first = m_first,
                    .second = m_second,
                    .padding = m_padding->value(),
                    .radius = m_radius->value(),
                    .hasShadow = m_shadow->isChecked(),
                    .ratio = m_ratio->currentData().toSize()};
}

QSize BackdropDialog::wanted() const
{
    const std::optional<Backdrop> chosen = backdrop();
    return chosen ? chosen->sizeFor(m_size) : m_size;
}

void BackdropDialog::refresh()
{
    std::optional<Backdrop> chosen = backdrop();
    const auto enable = [this](QWidget *field, bool on) {
        field->setEnabled(on);
        if (QWidget *label = m_fields->labelForField(field))
            label->setEnabled(on);
    };
    for (QWidget *field : QList<QWidget *>{m_padding, m_radius, m_shadow, m_ratio})
        enable(field, chosen.has_value());
    enable(m_firstButton, chosen && chosen->ground != Ground::Blurred);
    enable(m_secondButton, chosen && chosen->ground == Ground::Gradient);
    for (int i = 0; i < m_presets.size(); ++i)
        m_presets.at(i)->setChecked(chosen && hasLookOf(*chosen, s_presets.at(i)));
    ColorPopup::showOn(*m_firstButton, m_first);
    ColorPopup::showOn(*m_secondButton, m_second);
    QImage shown = m_sample;
    if (chosen) {
        chosen->blots = m_blots;
        // As small as it has to be for all of it to fit.
        const QSizeF whole = chosen->sizeFor(m_size);
        const QSizeF room = QSizeF(s_previewSize) * devicePixelRatioF();
        const qreal by =
            std::min({room.width() / whole.width(), room.height() / whole.height(), 1.});
        const QSize size = (QSizeF(m_size) * by).toSize().expandedTo({1, 1});
        shown = chosen->under(
            m_sample.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation), by);
    }
    shown.setDevicePixelRatio(devicePixelRatioF());
    m_preview->setPixmap(QPixmap::fromImage(std::move(shown)));
    check();
}
