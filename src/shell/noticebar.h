#pragma once

#include <QList>
#include <QString>
#include <QWidget>

#include <functional>
#include <optional>

class QBoxLayout;
class QLabel;

/// A quiet word to the user: a dark plate at the foot of an area of the window. It takes no focus
/// when it appears, and goes by itself after some ten seconds, but not under the pointer, nor while
/// it has the focus. One that offers something to do stays until it is answered or closed, and
/// comes back when a later one that covers it is gone; of those that only tell, the last is shown.
/// What is told again takes the place of what was told before.
class NoticeBar : public QWidget
{
    Q_OBJECT

public:
    struct Action {
        QString text{};
        std::function<void()> run{};  ///< once the bar is closed
    };

    /// Lies over `area`, as its sibling, wherever that goes.
    explicit NoticeBar(QWidget *area);

    /// Shows a text, as plain as it is. Its time counts from when it can first be seen.
    void tell(const QString &text, const QList<Action> &actions = {});
    /// Takes back what no longer holds; a text that is not there does nothing.
    void withdraw(const QString &text);
    /// Its time counts from now on, seen or not.
    void startTime();
    /// The text that is shown; empty for none.
    QString text() const;

    bool eventFilter(QObject *watched, QEvent *event) override;

protected:
    void changeEvent(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    struct Notice {
        QString text{};
        QList<Action> actions{};
    };

    bool hasFocusInside() const;
    void showLast();
    void fit();
    void leave();

    QWidget *m_area;
    QLabel *m_text;
    QBoxLayout *m_buttons = nullptr;
    QList<Notice> m_notices{};  ///< the last is shown
    int m_round = 0;            ///< tells the time that runs from those of earlier texts
    bool m_isTimed = false;
    std::optional<quint64> m_pressed{};  ///< time of the last press on a button, in ms
};
