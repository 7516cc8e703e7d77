#include "config/profile.h"
#include "rows.h"
#include "scratch.h"

#include <array>

using namespace Qt::StringLiterals;

class TestProfile : public QObject
{
    Q_OBJECT

    Scratch m_scratch;

    QByteArray put(const QByteArray &text) const
    {
        return QFile::encodeName(m_scratch.put(u"p"_s, text));
    }

private slots:
    void values()
    {
        const auto check = [&](const QByteArray &row, const QByteArray &text,
                               const QByteArray &expected) {
            std::array<char, 1024> out;
            const int length = GetPrivateProfileString("sec", "key", "fallback", out.data(),
                                                       out.size(), put(text));
            expect(row, QByteArray(out.data()), expected);
            expect(row, length, expected == "fallback" ? 0 : int(expected.size()));
        };
        const QByteArray none = "fallback";
        check("blanks", "[sec]\n key\t =\t value  \n"_ba, "value  "_ba);
        check("case, CR LF", "[SEC]\r\nKEY=value\r\n"_ba, "value"_ba);
        check("around the header", "x [sec] y\nkey=a=b"_ba, "a=b"_ba);
        check("skipped lines", "key=1\n[sec]\n;comment\n\r\nk=a\nkey=3\n"_ba, "3"_ba);
        check("malformed line", "[sec]\njunk\nkey=value\n"_ba, none);
        check("next section", "[sec]\n[s=]\nkey=value\n"_ba, none);
        check("longest line", "[sec]\nkey="_ba + QByteArray(1018, 'x') + "\nk=a",
              QByteArray(1018, 'x'));
        check("rest of a long line", "[sec]\nk="_ba + QByteArray(1021, 'x') + "key=value\n",
              "value"_ba);
        check("no text", ""_ba, none);
        check("zero byte", "[sec]\nkey=val\0ue\n"_ba, "val"_ba);
    }

    void limits()
    {
        std::array<char, 8> narrow;
        for (const auto &[length, found] : {std::pair(53, 5), std::pair(54, 0)}) {
            const QByteArray name(length, 's');
            const QByteArray file = put('[' + name + "]\nkey=value\n");
            QCOMPARE(GetPrivateProfileString(name, "key", nullptr, narrow.data(), 8, file), found);
        }
        const QByteArray file = put("[one]\na=1\n;b=2\n\nc d =3\n[three]\n[bad\n[]\n");
        QByteArray out(12, '#');
        QCOMPARE(GetPrivateProfileString("one", nullptr, "x", out.data(), 12, file), 7);
        QCOMPARE(out, "a\0c d \0\0####"_ba);
        // Cut, but still ended by two zeros.
        out.fill('#');
        QCOMPARE(GetPrivateProfileString("one", nullptr, "x", out.data(), 5, file), 4);
        QCOMPARE(out, "a\0c\0\0#######"_ba);
        out.fill('#');
        QCOMPARE(GetPrivateProfileSectionNames(out.data(), 12, file), 5);
        QCOMPARE(out, "one\0three\0\0#"_ba);
    }

    void productFiles()
    {
        m_scratch.put(u"gwprofile_r.data"_s, "[GwProfile_R]\napp=Caf\u00e9 \U0001F600,sig,nature\n"
                                             "company=plain\nlogo=,sig\n");
        m_scratch.put(u"gwver.data"_s, "[Caf\u00e9 \U0001F600]\nver=1.2,3\n");
        const QByteArray folder = QFile::encodeName(m_scratch.folder.path());
        QCOMPARE(GwProfilePath(folder), int(folder.size()));
        QCOMPARE(GwProfilePath(""), int(folder.size()));

        std::array<char, 64> narrow;
        QCOMPARE(GwProfileGetA("COMPANY", narrow.data(), narrow.size()), 5);
        QCOMPARE(narrow.data(), "plain");
        QCOMPARE(GwProfileGetA("company", nullptr, 0), 5);
        QCOMPARE(GwProfileGetA("none", narrow.data(), narrow.size()), 0);
        QCOMPARE(narrow.data(), "");

        std::array<wchar_t, 64> wide;
        const std::wstring application = L"Caf\u00e9 \U0001F600";
        QCOMPARE(GwProfileGetW(L"app", wide.data(), wide.size()), 10);
        for (const wchar_t *absent : {L"logo", L"none", L""})
            QCOMPARE(GwProfileGetW(absent, wide.data(), wide.size()), 0);
        QCOMPARE(GwVerGetW(L"", wide.data(), wide.size()), -1);
        QCOMPARE(std::wstring(wide.data()), application);
        QCOMPARE(GwVerGetW(application.c_str(), wide.data(), 4), 5);
        QCOMPARE(std::wstring(wide.data()), std::wstring(L"1.2"));
    }
};

QTEST_APPLESS_MAIN(TestProfile)
#include "test_profile.moc"
