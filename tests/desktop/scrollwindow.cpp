// Another program: a window with something that scrolls, 280 x 200 logical pixels at 20, 30, with a
// scroll bar of 20 to the right of it, and below it, at 20, 240, a pane whose content fits in.
//
// scrollwindow KIND

#include <QApplication>
#include <QLabel>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QScrollArea>

using namespace Qt::StringLiterals;

namespace {

constexpr int s_rows = 300;

QString rows()
{
    QString result;
    for (int i = 0; i < s_rows; ++i)
        result += u"row %1\n"_s.arg(i);
    return result;
}

QAbstractScrollArea *createArea(int height, QWidget *parent)
{
    auto *area = new QScrollArea(parent);
    auto *content = new QLabel(u"content"_s, area);
    content->resize(900, height);
    area->setWidget(content);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    return area;
}

QAbstractScrollArea *create(const QString &kind, QWidget *parent)
{
    if (kind == u"text") {
        auto *text = new QPlainTextEdit(parent);
        text->setPlainText(rows());
        return text;
    }
    if (kind == u"list") {
        auto *list = new QListWidget(parent);
        list->addItems(rows().split(u'\n'));
        return list;
    }
    if (kind == u"crowd") {
        for (int i = 0; i < s_rows; ++i)
            new QLabel(u"%1"_s.arg(i), parent);
    }
    return createArea(2000, parent);
}

}  // namespace

int main(int argc, char **argv)
{
    const QApplication application(argc, argv);
    if (argc != 2)
        return 1;
    QWidget window;
    window.setWindowTitle(u"scroll"_s);
    QAbstractScrollArea *area = create(QString::fromLocal8Bit(argv[1]), &window);
    area->setFrameShape(QFrame::NoFrame);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area->setStyleSheet(u"QScrollBar:vertical { width: 20px }"_s);
    area->setGeometry(20, 30, 300, 200);
    createArea(20, &window)->setGeometry(20, 240, 300, 50);
    window.setGeometry(100, 80, 400, 300);
    window.show();
    return QApplication::exec();
}
