// The whole program under a German desktop.

#include "capture/rectangleoverlay.h"
#include "config/applicationrecord.h"
#include "config/xmlstore.h"
#include "fakedesktop.h"
#include "shell/mainwindow.h"
#include "shell/translation.h"

#include <QApplication>
#include <QDir>
#include <QMessageBox>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

class TestGerman : public QObject
{
    Q_OBJECT

private slots:
    void hints();
    void toolkitTexts();
    void helpPages();
    void overlayButton();
};

// The resource file has them in English; what a user wrote into it is shown as written.
void TestGerman::hints()
{
    const FakeDesktop desktop;
    const QTemporaryDir folder;
    g_ResourceFileName = folder.filePath(u"SnapWorkbench.xml"_s);
    QFile file(g_ResourceFileName);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("<Galeway ver=\"1\"><Default><Buttons><MainWindow>"
               "<BtnFrameRect HintString=\"Capture rectangle\"/>"
               "<BtnSave HintString=\"My own words\"/>"
               "</MainWindow></Buttons></Default></Galeway>");
    file.close();
    {
        const MainWindow window;
        const auto hint = [&](const QString &button) {
            return window.findChild<QPushButton *>(button)->toolTip();
        };
        QVERIFY2(hint(u"BtnFrameRect"_s).startsWith(u"Rechteck aufnehmen  "_s),
                 qPrintable(hint(u"BtnFrameRect"_s)));
        QVERIFY(hint(u"BtnSave"_s).startsWith(u"My own words  "_s));
    }
    FreeAllXmlDocument();
}

void TestGerman::toolkitTexts()
{
    const QMessageBox box(QMessageBox::Question, {}, {},
                          QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel);
    QCOMPARE(box.button(QMessageBox::Save)->text().remove(u'&'), u"Speichern"_s);
    QCOMPARE(box.button(QMessageBox::Cancel)->text().remove(u'&'), u"Abbrechen"_s);
}

void TestGerman::helpPages()
{
    QFile page(QCoreApplication::applicationDirPath() + u'/' +
               MainWindow::tr("../Resources/Help/index.html"));
    QVERIFY(page.open(QIODevice::ReadOnly));
    QVERIFY(page.readAll().contains("<html lang=\"de\">"));
}

// Its word is longer than the English one.
void TestGerman::overlayButton()
{
    const FakeDesktop desktop;
    const Dialog overlay;
    const auto *button = overlay.findChild<QPushButton *>(u"pushButton"_s);
    QCOMPARE(button->text(), u"Aufnehmen"_s);
    QVERIFY(QFontMetrics(button->font()).horizontalAdvance(button->text()) < button->width());
    QVERIFY(button->parentWidget()->rect().contains(button->geometry().adjusted(0, 0, 13, 0)));
}

int main(int argc, char **argv)
{
    // Read once, when the toolkit starts.
    for (const char *name : {"LC_ALL", "LANG", "LANGUAGE"})
        qputenv(name, "de_DE.UTF-8");
    QApplication application(argc, argv);
    installTranslations();
    TestGerman test;
    return QTest::qExec(&test, argc, argv);
}

#include "test_german.moc"
