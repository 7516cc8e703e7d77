#include "shell/sizedialog.h"

#include "base/memory.h"
#include "editing/history.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QPushButton>

namespace {

constexpr int s_gap = 16;          // logical pixels
constexpr int s_noteWidth = 36;    // letters
constexpr int s_bytesOfPixel = 4;  // as pictures are kept

QString refusal(QSize size)
{
    if (!isPictureSize(size)) {
        return SizeDialog::tr(
            "A picture has 32,767 pixels a side at most, and 400 million in all.");
    }
    // The picture before it stays, since the change can be undone.
    if (qint64{size.width()} * size.height() * s_bytesOfPixel > availableMemory() / 2)
        return SizeDialog::tr("There is too little memory for that.");
    return {};
}

}  // namespace

SizeDialog::SizeDialog(const QString &title, QWidget *parent)
    : QDialog(parent), m_form(new QFormLayout), m_note(new QLabel)
{
    setWindowTitle(title);
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    m_ok = buttons->button(QDialogButtonBox::Ok);
    // The toolkit's own texts may not be installed, and its pictures are another style's.
    m_ok->setText(tr("OK"));
    buttons->button(QDialogButtonBox::Cancel)->setText(tr("Cancel"));
    for (QAbstractButton *button : buttons->buttons())
        button->setIcon({});
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    m_note->setObjectName(QStringLiteral("lblNote"));
    m_note->setTextFormat(Qt::PlainText);
    m_note->setWordWrap(true);
    // Room for a reason, which is longer than a size.
    m_note->setMinimumSize(s_noteWidth * m_note->fontMetrics().averageCharWidth(),
                           3 * m_note->fontMetrics().lineSpacing());
    m_note->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(s_gap, s_gap, s_gap, s_gap);
    layout->setSpacing(s_gap);
    layout->addLayout(m_form);
    layout->addWidget(m_note);
    layout->addStretch();
    layout->addWidget(buttons);
}

void SizeDialog::check()
{
    const QSize size = wanted();
    const QString reason = refusal(size);
    m_ok->setEnabled(reason.isEmpty());
    m_note->setText(reason.isEmpty()
                        ? tr("Result: %1 × %2 pixels").arg(size.width()).arg(size.height())
                        : reason);
}
