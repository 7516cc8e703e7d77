#include "capture/windowbrowser.h"

#include "platform/desktoppictures.h"
#include "platform/services.h"
#include "platform/windowlist.h"
#include "ui_windowbrowser.h"

#include <QBitmap>
#include <QCoreApplication>
#include <QEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QScreen>
#include <QStyle>
#include <QVBoxLayout>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr double s_noWindow = -1314.0;
constexpr int s_itemType = 1000;
constexpr int s_firstSliderValue = 149;
constexpr int s_captionHeight = 25;  // how much larger than a thumbnail a grid cell is

// Of `size` device pixels. A picture that is smaller is not enlarged.
QPixmap thumbnail(const QPixmap &picture, QSize size)
{
    const bool fits = picture.width() < size.width() && picture.height() < size.height();
    const QImage image =
        (fits ? picture : picture.scaled(size, Qt::KeepAspectRatio, Qt::SmoothTransformation))
            .toImage();
    QPixmap canvas(size);
    canvas.fill(Qt::white);
    QPainter(&canvas).drawImage((size.width() - image.width()) / 2,
                                (size.height() - image.height()) / 2, image);
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

// The title in one line, which a program may make as long as it likes.
QString shownTitle(const WindowCatalogue::Entry &window)
{
    constexpr int longest = 255;
    return window.name.left(longest).simplified();
}

QString captionOf(const msg_grab &record)
{
    if (record.title.isEmpty() || record.title == record.name)
        return record.name;
    return record.name.isEmpty() ? record.title : record.name + u'\n' + record.title;
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
    : QDialog(parent), m_ui(std::make_unique<Ui::WindowsPreView>()), m_nothing(new QLabel),
      m_selectedWindow(s_noWindow)
{
    m_ui->setupUi(this);
    auto *middle = new QVBoxLayout(m_ui->listWidget->viewport());
    m_nothing->setObjectName(u"lblNothing"_s);
    middle->addWidget(m_nothing, 0, Qt::AlignCenter);
    m_ui->listWidget->setViewMode(QListView::IconMode);
    setGeometry(QGuiApplication::primaryScreen()->geometry());
    // Without the full-screen state a window manager would add its frame and move the buttons off
    // the screen.
    setWindowState(Qt::WindowFullScreen);
    m_ui->label_clear->installEventFilter(this);
    m_ui->lineEdit->installEventFilter(this);
    m_ui->listWidget->installEventFilter(this);
    m_ui->listWidget->viewport()->installEventFilter(this);
    m_ui->listWidget->setMovement(QListView::Static);
    m_ui->listWidget->setResizeMode(QListView::Adjust);
    m_ui->horizontalSlider->setValue(s_firstSliderValue);
    selectWindowType(1);
    seachWindow({}, true);
    show_grabWindow();

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
    const auto ownProcess = static_cast<uint>(QCoreApplication::applicationPid());
    const int except = services().ownWindows->numberOf(g_widgetExcept);
    for (qsizetype i = 0; i < windows.size() && m_grabMap.size() < windows.size(); ++i) {
        const WindowCatalogue::Entry &window = windows[i];
        if ((g_widgetExcept && window.number == except) || isKnown(window.number))
            continue;
        const QImage picture = services().pictures->ofWindows(std::nullopt, {window.number});
        if (picture.isNull() || window.bounds.width() < 1 || window.bounds.height() < 1)
            continue;
        const int next = static_cast<int>(m_grabMap.size());
        const bool isTray = window.kind == WindowCatalogue::Kind::Tray;
        m_grabMap.insert(next, {.pixmap = QPixmap::fromImage(picture),
                                .windowId = window.number,
                                // A reader would expect the key 0, but the first record has its
                                // position in the list, on purpose.
                                .key = next == 0 ? static_cast<int>(i) : next,
                                .name = window.shownOwner(),
                                .onScreen = onScreen == 1,
                                .note = visiblePartNote(window.number),
                                .title = shownTitle(window),
                                .isAside = window.process == ownProcess || isTray,
                                .isPanel = isTray || window.kind == WindowCatalogue::Kind::Panel});
    }
}

void WindowsPreView::seachWindow(const QString &text, bool visibleOnly)
{
    for (msg_grab &record : m_grabMap)
        record.shown = (visibleOnly ? record.onScreen : !record.isAside) &&
                       (record.name.contains(text, Qt::CaseInsensitive) ||
                        record.title.contains(text, Qt::CaseInsensitive));
}

void WindowsPreView::show_grabWindow()
{
    QListWidget &list = *m_ui->listWidget;
    list.clear();
    for (const msg_grab &record : std::as_const(m_grabMap)) {
        if (!record.shown)
            continue;
        auto *item =
            new QListWidgetItem(iconOf(record.pixmap), captionOf(record), &list, s_itemType);
        item->setToolTip(captionOf(record).toHtmlEscaped().replace(u'\n', u"<br>"_s));
        item->setData(Qt::UserRole, record.key);
    }
    list.setCurrentItem(choice());
    tellNothing();
    setIconSize(m_ui->horizontalSlider->value());
}

// What was clicked last. At first it is no panel: these are in front of everything, and hardly ever
// what is wanted.
QListWidgetItem *WindowsPreView::choice() const
{
    // A reader would expect the row among the shown records, but the row among all that could be
    // listed is used, whatever the typed text leaves out, on purpose.
    if (m_selectedWindow != s_noWindow) {
        const auto end = m_grabMap.constFind(getRow(static_cast<int>(m_selectedWindow)));
        const bool isAll = !m_ui->Visbel->isChecked();
        const auto row = std::count_if(m_grabMap.cbegin(), end, [&](const msg_grab &record) {
            return !isAll || !record.isAside;
        });
        if (QListWidgetItem *clicked = m_ui->listWidget->item(static_cast<int>(row)))
            return clicked;
    }
    int row = 0;
    for (const msg_grab &record : m_grabMap) {
        if (!record.shown)
            continue;
        if (!record.isPanel)
            return m_ui->listWidget->item(row);
        ++row;
    }
    return m_ui->listWidget->item(0);
}

void WindowsPreView::tellNothing()
{
    m_nothing->setText(m_ui->lineEdit->text().isEmpty()
                           ? tr("There is no window to show.")
                           : tr("No window's application or title contains this."));
    m_nothing->setVisible(m_ui->listWidget->count() == 0);
}

// The cells of a row share its width. With few windows they would be far apart.
int WindowsPreView::cellWidth(int least) const
{
    const QListWidget &list = *m_ui->listWidget;
    // The list always leaves room for its scroll bar.
    const QStyle &style = *list.style();
    const int width = list.maximumViewportSize().width() -
                      style.pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, &list) -
                      2 * style.pixelMetric(QStyle::PM_DefaultFrameWidth, nullptr, &list);
    const int across = std::clamp(width / least, 1, std::max(list.count(), 1));
    return std::clamp(width / across, least, 2 * least);
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
    const int width = cellWidth(size + s_captionHeight);
    const QSize icon(width - s_captionHeight, size);
    list.setIconSize(icon);
    list.setGridSize({width, size + s_captionHeight + list.fontMetrics().lineSpacing()});
    const QSize canvasSize = icon * devicePixelRatioF();
    int row = 0;
    for (const msg_grab &record : std::as_const(m_grabMap)) {
        if (!record.shown)
            continue;
        QPixmap canvas = thumbnail(record.pixmap, canvasSize);
        canvas.setDevicePixelRatio(devicePixelRatioF());
        list.item(row++)->setIcon(iconOf(canvas));
    }
}

void WindowsPreView::on_lineEdit_textEdited(const QString &text)
{
    seachWindow(text, m_ui->Visbel->isChecked());
    show_grabWindow();
    ChangePixmap();
}

void WindowsPreView::refill(int onScreen)
{
    selectWindowType(onScreen);
    seachWindow(m_ui->lineEdit->text(), m_ui->Visbel->isChecked());
    show_grabWindow();
}

void WindowsPreView::on_All_clicked() { refill(0); }

void WindowsPreView::on_Visbel_clicked() { refill(1); }

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
    } else if (watched == m_ui->listWidget && event->type() == QEvent::KeyPress) {
        // It would look for the caption by itself.
        if (search(*static_cast<QKeyEvent *>(event)))
            return true;
    } else if (watched == m_ui->listWidget->viewport() && event->type() == QEvent::Resize) {
        setIconSize(m_ui->horizontalSlider->value());
    }
    return QDialog::eventFilter(watched, event);
}

// What nothing else in the browser has taken. The way from the search field to what was found is
// that of its own lines, of which there is only one.
void WindowsPreView::keyPressEvent(QKeyEvent *event)
{
    const bool leadsOn = event->key() == Qt::Key_Up || event->key() == Qt::Key_Down;
    if (leadsOn && m_ui->lineEdit->hasFocus())
        m_ui->listWidget->setFocus(Qt::OtherFocusReason);
    else if (!search(*event))
        QDialog::keyPressEvent(event);
}

// Lets the search field have a key that types something, or takes back what was typed; false for
// all others. A space chooses what has the focus.
bool WindowsPreView::search(QKeyEvent &key)
{
    QLineEdit &field = *m_ui->lineEdit;
    const Qt::KeyboardModifiers held =
        key.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier);
    const QChar typed = key.text().isEmpty() ? QChar() : key.text().at(0);
    const bool isText = (typed.isPrint() || typed.isSurrogate()) && !typed.isSpace();
    const bool takesBack = key.key() == Qt::Key_Backspace && !field.text().isEmpty();
    if (field.hasFocus() || held != Qt::NoModifier || !(isText || takesBack))
        return false;
    field.setFocus(Qt::OtherFocusReason);
    QCoreApplication::sendEvent(&field, &key);
    return true;
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
    m_titles.append(record->title);
}

void WindowsPreView::on_OK_BUTTON_released()
{
    const QListWidget &list = *m_ui->listWidget;
    m_pixmaps.clear();
    m_names.clear();
    m_notes.clear();
    m_titles.clear();
    for (int row = 0; row < list.count(); ++row) {
        if (list.item(row)->isSelected())
            choose(*list.item(row));
    }
    if (m_pixmaps.isEmpty() && list.currentItem())
        choose(*list.currentItem());
    accept();
}

void WindowsPreView::on_CANNEL_BUTTON_released() { reject(); }
