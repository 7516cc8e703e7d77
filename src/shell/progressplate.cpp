#include "shell/progressplate.h"

#include "base/clock.h"
#include "base/palette.h"
#include "shell/plate.h"

#include <QBoxLayout>
#include <QEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QProgressBar>
#include <QShortcut>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int s_patience = 300;  // ms; what is done by then is not worth a word
constexpr int s_interval = 100;  // ms
constexpr int s_whole = 1000;    // the jobs count in thousandths
constexpr int s_padding = 12;
constexpr int s_gap = 8;
constexpr int s_width = 380;
constexpr int s_fromSides = 16;
constexpr int s_belowTabs = 44;
constexpr int s_barHeight = 6;

// A name may be longer than the plate.
class ElidedLabel : public QLabel
{
public:
    QSize minimumSizeHint() const override { return {0, QLabel::minimumSizeHint().height()}; }

protected:
    void paintEvent(QPaintEvent * /*event*/) override
    {
        QPainter painter(this);
        painter.setPen(Palette::textOnDark);
        painter.drawText(rect(), Qt::AlignVCenter | Qt::AlignLeading | Qt::TextSingleLine,
                         fontMetrics().elidedText(text(), Qt::ElideMiddle, width()));
    }
};

}  // namespace

ProgressPlate::ProgressPlate(QWidget *area, PictureJobs &jobs, Clock &clock)
    : QWidget(area->parentWidget()), m_area(area), m_jobs(jobs), m_clock(clock),
      m_text(new ElidedLabel), m_bar(new QProgressBar), m_cancel(new PlateButton({})),
      m_escape(new QShortcut(Qt::Key_Escape, area->window()))
{
    hide();
    setObjectName(u"WidProgress"_s);
    setCursor(Qt::ArrowCursor);
    m_text->setTextFormat(Qt::PlainText);
    m_bar->setObjectName(u"BarProgress"_s);
    m_bar->setRange(0, s_whole);
    m_bar->setTextVisible(false);
    m_bar->setFixedHeight(s_barHeight);
    m_bar->setStyleSheet(u"QProgressBar { border: none; border-radius: 3px; background: %1; }"
                         "QProgressBar::chunk { border-radius: 3px; background: %2; }"_s.arg(
                             Palette::darkRaised.name(), Palette::accent.name()));
    m_cancel->setObjectName(u"BtnCancelProgress"_s);
    m_cancel->setAccessibleName(tr("Cancel"));
    m_cancel->setToolTip(tr("Cancel (Esc)"));
    auto *top = new QHBoxLayout;
    top->setSpacing(s_gap);
    top->addWidget(m_text, 1);
    top->addWidget(m_cancel);
    auto *rows = new QVBoxLayout(this);
    rows->setContentsMargins(s_padding, s_padding, s_padding, s_padding);
    rows->setSpacing(s_gap);
    rows->addLayout(top);
    rows->addWidget(m_bar);
    const auto giveUp = [this] {
        if (m_job)
            m_jobs.giveUp(*m_job);
    };
    connect(m_cancel, &QPushButton::clicked, this, giveUp);
    m_escape->setEnabled(false);
    connect(m_escape, &QShortcut::activated, this, giveUp);
    connect(&jobs, &PictureJobs::changed, this, &ProgressPlate::look);
    area->installEventFilter(this);
}

void ProgressPlate::setDocument(int number)
{
    m_document = number;
    look();
}

void ProgressPlate::look()
{
    m_job = m_jobs.find(PictureJobs::Kind::Write, 0);
    if (!m_job && m_document != 0)
        m_job = m_jobs.find(PictureJobs::Kind::Read, m_document);
    if (!m_job && m_document != 0)
        m_job = m_jobs.find(PictureJobs::Kind::Fetch, m_document);
    if (!m_job && m_document != 0)
        m_job = m_jobs.find(PictureJobs::Kind::Recognize, m_document);
    if (m_job && !m_isLookDue) {
        m_isLookDue = true;
        m_clock.after(s_interval, this, [this] {
            m_isLookDue = false;
            look();
        });
    }
    const bool isShown = m_job && m_clock.now() - m_job->begin >= s_patience;
    if (isShown) {
        m_text->setText(m_job->text);
        setAccessibleName(m_job->text);
        m_bar->setAccessibleName(m_job->text);
        m_bar->setValue(m_job->progress.permille);
    }
    const bool canCancel = isShown && m_job->kind != PictureJobs::Kind::Fetch;
    m_escape->setEnabled(canCancel);
    m_cancel->setVisible(canCancel);
    if (isShown == isVisible())
        return;
    const bool hadFocus = isAncestorOf(window()->focusWidget());
    if (isShown) {
        fit();
        raise();
    }
    setVisible(isShown);
    if (hadFocus && !isShown)
        m_area->setFocus(Qt::OtherFocusReason);
}

void ProgressPlate::fit()
{
    const QRect area = m_area->geometry();
    const int width = std::min(area.width() - 2 * s_fromSides, s_width);
    setGeometry(area.x() + (area.width() - width) / 2, area.y() + s_belowTabs, width,
                layout()->totalSizeHint().height());
}

bool ProgressPlate::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_area && event->type() == QEvent::Resize && isVisible())
        fit();
    return QWidget::eventFilter(watched, event);
}

// Not for the window, which a press on its body moves.
void ProgressPlate::mousePressEvent(QMouseEvent *event) { event->accept(); }

void ProgressPlate::paintEvent(QPaintEvent * /*event*/) { paintPlate(*this); }
