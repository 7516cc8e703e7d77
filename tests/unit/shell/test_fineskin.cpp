// The skin on a desktop with two pixels for one.

#include "shellfixture.h"
#include "testmain.h"

using namespace Qt::StringLiterals;

class TestFineSkin : public ShellTest
{
    Q_OBJECT

private slots:
    void cleanup() { finish(); }

    // The finer picture is the one that is shown, and tells the pen's colour too.
    void colourButton()
    {
        beginWith("BtnColor");
        button("BtnColor")->resize(28, 28);
        const QImage shown = button("BtnColor")->icon().pixmap(QSize(28, 28), 2.0).toImage();
        QCOMPARE(shown.size(), QSize(56, 56));
        QCOMPARE(shown.pixelColor(1, 1), QColor(Qt::white));
        QCOMPARE(shown.pixelColor(2 * 5, 2 * 4), QColor(Qt::red));
        QCOMPARE(shown.pixelColor(2 * 20 - 1, 2 * 19 - 1), QColor(Qt::red));
        QCOMPARE(shown.pixelColor(2 * 20, 2 * 19), QColor(Qt::white));
    }

    // The skin has no picture of it greyed. Its keys tell why, and so does a pointer that rests on
    // it; one that passes or presses it changes nothing.
    void greyedButton()
    {
        beginWith("BtnFrameRect");
        end();
        services().abilities.withhold(Ability::Pictures, u"why not"_s);
        start();
        m_window->show();
        QPushButton &greyed = *button("BtnFrameRect");
        QVERIFY(greyed.toolTip().contains(u"why not"_s));
        QTest::mouseMove(&greyed);
        QTest::mouseClick(&greyed, Qt::LeftButton);
        QVERIFY(told().isEmpty());
        const QImage shown = greyed.icon().pixmap(QSize(28, 28), 2.0, QIcon::Disabled).toImage();
        QCOMPARE(shown.size(), QSize(56, 56));
        QCOMPARE(qRound(10 * shown.pixelColor(1, 1).alphaF()), 4);
        QTest::keyClick(m_window.get(), Qt::Key_R, Qt::ControlModifier | Qt::AltModifier);
        QCOMPARE(told(), u"why not"_s);
    }

private:
    // A skin of one button's usual picture, black, and white where it is finer.
    void beginWith(const QByteArray &button)
    {
        m_skin.emplace();
        QVERIFY(solid({28, 28}, Qt::black).save(m_skin->path(u"usual.png"_s)));
        QVERIFY(solid({56, 56}, Qt::white).save(m_skin->path(u"usual@2x.png"_s)));
        const QDir program(QCoreApplication::applicationDirPath());
        begin("<Galeway ver=\"1\"><Default><Buttons><MainWindow><" + button + " NormalImg=\"" +
              program.relativeFilePath(m_skin->path(u"usual.png"_s)).toUtf8() +
              "\"/></MainWindow></Buttons></Default></Galeway>");
    }

    std::optional<Scratch> m_skin;
};

int main(int argc, char **argv) { return runAtScales<TestFineSkin>(argc, argv, {"2"}); }

#include "test_fineskin.moc"
