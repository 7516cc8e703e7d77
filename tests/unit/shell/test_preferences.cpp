// The preferences on their own, and between the main window's settings and its menus.

#include "base/fileidentity.h"
#include "config/resourcefile.h"
#include "config/resourceupgrade.h"
#include "config/settings.h"
#include "platform/hotkeys.h"
#include "rows.h"
#include "shell/commands.h"
#include "shell/dialogpreference.h"
#include "shell/filespage.h"
#include "shell/keyfield.h"
#include "shell/keyspage.h"
#include "shellfixture.h"

using namespace Qt::StringLiterals;

class TestPreferences : public ShellTest
{
    Q_OBJECT

private slots:
    void init() { begin(); }
    void cleanup() { finish(); }

    void typedTimer()
    {
        auto *field = openDialog()->findChild<QComboBox *>(u"cmbTimer"_s)->lineEdit();
        const auto seconds = [field](const QString &typed) {
            field->selectAll();
            QTest::keyClick(field, Qt::Key_Delete);
            QTest::keyClicks(field, typed);
            QTest::keyClick(field, Qt::Key_Return);
            expect("the field's text", field->text(), typed);
            expect("stored", GetConfigString(u"ScreenTimer"_s),
                   QString::number(MainWindow::GetScreenTimerFromXML()));
            return MainWindow::GetScreenTimerFromXML();
        };
        expect("with unit", seconds(u"25s"_s), 25);
        expect("bare", seconds(u"7"_s), 7);
        expect("blank before", seconds(u" 12 s"_s), 12);
        expect("word", seconds(u"abc"_s), 0);
        expect("digit behind a word", seconds(u"s5"_s), 0);
        expect("below zero", seconds(u"-3"_s), -3);
        expect("nothing", seconds({}), 0);
        expect("hundred digits", seconds(QString(100, u'9')), 0);
        expect("hundred digits below zero", seconds(u'-' + QString(100, u'9')), 0);
        expect("wraps to one", seconds(u"4294967297"_s), 0);
    }

    void loadingWritesNothing()
    {
        SetConfigString(u"Magnification"_s, u"7"_s);
        SetConfigString(u"ScreenTimer"_s, u"25x"_s);
        SetConfigString(u"AutoHide"_s, u"2"_s);
        QVERIFY(!openDialog()->GetHide());
        QCOMPARE(stored({u"Magnification"_s, u"ScreenTimer"_s, u"AutoHide"_s}), u"7 25x 2"_s);
    }

    void oneChangeWritesAll()
    {
        SetConfigString(u"Magnification"_s, u"7"_s);
        SetConfigString(u"AutoShow"_s, u"1"_s);
        SetConfigString(u"ScreenTimer"_s, u"25"_s);
        DialogPreference *dialog = openDialog();
        dialog->findChild<QCheckBox *>(u"ChkAutoRun"_s)->click();
        QVERIFY(m_desktop->loginItem->present);
        const QStringList keys{u"FirstRun"_s,      u"RunMinimized"_s,   u"AutoHide"_s,
                               u"AutoShow"_s,      u"ScreenTimer"_s,    u"ShowMagnification"_s,
                               u"Magnification"_s, u"RememberStyles"_s, u"KeepLineColour"_s};
        // The dialog shows its first magnification where the setting has no entry.
        QCOMPARE(stored(keys), u"1 0 0 1 25 0 4 0 0"_s);
        for (QCheckBox *box :
             dialog->findChild<QWidget *>(u"pageGeneral"_s)->findChildren<QCheckBox *>()) {
            const QString before = stored(keys);
            box->click();
            QVERIFY2(stored(keys) != before, qPrintable(box->objectName()));
        }
        dialog->findChild<QComboBox *>(u"cmbMagnification"_s)->setCurrentIndex(3);
        dialog->findChild<QComboBox *>(u"cmbTimer"_s)->setCurrentIndex(3);
        QCOMPARE(stored(keys), u"0 1 1 0 3 1 10 1 1"_s);
        QVERIFY(!m_desktop->loginItem->present);
    }

    // Each page writes what it shows, and nothing that could not be used.
    void grabsAndFiles()
    {
        const DialogPreference *dialog = openDialog();
        const auto click = [&](const char *name) {
            auto *box = dialog->findChild<QCheckBox *>(QLatin1StringView(name));
            box->click();
            return box->isChecked();
        };
        QVERIFY(click("ChkCopy") && !click("ChkTab") && click("ChkNotify"));
        QVERIFY(Preferences::afterGrab() == (GrabGoals(GrabGoal::Copy) | GrabGoal::Notify));
        // A picture that would go nowhere opens in a tab, and the page shows that and says why.
        const auto *tab = dialog->findChild<QCheckBox *>(u"ChkTab"_s);
        QVERIFY(tab->isEnabled() && tab->toolTip().isEmpty());
        QVERIFY(!click("ChkCopy"));
        QVERIFY(tab->isChecked() && !tab->isEnabled() && !tab->toolTip().isEmpty());
        QVERIFY(!Preferences::takesOnRelease() && click("ChkTakeOnRelease") &&
                Preferences::takesOnRelease());
        QVERIFY(!Preferences::clearSelection() && click("ChkClearSelection") &&
                Preferences::clearSelection());

        auto *name = dialog->findChild<QLineEdit *>(u"EdtName"_s);
        const auto *preview = dialog->findChild<QLabel *>(u"LblPreview"_s);
        name->setText(u"a {titel}"_s);
        QVERIFY(preview->text().contains(u"{titel}"_s));
        QCOMPARE(Preferences::pictureName(), u"{application} {date} {time}"_s);
        // What is typed is looked at when the field is left; an empty one is the usual folder.
        auto *folder = dialog->findChild<QLineEdit *>(u"EdtFolder"_s);
        const auto *fault = dialog->findChild<QLabel *>(u"LblFolderFault"_s);
        const QString usual = Preferences::pictureFolder();
        const auto type = [&](const QString &text) {
            folder->selectAll();
            QTest::keyClicks(folder, text);
            QTest::keyClick(folder, text.isEmpty() ? Qt::Key_Delete : Qt::Key_Return);
            QTest::keyClick(folder, Qt::Key_Return);
            return fault->isHidden();
        };
        QVERIFY(QDir().mkdir(at(u"pictures"_s)));
        m_scratch->put(u"pictures/a 001.png"_s, "x");
        m_scratch->put(u"pictures/a 003.png"_s, "x");
        for (const QString &wrong : {at(u"none"_s), at(u"pictures/a 001.png"_s), u"pictures"_s}) {
            QVERIFY2(!type(wrong) && folder->text() == wrong, qPrintable(wrong));
            QVERIFY(!fault->text().isEmpty() && Preferences::pictureFolder() == usual);
        }
        QVERIFY(type(at(u"pictures/"_s)) && Preferences::pictureFolder() == at(u"pictures"_s));
        // The preview has the number that is free.
        name->setText(u"a {counter:3}"_s);
        QVERIFY(preview->text().endsWith(u"a 002.png"_s));
        QVERIFY(type({}) && Preferences::pictureFolder() == usual && folder->text() == usual);
        QCOMPARE(Preferences::pictureName(), u"a {counter:3}"_s);
        auto *page = dialog->findChild<FilesPage *>();
        auto *quality = page->findChild<QSpinBox *>();
        QVERIFY(!quality->isEnabled());
        auto *format = page->findChild<QComboBox *>();
        format->setCurrentIndex(format->findData(u"jpg"_s));
        QVERIFY(quality->isEnabled() && preview->text().endsWith(u".jpg"_s));
        quality->setValue(70);
        QCOMPARE(stored({u"PictureFormat"_s, u"PictureQuality"_s}), u"jpg 70"_s);
        // A file that somebody has written by hand.
        SetConfigString(u"PictureFormat"_s, u"exe"_s);
        SetConfigString(u"PictureQuality"_s, u"900"_s);
        SetConfigString(u"PictureName"_s, u"{"_s);
        SetConfigString(u"AfterGrab"_s, u"4096"_s);
        QCOMPARE(Preferences::pictureFormat().ending, u"png"_s);
        QCOMPARE(Preferences::pictureQuality(), 100);
        QCOMPARE(Preferences::pictureName(), u"{application} {date} {time}"_s);
        QVERIFY(Preferences::afterGrab() == GrabGoal::Tab);
    }

    // Each tool has what it had last, also after a restart; a damaged value costs no other. What
    // the tools share stays apart from that.
    void rememberedStyles()
    {
        const auto toggle = [this] {
            openDialog()->findChild<QCheckBox *>(u"ChkRememberStyles"_s)->click();
        };
        toggle();
        m_window->chooseTool(stateRect);
        auto *slider = m_window->findChild<QSlider *>();
        slider->setValue(8);
        button("BtnStyle")->click();
        auto *menu = m_window->findChild<QMenu *>(u"StyleMenu"_s);
        for (QAction *action : menu->actions()) {
            QVERIFY(action->isSeparator() || !action->text().contains(u"Head"_s) ||
                    !action->isEnabled());
            if (action->text() == u"&Solid Fill"_s)
                action->trigger();
        }
        menu->close();
        m_window->chooseTool(stateArrow);
        QCOMPARE(slider->value(), 0);
        m_window->useColor(Qt::green);
        QCOMPARE(stored({u"LineWidth"_s, u"LineColor"_s}), u" "_s);
        SetConfigString(u"ToolStyle.ellipse"_s,
                        u"width=0 fill=3 color=#0000ff dashes=x shadow=1"_s);
        end();
        start();
        const auto drawsWith = [this](stateEnum tool, EditMsg style) {
            m_window->chooseTool(tool);
            style.type = tool;
            QCOMPARE(editor()->style(), style);
            QCOMPARE(m_window->findChild<QLabel *>(u"lblLineWidth"_s)->text(),
                     u"%1 px"_s.arg(style.width));
        };
        drawsWith(stateRect, {.width = 9, .color = Qt::red, .fill = Fill::Solid});
        drawsWith(stateArrow, {.color = Qt::green});
        drawsWith(stateEllipse, {.color = Qt::blue, .hasShadow = true});
        drawsWith(stateLine, {.color = Qt::red});
        toggle();
        QCOMPARE(editor()->style().width, 1);
        QCOMPARE(editor()->getPenColor(), QColor(Qt::red));
    }

    // Refused are keys that another has and those that are typed; what is chosen is shown wherever
    // the command is, and outlives the next upgrade of the file, also where it is none.
    void changedHotKeys()
    {
        DialogPreference *dialog = openDialog();
        dialog->findChild<QTabWidget *>()->setCurrentIndex(1);
        auto *list = dialog->findChild<QTreeWidget *>();
        auto *field = dialog->findChild<KeyField *>();
        const auto choose = [&](int number) {
            for (int i = 0; i < list->topLevelItemCount(); ++i) {
                if (list->topLevelItem(i)->data(0, Qt::UserRole).toInt() == number)
                    list->setCurrentItem(list->topLevelItem(i));
            }
        };
        const auto press = [&](Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
            QTest::keyClick(field, key, modifiers);
            return field->text();
        };
        const auto isTold = [&](const QString &text) {
            const QList<QLabel *> labels = field->parentWidget()->findChildren<QLabel *>();
            return std::any_of(labels.begin(), labels.end(),
                               [&](const QLabel *label) { return label->text().contains(text); });
        };
        const auto item = [this](const QString &caption) {
            for (QAction *action : m_window->findChildren<QAction *>()) {
                if (action->text() == caption)
                    return action;
            }
            return static_cast<QAction *>(nullptr);
        };
        choose(1);
        expect("a double", press(Qt::Key_E, Qt::ControlModifier | Qt::AltModifier),
               u"Ctrl+Alt+R"_s);
        QVERIFY(isTold(u"Capture Ellipse"_s));
        expect("typed", press(Qt::Key_Q, Qt::ShiftModifier), u"Ctrl+Alt+R"_s);
        // What has no name, and what never comes, since another program has it.
        const auto send = [field](QEvent::Type type, int key, Qt::KeyboardModifiers modifiers) {
            QKeyEvent event(type, key, modifiers);
            QCoreApplication::sendEvent(field, &event);
        };
        send(QEvent::KeyPress, Qt::Key_unknown, Qt::ControlModifier);
        QVERIFY(isTold(u"can't be"_s));
        send(QEvent::KeyPress, Qt::Key_Control, {});
        send(QEvent::KeyRelease, Qt::Key_Control, Qt::ControlModifier);
        QVERIFY(isTold(u"with Ctrl:"_s));
        QCOMPARE(field->text(), u"Ctrl+Alt+R"_s);
        expect("chosen", press(Qt::Key_F9, Qt::ShiftModifier), u"Shift+F9"_s);
        QCOMPARE(list->currentItem()->text(1), u"Shift+F9"_s);
        choose(2);
        expect("none", press(Qt::Key_Delete), QString());
        QCOMPARE(item(u"Capture Rectangular"_s)->shortcut(), QKeySequence(u"Shift+F9"_s));
        QVERIFY(item(u"Capture Ellipse"_s)->shortcut().isEmpty());
        QVERIFY(button("BtnFrameRect")->toolTip().contains(u"Shift+F9"_s));
        QCOMPARE(button("BtnStartRectangle")->accessibleDescription(), u"Shift+F9"_s);
        // What is shown for a menu's grab is another than what runs it, until that is changed.
        QCOMPARE(item(u"Menu"_s)->shortcut(), QKeySequence(u"Ctrl+Alt+M"_s));
        QVERIFY(item(u"Menu"_s)->toolTip().contains(u"Ctrl+Alt+V"_s));

        const auto pressButton = [&] {
            field->parentWidget()->findChild<QPushButton *>()->click();
        };
        choose(3);
        press(Qt::Key_F8, Qt::ControlModifier);
        QCOMPARE(hotKeyOf(3), QKeySequence(u"Ctrl+F8"_s));
        pressButton();
        QCOMPARE(hotKeyOf(3), QKeySequence(u"Ctrl+Alt+A"_s));

        // The switches of what is offered ask the same questions, and its own keys are those.
        choose(12);
        QVERIFY(isTold(u"Shift+Print is off"_s));
        QTreeWidgetItem *offered = list->currentItem();
        offered->setCheckState(0, Qt::Checked);
        QCOMPARE(hotKeyOf(12), QKeySequence(u"Shift+Print"_s));
        press(Qt::Key_F8, Qt::ControlModifier);
        pressButton();
        QCOMPARE(hotKeyOf(12), QKeySequence(u"Shift+Print"_s));
        offered->setCheckState(0, Qt::Unchecked);
        pressButton();
        QCOMPARE(offered->checkState(0), Qt::Checked);
        offered->setCheckState(0, Qt::Unchecked);
        choose(4);
        press(Qt::Key_Print, Qt::ShiftModifier);
        offered->setCheckState(0, Qt::Checked);
        QCOMPARE(offered->checkState(0), Qt::Unchecked);
        QVERIFY(hotKeyOf(12).isEmpty());

        SetConfigString(u"HotKey.3"_s, u"Ctrl+K, Ctrl+R"_s);
        SaveResourceFile();
        end();
        const QByteArray newer =
            upgraded(*ReadXmlDocument(g_ResourceFileName), *ReadXmlDocument(shippedInVersion(1)));
        FreeAllXmlDocument();
        m_scratch->put(u"SnapWorkbench.xml"_s, newer);
        expect("kept", hotKeyOf(1), QKeySequence(u"Shift+F9"_s));
        expect("kept as none", hotKeyOf(2), QKeySequence());
        expect("damaged", hotKeyOf(3), QKeySequence(u"Ctrl+Alt+A"_s));
        expect("never changed", hotKeyOf(5), QKeySequence(u"Ctrl+Alt+W"_s));
    }

    // Where no program hears keys there is a line for each action, which a configuration takes.
    void linesForTheDesktop()
    {
        services().abilities.withhold(Ability::HotKeys, u"no"_s);
        qputenv("SWAYSOCK", "there");
        const auto unset = qScopeGuard([] { qunsetenv("SWAYSOCK"); });
        const DialogPreference *dialog = openDialog();
        const QString text = dialog->findChild<QPlainTextEdit *>()->toPlainText();
        QVERIFY(text.contains(
            u"bindsym Ctrl+Mod1+v exec gdbus call --session --dest "
            "org.example.brenvale.SnapWorkbench --object-path "
            "/org/example/brenvale/SnapWorkbench --method org.freedesktop.Application."
            "ActivateAction capture-menu '[]' '{}'\n"_s));
        QVERIFY(text.contains(u"bindsym Shift+Print exec "_s));
        QSet<QString> keys;
        QSet<QString> actions;
        for (const QString &line : text.split(u'\n')) {
            keys.insert(line.section(u' ', 1, 1));
            actions.insert(line.section(u' ', -3, -3));
        }
        QCOMPARE(actions.values().size(), keys.size());
        const QStringList known = busCommands().actions.keys();
        QCOMPARE(actions, QSet<QString>(known.begin(), known.end()));
        dialog->findChild<KeysPage *>()->findChild<QPushButton *>()->click();
        QCOMPARE(QGuiApplication::clipboard()->text(), text + u'\n');
    }

    // A desktop that was told to give no keys can be asked again, and what it says is shown at
    // once.
    void asksForKeys()
    {
        struct Askable : HotKeys {
            std::function<void()> changed{};
            bool given = false;
            void setHandler(std::function<void(int)>) override {}
            void setChangeHandler(const std::function<void()> &tell) override { changed = tell; }
            void add(int, QKeyCombination) override {}
            void remove(int) override {}
            QString keysOf(int number) const override { return number == 1 ? u"F9"_s : QString(); }
            bool canAsk() const override { return !given; }
            void ask() override
            {
                given = true;
                services().abilities.grant(Ability::HotKeys);
                QMetaObject::invokeMethod(qApp, changed, Qt::QueuedConnection);
            }
        };
        services().abilities.withhold(Ability::HotKeys, u"no"_s);
        services().hotKeys = std::make_unique<Askable>();
        SetConfigString(u"HotKey.12"_s, u"Shift+Print"_s);
        const DialogPreference *dialog = openDialog();
        dialog->findChild<KeysPage *>()->findChildren<QPushButton *>().constLast()->click();
        QCoreApplication::processEvents();
        QVERIFY(!dialog->findChild<QPlainTextEdit *>());
        auto *list = dialog->findChild<QTreeWidget *>();
        QVERIFY(list);
        QCOMPARE(list->topLevelItem(0)->text(1), u"F9"_s);
        QVERIFY(list->topLevelItem(1)->text(2).contains(u"taken"_s));
        // So do the menus: keys that another program has are not shown as those of an entry.
        for (const QAction *action : m_window->findChildren<QAction *>()) {
            if (action->text() == u"Last Area"_s) {
                QVERIFY(action->shortcut().isEmpty());
                QVERIFY(action->toolTip().contains(u"Shift+Print is taken"_s));
            }
        }
    }

    // Within five seconds, and where that fails the user is told once, and what could not be
    // written is written later.
    void changesAreSaved()
    {
        const QString path = g_ResourceFileName;
        const auto isOnDisk = [&](const QByteArray &value) {
            m_desktop->clock->advance(5000);
            return contentOf(path).contains(value);
        };
        SetConfigString(u"MediaDir"_s, u"/one"_s);
        QVERIFY(isOnDisk("/one"));
        const auto written = FileIdentity::of(path);
        SetConfigString(u"MediaDir"_s, u"/one"_s);
        QVERIFY(isOnDisk("/one"));
        QVERIFY(FileIdentity::of(path) == written);

        QVERIFY(QFile::remove(path) && QDir().mkdir(path));
        SetConfigString(u"MediaDir"_s, u"/two"_s);
        QVERIFY(!isOnDisk("/two"));
        QVERIFY(!told().isEmpty());
        m_window->say(u"something else"_s);
        QVERIFY(!isOnDisk("/two"));
        QCOMPARE(told(), u"something else"_s);
        QVERIFY(QDir().rmdir(path));
        QVERIFY(isOnDisk("/two"));
    }

    void extremeNumbers()
    {
        for (const QByteArray number : {"2147483647", "-2147483648", "99999999999", "0", "x"}) {
            begin();
            const QString text = QString::fromLatin1(number);
            for (const QString &key :
                 {u"WindowLeft"_s, u"WindowTop"_s, u"WindowWidth"_s, u"WindowHeight"_s,
                  u"LineWidth"_s, u"LineColor"_s, u"ScreenTimer"_s, u"Magnification"_s})
                SetConfigString(key, text);
            SetConfigString(u"TextFont"_s, u"Sans,%1,-1,5,50,0,0,0,0,0"_s.arg(text));
            end();
            start();
            m_window->InitShowGeometry();
            const QRect screen = m_window->screen()->availableGeometry();
            expect(number, m_window->size(),
                   screen.size()
                       .boundedTo(m_window->size())
                       .expandedTo(QSize(950, 650).boundedTo(screen.size())));
            QVERIFY2(screen.contains(m_window->pos()), number);
            QVERIFY2(MainWindow::GetScreenTimerFromXML() <= 24 * 60 * 60, number);
            const int multiple = MainWindow::GetMagnificationFromXML();
            QVERIFY2(multiple >= 1 && multiple <= 64, number);
            QVERIFY2(editor()->getLineWidth() >= 1 && editor()->getLineWidth() <= 1000, number);
            const QFont font = editor()->EditFont();
            QVERIFY2(font.pointSize() <= 500 && font.pixelSize() <= 500, number);
        }
    }

    // The wheel goes through what the dialog offers, while the magnifier is wanted.
    void wheelStepsMagnification()
    {
        const auto turned = [this](const QString &from, int steps, const QString &shows = u"1"_s) {
            SetConfigString(u"Magnification"_s, from);
            SetConfigString(u"ShowMagnification"_s, shows);
            m_window->ShowDetailWindowRequest_Rect(nullptr, eMagMultiple, steps, 0);
            return GetConfigString(u"Magnification"_s);
        };
        expect("up", turned(u"8"_s, 1), u"10"_s);
        expect("down", turned(u"8"_s, -2), u"4"_s);
        expect("to the last", turned(u"8"_s, 9), u"12"_s);
        expect("to the first", turned(u"8"_s, -9), u"4"_s);
        expect("between, up", turned(u"7"_s, 1), u"8"_s);
        expect("between, down", turned(u"7"_s, -1), u"6"_s);
        expect("beyond, up", turned(u"64"_s, 1), u"12"_s);
        expect("beyond, down", turned(u"64"_s, -1), u"12"_s);
        expect("not wanted", turned(u"8"_s, 1, u"0"_s), u"8"_s);
    }

    void hintsTenGrabs()
    {
        for (int grab = 0; grab < 12; ++grab) {
            QCOMPARE(Preferences::showsOverlayHint(), grab < 10);
            Preferences::countMarkedGrab();
        }
    }

private:
    DialogPreference *openDialog() const
    {
        m_window->Preference();
        return m_window->findChild<DialogPreference *>();
    }
    static QString stored(const QStringList &keys)
    {
        QStringList values;
        for (const QString &key : keys)
            values.append(GetConfigString(key));
        return values.join(u' ');
    }
};

QTEST_MAIN(TestPreferences)
#include "test_preferences.moc"
