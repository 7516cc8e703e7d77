#include "platform/wayland/screencopyroute.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace {

// Milliseconds.
constexpr int s_takeLimit = 5000;
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

struct ScreencopyRoute::Question {
    PictureRoute::Answer answer;
    QList<QImage> pictures{};
    std::vector<std::unique_ptr<Screencopy>> copies{};
    qsizetype missing = 0;  // pictures
};

ScreencopyRoute::ScreencopyRoute(std::shared_ptr<WaylandConnection> connection)
    : m_connection(std::move(connection))
{
    m_limit.setSingleShot(true);
    connect(&m_limit, &QTimer::timeout, this, [this] {
        answer(Outcome::Failed, tr("The desktop did not give its picture in time."));
    });
    m_keepsNoLonger.setSingleShot(true);
    connect(&m_keepsNoLonger, &QTimer::timeout, this, [this] { m_kept.clear(); });
    const auto lose = [this] { answer(Outcome::Failed); };
    connect(m_connection.get(), &WaylandConnection::outputGone, this, lose);
    connect(m_connection.get(), &WaylandConnection::broken, this, lose);
}

ScreencopyRoute::~ScreencopyRoute() = default;

void ScreencopyRoute::take(const ScreenLayout &layout, Answer answerTo)
{
    m_question = std::make_unique<Question>();
    m_question->answer = std::move(answerTo);
    m_question->pictures.resize(layout.screens().size());
    m_question->missing = layout.screens().size();
    m_limit.start(s_takeLimit);
    for (qsizetype i = 0; i < layout.screens().size(); ++i) {
        const WaylandOutput *output = outputOf(*m_connection, layout.screens().at(i).name);
        m_question->copies.push_back(std::make_unique<Screencopy>(
            m_connection, *output, nullptr, m_showsPointer, [this, i](QImage picture) {
                m_question->pictures[i] = std::move(picture);
                if (--m_question->missing > 0)
                    return;
                const QList<QImage> &pictures = m_question->pictures;
                const bool isWhole =
                    std::none_of(pictures.begin(), pictures.end(),
                                 [](const QImage &taken) { return taken.isNull(); });
                answer(isWhole ? Outcome::Taken : Outcome::Failed);
            }));
    }
    if (layout.screens().isEmpty())
        m_limit.start(0);
}

void ScreencopyRoute::answer(Outcome outcome, const QString &trouble)
{
    m_limit.stop();
    const std::unique_ptr<Question> done = std::move(m_question);
    if (done)
        done->answer({outcome, done->pictures, trouble});
}

void ScreencopyRoute::drop()
{
    m_limit.stop();
    m_question.reset();
}

// What moves is looked at again and again, so the memory for it is kept for a while.
QList<QImage> ScreencopyRoute::takeNow(const ScreenLayout &layout, const QRect &area)
{
    QList<QImage> pictures;
    for (const ScreenLayout::Screen &screen : layout.screens()) {
        pictures.append(QImage());
        if (!screen.area.intersects(area))
            continue;
        // It may have gone while another was waited for.
        const WaylandOutput *output = outputOf(*m_connection, screen.name);
        if (!output)
            return {};
        bool isDone = false;
        Screencopy copy(m_connection, *output, m_kept[screen.name], false,
                        [&](const QImage &picture) {
                            pictures.last() = picture;
                            isDone = true;
                        });
        if (!m_connection->waitFor([&isDone] { return isDone; }, s_lookLimit) ||
            pictures.constLast().isNull())
            return {};
        m_kept[screen.name] = copy.written();
    }
    m_keepsNoLonger.start(s_keepTime);
    return pictures;
}
