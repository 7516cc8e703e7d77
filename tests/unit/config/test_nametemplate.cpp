#include "config/nametemplate.h"
#include "rows.h"

using namespace Qt::StringLiterals;

class TestNameTemplate : public QObject
{
    Q_OBJECT

private slots:
    void names()
    {
        const QDateTime time(QDate(2026, 3, 9), QTime(7, 5, 2));
        const auto check = [&](const QByteArray &row, const QString &text, int counter,
                               const QString &name, const QString &application = u"Mail"_s,
                               const QString &title = u"Inbox"_s) {
            const NameTemplate made(text);
            expect(row, made.fault(), QString());
            const QString file = made.fileName({time, application, title}, counter, u"png"_s);
            expect(row, file, name + u".png"_s);
            QVERIFY2(file.toUtf8().size() <= 255, row);
        };
        check("usual", NameTemplate::usual(), 1, u"Mail 2026-03-09 07-05-02"_s);
        check("usual, again", NameTemplate::usual(), 2, u"Mail 2026-03-09 07-05-02 (2)"_s);
        check("formats", u"{date:d.M.yy}_{time:HH'h'}{counter:3}"_s, 12, u"9.3.26_07h012"_s);
        check("more digits than wanted", u"{counter:1}"_s, 123, u"123"_s);
        check("braces", u"{{{title}}} {{date}}"_s, 1, u"{Inbox} {date}"_s);
        check("empty parts", u"a {application} {title} b"_s, 1, u"a b"_s, {}, u" \n "_s);
        check("nothing at all", u"{title}"_s, 2, u"2026-03-09 07-05-02 (2)"_s, {}, {});
        check("no template", {}, 1, u"2026-03-09 07-05-02"_s);
        check("out of the folder", u"../x/{title}"_s, 1, u"_._x_.._.._etc_passwd"_s, {},
              u"../../etc/passwd"_s);
        check("hidden", u"{title}"_s, 1, u"_bashrc"_s, {}, u".bashrc"_s);
        check("hidden behind blanks", u" {title}"_s, 1, u"_x"_s, {}, u"\t.x"_s);
        check("dots alone", u"{title} ."_s, 2, u"2026-03-09 07-05-02 (2)"_s, {}, u".."_s);
        check("dots at its end", u"{title}"_s, 1, u"Loading"_s, {}, u"Loading ..."_s);
        check("dots that are left", u"{title}"_s, 1, u"2026-03-09 07-05-02"_s, {},
              QString(300, u'.') + u'x');
        check("not to be seen", u"{title}"_s, 1, u"a_b_c_gnp"_s, {},
              u"a"_s + QChar(0) + u"b\u001bc\u202egnp"_s);
        // The longest gives way, by whole characters, and never what makes the name another one.
        check("long title", u"{title} {date}"_s, 1, QString(240, u'x') + u" 2026-03-09"_s, {},
              QString(5000, u'x'));
        check("two bytes each", u"{title} {counter:5}"_s, 7,
              QString(122, QChar(0xe4)) + u" 00007"_s, {}, QString(300, QChar(0xe4)));
        const QString smile = QString::fromUcs4(U"\U0001f600");
        check("four bytes each", u"{title}{title}"_s, 2, smile.repeated(61) + u" (2)"_s, {},
              smile.repeated(400));
        const QString accented = u"e\u0301"_s;
        check("with its accent", u"{title}"_s, 1, accented.repeated(83), {}, accented.repeated(90));
        check("long text of its own", QString(300, u'y') + u"{counter}"_s, 10,
              QString(249, u'y') + u"10"_s);
    }

    void faults()
    {
        const auto check = [](const QByteArray &row, const QString &text, const QString &place,
                              const QString &word) {
            const QString fault = NameTemplate(text).fault();
            QVERIFY2(fault.contains(u' ' + place + u':') && fault.contains(word),
                     row + ": " + fault.toUtf8());
        };
        check("unknown word", u"a {windw} b"_s, u"3"_s, u"{windw}"_s);
        check("empty word", u"{}"_s, u"1"_s, u"{}"_s);
        check("not closed", u"{date} {time"_s, u"8"_s, u"{"_s);
        check("not closed before the next", u"{date {time}"_s, u"1"_s, u"{"_s);
        check("not opened", u"date}"_s, u"5"_s, u"}"_s);
        check("no format", u"{date:}"_s, u"1"_s, u"{date}"_s);
        check("open quote", u"{date:'}"_s, u"1"_s, u"{date:'}"_s);
        check("no width", u"x{counter:0}"_s, u"2"_s, u":0"_s);
        check("width of letters", u"{counter:abc}"_s, u"1"_s, u":abc"_s);
        check("format where there is none", u"{title:3}"_s, u"1"_s, u":3"_s);
        check("the first of two", u"{a}{b}"_s, u"1"_s, u"{a}"_s);
    }
};

QTEST_APPLESS_MAIN(TestNameTemplate)
#include "test_nametemplate.moc"
