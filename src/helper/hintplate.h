#pragma once

#include <QGridLayout>
#include <QImage>
#include <QStringList>
#include <QWidget>

#include <optional>

class QLabel;

/// A dark plate with a headline and lines that tell which key does what, and a small picture beside
/// them where there is one. It takes no click and no key. With a parent it lies on it; without one
/// it is a window of its own, above all others.
class HintPlate : public QWidget
{
    Q_OBJECT
public:
    explicit HintPlate(QWidget *parent);

    void setHeadline(const QString &text);
    /// Keeps room for the longest of what the headline may say, so that nothing moves when it does.
    /// Wrapped to the width of the lines, which are to be there.
    void reserveHeadlines(const QStringList &texts);
    void addLine(const QString &key, const QString &meaning);
    void clearLines();
    /// Whether the keys do what the lines tell, as they do at first.
    void setKeysHeard(bool heard);

    /// Keeps room for a picture, so that one that comes or grows moves nothing.
    void reservePicture();
    /// The room that a picture has as the plate is laid out now, in device pixels; none where it
    /// shows none.
    QSize pictureBox() const;
    /// No larger than that. `name` and `description` are what a screen reader says of it.
    void setPicture(const QImage &picture, const QString &name, const QString &description);

    /// Shows a plate without a parent near a rectangle, on its screen, where it covers least of it.
    /// Global device pixels.
    void showBeside(const QRect &area);
    /// The same where it covers nothing of the rectangle, and of the window that this lies in if
    /// there is room, laid out as fits best. It goes along with the rectangle, and changes place
    /// and layout only where they fit no more. Where there is no room it lies on the rectangle, or,
    /// if it must not cover that, is hidden.
    void showOutside(const QRect &area, const QRect &window, bool mayCover);

    /// The place for a box of `size` beside `area`: outside of it where a screen has room, else in
    /// its top right corner. Global device pixels.
    static QPoint place(QSize size, const QRect &area, const QList<QRect> &screens);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QSize fitted();
    void showAt(QPoint corner);
    bool goesAlong(const QRect &area, const QList<QRect> &screens);
    enum class Form {
        Wide,  ///< the picture beside the lines
        Tall,  ///< the picture below them
        Flat,  ///< a low one beside them
        Line   ///< all that is told on one line, no higher than a title bar, and no picture
    };
    void setForm(Form form);
    void sizeHeadline();
    void placePicture();
    void tellHeadline();

    QGridLayout *m_grid;
    QLabel *m_headline;
    QString m_text;           // the headline's own
    QStringList m_longest{};  // of its texts
    bool m_areKeysHeard = true;
    QLabel *m_picture = nullptr;
    int m_pictureRow = 0;  // where it lies below the lines
    Form m_form = Form::Wide;
    QRect m_outside{};  // what it was last shown outside of
    QPoint m_corner{};  // where it was last shown; global device pixels
};
