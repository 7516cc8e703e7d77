// The skin on a desktop with two pixels for one.

#include "config/applicationrecord.h"
#include "config/xmlstore.h"
#include "fakedesktop.h"
#include "shell/mainwindow.h"

#include <QApplication>
#include <QDir>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

class TestFineSkin : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { FreeAllXmlDocument(); }
    void colourButton();
};

// The finer picture is the one that is shown, and tells the pen's colour too.
void TestFineSkin::colourButton()
{
    const FakeDesktop desktop;
    const QTemporaryDir folder;
    for (const auto &[name, side] :
         {std::pair(u"colour.png"_s, 28), std::pair(u"colour@2x.png"_s, 56)}) {
        QImage picture(side, side, QImage::Format_RGB32);
        picture.fill(side == 28 ? Qt::black : Qt::white);
        QVERIFY(picture.save(folder.filePath(name)));
    }
    g_ResourceFileName = folder.filePath(u"SnapWorkbench.xml"_s);
    QFile file(g_ResourceFileName);
    QVERIFY(file.open(QIODevice::WriteOnly));
    const QDir program(QCoreApplication::applicationDirPath());
    file.write("<Galeway ver=\"1\"><Default><Buttons><MainWindow><BtnColor NormalImg=\"" +
               program.relativeFilePath(folder.filePath(u"colour.png"_s)).toUtf8() +
               "\"/></MainWindow></Buttons></Default></Galeway>");
    file.close();
    MainWindow window;
    auto *button = window.findChild<QPushButton *>(u"BtnColor"_s);
    button->resize(28, 28);
    const QImage shown = button->icon().pixmap(QSize(28, 28), 2.0).toImage();
    QCOMPARE(shown.size(), QSize(56, 56));
    QCOMPARE(shown.pixelColor(1, 1), QColor(Qt::white));
    QCOMPARE(shown.pixelColor(2 * 5, 2 * 4), QColor(Qt::red));
    QCOMPARE(shown.pixelColor(2 * 20 - 1, 2 * 19 - 1), QColor(Qt::red));
    QCOMPARE(shown.pixelColor(2 * 20, 2 * 19), QColor(Qt::white));
}

int main(int argc, char **argv)
{
    qputenv("QT_SCALE_FACTOR", "2");
    QApplication application(argc, argv);
    TestFineSkin test;
    return QTest::qExec(&test, argc, argv);
}

#include "test_fineskin.moc"
