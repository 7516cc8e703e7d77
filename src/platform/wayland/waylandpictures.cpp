#include "platform/wayland/waylandpictures.h"

#include "platform/wayland/waylandwindows.h"

#include <algorithm>
#include <utility>

struct WaylandPictures::Question {
    Pictures::Answer answer;
    Look look{};
    QString trouble{};  // of the first route that had any
    bool hasPictures = false;
    bool knowsWindows = false;
};

WaylandPictures::WaylandPictures(std::shared_ptr<WaylandConnection> connection, Routes routes,
                                 WaylandWindows &windows)
    : m_connection(std::move(connection)), m_routes(std::move(routes)), m_windows(windows)
{
}

WaylandPictures::~WaylandPictures() = default;

bool WaylandPictures::mayAsk() const { return m_routes.at(m_serving)->mayAsk(); }

bool WaylandPictures::mayAskToWatch() const { return m_routes.at(m_serving)->mayAskToWatch(); }

void WaylandPictures::watch(const Answer &answer)
{
    m_routes.at(m_serving)->watch(m_connection->layout(), answer);
}

void WaylandPictures::unwatch() { m_routes.at(m_serving)->unwatch(); }

// The windows are read in the same moment, so that what is picked is where it is seen.
void WaylandPictures::freeze(Freeze /*how*/, Answer answerTo)
{
    thaw();
    m_question = std::make_unique<Question>();
    m_question->answer = std::move(answerTo);
    m_question->look.layout = m_connection->layout();
    tryRoute(0);
    // Of a question that was given up the answer may still come.
    m_windows.read([this, number = ++m_questions] {
        if (!m_question || number != m_questions)
            return;
        m_question->knowsWindows = true;
        answerIfDone();
    });
}

void WaylandPictures::tryRoute(size_t index)
{
    m_serving = index;
    m_routes.at(index)->showPointer(showsPointer());
    m_routes.at(index)->take(m_question->look.layout, [this, index](const auto &result) {
        if (result.outcome == PictureRoute::Outcome::Taken) {
            m_question->look.pictures = result.pictures;
            m_question->hasPictures = true;
            answerIfDone();
            return;
        }
        if (m_question->trouble.isEmpty())
            m_question->trouble = result.trouble;
        if (result.outcome == PictureRoute::Outcome::Absent && index + 1 < m_routes.size())
            tryRoute(index + 1);
        else
            answer(false, QString(m_question->trouble));
    });
}

void WaylandPictures::answerIfDone()
{
    if (m_question->hasPictures && m_question->knowsWindows)
        answer(true);
}

void WaylandPictures::answer(bool areThere, const QString &trouble)
{
    const std::unique_ptr<Question> done = std::move(m_question);
    if (areThere) {
        m_frozen = std::move(done->look);
        m_windows.freeze();
    }
    done->answer(areThere, trouble);
}

void WaylandPictures::thaw()
{
    m_routes.at(m_serving)->drop();
    m_question.reset();
    if (!m_frozen)
        return;
    m_frozen.reset();
    m_windows.thaw();
}

WaylandPictures::Look WaylandPictures::lookNow(const QRect &area)
{
    Look look{.layout = m_connection->layout()};
    look.pictures = m_routes.at(m_serving)->takeNow(look.layout, area);
    return look;
}

QSize WaylandPictures::sizeOf(const QRect &area) const
{
    return (m_frozen ? m_frozen->layout : m_connection->layout()).pictureSize(area);
}

QImage WaylandPictures::ofDesktop(const QRect &area)
{
    if (m_frozen)
        return m_frozen->layout.picture(area, m_frozen->pictures);
    const Look look = lookNow(area);
    return look.pictures.isEmpty() ? QImage() : look.layout.picture(area, look.pictures);
}

// Where the compositor has no pictures of windows, what is visible of them. What moves keeps its
// place, whatever comes in front.
QImage WaylandPictures::ofWindows(std::optional<QRectF> area, const QList<int> &numbers)
{
    if (numbers.size() == 1 && !area) {
        QImage whole = m_windows.pictureOf(numbers.first());
        // The last word is not spoken before it has been asked.
        if (!whole.isNull() || m_windows.havePictures())
            return whole;
    }
    QRect bounds;
    for (const int number : numbers)
        bounds |= m_frozen ? visibleOf(number).boundingRect() : m_windows.boundsOf(number).toRect();
    return bounds.isEmpty() ? QImage() : ofDesktop(area ? area->toRect() : bounds);
}

// What no other window covers and a screen shows.
QRegion WaylandPictures::visibleOf(int number) const
{
    QRegion shown;
    for (const ScreenLayout::Screen &screen : m_frozen->layout.screens())
        shown += screen.area;
    return shown & m_windows.visibleOf(number);
}

bool WaylandPictures::isWhole(int number) const
{
    return m_windows.havePictures() || !m_frozen ||
           visibleOf(number) == QRegion(m_windows.boundsOf(number).toRect());
}

// As large as the area, so that a point of one is a point of the other.
QImage WaylandPictures::withoutWindows(const QRect &area, const QList<int> & /*numbers*/)
{
    const QImage picture = ofDesktop(area);
    return picture.isNull() || picture.size() == area.size()
               ? picture
               : picture.scaled(area.size(), Qt::IgnoreAspectRatio, Qt::FastTransformation);
}

// The pictures themselves have to be compared.
std::unique_ptr<ChangeWatch> WaylandPictures::watchChanges(int /*number*/) { return nullptr; }
