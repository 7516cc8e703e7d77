#include "capture/dialogcountdown.h"

#include "fakedesktop.h"

#include <QLabel>
#include <QTest>

using namespace Qt::StringLiterals;

class TestDialogCountDown : public QObject
{
    Q_OBJECT
private slots:
    void counts()
    {
        DialogCountDown panel;
        const auto shown = [&] { return panel.findChild<QLabel *>(u"lblSecond"_s)->text(); };
        panel.setSecond(1);
        panel.show();
        QCOMPARE(shown(), u"1"_s);
        QCOMPARE(panel.getResult(), 0);
        QCOMPARE(panel.getSecond(), 0);
        m_desktop.clock->advance(600);
        panel.restart(1);
        // A whole second from then on.
        m_desktop.clock->advance(999);
        QCOMPARE(panel.getResult(), 0);
        m_desktop.clock->advance(1);
        QCOMPARE(panel.getResult(), 1);
        QCOMPARE(shown(), u"0"_s);
        QVERIFY(panel.getSecond() < 0);
        QVERIFY(!panel.isVisible());
    }

    // Any number can be typed into the preferences.
    void isBounded()
    {
        DialogCountDown panel;
        panel.setSecond(2147483647);
        QCOMPARE(panel.findChild<QLabel *>(u"lblSecond"_s)->text(), u"86400"_s);
        QCOMPARE(panel.getSecond(), 86399);
    }

    void closedByTheWindowManager()
    {
        DialogCountDown panel;
        panel.setSecond(1);
        panel.show();
        panel.close();
        QVERIFY(panel.getSecond() < 0);
        // Ticks that come later change nothing.
        m_desktop.clock->advance(3000);
        QCOMPARE(panel.getResult(), 0);
        QVERIFY(panel.getSecond() < 0);
    }

private:
    FakeDesktop m_desktop;
};

QTEST_MAIN(TestDialogCountDown)
#include "test_dialogcountdown.moc"
