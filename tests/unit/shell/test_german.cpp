// The whole program under a German desktop.

#include "base/translation.h"
#include "shellfixture.h"

using namespace Qt::StringLiterals;

class TestGerman : public ShellTest
{
    Q_OBJECT

private slots:
    // The resource file has them in English; what a user wrote into it is shown as written.
    void hints()
    {
        begin("<Galeway ver=\"1\"><Default><Buttons><MainWindow>"
              "<BtnFrameRect HintString=\"Capture rectangle\"/>"
              "<BtnSave HintString=\"My own words\"/>"
              "</MainWindow></Buttons></Default></Galeway>");
        QCOMPARE(button("BtnFrameRect")->toolTip().section(u"  "_s, 0, 0), u"Rechteck aufnehmen"_s);
        QCOMPARE(button("BtnSave")->toolTip().section(u"  "_s, 0, 0), u"My own words"_s);
        finish();
    }

    void toolkitTexts()
    {
        const QMessageBox box(QMessageBox::Question, {}, {},
                              QMessageBox::Save | QMessageBox::Cancel);
        QCOMPARE(box.button(QMessageBox::Save)->text().remove(u'&'), u"Speichern"_s);
        QCOMPARE(box.button(QMessageBox::Cancel)->text().remove(u'&'), u"Abbrechen"_s);
    }

    void helpPages()
    {
        QVERIFY(contentOf(QCoreApplication::applicationDirPath() + u'/' +
                          MainWindow::tr("../Resources/Help/index.html"))
                    .contains("<html lang=\"de\">"));
    }
};

int main(int argc, char **argv)
{
    // Read once, when the toolkit starts.
    for (const char *name : {"LC_ALL", "LANG", "LANGUAGE"})
        qputenv(name, "de_DE.UTF-8");
    const QApplication application(argc, argv);
    installTranslations();
    TestGerman test;
    return QTest::qExec(&test, argc, argv);
}

#include "test_german.moc"
