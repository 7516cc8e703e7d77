#include "recognition/wordmending.h"

#include "recognition/linedirection.h"

#include <algorithm>
#include <cmath>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int s_inkLimit = 224;      // greys below are ink
constexpr qreal s_mostGrowth = 0.4;  // of a box's shorter side, on each of its sides

// What is left blank of the places of a word's first and last letter, in places.
constexpr qreal s_besideWord = 0.3;
// How much of a place a word may be longer or shorter. One letter more or less would be all of it.
constexpr qreal s_play = 0.5;
constexpr qsizetype s_leastLetters = 3;  // of words that tell
constexpr qsizetype s_leastWords = 3;    // in a block, the same
constexpr qreal s_fitting = 0.75;        // of them
// A blank is as wide as a letter, with what is left of the letters' own places beside it.
constexpr qreal s_leastBlank = 0.92;
constexpr qreal s_wide = 0.35;  // of all gaps, those that are; in other fonts next to none are

// Figures are as wide as each other in most fonts.
bool hasLetter(const QString &text)
{
    return std::any_of(text.begin(), text.end(), [](QChar letter) { return letter.isLetter(); });
}

// How far it is from one letter to the next, in a block in which that is the same everywhere; 0 in
// any other. There words are as long as their number of letters says, and blanks are wide.
qreal pitchOf(const QList<ReadLine> &lines, qsizetype begin, qsizetype end)
{
    struct Word {
        qreal places = 0;
        int length = 0;
    };
    QList<Word> words;
    QList<int> gaps;
    for (qsizetype i = begin; i < end; ++i) {
        if (lines[i].words.size() < 2)
            continue;
        const LineDirection direction(lines[i].words);
        const ReadWord *before = nullptr;
        for (const ReadWord &word : lines[i].words) {
            const ReadWord *last = std::exchange(before, hasLetter(word.text) ? &word : nullptr);
            if (!before)
                continue;
            if (last)
                gaps.append(direction.gap(last->box, word.box));
            if (word.text.size() >= s_leastLetters)
                words.append({static_cast<qreal>(word.text.size()) - s_besideWord,
                              direction.length(word.box)});
        }
    }
    if (words.size() < s_leastWords || gaps.isEmpty())
        return 0;
    QList<qreal> pitches;
    for (const Word &word : std::as_const(words))
        pitches.append(word.length / word.places);
    const auto middle = pitches.begin() + pitches.size() / 2;
    std::nth_element(pitches.begin(), middle, pitches.end());
    const qreal result = *middle;
    const auto fitting = std::count_if(words.begin(), words.end(), [&](const Word &word) {
        return std::abs(word.length - word.places * result) <= s_play * result;
    });
    const auto wide = std::count_if(gaps.begin(), gaps.end(),
                                    [&](int gap) { return gap >= s_leastBlank * result; });
    const bool isFixed =
        static_cast<qreal>(fitting) >= s_fitting * static_cast<qreal>(words.size()) &&
        static_cast<qreal>(wide) >= s_wide * static_cast<qreal>(gaps.size());
    return isFixed ? result : 0;
}

void joinWords(ReadLine &line, qreal pitch)
{
    if (line.words.size() < 2)
        return;
    const LineDirection direction(line.words);
    QList<ReadWord> words{line.words.first()};
    for (auto next = line.words.cbegin() + 1; next != line.words.cend(); ++next) {
        ReadWord &last = words.last();
        if (direction.gap(last.box, next->box) < s_leastBlank * pitch) {
            last.text += next->text;
            last.box |= next->box;
        } else {
            words.append(*next);
        }
    }
    if (words.size() == line.words.size())
        return;
    line.words = std::move(words);
    line.text.clear();
    for (const ReadWord &word : std::as_const(line.words))
        line.text += (line.text.isEmpty() ? QString() : u" "_s) + word.text;
}

int thicknessOf(const QList<ReadWord> &words, const LineDirection &direction)
{
    int result = 1;
    for (const ReadWord &word : words)
        result = std::max(result, direction.thickness(word.box));
    return result;
}

bool isInk(const QImage &picture, QPoint at)
{
    return picture.rect().contains(at) && picture.constScanLine(at.y())[at.x()] < s_inkLimit;
}

// Whether ink leads from a side of the box out of it, by `out`.
bool isCut(const QImage &picture, QPoint begin, QPoint end, QPoint out)
{
    const QPoint along = out.x() == 0 ? QPoint(1, 0) : QPoint(0, 1);
    for (QPoint at = begin; at.x() <= end.x() && at.y() <= end.y(); at += along) {
        if (isInk(picture, at) && (isInk(picture, at + out) || isInk(picture, at + out - along) ||
                                   isInk(picture, at + out + along)))
            return true;
    }
    return false;
}

}  // namespace

void joinTornWords(QList<ReadLine> &lines)
{
    for (qsizetype begin = 0; begin < lines.size();) {
        qsizetype end = begin + 1;
        while (end < lines.size() && !lines[end].beginsBlock)
            ++end;
        if (const qreal pitch = pitchOf(lines, begin, end); pitch > 0) {
            for (; begin < end; ++begin)
                joinWords(lines[begin], pitch);
        }
        begin = end;
    }
}

double blankOf(const QList<ReadLine> &lines)
{
    constexpr double s_usual = 0.25;
    QList<double> blanks;
    for (const ReadLine &line : lines) {
        const LineDirection direction(line.words);
        const int height = thicknessOf(line.words, direction);
        for (qsizetype i = 1; i < line.words.size(); ++i)
            blanks.append(double(direction.gap(line.words[i - 1].box, line.words[i].box)) / height);
    }
    if (blanks.isEmpty())
        return s_usual;
    const auto middle = blanks.begin() + blanks.size() / 2;
    std::nth_element(blanks.begin(), middle, blanks.end());
    return *middle;
}

QList<bool> tornWords(const QList<ReadWord> &words, double blank)
{
    constexpr double s_part = 0.5;
    const LineDirection direction(words);
    const double narrow = std::max(s_part * blank * thicknessOf(words, direction), 1.);
    QList<bool> result;
    for (qsizetype i = 0; i < words.size(); ++i)
        result.append(i > 0 && direction.gap(words[i - 1].box, words[i].box) < narrow);
    return result;
}

QRect withWholeLetters(const QRect &box, const QImage &picture)
{
    const int most = static_cast<int>(s_mostGrowth * std::min(box.width(), box.height()));
    QRect result = box;
    for (int i = 0; i < most && isCut(picture, result.topLeft(), result.topRight(), {0, -1}); ++i)
        result.setTop(result.top() - 1);
    for (int i = 0; i < most && isCut(picture, result.bottomLeft(), result.bottomRight(), {0, 1});
         ++i)
        result.setBottom(result.bottom() + 1);
    for (int i = 0; i < most && isCut(picture, result.topLeft(), result.bottomLeft(), {-1, 0}); ++i)
        result.setLeft(result.left() - 1);
    for (int i = 0; i < most && isCut(picture, result.topRight(), result.bottomRight(), {1, 0});
         ++i)
        result.setRight(result.right() + 1);
    return result;
}
