#pragma once

#include "capture/grab.h"

#include <QList>
#include <QRect>
#include <QWidget>

#include <optional>

class QPushButton;

/// What can be done with what is marked, as buttons in a dark frame on the overlay. The keyboard is
/// the overlay's: each tip names the key that does the same.
class TakeButtons : public QWidget
{
    Q_OBJECT
public:
    explicit TakeButtons(QWidget *parent);

    /// The top left corner for a frame of `size`: beside `beside`, which may have no width, inside
    /// of `home` and off everything in `clear`, as far as there is room. One coordinate system.
    static QPoint place(QSize size, const QRect &beside, const QRect &home,
                        const QList<QRect> &clear);

signals:
    /// One was clicked. Without goals the preferences decide.
    void chosen(const std::optional<GrabGoals> &goals);
    /// The pointer rests on one, which has this tip.
    void explained(const QString &tip);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void add(const QString &name, const QString &tip, const std::optional<GrabGoals> &goals);

    QList<QPushButton *> m_buttons;
};
