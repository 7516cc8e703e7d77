#include "shell/aboutbox.h"

#include "base/palette.h"
#include "config/applicationrecord.h"
#include "config/licensing.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

using namespace Qt::StringLiterals;

namespace {

constexpr int s_iconSize = 64;
constexpr int s_margin = 22;
constexpr int s_rowGap = 7;
constexpr int s_nameScale = 16;  // of 10, against the usual font

QString recorded(const wchar_t *text) { return QString::fromWCharArray(text); }

// The record comes from a file, and must not bring mark-up of its own.
QString link(const QString &target, const QString &text)
{
    return u"<a href=\"%1\" style=\"color: %3\">%2</a>"_s.arg(
        target.toHtmlEscaped(), text.toHtmlEscaped(), Palette::accentDown.name());
}

QLabel *plainLabel(const QString &text)
{
    auto *label = new QLabel(text);
    label->setTextFormat(Qt::PlainText);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return label;
}

QLabel *linkLabel(const QString &target, const QString &text)
{
    auto *label = new QLabel(link(target, text));
    label->setTextFormat(Qt::RichText);
    label->setTextInteractionFlags(Qt::TextBrowserInteraction);
    label->setOpenExternalLinks(true);
    return label;
}

QLabel *headingLabel(const QString &name)
{
    auto *heading = plainLabel(name);
    heading->setObjectName(u"lblName"_s);
    QFont font = heading->font();
    font.setPointSizeF(font.pointSizeF() * s_nameScale / 10);
    font.setBold(true);
    heading->setFont(font);
    return heading;
}

QString registrationText()
{
    const Licensing::Status status = Licensing::status();
    if (!status.registered)
        return AboutBox::tr("Not registered");
    return status.name.isEmpty() ? AboutBox::tr("Registered")
                                 : AboutBox::tr("Registered to %1").arg(status.name);
}

QFormLayout *factsLayout()
{
    auto *facts = new QFormLayout;
    facts->setHorizontalSpacing(s_margin);
    facts->setVerticalSpacing(s_rowGap);
    facts->setLabelAlignment(Qt::AlignLeft);
    facts->addRow(AboutBox::tr("Company"), plainLabel(recorded(g_AppCompany)));
    facts->addRow(AboutBox::tr("Home page"), linkLabel(recorded(g_URL), recorded(g_URL)));
    facts->addRow(AboutBox::tr("Support"),
                  linkLabel(u"mailto:"_s + recorded(g_Email), recorded(g_Email)));
    facts->addRow(AboutBox::tr("Registration"), plainLabel(registrationText()));
    return facts;
}

}  // namespace

AboutBox::AboutBox(const QIcon &icon, QWidget *parent) : QDialog(parent)
{
    const QString name = recorded(g_Logo).isEmpty() ? recorded(g_AppName) : recorded(g_Logo);
    setWindowTitle(tr("About %1").arg(name));

    auto *texts = new QVBoxLayout;
    texts->setSpacing(s_rowGap);
    texts->addWidget(headingLabel(name));
    texts->addWidget(plainLabel(tr("Version %1").arg(recorded(g_Ver))));
    texts->addSpacing(s_margin / 2);
    texts->addLayout(factsLayout());
    texts->addStretch();

    auto *top = new QHBoxLayout;
    top->setSpacing(s_margin);
    if (!icon.isNull()) {
        auto *picture = new QLabel;
        picture->setPixmap(icon.pixmap(QSize(s_iconSize, s_iconSize), devicePixelRatioF()));
        top->addWidget(picture, 0, Qt::AlignTop);
    }
    top->addLayout(texts, 1);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(s_margin, s_margin, s_margin, s_margin * 3 / 4);
    layout->setSpacing(s_margin);
    layout->addLayout(top);
    layout->addWidget(closeButton());
    layout->setSizeConstraint(QLayout::SetFixedSize);
}

QWidget *AboutBox::closeButton()
{
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    // Enter closes the box, wherever the tab key has led to.
    QPushButton *close = buttons->button(QDialogButtonBox::Close);
    close->setDefault(true);
    close->setFocus();
    // The toolkit's own texts may not be installed, and its picture is another style's.
    close->setText(tr("Close"));
    close->setIcon({});
    return buttons;
}
