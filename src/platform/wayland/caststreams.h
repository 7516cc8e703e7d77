#pragma once

#include <QImage>
#include <QList>
#include <QObject>
#include <QSize>

#include <memory>
#include <vector>

/// A frame of a screen, as it lies in memory that the desktop shares.
struct CastFrame {
    enum class Order { BlueFirst, RedFirst };

    const uchar *memory = nullptr;
    qsizetype capacity = 0;  ///< bytes of that memory
    qsizetype offset = 0;    ///< in bytes, where the frame begins
    qsizetype length = 0;    ///< its bytes
    qsizetype stride = 0;    ///< bytes from one row to the next
    QSize pixels{};          ///< of four bytes each; the fourth one is not used
    Order order = Order::BlueFirst;

    /// Whether all of its pixels lie in that memory.
    bool isWhole() const;
    /// A copy. Null if the frame is not whole.
    QImage picture() const;
};

/// What screens show while they change, as the desktop sends it through PipeWire: a frame for each
/// change, and none from a screen that stands still. The latest ones are kept.
///
/// PipeWire is loaded and asked by nobody else, so that a program which watches nothing pays
/// nothing.
class CastStreams : public QObject
{
    Q_OBJECT
public:
    /// Takes over the descriptor of a connection to PipeWire, and receives those nodes of it.
    CastStreams(int descriptor, const QList<uint> &nodes);
    ~CastStreams() override;

    /// The last frame of a node, by its place in the list; null before the first one, and once the
    /// streams have ended.
    QImage latest(qsizetype index);

signals:
    /// There is a frame of each node. From the event loop, once.
    void ready();
    /// No frames come any more: the desktop or the user has ended them, or PipeWire has gone. From
    /// the event loop, once.
    void ended();

private:
    struct Stream;
    struct Events;
    struct Connection;

    void end();
    void tellIfReady();

    std::unique_ptr<Connection> m_connection;
    std::vector<std::unique_ptr<Stream>> m_streams;
    bool m_isReady = false;
    bool m_hasEnded = false;
};
