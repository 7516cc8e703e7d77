#pragma once

#include <QGridLayout>
#include <QImage>
#include <QStringList>
#include <QWidget>

#include <optional>

class QLabel;

/// A dark plate with a headline, lines that explain keys, and an optional small picture beside
/// them. It gets no mouse or key events. With a parent it is a child of it; without one it is a
/// window above all others.
class HintPlate : public QWidget
{
    Q_OBJECT
public:
    explicit HintPlate(QWidget *parent);

    void setHeadline(const QString &text);
    /// Reserves space for the longest of these headlines, so that the layout does not change with
    /// the headline. The headline is wrapped to the width of the lines, which must have been added
    /// before.
    void reserveHeadlines(const QStringList &texts);
    /// Adds a line with a key's name and what the key does.
    void addLine(const QString &key, const QString &meaning);
    void clearLines();
    /// Sets whether the keys have an effect at present; they have at first.
    void setKeysHeard(bool heard);

    /// Reserves space for a picture, so that the layout does not change when it is set or grows.
    void reservePicture();
    /// The space for a picture in the present layout, in device pixels; empty if the layout shows
    /// none.
    QSize pictureBox() const;
    /// Sets a picture that is no larger than pictureBox(). `name` and `description` are its
    /// accessible texts.
    void setPicture(const QImage &picture, const QString &name, const QString &description);

    /// Shows a plate without a parent near `area`, on its screen, where it covers least of it.
    /// Global device pixels.
    void showBeside(const QRect &area);
    /// Shows a plate without a parent in the corner of the pointer's screen that is opposite to it.
    /// Global device pixels.
    void showAwayFrom(QPoint pointer);
    /// Shows the plate where it does not cover `area`, nor, if there is space, `window` that
    /// contains it, in the form that fits best. The plate moves with `area`; its position and form
    /// change only if they no longer fit. If there is no space, it covers `area`, or is hidden if
    /// `mayCover` is false. Global device pixels.
    void showOutside(const QRect &area, const QRect &window, bool mayCover);

    /// What it covers while it is shown. Global device pixels.
    QRect covered() const { return {m_corner, m_covered}; }

    /// The top left corner for a plate of `size` beside `area`: outside of it if a screen has
    /// space, else in its top right corner. Global device pixels.
    static QPoint place(QSize size, const QRect &area, const QList<QRect> &screens);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QSize fitted();
    void showAt(QPoint corner);
    bool goesAlong(const QRect &area, const QList<QRect> &screens);
    enum class Form {
        Wide,  ///< the picture is beside the lines
        Tall,  ///< the picture is below the lines
        Flat,  ///< a low picture is beside the lines
        Line   ///< all texts are on one line, no higher than a title bar, without a picture
    };
    void setForm(Form form);
    void sizeHeadline();
    void placePicture();
    void tellHeadline();

    QGridLayout *m_grid;
    QLabel *m_headline;
    QString m_text;           // of the headline alone
    QStringList m_longest{};  // the longest headlines
    bool m_areKeysHeard = true;
    QLabel *m_picture = nullptr;
    int m_pictureRow = 0;  // the picture's row in the form Tall
    Form m_form = Form::Wide;
    QRect m_outside{};  // the area outside of which it was last shown
    QSize m_covered{};
    QPoint m_corner{};  // the position where it was last shown, in global device pixels
};
