#include "config/profile.h"
#include "config/xmlstore.h"
#include "scratch.h"

#include <QTest>

#include <memory>
#include <random>

using namespace Qt::StringLiterals;

// Input that no sane program wrote. The checks are few: the sanitizers are the real ones.
class TestHostileBytes : public QObject
{
    Q_OBJECT

    Scratch m_scratch;
    std::mt19937 m_random{20240229};

    qsizetype below(qsizetype limit) { return qsizetype(m_random() % std::size_t(limit)); }

    QByteArray mutated(QByteArray bytes)
    {
        // clang-format off
        static const QList<QByteArray> pieces{
            "x", "\u20ac", "<B/>", "<!-- -->", "&#x1F600;", "&#9;", "&e;", "<![CDATA[<]]>", "k=\"v\" ", "<", ">",
            "\"", "'/>", "&#0;", "<!--", "[", "]", "=", "\r", "\n", ";", ",", "\0"_ba, "\xff\xfe"_ba, "\xC3",
            "\xF0\x9F\x98\x80", "<?xml encoding='UTF-16'?>", QByteArray(3000, 'k'), QByteArray(700, '\x80'),
            "<!DOCTYPE a [<!ENTITY b '&b;&b;'>]>&b;"};
        // clang-format on
        for (qsizetype n = 1 + below(2); n > 0; --n)
            bytes.replace(below(bytes.size() + 1), below(4) ? 0 : below(12),
                          pieces[below(pieces.size())]);
        return below(8) ? bytes : bytes.first(below(bytes.size()));
    }

    // Loads a file anew; gives false when it can't be read.
    static bool load(const std::wstring &file)
    {
        g_XmlDocSet = TXmlDocSet();
        GetXmlDocument(file.c_str(), true);
        return !g_XmlDocSet.Find(file.c_str())->LoadFailed;
    }

private slots:
    // Whatever could be read can be read again after a change was saved.
    void store()
    {
        const QByteArray seed =
            "<?xml version='1.0' encoding='UTF-8'?><!DOCTYPE T [<!ENTITY e 'v&lt;'>]>\n"
            "<T ver='3'><A data='1&e;'>x&amp;<B/></A><A data='\u20ac'><B c:d='2'/></A></T>";
        int readable = 0;
        for (int round = 0; round < 1000; ++round) {
            const QByteArray bytes = mutated(seed);
            const std::wstring file = m_scratch.put(u"x"_s, bytes).toStdWString();
            QByteArray path = "T\\A\\New";
            if (load(file)) {
                ++readable;
                path.replace(
                    0, 1,
                    GetXmlDocument(file.c_str(), false)->documentElement().tagName().toUtf8());
            }
            SetToXML(file.c_str(), path, "data", QString::fromUtf8(bytes.left(50)));
            QString before;
            QCOMPARE(GetFromXML(file.c_str(), path, "data", before), 1);
            m_scratch.put(u"x"_s, XmlBytes(*GetXmlDocument(file.c_str(), false)));
            QVERIFY2(load(file), bytes);
            QString after;
            QCOMPARE(GetFromXML(file.c_str(), path, "data", after), 1);
            QCOMPARE(after, before);
        }
        QVERIFY2(readable > 50, QByteArray::number(readable));
    }

    void brokenText()
    {
        const std::wstring file = m_scratch.path(u"n"_s).toStdWString();
        const std::wstring broken{L'T', L'\\', wchar_t(0x7fffffff), wchar_t(-1), wchar_t(0xD800)};
        for (const auto &text : {broken, std::wstring(100'000, L'\U0001F600')})
            SetTextToXML_W(file.c_str(), text.c_str(), text.c_str(), text.c_str(), 0);
        SetToXML(file.c_str(), QByteArray(20'000, '\\') + QByteArray(20'000, '\xF0'), nullptr, {});
        SetTextToXML_W(nullptr, nullptr, nullptr, nullptr, 0);
        // No terminator within the size.
        const auto open = std::make_unique<wchar_t[]>(5);
        std::copy(broken.begin(), broken.end(), open.get());
        SetTextToXML_W(file.c_str(), L"T", L"data", open.get(), 5);
        SaveAllXmlDocument();
        QVERIFY(load(file));
        QString value;
        QCOMPARE(GetFromXML(file.c_str(), "T", "data", value), 1);
        QVERIFY(value.startsWith(u"T\\"));
    }

    void profile()
    {
        const QByteArray seed = "; c\n[other]\na=1\n[gwprofile_r] x\r\napp = The App ,0123abcd\n"
                                "company=\u20ac,77\nlogo=,\n[The App]\nver=1.0\n";
        GwProfilePath(QFile::encodeName(m_scratch.folder.path()));
        for (int round = 0; round < 1000; ++round) {
            const QByteArray file =
                QFile::encodeName(m_scratch.put(u"gwprofile_r.data"_s, mutated(seed)));
            m_scratch.put(u"gwver.data"_s, mutated(seed));
            // Sizes that are too small, in memory of exactly that size.
            const int size = int(below(30));
            const auto narrow = std::make_unique<char[]>(std::size_t(size));
            const auto wide = std::make_unique<wchar_t[]>(std::size_t(size));
            for (const char *key : {"app", "company", static_cast<const char *>(nullptr), ""}) {
                GetPrivateProfileString("gwprofile_r", key, "fallback", narrow.get(), size, file);
                GwProfileGetA(key, narrow.get(), size);
            }
            GetPrivateProfileSectionNames(narrow.get(), size, file);
            GwProfileGetW(L"company", wide.get(), size);
            GwVerGetW(L"The App", wide.get(), size);
            QVERIFY(size == 0 || qstrnlen(narrow.get(), size) < std::size_t(size));
        }
    }
};

QTEST_APPLESS_MAIN(TestHostileBytes)
#include "test_hostilebytes.moc"
