#include "config/settings.h"
#include "shell/noticebar.h"
#include "shellfixture.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QClipboard>
#include <QColorDialog>
#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QLayout>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPushButton>
#include <QRegularExpression>
#include <QScrollArea>
#include <QScrollBar>
#include <QShortcut>
#include <QTabBar>
#include <QTabWidget>
#include <QTest>
#include <QTextEdit>
#include <QTimer>
#include <QWindow>

#include <array>
#include <cwchar>
#include <functional>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

QPixmap picture(int width, int height, const QColor &color = Qt::blue)
{
    QPixmap pixmap(width, height);
    pixmap.fill(color);
    return pixmap;
}

// Answers the next message box with one of its buttons; gives its text.
struct Answer {
    explicit Answer(QMessageBox::StandardButton button)
    {
        QObject::connect(&timer, &QTimer::timeout, [this, button] {
            auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
            if (!box)
                return;
            text = box->text();
            box->button(button)->click();
        });
        timer.start(1);
    }
    QTimer timer{};
    QString text{};
};

}  // namespace

class TestMainWindow : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_shell.emplace();
        m_window = m_shell->window.get();
        m_window->InitShowGeometry();
        m_window->show();
    }
    void cleanup() { m_shell.reset(); }
    void numbersAndTitles();
    void documentsKeepTheirState();
    void shapesStayWithTheirDocument();
    void zoomLimits_data();
    void zoomLimits();
    void closing();
    void closingCanBeRefused();
    void nullPicture();
    void copying();
    void everyCaptureItemHasACommand();
    void shortcuts();
    void fileMenu();
    void longTitle();
    void largeFont();
    void narrowWindow();
    void keysWithoutAMenu();
    void controlsHaveNames();
    void damagedPicture();
    void lineColour();
    void focusIsSeen();
    void fontWhileTyping();
    void doubleClickMoves();
    void aboutBox();
    void wholeDesktopGrab();
    void everyWayToACommand_data();
    void everyWayToACommand();
    void browserMakesDocuments();

private:
    QTabWidget *tabs() const { return m_window->findChild<QTabWidget *>(u"tabWidget"_s); }
    QString title() const { return m_window->windowTitle(); }
    void click(const char *button) const
    {
        m_window->findChild<QPushButton *>(QLatin1StringView(button))->click();
    }

    std::optional<ShellFixture> m_shell;
    MainWindow *m_window = nullptr;  ///< as it was at first
};

void TestMainWindow::numbersAndTitles()
{
    QCOMPARE(title(), u"Snap Workbench"_s);
    m_window->NewDocument(picture(10, 10), {});
    QCOMPARE(title(), u"untitled * - Snap Workbench"_s);
    m_window->NewDocument(picture(10, 10), {});
    m_window->NewDocument(picture(10, 10), u"Mail & more"_s);
    m_window->NewDocument(picture(10, 10), u"Mail & more"_s);
    QCOMPARE(title(), u"Mail & more 1 * - Snap Workbench"_s);
    QCOMPARE(tabs()->count(), 4);
    QCOMPARE(m_window->GetFileShowName(1), u"untitled 1"_s);
    const Answer discard(QMessageBox::Discard);
    QVERIFY(m_window->CloseAllFiles());
    QCOMPARE(title(), u"Snap Workbench"_s);
    // Numbers are never given back.
    m_window->NewDocument(picture(10, 10), {});
    QCOMPARE(title(), u"untitled 2 * - Snap Workbench"_s);
}

void TestMainWindow::documentsKeepTheirState()
{
    auto *area = m_window->findChild<QScrollArea *>(u"scrollArea"_s);
    m_window->NewDocument(picture(4000, 3000), {});
    click("BtnZoomOut");
    const QSize zoomedOut = area->widget()->size();
    m_window->MovePicture(-123, -77);
    QCOMPARE(area->horizontalScrollBar()->value(), 123);
    m_window->MovePicture(1000, -100000);
    QCOMPARE(area->horizontalScrollBar()->value(), 0);
    QCOMPARE(area->verticalScrollBar()->value(), area->verticalScrollBar()->maximum());
    area->horizontalScrollBar()->setValue(50);
    const int bottom = area->verticalScrollBar()->value();

    m_window->NewDocument(picture(20, 20), {});
    QCOMPARE(area->widget()->size(), area->size());
    tabs()->setCurrentIndex(0);
    QCOMPARE(area->widget()->size(), zoomedOut);
    QCOMPARE(area->horizontalScrollBar()->value(), 50);
    QCOMPARE(area->verticalScrollBar()->value(), bottom);
}

void TestMainWindow::shapesStayWithTheirDocument()
{
    const QString path = m_shell->folder.filePath(u"a.png"_s);
    QVERIFY(picture(20, 20).save(path));
    auto *editor = m_window->findChild<TPictureEditor *>();
    m_window->NewDocument(picture(20, 20), {});
    const EditHistory history{std::make_shared<const EditEntry>()};
    editor->setVecUnDo(&history);
    m_window->NewDocument(picture(20, 20), {});
    QVERIFY(editor->getVecUnDo().isEmpty());
    // New tab texts take the keys from nobody: Escape has to reach a drag.
    auto *view = m_window->findChild<QWidget *>(u"lblPicture"_s);
    view->setFocus();
    m_window->RefillTabList();
    QCOMPARE(m_window->focusWidget(), view);
    tabs()->setCurrentIndex(0);
    QCOMPARE(editor->getVecUnDo(), history);
    click("BtnUndo");
    QCOMPARE(editor->getVecReDo(), history);
    tabs()->setCurrentIndex(1);
    QVERIFY(editor->getVecReDo().isEmpty());

    // What was typed in one stays there, also where its star is new and makes new tabs.
    m_window->openPictures({path});
    awaitJobs(*m_window);
    const auto *sheet = m_window->findChild<QWidget *>(u"lblPicture"_s);
    QWindow *native = m_window->windowHandle();
    const auto at = [&](QPoint place) { return sheet->mapTo(m_window, place); };
    click("BtnDrawText");
    QTest::mouseClick(native, Qt::LeftButton, {}, at(sheet->rect().center()));
    QTest::keyClicks(sheet->findChild<QTextEdit *>(), u"mine"_s);
    QTest::mouseClick(native, Qt::LeftButton, {},
                      tabs()->tabBar()->mapTo(m_window, tabs()->tabBar()->tabRect(1).center()));
    QCOMPARE(tabs()->currentIndex(), 1);
    QVERIFY(editor->getVecUnDo().isEmpty());
    tabs()->setCurrentIndex(2);
    QCOMPARE(editor->getVecUnDo().size(), 1);
    QCOMPARE(editor->getVecUnDo().constFirst()->style.text, u"mine"_s);
    QCOMPARE(title(), u"a.png * - Snap Workbench"_s);

    // What lies in the margin is told of once.
    click("BtnDrawRect");
    const auto drawBeside = [&] {
        QTest::mousePress(native, Qt::LeftButton, {}, at({5, 5}));
        QTest::mouseRelease(native, Qt::LeftButton, {}, at({15, 15}));
        const auto *notice = m_window->findChild<NoticeBar *>();
        return notice ? notice->text() : QString();
    };
    QVERIFY(drawBeside().contains(u"outside the picture"_s));
    m_window->say(u"else"_s);
    QCOMPARE(drawBeside(), u"else"_s);
}

void TestMainWindow::zoomLimits_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<QByteArray>("button");
    QTest::addColumn<int>("clicks");
    QTest::addColumn<float>("scale");
    QTest::newRow("in by 1.4") << 100 << QByteArray("BtnZoomIn") << 1 << 1.4F;
    QTest::newRow("out by 1.4") << 100 << QByteArray("BtnZoomOut") << 1 << 1 / 1.4F;
    QTest::newRow("upper limit") << 2900 << QByteArray("BtnZoomIn") << 3 << 3000.0F / 2900;
    QTest::newRow("upper limit makes smaller") << 6000 << QByteArray("BtnZoomIn") << 1 << 0.5F;
    QTest::newRow("lower limit") << 100 << QByteArray("BtnZoomOut") << 9 << 0.5F;
    QTest::newRow("lower limit enlarges") << 40 << QByteArray("BtnZoomOut") << 1 << 1.25F;
    QTest::newRow("real size") << 100 << QByteArray("BtnRealSize") << 1 << 1.0F;
}

void TestMainWindow::zoomLimits()
{
    QFETCH(int, width);
    QFETCH(QByteArray, button);
    QFETCH(int, clicks);
    m_window->NewDocument(picture(width, 5), {});
    for (int i = 0; i < clicks; ++i)
        click(button.constData());
    QTEST(m_window->findChild<TPictureEditor *>()->getPixmapScaled(), "scale");
}

void TestMainWindow::closing()
{
    for (const auto *name : {"a", "b", "c"})
        m_window->NewDocument(picture(10, 10), QLatin1StringView(name));
    tabs()->setCurrentIndex(1);
    Answer cancel(QMessageBox::Cancel);
    m_window->CloseFile();
    QCOMPARE(cancel.text, u"Save changes to \"b\" ?"_s);
    QCOMPARE(tabs()->count(), 3);
    cancel.timer.stop();

    const Answer discard(QMessageBox::Discard);
    // The number stays when a tab in front of the current one goes.
    m_window->CloseFile(0);
    QCOMPARE(title(), u"c * - Snap Workbench"_s);
    m_window->CloseFile();
    QCOMPARE(title(), u"b * - Snap Workbench"_s);
    m_window->CloseFile();
    QCOMPARE(title(), u"Snap Workbench"_s);
    QVERIFY(!m_window->findChild<QWidget *>(u"WidScrollArea"_s)->isVisible());
    m_window->CloseFile();
    QCOMPARE(tabs()->count(), 0);
}

void TestMainWindow::closingCanBeRefused()
{
    m_window->NewDocument(picture(10, 10), {});
    m_window->NewDocument(picture(10, 10), {});
    Answer cancel(QMessageBox::Cancel);
    QVERIFY(!m_window->CloseAllFiles());
    QCOMPARE(cancel.text, u"Save all changes ?"_s);
    QVERIFY(!m_window->close());
    QVERIFY(m_window->isVisible());
    QCOMPARE(tabs()->count(), 2);
}

void TestMainWindow::nullPicture()
{
    m_window->NewDocument({}, u"broken"_s);
    for (const char *button :
         {"BtnZoomIn", "BtnZoomOut", "BtnRealSize", "BtnUndo", "BtnRedo", "BtnCopy"})
        click(button);
    m_window->grab();
    m_window->NewDocument(picture(10, 10), {});
    tabs()->setCurrentIndex(0);
    const Answer discard(QMessageBox::Discard);
    m_window->CloseFile();
    QCOMPARE(tabs()->count(), 1);
}

void TestMainWindow::copying()
{
    QVERIFY(!m_window->CopyFile());
    m_window->NewDocument(picture(12, 34, Qt::green), {});
    QVERIFY(m_window->CopyFile());
    QCOMPARE(QApplication::clipboard()->image().size(), QSize(12, 34));
    QCOMPARE(QApplication::clipboard()->image().pixelColor(3, 3), QColor(Qt::green));
}

// Grabs are told apart by their captions, so none may be without a row in the table of commands.
void TestMainWindow::everyCaptureItemHasACommand()
{
    int items = 0;
    for (const QMenu *menu : m_window->findChildren<QMenu *>()) {
        if (menu->isEmpty() || !menu->actions().constFirst()->text().endsWith(u"Rectangular"_s))
            continue;
        for (const QAction *action : menu->actions()) {
            if (action->isSeparator())
                continue;
            QVERIFY2(MainWindow::hasCaptureCommand(action->text()), qPrintable(action->text()));
            ++items;
        }
    }
    QCOMPARE(items, 7 + 10);
    QVERIFY(!MainWindow::hasCaptureCommand({}));
}

void TestMainWindow::shortcuts()
{
    // No key may have two owners in the window: the toolkit would call neither.
    QList<QKeySequence> keys;
    for (const QShortcut *shortcut : m_window->findChildren<QShortcut *>())
        keys.append(shortcut->key());
    for (const QPushButton *button : m_window->findChildren<QPushButton *>())
        QVERIFY(button->shortcut().isEmpty());
    for (const QAction *menu : m_window->findChild<QMenuBar *>()->actions()) {
        for (const QAction *action : menu->menu()->actions()) {
            if (action->shortcutContext() == Qt::WindowShortcut)
                keys.append(action->shortcut());
        }
    }
    keys.removeAll(QKeySequence());
    QCOMPARE(QSet<QKeySequence>(keys.begin(), keys.end()).size(), keys.size());
    QVERIFY(keys.contains(QKeySequence(u"Ctrl+S"_s)));
}

void TestMainWindow::fileMenu()
{
    const auto item = [this](int data) {
        for (QAction *action : m_window->findChildren<QAction *>()) {
            if (action->data().toInt() == data)
                return action;
        }
        return static_cast<QAction *>(nullptr);
    };
    m_window->BeforeShowFile();
    QCOMPARE(item(2)->text(), u"Save "_s);
    QVERIFY(!item(1)->isEnabled());
    m_window->NewDocument(picture(10, 10), u"a&b"_s);
    QCOMPARE(item(3)->text(), u"Save \"a&&b\" As..."_s);
    QVERIFY(item(1)->isEnabled() && item(2)->isEnabled() && item(3)->isEnabled());
}

// A title of any length keeps both ends, and takes room from no control.
void TestMainWindow::longTitle()
{
    m_window->resize(950, 650);
    m_window->NewDocument(picture(10, 10), QString(300, u'W'));
    auto *caption = m_window->findChild<QLabel *>(u"LblCaption"_s);
    QCOMPARE(caption->text(), title());
    QTRY_COMPARE(m_window->width(), 950);
    const QWidget *bar = m_window->findChild<QMenuBar *>();
    const QWidget *close = m_window->findChild<QPushButton *>(u"BtnClose"_s);
    const auto left = [this](const QWidget *widget) {
        return widget->mapTo(m_window, QPoint()).x();
    };
    QTRY_VERIFY(left(caption) >= left(bar) + bar->sizeHint().width());
    QVERIFY(left(caption) + caption->width() <= left(close));
    QVERIFY(left(close) + close->width() < 950);
    // What is shown ends well inside the label: the last columns are as empty as without a text.
    const QImage shown = caption->grab().toImage();
    QImage middle = shown.copy(shown.width() / 2 - 20, 0, 40, shown.height());
    caption->setText({});
    const QImage empty = caption->grab().toImage();
    QVERIFY(middle != empty.copy(shown.width() / 2 - 20, 0, 40, shown.height()));
    const QRect edge(shown.width() - 1, 0, 1, shown.height());
    QCOMPARE(shown.copy(edge), empty.copy(edge));
}

void TestMainWindow::largeFont()
{
    const QFont usual = QApplication::font();
    QFont large = usual;
    large.setPointSizeF(usual.pointSizeF() * 2);
    QApplication::setFont(large);
    m_window->resize(950, 650);
    m_window->NewDocument(picture(10, 10), {});
    QCoreApplication::processEvents();
    QCOMPARE(m_window->size(), QSize(950, 650));
    const QMenuBar *bar = m_window->findChild<QMenuBar *>();
    const QTabBar *bars = tabs()->tabBar();
    for (const QWidget *widget :
         {static_cast<const QWidget *>(bar), static_cast<const QWidget *>(bars)})
        QCOMPARE(widget->font().pointSizeF(), large.pointSizeF());
    for (const QComboBox *box : m_window->findChildren<QComboBox *>()) {
        QCOMPARE(box->font().pointSizeF(), large.pointSizeF());
        QTRY_VERIFY(box->height() >= box->sizeHint().height());
        // Beside the text stands the arrow.
        QVERIFY(box->width() >= QFontMetrics(large).horizontalAdvance(box->currentText()) + 35);
    }
    QVERIFY(bar->width() >= bar->sizeHint().width() && bar->height() >= bar->sizeHint().height());
    QVERIFY(bars->tabRect(0).height() >= QFontMetrics(bars->font()).height());
    QApplication::setFont(usual);
}

// What has no room on a strip works from the menu at its end, and comes back with the room.
void TestMainWindow::narrowWindow()
{
    QCOMPARE(m_window->minimumSize(), QSize(950, 650).boundedTo(m_window->screen()->size()));
    m_window->NewDocument(picture(100, 100), {});
    auto *strip = m_window->findChild<QWidget *>(u"widPictureEdit"_s);
    auto *fold = m_window->findChild<QPushButton *>(u"FoldPictureEdit"_s);
    const auto order = [strip] {
        QStringList names;
        for (int i = 0; i < strip->layout()->count(); ++i) {
            if (const QWidget *widget = strip->layout()->itemAt(i)->widget())
                names.append(widget->objectName());
        }
        return names;
    };
    const QStringList whole = order();
    auto *editor = m_window->findChild<TPictureEditor *>();
    m_window->setMinimumSize(1, 1);
    for (const int width : {560, 200}) {
        m_window->resize(width, 400);
        QTRY_VERIFY(fold->isVisible() && strip->layout()->minimumSize().width() <= strip->width());
        QVERIFY(strip->rect().contains(fold->geometry()));
        QStringList texts;
        QTimer::singleShot(0, this, [&] {
            for (const QAction *action : fold->menu()->actions())
                texts.append(action->text() + (action->isChecked() ? u"!"_s : QString()));
            auto *box = m_window->findChild<QComboBox *>(u"CmbFontSize"_s);
            QVERIFY(box->isVisible() && fold->menu()->isAncestorOf(box));
            box->setCurrentIndex(7);
            QTest::keyClick(fold->menu(), Qt::Key_Escape);
        });
        fold->showMenu();
        QVERIFY2(texts.contains(u"Zoom in\tCtrl+="_s) || texts.contains(u"Zoom in"_s),
                 qPrintable(texts.join(u'|')));
        QCOMPARE(order(), whole);
    }
    QTimer::singleShot(0, this, [&] {
        const QList<QAction *> actions = fold->menu()->actions();
        (*std::find_if(actions.begin(), actions.end(), [](const QAction *action) {
            return action->text().startsWith(u"Freehand line"_s);
        }))->trigger();
        fold->menu()->close();
    });
    fold->showMenu();
    QCOMPARE(editor->getState(), statePoly);
    m_window->resize(950, 650);
    QTRY_VERIFY(!fold->isVisible());
    for (const QString &name : whole) {
        const QWidget *widget = strip->findChild<QWidget *>(name);
        QVERIFY2(widget == fold || widget->isVisible(), qPrintable(name));
    }
}

void TestMainWindow::keysWithoutAMenu()
{
    auto *editor = m_window->findChild<TPictureEditor *>();
    m_window->NewDocument(picture(100, 100), {});
    m_window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_window));
    const std::array<std::pair<Qt::Key, stateEnum>, 6> tools{{{Qt::Key_6, stateText},
                                                              {Qt::Key_2, stateRect},
                                                              {Qt::Key_3, stateEllipse},
                                                              {Qt::Key_4, stateArrow},
                                                              {Qt::Key_5, statePoly},
                                                              {Qt::Key_1, stateMove}}};
    for (const auto &[key, tool] : tools) {
        QTest::keyClick(m_window, key, Qt::ControlModifier);
        QCOMPARE(editor->getState(), tool);
    }
    QTest::keyClick(m_window, Qt::Key_Equal, Qt::ControlModifier);
    QCOMPARE(editor->getPixmapScaled(), 1.4F);
    QTest::keyClick(m_window, Qt::Key_Minus, Qt::ControlModifier);
    QTest::keyClick(m_window, Qt::Key_Minus, Qt::ControlModifier);
    QVERIFY(editor->getPixmapScaled() < 1);
    QTest::keyClick(m_window, Qt::Key_0, Qt::ControlModifier);
    QCOMPARE(editor->getPixmapScaled(), 1.0F);
}

void TestMainWindow::controlsHaveNames()
{
    for (const QWidget *widget :
         m_window->findChildren<QWidget *>(QRegularExpression(u"^(Btn|Cmb|Slider)"_s)))
        QVERIFY2(!widget->accessibleName().isEmpty(), qPrintable(widget->objectName()));
}

// A button's state whose picture can't be read leaves the picture that is there.
void TestMainWindow::damagedPicture()
{
    const QDir programFolder(QCoreApplication::applicationDirPath());
    const QString good = m_shell->folder.filePath(u"good.png"_s);
    const QString over = m_shell->folder.filePath(u"over.png"_s);
    QVERIFY(picture(28, 28, Qt::green).save(good));
    QFile(over).open(QIODevice::WriteOnly);
    const std::wstring file = g_ResourceFileName.toStdWString();
    const QByteArray path = "Galeway\\Default\\Buttons\\MainWindow\\BtnUndo";
    SetToXML(file.c_str(), path, "NormalImg", programFolder.relativeFilePath(good));
    SetToXML(file.c_str(), path, "OverImg", programFolder.relativeFilePath(over));
    auto *button = m_window->findChild<QPushButton *>(u"BtnUndo"_s);
    const auto shown = [button](QEvent::Type type) {
        QEvent event(type);
        QCoreApplication::sendEvent(button, &event);
        return button->grab().toImage().pixelColor(14, 14);
    };
    QCOMPARE(shown(QEvent::Leave), QColor(Qt::green));
    QCOMPARE(shown(QEvent::Enter), QColor(Qt::green));
    QVERIFY(picture(28, 28, Qt::blue).save(over));
    QCOMPARE(shown(QEvent::Enter), QColor(Qt::blue));
}

// Only the brightness is kept, and comes back as a shade of blue.
void TestMainWindow::lineColour()
{
    QTimer answer;
    connect(&answer, &QTimer::timeout, this, [] {
        auto *dialog = qobject_cast<QColorDialog *>(QApplication::activeModalWidget());
        if (!dialog)
            return;
        dialog->setCurrentColor(QColor(10, 200, 30));
        dialog->accept();
    });
    answer.start(1);
    click("BtnColor");
    const auto penColour = [this] {
        return m_shell->window->findChild<TPictureEditor *>()->getPenColor();
    };
    QCOMPARE(penColour(), QColor(10, 200, 30));
    m_shell->end();
    FreeAllXmlDocument();
    m_shell->start();
    QCOMPARE(GetConfigString(u"LineColor"_s), u"200"_s);
    QCOMPARE(penColour().rgb(), qRgb(0, 0, 200));
}

// The picture covers its area whole, so the focus has to be shown over it.
void TestMainWindow::focusIsSeen()
{
    m_window->NewDocument(picture(4000, 3000, Qt::white), {});
    m_window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_window));
    auto *area = m_window->findChild<QScrollArea *>(u"scrollArea"_s);
    const auto edge = [area] { return area->parentWidget()->grab().toImage().pixelColor(0, 100); };
    const QColor plain(Qt::white);
    QCOMPARE(edge(), plain);
    area->setFocus(Qt::TabFocusReason);
    QCOMPARE(edge(), QColor(28, 126, 214));
    QTest::keyClick(area, Qt::Key_Tab);
    QCOMPARE(edge(), plain);
    QTest::mouseClick(area->viewport(), Qt::LeftButton);
    QCOMPARE(edge(), plain);
}

// The caret stays where it was, whichever box was used and whatever was chosen in it.
void TestMainWindow::fontWhileTyping()
{
    m_window->NewDocument(picture(400, 300, Qt::white), {});
    m_window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_window));
    auto *view = m_window->findChild<QWidget *>(u"lblPicture"_s);
    click("BtnDrawText");
    QTest::mouseClick(m_window->windowHandle(), Qt::LeftButton, {},
                      view->mapTo(m_window, view->rect().center()));
    auto *field = view->findChild<QTextEdit *>();
    QTest::keyClicks(field, u"abcd"_s);
    QTest::keyClick(field, Qt::Key_Left);
    for (const auto &name : {u"CmbFont"_s, u"CmbFontSize"_s}) {
        auto *box = m_window->findChild<QComboBox *>(name);
        for (const auto key : {Qt::Key_Down, Qt::Key_Space}) {
            box->setFocus();
            box->showPopup();
            // No font's name is cut in the list.
            QVERIFY(name == u"CmbFontSize" ||
                    box->view()->viewport()->width() >= box->view()->sizeHintForColumn(0));
            if (key == Qt::Key_Down)
                QTest::keyClick(box->view(), key);
            QTest::keyClick(box->view(), Qt::Key_Return);
            QCOMPARE(m_window->focusWidget(), field);
        }
    }
    QTest::keyClicks(field, u"X"_s);
    QCOMPARE(field->toPlainText(), u"abcX"_s);
    QVERIFY(m_window->findChild<TPictureEditor *>()->getVecUnDo().isEmpty());
}

// How a press on the caption comes that follows another one soon.
void TestMainWindow::doubleClickMoves()
{
    const QPoint before = m_window->pos();
    const QPointF hold(300, 1);
    const auto send = [&](QEvent::Type type, QPointF at, Qt::MouseButtons buttons) {
        QMouseEvent event(type, at, m_window->pos() + at, Qt::LeftButton, buttons, Qt::NoModifier);
        QCoreApplication::sendEvent(m_window, &event);
    };
    send(QEvent::MouseButtonDblClick, hold, Qt::LeftButton);
    send(QEvent::MouseMove, hold + QPointF(40, 30), Qt::LeftButton);
    send(QEvent::MouseButtonRelease, hold, Qt::NoButton);
    QCOMPARE(m_window->pos(), before + QPoint(40, 30));
}

void TestMainWindow::aboutBox()
{
    wcscpy(g_Logo, L"Workbench <b>");
    wcscpy(g_Ver, L"7.8.9");
    wcscpy(g_AppCompany, L"A & Company");
    wcscpy(g_URL, L"https://home.example/?a=1&b=\"2\"");
    wcscpy(g_Email, L"help@home.example");
    QStringList texts;
    QTimer watch;
    connect(&watch, &QTimer::timeout, this, [&texts] {
        QWidget *box = QApplication::activeModalWidget();
        if (!box)
            return;
        for (const QLabel *label : box->findChildren<QLabel *>())
            texts.append(label->text());
        QTest::keyClick(box, Qt::Key_Return);
    });
    watch.start(1);
    m_window->About();
    for (const QString &expected :
         {u"Workbench <b>"_s, u"Version 7.8.9"_s, u"A & Company"_s, u"Registered"_s})
        QVERIFY2(texts.contains(expected), qPrintable(expected));
    const QString all = texts.join(u' ');
    QVERIFY(all.contains(u"href=\"https://home.example/?a=1&amp;b=&quot;2&quot;\""_s));
    QVERIFY(all.contains(u"href=\"mailto:help@home.example\""_s));
}

void TestMainWindow::wholeDesktopGrab()
{
    m_shell->desktop.windows->list = {{{.number = 1, .bounds = {0, 0, 800, 600}}, Qt::red}};
    QVERIFY(HotkeyCallBack(0, 0) == 0 && HotkeyCallBack(10, 0) == 0);
    g_MainWindow = nullptr;
    HotkeyCallBack(6, 0);
    g_MainWindow = m_window;
    QCOMPARE(tabs()->count(), 0);
    HotkeyCallBack(6, 0);
    QCOMPARE(tabs()->count(), 1);
    const QPixmap grabbed = m_window->findChild<TPictureEditor *>()->getPixmap();
    QCOMPARE(grabbed.size(), QSize(800, 600));
    QCOMPARE(grabbed.toImage().pixelColor(400, 300), QColor(Qt::red));
}

namespace {

using Way = std::function<void(MainWindow &)>;

Way button(const char *name)
{
    return [name](MainWindow &window) {
        window.findChild<QPushButton *>(QLatin1StringView(name))->click();
    };
}

// From the menu bar or the tray.
Way item(const QString &caption)
{
    return [caption](MainWindow &window) {
        const QList<QAction *> actions = window.findChildren<QAction *>();
        (*std::find_if(actions.begin(), actions.end(), [&](const QAction *action) {
            return action->text() == caption;
        }))->trigger();
    };
}

Way hotKey(long number)
{
    return [number](MainWindow &) { HotkeyCallBack(number, 0); };
}

}  // namespace

void TestMainWindow::everyWayToACommand_data()
{
    QTest::addColumn<Way>("way");
    QTest::addColumn<QString>("opens");
    const QString browser = u"WindowsPreView"_s;
    const QString countdown = u"DialogCountDown"_s;
    QTest::newRow("browser: button") << button("BtnAllWindows") << browser;
    QTest::newRow("browser: menus") << item(u"All Windows"_s) << browser;
    QTest::newRow("browser: hot key") << hotKey(4) << browser;
    QTest::newRow("countdown: button") << button("BtnFullScreen") << countdown;
    QTest::newRow("countdown: menu") << item(u"Full Screen"_s) << countdown;
    QTest::newRow("countdown: tray")
        << item(u"Capture Full Screen with Countdown Timer"_s) << countdown;
    QTest::newRow("countdown: hot key") << hotKey(7) << countdown;
    QTest::newRow("at once: tray") << item(u"Capture Full Screen"_s) << QString();
    QTest::newRow("at once: hot key") << hotKey(6) << QString();
}

void TestMainWindow::everyWayToACommand()
{
    QFETCH(Way, way);
    QFETCH(QString, opens);
    m_shell->desktop.windows->list = {{{.number = 1, .bounds = {0, 0, 800, 600}}, Qt::red}};
    SetConfigString(u"ScreenTimer"_s, u"1000"_s);
    QStringList opened;
    QTimer watch;
    connect(&watch, &QTimer::timeout, this, [&] {
        for (QWidget *widget : QApplication::topLevelWidgets()) {
            if (!qobject_cast<QDialog *>(widget) || !widget->isVisible())
                continue;
            opened.append(QString::fromLatin1(widget->metaObject()->className()));
            QTest::keyClick(widget, Qt::Key_Escape);
        }
    });
    watch.start(1);
    way(*m_window);
    QCOMPARE(opened.value(0), opens);
    // What is given up leaves no picture.
    QCOMPARE(tabs()->count(), opens.isEmpty() ? 1 : 0);
}

void TestMainWindow::browserMakesDocuments()
{
    m_shell->desktop.windows->list = {
        {{.number = 1, .bounds = {0, 0, 80, 60}, .owner = u"Mail"_s}, Qt::red},
        {{.number = 2, .bounds = {0, 0, 90, 70}, .owner = u"Mail"_s}, Qt::green},
        {{.number = 3, .bounds = {0, 0, 100, 80}}, Qt::blue}};
    QTimer watch;
    connect(&watch, &QTimer::timeout, this, [] {
        QWidget *browser = QApplication::activeModalWidget();
        if (!browser)
            return;
        QTest::keyClick(browser->findChild<QWidget *>(u"listWidget"_s), Qt::Key_A,
                        Qt::ControlModifier);
        QTest::keyClick(browser, Qt::Key_Return);
    });
    watch.start(1);
    m_window->ShowAllWindow();
    QCOMPARE(tabs()->count(), 3);
    QCOMPARE(m_window->GetFileShowName(0), u"Mail"_s);
    QCOMPARE(m_window->GetFileShowName(1), u"Mail 1"_s);
    QCOMPARE(title(), u"untitled * - Snap Workbench"_s);
    QCOMPARE(m_window->findChild<TPictureEditor *>()->getPixmap().size(), QSize(100, 80));
}

QTEST_MAIN(TestMainWindow)
#include "test_mainwindow.moc"
