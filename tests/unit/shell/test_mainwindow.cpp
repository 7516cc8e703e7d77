#include "config/settings.h"
#include "rows.h"
#include "shell/commands.h"
#include "shellfixture.h"

#include <array>
#include <cwchar>

using namespace Qt::StringLiterals;

class TestMainWindow : public ShellTest
{
    Q_OBJECT

private slots:
    void init()
    {
        begin();
        m_window->InitShowGeometry();
        m_window->show();
    }
    void cleanup() { finish(); }

    void numbersAndTitles()
    {
        QCOMPARE(title(), u"Snap Workbench"_s);
        add();
        QCOMPARE(title(), u"untitled * - Snap Workbench"_s);
        add();
        add({20, 20}, u"Mail & more"_s);
        add({20, 20}, u"Mail & more"_s);
        QCOMPARE(title(), u"Mail & more 1 * - Snap Workbench"_s);
        QCOMPARE(tabs()->count(), 4);
        QCOMPARE(m_window->GetFileShowName(1), u"untitled 1"_s);
        answer(QMessageBox::Discard);
        QVERIFY(m_window->CloseAllFiles());
        QCOMPARE(title(), u"Snap Workbench"_s);
        // Numbers are never given back.
        add();
        QCOMPARE(title(), u"untitled 2 * - Snap Workbench"_s);
    }

    void documentsKeepTheirState()
    {
        auto *area = m_window->findChild<QScrollArea *>(u"scrollArea"_s);
        add({4000, 3000});
        button("BtnZoomOut")->click();
        const QSize zoomedOut = area->widget()->size();
        m_window->MovePicture(-123, -77);
        QCOMPARE(area->horizontalScrollBar()->value(), 123);
        m_window->MovePicture(1000, -100000);
        QCOMPARE(area->horizontalScrollBar()->value(), 0);
        QCOMPARE(area->verticalScrollBar()->value(), area->verticalScrollBar()->maximum());
        area->horizontalScrollBar()->setValue(50);
        const int bottom = area->verticalScrollBar()->value();

        add();
        QCOMPARE(area->widget()->size(), area->size());
        tabs()->setCurrentIndex(0);
        QCOMPARE(area->widget()->size(), zoomedOut);
        QCOMPARE(area->horizontalScrollBar()->value(), 50);
        QCOMPARE(area->verticalScrollBar()->value(), bottom);
        button("BtnRealSize")->click();
        QCOMPARE(editor()->getPixmapScaled(), 1.0F);
        button("BtnZoomIn")->click();
        QCOMPARE(editor()->getPixmapScaled(), 1.0F);
    }

    // The wheel zooms, and the pixel below the pointer stays there; what fits has no bar, and what
    // is as large as it gets is drawn at the cost of what is seen of it.
    void zooming()
    {
        auto *area = m_window->findChild<QScrollArea *>(u"scrollArea"_s);
        auto *box = m_window->findChild<QComboBox *>(u"CmbZoom"_s);
        auto *size = m_window->findChild<QLabel *>(u"lblPictureSize"_s);
        QVERIFY(!box->isEnabled());
        add({3000, 40});
        QVERIFY(area->horizontalScrollBar()->maximum() > 0);
        QCOMPARE(area->verticalScrollBar()->maximum(), 0);
        QCOMPARE(size->text(), u"3000 × 40 px"_s);
        add({3840, 2160});
        QCOMPARE(box->currentText(), u"100%"_s);
        const QPoint place(311, 207);
        const auto pixel = [&] {
            const ViewMapping shown{view()->size(), editor()->pictureSize(),
                                    editor()->getPixmapScaled()};
            return shown.toPicture(view()->mapFrom(area->viewport(), place));
        };
        const auto turn = [&](int delta) {
            const QPointF at = view()->mapFrom(area->viewport(), place);
            QWheelEvent event(at, view()->mapToGlobal(at), {}, {0, delta}, {}, Qt::ControlModifier,
                              Qt::NoScrollPhase, false);
            QCoreApplication::sendEvent(view(), &event);
        };
        area->horizontalScrollBar()->setValue(1000);
        area->verticalScrollBar()->setValue(800);
        const QPoint before = pixel();
        for (int i = 0; i < 11; ++i) {
            turn(120);
            QCOMPARE(pixel(), before);
        }
        QCOMPARE(box->currentText(), u"800%"_s);
        QElapsedTimer timer;
        timer.start();
        for (const bool isSharp : {true, false}) {
            editor()->setSharp(isSharp);
            view()->repaint();
        }
        QVERIFY2(timer.elapsed() < 1000, qPrintable(QString::number(timer.elapsed())));
        for (int i = 0; i < 9; ++i)
            turn(-120);
        QCOMPARE(editor()->getPixmapScaled(), 1.0F);
        QCOMPARE(pixel(), before);

        // The box takes what is near to a number, and nothing else.
        activate();
        const auto type = [&](const QString &text) {
            box->setFocus();
            box->lineEdit()->selectAll();
            QTest::keyClicks(box, text);
            QTest::keyClick(box, Qt::Key_Return);
            return box->currentText();
        };
        QCOMPARE(type(u"50"_s), u"50%"_s);
        QCOMPARE(m_window->focusWidget(), view());
        QCOMPARE(type(u"lots"_s), u"50%"_s);
        QCOMPARE(type(u"99999 %"_s), u"800%"_s);
        QCOMPARE(type(u"0,1"_s), u"1.3%"_s);
        QTest::keyClick(m_window.get(), Qt::Key_9, Qt::ControlModifier);
        QCOMPARE(area->horizontalScrollBar()->maximum() + area->verticalScrollBar()->maximum(), 0);
        QVERIFY(editor()->getPixmapScaled() * 3840 > area->width() - 2 ||
                editor()->getPixmapScaled() * 2160 > area->height() - 2);
    }

    // By the middle button a tab is closed, by the right one it comes to the front with a menu, of
    // which each item is about it.
    void tabsByPointer()
    {
        const QString path = at(u"a.png"_s);
        QVERIFY(solid({20, 30}).save(path));
        open({path});
        for (int i = 0; i < 3; ++i)
            add({10, 10}, u"grab"_s);
        QTabBar *bar = tabs()->tabBar();
        const auto at = [bar](int tab) { return bar->tabRect(tab).center(); };
        QHelpEvent help(QEvent::ToolTip, at(0), bar->mapToGlobal(at(0)));
        QCoreApplication::sendEvent(bar, &help);
        QVERIFY(QToolTip::text().contains(path) && QToolTip::text().contains(u"20 × 30"_s));
        QContextMenuEvent event(QContextMenuEvent::Mouse, at(0), bar->mapToGlobal(at(0)));
        QCoreApplication::sendEvent(bar, &event);
        QCOMPARE(tabs()->currentIndex(), 0);
        auto *menu = m_window->findChild<QMenu *>(u"TabMenu"_s);
        QVERIFY(menu->isVisible());
        const auto item = [menu](int data) {
            for (QAction *action : menu->actions()) {
                if (action->data().toInt() == data)
                    return action;
            }
            return static_cast<QAction *>(nullptr);
        };
        QVERIFY(item(Command::FileItem)->isEnabled() && item(Command::OthersItem)->isEnabled() &&
                !item(Command::SaveItem)->isEnabled());
        menu->close();
        // It ends where the user cancels, and leaves the one that was kept in front.
        answer(QMessageBox::Discard, [this] { answer(QMessageBox::Cancel); });
        item(Command::OthersItem)->trigger();
        QCOMPARE(tabs()->count(), 3);
        QCOMPARE(tabs()->currentIndex(), 0);
        answer(QMessageBox::Discard);
        QTest::mouseClick(bar, Qt::MiddleButton, {}, at(2));
        QCOMPARE(tabs()->count(), 2);
        QTest::mousePress(bar, Qt::MiddleButton, {}, at(0));
        QTest::mouseRelease(bar, Qt::MiddleButton, {}, at(1));
        QCOMPARE(tabs()->count(), 2);
    }

    void shapesStayWithTheirDocument()
    {
        const QString path = at(u"a.png"_s);
        QVERIFY(solid({20, 20}).save(path));
        add();
        const EditHistory history{adding({})};
        editor()->setVecUnDo(&history);
        add();
        QVERIFY(editor()->getVecUnDo().isEmpty());
        // New tab texts take the keys from nobody: Escape has to reach a drag.
        view()->setFocus();
        m_window->RefillTabList();
        QCOMPARE(m_window->focusWidget(), view());
        tabs()->setCurrentIndex(0);
        QCOMPARE(editor()->getVecUnDo(), history);
        button("BtnUndo")->click();
        QCOMPARE(editor()->getVecReDo(), history);
        tabs()->setCurrentIndex(1);
        QVERIFY(editor()->getVecReDo().isEmpty());

        // What was typed in one stays there, also where its star is new and makes new tabs.
        open({path});
        button("BtnDrawText")->click();
        clickAt(view(), view()->rect().center());
        QTest::keyClicks(view()->findChild<QTextEdit *>(), u"mine"_s);
        clickAt(tabs()->tabBar(), tabs()->tabBar()->tabRect(1).center());
        QCOMPARE(tabs()->currentIndex(), 1);
        QVERIFY(editor()->getVecUnDo().isEmpty());
        tabs()->setCurrentIndex(2);
        QCOMPARE(editor()->getVecUnDo().size(), 1);
        QCOMPARE(shapeOf(*editor()->getVecUnDo().constFirst())->style.text, u"mine"_s);
        QCOMPARE(title(), u"a.png * - Snap Workbench"_s);

        // What lies in the margin is told of once.
        button("BtnDrawRect")->click();
        const auto drawBeside = [&] {
            QWindow *native = m_window->windowHandle();
            const QPoint corner = view()->mapTo(m_window.get(), QPoint(5, 5));
            QTest::mousePress(native, Qt::LeftButton, {}, corner);
            QTest::mouseRelease(native, Qt::LeftButton, {}, corner + QPoint(10, 10));
            return told();
        };
        QVERIFY(drawBeside().contains(u"outside the picture"_s));
        m_window->say(u"else"_s);
        QCOMPARE(drawBeside(), u"else"_s);
    }

    void closing()
    {
        for (const auto &name : {u"a"_s, u"b"_s, u"c"_s})
            add({10, 10}, name);
        tabs()->setCurrentIndex(1);
        answer(QMessageBox::Cancel);
        m_window->CloseFile();
        QCOMPARE(m_asked, u"Save changes to \"b\" ?"_s);
        answer(QMessageBox::Cancel);
        QVERIFY(!m_window->CloseAllFiles());
        QCOMPARE(m_asked, u"Save all changes ?"_s);
        answer(QMessageBox::Cancel);
        QVERIFY(!m_window->close());
        QVERIFY(m_window->isVisible());
        QCOMPARE(tabs()->count(), 3);

        // The number stays when a tab in front of the current one goes.
        for (const auto &[index, left] : {std::pair(0, u"c * - Snap Workbench"_s),
                                          {-1, u"b * - Snap Workbench"_s},
                                          {-1, u"Snap Workbench"_s}}) {
            answer(QMessageBox::Discard);
            m_window->CloseFile(index);
            QCOMPARE(title(), left);
        }
        QVERIFY(!m_window->findChild<QWidget *>(u"WidScrollArea"_s)->isVisible());
        m_window->CloseFile();
        QCOMPARE(tabs()->count(), 0);
    }

    void nullPicture()
    {
        m_window->NewDocument({}, u"broken"_s);
        for (const char *name :
             {"BtnZoomIn", "BtnZoomOut", "BtnRealSize", "BtnUndo", "BtnRedo", "BtnCopy"})
            button(name)->click();
        m_window->grab();
        add();
        tabs()->setCurrentIndex(0);
        answer(QMessageBox::Discard);
        m_window->CloseFile();
        QCOMPARE(tabs()->count(), 1);
    }

    void copying()
    {
        QVERIFY(!m_window->CopyFile());
        add({12, 34});
        QVERIFY(m_window->CopyFile());
        QCOMPARE(QApplication::clipboard()->image().size(), QSize(12, 34));
        QCOMPARE(QApplication::clipboard()->image().pixelColor(3, 3), QColor(Qt::blue));
    }

    // No key may have two owners in the window: the toolkit would call neither.
    void shortcuts()
    {
        QList<QKeySequence> keys;
        for (const QShortcut *shortcut : m_window->findChildren<QShortcut *>())
            keys.append(shortcut->key());
        for (const QPushButton *button : m_window->findChildren<QPushButton *>())
            keys.append(button->shortcut());
        for (const QMenu *menu : m_window->findChild<QMenuBar *>()->findChildren<QMenu *>()) {
            for (const QAction *action : menu->actions()) {
                if (action->shortcutContext() == Qt::WindowShortcut)
                    keys.append(action->shortcut());
            }
        }
        keys.removeAll(QKeySequence());
        QCOMPARE(QSet<QKeySequence>(keys.begin(), keys.end()).size(), keys.size());
        QVERIFY(keys.contains(QKeySequence(u"Ctrl+S"_s)));
    }

    void fileMenu()
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
        add({10, 10}, u"a&b"_s);
        QCOMPARE(item(3)->text(), u"Save \"a&&b\" As..."_s);
        QVERIFY(item(1)->isEnabled() && item(2)->isEnabled() && item(3)->isEnabled());
    }

    // The last ten files that were opened or saved, over a restart; one that is gone leaves the
    // list, and the user is told.
    void recentFiles()
    {
        const auto items = [this] {
            auto *menu = m_window->findChild<QMenu *>(u"RecentMenu"_s);
            emit menu->aboutToShow();
            QList<QAction *> actions = menu->actions();
            return actions.first(actions.size() - 2);  // without the line and "Clear"
        };
        QStringList paths;
        for (int i = 0; i < 12; ++i) {
            paths.append(at(u"a&%1.png"_s.arg(i)));
            QVERIFY(solid({20, 30}).save(paths.last()));
        }
        open(paths + QStringList{at(u"missing.png"_s)});
        m_window->SetCurDocumentIndex(11);
        QVERIFY(m_window->SaveFile());
        answer(QMessageBox::Discard);
        m_window->CloseAllFiles();
        end();
        start();
        QCOMPARE(items().size(), 10);
        QVERIFY(items().first()->text().startsWith(u"&1 a&&11.png - "_s));
        QVERIFY(items().last()->text().startsWith(u"&0 a&&2.png - "_s));
        QVERIFY(QFile::remove(paths.at(11)));
        items().first()->trigger();
        QVERIFY(told().contains(paths.at(11)));
        QCOMPARE(tabs()->count(), 0);
        items().last()->trigger();
        awaitJobs();
        QCOMPARE(title(), u"a&2.png - Snap Workbench"_s);
        QCOMPARE(items().size(), 9);
        QVERIFY(items().first()->text().startsWith(u"&1 a&&2.png"_s));
        auto *menu = m_window->findChild<QMenu *>(u"RecentMenu"_s);
        menu->actions().last()->trigger();
        QVERIFY(items().isEmpty() && !menu->menuAction()->isEnabled());
    }

    // What is done to the picture as a whole: by keys that are dead without one, one step each, and
    // to the picture that was asked about, whatever comes to the front meanwhile.
    void editMenu()
    {
        QMenu *menu = m_window->findChild<QMenuBar *>()->actions().at(2)->menu();
        const auto enabled = [this, menu] {
            m_window->BeforeShowEdit();
            int count = 0;
            for (const QAction *action : menu->actions())
                count += !action->isSeparator() && !action->menu() && action->isEnabled();
            return count;
        };
        activate();
        const auto press = [this](Qt::Key key, Qt::KeyboardModifiers more = {}) {
            QTest::keyClick(m_window.get(), key, Qt::ControlModifier | more);
            return editor()->pictureSize();
        };
        QCOMPARE(enabled(), 1);
        QVERIFY(press(Qt::Key_R).isEmpty());
        add({400, 100});
        QCOMPARE(enabled(), 15);
        m_window->chooseTool(stateText);
        clickAt(view(), view()->rect().center());
        QTest::keyClicks(view()->findChild<QTextEdit *>(), u"mine"_s);
        button("BtnZoomIn")->click();
        const float zoom = editor()->getPixmapScaled();
        QCOMPARE(press(Qt::Key_R), QSize(100, 400));
        QCOMPARE(editor()->getVecUnDo().size(), 2);
        QCOMPARE(editor()->getPixmapScaled(), zoom);
        QVERIFY(view()->height() >= 400);
        QCOMPARE(press(Qt::Key_Z), QSize(400, 100));
        QCOMPARE(enabled(), 17);

        // Half of both sides, and then room at the right and below.
        whenUp<QDialog>([this](QDialog &dialog) {
            m_window->NewDocument(solid({5, 5}), u"other"_s);
            QTest::keyClicks(dialog.focusWidget(), u"99999"_s);
            auto *ok = dialog.findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Ok);
            QVERIFY(!ok->isEnabled());
            auto *unit = dialog.findChild<QComboBox *>();
            unit->setCurrentIndex(1);
            dialog.findChild<QDoubleSpinBox *>()->setValue(50);
            unit->setCurrentIndex(0);
            QVERIFY(ok->isEnabled());
            ok->click();
        });
        QCOMPARE(press(Qt::Key_R, Qt::ShiftModifier), QSize(200, 50));
        QCOMPARE(tabs()->currentIndex(), 0);
        activate();
        whenUp<QDialog>([](QDialog &dialog) {
            QTest::keyClicks(dialog.focusWidget(), u"300"_s);
            dialog.findChildren<QSpinBox *>().at(1)->setValue(60);
            dialog.activateWindow();
            QTRY_COMPARE(QApplication::activeWindow(), &dialog);
            auto *anchor = dialog.findChildren<QToolButton *>().at(4);
            anchor->setFocus();
            QTest::keyClick(anchor, Qt::Key_Left);
            QTest::keyClick(dialog.focusWidget(), Qt::Key_Up);
            dialog.accept();
        });
        QCOMPARE(press(Qt::Key_C, Qt::ShiftModifier), QSize(300, 60));
        const QImage extended = editor()->sendPixmap({}).toImage();
        QCOMPARE(extended.pixelColor(199, 49), QColor(Qt::blue));
        QCOMPARE(extended.pixelColor(200, 49), QColor(Qt::white));
        QCOMPARE(extended.pixelColor(199, 50), QColor(Qt::white));
        button("BtnUndo")->click();
        button("BtnUndo")->click();
        QCOMPARE(editor()->pictureSize(), QSize(400, 100));
        QVERIFY(m_window->HasModified(false));
    }

    // A title of any length keeps both ends, and takes room from no control.
    void longTitle()
    {
        m_window->resize(950, 650);
        add({10, 10}, QString(300, u'W'));
        auto *caption = m_window->findChild<QLabel *>(u"LblCaption"_s);
        QCOMPARE(caption->text(), title());
        QTRY_COMPARE(m_window->width(), 950);
        const QWidget *bar = m_window->findChild<QMenuBar *>();
        const auto left = [this](const QWidget *widget) {
            return widget->mapTo(m_window.get(), QPoint()).x();
        };
        QTRY_VERIFY(left(caption) >= left(bar) + bar->sizeHint().width());
        QVERIFY(left(caption) + caption->width() <= left(button("BtnClose")));
        QVERIFY(left(button("BtnClose")) + button("BtnClose")->width() < 950);
        // What is shown ends well inside the label: the last column is as empty as without a text.
        const QImage shown = caption->grab().toImage();
        caption->setText({});
        const QImage empty = caption->grab().toImage();
        const QRect middle(shown.width() / 2 - 20, 0, 40, shown.height());
        QVERIFY(shown.copy(middle) != empty.copy(middle));
        const QRect edge(shown.width() - 1, 0, 1, shown.height());
        QCOMPARE(shown.copy(edge), empty.copy(edge));
    }

    // While nothing is open the window offers what leads to a picture, however small it is, and can
    // be moved by all that lies between.
    void emptyWindow()
    {
        auto *panel = m_window->findChild<QScrollArea *>(u"StartPanel"_s);
        activate();
        QCOMPARE(button("BtnStartRectangle")->accessibleDescription(), u"Ctrl+Alt+R"_s);
        QWidget *headline = panel->findChild<QLabel *>();
        const QPoint hold = headline->mapTo(m_window.get(), headline->rect().center());
        const QPoint before = m_window->pos();
        QTest::mousePress(m_window->windowHandle(), Qt::LeftButton, {}, hold);
        QTest::mouseMove(m_window->windowHandle(), hold + QPoint(40, 30));
        QTest::mouseRelease(m_window->windowHandle(), Qt::LeftButton, {}, hold);
        QCOMPARE(m_window->pos(), before + QPoint(40, 30));

        m_window->setMinimumSize(1, 1);
        m_window->resize(300, 330);
        for (const char *name : {"BtnStartRectangle", "BtnStartWindow", "BtnStartScreen",
                                 "BtnStartOpen", "BtnStartPaste"}) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            QCOMPARE(QApplication::focusWidget(), button(name));
            QVERIFY2(button(name)->visibleRegion().boundingRect().height() > 20, name);
        }
        QGuiApplication::clipboard()->setImage(solid({30, 20}).toImage());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
        QCOMPARE(editor()->pictureSize(), QSize(30, 20));
        QVERIFY(!panel->isVisible());
        answer(QMessageBox::Discard);
        QVERIFY(m_window->CloseAllFiles());
        QVERIFY(panel->isVisible());
    }

    // What has no room on a strip works from the menu at its end, and comes back with the room.
    void narrowWindow()
    {
        QCOMPARE(m_window->minimumSize(), QSize(950, 650).boundedTo(m_window->screen()->size()));
        add();
        struct Row {
            QWidget *strip = nullptr;
            QPushButton *fold = nullptr;
            QList<QWidget *> whole{};
        };
        const auto order = [](const Row &row) {
            QList<QWidget *> widgets;
            for (int i = 0; i < row.strip->layout()->count(); ++i)
                widgets.append(row.strip->layout()->itemAt(i)->widget());
            widgets.removeAll(nullptr);
            return widgets;
        };
        std::array<Row, 2> rows{
            Row{m_window->findChild<QWidget *>(u"widPictureEdit"_s), button("FoldPictureEdit")},
            Row{m_window->findChild<QWidget *>(u"widPictureStyle"_s), button("FoldPictureStyle")}};
        for (Row &row : rows)
            row.whole = order(row);
        const auto whileOpen = [this](const Row &row, const std::function<void(QMenu &)> &run) {
            QTimer::singleShot(0, this, [&row, run] {
                run(*row.fold->menu());
                row.fold->menu()->close();
            });
            row.fold->showMenu();
        };
        const auto item = [](const QMenu &menu, const QString &text) {
            const QList<QAction *> items = menu.actions();
            const auto found = std::find_if(items.begin(), items.end(), [&](const QAction *action) {
                return action->text().startsWith(text);
            });
            return found == items.end() ? nullptr : *found;
        };
        m_window->setMinimumSize(1, 1);
        for (const int width : {500, 200}) {
            m_window->resize(width, 400);
            for (const Row &row : rows) {
                QTRY_VERIFY(row.fold->isVisible() &&
                            row.strip->layout()->minimumSize().width() <= row.strip->width());
                QTRY_VERIFY(row.strip->rect().contains(row.fold->geometry()));
            }
            whileOpen(rows[0], [&](QMenu &menu) { QVERIFY(item(menu, u"Zoom in"_s)); });
            whileOpen(rows[1], [&](QMenu &menu) {
                auto *box = m_window->findChild<QComboBox *>(u"CmbFontSize"_s);
                QVERIFY(box->isVisible() && menu.isAncestorOf(box));
                box->setCurrentIndex(7);
                QTest::keyClick(&menu, Qt::Key_Escape);
            });
            for (const Row &row : rows)
                QCOMPARE(order(row), row.whole);
        }
        whileOpen(rows[0], [&](QMenu &menu) { item(menu, u"Freehand line"_s)->trigger(); });
        QCOMPARE(editor()->getState(), statePoly);
        m_window->resize(950, 650);
        for (const Row &row : rows) {
            QTRY_VERIFY(!row.fold->isVisible());
            for (const QWidget *widget : row.whole)
                QVERIFY2(widget == row.fold || widget->isVisible(),
                         qPrintable(widget->objectName()));
        }
    }

    void keysWithoutAMenu()
    {
        add({100, 100});
        activate();
        const auto press = [this](Qt::Key key) {
            QTest::keyClick(m_window.get(), key, Qt::ControlModifier);
        };
        for (const auto &[key, tool] : {std::pair(Qt::Key_6, stateText),
                                        {Qt::Key_2, stateRect},
                                        {Qt::Key_3, stateEllipse},
                                        {Qt::Key_4, stateArrow},
                                        {Qt::Key_5, statePoly},
                                        {Qt::Key_1, stateMove}}) {
            press(key);
            QCOMPARE(editor()->getState(), tool);
        }
        press(Qt::Key_Equal);
        QVERIFY(editor()->getPixmapScaled() > 1);
        press(Qt::Key_0);
        QCOMPARE(editor()->getPixmapScaled(), 1.0F);
        press(Qt::Key_Equal);
        press(Qt::Key_Minus);
        QCOMPARE(editor()->getPixmapScaled(), 1.0F);
    }

    void controlsHaveNames()
    {
        for (const QWidget *widget :
             m_window->findChildren<QWidget *>(QRegularExpression(u"^(Btn|Cmb|Slider)"_s)))
            QVERIFY2(!widget->accessibleName().isEmpty(), qPrintable(widget->objectName()));
    }

    // A button's state whose picture can't be read leaves the picture that is there.
    void damagedPicture()
    {
        const QDir programFolder(QCoreApplication::applicationDirPath());
        const QString good = at(u"good.png"_s);
        QVERIFY(solid({28, 28}, Qt::green).save(good));
        const QString over = m_scratch->put(u"over.png"_s, "");
        const std::wstring file = g_ResourceFileName.toStdWString();
        const QByteArray path = "Galeway\\Default\\Buttons\\MainWindow\\BtnUndo";
        SetToXML(file.c_str(), path, "NormalImg", programFolder.relativeFilePath(good));
        SetToXML(file.c_str(), path, "OverImg", programFolder.relativeFilePath(over));
        const auto shown = [this](QEvent::Type type) {
            QEvent event(type);
            QCoreApplication::sendEvent(button("BtnUndo"), &event);
            return button("BtnUndo")->grab().toImage().pixelColor(14, 14);
        };
        QCOMPARE(shown(QEvent::Leave), QColor(Qt::green));
        QCOMPARE(shown(QEvent::Enter), QColor(Qt::green));
        QVERIFY(solid({28, 28}).save(over));
        QCOMPARE(shown(QEvent::Enter), QColor(Qt::blue));
    }

    // Of the pen only the brightness is kept, and comes back as a shade of blue, unless the user
    // wants the colour itself; a damaged one costs no more than that. What was chosen is
    // offered again: keys go through the rows, the one chosen last first, and then the palette.
    void lineColour()
    {
        whenUp<QColorDialog>([](QColorDialog &dialog) {
            dialog.setCurrentColor(QColor(10, 200, 30));
            dialog.accept();
        });
        const auto popup = [this] {
            button("BtnColor")->click();
            return QApplication::activePopupWidget();
        };
        popup()->findChild<QPushButton *>()->click();
        QTRY_COMPARE(editor()->getPenColor(), QColor(10, 200, 30));
        QWidget *offer = popup();
        QCOMPARE(offer->focusWidget()->accessibleName(), u"Green, #0ac81e"_s);
        for (const auto key : {Qt::Key_Down, Qt::Key_Right, Qt::Key_Down, Qt::Key_Return})
            QTest::keyClick(offer->focusWidget(), key);
        QCOMPARE(editor()->getPenColor(), QColor(Qt::red));
        finish();
        start();
        QCOMPARE(GetConfigString(u"LineColor"_s), u"255"_s);
        QCOMPARE(editor()->getPenColor().rgb(), qRgb(0, 0, 255));
        offer = popup();
        QCOMPARE(offer->findChild<QAbstractButton *>()->accessibleName(), u"Red, #ff0000"_s);
        QTest::keyClick(offer, Qt::Key_Escape);
        QVERIFY(!QApplication::activePopupWidget());
        m_window->useColor(QColor(10, 200, 30));
        SetConfigString(u"KeepLineColour"_s, u"1"_s);
        finish();
        start();
        QCOMPARE(editor()->getPenColor(), QColor(10, 200, 30));
        SetConfigString(u"LineColor.Whole"_s, u"#0acx"_s);
        end();
        start();
        QCOMPARE(editor()->getPenColor(), QColor(0, 0, 200));
    }

    // The picture covers its area whole, so the focus has to be shown over it.
    void focusIsSeen()
    {
        add({4000, 3000});
        activate();
        auto *area = m_window->findChild<QScrollArea *>(u"scrollArea"_s);
        const auto edge = [area] {
            return area->parentWidget()->grab().toImage().pixelColor(0, 100);
        };
        const QColor plain(Qt::blue);
        QCOMPARE(edge(), plain);
        area->setFocus(Qt::TabFocusReason);
        QCOMPARE(edge(), QColor(28, 126, 214));
        QTest::keyClick(area, Qt::Key_Tab);
        QCOMPARE(edge(), plain);
        QTest::mouseClick(area->viewport(), Qt::LeftButton);
        QCOMPARE(edge(), plain);
    }

    // The caret stays where it was, whichever box was used and whatever was chosen in it.
    void fontWhileTyping()
    {
        add({400, 300});
        activate();
        button("BtnDrawText")->click();
        clickAt(view(), view()->rect().center());
        auto *field = view()->findChild<QTextEdit *>();
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
        QVERIFY(editor()->getVecUnDo().isEmpty());
    }

    // How a press on the caption comes that follows another one soon.
    void doubleClickMoves()
    {
        const QPoint before = m_window->pos();
        const QPointF hold(300, 1);
        const auto send = [&](QEvent::Type type, QPointF at, Qt::MouseButtons buttons) {
            QMouseEvent event(type, at, m_window->pos() + at, Qt::LeftButton, buttons,
                              Qt::NoModifier);
            QCoreApplication::sendEvent(m_window.get(), &event);
        };
        send(QEvent::MouseButtonDblClick, hold, Qt::LeftButton);
        send(QEvent::MouseMove, hold + QPointF(40, 30), Qt::LeftButton);
        send(QEvent::MouseButtonRelease, hold, Qt::NoButton);
        QCOMPARE(m_window->pos(), before + QPoint(40, 30));
    }

    // What the desktop places keeps its size, and the place from before for one that can use it.
    // It may refuse to minimise, so the window is not there at first; with no tray it comes.
    void placedByTheDesktop()
    {
        const auto startThere = [this] {
            end();
            m_desktop->ownWindows->placing = false;
            start();
            m_window->InitShowGeometry();
            m_window->showAtStart();
        };
        SetConfigString(u"WindowLeft"_s, u"33"_s);
        SetConfigString(u"WindowHeight"_s, u"700"_s);
        startThere();
        QCOMPARE(m_window->height(), 700);
        button("BtnMax")->click();
        QVERIFY(m_window->isMaximized());
        m_window->SaveGeometry();
        startThere();
        QVERIFY(m_window->isMaximized() && m_window->GetMaximized());
        button("BtnMax")->click();
        QVERIFY(!m_window->isMaximized());
        QCOMPARE(m_window->height(), 700);
        m_window->SaveGeometry();
        QCOMPARE(GetConfigString(u"WindowLeft"_s), u"33"_s);
        SetConfigString(u"RunMinimized"_s, u"1"_s);
        startThere();
        QVERIFY(!m_window->isVisible());
        m_desktop->clock->advance(3000);
        QVERIFY(m_window->isVisible());
    }

    void aboutBox()
    {
        wcscpy(g_Logo, L"Workbench <b>");
        wcscpy(g_Ver, L"7.8.9");
        wcscpy(g_AppCompany, L"A & Company");
        wcscpy(g_URL, L"https://home.example/?a=1&b=\"2\"");
        wcscpy(g_Email, L"help@home.example");
        QStringList texts;
        whenUp<QDialog>([&texts](QDialog &box) {
            for (const QLabel *label : box.findChildren<QLabel *>())
                texts.append(label->text());
            QTest::keyClick(&box, Qt::Key_Return);
        });
        m_window->About();
        const QString all = texts.join(u'|');
        for (const auto &text :
             {u"Workbench <b>"_s, u"Version 7.8.9"_s, u"A & Company"_s, u"Registered"_s,
              u"href=\"https://home.example/?a=1&amp;b=&quot;2&quot;\""_s,
              u"href=\"mailto:help@home.example\""_s})
            QVERIFY2(all.contains(text), qPrintable(text));
    }

    void cancelFromTheTray()
    {
        SetConfigString(u"ScreenTimer"_s, u"1000"_s);
        const QList<QAction *> actions = m_window->findChildren<QAction *>();
        QAction *cancel = *std::find_if(actions.begin(), actions.end(), [](const QAction *action) {
            return action->text() == u"Cancel Capture";
        });
        QVERIFY(!cancel->isEnabled());
        QTimer::singleShot(0, m_window.get(), [cancel] { cancel->trigger(); });
        HotkeyCallBack(7, 0);
        QCOMPARE(tabs()->count(), 0);
        QVERIFY(!cancel->isEnabled());
    }

    void everyWayToACommand()
    {
        // What is given up leaves no picture.
        const auto check = [this](const QByteArray &row, const Hook &way, const QString &opens) {
            init();
            m_desktop->windows->list = {{{.number = 1, .bounds = {0, 0, 800, 600}}, Qt::red}};
            SetConfigString(u"ScreenTimer"_s, u"1000"_s);
            QString opened;
            QTimer watch;
            connect(&watch, &QTimer::timeout, this, [&] {
                for (QWidget *widget : QApplication::topLevelWidgets()) {
                    if (!qobject_cast<QDialog *>(widget) || !widget->isVisible())
                        continue;
                    opened = QString::fromLatin1(widget->metaObject()->className());
                    QTest::keyClick(widget, Qt::Key_Escape);
                }
            });
            watch.start(1);
            way();
            if (tabs()->count() == 1 &&
                editor()->getPixmap().toImage() == solid({800, 600}, Qt::red).toImage())
                opened += u"picture"_s;
            expect(row, opened, opens);
        };
        // From the menu bar or the tray.
        const auto item = [this](const QString &caption) {
            return [this, caption] {
                for (QAction *action : m_window->findChildren<QAction *>()) {
                    if (action->text() == caption)
                        return action->trigger();
                }
            };
        };
        const auto hotKey = [](long number) { return [number] { HotkeyCallBack(number, 0); }; };
        const QString browser = u"WindowsPreView"_s;
        const QString countdown = u"DialogCountDown"_s;
        const QString picture = u"picture"_s;
        check("menu", item(u"All Windows"_s), browser);
        check(
            "button", [this] { button("BtnFullScreen")->click(); }, countdown);
        check(
            "empty window", [this] { button("BtnStartScreen")->click(); }, picture);
        check("tray", item(u"Capture Full Screen"_s), picture);
        check("hot key", hotKey(7), countdown);
        check("no hot key", hotKey(0), {});
        check("no hot key either", hotKey(10), {});
    }
};

QTEST_MAIN(TestMainWindow)
#include "test_mainwindow.moc"
