#pragma once

#include <QByteArrayView>
#include <QString>

/// The program's licence. This build needs none: every answer is "registered", "valid" or
/// "accepted". All questions are asked here, so that a build with licences has to change only this
/// file.
namespace Licensing {

struct Status {
    bool registered = true;
    QString name{};    ///< to whom the program is licensed; may be empty
    int daysLeft = 0;  ///< days left of a trial
    int dayCount = 0;  ///< length of the trial
};

/// Must be called first, before the profile is read.
void initialise();

/// False when the product's identity in the application record has been tampered with.
bool identityIsValid();

/// Sets the licensed product, and the folders of the user's data and of the program, both with a
/// trailing separator.
void setProduct(const QString &product, const QString &dataFolder, const QString &programFolder);

Status status();

/// Whether a profile value is accepted with this signature, which may be empty.
bool acceptsProfileValue(QByteArrayView key, QByteArrayView value, QByteArrayView signature);

}  // namespace Licensing
