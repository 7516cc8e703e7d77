// Draws the program's icon at build time in the sizes of an icon theme.
//
// makeicons <drawing.svg> <output folder> <size>...
//
// Writes <output folder>/<size>x<size>/apps/<name of the drawing>.png.

#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

bool drawIcon(QSvgRenderer &drawing, int size, const QString &folder, const QString &name)
{
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    drawing.render(&painter);
    painter.end();
    const QString apps = folder + u"/%1x%1/apps"_s.arg(size);
    return QDir().mkpath(apps) && image.save(apps + u'/' + name + u".png"_s, "PNG");
}

}  // namespace

int main(int argc, char **argv)
{
    if (argc < 4) {
        std::fputs("usage: makeicons <drawing.svg> <output folder> <size>...\n", stderr);
        return 2;
    }
    const QString path = QString::fromLocal8Bit(argv[1]);
    QSvgRenderer drawing(path);
    if (!drawing.isValid()) {
        std::fprintf(stderr, "makeicons: not a picture: %s\n", argv[1]);
        return 1;
    }
    for (int i = 3; i < argc; ++i) {
        const int size = QByteArray(argv[i]).toInt();
        if (size <= 0 || !drawIcon(drawing, size, QString::fromLocal8Bit(argv[2]),
                                   QFileInfo(path).completeBaseName())) {
            std::fprintf(stderr, "makeicons: cannot draw the size %s\n", argv[i]);
            return 1;
        }
    }
    return 0;
}
