#pragma once

#include "recognition/textreader.h"

/// Puts together the words that were read in pieces: beside narrow letters of a font whose letters
/// are all as wide, a blank is seen where there is none. The boxes have to be exact, those of the
/// picture that was read.
void joinTornWords(QList<ReadLine> &lines);

/// How wide the blanks between words are, as a part of the height of their lines.
double blankOf(const QList<ReadLine> &lines);
/// Which words of a line hang together with the one before, by a gap that is much narrower than a
/// blank, which is blankOf() all lines. In fonts of other widths they can't be told from two words
/// well enough to change the text.
QList<bool> tornWords(const QList<ReadWord> &words, double blank);

/// `box` and all of the letters that it cuts, in a picture that is dark on white, Grayscale8. It
/// never grows much, for letters may touch what is none.
QRect withWholeLetters(const QRect &box, const QImage &picture);
