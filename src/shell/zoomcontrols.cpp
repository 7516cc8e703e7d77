#include "shell/zoomcontrols.h"

#include "shell/workbench.h"
#include "ui_mainwindow.h"

ZoomControls::ZoomControls(Ui::MainWindow &ui, Workbench &work)
    : QObject(ui.widPictureEdit), m_ui(ui), m_work(work)
{
    ZoomBox &box = *ui.CmbZoom;
    connect(&box, &ZoomBox::zoomWanted, &work, &Workbench::zoomNear);
    connect(&box, &ZoomBox::fitWanted, &work, &Workbench::zoomToFit);
    connect(&box, &ZoomBox::stepWanted, &work, [&work](int notches) { work.zoomBy(notches); });
    connect(&box, &ZoomBox::left, this,
            [this] { m_ui.lblPicture->setFocus(Qt::OtherFocusReason); });
    connect(&work, &Workbench::viewChanged, this, &ZoomControls::refresh);
    refresh();
}

void ZoomControls::refresh()
{
    const QSize size = m_work.editor().pictureSize();
    m_ui.CmbZoom->showZoom(size.isEmpty() ? 0 : m_work.editor().getPixmapScaled());
    m_ui.lblPictureSize->setText(
        size.isEmpty() ? QString() : tr("%1 × %2 px").arg(size.width()).arg(size.height()));
}
