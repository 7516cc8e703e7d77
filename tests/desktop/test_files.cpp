// Opening, saving and closing through the real dialogs, by the keyboard.

#include "pattern.h"
#include "snapworkbench.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTest>

#include <X11/keysym.h>

using namespace Qt::StringLiterals;

class TestFiles : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void firstSaveByReturn_data();
    void firstSaveByReturn();
    void formats();
    void existingFileIsAskedFor();
    void unwritableFolder();
    void openedFiles();
    void promptsAndQuit();
    void closeDuringGrab();

private:
    /// A picture of the whole desktop in a new tab.
    bool grab(const QString &title);
    /// Presses keys that open a dialog, and waits until it has the keyboard.
    bool openDialog(xcb_keysym_t keysym, const QList<xcb_keysym_t> &modifiers);
    /// Presses a key that closes the dialog, until it is gone.
    bool dismiss(xcb_keysym_t keysym);

    std::unique_ptr<TestDesktop> m_desktop;
    std::unique_ptr<SnapWorkbench> m_program;
    TestDesktop::Window m_dialog;
};

void TestFiles::init()
{
    m_desktop = std::make_unique<TestDesktop>(TestDesktop::Options{});
    QVERIFY(m_desktop->isReady());
    m_program = std::make_unique<SnapWorkbench>(*m_desktop);
    m_program->writeSettings({{u"AutoShow"_s, u"1"_s}});
    QVERIFY(m_program->startAndWait());
    QVERIFY(waitFor([&] { return m_desktop->activeTitle() == u"Snap Workbench"; }));
}

void TestFiles::cleanup()
{
    m_program.reset();
    m_desktop.reset();
}

bool TestFiles::grab(const QString &title)
{
    m_desktop->key(XK_s, {XK_Control_L, XK_Alt_L});
    return m_program->waitForTitle(title) &&
           waitFor([&] { return m_desktop->activeTitle() == title; });
}

bool TestFiles::openDialog(xcb_keysym_t keysym, const QList<xcb_keysym_t> &modifiers)
{
    const QList<TestDesktop::Window> before = m_desktop->windows();
    m_desktop->key(keysym, modifiers);
    m_dialog = m_desktop->waitForNewWindow(before);
    return m_dialog.id != XCB_NONE && m_desktop->waitForFocus(m_dialog);
}

// A list of completions, or a window manager that still looks after the window before, may take the
// first press for itself.
bool TestFiles::dismiss(xcb_keysym_t keysym)
{
    const auto isGone = [this] {
        const QList<TestDesktop::Window> windows = m_desktop->windows();
        return std::none_of(windows.begin(), windows.end(), [&](const TestDesktop::Window &window) {
            return window.id == m_dialog.id && window.viewable;
        });
    };
    for (int press = 0; press < 20; ++press) {
        m_desktop->key(keysym);
        if (waitFor(isGone, 1000))
            return true;
    }
    return false;
}

void TestFiles::firstSaveByReturn_data()
{
    QTest::addColumn<bool>("hasPictures");
    QTest::addColumn<QString>("file");
    QTest::newRow("Pictures") << true << u"/Pictures/untitled.png"_s;
    QTest::newRow("no Pictures") << false << u"/untitled.png"_s;
}

void TestFiles::firstSaveByReturn()
{
    QFETCH(bool, hasPictures);
    QFETCH(QString, file);
    if (hasPictures)
        QVERIFY(QDir().mkpath(m_desktop->home() + u"/Pictures"_s));
    QVERIFY(grab(u"untitled * - Snap Workbench"_s));
    QVERIFY(openDialog(XK_s, {XK_Control_L}));
    QVERIFY(m_program->confirm(u"untitled.png - Snap Workbench"_s));
    QCOMPARE(QImage(m_desktop->home() + file).size(), QSize(1600, 1000));
}

void TestFiles::formats()
{
    // What lies around it may still change while it is taken.
    const QRect area(203, 151, 701, 503);
    QVERIFY(m_desktop->startPattern(area));
    QVERIFY(grab(u"untitled * - Snap Workbench"_s));
    const QImage screen = m_program->saveAs(m_desktop->home() + u"/a.bmp"_s);
    QCOMPARE(screen.copy(area), pattern(area.size()));
    // A saved picture is saved again without a question.
    QVERIFY(QFile::remove(m_desktop->home() + u"/a.bmp"_s));
    m_desktop->key(XK_s, {XK_Control_L});
    QVERIFY(waitFor([&] {
        return QImage(m_desktop->home() + u"/a.bmp"_s).convertToFormat(QImage::Format_RGB32) ==
               screen;
    }));
    QVERIFY(openDialog(XK_s, {XK_Control_L, XK_Shift_L}));
    m_desktop->type(m_desktop->home() + u"/b.jpg"_s);
    QVERIFY(m_program->confirm(u"b.jpg - Snap Workbench"_s));
    const QImage jpeg(m_desktop->home() + u"/b.jpg"_s);
    QCOMPARE(jpeg.size(), screen.size());
    QVERIFY(qAbs(qGreen(jpeg.pixel(20, 20)) - qGreen(screen.pixel(20, 20))) < 12);
}

// The ending that the filter adds does not get round the question about a file that is there
// already.
void TestFiles::existingFileIsAskedFor()
{
    QVERIFY(grab(u"untitled * - Snap Workbench"_s));
    QVERIFY(openDialog(XK_s, {XK_Control_L}));
    m_desktop->type(m_desktop->home() + u"/v1.2"_s);
    QFile file(m_desktop->home() + u"/v1.2.png"_s);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("mine");
    file.close();
    const QList<TestDesktop::Window> before = m_desktop->windows();
    m_dialog = {};
    for (int press = 0; press < 20 && m_dialog.id == XCB_NONE; ++press) {
        m_desktop->key(XK_Return);
        m_dialog = m_desktop->waitForNewWindow(before, 1000);
    }
    QVERIFY(m_dialog.id != XCB_NONE);
    QVERIFY(dismiss(XK_Escape));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), QByteArray("mine"));
}

// What can't be written there is written elsewhere, from the bar that says so. The folder takes no
// file from anyone, root included, and has none either: the dialog looks into those that it lists
// to tell their types, and a kernel log among them, as /proc has it, keeps root's program waiting.
void TestFiles::unwritableFolder()
{
    QVERIFY(grab(u"untitled * - Snap Workbench"_s));
    QVERIFY(openDialog(XK_s, {XK_Control_L}));
    m_desktop->type(u"/sys/a.png"_s);
    QVERIFY(dismiss(XK_Return));
    QVERIFY(m_desktop->waitForFocus(m_program->mainWindow()));
    QCOMPARE(m_program->mainWindow().title, u"untitled * - Snap Workbench"_s);
    // The bar tells of it, with a way out.
    const QRect window = m_program->mainWindow().area;
    const QPoint bar(window.center().x(), window.bottom() - 80);
    QVERIFY(waitFor([&] { return m_desktop->pixel(bar) == qRgb(35, 40, 45); }));
    QVERIFY(openDialog(XK_a, {XK_Alt_L}));
    m_desktop->type(m_desktop->home() + u"/a.png"_s);
    QVERIFY(m_program->confirm(u"a.png - Snap Workbench"_s));
    QVERIFY(QFile::exists(m_desktop->home() + u"/a.png"_s));
    QVERIFY(m_program->quit());
    QCOMPARE(m_program->process()->exitStatus(), QProcess::NormalExit);
}

void TestFiles::openedFiles()
{
    const QString good = m_desktop->home() + u"/good.png"_s;
    QVERIFY(pattern({300, 200}).save(good));
    QFile bad(m_desktop->home() + u"/bad.png"_s);
    QVERIFY(bad.open(QIODevice::WriteOnly));
    bad.write("no picture");
    bad.close();
    const auto open = [this](const QString &path) {
        const bool opened =
            waitFor([&] { return m_desktop->activeTitle() == m_program->mainWindow().title; }) &&
            openDialog(XK_o, {XK_Control_L});
        m_desktop->type(path);
        return opened && dismiss(XK_Return);
    };
    QVERIFY(open(good));
    QVERIFY(m_program->waitForTitle(u"good.png - Snap Workbench"_s));
    QVERIFY(open(bad.fileName()));
    QVERIFY(m_program->waitForTitle(u"bad.png - Snap Workbench"_s));
    // Opened once more, a file is only shown.
    QVERIFY(open(good));
    QVERIFY(m_program->waitForTitle(u"good.png - Snap Workbench"_s));
    QVERIFY(waitFor([&] { return m_desktop->activeTitle() == u"good.png - Snap Workbench"; }));
    m_desktop->key(XK_w, {XK_Control_L});
    QVERIFY(m_program->waitForTitle(u"bad.png - Snap Workbench"_s));
    m_desktop->key(XK_w, {XK_Control_L});
    QVERIFY(m_program->waitForTitle(u"Snap Workbench"_s));
    QVERIFY(m_program->quit());
    QCOMPARE(m_program->setting(u"MediaDir"_s), m_desktop->home());
}

void TestFiles::promptsAndQuit()
{
    QVERIFY(grab(u"untitled * - Snap Workbench"_s));
    QVERIFY(openDialog(XK_w, {XK_Control_L}));
    QVERIFY(dismiss(XK_Escape));
    QVERIFY(m_program->waitForTitle(u"untitled * - Snap Workbench"_s));
    const QList<TestDesktop::Window> before = m_desktop->windows();
    m_desktop->closeWindow(m_program->mainWindow());
    m_dialog = m_desktop->waitForNewWindow(before);
    QVERIFY(m_dialog.id != XCB_NONE && m_desktop->waitForFocus(m_dialog));
    QVERIFY(dismiss(XK_Escape));
    QCOMPARE(m_program->process()->state(), QProcess::Running);
    // The hot keys go on working.
    QVERIFY(grab(u"untitled 1 * - Snap Workbench"_s));
}

// The grab comes to its end first, and its picture is asked about like any other.
void TestFiles::closeDuringGrab()
{
    QVERIFY(m_desktop->startPattern({203, 151, 701, 503}));
    m_dialog = {};
    for (int attempt = 0; attempt < 5 && m_dialog.id == XCB_NONE; ++attempt) {
        if (attempt > 0)
            QVERIFY(m_program->startAndWait());
        const QList<TestDesktop::Window> before = m_desktop->windows();
        m_desktop->key(XK_s, {XK_Control_L, XK_Alt_L});
        m_desktop->closeWindow(m_program->mainWindow());
        // The key and the request take different ways, and where the latter is faster the program
        // has nothing to ask about.
        const auto hasEnded = [&] { return m_program->process()->state() == QProcess::NotRunning; };
        QVERIFY(waitFor([&] {
            m_dialog = m_desktop->waitForNewWindow(before, 500);
            return m_dialog.id != XCB_NONE || hasEnded();
        }));
    }
    QVERIFY(m_dialog.id != XCB_NONE && m_desktop->waitForFocus(m_dialog));
    QCOMPARE(m_program->mainWindow().title, u"untitled * - Snap Workbench"_s);
    QVERIFY(dismiss(XK_Escape));
    QCOMPARE(m_program->process()->state(), QProcess::Running);
}

QTEST_GUILESS_MAIN(TestFiles)
#include "test_files.moc"
