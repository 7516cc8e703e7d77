#include "config/applicationrecord.h"
#include "config/settings.h"
#include "config/xmlstore.h"
#include "scratch.h"

#include <QElapsedTimer>
#include <QTest>

using namespace Qt::StringLiterals;

class TestXmlStore : public QObject
{
    Q_OBJECT

    Scratch m_scratch;

    std::wstring put(const QString &name, const QByteArray &bytes) const
    {
        return m_scratch.put(name, bytes).toStdWString();
    }

    static QString read(const std::wstring &file, const char *path, const char *attribute = "data")
    {
        QString value = u"(none)"_s;
        GetFromXML(file.c_str(), path, attribute, value);
        return value;
    }

private slots:
    void cleanup() { g_XmlDocSet = TXmlDocSet(); }

    void reading()
    {
        const auto file = put(u"r.xml"_s, "<T><A/><A><B data='2'/></A><B data='1'/></T>");
        QCOMPARE(read(file, "T\\B"), u"1"_s);
        QCOMPARE(read(file, "T\\B\\"), u"1"_s);
        QCOMPARE(read(file, "T\\A\\B"), u"2"_s);
        const QByteArray deep = "T" + QByteArray("\\T").repeated(100);
        for (const char *path : {"", "T", "T\\b", "T\\\\B", "T\\C\\B", deep.constData()})
            QCOMPARE(read(file, path), u"(none)"_s);
        QVERIFY(!g_XmlDocSet.Find(file.c_str())->Dirty);
        const auto nested =
            put(u"n.xml"_s, "<T data='1'>"_ba.repeated(101) + "</T>"_ba.repeated(101));
        QCOMPARE(read(nested, deep), u"(none)"_s);
        QCOMPARE(read(nested, deep.chopped(2)), u"1"_s);
    }

    void writing()
    {
        const auto file = put(u"w.xml"_s, "<T><A/><A><B data='2'/></A></T>");
        QCOMPARE(SetToXML(file.c_str(), "T\\A\\B", "data", u"x"_s), 0);
        QCOMPARE(SetToXML(file.c_str(), "T\\A\\B", "data", u"y"_s), 1);
        QCOMPARE(read(file, "T\\A\\B"), u"y"_s);
        const QString after = GetXmlDocument(file.c_str(), false)->toString(-1);
        QCOMPARE(after, u"<T><A><B data=\"y\"/></A><A><B data=\"2\"/></A></T>"_s);

        const QByteArray deep = "T" + QByteArray("\\T").repeated(100);
        for (const char *path : {"", "T\\\\B", "T\\a b", deep.constData()})
            QCOMPARE(SetToXML(file.c_str(), path, "data", u"x"_s), 0);
        QCOMPARE(SetToXML(file.c_str(), "T", "a b", u"x"_s), 0);
        QCOMPARE(SetToXML(L"", "T", "data", u"x"_s), 0);
        QCOMPARE(GetXmlDocument(file.c_str(), false)->toString(-1), after);
    }

    void aSixthFilePushesTheFirstOut()
    {
        const auto first = put(u"0"_s, "<T data='disk'/>");
        SetToXML(first.c_str(), "T", "data", u"memory"_s);
        for (int i = 1; i < 5; ++i)
            read(put(QString::number(i), "<T/>"), "T");
        QCOMPARE(read(first, "T"), u"memory"_s);
        QCOMPARE(read(L"", "T"), u"(none)"_s);
        read(put(u"5"_s, "<T/>"), "T");
        QCOMPARE(read(first, "T"), u"disk"_s);
    }

    void saving()
    {
        const auto file = put(u"Save.xml"_s, "<T data='1'/>");
        QCOMPARE(read(file, "T"), u"1"_s);
        QCOMPARE(SaveXmlDocument(file.c_str()), 0);
        // Another letter case is the same file, under the name given first.
        const auto other = m_scratch.path(u"SAVE.XML"_s).toStdWString();
        SetToXML(other.c_str(), "T", "data", u"2"_s);
        QCOMPARE(SaveXmlDocument(other.c_str()), 1);
        SetToXML(other.c_str(), "T", "data", u"2"_s);
        QCOMPARE(SaveXmlDocument(other.c_str()), 0);
        FreeAllXmlDocument();
        QCOMPARE(read(file, "T"), u"2"_s);

        // Asking for write access is enough to be written, even with nothing in it.
        const auto fresh = m_scratch.path(u"fresh"_s).toStdWString();
        GetXmlDocument(fresh.c_str(), true);
        SaveAllXmlDocument();
        QVERIFY(QFile::exists(m_scratch.path(u"fresh"_s)));

        const auto folder = m_scratch.path(u"."_s).toStdWString();
        GetXmlDocument(folder.c_str(), true);
        QCOMPARE(SaveXmlDocument(folder.c_str()), 0);
        QVERIFY(g_XmlDocSet.Find(folder.c_str())->Dirty);
        SaveAllXmlDocument();
        QVERIFY(!g_XmlDocSet.Find(folder.c_str())->Dirty);
    }

    void valuesSurviveAFile()
    {
        const QString nasty = u"<&>\"'\n\r\t ]]> \u20ac \u0416 \U0001F600 "_s;
        const auto file = put(u"v.xml"_s, "<?xml version='1.0' encoding='ISO-8859-1'?>"
                                          "<T x:y='\xe9' xmlns:x='u'><U/></T>");
        SetToXML(file.c_str(), "T\\U", "data", nasty + QChar(1) + QChar(0xFFFE));
        SaveAllXmlDocument();
        FreeAllXmlDocument();
        QCOMPARE(read(file, "T\\U"), nasty);
        QCOMPARE(read(file, "T", "x:y"), u"\u00e9"_s);
    }

    void wrappersAreBounded()
    {
        const auto file = m_scratch.path(u"b.xml"_s).toStdWString();
        const std::wstring value(5000, L'\U0001F600');
        SetTextToXML_W(file.c_str(), L"T", L"data", value.c_str(), 0);
        const auto wide = std::make_unique<wchar_t[]>(WideTextCapacity);
        const auto wideText = [&](const wchar_t *attribute, int size) {
            GetTextFromXML_W(file.c_str(), L"T", attribute, wide.get(), size);
            return std::wstring(wide.get());
        };
        QCOMPARE(wideText(L"data", 8), value.substr(0, 7));
        QCOMPARE(wideText(L"data", 0), value.substr(0, WideTextCapacity - 1));
        QCOMPARE(wideText(L"none", 0), std::wstring());
        const auto narrow = std::make_unique<char[]>(WideTextCapacity);
        SetTextToXML(file.c_str(), "T", "data", QByteArray("\u20ac").repeated(2000));
        QCOMPARE(GetTextFromXML(file.c_str(), "T", "data", narrow.get()), 1);
        QCOMPARE(narrow.get(), QByteArray("\u20ac").repeated(1365));
    }

    // How a start dies of such a file is the resource file's test.
    void unreadableFiles()
    {
        const auto canRead = [this](const QByteArray &bytes) {
            g_XmlDocSet = TXmlDocSet();
            const auto file = put(u"u.xml"_s, bytes);
            const bool any = GetXmlDocument(file.c_str(), true)->hasChildNodes();
            return any && !g_XmlDocSet.Find(file.c_str())->LoadFailed;
        };
        const auto nested = [](int n) { return "<a>"_ba.repeated(n) + "</a>"_ba.repeated(n); };
        QVERIFY(canRead(nested(128)));
        QVERIFY(!canRead(nested(129)));
        QVERIFY(!canRead(nested(500'000)));
        // The parser alone would take half a minute.
        QByteArray wide;
        for (int i = 0; i < 100'000; ++i)
            wide += " a" + QByteArray::number(i) + "='" + QByteArray(i % 3, '=') + "'";
        QElapsedTimer time;
        time.start();
        QVERIFY(canRead("<a" + wide + "><b c='1'/></a>"));
        QVERIFY(time.elapsed() < 4000);
        QCOMPARE(GetXmlDocument(m_scratch.path(u"u.xml"_s).toStdWString().c_str(), false)
                     ->documentElement()
                     .attributes()
                     .size(),
                 200);
        QVERIFY(!canRead("<a>" + QByteArray(9'000'000, ' ') + "</a>"));
        QVERIFY(!canRead("<a><b data='1'/>"));
        QVERIFY(!canRead("<!DOCTYPE a [<!ENTITY b '" + QByteArray(3000, 'x') +
                         "'><!ENTITY c '&b;&b;&b;'>]><a>&c;&c;</a>"));
    }

    void settings()
    {
        g_ResourceFileName =
            m_scratch.put(u"s.xml"_s, "<Galeway><Default><Strings>"
                                      "<test data=' ok '/></Strings></Default></Galeway>");
        QCOMPARE(GetString(u" test "_s), u" ok "_s);
        QVERIFY(!GetString(u"none"_s).isNull());
        QVERIFY(GetConfigString(u"A"_s).isEmpty() && !GetConfigString(u"A"_s).isNull());
        SetConfigString(u" A\n"_s, u"/home/\U0001F600"_s, 3);
        QCOMPARE(GetConfigString(u"A"_s), u"/home/\U0001F600"_s);
        QCOMPARE(GetConfigString(u"\tA "_s, 5), u"/hom"_s);
        SetConfigString(u"A"_s, QString(9000, u'x'));
        QCOMPARE(GetConfigString(u"A"_s, 9000), QString(WideTextCapacity - 1, u'x'));
    }
};

QTEST_GUILESS_MAIN(TestXmlStore)
#include "test_xmlstore.moc"
