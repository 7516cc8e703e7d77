#pragma once

#include "recognition/textreader.h"

/// Something in a picture that its owner would rather not show.
struct Secret {
    enum class Kind { MailAddress, Telephone, Card, Key, Password };

    Kind kind = Kind::Key;
    QString text{};        ///< all that is covered of its first line, as it was read
    QList<QRect> areas{};  ///< what covers it, an area a line; pixels of the picture
};

/// The secrets in a text that was read, in its order. Whole words are covered, and of a private key
/// all lines in their full length. What is read is
/// never quite what was written, so that this looks for what may be a secret: better one too many,
/// for the user is asked.
QList<Secret> secretsIn(const QList<ReadLine> &lines);
