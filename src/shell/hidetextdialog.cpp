#include "shell/hidetextdialog.h"

#include "editing/tools/tooltable.h"
#include "shell/secretsview.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QScrollBar>
#include <QTreeWidget>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int s_gap = 12;            // logical pixels
constexpr QSize s_usual(940, 540);   // the same
constexpr QSize s_frame(24, 64);     // the same, what the desktop puts around a window
constexpr int s_leastText = 16;      // letters of a secret that are seen in any case
constexpr int s_rows = 4;            // that are
constexpr qreal s_rowHeight = 1.75;  // letters

QString nameOf(Secret::Kind kind)
{
    switch (kind) {
    case Secret::Kind::MailAddress:
        return HideTextDialog::tr("E-mail address");
    case Secret::Kind::Telephone:
        return HideTextDialog::tr("Telephone number");
    case Secret::Kind::Card:
        return HideTextDialog::tr("Card number");
    case Secret::Kind::Key:
        return HideTextDialog::tr("Key or token");
    case Secret::Kind::Password:
        return HideTextDialog::tr("Password");
    }
    return {};
}

// What its cover hides.
QString textOf(const Secret &secret)
{
    const auto lines = static_cast<int>(secret.areas.size());
    return lines > 1 ? HideTextDialog::tr("Private key, %n line(s)", nullptr, lines) : secret.text;
}

// Names and advice of tools are among the window's texts.
QString textOfTool(const char *text) { return QCoreApplication::translate("MainWindow", text); }

}  // namespace

HideTextDialog::HideTextDialog(const QImage &picture, QList<Secret> secrets, QWidget *parent)
    : QDialog(parent), m_secrets(std::move(secrets)), m_view(new SecretsView(picture, m_secrets)),
      m_list(new QTreeWidget), m_tools(new QComboBox), m_advice(new QLabel)
{
    setWindowTitle(tr("Hide Text"));
    auto *buttons = new QDialogButtonBox;
    m_hide = buttons->addButton(tr("&Hide"), QDialogButtonBox::AcceptRole);
    m_hide->setDefault(true);
    buttons->addButton(tr("Cancel"), QDialogButtonBox::RejectRole);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    fillList();
    fillTools();
    layOut(buttons);
    connectList();
    m_list->setCurrentItem(m_list->topLevelItem(0));
    m_list->setFocus();
    const QSize room = screen()->availableSize() - s_frame;
    resize(sizeHint().expandedTo(s_usual).boundedTo(room));
}

void HideTextDialog::fillList()
{
    m_view->setAccessibleName(tr("The place in the picture"));
    m_list->setAccessibleName(tr("Found in the picture"));
    m_list->setHeaderLabels({tr("What"), tr("Text")});
    m_list->setRootIsDecorated(false);
    m_list->setUniformRowHeights(true);
    m_list->setAllColumnsShowFocus(true);
    m_list->setTextElideMode(Qt::ElideMiddle);
    m_list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    const QFontMetrics metrics = m_list->fontMetrics();
    const int height = qRound(s_rowHeight * metrics.height());
    int width = 0;
    int text = s_leastText * metrics.averageCharWidth();
    const QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    for (const Secret &secret : std::as_const(m_secrets)) {
        auto *row = new QTreeWidgetItem(m_list, {nameOf(secret.kind), textOf(secret)});
        row->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
        row->setCheckState(0, Qt::Checked);
        QFont font = m_list->font();
        font.setFamilies(fixed.families());
        row->setFont(1, font);
        // With the box before it and some room behind.
        row->setSizeHint(0, {metrics.horizontalAdvance(row->text(0)) + 3 * height / 2, height});
        width = std::max(width, row->sizeHint(0).width());
        // The text of a key is a sentence, and is not cut.
        if (secret.areas.size() > 1)
            text = std::max(text, QFontMetrics(font).horizontalAdvance(row->text(1)) + height);
    }
    width += m_list->verticalScrollBar()->sizeHint().width() + 2 * m_list->frameWidth();
    m_list->header()->setSectionsMovable(false);
    m_list->header()->setMinimumSectionSize(s_leastText * metrics.averageCharWidth() / 2);
    m_list->header()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
    m_list->header()->setSectionResizeMode(1, QHeaderView::Stretch);
    m_list->setMinimumSize(width + text, m_list->header()->sizeHint().height() + s_rows * height);
}

void HideTextDialog::fillTools()
{
    for (const Tool *tool : {&SolidShape::tool, &PixelateShape::tool, &BlurShape::tool})
        m_tools->addItem(textOfTool(tool->name), tool->state);
    m_advice->setObjectName(u"lblAdvice"_s);
    m_advice->setWordWrap(true);
    m_advice->setText(textOfTool(s_coverAdvice));
    const auto advise = [this] { m_advice->setVisible(toolOf(tool()).advice); };
    connect(m_tools, &QComboBox::currentIndexChanged, this, advise);
    advise();
}

void HideTextDialog::connectList()
{
    connect(m_list, &QTreeWidget::currentItemChanged, this, [this](QTreeWidgetItem *row) {
        if (!row)
            return;
        m_view->lookAt(m_list->indexOfTopLevelItem(row));
        // Space reaches the check box from there, also after a click beside it.
        m_list->setCurrentItem(row, 0);
    });
    connect(m_list, &QTreeWidget::itemChanged, this, [this](QTreeWidgetItem *row) {
        const int index = m_list->indexOfTopLevelItem(row);
        m_view->setHiding(index, isChosen(index));
        m_hide->setEnabled(!chosen().isEmpty());
    });
    connect(m_view, &SecretsView::pressed, this, [this](qsizetype index) {
        m_list->setCurrentItem(m_list->topLevelItem(static_cast<int>(index)));
    });
}

// The picture beside the list: both are seen at once, also on a screen that is wide and low.
void HideTextDialog::layOut(QWidget *buttons)
{
    auto *label = new QLabel(tr("&What is checked will be covered:"));
    label->setBuddy(m_list);
    label->setWordWrap(true);
    auto *toolsLabel = new QLabel(tr("H&ow:"));
    toolsLabel->setBuddy(m_tools);
    auto *tools = new QHBoxLayout;
    tools->setSpacing(s_gap);
    tools->addWidget(toolsLabel);
    tools->addWidget(m_tools, 1);
    auto *side = new QVBoxLayout;
    side->setSpacing(s_gap);
    side->addWidget(label);
    side->addWidget(m_list, 1);
    side->addLayout(tools);
    side->addWidget(m_advice);
    side->addWidget(buttons);
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(s_gap, s_gap, s_gap, s_gap);
    layout->setSpacing(s_gap);
    layout->addWidget(m_view, 5);
    layout->addLayout(side, 4);
}

bool HideTextDialog::isChosen(qsizetype index) const
{
    return m_list->topLevelItem(static_cast<int>(index))->checkState(0) == Qt::Checked;
}

QList<Secret> HideTextDialog::chosen() const
{
    QList<Secret> result;
    for (qsizetype i = 0; i < m_secrets.size(); ++i) {
        if (isChosen(i))
            result.append(m_secrets[i]);
    }
    return result;
}

stateEnum HideTextDialog::tool() const
{
    return static_cast<stateEnum>(m_tools->currentData().toInt());
}
