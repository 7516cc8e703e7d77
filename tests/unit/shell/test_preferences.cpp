// The preferences on their own, and between the main window's settings and its menus.

#include "base/fileidentity.h"
#include "config/settings.h"
#include "rows.h"
#include "shell/commands.h"
#include "shell/dialogpreference.h"
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
        const QStringList keys{u"FirstRun"_s,      u"RunMinimized"_s,  u"AutoHide"_s,
                               u"AutoShow"_s,      u"ScreenTimer"_s,   u"ShowMagnification"_s,
                               u"Magnification"_s, u"RememberStyles"_s};
        // The dialog shows its first magnification where the setting has no entry.
        QCOMPARE(stored(keys), u"1 0 0 1 25 0 4 0"_s);
        for (QCheckBox *box : dialog->findChildren<QCheckBox *>()) {
            const QString before = stored(keys);
            box->click();
            QVERIFY2(stored(keys) != before, qPrintable(box->objectName()));
        }
        dialog->findChild<QComboBox *>(u"cmbMagnification"_s)->setCurrentIndex(3);
        dialog->findChild<QComboBox *>(u"cmbTimer"_s)->setCurrentIndex(3);
        QCOMPARE(stored(keys), u"0 1 1 0 3 1 10 1"_s);
        QVERIFY(!m_desktop->loginItem->present);
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
        QSet<QString> keys;
        QSet<QString> actions;
        for (const QString &line : text.split(u'\n')) {
            keys.insert(line.section(u' ', 1, 1));
            actions.insert(line.section(u' ', -3, -3));
        }
        QCOMPARE(actions.values().size(), keys.size());
        const QStringList known = busCommands().actions.keys();
        QCOMPARE(actions, QSet<QString>(known.begin(), known.end()));
        dialog->findChild<QPushButton *>()->click();
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
            void add(int, char) override {}
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
        const DialogPreference *dialog = openDialog();
        dialog->findChildren<QPushButton *>().constLast()->click();
        QCoreApplication::processEvents();
        QVERIFY(!dialog->findChild<QPlainTextEdit *>());
        auto *list = dialog->findChild<QTreeWidget *>();
        QVERIFY(list);
        QCOMPARE(list->topLevelItem(0)->text(1), u"F9"_s);
        QVERIFY(list->topLevelItem(1)->text(1).contains(u"taken"_s));
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
