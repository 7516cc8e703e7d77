#include "capture/dialogcountdown.h"

#include "fakedesktop.h"
#include "rows.h"

#include <QLabel>

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

    void givesUp()
    {
        const auto check = [&](const QByteArray &row, bool byKey) {
            DialogCountDown panel;
            panel.setSecond(1);
            panel.show();
            QTest::keyClick(&panel, Qt::Key_Return);
            expect(row, panel.getSecond(), 0);
            if (byKey)
                QTest::keyClick(&panel, Qt::Key_Escape);
            else
                panel.close();
            QVERIFY2(panel.getSecond() < 0, row);
            // Ticks that come later change nothing.
            m_desktop.clock->advance(3000);
            expect(row, panel.getResult(), 0);
            QVERIFY2(panel.getSecond() < 0, row);
        };
        check("Escape", true);
        check("closed by the window manager", false);
    }

private:
    FakeDesktop m_desktop;
};

QTEST_MAIN(TestDialogCountDown)
#include "test_dialogcountdown.moc"
