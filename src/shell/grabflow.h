#pragma once

#include "capture/grab.h"
#include "platform/pictures.h"

#include <QList>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QWidget>

#include <functional>
#include <optional>

class Clock;

/// What a press asks for, by hot key, button, menu or bus.
enum class GrabCommand {
    Rectangle,
    Ellipse,
    Polygon,
    Windows,
    Window,
    Screen,
    Countdown,
    Menu,
    Last,     ///< the area that was marked last, once more
    Active,   ///< the window that is in front
    Monitor,  ///< the screen with the pointer
    Show
};

/// How a press comes.
enum class GrabWay {
    CountsDown = 1,  ///< a countdown is wanted before everything else
    ByKey = 2        ///< nothing of this program closes with it, as a menu would
};
Q_DECLARE_FLAGS(GrabWays, GrabWay)
Q_DECLARE_OPERATORS_FOR_FLAGS(GrabWays)

/// How far a grab has come.
enum class GrabState {
    Idle,       ///< none is under way
    Freezing,   ///< nothing is open yet: the window gets out of the way, the desktop is asked for
                ///< its pictures
    Marking,    ///< an overlay is open, and has the keyboard
    Counting,   ///< the countdown runs, and Escape is heard
    Browsing,   ///< the browser of windows is open
    Asking,     ///< a question has to be answered first
    MenuWait,   ///< the helper waits for a menu
    Picking,    ///< the user points at a window
    Scrolling,  ///< the helper turns the wheel over it
    Ending      ///< the picture is taken, and everything put back
};
inline constexpr int GrabStateCount = 10;

/// What can happen at any moment.
enum class GrabEvent {
    Press,        ///< of a key or button, or a call over the bus
    Escape,       ///< heard by nothing that is open for the grab
    Opens,        ///< what waits for the user is there
    Works,        ///< the helper's word that it begins
    Scrolls,      ///< its word that it turns the wheel
    PutsBack,     ///< its word that it puts back what it has moved
    Ends,         ///< its last word, with a picture or without
    Quit,         ///< the program is to be closed
    DisplayLost,  ///< a screen is gone
    Cancel,       ///< told to give up, from the tray or over the bus
};
inline constexpr int GrabEventCount = 10;

/// What follows.
enum class GrabStep {
    Nothing,
    Start,    ///< the command of the press
    Bring,    ///< what is open to the front
    Keep,     ///< the press, until the grab is over
    Replace,  ///< keep the press, and end the wait that gives way to it
    GiveUp,   ///< close what is open, with no picture
    Count,    ///< the Escape: the second one within a second gives up
    Hide,     ///< this program gets out of the helper's way
    Follow,   ///< the state becomes what was told
    Finish,   ///< the helper is done
    Close,    ///< the program, now
    Leave,    ///< give up, and close the program then
};

/// The table of all this.
GrabStep grabStep(GrabState state, GrabEvent event);

/// How things stand.
struct GrabSituation {
    bool isActive = false;       ///< this program is in front
    QPointer<QWidget> active{};  ///< its active window; null where it has none
    bool isMinimized = false;    ///< the main window
    bool isComposited = false;   ///< translucent windows show what lies behind them
    bool hideBefore = false;     ///< the setting: the window gets out of the way
    bool showAfter = false;      ///< the setting: it comes to the front with the picture
    bool freezes = false;        ///< the setting: the screen stands still while it is marked
    uint process = 0;            ///< that is in front; 0 where it doesn't tell
    unsigned window = 0;         ///< that is in front; 0 where none is, or it is not known
    bool showsPointer = false;   ///< the setting: it is in the pictures
    int countdown = 0;           ///< the setting, in seconds; 0 and below is none
    int delay = 0;               ///< seconds of a countdown that is wanted whatever that says
};

/// What a grab needs of the main window and of the desktop's front. All that waits runs events.
class GrabFront
{
public:
    virtual ~GrabFront() = default;

    virtual GrabSituation situation() = 0;
    /// Why that can't be grabbed here; empty where it can.
    virtual QString refusal(GrabCommand command) = 0;

    enum class Place { Minimized, Restored, Behind, InFront };
    /// Puts the main window there. In front may mean a question of its own that is open.
    virtual void place(Place place) = 0;
    /// Pins off the screen, unless they may be in pictures; true if any was there.
    virtual bool hidePins() = 0;
    /// And back; the one that had the keyboard gets it again, if told so.
    virtual void showPins(bool withKeyboard) = 0;
    /// Every window of this program out of the way of a grab that it has no part in, or back.
    virtual void hideAll(bool hide) = 0;
    virtual void close() = 0;  ///< soon

    /// Closes menus of other programs that are open, and have the keyboard.
    virtual void closeMenus() = 0;
    /// Makes this program active through a window that shows nothing.
    virtual void takeFocus() = 0;
    /// Makes it active again, if that window is there.
    virtual void regainFocus() = 0;
    /// Hides that window, and gives the front back before if told so.
    virtual void dropFocus(bool giveBack) = 0;
    /// Brings the application that was in front back there.
    virtual void focusOther() = 0;
    /// Brings a window of this program to the front.
    virtual void focusOwn(QWidget *window) = 0;
    /// Windows of this program may have closed just now, which settle() is to wait for.
    virtual void closing() = 0;
    /// Waits until what has been closed has left the screen.
    virtual void settle() = 0;
    /// Lets clicks reach other programs again, but for the second one of a double click.
    virtual void freeClicks() = 0;

    /// Brings the picture to where it is to go: where the user wanted it meanwhile, else where the
    /// press said, if it did. False where the window has no part in that.
    virtual bool addDocument(Grab grab, std::optional<GrabGoals> goals) = 0;
    virtual void say(const QString &text) = 0;
    /// How far what is under way has come, where no window may say it; empty when it is over.
    virtual void tellProgress(const QString &text) = 0;
};

/// What takes the pictures. What waits for the user runs events, in which the flow may be told of
/// anything.
class GrabTools
{
public:
    virtual ~GrabTools() = default;

    struct Marked {
        /// Reads the picture once the overlay has left the screen; null where the user gave up.
        std::function<Grab()> take{};
        int delay = 0;  ///< seconds of a countdown before that; 0 is none
    };
    /// Runs an overlay. Clicks that follow an accepted one reach no other program, until they are
    /// freed.
    virtual Marked mark(GrabCommand command) = 0;
    /// Takes what nobody has to choose: the desktop, a screen, the last area, or the window in
    /// front, whose number in the application watch that is.
    virtual Grab takeAtOnce(GrabCommand command, unsigned window) = 0;
    /// Runs the countdown; false where it was given up.
    virtual bool countDown(int seconds) = 0;
    virtual void restartCountDown(int seconds) = 0;
    /// Runs the browser; nothing where the user gave up.
    virtual std::optional<QList<Grab>> browse() = 0;

    /// Whether a question comes before this grab of the helper's.
    virtual bool mustAsk(GrabCommand command) = 0;
    /// Asks it, and starts the grab: its words follow, later. False where the grab ends there, as
    /// it does where `begin`, called in between, says so.
    virtual bool startHelper(GrabCommand command, const std::function<bool()> &begin) = 0;
    virtual void stopMenuWait() = 0;  ///< the helper's last word follows
    virtual void dropHelper() = 0;    ///< no word follows
    virtual void keepContent() = 0;   ///< what has been taken of what scrolls

    /// Whether escape() is to be told of Escape while other programs have the keyboard, which get
    /// it as well.
    virtual void hearEscape(bool hears) = 0;

    /// Brings what is open for the grab to the front.
    virtual void bringForward() = 0;
    /// Closes it as the user would who gives up. What runs it returns then, and starts nothing; of
    /// the helper the last word follows.
    virtual void closeOpen() = 0;
};

/// Knows whether a grab is under way, and leads it from the press to its end: one at a time, and
/// whatever happens meanwhile as the table says.
class GrabFlow : public QObject
{
    Q_OBJECT

public:
    /// They outlive this object.
    GrabFlow(GrabFront &window, GrabTools &tools, Pictures &pictures, Clock &clock)
        : m_window(window), m_tools(tools), m_pictures(pictures), m_clock(clock)
    {
    }

    GrabState state() const { return m_state; }
    static QString nameOf(GrabState state);

    /// `goals` are what becomes of the pictures; none: as the preferences say.
    void press(GrabCommand command, std::optional<GrabGoals> goals = {}, GrabWays ways = {});
    /// Begins the last grab anew, for the user.
    void repeat();
    void escape();
    /// Gives up whatever the grab under way waits for.
    void cancel() { hear(GrabEvent::Cancel); }
    bool canCancel() const;
    /// What waits for the user in the grab under way is open now.
    void opened() { hear(GrabEvent::Opens); }
    void helperWorks() { hear(GrabEvent::Works); }
    void helperScrolls() { hear(GrabEvent::Scrolls); }
    /// The window that its picture will be of.
    void helperPicks(const QString &application, const QString &title)
    {
        m_picked = {application, title};
    }
    void helperTells(const QString &text) { m_window.tellProgress(text); }
    void helperPutsBack() { hear(GrabEvent::PutsBack); }
    /// A picture of the helper's, which its last word follows.
    void helperTakes(Grab grab);
    void helperEnds() { hear(GrabEvent::Ends); }
    /// There is no picture of the helper's, and the user is told why; before its last word.
    void helperFails(const QString &reason) { emit failed(reason); }
    void displayLost() { hear(GrabEvent::DisplayLost); }
    /// The program is to be closed. True when it can be now; otherwise the window is told to close
    /// when the grab is over.
    bool quit();
    /// Ends what the helper does: nobody waits for its picture any more.
    void dropHelper();

signals:
    void stateChanged(GrabState state);
    /// The user is told why there is no picture.
    void failed(const QString &reason);
    /// The last picture of a grab is where it goes, if there was any. What was kept begins later.
    void over();

private:
    struct Press {
        GrabCommand command = GrabCommand::Show;
        std::optional<GrabGoals> goals{};
        GrabWays ways{};
    };

    void hear(GrabEvent event);
    GrabState stateAfter(GrabEvent event) const;
    void giveUp();
    void setState(GrabState state);
    void run(const Press &press);
    void begin(const Press &press);
    bool comeToFront();
    bool askFirst();
    bool isAskedFirst() const;
    bool freeze(Freeze how = Freeze::AsUsual);
    bool openDesktop();
    void closeMenus();
    bool watch();
    bool askDesktop(const std::function<void(const Pictures::Answer &)> &question);
    void thaw();
    void unwatch();
    bool countDownFirst();
    /// False where it was given up.
    bool countDown(int seconds);
    void mark();
    bool delay(int seconds);
    void takeAtOnce();
    void browse();
    void startHelper();
    void deliver(Grab grab);
    void fail(const QString &reason);
    /// With what is known of where it comes from. False where the window has no part in it.
    bool addDocument(Grab grab);
    bool minimizeBefore();
    void restoreMinimized();
    void getOutOfTheWay();
    void comeBack();
    void finishHelper();
    void finish();

    GrabFront &m_window;
    GrabTools &m_tools;
    Pictures &m_pictures;
    Clock &m_clock;
    GrabState m_state = GrabState::Idle;

    // The grab under way, and how things stood when it began.
    GrabCommand m_command = GrabCommand::Show;
    std::optional<GrabGoals> m_goals{};
    std::pair<QString, QString> m_picked{};  // the application and the title of the helper's window
    GrabWays m_ways{};
    GrabSituation m_before{};
    bool m_isGivenUp = false;
    bool m_holdsPictures = false;  // they have been asked for, and not been let go
    bool m_watches = false;        // what moves
    QString m_trouble;             // why there are none, to be told
    bool m_hidesPins = false;      // they were on the screen
    bool m_helperWorks = false;
    bool m_isRaised = false;       // the window was, with a picture
    bool m_goesElsewhere = false;  // the helper's picture, so that the window stays where it was

    std::optional<Press> m_kept;   // the last press, which runs afterwards
    bool m_owesShow = false;       // the window is to be shown, but for a press that was kept
    bool m_isOutOfTheWay = false;  // for the helper
    bool m_closeAfter = false;
    std::optional<qint64> m_escapeTime;  // of the last one
};
