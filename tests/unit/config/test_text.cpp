#include "base/boundedtext.h"
#include "base/paths.h"
#include "base/textencoding.h"
#include "config/filters.h"
#include "scratch.h"

#include <QFileInfo>
#include <QTest>

using namespace Qt::StringLiterals;

class TestText : public QObject
{
    Q_OBJECT

private slots:
    void paths()
    {
        const auto changed = [](const QString &path, const wchar_t *extension) {
            const auto output = std::make_unique<wchar_t[]>(WideTextCapacity);
            ChangeFileExt(path.toStdWString().c_str(), extension, output.get());
            return QString::fromWCharArray(output.get());
        };
        QCOMPARE(changed(u"/a/b.xml"_s, L".~xml"), u"/a/b.~xml"_s);
        QCOMPARE(changed(u"/a/b"_s, L"txt"), u"/a/b.txt"_s);
        QCOMPARE(changed(u"/a.d/b"_s, nullptr), u"/a"_s);
        QCOMPARE(changed(QString(5000, u'a'), L"txt"), QString(WideTextCapacity - 1, u'a'));
        QCOMPARE(GetDirectory(u"/a/b.png"_s), u"/a"_s);
        QCOMPARE(GetDirectory(u"picture.png"_s), u"picture.png"_s);

        const Scratch scratch;
        const QString deep = scratch.path(u"a/b/c/"_s);
        QVERIFY(CreateFolder(QFile::encodeName(deep)) && CreateFolder(QFile::encodeName(deep)));
        QVERIFY(QFileInfo(deep).isDir());
        QVERIFY(!CreateFolder(QFile::encodeName(scratch.put(u"file"_s, "") + u"/a"_s)));

        QCOMPARE(wcsicmp(L"/Home/A.XML", L"/home/a.xml"), 0);
        QCOMPARE(wcsicmp(L"ab", L"ABC"), -'c');
        QVERIFY(wcsicmp(L"\x80000000", L"\x7fffffff") < 0);
    }

    void conversions()
    {
        std::array<char, ConversionCapacity> narrow;
        std::array<wchar_t, ConversionCapacity / sizeof(wchar_t)> wide;
        QCOMPARE(UTF8ToUnicode("a\u00e9\U0001F600", wide.data()), 1);
        QCOMPARE(std::wstring(wide.data()), std::wstring(L"a\u00e9\U0001F600"));
        // The way back keeps 16 bits of a character.
        QCOMPARE(UnicodeToUTF8(wide.data(), narrow.data()), 1);
        QCOMPARE(narrow.data(), "a\u00e9\uF600");

        const QByteArray longText = "a" + QByteArray("\u00e9").repeated(ConversionCapacity);
        QCOMPARE(UTF8ToAnsi(longText, narrow.data()), 0);
        QCOMPARE(narrow.data(), longText.first(ConversionCapacity - 1));
        // Now a character stands astride the last place.
        QCOMPARE(AnsiToUTF8("a" + longText, narrow.data()), 0);
        QCOMPARE(narrow.data(), "a" + longText.first(ConversionCapacity - 3));
        QCOMPARE(AnsiToUnicode(longText, wide.data()), 0);
        QCOMPARE(std::wstring(wide.data()).size(), wide.size() - 1);
        QCOMPARE(UnicodeToAnsi(nullptr, narrow.data()), 0);
        QCOMPARE(narrow.data(), "");

        const std::wstring text = std::wstring(200, L'\u00e9') + L'\U0001F600';
        QCOMPARE(std::wstring(CA2WEX<128>(CW2AEX<128>(text.c_str()), CodePageUtf8)), text);
        QCOMPARE(QByteArray(CW2AEX<128>(L"a", 1252)), QByteArray(""));
        QVERIFY(!static_cast<const char *>(CW2AEX<128>(nullptr)));
    }

    void filters()
    {
        QCOMPARE(GetFilterStr({"bmp", "png"}), u"All Picture files(*.bmp;*.png)|*.bmp;*.png||"_s);
        QCOMPARE(GetFilterStr({}), u"All Picture files()||"_s);

        QString selected;
        const QString filter = GetSavePictureFilter(u"a.bmp.PNG"_s, selected, {"bmp", "Png"});
        QCOMPARE(filter, u"bmp(*.bmp)|*.bmp|Png(*.Png)|*.Png||"_s);
        QCOMPARE(selected, u"Png(*.Png)"_s);
        GetSavePictureFilter(u"png"_s, selected);
        QCOMPARE(selected, u""_s);
        QCOMPARE(GetMacFilter(filter), u"bmp(*.bmp);;Png(*.Png)"_s);
        QCOMPARE(GetMacFilter(u"All(*.a;*.b)|*.a;*.b||"_s), u"All(*.a *.b)"_s);
        QCOMPARE(GetMacFilter(u"a|b"_s), u"a;;"_s);
    }
};

QTEST_APPLESS_MAIN(TestText)
#include "test_text.moc"
