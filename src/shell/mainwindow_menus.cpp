#include "shell/mainwindow.h"

#include "config/applicationrecord.h"
#include "config/licensing.h"
#include "shell/aboutbox.h"
#include "ui_mainwindow.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QMenu>
#include <QMenuBar>
#include <QUrl>

#include <array>

using namespace Qt::StringLiterals;

namespace {

struct Shortcut {
    const char *name;
    const char *keys;
};

// The system-wide hot keys are registered apart from these, and don't agree with them on V and M.
constexpr std::array<Shortcut, 14> s_shortcuts{
    {{"Rectangular", QT_TRANSLATE_NOOP("MainWindow", "Ctrl+Alt+R")},
     {"Ellipse", QT_TRANSLATE_NOOP("MainWindow", "Ctrl+Alt+E")},
     {"Arbitrary", QT_TRANSLATE_NOOP("MainWindow", "Ctrl+Alt+A")},
     {"All Windows", QT_TRANSLATE_NOOP("MainWindow", "Ctrl+Alt+L")},
     {"Select Window", QT_TRANSLATE_NOOP("MainWindow", "Ctrl+Alt+W")},
     {"Full Screen", QT_TRANSLATE_NOOP("MainWindow", "Ctrl+Alt+S")},
     {"Capture Full Screen", QT_TRANSLATE_NOOP("MainWindow", "Ctrl+Alt+S")},
     {"Capture Full Screen with Countdown Timer", QT_TRANSLATE_NOOP("MainWindow", "Ctrl+Alt+T")},
     {"Menu", QT_TRANSLATE_NOOP("MainWindow", "Ctrl+Alt+M")},
     {"Show Snapworkbench", QT_TRANSLATE_NOOP("MainWindow", "Ctrl+Alt+V")},
     {"Copy %1", QT_TRANSLATE_NOOP("MainWindow", "Ctrl+C")},
     {"Save %1", QT_TRANSLATE_NOOP("MainWindow", "Ctrl+S")},
     {"undo", QT_TRANSLATE_NOOP("MainWindow", "Ctrl+Z")},
     {"redo", QT_TRANSLATE_NOOP("MainWindow", "Ctrl+Shift+Z")}}};

// One row of both capture menus. A null caption: no item there; an empty one: a separator.
struct CaptureItem {
    const char *bar;
    const char *tray;
    const char *barShortcut;
    const char *trayShortcut;
};

constexpr std::array<CaptureItem, 12> s_captureItems{
    {{QT_TRANSLATE_NOOP("MainWindow", "Rectangular"),
      QT_TRANSLATE_NOOP("MainWindow", "Capture Rectangular"), "Rectangular", "Rectangular"},
     {QT_TRANSLATE_NOOP("MainWindow", "Ellipse"),
      QT_TRANSLATE_NOOP("MainWindow", "Capture Ellipse"), "Ellipse", "Ellipse"},
     {QT_TRANSLATE_NOOP("MainWindow", "Arbitrary"),
      QT_TRANSLATE_NOOP("MainWindow", "Capture Arbitrary"), "Arbitrary", "Arbitrary"},
     {"", "", nullptr, nullptr},
     {QT_TRANSLATE_NOOP("MainWindow", "Select Window"),
      QT_TRANSLATE_NOOP("MainWindow", "Select Window"), "Select Window", "Select Window"},
     {QT_TRANSLATE_NOOP("MainWindow", "All Windows"),
      QT_TRANSLATE_NOOP("MainWindow", "All Windows"), "All Windows", "All Windows"},
     {QT_TRANSLATE_NOOP("MainWindow", "Full Screen"),
      QT_TRANSLATE_NOOP("MainWindow", "Capture Full Screen"), "Full Screen", "Capture Full Screen"},
     {nullptr, QT_TRANSLATE_NOOP("MainWindow", "Capture Full Screen with Countdown Timer"), nullptr,
      "Capture Full Screen with Countdown Timer"},
     {QT_TRANSLATE_NOOP("MainWindow", "Menu"), QT_TRANSLATE_NOOP("MainWindow", "Capture Menu"),
      "Menu", "Menu"},
     {nullptr, "", nullptr, nullptr},
     {nullptr, QT_TRANSLATE_NOOP("MainWindow", "Show Snapworkbench"), nullptr,
      "Show Snapworkbench"},
     {nullptr, "", nullptr, nullptr}}};

void addCaptureItem(QMenu &menu, const char *caption, const char *shortcut)
{
    if (!caption)
        return;
    if (!*caption) {
        menu.addSeparator();
        return;
    }
    QAction *action = menu.addAction(MainWindow::tr(caption));
    action->setShortcut(MainWindow::CreateShortkey(QString::fromLatin1(shortcut)));
}

void openAddress(const wchar_t *address)
{
    QDesktopServices::openUrl(QUrl(QString::fromWCharArray(address)));
}

}  // namespace

QKeySequence MainWindow::CreateShortkey(const QString &text)
{
    for (const Shortcut &shortcut : s_shortcuts) {
        if (text == QLatin1StringView(shortcut.name))
            return QKeySequence(QCoreApplication::translate("MainWindow", shortcut.keys));
    }
    return {};
}

void MainWindow::CreateMenus()
{
    auto *bar = new QMenuBar;
    bar->setNativeMenuBar(false);
    ui->layMenuBar->addWidget(bar);

    QMenu *system = bar->addMenu(tr("&sys"));
    system->addAction(tr("&About"), this, &MainWindow::About);
    system->addAction(tr("&Preferences"), this, [this] { Preference(); });

    m_FileMenu = bar->addMenu(tr("&File"));
    m_FileMenu->addAction(tr("Open..."), QKeySequence(tr("Ctrl+O")), this, &MainWindow::OpenFile);
    m_FileMenu->addSeparator();
    m_FileMenu->addAction(tr("Close %1"), QKeySequence(tr("Ctrl+W")), this, [this] { CloseFile(); })
        ->setData(1);
    m_FileMenu->addAction(tr("Close All"), QKeySequence(tr("Ctrl+Shift+W")), this,
                          &MainWindow::CloseAllFiles);
    m_FileMenu->addSeparator();
    QAction *save = m_FileMenu->addAction(tr("Save %1"), CreateShortkey(u"Save %1"_s), this,
                                          [this] { SaveFile(); });
    save->setData(2);
    // Shown only: the keys work whatever the item's state, and two owners of them would both stay
    // silent.
    save->setShortcutContext(Qt::WidgetShortcut);
    m_FileMenu
        ->addAction(tr("Save %1 As..."), QKeySequence(tr("Ctrl+Shift+S")), this,
                    [this] { SaveAsFile(); })
        ->setData(3);
    m_FileMenu->addAction(tr("Save All"), this, &MainWindow::SaveAllFiles);
    connect(m_FileMenu, &QMenu::aboutToShow, this, &MainWindow::BeforeShowFile);

    createCaptureMenus(*bar);

    m_HelpMenu = bar->addMenu(tr("Help"));
    m_HelpMenu->addAction(tr("Contents"), QKeySequence(Qt::Key_F1), this, &MainWindow::Help);
    m_HelpMenu->addSeparator();
    m_HelpMenu->addAction(tr("Home"), this, &MainWindow::Home);
    m_HelpMenu->addAction(tr("Buy now"), this, &MainWindow::Buynow);
    m_HelpMenu->addSeparator();
    m_HelpMenu->addAction(tr("Register..."), this, &MainWindow::Register);
    connect(m_HelpMenu, &QMenu::aboutToShow, this, &MainWindow::BeforeShowMenuHelp);
}

// The grabs are told apart by their captions: these have to equal those that Capture compares.
void MainWindow::createCaptureMenus(QMenuBar &bar)
{
    QMenu *menu = bar.addMenu(tr("&Capture"));
    m_TrayMenu = new QMenu(this);
    for (const CaptureItem &item : s_captureItems) {
        addCaptureItem(*menu, item.bar, item.barShortcut);
        addCaptureItem(*m_TrayMenu, item.tray, item.trayShortcut);
    }
    m_TrayMenu->addAction(tr("Quit"));
    connect(menu, &QMenu::triggered, this, &MainWindow::Capture);
    connect(m_TrayMenu, &QMenu::triggered, this, &MainWindow::Capture);
}

void MainWindow::BeforeShowMenuHelp()
{
    for (QAction *action : m_HelpMenu->actions()) {
        const QString caption = action->text().remove(u'&');
        if (caption == tr("Buy now") || caption == tr("Register..."))
            action->setVisible(!Licensing::status().registered);
    }
}

void MainWindow::About() { AboutBox(windowIcon(), this).exec(); }

void MainWindow::Help()
{
    QDesktopServices::openUrl(QUrl(u"file:///"_s + QCoreApplication::applicationDirPath() + u'/' +
                                   tr("../Resources/Help/index.html")));
}

void MainWindow::Home() { openAddress(g_URL); }

void MainWindow::Buynow() { openAddress(g_BuyURL); }

// The registration may change with it.
void MainWindow::Register() { ProcessLicense(); }
