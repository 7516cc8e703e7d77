#include "capture/windowbrowser.h"

#include "platform/desktoppictures.h"
#include "platform/services.h"
#include "platform/windowlist.h"
#include "ui_windowbrowser.h"

#include <QBitmap>
#include <QEvent>
#include <QGuiApplication>
#include <QPainter>
#include <QScreen>

#include <algorithm>

namespace {

constexpr double s_noWindow = -1314.0;
constexpr int s_itemType = 1000;
constexpr int s_firstIconSize = 150;
constexpr int s_firstSliderValue = 149;
constexpr int s_captionHeight = 25;  // how much larger than a thumbnail a grid cell is

// A square of `side` device pixels. A picture that is smaller is not enlarged.
QPixmap thumbnail(const QPixmap &picture, int side)
{
    const bool fits = picture.width() < side && picture.height() < side;
    const QImage image =
        (fits ? picture : picture.scaled(side, side, Qt::KeepAspectRatio, Qt::SmoothTransformation))
            .toImage();
    QPixmap canvas(side, side);
    canvas.fill(Qt::white);
    QPainter(&canvas).drawImage((side - image.width()) / 2, (side - image.height()) / 2, image);
    return canvas;
}

// Uses the same picture for selected items, because the style would tint it in the selection's
// colour.
QIcon iconOf(const QPixmap &picture)
{
    QIcon icon(picture);
    icon.addPixmap(picture, QIcon::Selected);
    return icon;
}

void showIcon(QLabel &label, const QString &file)
{
    QPixmap icon(file);
    if (!icon.isNull())
        icon.setMask(icon.createHeuristicMask(true));
    label.setPixmap(icon);
}

}  // namespace

WindowsPreView::WindowsPreView(QWidget *parent)
    : QDialog(parent), m_ui(std::make_unique<Ui::WindowsPreView>()), m_selectedWindow(s_noWindow)
{
    m_ui->setupUi(this);
    m_ui->listWidget->setViewMode(QListView::IconMode);
    setGeometry(QGuiApplication::primaryScreen()->geometry());
    // Without the full-screen state a window manager would add its frame and move the buttons off
    // the screen.
    setWindowState(Qt::WindowFullScreen);
    m_ui->label_clear->installEventFilter(this);
    m_ui->lineEdit->installEventFilter(this);
    m_ui->listWidget->setIconSize({s_firstIconSize, s_firstIconSize});
    m_ui->listWidget->setMovement(QListView::Static);
    m_ui->listWidget->setResizeMode(QListView::Adjust);
    selectWindowType(1);
    seachWindow({}, true);
    show_grabWindow();
    m_ui->horizontalSlider->setValue(s_firstSliderValue);
    setIconSize(m_ui->horizontalSlider->value());

    connect(m_ui->listWidget, &QListWidget::itemDoubleClicked, this,
            &WindowsPreView::on_OK_BUTTON_released);
    connect(m_ui->horizontalSlider, &QSlider::valueChanged, this, &WindowsPreView::setIconSize);
    connect(this, &WindowsPreView::label_clearHaveFouce, this, &WindowsPreView::clearLineEdit);
    connect(this, &WindowsPreView::lineEditHaveFouce, this, &WindowsPreView::ChangePixmap);
}

WindowsPreView::~WindowsPreView() = default;

bool WindowsPreView::isKnown(int windowId) const
{
    return std::any_of(m_grabMap.cbegin(), m_grabMap.cend(),
                       [&](const msg_grab &record) { return record.windowId == windowId; });
}

void WindowsPreView::selectWindowType(int onScreen)
{
    m_ui->listWidget->clear();
    const auto windows = services().windows->windows(
        onScreen ? WindowCatalogue::List::OnScreen : WindowCatalogue::List::All, 0);
    const int except = services().ownWindows->numberOf(g_widgetExcept);
    for (qsizetype i = 0; i < windows.size() && m_grabMap.size() < windows.size(); ++i) {
        const WindowCatalogue::Entry &window = windows[i];
        if ((g_widgetExcept && window.number == except) || isKnown(window.number))
            continue;
        const QImage picture = services().pictures->ofWindows(std::nullopt, {window.number});
        if (picture.isNull() || window.bounds.width() < 1 || window.bounds.height() < 1)
            continue;
        const int next = static_cast<int>(m_grabMap.size());
        m_grabMap.insert(next, {.pixmap = QPixmap::fromImage(picture),
                                .windowId = window.number,
                                // A reader would expect the key 0, but the first record has its
                                // position in the list, on purpose.
                                .key = next == 0 ? static_cast<int>(i) : next,
                                .name = window.shownOwner(),
                                .onScreen = onScreen == 1,
                                .note = visiblePartNote(window.number)});
    }
}

void WindowsPreView::seachWindow(const QString &text, bool visibleOnly)
{
    for (msg_grab &record : m_grabMap)
        record.shown =
            (!visibleOnly || record.onScreen) && record.name.toLower().contains(text.toLower());
}

void WindowsPreView::show_grabWindow()
{
    QListWidget &list = *m_ui->listWidget;
    list.clear();
    for (const msg_grab &record : std::as_const(m_grabMap)) {
        if (!record.shown)
            continue;
        auto *item = new QListWidgetItem(iconOf(record.pixmap), record.name, &list, s_itemType);
        item->setData(Qt::UserRole, record.key);
    }
    // A reader would expect the row among the shown records, but the row among all records is used,
    // on purpose.
    if (m_selectedWindow != s_noWindow)
        list.setCurrentItem(list.item(getRow(static_cast<int>(m_selectedWindow))));
    if (!list.currentItem() && list.count() > 0)
        list.setCurrentItem(list.item(0));
}

int WindowsPreView::getRow(int windowId) const
{
    int row = 0;
    for (auto it = m_grabMap.cbegin(); it != m_grabMap.cend(); ++it) {
        if (it->windowId == windowId)
            row = it.key();
    }
    return row;
}

void WindowsPreView::setIconSize(int size)
{
    QListWidget &list = *m_ui->listWidget;
    list.setIconSize({size, size});
    list.setGridSize({size + s_captionHeight, size + s_captionHeight});
    const int side = qRound(size * devicePixelRatioF());
    // A reader would expect hidden records to be skipped, but the loop ends at the first one, on
    // purpose; later records keep their icons.
    for (auto it = m_grabMap.cbegin(); it != m_grabMap.cend() && it->shown; ++it) {
        QPixmap canvas = thumbnail(it->pixmap, side);
        canvas.setDevicePixelRatio(devicePixelRatioF());
        QListWidgetItem *item = list.item(it.key());
        item->setIcon(iconOf(canvas));
        item->setText(it->name);
    }
}

void WindowsPreView::on_lineEdit_textEdited(const QString &text)
{
    seachWindow(text, m_ui->Visbel->isChecked());
    // A reader would expect thumbnails of the slider's size, but they keep their size until the
    // slider moves, on purpose.
    show_grabWindow();
    ChangePixmap();
}

void WindowsPreView::refill(int onScreen)
{
    selectWindowType(onScreen);
    seachWindow(m_ui->lineEdit->text(), m_ui->Visbel->isChecked());
    show_grabWindow();
}

void WindowsPreView::on_All_clicked()
{
    refill(0);
    setIconSize(m_ui->horizontalSlider->value());
}

void WindowsPreView::on_Visbel_clicked()
{
    refill(1);
    setIconSize(m_ui->horizontalSlider->value());
}

void WindowsPreView::clearLineEdit()
{
    m_ui->lineEdit->clear();
    refill(m_ui->Visbel->isChecked() ? 1 : 0);
    ChangePixmap();
}

void WindowsPreView::ChangePixmap()
{
    const bool filled = !m_ui->lineEdit->text().isEmpty();
    m_ui->label_find->hide();
    m_ui->label_clear->setVisible(filled);
    if (m_ui->lineEdit->hasFocus()) {
        showIcon(*m_ui->label_find, findFocusFile);
        showIcon(*m_ui->label_clear, filled ? clearFilledFocusFile : clearFocusFile);
    } else {
        showIcon(*m_ui->label_find, findNormalFile);
        showIcon(*m_ui->label_clear, filled ? clearFilledFile : clearNormalFile);
    }
}

bool WindowsPreView::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_ui->label_clear && event->type() == QEvent::MouseButtonPress) {
        emit label_clearHaveFouce();
    } else if (watched == m_ui->lineEdit) {
        if (event->type() == QEvent::MouseButtonPress) {
            emit lineEditHaveFouce();
        } else if (event->type() == QEvent::Show) {
            m_ui->listWidget->setFocus(Qt::OtherFocusReason);
            ChangePixmap();
        } else if (event->type() == QEvent::FocusOut) {
            ChangePixmap();
        }
    }
    return QDialog::eventFilter(watched, event);
}

void WindowsPreView::on_listWidget_itemClicked(QListWidgetItem *item)
{
    m_selectedWindow = m_grabMap.value(item->data(Qt::UserRole).toInt()).windowId;
}

void WindowsPreView::choose(const QListWidgetItem &item)
{
    const auto record = m_grabMap.constFind(item.data(Qt::UserRole).toInt());
    if (record == m_grabMap.cend())
        return;
    m_pixmaps.append(record->pixmap);
    m_names.append(record->name);
    m_notes.append(record->note);
}

void WindowsPreView::on_OK_BUTTON_released()
{
    const QListWidget &list = *m_ui->listWidget;
    m_pixmaps.clear();
    m_names.clear();
    m_notes.clear();
    for (int row = 0; row < list.count(); ++row) {
        if (list.item(row)->isSelected())
            choose(*list.item(row));
    }
    if (m_pixmaps.isEmpty() && list.currentItem())
        choose(*list.currentItem());
    accept();
}

void WindowsPreView::on_CANNEL_BUTTON_released() { reject(); }
