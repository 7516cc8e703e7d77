#include "shell/mainwindow.h"

#include "config/settings.h"
#include "platform/applicationwatch.h"
#include "ui_mainwindow.h"

#include <QColorDialog>
#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QShortcut>

#include <array>

using namespace Qt::StringLiterals;

namespace {

// Attributes of a skin section.
constexpr int s_hint = 3;
constexpr int s_normalPicture = 4;
constexpr int s_overPicture = 5;
constexpr int s_downPicture = 6;
constexpr int s_disabledPicture = 7;

// Where the colour button's picture shows the pen colour.
constexpr QRect s_colorField(QPoint(5, 4), QPoint(19, 18));

constexpr std::array<const char *, 30> s_buttons{
    "BtnClose",        "BtnMin",          "BtnMax",          "BtnRegister",    "BtnBuynow",
    "BtnAbout",        "BtnHelp",         "BtnHome",         "BtnSetting",     "BtnFrameRect",
    "BtnFrameEllipse", "BtnFramePolygon", "BtnSelectWindow", "BtnAllWindows",  "BtnFullScreen",
    "BtnMenuCapture",  "BtnDrawMove",     "BtnDrawRect",     "BtnDrawEllipse", "BtnDrawArrow",
    "BtnDrawPoly",     "BtnDrawText",     "BtnUndo",         "BtnRedo",        "BtnZoomIn",
    "BtnZoomOut",      "BtnRealSize",     "BtnCopy",         "BtnSave",        "BtnColor"};

// Those that show the keys of a command with an item in a menu.
constexpr std::array<std::pair<const char *, const char *>, 11> s_keyedButtons{
    {{"BtnFrameRect", "Rectangular"},
     {"BtnFrameEllipse", "Ellipse"},
     {"BtnFramePolygon", "Arbitrary"},
     {"BtnSelectWindow", "Select Window"},
     {"BtnAllWindows", "All Windows"},
     {"BtnFullScreen", "Full Screen"},
     {"BtnMenuCapture", "Menu"},
     {"BtnUndo", "undo"},
     {"BtnRedo", "redo"},
     {"BtnCopy", "Copy %1"},
     {"BtnSave", "Save %1"}}};

// The keys of the commands that no menu has.
struct ButtonKeys {
    const char *button;
    const char *keys;
};
constexpr std::array<ButtonKeys, 13> s_buttonKeys{
    {{"BtnDrawMove", QT_TRANSLATE_NOOP("MainWindow", "Ctrl+1")},
     {"BtnDrawRect", QT_TRANSLATE_NOOP("MainWindow", "Ctrl+2")},
     {"BtnDrawEllipse", QT_TRANSLATE_NOOP("MainWindow", "Ctrl+3")},
     {"BtnDrawArrow", QT_TRANSLATE_NOOP("MainWindow", "Ctrl+4")},
     {"BtnDrawPoly", QT_TRANSLATE_NOOP("MainWindow", "Ctrl+5")},
     {"BtnDrawText", QT_TRANSLATE_NOOP("MainWindow", "Ctrl+6")},
     {"BtnZoomIn", QT_TRANSLATE_NOOP("MainWindow", "Ctrl+=")},
     {"BtnZoomOut", QT_TRANSLATE_NOOP("MainWindow", "Ctrl+-")},
     {"BtnRealSize", QT_TRANSLATE_NOOP("MainWindow", "Ctrl+0")},
     {"BtnColor", QT_TRANSLATE_NOOP("MainWindow", "Ctrl+K")},
     {"BtnClose", QT_TRANSLATE_NOOP("MainWindow", "Ctrl+Q")},
     {"BtnMin", QT_TRANSLATE_NOOP("MainWindow", "Ctrl+M")},
     {"BtnMax", QT_TRANSLATE_NOOP("MainWindow", "F11")}}};

// By the number of the tool.
constexpr std::array<const char *, 6> s_toolButtons{"BtnDrawMove",  "BtnDrawRect", "BtnDrawEllipse",
                                                    "BtnDrawArrow", "BtnDrawText", "BtnDrawPoly"};

int pictureFor(const QPushButton &button, const QEvent &event)
{
    switch (event.type()) {
    case QEvent::Leave:
        return s_normalPicture;
    case QEvent::Enter:
        return s_overPicture;
    case QEvent::MouseButtonPress:
        return s_downPicture;
    case QEvent::MouseButtonRelease: {
        // Both far edges count as inside.
        const QPoint pos = static_cast<const QMouseEvent &>(event).position().toPoint();
        const bool inside = QRect(QPoint(), button.size() + QSize(1, 1)).contains(pos);
        return inside ? s_overPicture : s_normalPicture;
    }
    default:
        return 0;
    }
}

// The ending names the format: without it the toolkit asks each of its picture plug-ins, and has to
// load them all first.
bool loadPicture(QPixmap &pixmap, const QString &path)
{
    return pixmap.load(path, QFileInfo(path).suffix().toLatin1().constData());
}

}  // namespace

void MainWindow::LoadPixmapFromXml(QPixmap &pixmap, const QString &section, int attribute)
{
    const QString path = GetBtnAttr(this, section, attribute);
    if (QFile::exists(path))
        loadPicture(pixmap, path);
}

void MainWindow::LoadPixmapFlag()
{
    LoadPixmapFromXml(m_FlagPixmap, u"BtnFlag"_s, s_normalPicture);
}

void MainWindow::InitImgButton()
{
    const auto label = [this](QLabel *target, const QString &section, int attribute) {
        QPixmap pixmap;
        LoadPixmapFromXml(pixmap, section, attribute);
        target->setPixmap(pixmap);
    };
    label(ui->lblComm, u"BtnCommBackground"_s, s_normalPicture);
    label(ui->lblLineMin, u"BtnLineWidth"_s, s_normalPicture);
    label(ui->lblLineMax, u"BtnLineWidth"_s, s_downPicture);
    for (QLabel *separator : {ui->lblSep1, ui->lblSep2, ui->lblSep3})
        label(separator, u"BtnSep"_s, s_normalPicture);

    // The tabs' close buttons are the style's; only a style sheet gives them pictures.
    const auto closePicture = [this](const QString &state, int attribute) {
        const QString path = GetBtnAttr(this, u"BtnTabClose"_s, attribute);
        // One that can't be read would leave nothing to see; without the rule the style's own is.
        QPixmap pixmap;
        return QFile::exists(path) && loadPicture(pixmap, path)
                   ? u"QTabBar::close-button%1{image:url(\"%2\")} "_s.arg(state, path)
                   : QString();
    };
    ui->tabWidget->setStyleSheet(ui->tabWidget->styleSheet() + closePicture({}, s_normalPicture) +
                                 closePicture(u":hover"_s, s_overPicture) +
                                 closePicture(u":pressed"_s, s_downPicture));

    const auto button = [this](const char *name) {
        return findChild<QPushButton *>(QLatin1StringView(name));
    };
    for (const char *name : s_buttons)
        button(name)->installEventFilter(this);
    // Not the buttons' own: a button that is clicked by its keys shows that for a while first, and
    // the next keys would overtake it.
    const auto onKeys = [this](const char *command, auto slot) {
        new QShortcut(CreateShortkey(QLatin1StringView(command)), this, slot);
    };
    onKeys("undo", [this] { m_pEditor->Undo(); });
    onKeys("redo", [this] { m_pEditor->Redo(); });
    onKeys("Copy %1", [this] { CopyFile(); });
    onKeys("Save %1", [this] { SaveFile(); });
    const auto ownKeys = [](const ButtonKeys &entry) {
        return QKeySequence(QCoreApplication::translate("MainWindow", entry.keys));
    };
    for (const ButtonKeys &entry : s_buttonKeys) {
        QPushButton *target = button(entry.button);
        new QShortcut(ownKeys(entry), this, [target] { target->click(); });
    }

    const auto setHint = [this](QPushButton *target, const QKeySequence &keys) {
        QString hint = GetBtnAttr(this, target->objectName(), s_hint);
        // The file's own texts are in English; what a user wrote there stays as it is.
        if (!hint.isEmpty())
            hint = QCoreApplication::translate("MainWindow", hint.toUtf8().constData());
        if (!hint.isEmpty() && !keys.isEmpty())
            hint += u"  "_s + keys.toString(QKeySequence::NativeText);
        target->setToolTip(hint);
    };
    for (const char *name : s_buttons)
        setHint(button(name), {});
    for (const auto &[name, command] : s_keyedButtons)
        setHint(button(name), CreateShortkey(QLatin1StringView(command)));
    for (const ButtonKeys &entry : s_buttonKeys)
        setHint(button(entry.button), ownKeys(entry));

    for (const char *name : s_buttons) {
        QEvent leave(QEvent::Leave);
        eventFilter(button(name), &leave);
    }
    connect(ui->BtnClose, &QPushButton::clicked, this, &MainWindow::close);
    connect(ui->BtnMin, &QPushButton::clicked, this, &MainWindow::showMinimized);
    connect(ui->BtnAbout, &QPushButton::clicked, this, &MainWindow::About);
    connect(ui->BtnHelp, &QPushButton::clicked, this, &MainWindow::Help);
    connect(ui->BtnHome, &QPushButton::clicked, this, &MainWindow::Home);
    connect(ui->BtnBuynow, &QPushButton::clicked, this, &MainWindow::Buynow);
    connect(ui->BtnRegister, &QPushButton::clicked, this, &MainWindow::Register);
    connect(ui->BtnCopy, &QPushButton::clicked, this, &MainWindow::CopyFile);
    connect(ui->BtnSave, &QPushButton::clicked, this, [this] { SaveFile(); });
    // Also after the choice of what was chosen already.
    for (QComboBox *box : {static_cast<QComboBox *>(ui->CmbFont), ui->CmbFontSize})
        connect(box, &QComboBox::activated, this, [this] { m_pEditor->goOnTyping(); });
}

bool MainWindow::filterButton(QPushButton &button, QEvent &event)
{
    int picture = pictureFor(button, event);
    if (picture == 0)
        return QMainWindow::eventFilter(&button, &event);
    const bool isWindowControl =
        &button == ui->BtnClose || &button == ui->BtnMax || &button == ui->BtnMin;
    if (isWindowControl && picture == s_normalPicture && !IsAppActive())
        picture = s_disabledPicture;
    showButtonPicture(button, picture);
    if (event.type() != QEvent::MouseButtonRelease)
        return QMainWindow::eventFilter(&button, &event);
    button.setDown(false);
    button.click();
    return true;
}

bool MainWindow::isChosenTool(const QAbstractButton &button) const
{
    return button.objectName() == QLatin1StringView(s_toolButtons[m_pEditor->getState()]);
}

void MainWindow::showButtonPicture(QPushButton &button, int picture)
{
    QString section = button.objectName();
    if (isChosenTool(button))
        section += u"_Sel"_s;
    const QString path = GetBtnAttr(this, section, picture);
    if (!QFile::exists(path))
        return;
    button.setIconSize(button.size());
    QPixmap pixmap;
    // A picture that can't be read leaves the button with the one that it had.
    if (!loadPicture(pixmap, path))
        return;
    const auto fillColor = [&] {
        if (&button == ui->BtnColor)
            QPainter(&pixmap).fillRect(s_colorField, m_pEditor->getPenColor());
    };
    fillColor();
    QIcon icon(pixmap);
    // Twice as fine a picture, where the skin has one and the desktop is scaled.
    const QFileInfo file(path);
    const QString fine = file.path() + u'/' + file.completeBaseName() + u"@2x."_s + file.suffix();
    if (devicePixelRatioF() > 1 && QFile::exists(fine) && loadPicture(pixmap, fine)) {
        pixmap.setDevicePixelRatio(2);
        fillColor();
        icon.addPixmap(pixmap);
    }
    button.setIcon(icon);
}

void MainWindow::UpdateDrawButton(QPushButton *over)
{
    const auto pass = [this](QPushButton *button, QEvent::Type type) {
        QEvent event(type);
        eventFilter(button, &event);
    };
    for (const char *name : s_toolButtons)
        pass(findChild<QPushButton *>(QLatin1StringView(name)), QEvent::Leave);
    if (over)
        pass(over, QEvent::Enter);
}

long ActiveCallBack(bool /*active*/)
{
    if (!g_MainWindow)
        return 0;
    for (QPushButton *button :
         {g_MainWindow->ui->BtnClose, g_MainWindow->ui->BtnMax, g_MainWindow->ui->BtnMin}) {
        QEvent leave(QEvent::Leave);
        g_MainWindow->eventFilter(button, &leave);
    }
    return 0;
}

void MainWindow::chooseTool(stateEnum tool, QPushButton *button)
{
    m_pEditor->setState(tool);
    UpdateDrawButton(button);
}

void MainWindow::on_BtnDrawMove_clicked() { chooseTool(stateMove, ui->BtnDrawMove); }

void MainWindow::on_BtnDrawRect_clicked() { chooseTool(stateRect, ui->BtnDrawRect); }

void MainWindow::on_BtnDrawEllipse_clicked() { chooseTool(stateEllipse, ui->BtnDrawEllipse); }

void MainWindow::on_BtnDrawArrow_clicked() { chooseTool(stateArrow, ui->BtnDrawArrow); }

void MainWindow::on_BtnDrawText_clicked() { chooseTool(stateText, ui->BtnDrawText); }

void MainWindow::on_BtnDrawPoly_clicked() { chooseTool(statePoly, ui->BtnDrawPoly); }

void MainWindow::on_SliderLineWidth_valueChanged(int value)
{
    m_pEditor->setLineWidth(value + 1);
    SetConfigString(u"LineWidth"_s, QString::number(value + 1));
}

QFont MainWindow::chosenFont(const QFont &font) const
{
    QFont sized = font;
    if (const int size = ui->CmbFontSize->currentText().toInt(); size > 0)
        sized.setPointSize(size);
    return sized;
}

void MainWindow::on_CmbFont_currentFontChanged(const QFont &font)
{
    const QFont chosen = chosenFont(font);
    m_pEditor->set_m_Font(chosen);
    SetConfigString(u"TextFont"_s, chosen.toString());
    if (!m_pEditor->goOnTyping())
        ui->tabWidget->setFocus(Qt::OtherFocusReason);
}

void MainWindow::on_CmbFontSize_currentIndexChanged(int /*index*/)
{
    on_CmbFont_currentFontChanged(ui->CmbFont->currentFont());
}

void MainWindow::on_BtnColor_clicked()
{
    const QColor color = QColorDialog::getColor(m_pEditor->getPenColor(), this);
    if (!color.isValid())
        return;
    m_pEditor->setPenColor(color);
    // The brightness is what is kept, and read back as a colour: a restart does not bring back the
    // colour that was chosen, on purpose.
    SetConfigString(u"LineColor"_s, QString::number(color.value()));
    QEvent leave(QEvent::Leave);
    eventFilter(ui->BtnColor, &leave);
}

void MainWindow::on_BtnMax_clicked()
{
    if (GetMaximized()) {
        ShowNormalGeometry();
    } else {
        SaveNormalGeometry();
        ShowMaxedGeometry();
    }
    QEvent leave(QEvent::Leave);
    eventFilter(ui->BtnMax, &leave);
}
