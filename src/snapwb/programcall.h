#pragma once

#include <QDBusMessage>
#include <QString>
#include <QVariantList>

/// The program that this one orders things from, over the session bus.
namespace ProgramCall {

/// False where there is no session bus at all.
bool hasBus();
bool isRunning();
/// Starts it where it does not run, and waits until it can be called. `isMinimized` keeps its
/// window out of the way. False where that fails.
bool ensureRunning(bool isMinimized);

/// Calls a method of one of its interfaces, and waits for the answer as long as it takes: a user
/// may have to mark something first.
QDBusMessage call(const QString &interface, const QString &method, const QVariantList &arguments);

/// The interface that is the program's own.
QString ownInterface();

}  // namespace ProgramCall
