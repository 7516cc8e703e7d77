#include "shell/mainwindow.h"

#include "platform/services.h"
#include "shell/openfiles.h"
#include "shell/progressplate.h"
#include "ui_mainwindow.h"

#include <QBoxLayout>
#include <QLabel>
#include <QScrollBar>
#include <QTabBar>

#include <algorithm>
#include <cmath>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr double s_zoomStep = 1.4;
constexpr double s_zoomGrowth = 0.4;
constexpr double s_smallestWidth = 50;  // of a picture as shown
constexpr double s_largestWidth = 3000;
constexpr double s_widthSlack = 0.001;

// Which document a page of the tabs belongs to.
constexpr const char *s_pageNumber = "document";

}  // namespace

bool MainWindow::isDocument(int index) const
{
    return index >= 0 && index < static_cast<int>(m_Documents.size());
}

void MainWindow::NewDocument(const QPixmap &pixmap, const QString &name,
                             const PictureOrigin &origin)
{
    const auto [entry, isNew] = g_mapNameIndex.try_emplace(name, 0);
    if (!isNew)
        ++entry->second;
    QPictureDocument &document = m_Documents.emplace_back(pixmap);
    document.m_FileName = name;
    document.m_NameIndex = entry->second;
    document.m_Modified = true;
    document.m_Origin = origin;
    const int number = document.m_Number;
    RefillTabList();
    SetCurDocumentIndex(static_cast<int>(m_Documents.size()) - 1);
    touchRecovery(number);
}

void MainWindow::RefillTabList()
{
    QTabWidget &tabs = *ui->tabWidget;
    // What is dragged or typed in the picture goes on hearing the keys.
    QWidget *focus = focusWidget();
    tabs.blockSignals(true);
    tabs.setUpdatesEnabled(false);
    removeClosedPages();
    for (int i = 0; isDocument(i); ++i) {
        QString text = GetFileShowName(i);
        if (m_Documents[i].m_Modified)
            text += QStringLiteral(" *");
        // A single "&" in a tab's text would be taken for a mnemonic.
        text.replace(u'&', QStringLiteral("&&"));
        if (i == tabs.count()) {
            auto *page = new QWidget(this);
            page->setProperty(s_pageNumber, m_Documents[i].m_Number);
            page->setGeometry(tabs.childrenRect());
            tabs.addTab(page, text);
        } else if (tabs.tabText(i) != text) {
            tabs.setTabText(i, text);
        }
    }
    if (m_CurDocument >= 0 && m_CurDocument < tabs.count()) {
        tabs.setCurrentIndex(m_CurDocument);
        ShowPictureInTab(m_CurDocument);
        if (focus && focus != focusWidget() &&
            (ui->WidScrollArea->isAncestorOf(focus) || focus == tabs.tabBar()))
            focus->setFocus(Qt::OtherFocusReason);
    }
    RefreshWindowTitle(m_CurDocument);
    tabs.setUpdatesEnabled(true);
    tabs.blockSignals(false);
}

// The pages are in the order of their documents.
void MainWindow::removeClosedPages()
{
    int document = 0;
    for (int i = 0; i < ui->tabWidget->count();) {
        QWidget *page = ui->tabWidget->widget(i);
        if (isDocument(document) &&
            page->property(s_pageNumber).toInt() == m_Documents[document].m_Number) {
            ++document;
            ++i;
            continue;
        }
        // The picture area must not go with its page.
        if (page->isAncestorOf(ui->WidScrollArea))
            ui->WidScrollArea->setParent(ui->widPicture);
        delete page;
    }
}

void MainWindow::ShowPictureInTab(int index)
{
    if (index < 0 || index >= ui->tabWidget->count()) {
        ui->WidScrollArea->hide();
        return;
    }
    QWidget *page = ui->tabWidget->widget(index);
    if (!page)
        return;
    ui->WidScrollArea->setParent(page);
    ui->WidScrollArea->setGeometry(0, 0, ui->tabWidget->width(),
                                   ui->tabWidget->height() -
                                       ui->tabWidget->tabBar()->sizeHint().height());
    // A widget that changes its parent is hidden.
    ui->WidScrollArea->show();
}

void MainWindow::SetCurDocumentIndex(int index)
{
    if (index == m_CurDocument)
        return;
    m_pEditor->EndEdit();
    QScrollBar *horizontal = ui->scrollArea->horizontalScrollBar();
    QScrollBar *vertical = ui->scrollArea->verticalScrollBar();
    if (isDocument(m_CurDocument))
        parkState(m_Documents[m_CurDocument]);
    m_CurDocument = index;
    m_pProgress->setDocument(isDocument(index) ? m_Documents[index].m_Number : 0);
    RedrawPicture();
    ShowPictureInTab(index);
    RefreshWindowTitle(index);
    if (isDocument(index)) {
        // After the picture, which resets the zoom, and before the scroll bars, which get their
        // range from it.
        const QPictureDocument entered = m_Documents[index];
        m_Scale = entered.m_Scale;
        m_pEditor->setPixmapScaled(m_Scale);
        horizontal->setValue(entered.m_ScrollX);
        vertical->setValue(entered.m_ScrollY);
        m_pEditor->setVecUnDo(&entered.m_VecUnDo);
        m_pEditor->setVecReDo(&entered.m_VecReDo);
    }
    ui->tabWidget->setFocus(Qt::OtherFocusReason);
}

int MainWindow::GetDocumentIndex(const QString &name) const
{
    return OpenFiles(m_Documents).indexOf(name);
}

int MainWindow::indexOf(int number) const
{
    const auto found = std::find_if(
        m_Documents.begin(), m_Documents.end(),
        [number](const QPictureDocument &document) { return document.m_Number == number; });
    return found == m_Documents.end() ? -1 : static_cast<int>(found - m_Documents.begin());
}

QString MainWindow::GetFileShowName(int index) const
{
    return isDocument(index) ? m_Documents[index].GetShowName() : QString();
}

void MainWindow::RefreshWindowTitle(int index)
{
    QString title = tr("Snap Workbench");
    if (index >= 0 && index < ui->tabWidget->count()) {
        QString tab = ui->tabWidget->tabText(index);
        title =
            tab.replace(QStringLiteral("&&"), QStringLiteral("&")) + QStringLiteral(" - ") + title;
        ui->tabWidget->setCurrentIndex(index);
    }
    // The toolkit takes a lone "[*]" for its own mark of a modified window.
    setWindowTitle(title.replace(QStringLiteral("[*]"), QStringLiteral("[*][*]")));
    ui->LblCaption->setText(title.replace(QStringLiteral("[*][*]"), QStringLiteral("[*]")));
    // Shortcuts of disabled menu items are dead, and nobody opens the menu before pressing one.
    BeforeShowFile();
}

bool MainWindow::HasModified(bool all) const
{
    // What is being typed will be part of the picture.
    const bool isTyping = isDocument(m_CurDocument) && m_pEditor->isTyping();
    if (!all)
        return isTyping || (isDocument(m_CurDocument) && m_Documents[m_CurDocument].m_Modified);
    return isTyping ||
           std::any_of(m_Documents.begin(), m_Documents.end(),
                       [](const QPictureDocument &document) { return document.m_Modified; });
}

void MainWindow::RedrawPicture()
{
    if (!isDocument(m_CurDocument))
        return;
    QPictureDocument &document = m_Documents[m_CurDocument];
    unpack(document);
    m_pEditor->setPixmap(document.m_Pixmap);
    showMissingPicture();
}

void MainWindow::showMissingPicture()
{
    const QPictureDocument &document = m_Documents[m_CurDocument];
    const bool isMissing = !document.hasPicture() && !document.m_Failure.isEmpty();
    if (isMissing && !m_pMissing) {
        m_pMissing = new QLabel(ui->scrollArea->viewport());
        m_pMissing->setObjectName(u"LblNoPicture"_s);
        m_pMissing->setAlignment(Qt::AlignCenter);
        m_pMissing->setTextFormat(Qt::PlainText);
        m_pMissing->setWordWrap(true);
        m_pMissing->setAttribute(Qt::WA_TransparentForMouseEvents);
        auto *layout = new QVBoxLayout(ui->scrollArea->viewport());
        layout->addWidget(m_pMissing);
    }
    if (!m_pMissing)
        return;
    m_pMissing->setVisible(isMissing);
    m_pMissing->setText(
        tr("\"%1\" can't be shown: %2").arg(document.GetShowName(), document.m_Failure));
}

void MainWindow::parkHistory(QPictureDocument &document) const
{
    document.m_VecUnDo = m_pEditor->getVecUnDo();
    document.m_VecReDo = m_pEditor->getVecReDo();
}

void MainWindow::parkState(QPictureDocument &document) const
{
    document.m_ScrollX = ui->scrollArea->horizontalScrollBar()->value();
    document.m_ScrollY = ui->scrollArea->verticalScrollBar()->value();
    document.m_Scale = m_Scale;
    document.m_LastLook = services().clock->now();
    parkHistory(document);
}

void MainWindow::fitPictureArea()
{
    const QPixmap &pixmap = m_pEditor->getPixmap();
    if (pixmap.isNull())
        return;
    // The zoom counts device pixels, the layout logical ones.
    const qreal scale = devicePixelRatioF();
    const QSize viewport = ui->scrollArea->size();
    const QSizeF zoomed = QSizeF(drawingSize(QSize(), pixmap.size(), m_Scale)) / scale;
    const QSize size = viewport.expandedTo(QSize(static_cast<int>(std::ceil(zoomed.width())),
                                                 static_cast<int>(std::ceil(zoomed.height()))));
    ui->lblPicture->setFixedSize(size);
    ui->scrollAreaWidgetContents->setFixedSize(size);
}

long PictureChanged(long code, long /*unused*/)
{
    MainWindow *window = g_MainWindow;
    if (!window)
        return 0;
    switch (code) {
    case TPictureEditor::HistoryChange:
        window->touchRecovery();
        // Only the first change of a saved document costs a new tab bar.
        if (window->isDocument(window->m_CurDocument) &&
            !window->m_Documents[window->m_CurDocument].m_Modified) {
            window->m_Documents[window->m_CurDocument].m_Modified = true;
            window->RefillTabList();
        }
        break;
    case TPictureEditor::SizeChange:
        if (window->m_pEditor)
            window->fitPictureArea();
        break;
    case TPictureEditor::ToolChange:
        window->UpdateDrawButton(nullptr);
        break;
    case TPictureEditor::Refusal:
        if (!std::exchange(window->m_ToldOfEdge, true)) {
            window->say(MainWindow::tr(
                "Nothing can be drawn outside the picture. A thin line shows where it ends."));
        }
        break;
    default:
        break;
    }
    return 0;
}

void MainWindow::MovePicture(int dx, int dy)
{
    QScrollBar *horizontal = ui->scrollArea->horizontalScrollBar();
    QScrollBar *vertical = ui->scrollArea->verticalScrollBar();
    const int x = horizontal->value() - dx;
    const int y = vertical->value() - dy;
    horizontal->setValue(std::clamp(x, 0, horizontal->maximum()));
    vertical->setValue(std::clamp(y, 0, vertical->maximum()));
}

void MainWindow::on_tabWidget_currentChanged(int index)
{
    if (index >= 0 && index < ui->tabWidget->count())
        SetCurDocumentIndex(index);
}

void MainWindow::on_tabWidget_tabCloseRequested(int index)
{
    if (isDocument(index))
        CloseFile(index);
}

void MainWindow::zoomTo(float scale)
{
    m_Scale = scale;
    m_pEditor->setPixmapScaled(m_Scale);
}

// Only the width counts for both limits, so zooming out may enlarge a tiny picture.
void MainWindow::on_BtnZoomOut_clicked()
{
    const int width = m_pEditor->getPixmap().width();
    if (m_CurDocument < 0 || width == 0)
        return;
    auto scale = static_cast<float>(m_Scale / s_zoomStep);
    if (width * static_cast<double>(scale) - s_smallestWidth < s_widthSlack)
        scale = static_cast<float>(s_smallestWidth / width);
    zoomTo(scale);
}

void MainWindow::on_BtnZoomIn_clicked()
{
    const int width = m_pEditor->getPixmap().width();
    if (m_CurDocument < 0 || width == 0)
        return;
    auto scale = static_cast<float>(m_Scale + s_zoomGrowth * m_Scale);
    if (width * static_cast<double>(scale) - s_largestWidth > s_widthSlack)
        scale = static_cast<float>(s_largestWidth / width);
    zoomTo(scale);
}

void MainWindow::on_BtnRealSize_clicked() { zoomTo(1.0F); }

void MainWindow::on_BtnUndo_clicked() { m_pEditor->Undo(); }

void MainWindow::on_BtnRedo_clicked() { m_pEditor->Redo(); }
