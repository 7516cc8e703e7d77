#include "platform/wayland/waylandpictures.h"

#include "platform/wayland/swaywindows.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace {

// Milliseconds.
constexpr int s_freezeLimit = 5000;
constexpr int s_lookLimit = 1000;
constexpr int s_keepTime = 2000;

const WaylandOutput *outputOf(const WaylandConnection &connection, const QString &name)
{
    const auto &outputs = connection.outputs();
    const auto found = std::find_if(outputs.begin(), outputs.end(),
                                    [&](const auto &output) { return output->title == name; });
    return found == outputs.end() ? nullptr : found->get();
}

}  // namespace

struct WaylandPictures::Question {
    Pictures::Answer answer;
    Look look{};
    std::vector<std::unique_ptr<Screencopy>> copies{};
    qsizetype missing = 0;  // pictures
    bool knowsWindows = false;
};

WaylandPictures::WaylandPictures(std::shared_ptr<WaylandConnection> connection,
                                 SwayWindows &windows)
    : m_connection(std::move(connection)), m_windows(windows)
{
    m_limit.setSingleShot(true);
    connect(&m_limit, &QTimer::timeout, this,
            [this] { answer(false, tr("The desktop did not give its picture in time.")); });
    m_keepsNoLonger.setSingleShot(true);
    connect(&m_keepsNoLonger, &QTimer::timeout, this, [this] { m_kept.clear(); });
    const auto lose = [this] { answer(false); };
    connect(m_connection.get(), &WaylandConnection::outputGone, this, lose);
    connect(m_connection.get(), &WaylandConnection::broken, this, lose);
}

WaylandPictures::~WaylandPictures() = default;

// The windows are read in the same moment, so that what is picked is where it is seen.
void WaylandPictures::freeze(Freeze /*how*/, Answer answerTo)
{
    thaw();
    m_question = std::make_unique<Question>();
    m_question->answer = std::move(answerTo);
    m_question->look.layout = m_connection->layout();
    m_limit.start(s_freezeLimit);
    const QList<ScreenLayout::Screen> &screens = m_question->look.layout.screens();
    m_question->look.pictures.resize(screens.size());
    m_question->missing = screens.size();
    for (qsizetype i = 0; i < screens.size(); ++i) {
        m_question->copies.push_back(
            std::make_unique<Screencopy>(m_connection, *outputOf(*m_connection, screens.at(i).name),
                                         nullptr, [this, i](QImage picture) {
                                             m_question->look.pictures[i] = std::move(picture);
                                             --m_question->missing;
                                             answerIfDone();
                                         }));
    }
    // Of a question that was given up the answer may still come.
    m_windows.read([this, number = ++m_questions] {
        if (!m_question || number != m_questions)
            return;
        m_question->knowsWindows = true;
        answerIfDone();
    });
}

void WaylandPictures::answerIfDone()
{
    const QList<QImage> &pictures = m_question->look.pictures;
    if (m_question->missing > 0)
        return;
    if (pictures.isEmpty() || std::any_of(pictures.begin(), pictures.end(),
                                          [](const QImage &picture) { return picture.isNull(); }))
        answer(false);
    else if (m_question->knowsWindows)
        answer(true);
}

void WaylandPictures::answer(bool areThere, const QString &trouble)
{
    m_limit.stop();
    const std::unique_ptr<Question> done = std::move(m_question);
    if (!done)
        return;
    if (areThere) {
        m_frozen = std::move(done->look);
        m_windows.freeze();
    }
    done->answer(areThere, trouble);
}

void WaylandPictures::thaw()
{
    m_limit.stop();
    m_question.reset();
    if (!m_frozen)
        return;
    m_frozen.reset();
    m_windows.thaw();
}

// What moves is looked at again and again, so the memory for it is kept for a while.
WaylandPictures::Look WaylandPictures::lookNow(const QRect &area)
{
    Look look{.layout = m_connection->layout()};
    for (const ScreenLayout::Screen &screen : look.layout.screens()) {
        look.pictures.append(QImage());
        if (!screen.area.intersects(area))
            continue;
        // It may have gone while another was waited for.
        const WaylandOutput *output = outputOf(*m_connection, screen.name);
        if (!output)
            return {};
        bool isDone = false;
        Screencopy copy(m_connection, *output, m_kept[screen.name], [&](const QImage &picture) {
            look.pictures.last() = picture;
            isDone = true;
        });
        if (!m_connection->waitFor([&isDone] { return isDone; }, s_lookLimit) ||
            look.pictures.constLast().isNull())
            return {};
        m_kept[screen.name] = copy.written();
    }
    m_keepsNoLonger.start(s_keepTime);
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

// What is visible of them: no compositor of this kind has pictures of single windows. What moves
// keeps its place, whatever comes in front.
QImage WaylandPictures::ofWindows(std::optional<QRectF> area, const QList<int> &numbers)
{
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
    return !m_frozen || visibleOf(number) == QRegion(m_windows.boundsOf(number).toRect());
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
