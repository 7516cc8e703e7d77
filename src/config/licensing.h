#pragma once

#include <QByteArrayView>
#include <QString>

/// The licence of the program. This build needs none: every answer is registered, valid, accepted.
/// All questions come here, so that a build with licences has one place to fill in.
namespace Licensing {

struct Status {
    bool registered = true;
    QString name{};    ///< whom the licence names; may be empty
    int daysLeft = 0;  ///< of a trial
    int dayCount = 0;  ///< length of the trial
};

/// First of all calls, before the profile is read.
void initialise();

/// False when the product's identity in the application record has been tampered with.
bool identityIsValid();

/// Tells what is licensed, and the folders of the user's data and of the program, both with a
/// trailing separator.
void setProduct(const QString &product, const QString &dataFolder, const QString &programFolder);

Status status();

/// Whether a profile value counts, by the signature that stands behind its comma (may be empty).
bool acceptsProfileValue(QByteArrayView key, QByteArrayView value, QByteArrayView signature);

}  // namespace Licensing
