#pragma once

#include <QLibrary>
#include <QStringList>

/// A C library that the program does without where it is not installed. It is opened when it is
/// needed, and stays open until the program ends.
class RuntimeLibrary
{
public:
    /// Opens the first of these that there is.
    explicit RuntimeLibrary(const QStringList &names);

    /// Whether the system knows one of them by its name, without opening it.
    static bool isInstalled(const QStringList &names);

    /// Finds a function. One that is missing makes the library as good as not installed.
    template<typename Function> void resolve(Function *&function, const char *name)
    {
        function = reinterpret_cast<Function *>(m_library.resolve(name));
        m_isComplete = m_isComplete && function;
    }
    /// Whether it is open and had every function so far.
    bool isComplete() const { return m_isComplete; }

private:
    QLibrary m_library;
    bool m_isComplete = false;
};
