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
        const Scratch skin;
        QVERIFY(solid({28, 28}, Qt::black).save(skin.path(u"colour.png"_s)));
        QVERIFY(solid({56, 56}, Qt::white).save(skin.path(u"colour@2x.png"_s)));
        const QDir program(QCoreApplication::applicationDirPath());
        begin("<Galeway ver=\"1\"><Default><Buttons><MainWindow><BtnColor NormalImg=\"" +
              program.relativeFilePath(skin.path(u"colour.png"_s)).toUtf8() +
              "\"/></MainWindow></Buttons></Default></Galeway>");
        button("BtnColor")->resize(28, 28);
        const QImage shown = button("BtnColor")->icon().pixmap(QSize(28, 28), 2.0).toImage();
        QCOMPARE(shown.size(), QSize(56, 56));
        QCOMPARE(shown.pixelColor(1, 1), QColor(Qt::white));
        QCOMPARE(shown.pixelColor(2 * 5, 2 * 4), QColor(Qt::red));
        QCOMPARE(shown.pixelColor(2 * 20 - 1, 2 * 19 - 1), QColor(Qt::red));
        QCOMPARE(shown.pixelColor(2 * 20, 2 * 19), QColor(Qt::white));
    }
};

int main(int argc, char **argv) { return runAtScales<TestFineSkin>(argc, argv, {"2"}); }

#include "test_fineskin.moc"
