#pragma once

#include "shell/departure.h"
#include "shell/focuscover.h"
#include "shell/grabflow.h"

#include <memory>

class MainWindow;

/// The main window and the desktop's front, as the grab flow needs them.
class FrontWindow : public QObject, public GrabFront
{
    Q_OBJECT
public:
    /// `window` and `clock` outlive this object.
    FrontWindow(MainWindow &window, Clock &clock)
        : m_window(window), m_clock(clock), m_front(clock), m_departure(clock)
    {
    }

    GrabSituation situation() override;
    QString refusal(GrabCommand command) override;
    void place(Place place) override;
    bool hidePins() override;
    void showPins(bool withKeyboard) override;
    void hideAll(bool hide) override;
    void close() override;
    void closeMenus() override;
    void takeFocus() override;
    void regainFocus() override;
    void dropFocus(bool giveBack) override;
    void focusOther() override;
    void focusOwn(QWidget *window) override;
    void closing() override;
    void settle() override;
    void freeClicks() override;
    bool addDocument(Grab grab, std::optional<GrabGoals> goals) override;
    void say(const QString &text) override;
    void tellProgress(const QString &text) override;

    const Front &front() const { return m_front; }
    /// Windows that are still shown are about to close, for settle() to wait for.
    void leaving(const QList<const QWidget *> &windows) { m_departure.begin(windows); }
    /// No click that follows reaches another program, or this one, until freeClicks().
    void holdClicks();
    /// What the program is active through; null before the first grab that needs it.
    FocusCover *cover() { return m_cover.get(); }
    void dropCover() { m_cover.reset(); }

signals:
    /// Escape, while nothing is open that hears it.
    void escaped();

private:
    void hideWindows(bool hide);
    void hideDialogs(bool hide);

    MainWindow &m_window;
    Clock &m_clock;
    Front m_front;
    Departure m_departure;
    qint64 m_clicksHeld = 0;  // since then
    std::unique_ptr<FocusCover> m_cover;
    QList<QPointer<QWidget>> m_hiddenDialogs;
    bool m_isHidden = false;  // the main window, where it can't be minimised
    bool m_isMinimizedForHelper = false;
    QPixmap m_flag;  // the registration's, for pictures
};
