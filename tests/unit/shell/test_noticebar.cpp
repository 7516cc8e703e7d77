// What the main window tells without asking.

#include "shell/noticebar.h"
#include "shellfixture.h"

#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QTabWidget>
#include <QTest>

#include <optional>

using namespace Qt::StringLiterals;

class TestNoticeBar : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_shell.emplace();
        m_window = m_shell->window.get();
        m_window->show();
        QVERIFY(QTest::qWaitForWindowActive(m_window));
    }
    void cleanup() { m_shell.reset(); }
    void goesByItself();
    void keptUntilSeen();
    void offers();
    void fits();

private:
    NoticeBar *bar() const { return m_window->findChild<NoticeBar *>(); }
    QTabWidget *area() const { return m_window->findChild<QTabWidget *>(); }
    /// What the user can read, once it is painted.
    QString shown() const
    {
        QCoreApplication::processEvents();
        return bar()->isVisible() ? bar()->text() : QString();
    }
    void pass(int seconds) { m_shell->desktop.clock->advance(1000 * seconds); }

    std::optional<ShellFixture> m_shell;
    MainWindow *m_window = nullptr;
};

void TestNoticeBar::goesByItself()
{
    const QWidget *focus = QApplication::focusWidget();
    m_window->say(u"one"_s);
    QCOMPARE(shown(), u"one"_s);
    QCOMPARE(QApplication::focusWidget(), focus);
    pass(9);
    m_window->say(u"two"_s);
    QCOMPARE(shown(), u"two"_s);
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
void TestNoticeBar::keptUntilSeen()
{
    m_window->showMinimized();
    QCoreApplication::processEvents();
    m_window->say(u"one"_s);
    pass(3600);
    m_window->showNormal();
    QVERIFY(QTest::qWaitForWindowExposed(m_window));
    QTRY_COMPARE(shown(), u"one"_s);
    pass(12);
    QCOMPARE(shown(), QString());
}

void TestNoticeBar::offers()
{
    m_window->say(u"one"_s);
    QString done;
    const auto action = [&](const QString &name) {
        return NoticeBar::Action{name, [&, name] { done += name; }};
    };
    const auto click = [&](const QString &name) {
        for (QPushButton *button : bar()->findChildren<QPushButton *>()) {
            if (button->text() == name)
                return button->click();
        }
        QFAIL("no such button");
    };
    bar()->tell(u"question"_s, {action(u"Save As..."_s), action(u"Overwrite"_s)});
    pass(3600);
    QCOMPARE(shown(), u"question"_s);
    m_window->say(u"two"_s);
    QCOMPARE(shown(), u"two"_s);
    pass(12);
    QCOMPARE(shown(), u"question"_s);
    click(u"Overwrite"_s);
    QCOMPARE(done, u"Overwrite"_s);
    QCOMPARE(shown(), QString());
}

void TestNoticeBar::fits()
{
    const QFont usual = QApplication::font();
    QFont large = usual;
    large.setPointSizeF(usual.pointSizeF() * 2);
    QApplication::setFont(large);
    m_window->resize(950, 650);
    const QString path = u"/home/somebody/"_s + QString(300, u'm') + u".png"_s;
    m_window->say({});
    bar()->tell(
        u"Die Datei %1 wurde seit dem Öffnen von einem anderen Programm geändert."_s.arg(path),
        {{u"Speichern unter ..."_s, [] {}}, {u"Überschreiben"_s, [] {}}});
    for (const QSize size : {QSize(950, 650), QSize(1400, 900)}) {
        m_window->resize(size);
        QVERIFY(!shown().isEmpty());
        QVERIFY(area()->geometry().contains(bar()->geometry()));
        const auto *text = bar()->findChild<QLabel *>();
        QVERIFY(text->height() >= text->heightForWidth(text->width()));
        QVERIFY(text->height() > 3 * QFontMetrics(large).height());
        for (const QPushButton *button : bar()->findChildren<QPushButton *>()) {
            QVERIFY(bar()->rect().contains(button->geometry()));
            QCOMPARE(button->size(), button->sizeHint());
        }
    }
    QApplication::setFont(usual);
}

QTEST_MAIN(TestNoticeBar)
#include "test_noticebar.moc"
