#include "shell/picturetabs.h"

#include "base/palette.h"
#include "editing/documentlist.h"
#include "editing/viewmapping.h"
#include "shell/focusring.h"
#include "ui_mainwindow.h"

#include <QBoxLayout>
#include <QLabel>
#include <QScrollBar>
#include <QTabBar>

#include <cmath>

using namespace Qt::StringLiterals;

namespace {

// Which document a page of the tabs belongs to.
constexpr const char *s_pageNumber = "document";

// A single "&" would be taken for a mnemonic.
QString tabText(const QPictureDocument &document)
{
    QString text = document.GetShowName();
    if (document.m_Modified)
        text += u" *"_s;
    return text.replace(u'&', u"&&"_s);
}

}  // namespace

PictureTabs::PictureTabs(Ui::MainWindow &ui, QObject *parent) : QObject(parent), m_ui(ui)
{
    QPalette palette = m_ui.WidScrollArea->palette();
    palette.setColor(QPalette::Window, Palette::table);
    for (QWidget *widget : {m_ui.WidScrollArea, static_cast<QWidget *>(m_ui.scrollArea),
                            m_ui.scrollAreaWidgetContents, m_ui.lblPicture})
        widget->setPalette(palette);
    m_ui.WidScrollArea->hide();
    new FocusRing(m_ui.scrollArea);
}

void PictureTabs::refill(const DocumentList &documents)
{
    QTabWidget &tabs = *m_ui.tabWidget;
    // What is dragged or typed in the picture goes on hearing the keys.
    QWidget *const window = tabs.window();
    QWidget *focus = window->focusWidget();
    tabs.blockSignals(true);
    tabs.setUpdatesEnabled(false);
    removeClosedPages(documents);
    for (int i = 0; documents.has(i); ++i) {
        const QString text = tabText(documents[i]);
        if (i == tabs.count()) {
            auto *page = new QWidget(window);
            page->setProperty(s_pageNumber, documents[i].m_Number);
            page->setGeometry(tabs.childrenRect());
            tabs.addTab(page, text);
        } else if (tabs.tabText(i) != text) {
            tabs.setTabText(i, text);
        }
    }
    if (documents.currentDocument()) {
        tabs.setCurrentIndex(documents.current());
        show(documents.current());
        if (focus && focus != window->focusWidget() &&
            (m_ui.WidScrollArea->isAncestorOf(focus) || focus == tabs.tabBar()))
            focus->setFocus(Qt::OtherFocusReason);
    }
    tabs.setUpdatesEnabled(true);
    tabs.blockSignals(false);
}

// The pages are in the order of their documents.
void PictureTabs::removeClosedPages(const DocumentList &documents)
{
    int document = 0;
    for (int i = 0; i < m_ui.tabWidget->count();) {
        QWidget *page = m_ui.tabWidget->widget(i);
        if (documents.has(document) &&
            page->property(s_pageNumber).toInt() == documents[document].m_Number) {
            ++document;
            ++i;
            continue;
        }
        // The picture area must not go with its page.
        if (page->isAncestorOf(m_ui.WidScrollArea))
            m_ui.WidScrollArea->setParent(m_ui.widPicture);
        delete page;
    }
}

void PictureTabs::show(int index)
{
    QWidget *page = m_ui.tabWidget->widget(index);
    if (!page) {
        m_ui.WidScrollArea->hide();
        return;
    }
    m_ui.WidScrollArea->setParent(page);
    m_ui.WidScrollArea->setGeometry(0, 0, m_ui.tabWidget->width(),
                                    m_ui.tabWidget->height() -
                                        m_ui.tabWidget->tabBar()->sizeHint().height());
    // A widget that changes its parent is hidden.
    m_ui.WidScrollArea->show();
}

QString PictureTabs::choose(int index)
{
    if (index < 0 || index >= m_ui.tabWidget->count())
        return {};
    m_ui.tabWidget->setCurrentIndex(index);
    return m_ui.tabWidget->tabText(index).replace(u"&&"_s, u"&"_s);
}

void PictureTabs::fit(QSize picture, float zoom)
{
    if (picture.isEmpty())
        return;
    // The zoom counts device pixels, the layout logical ones.
    const QSizeF zoomed =
        QSizeF(drawingSize(QSize(), picture, zoom)) / m_ui.tabWidget->devicePixelRatioF();
    const QSize needed(static_cast<int>(std::ceil(zoomed.width())),
                       static_cast<int>(std::ceil(zoomed.height())));
    const QSize size = viewFor(needed).expandedTo(needed);
    m_ui.lblPicture->setFixedSize(size);
    m_ui.scrollAreaWidgetContents->setFixedSize(size);
}

// What the scroll bars leave of the area for a content of that size, in logical pixels. A bar takes
// room, and may make the other one necessary.
QSize PictureTabs::viewFor(QSize content) const
{
    const QSize whole = m_ui.scrollArea->maximumViewportSize();
    const QSize bars(m_ui.scrollArea->verticalScrollBar()->sizeHint().width(),
                     m_ui.scrollArea->horizontalScrollBar()->sizeHint().height());
    QSize view = whole;
    for (int i = 0; i < 2; ++i) {
        view = {content.height() > view.height() ? whole.width() - bars.width() : whole.width(),
                content.width() > view.width() ? whole.height() - bars.height() : whole.height()};
    }
    return view;
}

QSize PictureTabs::room() const
{
    const QSizeF room =
        QSizeF(m_ui.scrollArea->maximumViewportSize()) * m_ui.tabWidget->devicePixelRatioF();
    return {static_cast<int>(room.width()), static_cast<int>(room.height())};
}

QPoint PictureTabs::scrolled() const
{
    return {m_ui.scrollArea->horizontalScrollBar()->value(),
            m_ui.scrollArea->verticalScrollBar()->value()};
}

void PictureTabs::scrollTo(QPoint position)
{
    m_ui.scrollArea->horizontalScrollBar()->setValue(position.x());
    m_ui.scrollArea->verticalScrollBar()->setValue(position.y());
}

void PictureTabs::showMissing(const QString &reason)
{
    if (!m_missing && reason.isEmpty())
        return;
    if (!m_missing) {
        m_missing = new QLabel(m_ui.scrollArea->viewport());
        m_missing->setObjectName(u"LblNoPicture"_s);
        m_missing->setAlignment(Qt::AlignCenter);
        m_missing->setTextFormat(Qt::PlainText);
        m_missing->setWordWrap(true);
        m_missing->setAttribute(Qt::WA_TransparentForMouseEvents);
        auto *layout = new QVBoxLayout(m_ui.scrollArea->viewport());
        layout->addWidget(m_missing);
    }
    m_missing->setVisible(!reason.isEmpty());
    m_missing->setText(reason);
}
