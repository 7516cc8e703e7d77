// What the main window tells without asking.

#include "shellfixture.h"

using namespace Qt::StringLiterals;

class TestNoticeBar : public ShellTest
{
    Q_OBJECT

private slots:
    void init()
    {
        begin();
        m_window->show();
        activate();
    }
    void cleanup() { finish(); }

    void goesByItself()
    {
        const QWidget *focus = QApplication::focusWidget();
        m_window->say(u"one"_s);
        QCOMPARE(shown(), u"one"_s);
        QCOMPARE(QApplication::focusWidget(), focus);
        pass(9);
        m_window->say(u"two"_s);
        pass(9);
        QCOMPARE(shown(), u"two"_s);
        // Not from under the user's hands.
        auto *close = bar()->findChild<QPushButton *>();
        close->setFocus(Qt::TabFocusReason);
        pass(60);
        QCOMPARE(shown(), u"two"_s);
        QTest::keyClick(close, Qt::Key_Escape);
        QCOMPARE(shown(), QString());
        QCOMPARE(QApplication::focusWidget(), focus);
        m_window->say(u"three"_s);
        QCOMPARE(shown(), u"three"_s);
        pass(12);
        QCOMPARE(shown(), QString());
    }

    // There is no tray here.
    void keptUntilSeen()
    {
        m_window->showMinimized();
        QCoreApplication::processEvents();
        m_window->say(u"one"_s);
        pass(3600);
        m_window->showNormal();
        QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
        QTRY_COMPARE(shown(), u"one"_s);
        pass(12);
        QCOMPARE(shown(), QString());
    }

    void offers()
    {
        m_window->say(u"one"_s);
        QString done;
        const auto action = [&](const QString &name) {
            return NoticeBar::Action{name, [&, name] { done += name; }};
        };
        bar()->tell(u"question"_s, {action(u"Save As..."_s), action(u"Overwrite"_s)});
        pass(3600);
        QCOMPARE(shown(), u"question"_s);
        m_window->say(u"two"_s);
        QCOMPARE(shown(), u"two"_s);
        pass(12);
        QCOMPARE(shown(), u"question"_s);
        takeOffer(u"Overwrite"_s);
        QCOMPARE(done, u"Overwrite"_s);
        QCOMPARE(shown(), QString());
    }

private:
    NoticeBar *bar() const { return m_window->findChild<NoticeBar *>(); }
    /// What the user can read, once it is painted.
    QString shown() const
    {
        QCoreApplication::processEvents();
        return bar()->isVisible() ? bar()->text() : QString();
    }
    void pass(int seconds) { m_desktop->clock->advance(1000 * seconds); }
};

QTEST_MAIN(TestNoticeBar)
#include "test_noticebar.moc"
