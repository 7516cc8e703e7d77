#pragma once

#include <QWidget>

/// Shows that a widget has the keyboard where its children paint all of it: a ring over its edges,
/// while the focus came by a key. Lies beside `target`, which has a parent, and goes with it.
class FocusRing : public QWidget
{
    Q_OBJECT

public:
    explicit FocusRing(QWidget *target);

    bool eventFilter(QObject *watched, QEvent *event) override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void fit();

    QWidget *m_target;
};
