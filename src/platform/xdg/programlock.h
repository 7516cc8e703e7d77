#pragma once

#include <QString>

/// A lock on a file, which the system drops with the process, however that ends. The file stays:
/// one that is removed could be locked by two programs, each with a file of that name of its own.
class ProgramLock
{
public:
    enum class State {
        Held,
        Taken,      ///< another process has it
        Impossible  ///< no such file can be made or locked here
    };

    explicit ProgramLock(QString path) : m_path(std::move(path)) {}
    ~ProgramLock();
    ProgramLock(const ProgramLock &) = delete;
    ProgramLock &operator=(const ProgramLock &) = delete;

    State acquire();

private:
    QString m_path;
    int m_file = -1;
};
