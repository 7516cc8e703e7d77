#pragma once

#include <QColor>
#include <QFrame>
#include <QList>

#include <functional>

class QAbstractButton;
class QGridLayout;

/// Offers colours in a small window: those that were chosen last, a palette, and the toolkit's
/// dialog for all others. The arrow keys go through them, Return takes one, Escape leaves.
class ColorPopup : public QFrame
{
    Q_OBJECT

public:
    /// Opens beside `anchor`, with `current` marked. `take` gets the chosen colour, which is opaque
    /// and counts as the one chosen last from then on; it is called once or never, and not after
    /// the window of `anchor` is gone.
    static void open(const QWidget &anchor, const QColor &current,
                     std::function<void(const QColor &)> take);
    /// A colour in the user's language: the name of the one in the palette that is most like it,
    /// and its value.
    static QString nameOf(const QColor &color);
    /// Shows a colour on a button that stands for it.
    static void showOn(QAbstractButton &on, const QColor &color);

signals:
    void chosen(const QColor &color);
    /// The user wants another colour than those that are here.
    void moreWanted();

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    ColorPopup(QWidget *window, const QColor &current);
    void addRows(QGridLayout &grid, const QString &title, const QList<QColor> &colors,
                 const QColor &current);
    /// Whether the focus went from one colour to another, by rows and columns.
    bool moveFocus(int across, int down);

    QList<QList<QAbstractButton *>> m_rows{};  ///< top to bottom, with "More Colours..." last
};
