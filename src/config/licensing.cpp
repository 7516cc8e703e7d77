#include "config/licensing.h"

namespace Licensing {

void initialise() {}

bool identityIsValid() { return true; }

void setProduct(const QString &, const QString &, const QString &) {}

Status status() { return {}; }

bool acceptsProfileValue(QByteArrayView, QByteArrayView, QByteArrayView) { return true; }

}  // namespace Licensing
